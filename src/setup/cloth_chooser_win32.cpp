// The cloth chooser `CWNDMOSAIC`: a preview of the cloth that steps on when clicked, a selector beside
// it, help and close buttons; every change dresses the table at once.
#include "setup/cloth_chooser_win32.h"

#include <cstdint>
#include <new>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/launchers_win32.h"
#include "app/main_window_win32.h"
#include "app/preferences.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "controls/window_drag_win32.h"
#include "gfx/dib.h"
#include "gfx/image_object_win32.h"
#include "gfx/pack.h"

namespace {

constexpr DWORD kClothChooserStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN;
// The panel picture's size; the places below are measured on it.
constexpr int32_t kPanelWidth = 420;
constexpr int32_t kPanelHeight = 300;
constexpr POINT kBadgeAt = {17, 10};
constexpr int32_t kPreviewSide = 100;
// The preview fills the panel's framed well; the selector stands right of it, centred on it; the help
// and close buttons sit in the free band at the bottom.
constexpr POINT kPreviewAt = {152, 82};
constexpr POINT kSelectorAt = {286, 53};
constexpr int32_t kSelectorWidth = 30;
constexpr int32_t kSelectorZones[3] = {37, 83, 39};
constexpr int32_t kSelectorExtra = 40;
constexpr POINT kHelpAt = {28, 228};
constexpr int32_t kHelpSide = 50;  // one frame of the help strip
constexpr POINT kCloseAt = {302, 242};
constexpr int32_t kCloseWidth = 90, kCloseHeight = 36;  // one picture of the close strip

struct ClothChooser {
    HWND hwnd;
    HWND owner;                  // disabled while the panel exists
    ImageObject backdrop;        // the panel with the badge copied on it
    ImageObject closeStrip, helpStrip, previewStrip, selectorStrip;
    HWND closeButton, helpButton, preview, selector;
    int32_t index;               // the cloth on the table, 0..9
    WindowDrag drag;             // a press on the panel's own background (the children take their own)
};

HWND s_chooser = nullptr;

ClothChooser* ChooserOf(HWND hwnd) { return reinterpret_cast<ClothChooser*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA)); }

LPARAM StripParam(const ImageObject* strip) { return reinterpret_cast<LPARAM>(ImageObject_Dib(strip)); }

// The panel picture with the badge copied over its corner. Both come as the same depth from the pack; a
// badge of another depth is left off rather than copied as garbage.
void ComposeBackdrop(ImageObject* backdrop) {
    ImageObject_Init(backdrop, false);
    if (!ImageObject_LoadFromPack(backdrop, kArtClothPanel)) return;
    uint8_t* panel = ImageObject_Dib(backdrop);
    uint8_t* badge = LoadPackItem(&g_pack, kArtClothPanelBadge);
    int32_t width, height;
    if (PackedDibSize(badge, &width, &height) && DibHeaderOf(badge)->biBitCount == DibHeaderOf(panel)->biBitCount)
        SoftBlit(panel, kBadgeAt.x, kBadgeAt.y, width, height, badge, 0, 0, kRopSrcCopy);
    FreePackedDib(badge);
}

void LoadStrip(ImageObject* strip, uint32_t id) {
    ImageObject_Init(strip, false);
    ImageObject_LoadFromPack(strip, id);
}

HWND MakeChild(HWND panel, const char* className, POINT at, int32_t width, int32_t height, int id) {
    return CreateWindowExA(0, className, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, at.x, at.y, width, height,
                           panel, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleA(nullptr),
                           nullptr);
}

void MakeCloseButton(ClothChooser* s) {
    s->closeButton = MakeChild(s->hwnd, "CQMCOMMAND", kCloseAt, kCloseWidth, kCloseHeight, kClothCloseId);
    SendMessageA(s->closeButton, PM_SETIMAGE, 0, StripParam(&s->closeStrip));
}

void MakeHelpButton(ClothChooser* s) {
    s->helpButton = MakeChild(s->hwnd, "CQMANIM", kHelpAt, kHelpSide, kHelpSide, kClothHelpId);
    SendMessageA(s->helpButton, PM_ANIM_SETROWS, 0, 1);
    SendMessageA(s->helpButton, PM_ANIM_SETCOLUMNS, 0, 10);
    SendMessageA(s->helpButton, PM_ANIM_SETFRAME, 0, kButtonRestFrame);
    SendMessageA(s->helpButton, PM_SETIMAGE, 0, StripParam(&s->helpStrip));
}

// The ten cloths stand one under the other in the preview's strip: frame k is cloth k.
void MakePreview(ClothChooser* s) {
    s->preview = MakeChild(s->hwnd, "CQMANIM", kPreviewAt, kPreviewSide, kPreviewSide, kClothPreviewId);
    SendMessageA(s->preview, PM_ANIM_SETROWS, 0, kClothCount);
    SendMessageA(s->preview, PM_ANIM_SETCOLUMNS, 0, 1);
    SendMessageA(s->preview, PM_ANIM_SETFRAME, 0, s->index);
    SendMessageA(s->preview, PM_SETIMAGE, 0, StripParam(&s->previewStrip));
}

// The range runs from -9 to 0 on purpose: the upper button adds the step, so it goes back to the
// previous cloth and the lower one on to the next, with cloth 0 at the top.
void MakeSelector(ClothChooser* s) {
    int32_t height = kSelectorZones[0] + kSelectorZones[1] + kSelectorZones[2];
    s->selector = MakeChild(s->hwnd, "CQMSROLL", kSelectorAt, kSelectorWidth, height, kClothSelectorId);
    SendMessageA(s->selector, PM_SETIMAGE, 0, StripParam(&s->selectorStrip));
    SendMessageA(s->selector, PM_SCR_SETUPPERHEIGHT, 0, kSelectorZones[0]);
    SendMessageA(s->selector, PM_SCR_SETMIDDLEHEIGHT, 0, kSelectorZones[1]);
    SendMessageA(s->selector, PM_SCR_SETLOWERHEIGHT, 0, kSelectorZones[2]);
    SendMessageA(s->selector, PM_SCR_SETMINIMUM, 0, -(kClothCount - 1));
    SendMessageA(s->selector, PM_SCR_SETMAXIMUM, 0, 0);
    SendMessageA(s->selector, PM_SCR_SETSTEP, 0, 1);
    SendMessageA(s->selector, PM_SCR_SETEXTRA, 0, kSelectorExtra);
    SendMessageA(s->selector, PM_SCR_SETPOSITION, 0, -s->index);
}

LRESULT Chooser_OnCreate(HWND hwnd) {
    ClothChooser* s = new (std::nothrow) ClothChooser();
    if (!s) return -1;
    s->hwnd = hwnd;
    s->owner = GetWindow(hwnd, GW_OWNER);
    s->index = g_tableBackground >= 0 && g_tableBackground < kClothCount ? g_tableBackground : 0;
    ComposeBackdrop(&s->backdrop);
    LoadStrip(&s->closeStrip, kArtClothCloseButton);
    LoadStrip(&s->helpStrip, kArtPanelHelpButton);
    LoadStrip(&s->previewStrip, kArtClothPreview);
    LoadStrip(&s->selectorStrip, kArtClothScroll);
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    s_chooser = hwnd;
    MakeCloseButton(s);
    MakeHelpButton(s);
    MakePreview(s);
    MakeSelector(s);
    return 0;
}

// The preview, the selector and the table all follow the one index.
void ShowCloth(ClothChooser* s) {
    SendMessageA(s->preview, PM_ANIM_SETFRAME, 0, s->index);
    ChangeTableCloth(s->index);
}

void Chooser_OnPreviewClicked(ClothChooser* s) {
    s->index = (s->index + 1) % kClothCount;
    SendMessageA(s->selector, PM_SCR_SETPOSITION, 0, -s->index);
    ShowCloth(s);
}

void Chooser_OnSelectorChanged(ClothChooser* s) {
    int32_t index = -int32_t(SendMessageA(s->selector, PM_SCR_GETPOSITION, 0, 0));
    if (index < 0 || index >= kClothCount) return;
    s->index = index;
    ShowCloth(s);
}

void Chooser_OnNotify(ClothChooser* s, WPARAM event, HWND control) {
    if (!control) return;
    // The help button is a silent animation: the panel gives it the command buttons' feedback and sounds.
    if (control == s->helpButton) {
        AnimatedButtonFeedback(control, event);
        if (event == NOTIFY_ENTERED) PlayInterfaceSound(g_hoverSound);
        if (event == NOTIFY_CLICKED) PlayInterfaceSound(g_clickSound);
    }
    if (event != NOTIFY_CLICKED) return;
    if (control == s->helpButton) return LaunchHelp();
    if (control == s->preview) return Chooser_OnPreviewClicked(s);
    if (control == s->selector) return Chooser_OnSelectorChanged(s);
    if (control == s->closeButton) SendMessageA(s->hwnd, WM_CLOSE, 0, 0);
}

void Chooser_Paint(const ClothChooser* s, HDC dc, const RECT* area) {
    PaintRect(dc, area, ImageObject_Dib(&s->backdrop));
}

void Chooser_OnPaint(ClothChooser* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(s->hwnd, &paint);
    if (dc) Chooser_Paint(s, dc, &paint.rcPaint);
    EndPaint(s->hwnd, &paint);
}

void Chooser_OnPrintClient(ClothChooser* s, HDC dc) {
    RECT all = {0, 0, kPanelWidth, kPanelHeight};
    Chooser_Paint(s, dc, &all);
}


void EnableOwner(const ClothChooser* s) {
    if (s->owner) EnableWindow(s->owner, TRUE);
}

// The owner is enabled before the panel goes, so that activation can return to the game.
void Chooser_OnClose(ClothChooser* s) {
    HWND hwnd = s->hwnd;
    EnableOwner(s);
    if (g_mainWindow) SetForegroundWindow(g_mainWindow);
    DestroyWindow(hwnd);
}

void Chooser_OnDestroy(ClothChooser* s) {
    EnableOwner(s);
    if (s_chooser == s->hwnd) s_chooser = nullptr;
}

// Last of all, once the children that drew from the strips are gone.
void Chooser_OnNcDestroy(ClothChooser* s) {
    ImageObject_Destroy(&s->backdrop);
    ImageObject_Destroy(&s->closeStrip);
    ImageObject_Destroy(&s->helpStrip);
    ImageObject_Destroy(&s->previewStrip);
    ImageObject_Destroy(&s->selectorStrip);
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    delete s;
}

LRESULT CALLBACK ClothChooserProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return Chooser_OnCreate(hwnd);
    ClothChooser* s = ChooserOf(hwnd);
    if (!s) return DefWindowProcA(hwnd, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: Chooser_OnPaint(s); return 0;
    case WM_PRINTCLIENT: Chooser_OnPrintClient(s, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;  // the backdrop covers everything
    case WM_QUERYNEWPALETTE: InvalidateRect(hwnd, nullptr, FALSE); return 0;
    case WM_PALETTECHANGED:
        if (reinterpret_cast<HWND>(wParam) != hwnd) InvalidateRect(hwnd, nullptr, FALSE);
        return 0;
    case PM_NOTIFY: Chooser_OnNotify(s, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_LBUTTONDOWN: WindowDrag_Begin(&s->drag, hwnd, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_MOUSEMOVE: WindowDrag_Move(&s->drag, hwnd, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONUP: WindowDrag_End(&s->drag, hwnd); return 0;
    case WM_CAPTURECHANGED: WindowDrag_OnCaptureChanged(&s->drag, hwnd, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_CLOSE: Chooser_OnClose(s); return 0;
    case WM_DESTROY: Chooser_OnDestroy(s); return 0;
    case WM_NCDESTROY: Chooser_OnNcDestroy(s); break;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

}  // namespace

void RegisterClothChooserClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = ClothChooserProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kClothChooserClass;
    RegisterClassA(&windowClass);
}

HWND OpenClothChooser(HWND owner) {
    if (s_chooser) return s_chooser;
    if (owner) EnableWindow(owner, FALSE);
    int32_t screenWidth = g_screenWidth > 0 ? g_screenWidth : GetSystemMetrics(SM_CXSCREEN);
    int32_t screenHeight = g_screenHeight > 0 ? g_screenHeight : GetSystemMetrics(SM_CYSCREEN);
    HWND panel = CreateWindowExA(0, kClothChooserClass, "", kClothChooserStyle, (screenWidth - kPanelWidth) / 2,
                                 (screenHeight - kPanelHeight) / 2, kPanelWidth, kPanelHeight, owner, nullptr,
                                 GetModuleHandleA(nullptr), nullptr);
    if (!panel && owner) EnableWindow(owner, TRUE);
    return panel;
}

HWND CurrentClothChooser() { return s_chooser; }
