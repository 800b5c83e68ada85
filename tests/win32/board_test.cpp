// `CWNDPUZZLE` without the real pointer: where the table stands, painting views from their pictures, a view
// shrunk below 2 x 2, the tray notices, the screen-format probe (the real screen, DIB sections of every
// depth, and fake screens that refuse), and a whole 2 x 2 game dropped piece by piece to its completion.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>

#include "app/app_win32.h"
#include "app/title_window_win32.h"
#include "board_test_helpers.h"
#include "extras/bars_win32.h"
#include "extras/video_win32.h"
#include "puzzle/join.h"

namespace {

// Raises piece i to the top of its view's run, as a grab does, and returns the view.
int RaisePiece(uint32_t piece) {
    int view = -1;
    uint32_t position = 0;
    EXPECT_TRUE(FindPieceInViews(&g_puzzle, piece, &view, &position));
    MoveRun(&g_puzzle, view, position, 1, view);
    return view;
}

}  // namespace

TEST(BoardWindow, TableStandsBelowTheTitleAsLargeAsTheScreenLessItsMargins) {
    BoardScreen screen;
    ASSERT_NE(screen.table, nullptr);
    EXPECT_EQ(GetDlgCtrlID(screen.table), kTableControlId);
    POINT corner = {0, 0};
    MapWindowPoints(screen.table, screen.parent.hwnd, &corner, 1);
    EXPECT_EQ(corner.x, kBoardTableX);
    EXPECT_EQ(corner.y, kBoardTableY);
    SIZE size = ClientSize(screen.table);
    EXPECT_EQ(size.cx, kBoardTableWidth);
    EXPECT_EQ(size.cy, kBoardTableHeight);
    EXPECT_EQ(g_puzzle.tableWidth, kBoardTableWidth);
    EXPECT_EQ(g_puzzle.tableHeight, kBoardTableHeight);
    const LONG_PTR style = GetWindowLongPtrA(screen.table, GWL_STYLE);
    EXPECT_EQ(style & (WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN),
              LONG_PTR(WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN));
    EXPECT_STREQ(TitleClockText(), "00:00:00");
    EXPECT_EQ(ViewWindow(kTableView), screen.table);
    EXPECT_EQ(ViewWindow(0), screen.trayView);
    EXPECT_EQ(GetDlgCtrlID(screen.trayView), kViewControlBase + 0);
}

TEST(BoardWindow, NewGameCutsTwoByTwoAndTheTablePaintsItsComposedPicture) {
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    EXPECT_EQ(g_puzzle.patternRows, 2u);
    EXPECT_EQ(g_puzzle.patternColumns, 2u);
    EXPECT_EQ(g_puzzle.patternId, kArtCutPattern);
    EXPECT_EQ(g_puzzle.views[kTableView].count, 4u);
    EXPECT_EQ(g_puzzle.clockPending, 1);
    EXPECT_EQ(g_puzzle.surfaces[0].width, kBoardTrayViewWidth);
    EXPECT_EQ(g_puzzle.surfaces[0].height, kBoardTrayViewHeight);
    InvalidateRect(screen.table, nullptr, FALSE);
    UpdateWindow(screen.table);
    EXPECT_TRUE(ScreenShows(kTableView));
    screen.LayOut({3, 2, 1, 0}, SpreadPositions());
    EXPECT_TRUE(ScreenShows(kTableView));
}

TEST(BoardWindow, PaintDrawsOnlyWhatWasInvalid) {
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.LayOut({0, 1, 2, 3}, SpreadPositions());
    // Change the picture behind the screen's back; only the invalidated rectangle takes the change.
    ViewSurface& s = g_puzzle.surfaces[kTableView];
    std::memset(s.pixels, 0x40, size_t(s.stride) * s.height);
    RECT area = {10, 20, 30, 50};
    InvalidateRect(screen.table, &area, FALSE);
    g_boardCounters = BoardCounters{};
    UpdateWindow(screen.table);
    EXPECT_EQ(g_boardCounters.paints, 1u);
    EXPECT_EQ(ClientPixel(screen.table, 10, 20), RGB(0x40, 0x40, 0x40));
    EXPECT_EQ(ClientPixel(screen.table, 29, 49), RGB(0x40, 0x40, 0x40));
    EXPECT_NE(ClientPixel(screen.table, 30, 20), RGB(0x40, 0x40, 0x40));
    EXPECT_NE(ClientPixel(screen.table, 10, 50), RGB(0x40, 0x40, 0x40));
}

TEST(BoardWindow, ViewShrunkBelowTwoByTwoKeepsItsPicture) {
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    const ViewSurface before = g_puzzle.surfaces[0];
    const COLORREF corner = PicturePixel(0, 5, 5);
    const UINT flags = SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE;
    for (SIZE tiny : {SIZE{1, 1}, SIZE{1, 150}, SIZE{150, 1}, SIZE{0, 0}}) {
        SetWindowPos(screen.trayView, nullptr, 0, 0, tiny.cx, tiny.cy, flags);
        EXPECT_EQ(g_puzzle.surfaces[0].pixels, before.pixels) << tiny.cx << " x " << tiny.cy;
        EXPECT_EQ(g_puzzle.surfaces[0].width, kBoardTrayViewWidth);
        EXPECT_EQ(g_puzzle.surfaces[0].height, kBoardTrayViewHeight);
    }
    // Two by two is enough for a new picture, which keeps the old one's top-left corner.
    SetWindowPos(screen.trayView, nullptr, 0, 0, 300, 220, flags);
    EXPECT_EQ(g_puzzle.surfaces[0].width, 300);
    EXPECT_EQ(g_puzzle.surfaces[0].height, 220);
    EXPECT_EQ(PicturePixel(0, 5, 5), corner);
}

TEST(BoardWindow, DestroyingAViewClearsThePuzzle) {
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    DestroyWindow(screen.trayView);
    screen.trayView = nullptr;
    EXPECT_FALSE(HasPuzzle(&g_puzzle));
    EXPECT_EQ(g_puzzle.rows, 0);
    EXPECT_EQ(g_puzzle.cols, 0);
    EXPECT_EQ(g_puzzle.surfaces[0].pixels, nullptr);
    EXPECT_EQ(ViewWindow(0), nullptr);
}

TEST(BoardNotices, TrayHearsWhenItsViewGetsItsFirstPieceAndWhenItLosesItsLast) {
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.LayOut({0, 1, 2, 3}, SpreadPositions());
    g_trayNotices.clear();
    ASSERT_EQ(RaisePiece(2), kTableView);
    DropPiece(&g_puzzle, 0, kTableView, 2, 10, 10);
    EXPECT_EQ(g_puzzle.views[0].count, 1u);
    EXPECT_EQ(TrayNoticeCount(kViewBecameFilled, screen.trayView), 1);
    EXPECT_EQ(TrayNoticeCount(kViewBecameEmpty, screen.trayView), 0);
    ASSERT_EQ(RaisePiece(2), 0);
    DropPiece(&g_puzzle, kTableView, 0, 2, 5, 150);
    EXPECT_EQ(g_puzzle.views[0].count, 0u);
    EXPECT_EQ(TrayNoticeCount(kViewBecameEmpty, screen.trayView), 1);
    EXPECT_EQ(g_trayNotices.size(), 2u) << DescribeLog(g_trayNotices);
}

// ---- The screen-format probe ----------------------------------------------------------------------------

namespace {

// A small DIB section of the given format: GetDIBits reports a section's own format.
HBITMAP MakeSection(WORD bits, DWORD compression, DWORD red = 0, DWORD green = 0, DWORD blue = 0) {
    struct {
        BITMAPINFOHEADER header;
        DWORD table[256];
    } info;
    std::memset(&info, 0, sizeof info);
    info.header.biSize = sizeof(BITMAPINFOHEADER);
    info.header.biWidth = 8;
    info.header.biHeight = 8;
    info.header.biPlanes = 1;
    info.header.biBitCount = bits;
    info.header.biCompression = compression;
    if (compression == BI_BITFIELDS) {
        info.table[0] = red;
        info.table[1] = green;
        info.table[2] = blue;
    } else if (bits <= 8) {
        for (DWORD i = 0; i < (1u << bits); ++i) info.table[i] = i * 0x010101u;
    }
    void* pixels = nullptr;
    HDC screen = GetDC(nullptr);
    HBITMAP section = CreateDIBSection(screen, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &pixels, nullptr, 0);
    ReleaseDC(nullptr, screen);
    return section;
}

// Runs the probe on a bitmap and describes what it found.
bool ProbeAndDescribe(HBITMAP bitmap, BitmapFormat* format, ScreenFormat* described) {
    HDC screen = GetDC(nullptr);
    bool read = ReadBitmapFormat(screen, bitmap, format);
    ReleaseDC(nullptr, screen);
    EXPECT_TRUE(read);
    return read && DescribeScreenFormat(format->header.biBitCount, format->header.biCompression, format->masks[0],
                                        format->masks[1], format->masks[2], described);
}

BitmapFormat g_fakeScreen;
bool FakeScreenFormat(HDC, HBITMAP, BitmapFormat* out) {
    *out = g_fakeScreen;
    return true;
}

// Plays a screen of another format for as long as it lives.
struct FakeScreen {
    FakeScreen(WORD bits, DWORD compression, DWORD red = 0, DWORD green = 0, DWORD blue = 0) {
        std::memset(&g_fakeScreen, 0, sizeof g_fakeScreen);
        g_fakeScreen.header.biSize = sizeof(BITMAPINFOHEADER);
        g_fakeScreen.header.biWidth = 8;
        g_fakeScreen.header.biHeight = 8;
        g_fakeScreen.header.biPlanes = 1;
        g_fakeScreen.header.biBitCount = bits;
        g_fakeScreen.header.biCompression = compression;
        g_fakeScreen.masks[0] = red;
        g_fakeScreen.masks[1] = green;
        g_fakeScreen.masks[2] = blue;
        g_readScreenFormat = FakeScreenFormat;
    }
    ~FakeScreen() { g_readScreenFormat = ReadBitmapFormat; }
};

}  // namespace

TEST(BoardScreenFormat, TheTestScreenPassesTheRealProbeAndGetsItsCompositionSection) {
    HDC screen = GetDC(nullptr);
    const int depth = GetDeviceCaps(screen, BITSPIXEL);
    HBITMAP compatible = CreateCompatibleBitmap(screen, 16, 16);
    ReleaseDC(nullptr, screen);
    BitmapFormat format;
    ScreenFormat described;
    ASSERT_TRUE(ProbeAndDescribe(compatible, &format, &described))
        << "bits " << format.header.biBitCount << " compression " << format.header.biCompression;
    DeleteObject(compatible);
    EXPECT_EQ(format.header.biBitCount, depth);
    EXPECT_EQ(described.bits, depth);

    ASSERT_TRUE(PrepareDragSurfaces(98, 73));
    const DragSurfaces& d = g_dragSurfaces;
    EXPECT_TRUE(d.ready);
    DIBSECTION section = {};
    ASSERT_EQ(GetObjectA(d.composition, sizeof section, &section), int(sizeof section));
    EXPECT_EQ(section.dsBm.bmWidth, 196);
    EXPECT_EQ(section.dsBm.bmHeight, 146);
    EXPECT_EQ(section.dsBm.bmBitsPixel, depth);
    EXPECT_GT(section.dsBmih.biHeight, 0);  // bottom-up
    EXPECT_EQ(d.compositionPixels.width, 196);
    EXPECT_EQ(d.compositionPixels.height, 146);
    EXPECT_EQ(d.compositionPixels.stride, (depth * 196 + 31) / 32 * 4);
    BITMAP store = {};
    ASSERT_EQ(GetObjectA(d.background, sizeof store, &store), int(sizeof store));
    EXPECT_EQ(store.bmWidth, 98);
    EXPECT_EQ(store.bmHeight, 73);
    ReleaseDragSurfaces();
    EXPECT_FALSE(g_dragSurfaces.ready);
}

TEST(BoardScreenFormat, SixteenBitsWithMasksAreAcceptedWithTheirShiftsAndDivisors) {
    BitmapFormat format;
    ScreenFormat f;
    HBITMAP wide = MakeSection(16, BI_BITFIELDS, 0xF800, 0x07E0, 0x001F);
    ASSERT_NE(wide, nullptr);
    ASSERT_TRUE(ProbeAndDescribe(wide, &format, &f));
    DeleteObject(wide);
    EXPECT_EQ(format.header.biBitCount, 16);
    EXPECT_EQ(format.header.biCompression, DWORD(BI_BITFIELDS));
    EXPECT_EQ(format.masks[0], 0xF800u);
    EXPECT_EQ(format.masks[1], 0x07E0u);
    EXPECT_EQ(format.masks[2], 0x001Fu);
    EXPECT_EQ(f.bits, 16);
    EXPECT_EQ(f.redShift, 11);
    EXPECT_EQ(f.greenShift, 5);
    EXPECT_EQ(f.blueShift, 0);
    EXPECT_EQ(f.redDivisor, 8);
    EXPECT_EQ(f.greenDivisor, 4);
    EXPECT_EQ(f.blueDivisor, 8);

    HBITMAP narrow = MakeSection(16, BI_BITFIELDS, 0x7C00, 0x03E0, 0x001F);
    ASSERT_NE(narrow, nullptr);
    ASSERT_TRUE(ProbeAndDescribe(narrow, &format, &f));
    DeleteObject(narrow);
    EXPECT_EQ(f.redShift, 10);
    EXPECT_EQ(f.greenDivisor, 8);
}

TEST(BoardScreenFormat, TwentyFourBitsAreAccepted) {
    BitmapFormat format;
    ScreenFormat f;
    HBITMAP section = MakeSection(24, BI_RGB);
    ASSERT_NE(section, nullptr);
    ASSERT_TRUE(ProbeAndDescribe(section, &format, &f));
    DeleteObject(section);
    EXPECT_EQ(format.header.biBitCount, 24);
    EXPECT_EQ(f.bits, 24);
}

TEST(BoardScreenFormat, ThirtyTwoBitsWithMasksAreAccepted) {
    BitmapFormat format;
    ScreenFormat f;
    HBITMAP section = MakeSection(32, BI_BITFIELDS, 0xFF0000, 0x00FF00, 0x0000FF);
    ASSERT_NE(section, nullptr);
    ASSERT_TRUE(ProbeAndDescribe(section, &format, &f));
    DeleteObject(section);
    EXPECT_EQ(format.header.biBitCount, 32);
    EXPECT_EQ(format.header.biCompression, DWORD(BI_BITFIELDS));
    EXPECT_EQ(format.masks[0], 0xFF0000u);
    EXPECT_EQ(f.bits, 32);
}

TEST(BoardScreenFormat, PaletteModesAreRefused) {
    for (WORD bits : {WORD(8), WORD(4), WORD(1)}) {
        BitmapFormat format;
        ScreenFormat f;
        HBITMAP section = MakeSection(bits, BI_RGB);
        ASSERT_NE(section, nullptr) << bits;
        EXPECT_FALSE(ProbeAndDescribe(section, &format, &f)) << bits;
        EXPECT_EQ(format.header.biBitCount, bits);
        DeleteObject(section);
    }
}

TEST(BoardScreenFormat, APaletteScreenMakesTheCutFailAndLeavesNoPuzzle) {
    FakeScreen palette(8, BI_RGB);
    EXPECT_FALSE(PrepareDragSurfaces(98, 73));
    BoardScreen screen;
    EXPECT_FALSE(screen.cut);
    EXPECT_FALSE(HasPuzzle(&g_puzzle));
    EXPECT_FALSE(g_dragSurfaces.ready);
    EXPECT_EQ(g_puzzle.views[kTableView].count, 0u);
}

TEST(BoardScreenFormat, SixteenAndThirtyTwoBitScreensWithoutMasksAreRefused) {
    {
        FakeScreen sixteen(16, BI_RGB);
        EXPECT_FALSE(PrepareDragSurfaces(98, 73));
    }
    {
        FakeScreen thirtyTwo(32, BI_RGB);
        EXPECT_FALSE(PrepareDragSurfaces(98, 73));
    }
    {
        FakeScreen sixteen(16, BI_BITFIELDS, 0xF800, 0x07E0, 0x001F);
        EXPECT_TRUE(PrepareDragSurfaces(98, 73));
        EXPECT_EQ(g_dragSurfaces.format.bits, 16);
        EXPECT_EQ(g_dragSurfaces.compositionPixels.bytesPerPixel, 2);
    }
    ReleaseDragSurfaces();
}

// ---- A whole game ---------------------------------------------------------------------------------

TEST(BoardGame, DropsAtTheHomesCompleteThePuzzleResetTheHintButtonAndStartTheCompletionClip) {
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    RegisterVideoClass(GetModuleHandleA(nullptr));
    std::strcpy(g_appFolder, screen.folder.path.c_str());  // no Video folder: the clip cannot play
    HWND hint = CreateControl("CQMANIM", screen.parent.hwnd, 0, 300, 50, 50, 0);
    ASSERT_NE(hint, nullptr);
    g_toolsPair.buttons[kHintButton] = hint;
    SendMessageA(hint, PM_SETENABLE, 0, 0);
    ASSERT_EQ(SendMessageA(hint, PM_GETENABLE, 0, 0), 0);
    screen.LayOut({0, 1, 2, 3}, SpreadPositions());

    for (uint32_t i = 0; i < 4; ++i) {
        ASSERT_EQ(RaisePiece(i), kTableView);
        const Point home = PieceHomePosition(&g_puzzle, i);
        const DropResult result = DropPiece(&g_puzzle, kTableView, kTableView, i, home.x, home.y);
        EXPECT_EQ(result.joined, i > 0) << "piece " << i;
        EXPECT_EQ(result.completed, i == 3) << "piece " << i;
        EXPECT_EQ(g_completionClipsFinished, i == 3 ? 1 : 0) << "piece " << i;
    }
    EXPECT_TRUE(g_puzzle.finished);
    EXPECT_EQ(g_puzzle.timerId, 0u);
    EXPECT_EQ(SendMessageA(hint, PM_GETENABLE, 0, 0), 1);
    EXPECT_FALSE(IsWindowVisible(screen.tray));

    // The table shows the photograph whole, centred.
    PumpMessages(30);
    EXPECT_TRUE(ScreenShows(kTableView));
    const int32_t gridLeft = (kBoardTableWidth - 120) / 2, gridTop = (kBoardTableHeight - 90) / 2;
    int wrong = 0;
    for (int y = 0; y < 90; ++y)
        for (int x = 0; x < 120; ++x)
            if (PicturePixel(kTableView, gridLeft + x, gridTop + y) != BoardPhotoColor(x, y)) ++wrong;
    EXPECT_EQ(wrong, 0);
    g_toolsPair.buttons[kHintButton] = nullptr;
}

#ifdef TAVIREL_CLIP_DIR
TEST(BoardGame, CompletionPlaysTheCompletionClipAndItsEndCarriesTheGameOn) {
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    RegisterVideoClass(GetModuleHandleA(nullptr));
    // The clips lie in <folder>\Video: the program folder is the one above.
    std::string folder = TAVIREL_CLIP_DIR;
    folder.resize(folder.size() - std::strlen("Video"));
    std::strcpy(g_appFolder, folder.c_str());
    screen.LayOut({0, 1, 2, 3}, SpreadPositions());
    for (uint32_t i = 0; i < 4; ++i) {
        ASSERT_EQ(RaisePiece(i), kTableView);
        const Point home = PieceHomePosition(&g_puzzle, i);
        DropPiece(&g_puzzle, kTableView, kTableView, i, home.x, home.y);
    }
    ASSERT_TRUE(g_puzzle.finished);
    HWND clip = FindWindowA(kVideoClass, nullptr);
    ASSERT_NE(clip, nullptr);
    EXPECT_NE(VideoDevice(), 0u);
    EXPECT_EQ(g_videoMode, VIDEO_COMPLETION);
    EXPECT_EQ(g_completionClipsFinished, 0);  // the game goes on when the clip ends
    SendMessageA(clip, WM_CLOSE, 0, 0);
    for (int k = 0; k < 100 && IsWindow(clip); ++k) PumpMessages(50);
    EXPECT_FALSE(IsWindow(clip));
    EXPECT_EQ(g_completionClipsFinished, 1);
    std::strcpy(g_appFolder, "");
}
#endif
