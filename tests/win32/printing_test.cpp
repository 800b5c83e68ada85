// Printing: the photograph's page (banners, five bands, caption) and the information pages drawn on a
// bitmap the size of a small sheet, the wait window with its text and squares, and both jobs ending
// silently when no printer is installed.
#include <gtest/gtest.h>
#include <windows.h>
#include <winspool.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/art_ids.h"
#include "extras/info_text.h"
#include "extras/print_layout.h"
#include "extras/printing_win32.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "win32_support.h"

namespace {

// A sheet in the shape of A4, small enough to look at every pixel.
constexpr int kPageWidth = 620, kPageHeight = 877;
constexpr COLORREF kPaper = RGB(255, 255, 255);
constexpr COLORREF kHeaderColor = RGB(30, 90, 160);
constexpr COLORREF kFooterColor = RGB(160, 40, 90);
constexpr COLORREF kPanelColor = RGB(240, 230, 200);
constexpr COLORREF kUnlitColor = RGB(70, 60, 50);
constexpr COLORREF kLitColor = RGB(250, 180, 40);
constexpr int kPanelWidth = 494, kPanelHeight = 320;
constexpr COLORREF kCaptionColor = RGB(216, 146, 100);

// Bottom-up row r of the test photographs: every row its own colour, red rising by 3 a row.
COLORREF RowColor(int r) { return RGB(40 + 3 * r, 200 - 2 * r, 60 + (r * 37) % 150); }

int ColorDistance(COLORREF a, COLORREF b) {
    return std::abs(GetRValue(a) - GetRValue(b)) + std::abs(GetGValue(a) - GetGValue(b)) +
           std::abs(GetBValue(a) - GetBValue(b));
}

// A BMP file of a packed DIB: 14-byte file header, the 40-byte header, its colour table, its rows;
// topDown writes the rows top first with a negative height.
std::string BmpFileOf(const uint8_t* dib, bool topDown = false) {
    DibHeader header = *DibHeaderOf(dib);
    uint32_t colors = header.biClrUsed;
    int64_t stride = DibStride(header.biBitCount, header.biWidth);
    int32_t rows = header.biHeight;
    uint32_t pixelsAt = 54 + 4 * colors;
    std::string bytes(pixelsAt + size_t(stride) * rows, '\0');
    uint32_t fileSize = uint32_t(bytes.size());
    bytes[0] = 'B';
    bytes[1] = 'M';
    std::memcpy(&bytes[2], &fileSize, 4);
    std::memcpy(&bytes[10], &pixelsAt, 4);
    if (topDown) header.biHeight = -rows;
    std::memcpy(&bytes[14], &header, 40);
    std::memcpy(&bytes[54], DibPalette(dib), 4 * colors);
    for (int32_t r = 0; r < rows; ++r) {
        int32_t from = topDown ? rows - 1 - r : r;
        std::memcpy(&bytes[pixelsAt + size_t(stride) * r], DibPixels(dib) + stride * from, size_t(stride));
    }
    return bytes;
}

// A photograph whose bottom-up row r has RowColor(r).
std::string RowPhotograph(int width, int height, bool topDown = false) {
    uint8_t* dib = MakeDib24(width, height, [height](int, int y) { return RowColor(height - 1 - y); });
    std::string bytes = BmpFileOf(dib, topDown);
    FreePackedDib(dib);
    return bytes;
}

// The artwork printing uses, each in plain colours; the pack stays open for the test.
struct PrintPack {
    TempFolder folder;
    PrintPack() {
        std::vector<uint8_t*> dibs = {
            MakeDib24(kHeaderArtWidth, kHeaderArtHeight, [](int, int) { return kHeaderColor; }),
            MakeDib24(kFooterArtWidth, kFooterArtHeight, [](int, int) { return kFooterColor; }),
            MakeDib24(kPanelWidth, kPanelHeight, [](int, int) { return kPanelColor; }),
            MakeDib24(kPrintSquareSize, 2 * kPrintSquareSize,
                      [](int, int y) { return y < kPrintSquareSize ? kUnlitColor : kLitColor; }),
        };
        std::string path = folder.File("Tavirel.rf");
        EXPECT_TRUE(WriteTestPack(path, {{kArtPrintHeader, dibs[0]},
                                         {kArtPrintFooter, dibs[1]},
                                         {kArtPrintWaitPanel, dibs[2]},
                                         {kArtProgressSquare, dibs[3]}}));
        for (uint8_t* dib : dibs) FreePackedDib(dib);
        EXPECT_TRUE(OpenPack(&g_pack, path.c_str()));
    }
    ~PrintPack() { ClosePack(&g_pack); }
};

struct PrintingTest : ::testing::Test {
    PrintPack pack;
    int32_t savedWidth = g_screenWidth, savedHeight = g_screenHeight, savedLanguage = g_language;
    std::vector<HWND> opened;

    void SetUp() override {
        static bool registered = false;
        if (!registered) RegisterPrintWaitClass(GetModuleHandleA(nullptr));
        registered = true;
        g_screenWidth = 1024;
        g_screenHeight = 768;
        g_language = kEnglish;
    }
    void TearDown() override {
        for (HWND window : opened)
            if (IsWindow(window)) DestroyWindow(window);
        FlushMessages();
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
        g_language = savedLanguage;
    }
    HWND OpenWait() {
        HWND wait = OpenPrintWaitWindow(nullptr);
        if (wait) opened.push_back(wait);
        return wait;
    }
    // A photograph file in the test folder, named in a writable buffer of the game's path size.
    std::vector<char> PhotoPath(const char* name, const std::string& bytes) {
        std::string path = pack.folder.File(name);
        EXPECT_TRUE(WriteFileBytes(path, bytes));
        std::vector<char> buffer(kPathCapacity, 0);
        std::strncpy(buffer.data(), path.c_str(), kPathCapacity - 1);
        return buffer;
    }
    PrintFrame Frame() {
        PrintFrame frame{};
        EXPECT_TRUE(LayOutPrintFrame(kPageWidth, kPageHeight, &frame));
        return frame;
    }
};

// What a window shows, through the same painting as on the screen.
struct WindowPicture {
    Canvas canvas;
    explicit WindowPicture(HWND window) : canvas(kPanelWidth, kPanelHeight, RGB(0, 0, 0)) {
        SendMessageA(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc), PRF_CLIENT);
        GdiFlush();
    }
    // True when every pixel of square k has the colour.
    bool SquareIs(int k, COLORREF color) const {
        for (int y = 0; y < kPrintSquareSize; ++y)
            for (int x = 0; x < kPrintSquareSize; ++x)
                if (canvas.At(kPrintSquareX + kPrintSquareStep * k + x, kPrintSquareY + y) != color) return false;
        return true;
    }
    int LitSquares() const {
        int lit = 0;
        for (int k = 0; k < kPrintSquareCount; ++k) lit += SquareIs(k, kLitColor) ? 1 : 0;
        return lit;
    }
};

// The rows of a column at x that are not paper, as [first, last]; -1, -1 when all are paper.
std::pair<int, int> InkRows(const Canvas& page, int x, int from, int to) {
    int first = -1, last = -1;
    for (int y = from; y < to; ++y)
        if (page.At(x, y) != kPaper) {
            if (first < 0) first = y;
            last = y;
        }
    return {first, last};
}

std::pair<int, int> InkColumns(const Canvas& page, int y) {
    int first = -1, last = -1;
    for (int x = 0; x < page.width; ++x)
        if (page.At(x, y) != kPaper) {
            if (first < 0) first = x;
            last = x;
        }
    return {first, last};
}

int PixelsNear(const Canvas& page, COLORREF color, int tolerance, int top, int bottom) {
    int count = 0;
    for (int y = top; y < bottom; ++y)
        for (int x = 0; x < page.width; ++x) count += ColorDistance(page.At(x, y), color) <= tolerance ? 1 : 0;
    return count;
}

bool HasDefaultPrinter() {
    char name[MAX_PATH] = {};
    DWORD size = sizeof name;
    DWORD needed = 0, returned = 0;
    EnumPrintersA(PRINTER_ENUM_LOCAL, nullptr, 5, nullptr, 0, &needed, &returned);
    return (GetDefaultPrinterA(name, &size) && name[0] && needed > 0);
}

// This thread's visible windows, counted as wait windows and others.
struct ThreadWindows {
    int wait = 0, others = 0;
};
ThreadWindows CountThreadWindows() {
    ThreadWindows count;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM found) -> BOOL {
            char name[64] = {};
            GetClassNameA(window, name, sizeof name);
            ThreadWindows* count = reinterpret_cast<ThreadWindows*>(found);
            if (std::strcmp(name, kPrintWaitClass) == 0)
                ++count->wait;
            else if (IsWindowVisible(window))
                ++count->others;
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

}  // namespace

// ---- The page ----

TEST_F(PrintingTest, PageFrameHasTheHeaderAtTheTopAndTheFooterAtTheBottom) {
    Canvas page(kPageWidth, kPageHeight, kPaper);
    std::vector<char> path = PhotoPath("frame.bmp", RowPhotograph(100, 50));
    ASSERT_TRUE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, nullptr, path.data()));
    PrintFrame frame = Frame();
    for (int y = 0; y < frame.headerHeight; ++y)
        for (int x = 0; x < frame.headerWidth; ++x) ASSERT_EQ(page.At(x, y), kHeaderColor) << x << "," << y;
    EXPECT_NE(page.At(kPageWidth / 2, frame.headerHeight), kHeaderColor);
    int footerTop = kPageHeight - frame.footerHeight;
    for (int y = footerTop; y < kPageHeight; ++y)
        for (int x = 0; x < frame.footerWidth; ++x) ASSERT_EQ(page.At(x, y), kFooterColor) << x << "," << y;
    EXPECT_EQ(page.At(kPageWidth / 2, footerTop - 1), kPaper);
}

TEST_F(PrintingTest, PhotographBandsGoBottomFirstInTheirTrueColours) {
    Canvas page(kPageWidth, kPageHeight, kPaper);
    std::vector<char> path = PhotoPath("rows.bmp", RowPhotograph(100, 50));
    ASSERT_TRUE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, nullptr, path.data()));
    PrintFrame frame = Frame();
    PhotoPrintLayout layout{};
    ASSERT_TRUE(LayOutPhotograph(&frame, 100, 50, &layout));
    ASSERT_EQ(layout.bandRows, 10);
    // The middle of every printed row shows its file row: band 0 (rows 0..9) lowest on the page.
    for (int band = 0; band < kPrintBandCount; ++band)
        for (int i = 0; i < layout.bandRows; ++i) {
            int y = PhotoBandY(&layout, band) + layout.bandHeight - 1 -
                    (2 * i + 1) * layout.bandHeight / (2 * layout.bandRows);
            for (int x : {layout.x, layout.x + layout.width / 2, layout.x + layout.width - 1})
                ASSERT_EQ(page.At(x, y), RowColor(band * 10 + i)) << "band " << band << " row " << i << " x " << x;
        }
}

TEST_F(PrintingTest, PhotographHeightNotAMultipleOfFiveLosesItsTopRowsOnPaper) {
    Canvas page(kPageWidth, kPageHeight, kPaper);
    std::vector<char> path = PhotoPath("tall52.bmp", RowPhotograph(100, 52));
    ASSERT_TRUE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, nullptr, path.data()));
    PrintFrame frame = Frame();
    PhotoPrintLayout layout{};
    ASSERT_TRUE(LayOutPhotograph(&frame, 100, 52, &layout));
    // Rows 0..49 print; the two top rows, 50 and 51, appear nowhere on the page.
    int seen50 = 0, seen51 = 0, seen49 = 0;
    for (int y = 0; y < kPageHeight; ++y)
        for (int x = 0; x < kPageWidth; x += 7) {
            COLORREF c = page.At(x, y);
            seen49 += c == RowColor(49);
            seen50 += c == RowColor(50);
            seen51 += c == RowColor(51);
        }
    EXPECT_GT(seen49, 0);
    EXPECT_EQ(seen50, 0);
    EXPECT_EQ(seen51, 0);
    // The topmost printed line of the picture is row 49.
    EXPECT_EQ(page.At(kPageWidth / 2, layout.top), RowColor(49));
}

TEST_F(PrintingTest, PalettedPhotographPrintsInItsPaletteColours) {
    Canvas page(kPageWidth, kPageHeight, kPaper);
    // 8 bits: file row r uses palette entry 3 r + 1.
    uint8_t* dib = MakeDib8(60, 40, 256, [](int, int y) { return uint8_t(3 * (39 - y) + 1); });
    std::vector<char> path = PhotoPath("paletted.bmp", BmpFileOf(dib));
    FreePackedDib(dib);
    ASSERT_TRUE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, nullptr, path.data()));
    PrintFrame frame = Frame();
    PhotoPrintLayout layout{};
    ASSERT_TRUE(LayOutPhotograph(&frame, 60, 40, &layout));
    for (int band = 0; band < kPrintBandCount; ++band)
        for (int i = 0; i < layout.bandRows; ++i) {
            int y = PhotoBandY(&layout, band) + layout.bandHeight - 1 -
                    (2 * i + 1) * layout.bandHeight / (2 * layout.bandRows);
            ASSERT_EQ(page.At(kPageWidth / 2, y), TestPaletteEntry(3 * (band * layout.bandRows + i) + 1))
                << band << "," << i;
        }
}

TEST_F(PrintingTest, TopDownPhotographPrintsUpright) {
    Canvas bottomUp(kPageWidth, kPageHeight, kPaper), topDown(kPageWidth, kPageHeight, kPaper);
    std::vector<char> first = PhotoPath("up.bmp", RowPhotograph(100, 50));
    std::vector<char> second = PhotoPath("down.bmp", RowPhotograph(100, 50, true));
    ASSERT_TRUE(DrawPhotographPage(bottomUp.dc, kPageWidth, kPageHeight, nullptr, first.data()));
    ASSERT_TRUE(DrawPhotographPage(topDown.dc, kPageWidth, kPageHeight, nullptr, second.data()));
    EXPECT_TRUE(bottomUp.Snapshot() == topDown.Snapshot());
}

TEST_F(PrintingTest, WidePhotographFillsThePageWidthCentredOnThePageHeight) {
    Canvas page(kPageWidth, kPageHeight, kPaper);
    std::vector<char> path = PhotoPath("wide.bmp", RowPhotograph(300, 20));
    ASSERT_TRUE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, nullptr, path.data()));
    PrintFrame frame = Frame();
    auto rows = InkRows(page, kPageWidth / 2, frame.headerHeight * 2, kPageHeight - frame.footerHeight);
    ASSERT_GE(rows.first, 0);
    auto columns = InkColumns(page, (rows.first + rows.second) / 2);
    EXPECT_EQ(columns.first, 0);
    EXPECT_EQ(columns.second, kPageWidth - 1);
    // Centred on the whole sheet: as much paper above the picture as below it, give or take a row.
    int above = rows.first, below = kPageHeight - 1 - rows.second;
    EXPECT_LE(std::abs(above - below), 1) << above << " above, " << below << " below";
}

TEST_F(PrintingTest, TallPhotographFitsBetweenTheBannersCentredOnThePageHeight) {
    Canvas page(kPageWidth, kPageHeight, kPaper);
    std::vector<char> path = PhotoPath("tall.bmp", RowPhotograph(30, 100));
    ASSERT_TRUE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, nullptr, path.data()));
    PrintFrame frame = Frame();
    int room = kPageHeight - 2 * frame.headerHeight - frame.footerHeight;
    auto rows = InkRows(page, kPageWidth / 2, frame.headerHeight, kPageHeight - frame.footerHeight);
    ASSERT_GE(rows.first, 0);
    int printedHeight = rows.second - rows.first + 1;
    // As high as the room between the banners allows (less what the five bands lose to rounding).
    EXPECT_LE(printedHeight, room);
    EXPECT_GE(printedHeight, room - kPrintBandCount);
    auto columns = InkColumns(page, (rows.first + rows.second) / 2);
    EXPECT_GT(columns.first, 0);
    EXPECT_LE(std::abs(columns.first - (kPageWidth - 1 - columns.second)), 1);
    // Centred on the sheet, not on the room between the banners.
    int above = rows.first, below = kPageHeight - 1 - rows.second;
    EXPECT_LE(std::abs(above - below), 1) << above << " above, " << below << " below";
}

TEST_F(PrintingTest, CaptionIsWrittenUnderTheHeaderInItsColour) {
    Canvas page(kPageWidth, kPageHeight, kPaper);
    std::vector<char> path = PhotoPath("caption.bmp", RowPhotograph(100, 50));
    ASSERT_TRUE(WriteFileBytes(pack.folder.File("caption.txt"), "A yellow daisy glows in the afternoon sun."));
    ASSERT_TRUE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, nullptr, path.data()));
    EXPECT_EQ(std::string(path.data()), pack.folder.File("caption.txt"));
    PrintFrame frame = Frame();
    int lineHeight = frame.headerHeight / 3;
    EXPECT_GT(PixelsNear(page, kCaptionColor, 24, frame.headerHeight, frame.headerHeight + lineHeight), 50);
    // Nothing of it above the header's foot or below its one line.
    EXPECT_EQ(PixelsNear(page, kCaptionColor, 24, 0, frame.headerHeight), 0);
    EXPECT_EQ(PixelsNear(page, kCaptionColor, 24, frame.headerHeight + lineHeight, kPageHeight), 0);
    auto columns = InkColumns(page, frame.headerHeight + lineHeight / 2);
    EXPECT_LT(columns.first, lineHeight) << "the caption starts at the sheet's left edge";
}

TEST_F(PrintingTest, MissingCaptionLeavesTheCaptionOut) {
    Canvas page(kPageWidth, kPageHeight, kPaper);
    std::vector<char> path = PhotoPath("nocaption.bmp", RowPhotograph(100, 50));
    ASSERT_TRUE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, nullptr, path.data()));
    PrintFrame frame = Frame();
    EXPECT_EQ(PixelsNear(page, kCaptionColor, 24, 0, kPageHeight), 0);
    EXPECT_EQ(InkColumns(page, frame.headerHeight + frame.headerHeight / 6).first, -1);
}

TEST_F(PrintingTest, PathWithoutADotFindsNoCaption) {
    ASSERT_EQ(pack.folder.path.find('.'), std::string::npos) << "the test folder's own path must have no dot";
    Canvas page(kPageWidth, kPageHeight, kPaper);
    std::vector<char> path = PhotoPath("photograph", RowPhotograph(100, 50));
    ASSERT_TRUE(WriteFileBytes(pack.folder.File("photograph.txt"), "A caption nobody finds."));
    ASSERT_TRUE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, nullptr, path.data()));
    EXPECT_STREQ(path.data(), ".txt");
    EXPECT_EQ(PixelsNear(page, kCaptionColor, 24, 0, kPageHeight), 0);
}

TEST_F(PrintingTest, UnreadablePhotographDrawsNothing) {
    std::string good = RowPhotograph(100, 50);
    std::string truncated = good.substr(0, good.size() / 2);
    std::string compressed = good;
    uint32_t rle8 = 1;
    std::memcpy(&compressed[14 + 16], &rle8, 4);
    std::string hugePalette = good;
    uint32_t colors = 100000;
    std::memcpy(&hugePalette[14 + 32], &colors, 4);
    int index = 0;
    for (const std::string* bytes : {&truncated, &compressed, &hugePalette}) {
        Canvas page(kPageWidth, kPageHeight, kPaper);
        std::vector<uint8_t> blank = page.Snapshot();
        std::vector<char> path = PhotoPath(("bad" + std::to_string(index++) + ".bmp").c_str(), *bytes);
        EXPECT_FALSE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, nullptr, path.data())) << index;
        EXPECT_TRUE(page.Snapshot() == blank) << index;
    }
    Canvas page(kPageWidth, kPageHeight, kPaper);
    std::vector<char> missing(kPathCapacity, 0);
    std::strcpy(missing.data(), pack.folder.File("missing.bmp").c_str());
    EXPECT_FALSE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, nullptr, missing.data()));
    EXPECT_EQ(std::string(missing.data()), pack.folder.File("missing.bmp"));
}

TEST_F(PrintingTest, InformationPagesHoldTheirLinesBetweenTheMarginsAboveTheFooter) {
    PrintFrame frame = Frame();
    for (int pageIndex = 0; pageIndex < kInfoPageCount; ++pageIndex) {
        Canvas page(kPageWidth, kPageHeight, kPaper);
        ASSERT_TRUE(DrawInformationPage(page.dc, kPageWidth, kPageHeight, pageIndex));
        InfoPrintLayout layout{};
        ASSERT_TRUE(LayOutInfoPage(&frame, pageIndex, &layout));
        int footerTop = kPageHeight - frame.footerHeight;
        // Runs of rows with ink between the banners: one per line, each starting near the line's place.
        std::vector<std::pair<int, int>> runs;
        int left = kPageWidth, right = -1;
        for (int y = frame.headerHeight; y < footerTop; ++y) {
            auto columns = InkColumns(page, y);
            if (columns.first < 0) continue;
            left = std::min(left, columns.first);
            right = std::max(right, columns.second);
            if (!runs.empty() && runs.back().second == y - 1)
                runs.back().second = y;
            else
                runs.push_back({y, y});
        }
        ASSERT_EQ(int(runs.size()), kInfoLinesPerPage) << "page " << pageIndex;
        for (int line = 0; line < kInfoLinesPerPage; ++line) {
            EXPECT_GE(runs[line].first, layout.y[line]) << pageIndex << "," << line;
            EXPECT_LT(runs[line].second, layout.y[line] + layout.lineHeight) << pageIndex << "," << line;
        }
        EXPECT_GE(left, layout.x);
        EXPECT_LE(left, layout.x + layout.lineHeight / 2);
        EXPECT_LT(right, kPageWidth - layout.x);
        EXPECT_EQ(PixelsNear(page, RGB(0, 0, 0), 150, footerTop, kPageHeight), 0) << "text on the footer";
    }
}

TEST_F(PrintingTest, InformationPageOutsideTheTextDrawsNothing) {
    Canvas page(kPageWidth, kPageHeight, kPaper);
    std::vector<uint8_t> blank = page.Snapshot();
    EXPECT_FALSE(DrawInformationPage(page.dc, kPageWidth, kPageHeight, 2));
    EXPECT_FALSE(DrawInformationPage(page.dc, kPageWidth, kPageHeight, -1));
    EXPECT_TRUE(page.Snapshot() == blank);
}

// ---- The wait window ----

TEST_F(PrintingTest, WaitWindowShowsItsTextAndFiveUnlitSquares) {
    HWND wait = OpenWait();
    ASSERT_NE(wait, nullptr);
    char title[64] = {};
    GetWindowTextA(wait, title, sizeof title);
    EXPECT_STREQ(title, "Printing, please wait.....");
    WindowPicture picture(wait);
    for (int k = 0; k < kPrintSquareCount; ++k) EXPECT_TRUE(picture.SquareIs(k, kUnlitColor)) << k;
    // The words stand on the panel between the printer picture and the squares.
    int ink = 0;
    for (int y = 140; y < kPrintSquareY; ++y)
        for (int x = 0; x < kPanelWidth; ++x) ink += ColorDistance(picture.canvas.At(x, y), kPanelColor) > 120;
    EXPECT_GT(ink, 100);
    EXPECT_EQ(picture.canvas.At(5, 5), kPanelColor);
}

TEST_F(PrintingTest, WaitWindowSitsCentredOnTheScreenAtThePanelsSize) {
    HWND wait = OpenWait();
    ASSERT_NE(wait, nullptr);
    RECT at;
    GetWindowRect(wait, &at);
    EXPECT_EQ(at.right - at.left, kPanelWidth);
    EXPECT_EQ(at.bottom - at.top, kPanelHeight);
    EXPECT_EQ(at.left, (1024 - kPanelWidth) / 2);
    EXPECT_EQ(at.top, (768 - kPanelHeight) / 2);
    EXPECT_TRUE(IsWindowVisible(wait));
}

TEST_F(PrintingTest, WaitWindowLightsTheSquaresItIsTold) {
    HWND wait = OpenWait();
    ASSERT_NE(wait, nullptr);
    LightPrintProgress(wait, 2);
    {
        WindowPicture picture(wait);
        EXPECT_TRUE(picture.SquareIs(2, kLitColor));
        EXPECT_EQ(picture.LitSquares(), 1);
    }
    LightPrintProgress(wait, 5);
    LightPrintProgress(wait, -1);
    LightPrintProgress(wait, 0);
    WindowPicture picture(wait);
    EXPECT_TRUE(picture.SquareIs(0, kLitColor));
    EXPECT_EQ(picture.LitSquares(), 2);
    // A window of another class is left alone.
    TestWindow other(0, 0, 50, 50);
    LightPrintProgress(other.hwnd, 1);
    LightPrintProgress(nullptr, 1);
}

TEST_F(PrintingTest, PhotographPageLightsOneSquarePerBand) {
    HWND wait = OpenWait();
    ASSERT_NE(wait, nullptr);
    Canvas page(kPageWidth, kPageHeight, kPaper);
    std::vector<char> path = PhotoPath("squares.bmp", RowPhotograph(100, 50));
    ASSERT_TRUE(DrawPhotographPage(page.dc, kPageWidth, kPageHeight, wait, path.data()));
    EXPECT_EQ(WindowPicture(wait).LitSquares(), kPrintSquareCount);
}

TEST_F(PrintingTest, WaitWindowClosesOnClose) {
    HWND wait = OpenWait();
    ASSERT_NE(wait, nullptr);
    SendMessageA(wait, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(wait));
}

// ---- No printer ----

TEST_F(PrintingTest, WithoutADefaultPrinterThePhotographJobEndsSilently) {
    if (HasDefaultPrinter()) GTEST_SKIP() << "a default printer is installed here";
    HWND wait = OpenWait();
    ASSERT_NE(wait, nullptr);
    std::vector<char> path = PhotoPath("silent.bmp", RowPhotograph(100, 50));
    std::string before = path.data();
    EXPECT_FALSE(PrintPhotograph(wait, path.data()));
    FlushMessages();
    EXPECT_EQ(WindowPicture(wait).LitSquares(), 0);
    EXPECT_EQ(std::string(path.data()), before);
    EXPECT_EQ(CountThreadWindows().others, 0) << "a printing failure shows nothing";
}

TEST_F(PrintingTest, WithoutADefaultPrinterTheInformationJobEndsSilently) {
    if (HasDefaultPrinter()) GTEST_SKIP() << "a default printer is installed here";
    EXPECT_FALSE(PrintInformation());
    FlushMessages();
    EXPECT_EQ(CountThreadWindows().others, 0) << "a printing failure shows nothing";
}

TEST_F(PrintingTest, PrintButtonSequenceClosesItsWaitWindow) {
    if (HasDefaultPrinter()) GTEST_SKIP() << "a default printer is installed here";
    std::vector<char> path = PhotoPath("button.bmp", RowPhotograph(100, 50));
    std::string before = path.data();
    PrintWithWaitWindow(nullptr, path.data());
    FlushMessages();
    EXPECT_EQ(CountThreadWindows().wait, 0);
    EXPECT_EQ(std::string(path.data()), before) << "the caller's path is never changed";
    PrintWithWaitWindow(nullptr, nullptr);
    FlushMessages();
    EXPECT_EQ(CountThreadWindows().wait, 0);
}
