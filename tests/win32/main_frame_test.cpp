// The main window's frame: once it paints, every part of it that no child covers shows the walnut tiles
// and the brass rail round the table, never black, at the sizes of small and common screens; the
// children's places are left to the children.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/main_frame.h"
#include "app/main_window_win32.h"
#include "app/startup_win32.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "win32_support.h"

namespace {

constexpr COLORREF kUntouched = RGB(7, 200, 9);  // what the printing canvas holds where nothing painted
constexpr COLORREF kBlack = RGB(0, 0, 0);

// Tiles whose every pixel differs from its neighbours, so that a shifted grid shows.
COLORREF AcrossTilePixel(int x, int y) { return RGB(90 + 9 * x, 40 + 13 * y, 20); }
COLORREF UprightTilePixel(int x, int y) { return RGB(30, 60 + 11 * x, 100 + 7 * y); }
constexpr int kAcrossWidth = 16, kAcrossHeight = 8, kUprightWidth = 8, kUprightHeight = 16;

// A pack with what the frame needs around it: the six side-button strips, the info button and,
// unless told otherwise, the two frame tiles.
struct FramePack {
    TempFolder folder;
    explicit FramePack(bool withTiles) {
        std::vector<uint8_t*> dibs;
        std::vector<std::pair<uint32_t, const uint8_t*>> items;
        for (int i = 0; i < kSideButtonCount; ++i) {
            dibs.push_back(MakeDib24(50, 138, [i](int, int y) { return RGB(40 * i + 5, y, 200); }));
            items.push_back({kArtTrayEmptyButton + uint32_t(i), dibs.back()});
        }
        dibs.push_back(MakeDib24(40, 120, [](int x, int) { return RGB(200, 100 + x, 50); }));
        items.push_back({kArtInfoButton, dibs.back()});
        if (withTiles) {
            dibs.push_back(MakeDib24(kAcrossWidth, kAcrossHeight, AcrossTilePixel));
            items.push_back({kArtMainFrameAcross, dibs.back()});
            dibs.push_back(MakeDib24(kUprightWidth, kUprightHeight, UprightTilePixel));
            items.push_back({kArtMainFrameUpright, dibs.back()});
        }
        std::string path = folder.File("Tavirel.rf");
        EXPECT_TRUE(WriteTestPack(path, items));
        for (uint8_t* dib : dibs) FreePackedDib(dib);
        EXPECT_TRUE(OpenPack(&g_pack, path.c_str()));
    }
    ~FramePack() { ClosePack(&g_pack); }
};

// The whole main window with every child, its client area the given screen size.
struct MainScreen {
    HWND window = nullptr;
    MainScreen(int32_t width, int32_t height) {
        RegisterWindowClasses(GetModuleHandleA(nullptr));
        g_screenWidth = width;
        g_screenHeight = height;
        window = CreateMainWindow();
        if (!window) return;
        // Without a window manager the maximised popup keeps its first size: give it the screen.
        RECT frame = {0, 0, width, height};
        AdjustWindowRect(&frame, DWORD(GetWindowLongPtrA(window, GWL_STYLE)), FALSE);
        SetWindowPos(window, HWND_TOP, frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top,
                     SWP_SHOWWINDOW);
        PumpMessages(100);
    }
    ~MainScreen() {
        if (window) DestroyWindow(window);
        MSG quit;
        PeekMessageA(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);  // the main window's goodbye
    }
    MainScreen(const MainScreen&) = delete;
    MainScreen& operator=(const MainScreen&) = delete;
};

// Where a child stands on the main window.
FrameBox ChildRect(HWND main, HWND child) {
    RECT r = {};
    GetWindowRect(child, &r);
    MapWindowPoints(nullptr, main, reinterpret_cast<POINT*>(&r), 2);
    return FrameBox{r.left, r.top, r.right, r.bottom};
}

bool Inside(const FrameBox& r, int x, int y) { return x >= r.left && x < r.right && y >= r.top && y < r.bottom; }

// What the frame shows at (x, y): the rail ring it lies on, else the tile of its area's grain, counted
// from the window's origin.
COLORREF ExpectedFramePixel(int x, int y, FrameGrain grain, bool withTiles) {
    for (int d = 1; d <= kRailRings; ++d) {
        FrameBox ring = RailRing(g_screenWidth, g_screenHeight, d);
        bool onRing = Inside(ring, x, y) && (x == ring.left || x == ring.right - 1 || y == ring.top ||
                                             y == ring.bottom - 1);
        if (onRing) return COLORREF(kRailColors[d - 1]);
    }
    if (!withTiles) return COLORREF(kFrameFallbackColor);
    if (grain == kGrainUpright) return UprightTilePixel(x % kUprightWidth, y % kUprightHeight);
    return AcrossTilePixel(x % kAcrossWidth, y % kAcrossHeight);
}

// Points spread over an area: a grid every `step` pixels plus the last row and column.
std::vector<POINT> SamplePoints(const FrameBox& r, int step) {
    std::vector<POINT> points;
    std::vector<int> xs, ys;
    for (int x = r.left; x < r.right; x += step) xs.push_back(x);
    if (xs.back() != r.right - 1) xs.push_back(r.right - 1);
    for (int y = r.top; y < r.bottom; y += step) ys.push_back(y);
    if (ys.back() != r.bottom - 1) ys.push_back(r.bottom - 1);
    for (int y : ys)
        for (int x : xs) points.push_back(POINT{x, y});
    return points;
}

std::string Where(int x, int y) { return "(" + std::to_string(x) + ", " + std::to_string(y) + ")"; }

const FrameChildren kTestChildren = {50, 46, 40, 40};  // the strips of FramePack

// The window printed onto a canvas: every sampled frame pixel is the frame's, every child's middle
// is left as it was.
void ExpectPrintedFrame(int32_t width, int32_t height, bool withTiles) {
    FramePack pack(withTiles);
    MainScreen screen(width, height);
    ASSERT_NE(screen.window, nullptr);
    Canvas canvas(width, height, kUntouched);
    SendMessageA(screen.window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc), PRF_CLIENT);
    std::vector<FrameArea> areas = MainFrameAreas(width, height, kTestChildren);
    ASSERT_GE(areas.size(), 5u);
    int checked = 0;
    for (const FrameArea& area : areas)
        for (const POINT& p : SamplePoints(area.rect, 5)) {
            COLORREF seen = canvas.At(p.x, p.y);
            ASSERT_NE(seen, kBlack) << "black at " << Where(p.x, p.y);
            ASSERT_EQ(seen, ExpectedFramePixel(p.x, p.y, area.grain, withTiles)) << "at " << Where(p.x, p.y);
            ++checked;
        }
    EXPECT_GT(checked, 500);
    for (const FrameBox& child : MainWindowChildren(width, height, kTestChildren)) {
        FrameBox shown = IntersectRects(child, FrameBox{0, 0, width, height});
        int x = (shown.left + shown.right) / 2, y = (shown.top + shown.bottom) / 2;
        EXPECT_EQ(canvas.At(x, y), kUntouched) << "the frame painted under a child at " << Where(x, y);
    }
}

}  // namespace

TEST(MainFramePaint, ChildrenStandWhereTheFrameLeavesRoomForThem) {
    FramePack pack(true);
    MainScreen screen(800, 600);
    ASSERT_NE(screen.window, nullptr);
    std::vector<FrameBox> expected = MainWindowChildren(800, 600, kTestChildren);
    // The table is the window's table child; the side buttons and the info button are its own.
    HWND table = nullptr;
    for (HWND child = GetWindow(screen.window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        char name[64] = "";
        GetClassNameA(child, name, sizeof name);
        if (std::string(name) == "CWNDPUZZLE") table = child;
    }
    ASSERT_NE(table, nullptr);
    FrameBox t = ChildRect(screen.window, table), want = TableRect(800, 600);
    EXPECT_EQ(t.left, want.left);
    EXPECT_EQ(t.top, want.top);
    EXPECT_EQ(t.right, want.right);
    EXPECT_EQ(t.bottom, want.bottom);
    for (int i = 0; i < kSideButtonCount; ++i) {
        FrameBox b = ChildRect(screen.window, g_sideButtons[i]);
        const FrameBox& w = expected[4 + size_t(i)];
        EXPECT_EQ(b.left, w.left) << i;
        EXPECT_EQ(b.top, w.top) << i;
        EXPECT_EQ(b.right, w.right) << i;
        EXPECT_EQ(b.bottom, w.bottom) << i;
    }
    FrameBox info = ChildRect(screen.window, g_infoButton);
    EXPECT_EQ(info.left, expected[10].left);
    EXPECT_EQ(info.top, expected[10].top);
    EXPECT_EQ(info.right, expected[10].right);
    EXPECT_EQ(info.bottom, expected[10].bottom);
}

TEST(MainFramePaint, EveryUncoveredAreaShowsWoodAndRailAt800x600) { ExpectPrintedFrame(800, 600, true); }

TEST(MainFramePaint, EveryUncoveredAreaShowsWoodAndRailAt1024x768) { ExpectPrintedFrame(1024, 768, true); }

TEST(MainFramePaint, OddScreenSizeKeepsTheTilesInStep) { ExpectPrintedFrame(1023, 701, true); }

TEST(MainFramePaint, PackWithoutTheTilesStillPaintsWalnutNotBlack) { ExpectPrintedFrame(800, 600, false); }

// The real paint path: the window is repainted on screen, first whole, then one small odd rectangle of
// the left strip, and the pixels read back through its DC are the frame's.
TEST(MainFramePaint, PaintedWindowShowsTheFrameWholeAndAfterAPartialRepaint) {
    FramePack pack(true);
    MainScreen screen(800, 600);
    ASSERT_NE(screen.window, nullptr);
    RedrawWindow(screen.window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    PumpMessages(50);
    std::vector<FrameArea> areas = MainFrameAreas(800, 600, kTestChildren);
    for (const FrameArea& area : areas)
        for (const POINT& p : SamplePoints(area.rect, 23)) {
            COLORREF seen = ClientPixel(screen.window, p.x, p.y);
            ASSERT_NE(seen, kBlack) << "black at " << Where(p.x, p.y);
            ASSERT_EQ(seen, ExpectedFramePixel(p.x, p.y, area.grain, true)) << "at " << Where(p.x, p.y);
        }
    RECT part = {31, 207, 46, 219};
    RedrawWindow(screen.window, &part, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    for (int y = part.top - 2; y < part.bottom + 2; ++y)
        for (int x = part.left - 2; x < part.right + 2; ++x)
            ASSERT_EQ(ClientPixel(screen.window, x, y), ExpectedFramePixel(x, y, kGrainUpright, true))
                << "at " << Where(x, y);
}
