// The tool and options bars and their slide-out panels. The two pairs are built alike and differ only in
// orientation, sizes, artwork and buttons, which PairStyle holds.
#include "extras/bars_win32.h"

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/language_chooser_win32.h"
#include "app/launchers_win32.h"
#include "app/shortcuts_win32.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "extras/bar_layout.h"
#include "puzzle/gather.h"
#include "puzzle/model.h"

BarActions g_barActions = {nullptr, nullptr, nullptr, nullptr, LaunchHelp, ToggleMagnifier, CloseMainWindow, nullptr};
BarPair g_toolsPair;
BarPair g_optionsPair;

namespace {

// Showing and hiding never move, resize, reorder or activate anything.
constexpr UINT kQuietPosition = SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;

using ButtonAction = void (*)(HWND button);

void RunAssemble(HWND) {
    if (g_barActions.assemble) g_barActions.assemble();
}

void RunHint(HWND button) {
    if (!g_barActions.hint) return;
    uint8_t state = g_barActions.hint();
    SendMessageA(button, PM_SETENABLE, 0, state);
}

void RunOpenMusic(HWND) {
    if (g_barActions.openMusic) g_barActions.openMusic();
}

void RunOpenHonourRoll(HWND) {
    if (g_barActions.openHonourRoll) g_barActions.openHonourRoll();
}

void RunOpenHelp(HWND) {
    if (g_barActions.openHelp) g_barActions.openHelp();
}

void RunToggleMagnifier(HWND) {
    if (g_barActions.toggleMagnifier) g_barActions.toggleMagnifier();
}

void RunQuit(HWND) {
    if (g_barActions.quit) g_barActions.quit();
}

void RunOpenClothChooser(HWND) {
    if (g_openClothChooser) g_openClothChooser();
}

void RunOpenLanguageChooser(HWND) { OpenLanguageChooser(); }

void RunGatherEdges(HWND) {
    if (g_barActions.gatherEdges) g_barActions.gatherEdges();
    RefreshGatherButton();
}

struct PairStyle {
    bool vertical;  // tools: a column down the left edge, sliding in from the left; options: a row along
                    // the bottom, sliding up
    uint32_t barTileArt, labelArt, panelTileArt;  // labelArt + language
    int32_t barTileWidth, barTileHeight;
    int32_t panelTileWidth, panelTileHeight;
    int buttonCount;
    int fixedButtons;  // placed by the panel's rule; the rest are ours, placed apart
    uint32_t buttonArts[kMaxPanelButtons];
    ButtonAction actions[kMaxPanelButtons];
    int firstHideSlot;  // where the buttons start in the hide list
};

const PairStyle kToolsStyle = {
    true,
    kArtToolsBarTile, kArtToolsBarLabel, kArtToolsPanelTile,
    kToolsBarTileWidth, kToolsBarTileHeight,
    kToolsPanelTileWidth, kToolsPanelTileHeight,
    kToolsButtonCount + 1,
    kToolsButtonCount,
    {kArtAssembleButton, kArtHintButton, kArtMusicButton, kArtHonourButton, kArtGatherEdgesButton},
    {RunAssemble, RunHint, RunOpenMusic, RunOpenHonourRoll, RunGatherEdges},
    0,
};

// The options hide list keeps one slot before its buttons that nothing ever fills; hiding it hides
// nothing. Kept as it is.
const PairStyle kOptionsStyle = {
    false,
    kArtOptionsBarTile, kArtOptionsBarLabel, kArtOptionsPanelTile,
    kOptionsBarTileWidth, kOptionsBarTileHeight,
    kOptionsPanelTileWidth, kOptionsPanelTileHeight,
    kOptionsButtonCount + 2,
    kOptionsButtonCount,
    {kArtHelpButton, kArtPreviewButton, kArtQuitButton, kArtClothButton, kArtLanguageButton},
    {RunOpenHelp, RunToggleMagnifier, RunQuit, RunOpenClothChooser, RunOpenLanguageChooser},
    1,
};

BarRect PanelRect(const PairStyle& st) {
    return st.vertical ? ToolsPanelRect(g_screenWidth, g_screenHeight)
                       : OptionsPanelRect(g_screenWidth, g_screenHeight);
}

BarRect BarRectOf(const PairStyle& st) {
    return st.vertical ? ToolsBarRect(g_screenWidth, g_screenHeight) : OptionsBarRect(g_screenWidth, g_screenHeight);
}

// k counts from 1, as the buttons stand from the top or from the left.
POINT ButtonPlace(const PairStyle& st, int k) {
    if (st.vertical && k > st.fixedButtons) return POINT{0, GatherButtonY(g_screenHeight)};
    if (st.vertical) return POINT{0, ToolsButtonY(g_screenHeight, k)};
    if (k > st.fixedButtons) return POINT{OptionsExtraButtonX(g_screenWidth, k), kOptionsButtonY};
    return POINT{OptionsButtonX(g_screenWidth, k), kOptionsButtonY};
}

POINT LabelPlace(const PairStyle& st) {
    if (st.vertical) return POINT{0, ToolsLabelY(g_screenHeight)};
    return POINT{OptionsLabelX(g_screenWidth), 0};
}

void LoadArt(ImageObject* image, uint32_t id) {
    ImageObject_Init(image, false);
    ImageObject_LoadFromPack(image, id);
}

LPARAM DibParam(const ImageObject* image) { return reinterpret_cast<LPARAM>(ImageObject_Dib(image)); }

// Whole tiles from the update rectangle's top (vertical) or left edge onwards; the textures are uniform,
// so no seam shows where a partial update starts.
void PaintTiles(HDC dc, const RECT& update, const uint8_t* tile, bool vertical, int32_t width, int32_t height) {
    if (!tile) return;
    if (vertical) {
        for (int32_t y = update.top; y < update.bottom; y += height) DrawPackedDib(dc, 0, y, width, height, tile, 0, 0);
    } else {
        for (int32_t x = update.left; x < update.right; x += width) DrawPackedDib(dc, x, 0, width, height, tile, 0, 0);
    }
}

// The panel's backdrop moves in one pixel a frame from outside its edge, drawn as fast as it goes.
void SlideIn(HDC dc, const BarPair* pair, const PairStyle& st) {
    const uint8_t* tile = ImageObject_Dib(&pair->panelTile);
    if (!tile) return;
    BarRect area = PanelRect(st);
    int32_t w = st.panelTileWidth, h = st.panelTileHeight;
    if (st.vertical) {
        for (int32_t x = -w; x <= 0; ++x)
            for (int32_t y = 0; y < area.height; y += h) DrawPackedDib(dc, x, y, w, h, tile, 0, 0);
    } else {
        for (int32_t y = h; y >= 0; --y)
            for (int32_t x = 0; x < area.width; x += w) DrawPackedDib(dc, x, y, w, h, tile, 0, 0);
    }
}

// From the bar: out once, however often the pointer crosses the bar while the panel is out.
void ShowPanel(BarPair* pair, const PairStyle& st) {
    if (pair->shown || !pair->panel) return;
    pair->shown = 1;
    SetWindowPos(pair->panel, nullptr, 0, 0, 0, 0, SWP_SHOWWINDOW | kQuietPosition);
    HDC dc = GetDC(pair->panel);
    if (dc) SlideIn(dc, pair, st);
    if (pair == &g_toolsPair) RefreshGatherButton();
    for (int i = 0; i < st.buttonCount; ++i)
        if (pair->buttons[i]) SetWindowPos(pair->buttons[i], nullptr, 0, 0, 0, 0, SWP_SHOWWINDOW | kQuietPosition);
    if (dc) ReleaseDC(pair->panel, dc);
    // The slide has drawn the options panel in full. The tools panel validates the options panel as well,
    // which costs nothing; kept.
    if (g_optionsPair.panel) ValidateRect(g_optionsPair.panel, nullptr);
    SetTimer(pair->panel, kAutoHideTimer, kAutoHidePeriodMs, nullptr);
}

// The only way a panel goes back: the pointer is found outside it (its far edges still count as inside).
void AutoHide(BarPair* pair, const PairStyle& st) {
    POINT p;
    if (!GetCursorPos(&p)) return;
    ScreenToClient(pair->panel, &p);
    BarRect area = PanelRect(st);
    if (PanelKeepsPointer(p.x, p.y, area.width, area.height)) return;
    KillTimer(pair->panel, kAutoHideTimer);
    pair->shown = 0;
    SetWindowPos(pair->panel, nullptr, 0, 0, 0, 0, SWP_HIDEWINDOW | kQuietPosition);
    for (HWND window : pair->hideList)
        if (window) SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_HIDEWINDOW | kQuietPosition);
}

// --- the bars ---

LRESULT Bar_OnCreate(BarPair* pair, const PairStyle& st, HWND window) {
    pair->bar = window;
    LoadArt(&pair->barTile, st.barTileArt);
    LoadArt(&pair->labelStrip, st.labelArt + uint32_t(g_language));
    POINT at = LabelPlace(st);
    pair->label = CreateWindowExA(0, "CQMCOMMAND", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, at.x, at.y,
                                  kBarLabelSize, kBarLabelSize, window, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (pair->label) SendMessageA(pair->label, PM_SETIMAGE, 0, DibParam(&pair->labelStrip));
    return 0;
}

void Bar_OnDestroy(BarPair* pair) {
    ImageObject_Destroy(&pair->labelStrip);
    ImageObject_Destroy(&pair->barTile);
    pair->label = nullptr;
    pair->bar = nullptr;
}

void Bar_Paint(const BarPair* pair, const PairStyle& st, HDC dc, const RECT& update) {
    PaintTiles(dc, update, ImageObject_Dib(&pair->barTile), st.vertical, st.barTileWidth, st.barTileHeight);
}

void Bar_OnPaint(const BarPair* pair, const PairStyle& st, HWND window) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    if (dc) Bar_Paint(pair, st, dc, paint.rcPaint);
    EndPaint(window, &paint);
}

void Bar_OnNotify(BarPair* pair, const PairStyle& st, WPARAM event, HWND from) {
    if (event == NOTIFY_ENTERED && from && from == pair->label) ShowPanel(pair, st);
}

LRESULT Bar_WindowProc(BarPair* pair, const PairStyle& st, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE: return Bar_OnCreate(pair, st, window);
    case WM_DESTROY: Bar_OnDestroy(pair); return 0;
    case WM_PAINT: Bar_OnPaint(pair, st, window); return 0;
    case WM_MOUSEMOVE: ShowPanel(pair, st); return 0;
    case WM_QUERYNEWPALETTE: InvalidateRect(window, nullptr, FALSE); return 0;
    case PM_NOTIFY: Bar_OnNotify(pair, st, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

// --- the panels ---

// The frame count follows the strip: ten frames, or eleven for a button with a dimmed look.
HWND CreatePanelButton(HWND panel, const ImageObject* strip, POINT at) {
    HWND button = CreateWindowExA(0, "CQMANIM", "", WS_CHILD | WS_CLIPSIBLINGS, at.x, at.y, kPanelButtonSize,
                                  kPanelButtonSize, panel, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (!button) return nullptr;
    int32_t width = 0, height = 0;
    ImageObject_GetSize(strip, &width, &height);
    SendMessageA(button, PM_ANIM_SETROWS, 0, 1);
    SendMessageA(button, PM_ANIM_SETCOLUMNS, 0, width > 10 * kPanelButtonSize ? kGatherDisabledFrame + 1 : 10);
    SendMessageA(button, PM_ANIM_SETFRAME, 0, kButtonRestFrame);
    SendMessageA(button, PM_SETIMAGE, 0, DibParam(strip));
    return button;
}

LRESULT Panel_OnCreate(BarPair* pair, const PairStyle& st, HWND window) {
    pair->panel = window;
    LoadArt(&pair->panelTile, st.panelTileArt);
    for (HWND& slot : pair->hideList) slot = nullptr;
    for (int i = 0; i < st.buttonCount; ++i) {
        LoadArt(&pair->buttonStrips[i], st.buttonArts[i]);
        pair->buttons[i] = CreatePanelButton(window, &pair->buttonStrips[i], ButtonPlace(st, i + 1));
        pair->hideList[st.firstHideSlot + i] = pair->buttons[i];
    }
    pair->shown = 0;
    return 0;
}

void Panel_OnDestroy(BarPair* pair, const PairStyle& st) {
    for (int i = 0; i < st.buttonCount; ++i) ImageObject_Destroy(&pair->buttonStrips[i]);
    ImageObject_Destroy(&pair->panelTile);
    for (HWND& button : pair->buttons) button = nullptr;
    for (HWND& slot : pair->hideList) slot = nullptr;
    pair->shown = 0;
    pair->panel = nullptr;
}

void Panel_Paint(const BarPair* pair, const PairStyle& st, HDC dc, const RECT& update) {
    PaintTiles(dc, update, ImageObject_Dib(&pair->panelTile), st.vertical, st.panelTileWidth, st.panelTileHeight);
}

void Panel_OnPaint(const BarPair* pair, const PairStyle& st, HWND window) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    if (dc) Panel_Paint(pair, st, dc, paint.rcPaint);
    EndPaint(window, &paint);
}

void Panel_OnTimer(BarPair* pair, const PairStyle& st, UINT_PTR id) {
    if (id == kAutoHideTimer && pair->shown) AutoHide(pair, st);
}

// Every button looks after its own glow first; a click then runs the button's action.
void Panel_OnNotify(BarPair* pair, const PairStyle& st, WPARAM event, HWND from) {
    AnimatedButtonFeedback(from, event);
    if (event != NOTIFY_CLICKED || !from) return;
    for (int i = 0; i < st.buttonCount; ++i) {
        if (pair->buttons[i] == from) {
            st.actions[i](from);
            return;
        }
    }
}

LRESULT Panel_WindowProc(BarPair* pair, const PairStyle& st, HWND window, UINT message, WPARAM wParam,
                         LPARAM lParam) {
    switch (message) {
    case WM_CREATE: return Panel_OnCreate(pair, st, window);
    case WM_DESTROY: Panel_OnDestroy(pair, st); return 0;
    case WM_PAINT: Panel_OnPaint(pair, st, window); return 0;
    case WM_TIMER: Panel_OnTimer(pair, st, wParam); return 0;
    case WM_QUERYNEWPALETTE: InvalidateRect(window, nullptr, FALSE); return 0;
    case PM_NOTIFY: Panel_OnNotify(pair, st, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

LRESULT CALLBACK OptionsPanelProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return Panel_WindowProc(&g_optionsPair, kOptionsStyle, window, message, wParam, lParam);
}

LRESULT CALLBACK OptionsBarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return Bar_WindowProc(&g_optionsPair, kOptionsStyle, window, message, wParam, lParam);
}

LRESULT CALLBACK ToolsPanelProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return Panel_WindowProc(&g_toolsPair, kToolsStyle, window, message, wParam, lParam);
}

LRESULT CALLBACK ToolsBarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return Bar_WindowProc(&g_toolsPair, kToolsStyle, window, message, wParam, lParam);
}

// Class style 32 (CS_OWNDC), the arrow, no brush: every pixel is painted by the window itself.
void RegisterBarClass(HINSTANCE instance, const char* name, WNDPROC procedure) {
    WNDCLASSA windowClass = {};
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = name;
    RegisterClassA(&windowClass);
}

HWND CreateBarWindow(HWND parent, const char* className, const BarRect& place, DWORD visible) {
    return CreateWindowExA(0, className, "", WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | visible, place.x, place.y,
                           place.width, place.height, parent, nullptr, GetModuleHandleA(nullptr), nullptr);
}

}  // namespace

void RegisterBarClasses(HINSTANCE instance) {
    RegisterBarClass(instance, kOptionsPanelClass, OptionsPanelProc);
    RegisterBarClass(instance, kOptionsBarClass, OptionsBarProc);
    RegisterBarClass(instance, kToolsPanelClass, ToolsPanelProc);
    RegisterBarClass(instance, kToolsBarClass, ToolsBarProc);
}

bool CreateBars(HWND parent) {
    // The panels come first and so lie above the bars they slide out over.
    HWND optionsPanel = CreateBarWindow(parent, kOptionsPanelClass, PanelRect(kOptionsStyle), 0);
    HWND toolsPanel = CreateBarWindow(parent, kToolsPanelClass, PanelRect(kToolsStyle), 0);
    HWND optionsBar = CreateBarWindow(parent, kOptionsBarClass, BarRectOf(kOptionsStyle), WS_VISIBLE);
    HWND toolsBar = CreateBarWindow(parent, kToolsBarClass, BarRectOf(kToolsStyle), WS_VISIBLE);
    g_reloadBarLabels = ReloadBarLabels;
    return optionsPanel && toolsPanel && optionsBar && toolsBar;
}

void ResetHintButton() {
    HWND button = g_toolsPair.buttons[kHintButton];
    if (!button) return;
    SendMessageA(button, PM_SETENABLE, 0, 1);
    SendMessageA(button, PM_ANIM_SETUSERVALUE, 0, 0);
    SendMessageA(button, PM_ANIM_SETFRAME, 0, kButtonRestFrame);
}

HWND HintButton() { return g_toolsPair.buttons[kHintButton]; }
HWND GatherEdgesButton() { return g_toolsPair.buttons[kGatherEdgesButton]; }

static void PressPanelButton(BarPair* pair, const PairStyle& st, int index) {
    if (index < 0 || index >= st.buttonCount || !st.actions[index]) return;
    HWND button = pair->buttons[index];
    if (button && !SendMessageA(button, PM_GETENABLE, 0, 0)) return;
    st.actions[index](button);
}

void PressToolsButton(int index) { PressPanelButton(&g_toolsPair, kToolsStyle, index); }
void PressOptionsButton(int index) { PressPanelButton(&g_optionsPair, kOptionsStyle, index); }

void RefreshGatherButton() {
    HWND button = GatherEdgesButton();
    if (!button) return;
    const bool can = CanGatherEdgePieces(&g_puzzle);
    const bool enabled = SendMessageA(button, PM_GETENABLE, 0, 0) != 0;
    const int32_t frame = int32_t(SendMessageA(button, PM_ANIM_GETFRAME, 0, 0));
    if (can == enabled && (can || frame == kGatherDisabledFrame)) return;
    SendMessageA(button, PM_SETENABLE, 0, can ? 1 : 0);
    SendMessageA(button, PM_ANIM_SETRUNNING, 0, 0);
    SendMessageA(button, PM_ANIM_SETUSERVALUE, 0, 0);
    SendMessageA(button, PM_ANIM_SETFRAME, 0, can ? kButtonRestFrame : kGatherDisabledFrame);
}

void ReloadBarLabels() {
    const PairStyle* styles[] = {&kToolsStyle, &kOptionsStyle};
    BarPair* pairs[] = {&g_toolsPair, &g_optionsPair};
    for (int i = 0; i < 2; ++i) {
        BarPair* pair = pairs[i];
        if (!pair->label) continue;
        ImageObject_LoadFromPack(&pair->labelStrip, styles[i]->labelArt + uint32_t(g_language));
        SendMessageA(pair->label, PM_SETIMAGE, 0, DibParam(&pair->labelStrip));
    }
}

void ToggleMagnifier() {
    HWND magnifier = g_magnifierWindow;
    if (!magnifier) return;
    UINT showOrHide = IsWindowVisible(magnifier) ? SWP_HIDEWINDOW : SWP_SHOWWINDOW;
    SetWindowPos(magnifier, nullptr, 0, 0, 0, 0,
                 showOrHide | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void CloseMainWindow() {
    if (g_mainWindow) SendMessageA(g_mainWindow, WM_CLOSE, 0, 0);
}
