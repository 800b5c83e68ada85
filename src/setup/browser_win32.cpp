// The saved-puzzle browser `CWNDFILE` and its thumbnail slots `CWNDPREVFILE`: listing "folder\*.epf",
// picking, scrolling, deleting after a question, and saving or opening a puzzle.
#include "setup/browser_win32.h"

#include <cstdio>
#include <cstring>
#include <new>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/launchers_win32.h"
#include "app/message_window_win32.h"
#include "app/platform.h"
#include "app/strings_win32.h"
#include "app/theme.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "controls/window_drag_win32.h"
#include "extras/bars_win32.h"
#include "gfx/dib.h"
#include "gfx/thumbnail_frame_win32.h"
#include "gfx/file_list.h"
#include "gfx/image_object_win32.h"
#include "puzzle/board_window_win32.h"
#include "puzzle/model.h"
#include "setup/browser_rules.h"
#include "setup/saved_puzzle.h"
#include "setup/saved_puzzle_win32.h"

namespace {

constexpr DWORD kBrowserStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME;
// Used when the pack has no backdrop, so that the children still have their places.
constexpr int32_t kDefaultBackdropWidth = 640;
constexpr int32_t kDefaultBackdropHeight = 300;
constexpr int32_t kNameFontHeight = 20;
constexpr int32_t kLabelFontHeight = 24;
// The title plate stands on the frame's top band, whose wood its corners match.
constexpr int32_t kTitleTop = 4;
constexpr int32_t kAnimButtonSize = 50;  // one frame of an animated button's strip
constexpr int32_t kScrollZones[3] = {26, 76, 26};
// Thumbnails wider or taller than this are not ours to draw (a saved thumbnail fits 104 x 123).
constexpr int32_t kLargestThumbnailSide = 1024;

enum BrowserArt {
    ART_BACKDROP,
    ART_TITLE,
    ART_ACTION,
    ART_CLOSE,
    ART_HELP,
    ART_DELETE,
    ART_SCROLL,
    BROWSER_ART_COUNT
};

struct SlotState {
    HWND hwnd;
    uint8_t* preview;         // the block ReadPuzzlePreview gave, or null: the slot shows nothing
    const uint8_t* backdrop;  // the browser's backdrop, drawn around the thumbnail; not owned
    POINT origin;             // the slot's place on the backdrop
    bool pressed;             // the left button went down on the thumbnail and is held
    bool selected;            // the slot shows the selected entry
};

struct BrowserState {
    HWND hwnd;
    uint8_t mode;             // 0 save, otherwise open
    FileNameList list;        // "folder\*.epf", in the order the folder gives
    int32_t selected;         // selected_index
    HWND nameField;           // save mode only
    HWND actionButton, closeButton, helpButton, deleteButton;
    HWND scroll;              // made when the list first needs it
    HWND slots[kBrowserSlotCount];
    char labels[kBrowserSlotCount][kBrowserLabelLength + 1];
    ImageObject art[BROWSER_ART_COUNT];
    HFONT nameFont, labelFont;
    int32_t width, height;    // the client area
    WindowDrag drag;          // a press on the browser's own background moves it with the pointer
};

// The one browser that exists, for the delete question's answer.
HWND s_browser = nullptr;

BrowserState* BrowserOf(HWND hwnd) { return reinterpret_cast<BrowserState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA)); }
SlotState* SlotOf(HWND hwnd) { return reinterpret_cast<SlotState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA)); }

bool SaveMode(const BrowserState* s) { return s->mode == 0; }

uint32_t ArtId(const BrowserState* s, int art) {
    uint32_t language = uint32_t(g_language);
    switch (art) {
    case ART_BACKDROP: return kArtBrowserPanel;
    case ART_TITLE: return (SaveMode(s) ? kArtBrowserSaveTitle : kArtBrowserOpenTitle) + language;
    case ART_ACTION: return SaveMode(s) ? kArtBrowserSaveButton : kArtBrowserOpenButton;
    case ART_CLOSE: return kArtNewPuzzleCloseButton;
    case ART_HELP: return kArtPanelHelpButton;
    case ART_DELETE: return kArtBrowserDeleteButton;
    default: return kArtBrowserScroll;
    }
}

const uint8_t* Art(const BrowserState* s, int art) { return ImageObject_Dib(&s->art[art]); }
LPARAM ArtParam(const BrowserState* s, int art) { return reinterpret_cast<LPARAM>(Art(s, art)); }

// Paints an area of a window that stands at origin on the backdrop; black without a backdrop.
void PaintBackdropPart(HDC dc, const RECT& area, POINT origin, const uint8_t* backdrop) {
    int32_t width = area.right - area.left, height = area.bottom - area.top;
    if (width < 1 || height < 1) return;
    if (!backdrop) {
        BitBlt(dc, area.left, area.top, width, height, nullptr, 0, 0, BLACKNESS);
        return;
    }
    DrawPackedDib(dc, area.left, area.top, width, height, backdrop, area.left + origin.x, area.top + origin.y);
}

HFONT MakeFont(int32_t height) {
    return CreateFontA(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, ANSI_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE, kCommonFontFace);
}

// ---- Building the children ----

HWND MakeChild(HWND browser, const char* className, int32_t x, int32_t y, int32_t width, int32_t height, int id,
               DWORD exStyle = 0, DWORD style = 0) {
    return CreateWindowExA(exStyle, className, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | style, x, y, width,
                           height, browser, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                           GetModuleHandleA(nullptr), nullptr);
}

HWND MakeCommandButton(BrowserState* s, int art, int32_t x, int32_t y, int id) {
    HWND button = MakeChild(s->hwnd, "CQMCOMMAND", x, y, 50, 50, id);
    SendMessageA(button, PM_SETIMAGE, 0, ArtParam(s, art));
    return button;
}

// A `CQMANIM` button of one row of ten frames, sized to one frame.
HWND MakeAnimatedButton(BrowserState* s, int art, int32_t x, int32_t y, int id) {
    int32_t width, height;
    if (!PackedDibSize(Art(s, art), &width, &height)) {
        width = kAnimButtonSize * 10;
        height = kAnimButtonSize;
    }
    HWND button = MakeChild(s->hwnd, "CQMANIM", x, y, width / 10, height, id);
    SendMessageA(button, PM_ANIM_SETROWS, 0, 1);
    SendMessageA(button, PM_ANIM_SETCOLUMNS, 0, 10);
    SendMessageA(button, PM_ANIM_SETFRAME, 0, kButtonRestFrame);
    SendMessageA(button, PM_SETIMAGE, 0, ArtParam(s, art));
    return button;
}

HWND MakeNameField(BrowserState* s) {
    HWND field = MakeChild(s->hwnd, "EDIT", 10, 61, 212, 24, kBrowserNameFieldId, WS_EX_CLIENTEDGE,
                           WS_TABSTOP | ES_AUTOHSCROLL);
    s->nameFont = MakeFont(kNameFontHeight);
    if (field && s->nameFont) SendMessageA(field, WM_SETFONT, reinterpret_cast<WPARAM>(s->nameFont), FALSE);
    return field;
}

// The scroll control appears the first time the list has more than four names.
void EnsureScroll(BrowserState* s) {
    if (s->scroll) return;
    s->scroll = MakeChild(s->hwnd, "CQMSROLL", 455, 75, 30, kScrollZones[0] + kScrollZones[1] + kScrollZones[2],
                          kBrowserScrollId);
    if (!s->scroll) return;
    SendMessageA(s->scroll, PM_SETIMAGE, 0, ArtParam(s, ART_SCROLL));
    SendMessageA(s->scroll, PM_SCR_SETUPPERHEIGHT, 0, kScrollZones[0]);
    SendMessageA(s->scroll, PM_SCR_SETMIDDLEHEIGHT, 0, kScrollZones[1]);
    SendMessageA(s->scroll, PM_SCR_SETLOWERHEIGHT, 0, kScrollZones[2]);
}

bool ScrollShown(const BrowserState* s) { return s->scroll && IsWindowVisible(s->scroll); }

// The scroll position p; 0 while there is no scroll control.
int32_t ScrollPosition(const BrowserState* s) {
    return ScrollShown(s) ? int32_t(SendMessageA(s->scroll, PM_SCR_GETPOSITION, 0, 0)) : 0;
}

// Range first, then a step of 1 (a narrow range may have shrunk it to 0), then the position, kept inside.
void SetScrollRange(HWND scroll, int32_t minimum, int32_t position) {
    SendMessageA(scroll, PM_SCR_SETMAXIMUM, 0, 0);
    SendMessageA(scroll, PM_SCR_SETMINIMUM, 0, minimum);
    SendMessageA(scroll, PM_SCR_SETSTEP, 0, 1);
    SendMessageA(scroll, PM_SCR_SETPOSITION, 0, position < minimum ? minimum : position > 0 ? 0 : position);
}

// The scroll control as the list's length asks: shown with the range 4 - count .. 0, or hidden.
void ShowScrollForList(BrowserState* s) {
    int32_t count = s->list.count;
    if (!BrowserNeedsScroll(count)) {
        if (s->scroll) ShowWindow(s->scroll, SW_HIDE);
        return;
    }
    bool wasShown = ScrollShown(s);
    int32_t position = wasShown ? ScrollPosition(s) : 0;
    EnsureScroll(s);
    if (!s->scroll) return;
    SetScrollRange(s->scroll, BrowserScrollMinimum(count), position);
    if (!wasShown) ShowWindow(s->scroll, SW_SHOWNA);
    InvalidateRect(s->scroll, nullptr, FALSE);
}

// ---- The list and the slots ----

void ReadSavedList(BrowserState* s) {
    char pattern[kPathCapacity + 16];
    if (!MakeSavedListPattern(g_appFolder, pattern, sizeof pattern) || !FillFileNameList(&s->list, pattern))
        FreeFileNameList(&s->list);  // a missing folder or no saved puzzle: an empty list
}

bool EntryPath(const BrowserState* s, int32_t entry, char* path, size_t size) {
    char name[256];
    FileNameAt(&s->list, entry, false, name, sizeof name);
    return name[0] && MakeSavedFilePath(g_appFolder, name, path, size);
}

// A preview block we can draw: 16 bits, bottom-up, of a sensible size, its rows inside the block.
bool PreviewIsDrawable(const uint8_t* preview) {
    const DibHeader* h = DibHeaderOf(preview);
    if (h->biBitCount != 16 || h->biWidth < 1 || h->biHeight < 1) return false;
    if (h->biWidth > kLargestThumbnailSide || h->biHeight > kLargestThumbnailSide) return false;
    return DibStride(16, h->biWidth) * h->biHeight <= int64_t(h->biSizeImage);
}

void Slot_SetPreview(HWND hwnd, uint8_t* preview) {
    SlotState* slot = SlotOf(hwnd);
    if (!slot) {
        if (preview) SysFreeBlock(preview);
        return;
    }
    if (slot->preview) SysFreeBlock(slot->preview);
    if (preview && !PreviewIsDrawable(preview)) {
        SysFreeBlock(preview);
        preview = nullptr;
    }
    slot->preview = preview;
    slot->pressed = false;
    InvalidateRect(hwnd, nullptr, FALSE);
}

void Slot_SetSelected(HWND hwnd, bool selected) {
    SlotState* slot = SlotOf(hwnd);
    if (!slot || slot->selected == selected) return;
    slot->selected = selected;
    InvalidateRect(hwnd, nullptr, FALSE);
}

void MarkSelectedSlot(BrowserState* s) {
    int32_t position = ScrollPosition(s);
    for (int32_t i = 0; i < kBrowserSlotCount; ++i) {
        int32_t entry = BrowserSlotEntry(i, position, s->list.count);
        Slot_SetSelected(s->slots[i], entry >= 0 && entry == s->selected);
    }
}

// Every slot shows its entry's thumbnail and label, or nothing past the list; then the labels are redrawn.
void FillSlots(BrowserState* s) {
    int32_t position = ScrollPosition(s);
    for (int32_t i = 0; i < kBrowserSlotCount; ++i) {
        int32_t entry = BrowserSlotEntry(i, position, s->list.count);
        uint8_t* preview = nullptr;
        char name[256] = {};
        if (entry >= 0) {
            FileNameAt(&s->list, entry, false, name, sizeof name);
            char path[kPathCapacity + 16];
            if (name[0] && MakeSavedFilePath(g_appFolder, name, path, sizeof path)) preview = ReadPuzzlePreview(path);
        }
        MakeSlotLabel(entry >= 0 ? name : nullptr, s->labels[i]);
        Slot_SetPreview(s->slots[i], preview);
    }
    MarkSelectedSlot(s);
    RECT labels = {0, kBrowserLabelTop, s->width, kBrowserLabelTop + kLabelFontHeight + 4};
    InvalidateRect(s->hwnd, &labels, FALSE);
}

// ---- The action, deleting, picking ----

void CloseBrowser(HWND browser) { SendMessageA(browser, WM_CLOSE, 0, 0); }

void DisableSaveButton() {
    if (g_saveButton) SendMessageA(g_saveButton, PM_SETENABLE, 0, 0);
}

// Saves under the typed name; a first save makes the "folder" directory. The save button goes dark only
// when the puzzle really was saved: a failed save leaves the player able to try again.
void SaveTyped(BrowserState* s) {
    char text[kPathCapacity + 1] = {};
    GetWindowTextA(s->nameField, text, sizeof text);
    if (!text[0]) return;
    HWND browser = s->hwnd;
    char path[kPathCapacity + 16];
    bool saved = false;
    if (MakeSavePath(g_appFolder, text, path, sizeof path)) {
        char folder[kPathCapacity + 16];
        std::snprintf(folder, sizeof folder, "%sfolder", g_appFolder);
        CreateDirectoryA(folder, nullptr);
        saved = SavePuzzleFile(path, true);
    }
    CloseBrowser(browser);  // s is gone from here on
    if (saved) DisableSaveButton();
}

// Opens the selected entry. A failed load leaves the game in play as it was, its save button included.
void OpenSelected(BrowserState* s) {
    if (s->list.count < 1) return;
    HWND browser = s->hwnd;
    char path[kPathCapacity + 16];
    bool hintsLeft = false;
    bool loaded = EntryPath(s, ClampBrowserSelection(s->selected, s->list.count), path, sizeof path) &&
                  LoadPuzzleFile(path, &hintsLeft);
    CloseBrowser(browser);  // s is gone from here on
    if (!loaded) return;
    DisableSaveButton();
    HWND hint = HintButton();
    if (hint) SendMessageA(hint, PM_SETENABLE, 0, hintsLeft ? 1 : 0);
}

void PerformAction(BrowserState* s) {
    if (SaveMode(s)) SaveTyped(s);
    else OpenSelected(s);
}

void Browser_OnDeleteAnswer(uint8_t answer) {
    HWND browser = s_browser;
    if (!answer || !browser || !IsWindow(browser)) return;
    BrowserState* s = BrowserOf(browser);
    if (!s || s->list.count < 1) return;
    char path[kPathCapacity + 16];
    if (EntryPath(s, ClampBrowserSelection(s->selected, s->list.count), path, sizeof path)) DeleteFileA(path);
    ReadSavedList(s);
    // The selection stays where it was, unless it now points past the end of the list.
    s->selected = ClampBrowserSelection(s->selected, s->list.count);
    ShowScrollForList(s);
    FillSlots(s);
}

void AskToDelete(BrowserState* s) {
    if (s->list.count < 1) return;
    ShowMessage(STR_ERASE_FILE, s->hwnd, Browser_OnDeleteAnswer, false);
}

void SelectSlot(BrowserState* s, int32_t slot) {
    int32_t entry = BrowserSelectionOfSlot(slot, ScrollPosition(s), s->list.count);
    if (entry < 0) return;
    s->selected = entry;
    MarkSelectedSlot(s);
    if (!SaveMode(s) || !s->nameField) return;
    char name[256], shown[256];
    FileNameAt(&s->list, entry, false, name, sizeof name);
    NameWithoutExtension(name, shown, sizeof shown);
    SetWindowTextA(s->nameField, shown);
}

// ---- The browser's window procedure ----

bool IsAnimatedButton(const BrowserState* s, HWND control) {
    return control && (control == s->helpButton || control == s->deleteButton);
}

void Browser_OnClicked(BrowserState* s, HWND control) {
    int id = GetDlgCtrlID(control);
    if (id >= kBrowserFirstSlotId && id < kBrowserFirstSlotId + kBrowserSlotCount)
        return SelectSlot(s, id - kBrowserFirstSlotId);
    if (control == s->scroll) return FillSlots(s);
    if (control == s->actionButton) return PerformAction(s);
    if (control == s->closeButton) return CloseBrowser(s->hwnd);
    if (control == s->helpButton) return LaunchHelp();
    if (control == s->deleteButton) return AskToDelete(s);
}

void Browser_OnNotify(BrowserState* s, WPARAM event, HWND control) {
    int id = GetDlgCtrlID(control);
    bool isSlot = id >= kBrowserFirstSlotId && id < kBrowserFirstSlotId + kBrowserSlotCount;
    if (isSlot && event == NOTIFY_SPECIAL) {  // a double click on a thumbnail
        SelectSlot(s, id - kBrowserFirstSlotId);
        return PerformAction(s);
    }
    // The animated buttons are silent controls: the browser gives them the command buttons' sounds.
    if (IsAnimatedButton(s, control)) {
        AnimatedButtonFeedback(control, event);
        if (event == NOTIFY_ENTERED) PlayInterfaceSound(g_hoverSound);
        if (event == NOTIFY_CLICKED) PlayInterfaceSound(g_clickSound);
    }
    if (event == NOTIFY_CLICKED) Browser_OnClicked(s, control);
}

// The name field's filter: characters a file name cannot hold are refused; Enter saves, Escape closes.
LRESULT Browser_OnChildChar(BrowserState* s, WPARAM code) {
    if (code == VK_RETURN) {
        PerformAction(s);
        return 1;
    }
    if (code == VK_ESCAPE) {
        CloseBrowser(s->hwnd);
        return 1;
    }
    return IsRejectedNameChar(unsigned(code)) ? 1 : 0;
}

// Escape closes the browser in open mode too, where no child holds the keyboard.
void Browser_OnKeyDown(BrowserState* s, WPARAM key) {
    if (key == VK_ESCAPE) CloseBrowser(s->hwnd);
}

// Client size from the backdrop; window size from that; centred on the screen.
void PlaceBrowser(BrowserState* s) {
    int32_t width = kDefaultBackdropWidth, height = kDefaultBackdropHeight;
    PackedDibSize(Art(s, ART_BACKDROP), &width, &height);
    s->width = width - kBrowserBackdropTrim;
    s->height = height;
    RECT frame = {0, 0, s->width, s->height};
    AdjustWindowRect(&frame, kBrowserStyle, FALSE);
    int32_t outerWidth = frame.right - frame.left, outerHeight = frame.bottom - frame.top;
    int32_t screenWidth = g_screenWidth > 0 ? g_screenWidth : GetSystemMetrics(SM_CXSCREEN);
    int32_t screenHeight = g_screenHeight > 0 ? g_screenHeight : GetSystemMetrics(SM_CYSCREEN);
    SetWindowPos(s->hwnd, nullptr, (screenWidth - outerWidth) / 2, (screenHeight - outerHeight) / 2, outerWidth,
                 outerHeight, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

void MakeChildren(BrowserState* s) {
    HWND browser = s->hwnd;
    if (SaveMode(s)) s->nameField = MakeNameField(s);
    s->actionButton = MakeCommandButton(s, ART_ACTION, 19, 255, kBrowserActionId);
    s->closeButton = MakeCommandButton(s, ART_CLOSE, 414, 257, kBrowserCloseId);
    s->helpButton = MakeAnimatedButton(s, ART_HELP, 146, 235, kBrowserHelpId);
    s->deleteButton = MakeAnimatedButton(s, ART_DELETE, 295, 235, kBrowserDeleteId);
    for (int32_t i = 0; i < kBrowserSlotCount; ++i)
        s->slots[i] = MakeChild(browser, kBrowserSlotClass, BrowserSlotLeft(i), kBrowserSlotTop, kBrowserSlotWidth,
                                kBrowserSlotHeight, kBrowserFirstSlotId + i);
}

LRESULT Browser_OnCreate(HWND hwnd, const CREATESTRUCTA* create) {
    if (s_browser) return -1;  // one browser at a time
    BrowserState* s = new (std::nothrow) BrowserState();
    if (!s) return -1;
    s->hwnd = hwnd;
    s->mode = uint8_t(reinterpret_cast<uintptr_t>(create->lpCreateParams));
    InitFileNameList(&s->list);
    for (int i = 0; i < BROWSER_ART_COUNT; ++i) {
        ImageObject_Init(&s->art[i], false);
        ImageObject_LoadFromPack(&s->art[i], ArtId(s, i));
    }
    s->labelFont = MakeFont(kLabelFontHeight);
    for (auto& label : s->labels) MakeSlotLabel(nullptr, label);
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    s_browser = hwnd;
    HWND owner = GetWindow(hwnd, GW_OWNER);
    if (owner) EnableWindow(owner, FALSE);

    PlaceBrowser(s);
    MakeChildren(s);
    ReadSavedList(s);
    s->selected = 0;
    ShowScrollForList(s);
    FillSlots(s);
    return 0;
}

void Browser_Paint(const BrowserState* s, HDC dc, const RECT& area) {
    PaintBackdropPart(dc, area, POINT{0, 0}, Art(s, ART_BACKDROP));
    int32_t titleWidth, titleHeight;
    const uint8_t* title = Art(s, ART_TITLE);
    if (PackedDibSize(title, &titleWidth, &titleHeight))
        DrawPackedDib(dc, (s->width - titleWidth) / 2, kTitleTop, titleWidth, titleHeight, title, 0, 0);
    HGDIOBJ oldFont = s->labelFont ? SelectObject(dc, s->labelFont) : nullptr;
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, kCommonTextColor);
    // Each label is kept to its slot's width: eleven wide letters of the 24-pixel font would run into
    // the next label.
    for (int32_t i = 0; i < kBrowserSlotCount; ++i) {
        int saved = SaveDC(dc);
        int32_t left = BrowserSlotLeft(i);
        IntersectClipRect(dc, left, kBrowserLabelTop, left + kBrowserSlotWidth, kBrowserLabelTop + kLabelFontHeight);
        TextOutA(dc, left, kBrowserLabelTop, s->labels[i], kBrowserLabelLength);
        RestoreDC(dc, saved);
    }
    if (oldFont) SelectObject(dc, oldFont);
}

void Browser_OnPaint(BrowserState* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(s->hwnd, &paint);
    Browser_Paint(s, dc, paint.rcPaint);
    EndPaint(s->hwnd, &paint);
}

void Browser_OnPrintClient(BrowserState* s, HDC dc) {
    RECT all = {0, 0, s->width, s->height};
    Browser_Paint(s, dc, all);
}


void EnableOwner(HWND browser) {
    HWND owner = GetWindow(browser, GW_OWNER);
    if (owner) EnableWindow(owner, TRUE);
}

// The owner is enabled before the browser goes, so that the system hands activation back to it.
void Browser_OnClose(BrowserState* s) {
    HWND browser = s->hwnd;
    EnableOwner(browser);
    if (g_mainWindow) SetForegroundWindow(g_mainWindow);
    DestroyWindow(browser);
}

void Browser_OnDestroy(BrowserState* s) {
    EnableOwner(s->hwnd);
    g_puzzle.paused = 0;
    if (s_browser == s->hwnd) s_browser = nullptr;
}

// Last of all, once every child is gone: the pictures and fonts the children used can go.
void Browser_OnNcDestroy(BrowserState* s) {
    for (ImageObject& image : s->art) ImageObject_Destroy(&image);
    if (s->nameFont) DeleteObject(s->nameFont);
    if (s->labelFont) DeleteObject(s->labelFont);
    FreeFileNameList(&s->list);
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    delete s;
}

LRESULT Browser_OnGetLabel(const BrowserState* s, WPARAM slot, LPARAM buffer) {
    if (slot >= WPARAM(kBrowserSlotCount) || !buffer) return 0;
    std::memcpy(reinterpret_cast<char*>(buffer), s->labels[slot], kBrowserLabelLength + 1);
    return 1;
}

LRESULT CALLBACK BrowserProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return Browser_OnCreate(hwnd, reinterpret_cast<CREATESTRUCTA*>(lParam));
    BrowserState* s = BrowserOf(hwnd);
    if (!s) return DefWindowProcA(hwnd, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: Browser_OnPaint(s); return 0;
    case WM_PRINTCLIENT: Browser_OnPrintClient(s, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;  // the backdrop covers everything
    case PM_NOTIFY: Browser_OnNotify(s, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case PM_CHILDCHAR: return Browser_OnChildChar(s, wParam);
    case WM_KEYDOWN: Browser_OnKeyDown(s, wParam); return 0;
    case WM_LBUTTONDOWN: WindowDrag_Begin(&s->drag, hwnd, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_MOUSEMOVE: WindowDrag_Move(&s->drag, hwnd, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONUP: WindowDrag_End(&s->drag, hwnd); return 0;
    case WM_CAPTURECHANGED: WindowDrag_OnCaptureChanged(&s->drag, hwnd, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_CLOSE: Browser_OnClose(s); return 0;
    case WM_DESTROY: Browser_OnDestroy(s); return 0;
    case WM_NCDESTROY: Browser_OnNcDestroy(s); break;
    case PM_BROWSER_GETLABEL: return Browser_OnGetLabel(s, wParam, lParam);
    case PM_BROWSER_GETSELECTION: return s->selected;
    case PM_BROWSER_GETCOUNT: return s->list.count;
    case PM_BROWSER_GETPOSITION: return ScrollPosition(s);
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

// ---- Thumbnail slots ----

void Slot_Paint(SlotState* slot, HDC dc, const RECT& area) {
    int saved = SaveDC(dc);
    ThumbnailPlace at = {};
    if (slot->preview) {
        at = CentredThumbnail(slot->preview, kBrowserSlotWidth, kBrowserSlotHeight);
        ExcludeClipRect(dc, at.x, at.y, at.x + at.width, at.y + at.height);
    }
    PaintBackdropPart(dc, area, slot->origin, slot->backdrop);
    RestoreDC(dc, saved);
    if (!slot->preview) return;
    const uint8_t* preview = slot->preview;
    SetDIBitsToDevice(dc, at.x, at.y, at.width, at.height, 0, 0, 0, at.height, DibPixels(preview),
                      reinterpret_cast<const BITMAPINFO*>(preview), DIB_RGB_COLORS);
    if (slot->pressed || slot->selected) PaintThumbnailFrame(dc, at, 2, kCommonTextColor);
}

void Slot_OnPaint(SlotState* slot) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(slot->hwnd, &paint);
    Slot_Paint(slot, dc, paint.rcPaint);
    EndPaint(slot->hwnd, &paint);
}

void Slot_OnPrintClient(SlotState* slot, HDC dc) {
    RECT all = {0, 0, kBrowserSlotWidth, kBrowserSlotHeight};
    Slot_Paint(slot, dc, all);
}

void Slot_OnLButtonDown(SlotState* slot) {
    if (!slot->preview) return;
    slot->pressed = true;
    SetCapture(slot->hwnd);
    InvalidateRect(slot->hwnd, nullptr, FALSE);
}

void Slot_OnLButtonUp(SlotState* slot, int x, int y) {
    if (!slot->pressed) return;
    HWND hwnd = slot->hwnd;
    slot->pressed = false;  // before the release, whose WM_CAPTURECHANGED must find the press over
    ReleaseOwnCapture(hwnd);
    InvalidateRect(hwnd, nullptr, FALSE);
    bool inside = x >= 0 && x < kBrowserSlotWidth && y >= 0 && y < kBrowserSlotHeight;
    if (inside) NotifyParent(hwnd, NOTIFY_CLICKED);
}

// The browser may be gone when this returns: nothing of the slot is used after the notice.
void Slot_OnDoubleClick(SlotState* slot) {
    if (slot->preview) NotifyParent(slot->hwnd, NOTIFY_SPECIAL);
}

void Slot_OnCaptureChanged(SlotState* slot, HWND newOwner) {
    if (!slot->pressed || newOwner == slot->hwnd) return;
    slot->pressed = false;
    InvalidateRect(slot->hwnd, nullptr, FALSE);
}

LRESULT Slot_OnCreate(HWND hwnd) {
    SlotState* slot = new (std::nothrow) SlotState();
    if (!slot) return -1;
    slot->hwnd = hwnd;
    HWND parent = GetParent(hwnd);
    const BrowserState* browser = parent ? BrowserOf(parent) : nullptr;
    if (browser) slot->backdrop = Art(browser, ART_BACKDROP);
    RECT r = {};
    GetWindowRect(hwnd, &r);
    MapWindowPoints(HWND_DESKTOP, parent, reinterpret_cast<POINT*>(&r), 2);
    slot->origin = POINT{r.left, r.top};
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(slot));
    return 0;
}

void Slot_OnDestroy(SlotState* slot) {
    HWND hwnd = slot->hwnd;
    if (slot->preview) SysFreeBlock(slot->preview);
    delete slot;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, 0);
}

LRESULT CALLBACK SlotProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return Slot_OnCreate(hwnd);
    SlotState* slot = SlotOf(hwnd);
    if (!slot) return DefWindowProcA(hwnd, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: Slot_OnPaint(slot); return 0;
    case WM_PRINTCLIENT: Slot_OnPrintClient(slot, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_LBUTTONDOWN: Slot_OnLButtonDown(slot); return 0;
    case WM_LBUTTONUP: Slot_OnLButtonUp(slot, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONDBLCLK: Slot_OnDoubleClick(slot); return 0;
    case WM_CAPTURECHANGED: Slot_OnCaptureChanged(slot, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_DESTROY: Slot_OnDestroy(slot); return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

void RegisterOnce(HINSTANCE instance, const char* name, WNDPROC procedure, UINT style) {
    WNDCLASSA existing = {};
    if (GetClassInfoA(instance, name, &existing)) return;
    WNDCLASSA windowClass = {};
    windowClass.style = style;
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = name;
    RegisterClassA(&windowClass);
}

}  // namespace

void RegisterBrowserClasses(HINSTANCE instance) {
    RegisterOnce(instance, kBrowserClass, BrowserProc, 0);
    RegisterOnce(instance, kBrowserSlotClass, SlotProc, CS_DBLCLKS);
}

HWND OpenSavedPuzzleBrowser(uint8_t mode) {
    if (s_browser) return s_browser;
    // Created with no size: it takes its backdrop's size and its place on the screen while it is made.
    HWND browser = CreateWindowExA(0, kBrowserClass, "", kBrowserStyle, 0, 0, 0, 0, g_mainWindow, nullptr,
                                   GetModuleHandleA(nullptr), reinterpret_cast<void*>(uintptr_t(mode)));
    HWND field = browser ? GetDlgItem(browser, kBrowserNameFieldId) : nullptr;
    if (field) SetFocus(field);  // the player types the name at once
    return browser;
}
