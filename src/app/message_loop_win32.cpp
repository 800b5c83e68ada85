// The message loop with the child-character filter and the paint drain.
#include "app/message_loop_win32.h"

#include "app/shortcuts_win32.h"
#include "controls/control_messages.h"

bool OfferChildChar(const MSG* msg) {
    if (msg->message != WM_CHAR || !msg->hwnd) return false;
    if (!(GetWindowLongPtrA(msg->hwnd, GWL_STYLE) & WS_CHILD)) return false;
    HWND parent = GetParent(msg->hwnd);
    return parent && SendMessageA(parent, PM_CHILDCHAR, msg->wParam, msg->lParam) != 0;
}

int RunMessageLoop() {
    MSG msg;
    for (;;) {
        BOOL got = GetMessageA(&msg, nullptr, 0, 0);
        if (got == 0 || got == -1) break;
        if (OfferShortcut(&msg) || OfferChildChar(&msg)) continue;
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
        MSG paint;
        while (PeekMessageA(&paint, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE)) {
            if (paint.message == WM_QUIT) return int(paint.wParam);
            DispatchMessageA(&paint);
        }
    }
    return int(msg.wParam);
}
