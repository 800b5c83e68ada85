// `CWNDHONOR`: the honour roll's full-screen table, the ranking check after a completed puzzle and the
// record stored with the name the player types.
#include "extras/honour_win32.h"

#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <new>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/message_window_win32.h"
#include "app/platform.h"
#include "app/strings_win32.h"
#include "app/theme.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "extras/records.h"
#include "gfx/dib.h"
#include "gfx/image_object_win32.h"
#include "gfx/pack.h"
#include "puzzle/model.h"
#include "puzzle/score.h"

namespace {

constexpr DWORD kHonourStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_MAXIMIZE;
// A cup animation was once meant to stand over the panel. Nothing registers its class, so creating it
// fails and nothing shows; the screen works the same without it.
constexpr const char kHonourCupClass[] = "CWNDCOPAHONOR";

constexpr int32_t kPanelWidth = 640, kPanelHeight = 480;
constexpr int32_t kTileStep = 80;
constexpr int32_t kFirstRowTop = 63, kRowStep = 30;  // below the panel's top
constexpr int32_t kRankColumn = 30, kNameColumn = 60, kScoreColumn = 420;  // right of the panel's left
constexpr int32_t kLabelStartSize = 50;  // each label sizes itself to its text
constexpr int32_t kRowFontHeight = 30;
constexpr int32_t kRowLitWeight = 400;   // the labels never light up: the weight stays the same anyway
constexpr int32_t kRowShadowOffset = 1;
constexpr COLORREF kRowShadowColor = 0x000000;
constexpr int32_t kButtonSize = 50;
constexpr int32_t kButtonColumns = 10;   // one row of ten frames
// The buttons stand at fixed fractions of the screen, below the panel on the right.
constexpr double kWipeButtonX = 0.7421866302500427;
constexpr double kCloseButtonX = 0.8640652542079978;
constexpr double kButtonsY = 0.835421888053467;

struct HonourState {
    HWND hwnd;
    uint8_t* background;  // the composed screen, drawn by the window and under every label; owned
    uint8_t* wipeStrip;   // pack 158; owned
    uint8_t* closeStrip;  // the animated close button's strip, pack 300; owned
    HWND rankLabels[kRecordCount];
    HWND nameLabels[kRecordCount];
    HWND scoreLabels[kRecordCount];
    HWND wipeButton, closeButton;
};

// The one honour window, for the name question's answer.
HWND g_honourWindow = nullptr;
// From the ranking check to the stored record: the score of the finished puzzle and its place,
// 0..9, or 10 for no record.
int32_t g_recordScore = 0;
int32_t g_recordRank = kRecordCount;

HonourState* HonourOf(HWND hwnd) { return reinterpret_cast<HonourState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA)); }

void RecordsPath(char path[kPathCapacity + 16]) {
    std::snprintf(path, kPathCapacity + 16, "%s%s", g_appFolder, kRecordsFileName);
}

// The panel's top-left corner on the screen (halves truncated).
POINT PanelOrigin() { return POINT{(g_screenWidth - kPanelWidth) / 2, (g_screenHeight - kPanelHeight) / 2}; }

// ---- The composed screen ----

bool IsEightBit(const uint8_t* dib) { return dib && DibHeaderOf(dib)->biBitCount == 8; }

// Copies a whole picture onto the screen at (x, y). The pictures share the house palette, so only
// 8-bit ones can be copied byte for byte; any other is left out.
void Paste(uint8_t* screen, const uint8_t* picture, int32_t x, int32_t y) {
    if (!IsEightBit(picture)) return;
    const DibHeader* h = DibHeaderOf(picture);
    SoftBlit(screen, x, y, h->biWidth, h->biHeight, picture, 0, 0, kRopSrcCopy);
}

// The screen-sized picture: the backdrop tile in 80-pixel steps, column by column, the panel centred,
// the localised title centred at the top. Black where the pack has nothing. Null without memory.
uint8_t* ComposeBackground() {
    uint8_t* screen = AllocPackedDib8(g_screenWidth, g_screenHeight);
    if (!screen) return nullptr;
    std::memset(screen + kDibPaletteOffset, 0, size_t(kDibPixelOffset - kDibPaletteOffset));
    std::memset(DibPixels(screen), 0, DibHeaderOf(screen)->biSizeImage);
    uint8_t* tile = LoadPackItem(&g_pack, kArtBackdropTile);
    uint8_t* panel = LoadPackItem(&g_pack, kArtHonourPanel);
    uint8_t* title = LoadPackItem(&g_pack, kArtHonourTitle + uint32_t(g_language));
    for (const uint8_t* source : {panel, tile, title})
        if (IsEightBit(source)) {
            CopyPalette(source, screen);
            break;
        }
    if (tile)
        for (int32_t x = 0; x < g_screenWidth; x += kTileStep)
            for (int32_t y = 0; y < g_screenHeight; y += kTileStep) Paste(screen, tile, x, y);
    POINT panelAt = PanelOrigin();
    Paste(screen, panel, panelAt.x, panelAt.y);
    if (title) Paste(screen, title, (g_screenWidth - DibHeaderOf(title)->biWidth) / 2, 0);
    FreePackedDib(tile);
    FreePackedDib(panel);
    FreePackedDib(title);
    return screen;
}

// ---- The rows ----

HWND MakeChild(HonourState* s, const char* className, int32_t x, int32_t y, int id) {
    return CreateWindowExA(0, className, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, x, y, kLabelStartSize,
                           kLabelStartSize, s->hwnd, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                           GetModuleHandleA(nullptr), nullptr);
}

// A row text: disabled, so it never reacts to the pointer, and drawn in the disabled colour, which is
// the common text colour here; a one-pixel black shadow; the background last, so the label measures
// and shows itself once everything else is set.
HWND MakeRowLabel(HonourState* s, int32_t x, int32_t y, const char* text, int id) {
    HWND label = MakeChild(s, "CQMTXT", x, y, id);
    if (!label) return nullptr;
    SendMessageA(label, PM_SETENABLE, 0, 0);
    SendMessageA(label, PM_TXT_SETSHADOW, 0, 1);
    SendMessageA(label, PM_TXT_SETSHADOWOFFSET, 0, kRowShadowOffset);
    SendMessageA(label, PM_TXT_SETSHADOWCOLOR, 0, kRowShadowColor);
    SendMessageA(label, PM_TXT_SETDISABLEDCOLOR, 0, kCommonTextColor);
    SendMessageA(label, PM_TXT_SETHEIGHT, 0, kRowFontHeight);
    SendMessageA(label, PM_TXT_SETLITWEIGHT, 0, kRowLitWeight);
    SendMessageA(label, PM_TXT_SETFACE, 0, reinterpret_cast<LPARAM>(kCommonFontFace));
    SendMessageA(label, PM_TXT_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    SendMessageA(label, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(s->background));
    return label;
}

void ShowRow(HonourState* s, int32_t i, const RecordEntry& entry) {
    char name[kRecordNameBytes + 1];
    char score[kScoreTextBytes];
    RecordNameText(entry, name);
    RecordScoreText(entry.score, score);
    SendMessageA(s->nameLabels[i], PM_TXT_SETTEXT, 0, reinterpret_cast<LPARAM>(name));
    SendMessageA(s->scoreLabels[i], PM_TXT_SETTEXT, 0, reinterpret_cast<LPARAM>(score));
}

void MakeRows(HonourState* s, const RecordEntry entries[kRecordCount]) {
    POINT panel = PanelOrigin();
    for (int32_t i = 0; i < kRecordCount; ++i) {
        int32_t y = panel.y + kFirstRowTop + kRowStep * i;
        char rank[4], name[kRecordNameBytes + 1], score[kScoreTextBytes];
        std::snprintf(rank, sizeof rank, "%d", int(i + 1));
        RecordNameText(entries[i], name);
        RecordScoreText(entries[i].score, score);
        s->rankLabels[i] = MakeRowLabel(s, panel.x + kRankColumn, y, rank, kHonourFirstRankId + i);
        s->nameLabels[i] = MakeRowLabel(s, panel.x + kNameColumn, y, name, kHonourFirstNameId + i);
        s->scoreLabels[i] = MakeRowLabel(s, panel.x + kScoreColumn, y, score, kHonourFirstScoreId + i);
    }
}

HWND MakeAnimatedButton(HonourState* s, int32_t x, int32_t y, const uint8_t* strip, int id) {
    HWND button = CreateWindowExA(0, "CQMANIM", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, x, y, kButtonSize,
                                  kButtonSize, s->hwnd, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                  GetModuleHandleA(nullptr), nullptr);
    if (!button) return nullptr;
    SendMessageA(button, PM_ANIM_SETCOLUMNS, 0, kButtonColumns);
    SendMessageA(button, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip));
    return button;
}

void MakeButtons(HonourState* s) {
    int32_t y = int32_t(g_screenHeight * kButtonsY);
    s->wipeStrip = LoadPackItem(&g_pack, kArtWipeButton);
    s->wipeButton = MakeAnimatedButton(s, int32_t(g_screenWidth * kWipeButtonX), y, s->wipeStrip, kHonourWipeId);
    s->closeStrip = LoadPackItem(&g_pack, kArtCloseAnimButton);
    s->closeButton = MakeAnimatedButton(s, int32_t(g_screenWidth * kCloseButtonX), y, s->closeStrip, kHonourCloseId);
}

// ---- The window ----

LRESULT Honour_OnCreate(HWND hwnd) {
    if (g_honourWindow) return -1;  // one honour window at a time
    HonourState* s = new (std::nothrow) HonourState();
    if (!s) return -1;
    s->hwnd = hwnd;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    g_honourWindow = hwnd;

    char path[kPathCapacity + 16];
    RecordsPath(path);
    RecordsHeader header;
    RecordEntry entries[kRecordCount];
    LoadRecords(path, &header, entries);
    s->background = ComposeBackground();
    MakeRows(s, entries);
    MakeButtons(s);
    POINT panel = PanelOrigin();
    CreateWindowExA(0, kHonourCupClass, "", WS_CHILD | WS_VISIBLE, panel.x, panel.y, kPanelWidth, kPanelHeight, hwnd,
                    nullptr, GetModuleHandleA(nullptr), nullptr);
    return 0;
}

void Honour_OnPaint(HonourState* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(s->hwnd, &paint);
    PaintRect(dc, &paint.rcPaint, s->background);
    EndPaint(s->hwnd, &paint);
}

// The whole picture into another DC, for whoever asks for a copy of the window.
void Honour_OnPrintClient(HonourState* s, HDC dc) {
    RECT all = {0, 0, g_screenWidth, g_screenHeight};
    PaintRect(dc, &all, s->background);
}

// The wipe button clears the table without asking: the file goes, the rows show the empty table.
void Honour_Wipe(HonourState* s) {
    char path[kPathCapacity + 16];
    RecordsPath(path);
    SysDeleteFile(path);
    RecordsHeader header;
    RecordEntry entries[kRecordCount];
    LoadRecords(path, &header, entries);
    for (int32_t i = 0; i < kRecordCount; ++i) ShowRow(s, i, entries[i]);
}

// Only the two buttons get the animated feedback: the labels use the same message numbers for other
// settings (and, disabled, never report anything anyway).
void Honour_OnNotify(HonourState* s, WPARAM event, HWND control) {
    if (!control || (control != s->wipeButton && control != s->closeButton)) return;
    AnimatedButtonFeedback(control, event);
    if (event != NOTIFY_CLICKED) return;
    if (control == s->closeButton) SendMessageA(s->hwnd, WM_CLOSE, 0, 0);
    else Honour_Wipe(s);
}

void Honour_OnClose(HonourState* s) {
    // Enabled first, so that the system can hand the activation back to it.
    if (g_mainWindow) {
        EnableWindow(g_mainWindow, TRUE);
        SetForegroundWindow(g_mainWindow);
    }
    DestroyWindow(s->hwnd);
}

void Honour_OnDestroy(HonourState* s) {
    if (g_mainWindow) EnableWindow(g_mainWindow, TRUE);
    if (g_honourWindow == s->hwnd) g_honourWindow = nullptr;
}

// Last of all, once every child is gone: the labels and buttons drew from these pictures until then.
void Honour_OnNcDestroy(HonourState* s) {
    FreePackedDib(s->background);
    FreePackedDib(s->wipeStrip);
    FreePackedDib(s->closeStrip);
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    delete s;
}

LRESULT CALLBACK HonourProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return Honour_OnCreate(hwnd);
    HonourState* s = HonourOf(hwnd);
    if (!s) return DefWindowProcA(hwnd, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: Honour_OnPaint(s); return 0;
    case WM_PRINTCLIENT: Honour_OnPrintClient(s, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;  // the composed picture covers everything: erasing would only flash
    case WM_QUERYNEWPALETTE: InvalidateRect(hwnd, nullptr, FALSE); return 0;
    case WM_PALETTECHANGED:
        if (reinterpret_cast<HWND>(wParam) != hwnd) InvalidateRect(hwnd, nullptr, FALSE);
        return 0;
    case PM_NOTIFY: Honour_OnNotify(s, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_CLOSE: Honour_OnClose(s); return 0;
    case WM_DESTROY: Honour_OnDestroy(s); return 0;
    case WM_NCDESTROY: Honour_OnNcDestroy(s); break;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

}  // namespace

void RegisterHonourClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.style = CS_DBLCLKS;
    windowClass.lpfnWndProc = HonourProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    windowClass.lpszClassName = kHonourClass;
    RegisterClassA(&windowClass);
}

HWND OpenHonourWindow() {
    if (g_honourWindow) return g_honourWindow;
    if (g_mainWindow) EnableWindow(g_mainWindow, FALSE);
    HWND window = CreateWindowExA(0, kHonourClass, "", kHonourStyle, 0, 0, 100, 100, g_mainWindow, nullptr,
                                  GetModuleHandleA(nullptr), nullptr);
    // Not shown: nothing would enable the main window again.
    if (!window && g_mainWindow) EnableWindow(g_mainWindow, TRUE);
    return window;
}

HWND CurrentHonourWindow() { return g_honourWindow; }

void CheckForRecord() {
    g_recordScore = GetStatistics(&g_puzzle).score;
    char path[kPathCapacity + 16];
    RecordsPath(path);
    RecordsHeader header;
    RecordEntry entries[kRecordCount];
    LoadRecords(path, &header, entries);
    g_recordRank = RankForScore(entries, g_recordScore);
    if (g_recordRank >= kRecordCount) return;
    // The table first, so that it shows behind the question; the question owned by it stays above it.
    HWND honour = OpenHonourWindow();
    ShowMessage(STR_HONOUR_NAME, honour ? honour : g_mainWindow, StoreRecord, true);
}

void StoreRecord(uint8_t ok) {
    const int32_t rank = g_recordRank;
    g_recordRank = kRecordCount;  // one answer per ranking check
    const char* name = MessageInputText();
    if (!ok || !name || std::strlen(name) + 1 < 2) return;
    if (rank < 0 || rank >= kRecordCount) return;
    char path[kPathCapacity + 16];
    RecordsPath(path);
    RecordsHeader header;
    RecordEntry entries[kRecordCount];
    LoadRecords(path, &header, entries);
    InsertRecord(entries, rank, g_recordScore, name);
    HonourState* s = g_honourWindow ? HonourOf(g_honourWindow) : nullptr;
    if (s)
        for (int32_t i = kRecordCount - 1; i >= rank; --i) ShowRow(s, i, entries[i]);
    WriteRecords(path, &header, entries);
}
