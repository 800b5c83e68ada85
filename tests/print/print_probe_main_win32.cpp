// The printing test's Windows side: prints the photograph or the information text on the default
// printer with the game's own code, and looks at the pages rendered from the PDFs that came out.
//   print_probe caps
//   print_probe photo FOLDER IMAGE          (IMAGE relative to the program folder, e.g. Image\Daisy11.bmp)
//   print_probe info FOLDER
//   print_probe check-photo FOLDER IMAGE PAGE.ppm HORZRES VERTRES PHYSWIDTH PHYSHEIGHT OFFSETX OFFSETY
//   print_probe check-info FOLDER PAGE.ppm PAGE HORZRES VERTRES PHYSWIDTH PHYSHEIGHT OFFSETX OFFSETY
// Every finding is one line; "check NAME: ok" or "check NAME: FAIL ...", and last "result: ok" or
// "result: FAIL". Exit code 0 when the job printed / every check passed.
#include <windows.h>
#include <winspool.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "app/app_state.h"
#include "app/art_ids.h"
#include "app/platform.h"
#include "extras/info_text.h"
#include "extras/print_layout.h"
#include "extras/printing_win32.h"
#include "gfx/pack.h"
#include "page_check.h"

namespace {

bool g_failed = false;

void Check(const char* name, bool ok, const char* detail) {
    std::printf("check %s: %s %s\n", name, ok ? "ok" : "FAIL", detail);
    if (!ok) g_failed = true;
}

bool SetUpGame(const char* folder) {
    std::string path = folder;
    if (path.empty() || path.back() != '\\') path += '\\';
    if (path.size() >= size_t(kPathCapacity) - 32) return false;
    std::strcpy(g_appFolder, path.c_str());
    g_language = kEnglish;
    g_screenWidth = GetSystemMetrics(SM_CXSCREEN);
    g_screenHeight = GetSystemMetrics(SM_CYSCREEN);
    return OpenPack(&g_pack, (path + "Tavirel.rf").c_str());
}

int PrintCaps() {
    char name[MAX_PATH] = {};
    DWORD size = sizeof name;
    if (!GetDefaultPrinterA(name, &size) || !name[0]) {
        std::printf("printer none\ncaps none\n");
        return 1;
    }
    std::printf("printer %s\n", name);
    HDC dc = CreateDCA(nullptr, name, nullptr, nullptr);
    if (!dc) {
        std::printf("caps none\n");
        return 1;
    }
    std::printf("caps %d %d %d %d %d %d\n", GetDeviceCaps(dc, HORZRES), GetDeviceCaps(dc, VERTRES),
                GetDeviceCaps(dc, PHYSICALWIDTH), GetDeviceCaps(dc, PHYSICALHEIGHT), GetDeviceCaps(dc, PHYSICALOFFSETX),
                GetDeviceCaps(dc, PHYSICALOFFSETY));
    DeleteDC(dc);
    return 0;
}

// Squares of the wait window that show the lit cell of the progress picture.
int LitSquares(HWND wait) {
    RgbImage cells;
    if (!ReadPackItemAsRgb(kArtProgressSquare, &cells)) return -1;
    RECT client;
    GetClientRect(wait, &client);
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = client.right;
    info.bmiHeader.biHeight = -client.bottom;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* bits = nullptr;
    HBITMAP shot = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HDC dc = CreateCompatibleDC(nullptr);
    HGDIOBJ previous = SelectObject(dc, shot);
    SendMessageA(wait, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
    GdiFlush();
    int stride = (client.right * 3 + 3) & ~3, lit = 0;
    for (int k = 0; k < kPrintSquareCount; ++k) {
        bool same = true;
        for (int y = 0; same && y < kPrintSquareSize; ++y)
            for (int x = 0; same && x < kPrintSquareSize; ++x) {
                const uint8_t* p = static_cast<uint8_t*>(bits) + (kPrintSquareY + y) * stride +
                                   3 * (kPrintSquareX + kPrintSquareStep * k + x);
                Rgb want = PixelAt(&cells, x, kPrintSquareSize + y);
                same = RgbDistance(Rgb{p[2], p[1], p[0]}, want) <= 6;
            }
        lit += same ? 1 : 0;
    }
    SelectObject(dc, previous);
    DeleteDC(dc);
    DeleteObject(shot);
    FreeRgbImage(&cells);
    return lit;
}

// Visible windows of this thread besides the wait window: a print must show nothing else.
int OtherWindows() {
    int count = 0;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM counter) -> BOOL {
            char name[64] = {};
            GetClassNameA(window, name, sizeof name);
            if (IsWindowVisible(window) && std::strcmp(name, kPrintWaitClass) != 0) ++*reinterpret_cast<int*>(counter);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

int PrintPhoto(const char* image) {
    PrintCaps();
    RegisterPrintWaitClass(GetModuleHandleA(nullptr));
    HWND wait = OpenPrintWaitWindow(nullptr);
    char path[kPathCapacity] = {};
    std::snprintf(path, sizeof path, "%s%s", g_appFolder, image);
    bool printed = PrintPhotograph(wait, path);
    std::printf("printed %d\ncaption-path %s\nlit %d\nother-windows %d\n", printed ? 1 : 0, path,
                wait ? LitSquares(wait) : -1, OtherWindows());
    if (wait) SendMessageA(wait, WM_CLOSE, 0, 0);
    return printed ? 0 : 1;
}

int PrintInfo() {
    PrintCaps();
    bool printed = PrintInformation();
    std::printf("printed %d\nother-windows %d\n", printed ? 1 : 0, OtherWindows());
    return printed ? 0 : 1;
}

bool ReadMap(char** numbers, const RgbImage* page, PageMap* map) {
    int32_t* fields[] = {&map->horzRes, &map->vertRes, &map->physicalWidth, &map->physicalHeight, &map->offsetX,
                         &map->offsetY};
    for (int i = 0; i < 6; ++i) *fields[i] = std::atoi(numbers[i]);
    map->renderWidth = page->width;
    map->renderHeight = page->height;
    return map->horzRes > 0 && map->vertRes > 0 && map->physicalWidth > 0 && map->physicalHeight > 0;
}

void CheckBanners(const RgbImage* page, const PageMap* map, const PrintFrame* frame) {
    RgbImage header, footer;
    char detail[128];
    if (!ReadPackItemAsRgb(kArtPrintHeader, &header) || !ReadPackItemAsRgb(kArtPrintFooter, &footer)) {
        Check("banners", false, "(the pack has no banners)");
        return;
    }
    double top = StretchedMatch(page, map, &header, 0, 0, frame->headerWidth, frame->headerHeight, 90);
    std::snprintf(detail, sizeof detail, "(%.1f%% of banner 272's solid ink found in the header's place)", 100 * top);
    // Resampling the small print of the footer costs some of its blocks; a misplaced banner keeps a third
    // at most.
    Check("header-at-top", top >= 0.75, detail);
    double bottom = StretchedMatch(page, map, &footer, 0, frame->pageHeight - frame->footerHeight, frame->footerWidth,
                                   frame->footerHeight, 90);
    std::snprintf(detail, sizeof detail, "(%.1f%% of banner 273's solid ink found in the footer's place)", 100 * bottom);
    Check("footer-at-bottom", bottom >= 0.75, detail);
    // The other way round would not match: the two banners differ.
    double swapped = StretchedMatch(page, map, &footer, 0, 0, frame->headerWidth, frame->headerHeight, 90);
    std::snprintf(detail, sizeof detail, "(only %.1f%% of banner 273's solid ink found in the header's place)", 100 * swapped);
    Check("banners-differ", swapped < 0.5, detail);
    FreeRgbImage(&header);
    FreeRgbImage(&footer);
}

int CheckPhotoPage(const char* image, const char* ppm, char** numbers) {
    RgbImage page, photo;
    PageMap map;
    PrintFrame frame;
    PhotoPrintLayout layout;
    char path[kPathCapacity] = {};
    std::snprintf(path, sizeof path, "%s%s", g_appFolder, image);
    if (!ReadPpm(ppm, &page) || !ReadMap(numbers, &page, &map) || !ReadBmpAsRgb(path, &photo) ||
        !LayOutPrintFrame(map.horzRes, map.vertRes, &frame) ||
        !LayOutPhotograph(&frame, photo.width, photo.height, &layout)) {
        std::printf("result: FAIL (cannot read the page %s or the photograph %s)\n", ppm, path);
        return 1;
    }
    std::printf("page %dx%d rendered, photograph %dx%d, printed %dx%d at (%d, %d)\n", page.width, page.height,
                photo.width, photo.height, layout.width, kPrintBandCount * layout.bandHeight, layout.x, layout.top);
    CheckBanners(&page, &map, &frame);
    char detail[256];

    // Where the picture really is, found from the ink alone.
    InkBox box;
    bool found = FindPictureBox(&page, int32_t(RenderY(&map, frame.headerHeight)),
                                int32_t(RenderY(&map, frame.pageHeight - frame.footerHeight)) - 1, 0.2, &box);
    double wantLeft = RenderX(&map, layout.x), wantRight = RenderX(&map, layout.x + layout.width) - 1;
    double wantTop = RenderY(&map, layout.top);
    double wantBottom = RenderY(&map, layout.top + kPrintBandCount * layout.bandHeight) - 1;
    std::snprintf(detail, sizeof detail, "(found x %d..%d y %d..%d, expected x %.0f..%.0f y %.0f..%.0f)", box.left,
                  box.right, box.top, box.bottom, wantLeft, wantRight, wantTop, wantBottom);
    bool placed = found && std::fabs(box.left - wantLeft) <= 3 && std::fabs(box.right - wantRight) <= 3 &&
                  std::fabs(box.top - wantTop) <= 3 && std::fabs(box.bottom - wantBottom) <= 3;
    Check("photograph-place", placed, detail);
    if (!found) {
        std::printf("result: FAIL\n");
        return 1;
    }
    double middle = (box.top + box.bottom) / 2.0, pageMiddle = RenderY(&map, frame.pageHeight / 2.0);
    std::snprintf(detail, sizeof detail, "(picture's middle at %.1f, the page's at %.1f)", middle, pageMiddle);
    Check("centred-on-page-height", std::fabs(middle - pageMiddle) <= 3, detail);
    double across = (box.left + box.right) / 2.0, pageAcross = RenderX(&map, frame.pageWidth / 2.0);
    std::snprintf(detail, sizeof detail, "(picture's middle at x %.1f, the page's at %.1f)", across, pageAcross);
    Check("centred-across", std::fabs(across - pageAcross) <= 3, detail);

    // True colours: patches of the page against the same places of the photograph. The page shows its
    // bottom 5 * (height / 5) rows, stretched over the five bands.
    int32_t shown = kPrintBandCount * layout.bandRows, hidden = photo.height - shown;
    int32_t patches = 0, good = 0;
    int64_t total = 0;
    const int32_t across_ = 16, down = 10, half = 3;
    for (int32_t j = 0; j < down; ++j)
        for (int32_t i = 0; i < across_; ++i) {
            int32_t rx = box.left + 6 + (box.right - box.left - 12) * (2 * i + 1) / (2 * across_);
            int32_t ry = box.top + 6 + (box.bottom - box.top - 12) * (2 * j + 1) / (2 * down);
            Rgb seen = MeanColor(&page, rx - half, ry - half, rx + half, ry + half);
            auto sourceX = [&](double r) { return (DeviceX(&map, r) - layout.x) * photo.width / layout.width; };
            auto sourceY = [&](double r) {
                return hidden + (DeviceY(&map, r) - layout.top) * shown / (kPrintBandCount * layout.bandHeight);
            };
            Rgb want = MeanColor(&photo, int32_t(sourceX(rx - half)), int32_t(sourceY(ry - half)),
                                 int32_t(sourceX(rx + half + 1)) - 1, int32_t(sourceY(ry + half + 1)) - 1);
            int32_t distance = RgbDistance(seen, want);
            total += distance;
            ++patches;
            good += distance <= 60 ? 1 : 0;
        }
    std::snprintf(detail, sizeof detail, "(%d of %d patches within 60 of the photograph's own colours, mean %.1f)",
                  good, patches, double(total) / patches);
    Check("true-colours", good * 10 >= patches * 9 && total / patches <= 30, detail);

    // The caption, when the photograph has one, right under the header from the sheet's left edge.
    // (The banners carry the same copper, so only the caption's own line is looked at.)
    char caption[kPathCapacity];
    std::memcpy(caption, path, sizeof caption);
    MakeCaptionPath(caption, sizeof caption);
    int32_t lineTop = int32_t(RenderY(&map, frame.headerHeight));
    int32_t lineBottom = int32_t(RenderY(&map, frame.headerHeight + frame.headerHeight / 3)) + 2;
    Rgb captionColor = {216, 146, 100};
    int32_t under = CountNear(&page, captionColor, 60, lineTop, lineBottom);
    int32_t leftmost = page.width;
    for (int32_t y = lineTop; y < lineBottom; ++y)
        for (int32_t x = 0; x < leftmost; ++x)
            if (RgbDistance(PixelAt(&page, x, y), captionColor) <= 60) leftmost = x;
    if (SysPathExists(caption)) {
        std::snprintf(detail, sizeof detail, "(%d caption-coloured pixels in rows %d..%d, the first at x %d)", under,
                      lineTop, lineBottom, leftmost);
        Check("caption-under-header", under >= 100 && leftmost <= int32_t(RenderX(&map, frame.headerHeight / 6)),
              detail);
    } else {
        std::snprintf(detail, sizeof detail, "(no caption file; %d caption-coloured pixels)", under);
        Check("no-caption", under < 20, detail);
    }
    FreeRgbImage(&page);
    FreeRgbImage(&photo);
    std::printf("result: %s\n", g_failed ? "FAIL" : "ok");
    return g_failed ? 1 : 0;
}

int CheckInfoPage(const char* ppm, int32_t pageIndex, char** numbers) {
    RgbImage page;
    PageMap map;
    PrintFrame frame;
    InfoPrintLayout layout;
    if (!ReadPpm(ppm, &page) || !ReadMap(numbers, &page, &map) || !LayOutPrintFrame(map.horzRes, map.vertRes, &frame) ||
        !LayOutInfoPage(&frame, pageIndex, &layout)) {
        std::printf("result: FAIL (cannot read the page %s)\n", ppm);
        return 1;
    }
    CheckBanners(&page, &map, &frame);
    char detail[256];
    TextRuns runs;
    int32_t footerTop = int32_t(RenderY(&map, frame.pageHeight - frame.footerHeight));
    FindTextRuns(&page, int32_t(RenderY(&map, frame.headerHeight)) + 1, footerTop, 110, &runs);
    std::snprintf(detail, sizeof detail, "(%d lines of text between the banners)", runs.count);
    Check("line-count", runs.count == kInfoLinesPerPage, detail);
    double margin = RenderX(&map, layout.x), rightMargin = RenderX(&map, frame.pageWidth - layout.x);
    std::snprintf(detail, sizeof detail, "(ink from x %d to %d; margins at %.0f and %.0f)", runs.left, runs.right,
                  margin, rightMargin);
    Check("margins", runs.left >= margin - 1 && runs.left <= margin + RenderX(&map, layout.lineHeight) -
                                                                 RenderX(&map, 0) &&
                         runs.right <= rightMargin + 1,
          detail);
    double firstLine = RenderY(&map, layout.y[0]);
    std::snprintf(detail, sizeof detail, "(first line's ink at %d, its place at %.0f; last ink at %d, footer at %d)",
                  runs.top, firstLine, runs.bottom, footerTop);
    Check("first-line-and-footer", runs.top >= firstLine - 1 && runs.bottom < footerTop, detail);
    if (runs.count == kInfoLinesPerPage) {
        int32_t worst = 0;
        for (int32_t line = 0; line < kInfoLinesPerPage; ++line) {
            int32_t off = int32_t(std::lround(runs.firstTop[line] - RenderY(&map, layout.y[line])));
            if (std::abs(off) > std::abs(worst)) worst = off;
        }
        std::snprintf(detail, sizeof detail, "(each line's ink starts within %d rendered rows below its place)", worst);
        Check("line-places", worst >= -1 && worst <= int32_t(RenderY(&map, layout.lineHeight) - RenderY(&map, 0)) / 2,
              detail);
    }
    FreeRgbImage(&page);
    std::printf("result: %s\n", g_failed ? "FAIL" : "ok");
    return g_failed ? 1 : 0;
}

int Usage() {
    std::printf("result: FAIL (usage: print_probe caps | photo FOLDER IMAGE | info FOLDER | check-photo ... | "
                "check-info ...)\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    if (argc < 2) return Usage();
    std::string mode = argv[1];
    if (mode == "caps") return PrintCaps();
    if (argc < 3 || !SetUpGame(argv[2])) {
        std::printf("result: FAIL (no game pack in %s)\n", argc >= 3 ? argv[2] : "?");
        return 2;
    }
    int result = 2;
    if (mode == "photo" && argc == 4)
        result = PrintPhoto(argv[3]);
    else if (mode == "info" && argc == 3)
        result = PrintInfo();
    else if (mode == "check-photo" && argc == 11)
        result = CheckPhotoPage(argv[3], argv[4], argv + 5);
    else if (mode == "check-info" && argc == 11)
        result = CheckInfoPage(argv[3], std::atoi(argv[4]), argv + 5);
    else
        result = Usage();
    ClosePack(&g_pack);
    return result;
}
