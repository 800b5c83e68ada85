// The new-puzzle screen: the panel with its four pages, the thumbnail slots, and the notifications that
// keep the sliders, the choosers and the numbers in step.
#include "setup/new_puzzle_win32.h"

#include <vfw.h>

#include <cstdio>
#include <cstring>
#include <new>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/launchers_win32.h"
#include "app/platform.h"
#include "app/strings_win32.h"
#include "app/theme.h"
#include "app/title_window_win32.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/bmp_reader.h"
#include "gfx/dib.h"
#include "puzzle/model.h"
#include "puzzle/picture.h"
#include "setup/chooser_classes_win32.h"
#include "setup/choosers.h"
#include "setup/count_chooser_win32.h"
#include "setup/size_chooser_win32.h"

NewPuzzleScreen g_newPuzzle;
void (*g_startNewGame)(int32_t shape) = nullptr;

namespace {

// Captions and numbers stand on the page's parchment: dark ink reads there, the ivory of the wood does not.
constexpr COLORREF kPageInkColor = RGB(58, 32, 11);
// The chosen thumbnail's frame is gold, the colour of a list's chosen entry: the ivory of texts on the
// wood would vanish against the parchment around the slots.
constexpr COLORREF kSelectionFrameColor = kSelectedTextColor;
constexpr int32_t kLabelHeight = 16;
constexpr int32_t kDecorationFrames = 10;
constexpr int32_t kAnimButtonSize = 50;  // one frame of an animated button's strip
// The wipe's pace: about an eighth of a second for the whole page.
constexpr double kWipeStripSeconds = 0.002;

const uint32_t kTabArt[kNewPuzzlePageCount] = {kArtTabPictures, kArtTabSize, kArtTabPieces, kArtTabShape};
const uint32_t kShapeCheckArt[kShapeCount] = {kArtShapeClassicCheck, kArtShapeDovetailCheck, kArtShapeWaveCheck};
const int kCaptionBases[kCaptionCount] = {STR_ROWS, STR_COLUMNS, STR_PIECE_COUNT};

// Zone heights of the scroll strips: upper button, middle, lower button.
const int32_t kSliderZones[3] = {26, 108, 26};
const int32_t kImageScrollZones[3] = {26, 76, 26};

uint32_t ArtId(int art) {
    uint32_t language = uint32_t(g_language);
    if (art >= ART_TAB_FIRST && art < ART_TAB_FIRST + kNewPuzzlePageCount)
        return kTabArt[art - ART_TAB_FIRST] + language;
    if (art >= ART_SHAPE_CHECK_FIRST && art < ART_SHAPE_CHECK_FIRST + kShapeCount)
        return kShapeCheckArt[art - ART_SHAPE_CHECK_FIRST] + language;
    switch (art) {
    case ART_PANEL: return kArtNewPuzzlePanel + language;
    case ART_CLOSE: return kArtNewPuzzleCloseButton;
    case ART_HELP: return kArtNewPuzzleHelpButton;
    case ART_FIT_SIZE: return kArtFitSizeButton;
    case ART_ACTUAL_SIZE: return kArtActualSizeButton;
    case ART_START: return kArtStartButton;
    case ART_SHAPE_PICTURE: return kArtShapePicture;
    case ART_DECORATION: return kArtSpinningPiece;
    case ART_ZOOM_SCROLL: return kArtZoomScroll;
    case ART_COUNT_SCROLL: return kArtCountScroll;
    default: return kArtImageListScroll;
    }
}

const uint8_t* Art(int art) { return ImageObject_Dib(&g_newPuzzle.art[art]); }
LPARAM ArtParam(int art) { return reinterpret_cast<LPARAM>(Art(art)); }
const uint8_t* Backdrop() { return Art(ART_PANEL); }

// Paints an area of a window from the panel's backdrop, the window standing at origin in the panel;
// black without a backdrop.
void PaintBackdropPart(HDC dc, const RECT& area, POINT origin) {
    int32_t width = area.right - area.left, height = area.bottom - area.top;
    if (width < 1 || height < 1) return;
    const uint8_t* backdrop = Backdrop();
    if (!backdrop) {
        BitBlt(dc, area.left, area.top, width, height, nullptr, 0, 0, BLACKNESS);
        return;
    }
    DrawPackedDib(dc, area.left, area.top, width, height, backdrop, area.left + origin.x, area.top + origin.y);
}

POINT PlaceInParent(HWND child) {
    RECT r = {};
    GetWindowRect(child, &r);
    MapWindowPoints(HWND_DESKTOP, GetParent(child), reinterpret_cast<POINT*>(&r), 2);
    return POINT{r.left, r.top};
}

// ---- Building the children ----

HWND MakeChild(HWND panel, const char* className, Point at, int32_t width, int32_t height, int id, bool visible) {
    DWORD style = WS_CHILD | WS_CLIPSIBLINGS | (visible ? WS_VISIBLE : 0);
    return CreateWindowExA(0, className, "", style, at.x, at.y, width, height, panel,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleA(nullptr), nullptr);
}

HWND MakeCommandButton(HWND panel, int art, Point at) {
    HWND button = MakeChild(panel, "CQMCOMMAND", at, 50, 50, 0, true);
    SendMessageA(button, PM_SETIMAGE, 0, ArtParam(art));
    return button;
}

// A radio `CQMCHECK`: a click can check it, never uncheck it; the screen unchecks the others.
HWND MakeRadio(HWND panel, int art, Point at, int32_t width, int32_t height, int id, bool visible) {
    HWND box = MakeChild(panel, "CQMCHECK", at, width, height, id, visible);
    SendMessageA(box, PM_SETRADIO, 0, 1);
    SendMessageA(box, PM_SETIMAGE, 0, ArtParam(art));
    return box;
}

// A `CQMANIM` sized to one frame of its grid (the control keeps the size it is made with).
HWND MakeAnimation(HWND panel, int art, Point at, int32_t rows, int32_t columns, bool visible) {
    int32_t width, height;
    if (!PackedDibSize(Art(art), &width, &height)) {
        width = kAnimButtonSize * columns;
        height = kAnimButtonSize * rows;
    }
    HWND anim = MakeChild(panel, "CQMANIM", at, width / columns, height / rows, 0, visible);
    SendMessageA(anim, PM_ANIM_SETROWS, 0, rows);
    SendMessageA(anim, PM_ANIM_SETCOLUMNS, 0, columns);
    SendMessageA(anim, PM_ANIM_SETFRAME, 0, 0);
    SendMessageA(anim, PM_SETIMAGE, 0, ArtParam(art));
    return anim;
}

HWND MakeScroll(HWND panel, int art, Point at, const int32_t zones[3], bool visible) {
    HWND scroll = MakeChild(panel, "CQMSROLL", at, 30, zones[0] + zones[1] + zones[2], 0, visible);
    SendMessageA(scroll, PM_SETIMAGE, 0, ArtParam(art));
    SendMessageA(scroll, PM_SCR_SETUPPERHEIGHT, 0, zones[0]);
    SendMessageA(scroll, PM_SCR_SETMIDDLEHEIGHT, 0, zones[1]);
    SendMessageA(scroll, PM_SCR_SETLOWERHEIGHT, 0, zones[2]);
    return scroll;
}

// A plain text on the page: disabled, so it neither lights up nor reacts, drawn in the page's ink.
HWND MakeLabel(HWND panel, Point at, int32_t weight, const char* text) {
    HWND label = MakeChild(panel, "CQMTXT", at, 10, 10, 0, false);
    SendMessageA(label, PM_SETENABLE, 0, 0);
    SendMessageA(label, PM_TXT_SETDISABLEDCOLOR, 0, kPageInkColor);
    SendMessageA(label, PM_TXT_SETTEXTCOLOR, 0, kPageInkColor);
    SendMessageA(label, PM_TXT_SETHEIGHT, 0, kLabelHeight);
    SendMessageA(label, PM_TXT_SETNORMALWEIGHT, 0, weight);
    SendMessageA(label, PM_TXT_SETLITWEIGHT, 0, weight);
    SendMessageA(label, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(Backdrop()));
    SendMessageA(label, PM_TXT_SETFACE, 0, reinterpret_cast<LPARAM>(kCommonFontFace));
    SendMessageA(label, PM_TXT_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    return label;
}

// The captions in their column, then the numbers in a column of their own just right of the widest.
void MakeCaptionsAndNumbers(NewPuzzleScreen* s, HWND panel) {
    int32_t numbersLeft = kCaptionLeft;
    for (int i = 0; i < kCaptionCount; ++i) {
        char caption[kLabelTextLimit];
        LoadLocalString(kCaptionBases[i], caption, sizeof caption);
        s->captions[i] = MakeLabel(panel, Point{kCaptionLeft, kCaptionTops[i]}, FW_NORMAL, caption);
        RECT r = {};
        GetWindowRect(s->captions[i], &r);
        int32_t right = kCaptionLeft + (r.right - r.left) + kNumberGap;
        if (right > numbersLeft) numbersLeft = right;
    }
    for (int i = 0; i < kCaptionCount; ++i)
        s->numbers[i] = MakeLabel(panel, Point{numbersLeft, kCaptionTops[i]}, FW_BOLD, "0");
}

// ---- Pages ----

// The controls a page shows; the rest of the panel (tabs, close, help, start, decoration) always shows.
int PageControls(const NewPuzzleScreen* s, int32_t page, HWND* out) {
    int n = 0;
    switch (page) {
    case PAGE_PICTURES:
        for (HWND slot : s->slots) out[n++] = slot;
        out[n++] = s->imageScroll;
        break;
    case PAGE_SIZE:
        out[n++] = s->fitSizeButton;
        out[n++] = s->actualSizeButton;
        out[n++] = s->zoomSlider;
        out[n++] = s->sizeChooser;
        break;
    case PAGE_PIECES:
        out[n++] = s->countChooser;
        out[n++] = s->countSlider;
        for (HWND caption : s->captions) out[n++] = caption;
        for (HWND number : s->numbers) out[n++] = number;
        break;
    default:
        for (HWND check : s->shapeChecks) out[n++] = check;
        out[n++] = s->shapePicture;
        break;
    }
    return n;
}

void ShowPage(const NewPuzzleScreen* s, int32_t page, bool show) {
    HWND controls[16];
    int n = PageControls(s, page, controls);
    for (int i = 0; i < n; ++i)
        if (controls[i]) ShowWindow(controls[i], show ? SW_SHOWNA : SW_HIDE);
}

// Waits until the wipe's next strip is due; spinning, because the system's sleep is far too coarse
// for a pace of a few milliseconds.
void WaitUntil(const LARGE_INTEGER& start, double frequency, double seconds) {
    for (;;) {
        LARGE_INTEGER now;
        QueryPerformanceCounter(&now);
        if (double(now.QuadPart - start.QuadPart) / frequency >= seconds) return;
        Sleep(0);
    }
}

// The old page's area closes in 4-pixel strips from the top, each strip repainted from a capture of
// the empty page, so the player sees the page cleared before the new one appears. The panel clips its
// children, so the buttons that stay over the area are left alone.
void WipePageArea(NewPuzzleScreen* s) {
    HDC dc = GetDC(s->panel);
    HDC capture = CreateCompatibleDC(dc);
    HBITMAP bitmap = CreateCompatibleBitmap(dc, kPageArea.width, kPageArea.height);
    if (capture && bitmap) {
        HGDIOBJ old = SelectObject(capture, bitmap);
        RECT all = {0, 0, kPageArea.width, kPageArea.height};
        PaintBackdropPart(capture, all, POINT{kPageArea.x, kPageArea.y});
        LARGE_INTEGER frequency, start;
        QueryPerformanceFrequency(&frequency);
        QueryPerformanceCounter(&start);
        for (int32_t k = 0; k < WipeStripCount(); ++k) {
            Rect strip = WipeStrip(k);
            BitBlt(dc, kPageArea.x + strip.x, kPageArea.y + strip.y, strip.width, strip.height, capture, strip.x,
                   strip.y, SRCCOPY);
            GdiFlush();
            ++s->wipeStrips;
            WaitUntil(start, double(frequency.QuadPart), kWipeStripSeconds * (k + 1));
        }
        SelectObject(capture, old);
    }
    if (bitmap) DeleteObject(bitmap);
    if (capture) DeleteDC(capture);
    ReleaseDC(s->panel, dc);
}

void SwitchPage(NewPuzzleScreen* s, int32_t page) {
    ShowPage(s, s->page, false);
    WipePageArea(s);
    ShowPage(s, page, true);
    s->page = page;
}

// ---- Keeping the sliders, the choosers and the numbers in step ----

int32_t PositionOf(HWND scroll) { return int32_t(SendMessageA(scroll, PM_SCR_GETPOSITION, 0, 0)); }

// Range first, then a step of 1 (a narrow range may have shrunk it to 0), then the position.
void SetScrollValues(HWND scroll, int32_t minimum, int32_t maximum, int32_t position) {
    SendMessageA(scroll, PM_SCR_SETMAXIMUM, 0, maximum);
    SendMessageA(scroll, PM_SCR_SETMINIMUM, 0, minimum);
    SendMessageA(scroll, PM_SCR_SETSTEP, 0, 1);
    SendMessageA(scroll, PM_SCR_SETPOSITION, 0, position);
}

void SetNumber(HWND label, int64_t value) {
    char text[24];
    std::snprintf(text, sizeof text, "%lld", static_cast<long long>(value));
    SendMessageA(label, PM_TXT_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
}

void RefreshNumbers(const NewPuzzleScreen* s) {
    SetNumber(s->numbers[0], g_puzzle.rows);
    SetNumber(s->numbers[1], g_puzzle.cols);
    SetNumber(s->numbers[2], int64_t(g_puzzle.rows) * g_puzzle.cols);
}

void RefreshCountSlider(const NewPuzzleScreen* s) {
    SetScrollValues(s->countSlider, 0, GetCountSteps(), GetCountPosition());
}

// After the zoom changed anywhere but on the zoom slider: the slider follows, and since every change of
// zoom starts again from the most pieces, so do the count slider and the numbers.
void RefreshAfterZoomChange(const NewPuzzleScreen* s) {
    SetScrollValues(s->zoomSlider, 0, 100, GetZoomPercent());
    RefreshCountSlider(s);
    RefreshNumbers(s);
}

void ThumbnailPath(const NewPuzzleScreen* s, int32_t entry, char* path, size_t size) {
    char name[256];
    FileNameAt(&s->images, entry, false, name, sizeof name);
    std::snprintf(path, size, "%sImage\\%s", g_appFolder, name);
}

void LoadSlotThumbnail(HWND slot, const char* path);

void RefreshThumbnails(const NewPuzzleScreen* s) {
    int32_t position = PositionOf(s->imageScroll);
    for (int32_t i = 0; i < kThumbnailSlotCount; ++i) {
        int32_t entry = SlotEntry(i, position, s->images.count);
        char path[kPathCapacity + 8];
        if (entry >= 0) ThumbnailPath(s, entry, path, sizeof path);
        LoadSlotThumbnail(s->slots[i], entry >= 0 ? path : nullptr);
    }
}

// The photograph already current, when it is one of the list's, counts as chosen: the start button
// would cut it, so its slot shows the frame.
int32_t FindChosenEntry(const NewPuzzleScreen* s) {
    if (!g_choosers.image_chosen || !CurrentPicture()) return -1;
    for (int32_t i = 0; i < s->images.count; ++i) {
        char path[kPathCapacity + 8];
        ThumbnailPath(s, i, path, sizeof path);
        if (lstrcmpiA(path, CurrentPicturePath()) == 0) return i;
    }
    return -1;
}

// A slot was clicked: its photograph becomes the current one and the choosers start from it.
void ChooseSlot(NewPuzzleScreen* s, int32_t slot) {
    int32_t entry = SlotEntry(slot, PositionOf(s->imageScroll), s->images.count);
    if (entry < 0) return;
    PlayInterfaceSound(g_clickSound);
    char path[kPathCapacity + 8];
    ThumbnailPath(s, entry, path, sizeof path);
    if (!LoadCurrentPicture(path)) return;
    s->selection = entry;
    PrepareImageForSizing();
    RefreshAfterZoomChange(s);
    for (HWND other : s->slots) InvalidateRect(other, nullptr, FALSE);
}

// ---- Notifications ----

bool IsAnimatedButton(const NewPuzzleScreen* s, HWND control) {
    return control == s->fitSizeButton || control == s->actualSizeButton || control == s->startButton;
}

// The animated buttons and the shape picture are silent controls; the screen gives them the command
// buttons' hover and click sounds.
void PlayControlSound(const NewPuzzleScreen* s, HWND control, WPARAM event) {
    bool sounding = IsAnimatedButton(s, control) || control == s->shapePicture;
    if (!sounding) return;
    if (event == NOTIFY_ENTERED && control != s->shapePicture) PlayInterfaceSound(g_hoverSound);
    if (event == NOTIFY_CLICKED) PlayInterfaceSound(g_clickSound);
}

void SetShapePicture(const NewPuzzleScreen* s) { SendMessageA(s->shapePicture, PM_ANIM_SETFRAME, 0, s->shape); }

void OnShapeCheck(NewPuzzleScreen* s, int32_t shape) {
    if (shape == s->shape) return;
    SendMessageA(s->shapeChecks[s->shape], PM_SETCHECKED, 0, 0);
    s->shape = shape;
    SetShapePicture(s);
}

void OnShapePicture(NewPuzzleScreen* s) {
    SendMessageA(s->shapeChecks[s->shape], PM_SETCHECKED, 0, 0);
    s->shape = NextShape(s->shape);
    SetShapePicture(s);
    SendMessageA(s->shapeChecks[s->shape], PM_SETCHECKED, 0, 1);
}

// The tab of the page already shown cannot be unchecked by a click and sends nothing; even so, a click
// on it changes nothing.
void OnTab(NewPuzzleScreen* s, int32_t page) {
    if (page == s->page) return;
    SendMessageA(s->tabs[s->page], PM_SETCHECKED, 0, 0);
    SwitchPage(s, page);
}

void StepDecoration(const NewPuzzleScreen* s) {
    int32_t frame = int32_t(SendMessageA(s->decoration, PM_ANIM_GETFRAME, 0, 0));
    SendMessageA(s->decoration, PM_ANIM_SETFRAME, 0, (frame + 1) % kDecorationFrames);
}

void OnChooserNotice(NewPuzzleScreen* s, HWND chooser) {
    if (chooser == s->sizeChooser) {
        RefreshAfterZoomChange(s);
        return;
    }
    RefreshCountSlider(s);
    RefreshNumbers(s);
}

void OnClicked(NewPuzzleScreen* s, HWND panel, HWND control) {
    int id = GetDlgCtrlID(control);
    // Tabs by id first: the slots share these ids but never notify.
    if (id >= kTabId && id < kTabId + kNewPuzzlePageCount) return OnTab(s, id - kTabId);
    if (id >= kShapeCheckId && id < kShapeCheckId + kShapeCount) return OnShapeCheck(s, id - kShapeCheckId);
    if (control == s->shapePicture) return OnShapePicture(s);
    if (control == s->zoomSlider) {
        SetZoomPercent(PositionOf(s->zoomSlider));
        RefreshCountSlider(s);
        RefreshNumbers(s);
        return;
    }
    if (control == s->countSlider) {
        SetCountPosition(PositionOf(s->countSlider));
        RefreshNumbers(s);
        return;
    }
    if (control == s->fitSizeButton || control == s->actualSizeButton) {
        if (control == s->fitSizeButton) ZoomToFit();
        else ZoomToActualSize();
        RefreshAfterZoomChange(s);
        return;
    }
    if (control == s->imageScroll) return RefreshThumbnails(s);
    if (control == s->helpButton) return LaunchHelp();
    if (control == s->startButton) {
        if (g_startNewGame) g_startNewGame(s->shape);
        SendMessageA(panel, WM_CLOSE, 0, 0);
        return;
    }
    if (control == s->closeButton) SendMessageA(panel, WM_CLOSE, 0, 0);
}

// ---- The panel's window procedure ----

LRESULT NewPuzzle_OnCreate(HWND panel) {
    NewPuzzleScreen* s = &g_newPuzzle;
    if (s->panel) return -1;  // one screen at a time
    *s = NewPuzzleScreen();
    s->panel = panel;
    s->selection = -1;
    for (int i = 0; i < NEW_PUZZLE_ART_COUNT; ++i) {
        ImageObject_Init(&s->art[i], false);
        ImageObject_LoadFromPack(&s->art[i], ArtId(i));
    }
    InitFileNameList(&s->images);
    char pattern[kPathCapacity + 16];
    std::snprintf(pattern, sizeof pattern, "%sImage\\*.bmp", g_appFolder);
    FillFileNameList(&s->images, pattern);

    s->closeButton = MakeCommandButton(panel, ART_CLOSE, kCloseButtonAt);
    s->helpButton = MakeCommandButton(panel, ART_HELP, kHelpButtonAt);
    for (int i = 0; i < kNewPuzzlePageCount; ++i)
        s->tabs[i] = MakeRadio(panel, ART_TAB_FIRST + i, Point{TabLeft(i), kTabTop}, 120, 36, kTabId + i, true);
    SendMessageA(s->tabs[PAGE_PICTURES], PM_SETCHECKED, 0, 1);
    for (int k = 0; k < kShapeCount; ++k)
        s->shapeChecks[k] = MakeRadio(panel, ART_SHAPE_CHECK_FIRST + k, ShapeCheckPlace(k), 150, 32, kShapeCheckId + k,
                                      false);
    SendMessageA(s->shapeChecks[0], PM_SETCHECKED, 0, 1);

    s->fitSizeButton = MakeAnimation(panel, ART_FIT_SIZE, kFitSizeButtonAt, 1, 10, false);
    s->actualSizeButton = MakeAnimation(panel, ART_ACTUAL_SIZE, kActualSizeButtonAt, 1, 10, false);
    s->startButton = MakeAnimation(panel, ART_START, kStartButtonAt, 1, 10, true);
    s->shapePicture = MakeAnimation(panel, ART_SHAPE_PICTURE, kShapePictureAt, kShapeCount, 1, false);
    s->decoration = MakeAnimation(panel, ART_DECORATION, kDecorationAt, 1, kDecorationFrames, true);
    SendMessageA(s->decoration, PM_ANIM_SETRUNNING, 0, 1);

    s->zoomSlider = MakeScroll(panel, ART_ZOOM_SCROLL, kSliderAt, kSliderZones, false);
    s->countSlider = MakeScroll(panel, ART_COUNT_SCROLL, kSliderAt, kSliderZones, false);
    s->imageScroll = MakeScroll(panel, ART_IMAGE_SCROLL, kImageScrollAt, kImageScrollZones, true);
    SetScrollValues(s->imageScroll, ImageScrollMinimum(s->images.count), 0, 0);
    MakeCaptionsAndNumbers(s, panel);
    for (int i = 0; i < kThumbnailSlotCount; ++i)
        s->slots[i] = MakeChild(panel, kThumbnailSlotClass, Point{SlotLeft(i), kSlotTop}, kSlotWidth, kSlotHeight,
                                kSlotId + i, true);

    s->sizeChooser = CreateSizeChooser(panel);
    s->countChooser = CreateCountChooser(panel, Backdrop());
    if (s->sizeChooser) ShowWindow(s->sizeChooser, SW_HIDE);
    if (s->countChooser) ShowWindow(s->countChooser, SW_HIDE);

    s->page = PAGE_PICTURES;
    s->selection = FindChosenEntry(s);
    RefreshThumbnails(s);
    RefreshAfterZoomChange(s);
    return 0;
}

void NewPuzzle_Paint(HDC dc, const RECT& area) { PaintBackdropPart(dc, area, POINT{0, 0}); }

void NewPuzzle_OnPaint(HWND panel) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(panel, &paint);
    NewPuzzle_Paint(dc, paint.rcPaint);
    EndPaint(panel, &paint);
}

void NewPuzzle_OnPrintClient(HWND panel, HDC dc) {
    RECT all = {};
    GetClientRect(panel, &all);
    NewPuzzle_Paint(dc, all);
}

void NewPuzzle_OnNotify(HWND panel, WPARAM event, HWND control) {
    NewPuzzleScreen* s = &g_newPuzzle;
    // The choosers report a drag with the controls' message and wParam 0: tell them apart first.
    if (control && (control == s->sizeChooser || control == s->countChooser)) {
        if (event == kChooserChanged) OnChooserNotice(s, control);
        return;
    }
    if (control == s->decoration) {
        if (event == NOTIFY_SPECIAL) StepDecoration(s);
        return;
    }
    if (IsAnimatedButton(s, control)) AnimatedButtonFeedback(control, event);
    PlayControlSound(s, control, event);
    if (event == NOTIFY_CLICKED) OnClicked(s, panel, control);
}

// A press on the panel's own background moves the whole panel with the pointer.
void NewPuzzle_OnLButtonDown(HWND panel, int x, int y) {
    NewPuzzleScreen* s = &g_newPuzzle;
    s->anchor = POINT{x, y};
    ClientToScreen(panel, &s->anchor);
    s->dragging = true;
    SetCapture(panel);
}

void NewPuzzle_OnMouseMove(HWND panel, int x, int y) {
    NewPuzzleScreen* s = &g_newPuzzle;
    if (!s->dragging) return;
    POINT now = {x, y};
    ClientToScreen(panel, &now);
    if (now.x == s->anchor.x && now.y == s->anchor.y) return;
    RECT at = {};
    GetWindowRect(panel, &at);
    SetWindowPos(panel, nullptr, at.left + now.x - s->anchor.x, at.top + now.y - s->anchor.y, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOOWNERZORDER | SWP_NOACTIVATE);
    s->anchor = now;
}

void NewPuzzle_OnLButtonUp(HWND panel) {
    NewPuzzleScreen* s = &g_newPuzzle;
    if (!s->dragging) return;
    s->dragging = false;  // before the release, whose WM_CAPTURECHANGED must find the move over
    if (GetCapture() == panel) ReleaseCapture();
}

void NewPuzzle_OnCaptureChanged(HWND panel, HWND newOwner) {
    if (newOwner != panel) g_newPuzzle.dragging = false;
}

void EnableOwner(HWND panel) {
    HWND owner = GetWindow(panel, GW_OWNER);
    if (owner) EnableWindow(owner, TRUE);
}

void NewPuzzle_OnClose(HWND panel) {
    EnableOwner(panel);
    if (g_mainWindow) SetForegroundWindow(g_mainWindow);
    DestroyWindow(panel);
}

void NewPuzzle_OnDestroy(HWND panel) {
    SendMessageA(g_newPuzzle.decoration, PM_ANIM_SETRUNNING, 0, 0);
    EnableOwner(panel);
}

// Last of all, once every child is gone: the pictures the children drew from can be freed.
void NewPuzzle_OnNcDestroy() {
    NewPuzzleScreen* s = &g_newPuzzle;
    for (ImageObject& image : s->art) ImageObject_Destroy(&image);
    FreeFileNameList(&s->images);
    *s = NewPuzzleScreen();
}

LRESULT CALLBACK NewPuzzleProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return NewPuzzle_OnCreate(hwnd);
    if (g_newPuzzle.panel != hwnd) return DefWindowProcA(hwnd, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: NewPuzzle_OnPaint(hwnd); return 0;
    case WM_PRINTCLIENT: NewPuzzle_OnPrintClient(hwnd, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;  // the backdrop covers everything
    case PM_NOTIFY: NewPuzzle_OnNotify(hwnd, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_LBUTTONDOWN: NewPuzzle_OnLButtonDown(hwnd, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_MOUSEMOVE: NewPuzzle_OnMouseMove(hwnd, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONUP: NewPuzzle_OnLButtonUp(hwnd); return 0;
    case WM_CAPTURECHANGED: NewPuzzle_OnCaptureChanged(hwnd, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_CLOSE: NewPuzzle_OnClose(hwnd); return 0;
    case WM_DESTROY: NewPuzzle_OnDestroy(hwnd); return 0;
    case WM_NCDESTROY: NewPuzzle_OnNcDestroy(); break;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

// ---- Thumbnail slots ----

struct ThumbnailSlot {
    HWND hwnd;
    uint8_t* header;   // 1,064-byte bitmap header block: the thumbnail's header and colour table
    uint8_t* pixels;   // its rows, or null while the slot is empty
    HDRAWDIB drawDib;
    bool pressed;      // the left button went down on the slot and is held
    Rect place;        // the thumbnail in slot coordinates
};

ThumbnailSlot* SlotOf(HWND hwnd) { return reinterpret_cast<ThumbnailSlot*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA)); }

int32_t SlotIndex(const ThumbnailSlot* slot) { return GetDlgCtrlID(slot->hwnd) - kSlotId; }

void FreeThumbnail(ThumbnailSlot* slot) {
    if (slot->pixels) SysFreeBlock(slot->pixels);
    slot->pixels = nullptr;
    slot->place = Rect{0, 0, 0, 0};
}

// Reads the file resampled straight to its thumbnail size. Files the reader cannot resample, or whose
// colour table would not fit the header block, leave the slot empty.
bool ReadThumbnail(ThumbnailSlot* slot, const char* path) {
    BmpFileReader reader;
    InitBmpReader(&reader);
    bool ok = false;
    int32_t width = 0, height = 0;
    if (OpenBmp(&reader, path) && BmpSize(&reader, &width, &height) && reader.colorCount <= kDibMaxColors) {
        DibHeader file = {};
        BmpHeader(&reader, &file);
        Rect place = PlaceThumbnail(width, height < 0 ? -height : height);
        int64_t bytes = BmpResampledBytes(&reader, place.width, place.height);
        uint16_t bits = file.biBitCount;
        bool knownDepth = bits == 4 || bits == 8 || bits == 24 || bits == 32;
        uint8_t* pixels = knownDepth && bytes > 0 ? static_cast<uint8_t*>(SysAllocBlock(size_t(bytes))) : nullptr;
        // A positive height asks for bottom-up rows whatever the file's order.
        if (pixels && BmpInfo(&reader, slot->header) && ReadBmpResampled(&reader, place.width, place.height, pixels)) {
            DibHeader* h = DibHeaderOf(slot->header);
            h->biSize = kDibHeaderBytes;
            h->biWidth = place.width;
            h->biHeight = place.height;
            h->biCompression = 0;
            h->biSizeImage = uint32_t(bytes);
            h->biClrUsed = reader.colorCount;
            slot->pixels = pixels;
            slot->place = place;
            ok = true;
        } else if (pixels) {
            SysFreeBlock(pixels);
        }
    }
    CloseBmp(&reader);
    return ok;
}

void LoadSlotThumbnail(HWND hwnd, const char* path) {
    ThumbnailSlot* slot = SlotOf(hwnd);
    if (!slot) return;
    FreeThumbnail(slot);
    if (path) ReadThumbnail(slot, path);
    InvalidateRect(hwnd, nullptr, FALSE);
}

bool SlotShowsSelection(const ThumbnailSlot* slot) {
    const NewPuzzleScreen* s = &g_newPuzzle;
    if (s->selection < 0 || !s->imageScroll) return false;
    return SlotEntry(SlotIndex(slot), PositionOf(s->imageScroll), s->images.count) == s->selection;
}

// The selection frame: a 2-pixel band hugging the thumbnail.
void PaintSelectionFrame(HDC dc, const Rect& place) {
    HBRUSH brush = CreateSolidBrush(kSelectionFrameColor);
    int32_t band = kSelectionFrameWidth;
    int32_t left = place.x - band, top = place.y - band, right = place.x + place.width + band,
            bottom = place.y + place.height + band;
    RECT sides[4] = {{left, top, right, place.y},
                     {left, place.y + place.height, right, bottom},
                     {left, place.y, place.x, place.y + place.height},
                     {place.x + place.width, place.y, right, place.y + place.height}};
    for (const RECT& side : sides) FillRect(dc, &side, brush);
    DeleteObject(brush);
}

// The thumbnail centred, the backdrop around it, and the frame on the chosen or pressed slot.
void Slot_Paint(ThumbnailSlot* slot, HDC dc, const RECT& area) {
    int saved = SaveDC(dc);
    if (slot->pixels)
        ExcludeClipRect(dc, slot->place.x, slot->place.y, slot->place.x + slot->place.width,
                        slot->place.y + slot->place.height);
    PaintBackdropPart(dc, area, PlaceInParent(slot->hwnd));
    RestoreDC(dc, saved);
    if (!slot->pixels) return;
    const DibHeader* h = DibHeaderOf(slot->header);
    DrawDibDraw(slot->drawDib, dc, slot->place.x, slot->place.y, slot->place.width, slot->place.height,
                reinterpret_cast<BITMAPINFOHEADER*>(slot->header), slot->pixels, 0, 0, h->biWidth, h->biHeight, 0);
    if (slot->pressed || SlotShowsSelection(slot)) PaintSelectionFrame(dc, slot->place);
}

void Slot_OnPaint(ThumbnailSlot* slot) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(slot->hwnd, &paint);
    Slot_Paint(slot, dc, paint.rcPaint);
    EndPaint(slot->hwnd, &paint);
}

void Slot_OnPrintClient(ThumbnailSlot* slot, HDC dc) {
    RECT all = {0, 0, kSlotWidth, kSlotHeight};
    Slot_Paint(slot, dc, all);
}

void Slot_OnLButtonDown(ThumbnailSlot* slot) {
    slot->pressed = true;
    SetCapture(slot->hwnd);
    InvalidateRect(slot->hwnd, nullptr, FALSE);
}

void Slot_OnLButtonUp(ThumbnailSlot* slot, int x, int y) {
    if (!slot->pressed) return;
    slot->pressed = false;  // before the release, whose WM_CAPTURECHANGED must find the press over
    ReleaseOwnCapture(slot->hwnd);
    InvalidateRect(slot->hwnd, nullptr, FALSE);
    bool inside = x >= 0 && x < kSlotWidth && y >= 0 && y < kSlotHeight;
    if (inside && g_newPuzzle.panel) ChooseSlot(&g_newPuzzle, SlotIndex(slot));
}

void Slot_OnCaptureChanged(ThumbnailSlot* slot, HWND newOwner) {
    if (!slot->pressed || newOwner == slot->hwnd) return;
    slot->pressed = false;
    InvalidateRect(slot->hwnd, nullptr, FALSE);
}

LRESULT Slot_OnCreate(HWND hwnd) {
    ThumbnailSlot* slot = new (std::nothrow) ThumbnailSlot();
    if (!slot) return -1;
    slot->hwnd = hwnd;
    slot->header = static_cast<uint8_t*>(SysAllocBlock(kDibPixelOffset));
    slot->drawDib = DrawDibOpen();
    if (!slot->header) {
        if (slot->drawDib) DrawDibClose(slot->drawDib);
        delete slot;
        return -1;
    }
    std::memset(slot->header, 0, kDibPixelOffset);
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(slot));
    return 0;
}

void Slot_OnDestroy(ThumbnailSlot* slot) {
    HWND hwnd = slot->hwnd;
    FreeThumbnail(slot);
    SysFreeBlock(slot->header);
    if (slot->drawDib) DrawDibClose(slot->drawDib);
    delete slot;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, 0);
}

LRESULT CALLBACK ThumbnailSlotProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return Slot_OnCreate(hwnd);
    ThumbnailSlot* slot = SlotOf(hwnd);
    if (!slot) return DefWindowProcA(hwnd, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: Slot_OnPaint(slot); return 0;
    case WM_PRINTCLIENT: Slot_OnPrintClient(slot, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_LBUTTONDOWN: Slot_OnLButtonDown(slot); return 0;
    case WM_LBUTTONUP: Slot_OnLButtonUp(slot, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_CAPTURECHANGED: Slot_OnCaptureChanged(slot, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_DESTROY: Slot_OnDestroy(slot); return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

bool RegisterOnce(HINSTANCE instance, const char* name, WNDPROC procedure) {
    WNDCLASSA existing = {};
    if (GetClassInfoA(instance, name, &existing)) return existing.lpfnWndProc == procedure;
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = name;
    return RegisterClassA(&windowClass) != 0;
}

void OpenFromTitleBar() { OpenNewPuzzleScreen(); }

}  // namespace

bool RegisterNewPuzzleClasses(HINSTANCE instance) {
    return RegisterOnce(instance, kNewPuzzleClass, NewPuzzleProc) &&
           RegisterOnce(instance, kThumbnailSlotClass, ThumbnailSlotProc);
}

HWND OpenNewPuzzleScreen() {
    if (g_newPuzzle.panel) return g_newPuzzle.panel;
    int32_t screenWidth = g_screenWidth > 0 ? g_screenWidth : GetSystemMetrics(SM_CXSCREEN);
    int32_t screenHeight = g_screenHeight > 0 ? g_screenHeight : GetSystemMetrics(SM_CYSCREEN);
    HWND owner = g_mainWindow;
    if (owner) EnableWindow(owner, FALSE);
    HWND panel = CreateWindowExA(0, kNewPuzzleClass, "", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN,
                                 (screenWidth - kNewPuzzlePanelWidth) / 2, (screenHeight - kNewPuzzlePanelHeight) / 2,
                                 kNewPuzzlePanelWidth, kNewPuzzlePanelHeight, owner, nullptr, GetModuleHandleA(nullptr),
                                 nullptr);
    if (!panel && owner) EnableWindow(owner, TRUE);
    return panel;
}

void InstallNewPuzzleScreen() { g_openNewPuzzleScreen = OpenFromTitleBar; }

bool GetSlotThumbnail(HWND hwnd, int32_t* width, int32_t* height) {
    ThumbnailSlot* slot = SlotOf(hwnd);
    if (!slot || !slot->pixels) return false;
    *width = slot->place.width;
    *height = slot->place.height;
    return true;
}
