// The language chooser.
#include "app/language_chooser_win32.h"

#include <cstdio>
#include <new>

#include "app/app_win32.h"
#include "app/settings.h"
#include "app/art_ids.h"
#include "app/strings_win32.h"
#include "app/theme.h"
#include "app/title_window_win32.h"
#include "controls/control_messages.h"
#include "gfx/image_object_win32.h"

void (*g_reloadBarLabels)() = nullptr;
HWND g_magnifierWindow = nullptr;

struct Chooser {
    ImageObject background, okImage, cancelImage;
    HWND okButton, cancelButton;
    HWND labels[2];     // "Español" (0) and "English" (1)
    int32_t pending;    // the language a press of OK would apply
    bool dragging;
    POINT anchor;       // pointer's screen position while dragging
};

static Chooser* StateOf(HWND window) { return reinterpret_cast<Chooser*>(GetWindowLongPtrA(window, GWLP_USERDATA)); }

static HWND MakeButton(HWND parent, ImageObject* image, uint32_t art, int x, int y) {
    ImageObject_Init(image, false);
    ImageObject_LoadFromPack(image, art);
    HWND button = CreateWindowExA(0, "CQMCOMMAND", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, x, y, 50, 50, parent,
                                  nullptr, GetModuleHandleA(nullptr), nullptr);
    SendMessageA(button, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(ImageObject_Dib(image)));
    return button;
}

static HWND MakeLabel(HWND parent, const uint8_t* background, const char* text, int y, bool selected) {
    HWND label = CreateWindowExA(0, "CQMTXT", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 50, y, 10, 10, parent,
                                 nullptr, GetModuleHandleA(nullptr), nullptr);
    SendMessageA(label, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(background));
    SendMessageA(label, PM_TXT_SETSHADOW, 0, 1);
    SendMessageA(label, PM_TXT_SETHEIGHT, 0, 30);
    SendMessageA(label, PM_TXT_SETFACE, 0, reinterpret_cast<LPARAM>(kCommonFontFace));
    SendMessageA(label, PM_TXT_SETTEXTCOLOR, 0, selected ? kSelectedTextColor : kCommonTextColor);
    SendMessageA(label, PM_TXT_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    return label;
}

static LRESULT Chooser_OnCreate(HWND window) {
    Chooser* s = new (std::nothrow) Chooser();
    if (!s) return -1;
    SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    s->dragging = false;
    ImageObject_Init(&s->background, false);
    ImageObject_LoadFromPack(&s->background, kArtLanguagePanel);
    s->okButton = MakeButton(window, &s->okImage, kArtDoneButton, 0, 256);
    s->cancelButton = MakeButton(window, &s->cancelImage, kArtStopButton, 177, 256);
    const uint8_t* panel = ImageObject_Dib(&s->background);
    s->labels[0] = MakeLabel(window, panel, "Espa\xF1ol", 60, g_language == kSpanish);
    s->labels[1] = MakeLabel(window, panel, "English", 90, g_language == kEnglish);
    s->pending = g_language;
    return 0;
}

// Picking a label colours it as chosen and the other as plain; picking the chosen one changes nothing.
static void Chooser_Pick(Chooser* s, int32_t language) {
    if (s->pending == language) return;
    SendMessageA(s->labels[language], PM_TXT_SETTEXTCOLOR, 0, kSelectedTextColor);
    SendMessageA(s->labels[1 - language], PM_TXT_SETTEXTCOLOR, 0, kCommonTextColor);
    s->pending = language;
}

static void Chooser_OnNotify(HWND window, Chooser* s, WPARAM event, HWND from) {
    if (event != NOTIFY_CLICKED) return;
    if (from == s->labels[0]) return Chooser_Pick(s, kSpanish);
    if (from == s->labels[1]) return Chooser_Pick(s, kEnglish);
    if (from == s->okButton && s->pending != g_language) ApplyLanguage(s->pending);
    PostMessageA(window, WM_CLOSE, 0, 0);
}

static void Chooser_OnPaint(HWND window, Chooser* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    PaintRect(dc, &paint.rcPaint, ImageObject_Dib(&s->background));
    EndPaint(window, &paint);
}

static void Chooser_OnMouseDown(HWND window, Chooser* s) {
    if (s->dragging) return;
    s->dragging = true;
    GetCursorPos(&s->anchor);
    SetCapture(window);
}

static void Chooser_OnMouseMove(HWND window, Chooser* s) {
    if (!s->dragging) return;
    POINT now;
    GetCursorPos(&now);
    if (now.x == s->anchor.x && now.y == s->anchor.y) return;
    RECT at;
    GetWindowRect(window, &at);
    SetWindowPos(window, nullptr, at.left + now.x - s->anchor.x, at.top + now.y - s->anchor.y, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOOWNERZORDER | SWP_NOSENDCHANGING);
    s->anchor = now;
}

static void Chooser_OnDestroy(HWND window, Chooser* s) {
    ImageObject_Destroy(&s->okImage);
    ImageObject_Destroy(&s->cancelImage);
    ImageObject_Destroy(&s->background);
    delete s;
    SetWindowLongPtrA(window, GWLP_USERDATA, 0);
    if (g_mainWindow) EnableWindow(g_mainWindow, TRUE);
}

static LRESULT CALLBACK Chooser_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return Chooser_OnCreate(window);
    Chooser* s = StateOf(window);
    if (!s) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: Chooser_OnPaint(window, s); return 0;
    case WM_LBUTTONDOWN: Chooser_OnMouseDown(window, s); return 0;
    case WM_MOUSEMOVE: Chooser_OnMouseMove(window, s); return 0;
    case WM_LBUTTONUP:
        if (s->dragging) {
            s->dragging = false;
            ReleaseCapture();
        }
        return 0;
    case WM_CAPTURECHANGED:
        if (s->dragging && reinterpret_cast<HWND>(lParam) != window) s->dragging = false;
        return 0;
    case PM_NOTIFY: Chooser_OnNotify(window, s, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_CLOSE:
        if (g_mainWindow) SetForegroundWindow(g_mainWindow);
        DestroyWindow(window);
        return 0;
    case WM_DESTROY: Chooser_OnDestroy(window, s); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

void RegisterLanguageChooserClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = Chooser_WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kLanguageChooserClass;
    RegisterClassA(&windowClass);
}

HWND OpenLanguageChooser() {
    ImageObject panel;
    ImageObject_Init(&panel, false);
    ImageObject_LoadFromPack(&panel, kArtLanguagePanel);
    int32_t width = 240, height = 300;
    ImageObject_GetSize(&panel, &width, &height);
    ImageObject_Destroy(&panel);
    if (g_mainWindow) EnableWindow(g_mainWindow, FALSE);
    HWND window = CreateWindowExA(0, kLanguageChooserClass, "", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN,
                                  (g_screenWidth - width) / 2, (g_screenHeight - height) / 2, width, height,
                                  g_mainWindow, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (!window && g_mainWindow) EnableWindow(g_mainWindow, TRUE);
    return window;
}

void ApplyLanguage(int32_t language) {
    g_language = language;
    ReloadTitleButtons();
    if (g_reloadBarLabels) g_reloadBarLabels();
    char text[16];
    std::snprintf(text, sizeof text, "%d", int(language));
    WritePrivateProfileStringA(kSettingsSection, "Idioma", text, SettingsFilePath());
    char caption[90];
    LoadLocalString(STR_PREVIEW, caption, sizeof caption);
    if (g_magnifierWindow) SetWindowTextA(g_magnifierWindow, caption);
}
