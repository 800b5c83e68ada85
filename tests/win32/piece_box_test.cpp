// `CWNDBOX`: the six boxes as created, titles kept to 40 characters, closing that only hides, renaming
// through the message window (cancelled and confirmed), the side buttons' tray artwork, the bevel and the
// backdrop, the layout after a resize, and moving and resizing under the real pointer.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/language_chooser_win32.h"
#include "app/main_window_win32.h"
#include "app/message_window_win32.h"
#include "app/theme.h"
#include "board_test_helpers.h"
#include "puzzle/join.h"
#include "puzzle/preview_win32.h"
#include "setup/box_frame.h"
#include "setup/chooser_classes_win32.h"
#include "setup/piece_box_win32.h"

namespace {

const COLORREF kBlack = RGB(0, 0, 0);
const COLORREF kLight = RGB(255, 227, 180);
const COLORREF kDark = RGB(100, 50, 50);

COLORREF TileColor(int x, int y) { return PatternColor(x, y, 5); }
// Side-button strips: three 46-pixel frames, one colour per tray and look.
COLORREF EmptyTrayColor(int k) { return RGB(30 * k + 10, 20, 220); }
COLORREF FullTrayColor(int k) { return RGB(30 * k + 10, 220, 20); }

RECT ScreenRectOf(HWND hwnd) {
    RECT r = {};
    GetWindowRect(hwnd, &r);
    return r;
}

RECT ChildRectOf(HWND child) {
    RECT r = ScreenRectOf(child);
    MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&r), 2);
    return r;
}

std::string TitleOf(HWND box) {
    char text[100];
    GetWindowTextA(box, text, sizeof text);
    return text;
}

void ShowQuietly(HWND hwnd) {
    SetWindowPos(hwnd, nullptr, 0, 0, 0, 0, SWP_SHOWWINDOW | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// A playing screen in a test parent: the table with a 2 x 2 puzzle, six side buttons (ids 100 + k), the
// six real boxes with their trays, the preview, and a pack with the boxes' artwork. Box 0 stands over the
// parent's screen place, shown, so that its pixels can be read.
struct BoxScreen {
    TempFolder folder;
    LoggingParent parent{320, 350};
    int32_t savedWidth, savedHeight;
    HWND savedSideButtons[kSideButtonCount];
    std::vector<uint8_t*> dibs;
    HWND table = nullptr;
    bool cut = false;
    POINT origin = {};  // the parent's screen place

    BoxScreen() : savedWidth(g_screenWidth), savedHeight(g_screenHeight) {
        HINSTANCE instance = GetModuleHandleA(nullptr);
        EnsureControlClasses();
        EXPECT_TRUE(RegisterBoardClass(instance));
        RegisterChooserAndPreviewClasses(instance);
        RegisterMessageWindowClass(instance);
        RegisterPieceBoxClass(instance);
        g_screenWidth = kBoardScreenWidth;
        g_screenHeight = kBoardScreenHeight;
        std::vector<std::pair<uint32_t, const uint8_t*>> items;
        auto add = [&](uint32_t id, uint8_t* dib) {
            dibs.push_back(dib);
            items.push_back({id, dib});
        };
        add(kArtCutPattern, MakeBoardPattern());
        add(kArtTrayTile, MakeDib24(30, 31, TileColor));
        add(kArtTrayCloseButton, MakeFrameStrip(22, 22, {RGB(250, 250, 0), RGB(0, 250, 250), RGB(250, 0, 250)}));
        add(kArtTrayRenameButton, MakeFrameStrip(22, 22, {RGB(0, 120, 250), RGB(120, 0, 250), RGB(250, 120, 0)}));
        for (int k = 0; k < kPieceBoxCount; ++k) {
            add(kArtTrayEmptyButton + uint32_t(k), MakeDib24(24, 138, [k](int, int) { return EmptyTrayColor(k); }));
            add(kArtTrayFullButton + uint32_t(k), MakeDib24(24, 138, [k](int, int) { return FullTrayColor(k); }));
        }
        uint8_t* photo = MakeDib24(120, 90, BoardPhotoColor);
        uint8_t* cloth = MakeDib8(100, 100, 16, [](int x, int y) { return uint8_t((x / 10 + y / 10) % 16); });
        dibs.push_back(photo);
        dibs.push_back(cloth);
        const std::string pack = folder.File("Tavirel.rf"), picture = folder.File("photo.bmp");
        EXPECT_TRUE(WriteTestPack(pack, items));
        EXPECT_TRUE(OpenPack(&g_pack, pack.c_str()));
        EXPECT_TRUE(WriteDibAsBmp(picture.c_str(), photo));
        EXPECT_TRUE(LoadCurrentPicture(picture.c_str()));
        SetTableTexture(&g_puzzle, cloth);
        g_puzzle.rows = 2;
        g_puzzle.cols = 2;
        g_puzzle.scale = 1.0;
        table = CreateTable(parent.hwnd);
        for (int k = 0; k < kSideButtonCount; ++k) {
            savedSideButtons[k] = g_sideButtons[k];
            g_sideButtons[k] = CreateControl("CQMBOXSCOMMAND", parent.hwnd, 296, 80 + 40 * k, 24, 30,
                                             kFirstSideButtonId + k);
        }
        CreatePieceBoxes(parent.hwnd);
        cut = StartNewGame(0);
        RECT place = ScreenRectOf(parent.hwnd);
        origin = POINT{place.left, place.top};
        SetWindowPos(g_pieceBoxes[0], nullptr, origin.x + 8, origin.y + 8, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        TogglePieceBox(0);
        UpdateWindow(g_pieceBoxes[0]);
        PumpMessages(30);
    }

    ~BoxScreen() {
        if (HWND message = CurrentMessageWindow()) DestroyWindow(message);
        PumpMessages(80);  // an answer still on its way
        for (HWND box : g_pieceBoxes)
            if (box) DestroyWindow(box);
        if (table) DestroyWindow(table);
        if (g_magnifierWindow) DestroyWindow(g_magnifierWindow);
        for (int k = 0; k < kSideButtonCount; ++k) {
            if (g_sideButtons[k]) DestroyWindow(g_sideButtons[k]);
            g_sideButtons[k] = savedSideButtons[k];
        }
        FlushMessages();
        ClosePack(&g_pack);
        ClearCurrentPicture();
        SetTableTexture(&g_puzzle, nullptr);
        for (uint8_t* dib : dibs) FreePackedDib(dib);
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
    }

    HWND Box(int k) const { return g_pieceBoxes[k]; }
    HWND Button(int k, int id) const { return GetDlgItem(g_pieceBoxes[k], id); }

    // Moves the piece at the top of the table's run into tray k's view; returns it.
    uint32_t DropTopPieceInTray(int k) {
        const uint32_t piece = g_puzzle.views[kTableView].entries[0];
        DropPiece(&g_puzzle, k, kTableView, piece, 20, 20);
        return piece;
    }

    // The question the rename button opens, answered by the keys of the message window.
    void AnswerRename(const char* typed, WPARAM key) {
        HWND message = CurrentMessageWindow();
        ASSERT_NE(message, nullptr);
        HWND field = FindWindowExA(message, nullptr, "EDIT", nullptr);
        ASSERT_NE(field, nullptr);
        SetWindowTextA(field, typed);
        SendMessageA(message, WM_CHAR, key, 1);
        PumpMessages(200);  // the answer comes 45 ms after the window has gone
    }
};

COLORREF SideButtonColor(HWND button) {
    const uint8_t* image = reinterpret_cast<const uint8_t*>(SendMessageA(button, PM_GETIMAGE, 0, 0));
    return image ? COLORREF(DibAt(image, 5, 5)) : COLORREF(0xFFFFFFFF);
}

// Under Wine with no window manager, moving an active popup drops its focus and with it the mouse capture;
// the pointer tests keep the box inactive, as the test parents keep themselves.
WNDPROC g_boxProcedure = nullptr;

LRESULT CALLBACK InactiveBoxProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_MOUSEACTIVATE) return MA_NOACTIVATE;
    return CallWindowProcA(g_boxProcedure, hwnd, message, wParam, lParam);
}

void KeepInactive(HWND box) {
    g_boxProcedure = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(box, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(InactiveBoxProc)));
}

void ClickRename(const BoxScreen& screen, int k) {
    SendMessageA(screen.Box(k), PM_NOTIFY, NOTIFY_CLICKED,
                 reinterpret_cast<LPARAM>(screen.Button(k, kBoxRenameButtonId)));
}

}  // namespace

TEST(PieceBox, SixBoxesAreMadeHiddenTitledBox1ToBox6WithTheirTrays) {
    BoxScreen screen;
    ASSERT_TRUE(screen.cut);
    for (int k = 0; k < kPieceBoxCount; ++k) {
        HWND box = screen.Box(k);
        ASSERT_NE(box, nullptr) << k;
        EXPECT_EQ(TitleOf(box), "Box " + std::to_string(k + 1));
        EXPECT_EQ(GetWindow(box, GW_OWNER), screen.parent.hwnd);
        if (k > 0) {
            EXPECT_FALSE(IsWindowVisible(box)) << k;
            RECT r = ScreenRectOf(box);
            EXPECT_EQ(r.left, 60 + 10 * k);
            EXPECT_EQ(r.top, 78 + 10 * k);
        }
        EXPECT_EQ(WindowSize(box).cx, 300);
        EXPECT_EQ(WindowSize(box).cy, 300);
        HWND view = ViewWindow(k);
        ASSERT_NE(view, nullptr);
        EXPECT_EQ(GetParent(view), box);
        EXPECT_EQ(GetDlgCtrlID(view), 100 + k);
        RECT v = ChildRectOf(view);
        EXPECT_EQ(v.left, 6);
        EXPECT_EQ(v.top, 36);
        EXPECT_EQ(v.right - v.left, 288);
        EXPECT_EQ(v.bottom - v.top, 258);
    }
}

TEST(PieceBox, CloseAndRenameButtonsStandAtTheTopRightWithTheirStrips) {
    BoxScreen screen;
    HWND close = screen.Button(0, kBoxCloseButtonId), rename = screen.Button(0, kBoxRenameButtonId);
    ASSERT_NE(close, nullptr);
    ASSERT_NE(rename, nullptr);
    EXPECT_TRUE(IsWindowVisible(close));
    EXPECT_TRUE(IsWindowVisible(rename));
    char name[32];
    GetClassNameA(close, name, sizeof name);
    EXPECT_STREQ(name, "CQMCOMMAND");
    RECT c = ChildRectOf(close), r = ChildRectOf(rename);
    EXPECT_EQ(c.left, 270);
    EXPECT_EQ(c.top, 7);
    EXPECT_EQ(c.right - c.left, 22);  // sized by its strip
    EXPECT_EQ(r.left, 246);
    EXPECT_LT(r.right, c.left);
    const uint8_t* closeStrip = reinterpret_cast<const uint8_t*>(SendMessageA(close, PM_GETIMAGE, 0, 0));
    const uint8_t* renameStrip = reinterpret_cast<const uint8_t*>(SendMessageA(rename, PM_GETIMAGE, 0, 0));
    ASSERT_NE(closeStrip, nullptr);
    ASSERT_NE(renameStrip, nullptr);
    EXPECT_EQ(COLORREF(DibAt(closeStrip, 3, 3)), RGB(250, 250, 0));
    EXPECT_EQ(COLORREF(DibAt(renameStrip, 3, 3)), RGB(0, 120, 250));
    EXPECT_EQ(ClientPixel(screen.Box(0), 275, 12), RGB(250, 250, 0));
}

TEST(PieceBox, TitleLongerThanFortyIsCutToForty) {
    BoxScreen screen;
    const std::string longTitle = "Sky, clouds and the top of the lighthouse tower";  // 47 characters
    ASSERT_GT(longTitle.size(), 40u);
    EXPECT_TRUE(SendMessageA(screen.Box(2), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(longTitle.c_str())));
    EXPECT_EQ(SendMessageA(screen.Box(2), WM_GETTEXTLENGTH, 0, 0), 40);
    EXPECT_EQ(TitleOf(screen.Box(2)), longTitle.substr(0, 40));
    EXPECT_EQ(GetWindowTextLengthA(screen.Box(2)), 40);
}

TEST(PieceBox, GetTextNeverWritesPastTheCallersBuffer) {
    BoxScreen screen;
    SetWindowTextA(screen.Box(1), "Edge pieces");
    char buffer[16];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(SendMessageA(screen.Box(1), WM_GETTEXT, 6, reinterpret_cast<LPARAM>(buffer)), 5);
    EXPECT_STREQ(buffer, "Edge ");
    for (size_t i = 6; i < sizeof buffer; ++i) EXPECT_EQ(buffer[i], '#') << i;
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(SendMessageA(screen.Box(1), WM_GETTEXT, 0, reinterpret_cast<LPARAM>(buffer)), 0);
    EXPECT_EQ(buffer[0], '#');
}

TEST(PieceBox, CloseButtonHidesTheBoxAndNeverDestroysIt) {
    BoxScreen screen;
    ASSERT_TRUE(screen.cut);
    HWND box = screen.Box(0);
    const uint32_t piece = screen.DropTopPieceInTray(0);
    SetWindowTextA(box, "Keep me");
    const RECT before = ScreenRectOf(box);
    ASSERT_TRUE(IsWindowVisible(box));
    SendMessageA(box, PM_NOTIFY, NOTIFY_CLICKED, reinterpret_cast<LPARAM>(screen.Button(0, kBoxCloseButtonId)));
    EXPECT_TRUE(IsWindow(box));
    EXPECT_FALSE(IsWindowVisible(box));
    EXPECT_EQ(g_pieceBoxes[0], box);
    SendMessageA(box, WM_CLOSE, 0, 0);
    PumpMessages(30);
    EXPECT_TRUE(IsWindow(box));
    const RECT after = ScreenRectOf(box);
    EXPECT_TRUE(EqualRect(&before, &after));
    EXPECT_EQ(TitleOf(box), "Keep me");
    ASSERT_EQ(g_puzzle.views[0].count, 1u);
    EXPECT_EQ(g_puzzle.views[0].entries[0], piece);
    TogglePieceBox(0);
    EXPECT_TRUE(IsWindowVisible(box));
}

TEST(PieceBox, RenameDisablesTheBoxAndHidesTheOtherBoxesAndThePreview) {
    BoxScreen screen;
    for (int k = 1; k < kPieceBoxCount; ++k) TogglePieceBox(k);
    ASSERT_NE(g_magnifierWindow, nullptr);
    ShowQuietly(g_magnifierWindow);
    ClickRename(screen, 3);
    EXPECT_EQ(RenamingPieceBox(), screen.Box(3));
    EXPECT_FALSE(IsWindowEnabled(screen.Box(3)));
    EXPECT_TRUE(IsWindowVisible(screen.Box(3)));
    for (int k = 0; k < kPieceBoxCount; ++k) {
        if (k == 3) continue;
        EXPECT_FALSE(IsWindowVisible(screen.Box(k))) << k;
    }
    EXPECT_FALSE(IsWindowVisible(g_magnifierWindow));
    HWND message = CurrentMessageWindow();
    ASSERT_NE(message, nullptr);
    EXPECT_NE(FindWindowExA(message, nullptr, "EDIT", nullptr), nullptr);  // the name field
    screen.AnswerRename("", 27);
}

TEST(PieceBox, CancellingTheRenameKeepsTheTitleAndEnablesTheBoxAgain) {
    BoxScreen screen;
    ClickRename(screen, 0);
    ASSERT_FALSE(IsWindowEnabled(screen.Box(0)));
    screen.AnswerRename("Not this name", 27);
    EXPECT_EQ(CurrentMessageWindow(), nullptr);
    EXPECT_EQ(TitleOf(screen.Box(0)), "Box 1");
    EXPECT_TRUE(IsWindowEnabled(screen.Box(0)));
    EXPECT_EQ(RenamingPieceBox(), nullptr);
}

TEST(PieceBox, ConfirmingTheRenameMakesTheTypedTextTheTitle) {
    BoxScreen screen;
    ClickRename(screen, 0);
    screen.AnswerRename("Sky and clouds", 13);
    EXPECT_EQ(TitleOf(screen.Box(0)), "Sky and clouds");
    EXPECT_TRUE(IsWindowEnabled(screen.Box(0)));
    EXPECT_EQ(TitleOf(screen.Box(1)), "Box 2");
}

TEST(PieceBox, ConfirmedNameLongerThanTwentyThreeIsCut) {
    BoxScreen screen;
    ClickRename(screen, 4);
    screen.AnswerRename("abcdefghijklmnopqrstuvwxyz0123", 13);  // put in past the field's own limit
    EXPECT_EQ(TitleOf(screen.Box(4)), "abcdefghijklmnopqrstuvw");
    EXPECT_TRUE(IsWindowEnabled(screen.Box(4)));
}

TEST(PieceBox, RenameAnswerAfterTheBoxIsGoneDoesNothing) {
    BoxScreen screen;
    ClickRename(screen, 5);
    HWND box = screen.Box(5);
    DestroyWindow(box);
    EXPECT_EQ(RenamingPieceBox(), nullptr);
    EXPECT_EQ(g_pieceBoxes[5], nullptr);
    FinishBoxRename(1, "Lost");  // must not touch the destroyed box
    screen.AnswerRename("", 27);
}

TEST(PieceBox, DroppingAPieceIntoAnEmptyTrayShowsItsFullArtAtOnce) {
    BoxScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.DropTopPieceInTray(2);
    ASSERT_EQ(g_puzzle.views[2].count, 1u);
    EXPECT_EQ(SideButtonColor(g_sideButtons[2]), FullTrayColor(2));
    EXPECT_NE(SideButtonColor(g_sideButtons[1]), FullTrayColor(1));
}

TEST(PieceBox, MovingTheLastPieceOutOfATrayShowsItsEmptyArtAtOnce) {
    BoxScreen screen;
    ASSERT_TRUE(screen.cut);
    const uint32_t first = screen.DropTopPieceInTray(4);
    const uint32_t second = screen.DropTopPieceInTray(4);
    ASSERT_EQ(g_puzzle.views[4].count, 2u);
    ASSERT_EQ(SideButtonColor(g_sideButtons[4]), FullTrayColor(4));
    DropPiece(&g_puzzle, kTableView, 4, second, 5, 5);
    EXPECT_EQ(SideButtonColor(g_sideButtons[4]), FullTrayColor(4));  // one piece is still there
    DropPiece(&g_puzzle, kTableView, 4, first, 150, 150);
    ASSERT_EQ(g_puzzle.views[4].count, 0u);
    EXPECT_EQ(SideButtonColor(g_sideButtons[4]), EmptyTrayColor(4));
}

TEST(PieceBox, BevelIsBlackThenLightAtTopLeftAndDarkThenBlackAtBottomRight) {
    BoxScreen screen;
    HWND box = screen.Box(0);
    const SIZE size = ClientSize(box);
    const COLORREF topLeft[6] = {kBlack, kBlack, kBlack, kLight, kLight, kLight};
    const COLORREF bottomRight[6] = {kDark, kDark, kDark, kBlack, kBlack, kBlack};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(ClientPixel(box, 150, i), topLeft[i]) << "top " << i;
        EXPECT_EQ(ClientPixel(box, i, 150), topLeft[i]) << "left " << i;
        EXPECT_EQ(ClientPixel(box, 150, size.cy - 1 - i), bottomRight[i]) << "bottom " << i;
        EXPECT_EQ(ClientPixel(box, size.cx - 1 - i, 150), bottomRight[i]) << "right " << i;
    }
    EXPECT_NE(ClientPixel(box, 150, 6), kLight);  // the frame ends there
}

TEST(PieceBox, TitleStripShowsTheTiledBackdropAndTheTitleInTheTextColour) {
    BoxScreen screen;
    HWND box = screen.Box(0);
    for (int x : {130, 161, 200})
        for (int y : {8, 20, 33}) EXPECT_EQ(ClientPixel(box, x, y), TileColor(x % 30, y % 31)) << x << ", " << y;
    int lit = 0;
    for (int y = 5; y < 30; ++y)
        for (int x = 10; x < 80; ++x) lit += ClientPixel(box, x, y) == COLORREF(kCommonTextColor);
    EXPECT_GT(lit, 20);
    SetWindowTextA(box, "");
    UpdateWindow(box);
    lit = 0;
    for (int y = 5; y < 30; ++y)
        for (int x = 10; x < 80; ++x) lit += ClientPixel(box, x, y) == COLORREF(kCommonTextColor);
    EXPECT_EQ(lit, 0);
}

TEST(PieceBox, ResizedBoxLaysOutItsTrayAndButtonsAndDrawsThePieces) {
    BoxScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.DropTopPieceInTray(0);
    HWND box = screen.Box(0);
    SetWindowPos(box, nullptr, 0, 0, 250, 320, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    UpdateWindow(box);
    PumpMessages(30);
    RECT view = ChildRectOf(ViewWindow(0));
    EXPECT_EQ(view.left, 6);
    EXPECT_EQ(view.top, 36);
    EXPECT_EQ(view.right, 250 - 6);
    EXPECT_EQ(view.bottom, 320 - 6);
    EXPECT_EQ(g_puzzle.surfaces[0].width, 238);
    EXPECT_EQ(g_puzzle.surfaces[0].height, 278);
    EXPECT_EQ(ChildRectOf(screen.Button(0, kBoxCloseButtonId)).left, 220);
    EXPECT_EQ(ChildRectOf(screen.Button(0, kBoxRenameButtonId)).left, 196);
    EXPECT_TRUE(ScreenShows(0));
    EXPECT_EQ(ClientPixel(box, 249 - 1, 150), kDark);  // the bevel moved with the edge
    EXPECT_EQ(ClientPixel(box, 248 - 4, 150), kBlack);
}

// ---- Under the real pointer -------------------------------------------------------------------------

TEST(PointerPieceBox, DraggingTheCornerResizesButNeverBelow201) {
    PointerLock lock;
    BoxScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.DropTopPieceInTray(0);
    HWND box = screen.Box(0);
    KeepInactive(box);
    const RECT start = ScreenRectOf(box);
    PointerTo(start.right - 40, start.bottom - 40);
    PointerTo(start.right - 2, start.bottom - 2);
    LeftDown();
    PointerTo(start.right - 60, start.bottom - 80);
    EXPECT_EQ(WindowSize(box).cx, 300 - 58);
    EXPECT_EQ(WindowSize(box).cy, 300 - 78);
    PointerTo(start.right - 200, start.bottom - 250);
    EXPECT_EQ(WindowSize(box).cx, 201);
    EXPECT_EQ(WindowSize(box).cy, 201);
    PointerTo(start.right + 2, start.bottom + 12);
    LeftUp();
    RECT end = ScreenRectOf(box);
    EXPECT_EQ(end.left, start.left);
    EXPECT_EQ(end.top, start.top);
    EXPECT_EQ(end.right - end.left, 304);
    EXPECT_EQ(end.bottom - end.top, 314);
    EXPECT_EQ(GetCapture(), nullptr);
    RECT view = ChildRectOf(ViewWindow(0));
    EXPECT_EQ(view.right - view.left, 304 - 12);
    EXPECT_EQ(view.bottom - view.top, 314 - 42);
    EXPECT_EQ(ChildRectOf(screen.Button(0, kBoxCloseButtonId)).left, 304 - 30);
    PumpMessages(30);
    EXPECT_TRUE(ScreenShows(0));
    // The drag is over: the pointer moving on changes nothing.
    PointerTo(start.right - 50, start.bottom - 50);
    EXPECT_EQ(WindowSize(box).cx, 304);
}

TEST(PointerPieceBox, DraggingTheLeftEdgeStopsAt201WithTheRightEdgeInPlace) {
    PointerLock lock;
    BoxScreen screen;
    HWND box = screen.Box(0);
    KeepInactive(box);
    const RECT start = ScreenRectOf(box);
    PointerTo(start.left + 30, start.top + 150);
    PointerTo(start.left + 2, start.top + 150);
    LeftDown();
    PointerTo(start.left + 40, start.top + 170);
    RECT r = ScreenRectOf(box);
    EXPECT_EQ(r.left, start.left + 38);
    EXPECT_EQ(r.right, start.right);
    EXPECT_EQ(r.top, start.top);
    EXPECT_EQ(r.bottom, start.bottom);
    PointerTo(start.left + 250, start.top + 150);
    r = ScreenRectOf(box);
    EXPECT_EQ(r.right - r.left, 201);
    EXPECT_EQ(r.right, start.right);
    LeftUp();
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST(PointerPieceBox, DraggingTheTitleStripMovesTheBoxWithoutResizingIt) {
    PointerLock lock;
    BoxScreen screen;
    HWND box = screen.Box(0);
    KeepInactive(box);
    const RECT start = ScreenRectOf(box);
    PointerTo(start.left + 120, start.top + 40);
    PointerTo(start.left + 150, start.top + 20);
    LeftDown();
    EXPECT_EQ(GetCapture(), box);
    PointerTo(start.left + 160, start.top + 23);
    PointerTo(start.left + 135, start.top + 34);
    LeftUp();
    RECT end = ScreenRectOf(box);
    EXPECT_EQ(end.left, start.left - 15);
    EXPECT_EQ(end.top, start.top + 14);
    EXPECT_EQ(end.right - end.left, 300);
    EXPECT_EQ(end.bottom - end.top, 300);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST(PointerPieceBox, LosingTheCaptureEndsTheMove) {
    PointerLock lock;
    BoxScreen screen;
    HWND box = screen.Box(0);
    KeepInactive(box);
    const RECT start = ScreenRectOf(box);
    PointerTo(start.left + 120, start.top + 40);
    PointerTo(start.left + 150, start.top + 20);
    LeftDown();
    PointerTo(start.left + 155, start.top + 20);
    SetCapture(screen.parent.hwnd);
    PumpMessages(30);
    const RECT held = ScreenRectOf(box);
    EXPECT_EQ(held.left, start.left + 5);
    PointerTo(start.left + 170, start.top + 30);
    const RECT after = ScreenRectOf(box);
    EXPECT_TRUE(EqualRect(&held, &after));
    ReleaseCapture();
    LeftUp();
}

TEST(PointerPieceBox, EdgesAndCornerShowResizeCursorsAndTheTitleStripTheMoveCursor) {
    PointerLock lock;
    BoxScreen screen;
    HWND box = screen.Box(0);
    KeepInactive(box);
    const RECT r = ScreenRectOf(box);
    PointerTo(r.right - 20, r.bottom - 20);
    PointerTo(r.right - 3, r.bottom - 3);
    EXPECT_EQ(GetCursor(), LoadCursorA(nullptr, IDC_SIZENWSE));
    PointerTo(r.left + 2, r.top + 150);
    EXPECT_EQ(GetCursor(), LoadCursorA(nullptr, IDC_SIZEWE));
    PointerTo(r.left + 150, r.bottom - 2);
    EXPECT_EQ(GetCursor(), LoadCursorA(nullptr, IDC_SIZENS));
    PointerTo(r.left + 100, r.top + 20);
    EXPECT_EQ(GetCursor(), LoadCursorA(nullptr, IDC_SIZEALL));
}
