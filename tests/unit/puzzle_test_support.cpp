// Puzzle engine test helpers.
#include "puzzle_test_support.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <utility>

#include "gfx/dib.h"
#include "gfx/random.h"
#include "puzzle/cut.h"
#include "puzzle/views.h"

std::vector<uint8_t> MakePackedDib(int32_t width, int32_t height, int bits) {
    int64_t stride = DibStride(bits, width);
    std::vector<uint8_t> dib(kDibPixelOffset + size_t(stride) * height, 0);
    DibHeader h{};
    h.biSize = 40;
    h.biWidth = width;
    h.biHeight = height;
    h.biPlanes = 1;
    h.biBitCount = uint16_t(bits);
    h.biSizeImage = uint32_t(stride * height);
    h.biClrUsed = bits == 8 ? 256 : 0;
    std::memcpy(dib.data(), &h, sizeof h);
    return dib;
}

namespace {

// Which way the tab on an edge points: true pushes from the left (or upper) cell into the right (lower).
// Taken from the pattern cell the edge belongs to, so the pattern repeats seamlessly.
bool RightEdgePushesRight(uint32_t pr, uint32_t pc) { return (pr * 7 + pc * 3 + 1) % 2 == 0; }
bool LowerEdgePushesDown(uint32_t pr, uint32_t pc) { return (pr * 5 + pc * 11) % 2 == 0; }

uint32_t Wrap(int32_t v, uint32_t n) { return uint32_t((v % int32_t(n) + int32_t(n)) % int32_t(n)); }

// A tab pushed across an edge, in the receiving cell's coordinates: `depth` is the distance from the
// edge into the cell, `along` the position along the edge (0 .. 199). It reaches 48 pattern pixels deep,
// within what the box margin of a small cell shows (trunc(0.33 * 12) of 12 pixels is a quarter cell).
bool InTab(int32_t depth, int32_t along) {
    if (depth < 0) return false;
    if (depth < 10 && along > 88 && along < 112) return true;  // the neck
    int32_t dx = depth - 28, dy = along - 100;
    return dx * dx + dy * dy < 20 * 20;  // the head
}

int32_t FloorDiv(int32_t a, int32_t b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }

}  // namespace

uint32_t TestPatternRegion(uint32_t patternRows, uint32_t patternColumns, int32_t x, int32_t y) {
    const int32_t u = x - 66, v = y - 66;
    const int32_t cx = FloorDiv(u, 200), cy = FloorDiv(v, 200);
    const int32_t lx = u - cx * 200, ly = v - cy * 200;
    int32_t ox = cx, oy = cy;  // the owning cell, in the tiled grid
    // A neighbour's tab pushed into this cell takes the pixel.
    if (RightEdgePushesRight(Wrap(cy, patternRows), Wrap(cx - 1, patternColumns)) && InTab(lx, ly)) ox = cx - 1;
    else if (!RightEdgePushesRight(Wrap(cy, patternRows), Wrap(cx, patternColumns)) && InTab(199 - lx, ly)) ox = cx + 1;
    else if (LowerEdgePushesDown(Wrap(cy - 1, patternRows), Wrap(cx, patternColumns)) && InTab(ly, lx)) oy = cy - 1;
    else if (!LowerEdgePushesDown(Wrap(cy, patternRows), Wrap(cx, patternColumns)) && InTab(199 - ly, lx)) oy = cy + 1;
    const int32_t R = int32_t(patternRows), C = int32_t(patternColumns);
    const uint32_t P = patternRows * patternColumns + 1;
    const bool rowIn = oy >= 0 && oy < R, columnIn = ox >= 0 && ox < C;
    if (rowIn && columnIn) return uint32_t(oy) * patternColumns + uint32_t(ox) + 1;
    if (oy == -1 && columnIn) return P + uint32_t(ox);
    if (ox == C && rowIn) return P + patternColumns + uint32_t(oy);
    if (oy == R && columnIn) return P + patternRows + patternColumns + uint32_t(ox);
    if (ox == -1 && rowIn) return P + 2 * patternColumns + patternRows + uint32_t(oy);
    return 0;  // the corners beyond the pattern belong to diagonal neighbours
}

std::vector<uint8_t> MakeTestPattern(uint32_t patternRows, uint32_t patternColumns) {
    const int32_t width = int32_t(patternColumns) * 200 + 132, height = int32_t(patternRows) * 200 + 132;
    std::vector<uint8_t> dib = MakePackedDib(width, height, 8);
    const int64_t stride = DibStride(8, width);
    for (int32_t y = 0; y < height; ++y) {
        uint8_t* row = dib.data() + kDibPixelOffset + (height - 1 - y) * stride;
        for (int32_t x = 0; x < width; ++x) row[x] = uint8_t(TestPatternRegion(patternRows, patternColumns, x, y));
    }
    return dib;
}

std::vector<uint8_t> MakeTestPhoto(int32_t width, int32_t height, int bits) {
    std::vector<uint8_t> dib = MakePackedDib(width, height, bits);
    const int64_t stride = DibStride(bits, width);
    if (bits == 8)
        for (int i = 0; i < 256; ++i) {
            DibColor c{uint8_t(i), uint8_t(255 - i), uint8_t((i * 37) & 255), 0};
            std::memcpy(dib.data() + kDibPaletteOffset + 4 * i, &c, 4);
        }
    for (int32_t y = 0; y < height; ++y) {
        uint8_t* row = dib.data() + kDibPixelOffset + (height - 1 - y) * stride;
        for (int32_t x = 0; x < width; ++x) {
            if (bits == 8) {
                row[x] = uint8_t((x * 7 + y * 13) & 255);
            } else {
                row[3 * x] = uint8_t(x);
                row[3 * x + 1] = uint8_t(y);
                row[3 * x + 2] = uint8_t((x >> 8) | ((y >> 8) << 4));
            }
        }
    }
    return dib;
}

uint32_t TestPhotoColor(const std::vector<uint8_t>& photo, int32_t x, int32_t y) {
    const DibHeader* h = DibHeaderOf(photo.data());
    const int64_t stride = DibStride(h->biBitCount, h->biWidth);
    const uint8_t* row = photo.data() + kDibPixelOffset + (h->biHeight - 1 - y) * stride;
    if (h->biBitCount == 8) {
        const uint8_t* c = photo.data() + kDibPaletteOffset + 4 * row[x];
        return uint32_t(c[0]) | uint32_t(c[1]) << 8 | uint32_t(c[2]) << 16;
    }
    return uint32_t(row[3 * x]) | uint32_t(row[3 * x + 1]) << 8 | uint32_t(row[3 * x + 2]) << 16;
}

namespace {
void FixedClock(SysTime* t) {
    *t = SysTime{};
    t->second = 17;
    t->millisecond = 321;
}
}  // namespace

void FixRandom(uint32_t seed) {
    g_random.seed = 0.0;
    g_random.clock = FixedClock;
    SeedRandom(&g_random, seed);
}

HookLog g_hookLog;

int HookLog::count(const std::string& prefix) const {
    int n = 0;
    for (const std::string& e : events)
        if (e.compare(0, prefix.size(), prefix) == 0) ++n;
    return n;
}

bool HookLog::has(const std::string& event) const {
    for (const std::string& e : events)
        if (e == event) return true;
    return false;
}

void InstallRecordingHooks() {
    g_hookLog.events.clear();
    g_puzzleHooks = PuzzleHooks{};
    g_puzzleHooks.viewEmptied = [](int v) { g_hookLog.events.push_back("emptied " + std::to_string(v)); };
    g_puzzleHooks.viewFilled = [](int v) { g_hookLog.events.push_back("filled " + std::to_string(v)); };
    g_puzzleHooks.repaintView = [](int v) { g_hookLog.events.push_back("repaint " + std::to_string(v)); };
    g_puzzleHooks.stopClock = [] { g_hookLog.events.push_back("stop clock"); };
    g_puzzleHooks.restoreCursor = [] { g_hookLog.events.push_back("arrow"); };
    g_puzzleHooks.invalidateRect = [](int v, Rect r) {
        g_hookLog.events.push_back("invalidate " + std::to_string(v) + " " + std::to_string(r.x) + " " +
                                   std::to_string(r.y) + " " + std::to_string(r.width) + " " +
                                   std::to_string(r.height));
    };
    g_puzzleHooks.updateView = [](int v) { g_hookLog.events.push_back("update " + std::to_string(v)); };
    g_puzzleHooks.hideTray = [](int v) { g_hookLog.events.push_back("hide " + std::to_string(v)); };
    g_puzzleHooks.startClock = [] { g_hookLog.events.push_back("start clock"); };
    g_puzzleHooks.showClock = [](const char* text) { g_hookLog.events.push_back(std::string("clock ") + text); };
    g_puzzleHooks.joinSound = [] { g_hookLog.events.push_back("join sound"); };
    g_puzzleHooks.puzzleCompleted = [] { g_hookLog.events.push_back("completed"); };
    g_puzzleHooks.enableSave = [] { g_hookLog.events.push_back("enable save"); };
    g_puzzleHooks.waitCursor = [] { g_hookLog.events.push_back("wait"); };
    g_puzzleHooks.refitPreview = [] { g_hookLog.events.push_back("refit preview"); };
    g_puzzleHooks.restoreDragBackground = [] { g_hookLog.events.push_back("restore background"); };
}

bool CutTestPuzzle(PuzzleState* p, int32_t rows, int32_t cols, int32_t photoWidth, int32_t photoHeight,
                   uint32_t patternRows, uint32_t patternColumns, double scale, bool scatter, int bits,
                   int32_t tableWidth, int32_t tableHeight) {
    static std::map<std::pair<uint32_t, uint32_t>, std::vector<uint8_t>> patterns;
    std::vector<uint8_t>& pattern = patterns[{patternRows, patternColumns}];
    if (pattern.empty()) pattern = MakeTestPattern(patternRows, patternColumns);
    std::vector<uint8_t> photo = MakeTestPhoto(photoWidth, photoHeight, bits);
    p->rows = rows;
    p->cols = cols;
    p->scale = scale;
    p->tableWidth = tableWidth;
    p->tableHeight = tableHeight;
    return CutPuzzle(p, photo.data(), pattern.data(), patternRows, patternColumns, 5000, scatter);
}

void GiveViewPictures(PuzzleState* p, int32_t trayHeight) {
    for (int v = 0; v < kViewCount; ++v) {
        FreeViewPicture(p, v);
        if (v == kTableView)
            ResizeViewPicture(p, v, p->tableWidth, p->tableHeight);
        else
            ResizeViewPicture(p, v, 288, trayHeight);
    }
}

void ReleaseTestPuzzle(PuzzleState* p) {
    ClearPuzzle(p, false);
    for (int v = 0; v < kViewCount; ++v) FreeViewPicture(p, v);
}

void LayOut(PuzzleState* p, const std::vector<int>& viewOfPiece) {
    uint32_t n = PieceCount(p);
    uint32_t at = 0;
    for (int v = 0; v < kViewCount; ++v) {
        uint32_t count = 0;
        for (uint32_t i = 0; i < n; ++i)
            if (viewOfPiece[i] == v) {
                p->order[at++] = i;
                ++count;
            }
        p->views[v].count = count;
    }
    RelinkViewRuns(p);
}

std::vector<uint32_t> RunOf(const PuzzleState* p, int view) {
    return std::vector<uint32_t>(p->views[view].entries, p->views[view].entries + p->views[view].count);
}

bool FindInsidePixel(const PuzzleState* p, uint32_t piece, int32_t* x, int32_t* y) {
    const int32_t cx = p->boxWidth / 2, cy = p->boxHeight / 2;
    for (int32_t r = 0; r < p->boxWidth + p->boxHeight; ++r)
        for (int32_t dy = -r; dy <= r; ++dy)
            for (int32_t dx = -r; dx <= r; ++dx) {
                int32_t bx = cx + dx, by = cy + dy;
                if (bx < 1 || by < 1 || bx >= p->boxWidth || by >= p->boxHeight) continue;
                if (*SheetPixel(p, piece, bx, by) >> 24) {
                    *x = bx;
                    *y = by;
                    return true;
                }
            }
    return false;
}

Coverage MeasureCoverage(const PuzzleState& p, const std::vector<uint8_t>& photo) {
    const DibHeader* h = DibHeaderOf(photo.data());
    Coverage cov;
    cov.width = int32_t(h->biWidth * p.scale);
    cov.height = int32_t(h->biHeight * p.scale);
    cov.count.assign(size_t(cov.width) * cov.height, 0);
    const int32_t w = p.cellWidth, hh = p.cellHeight;
    const int32_t mx = (p.boxWidth - w) / 2, my = (p.boxHeight - hh) / 2;
    for (uint32_t i = 0; i < PieceCount(&p); ++i) {
        const int32_t r = PieceRow(&p, i), c = PieceColumn(&p, i);
        for (int32_t y = 0; y < p.boxHeight; ++y)
            for (int32_t x = 0; x < p.boxWidth; ++x) {
                uint32_t pixel = *SheetPixel(&p, i, x, y);
                if (!(pixel >> 24)) continue;
                int32_t X = c * w + x - mx, Y = r * hh + y - my;
                if (X < 0 || Y < 0 || X >= cov.width || Y >= cov.height) {
                    ++cov.offPhoto;
                    continue;
                }
                ++cov.count[size_t(Y) * cov.width + X];
                int32_t sx = std::min(int32_t(X / p.scale), h->biWidth - 1);
                int32_t sy = std::min(int32_t(Y / p.scale), h->biHeight - 1);
                if ((pixel & 0xFFFFFF) != TestPhotoColor(photo, sx, sy) || (pixel >> 24) != 1) ++cov.wrongColours;
            }
    }
    return cov;
}

::testing::AssertionResult CoversGridExactlyOnce(const PuzzleState& p, const std::vector<uint8_t>& photo) {
    Coverage cov = MeasureCoverage(p, photo);
    if (cov.offPhoto) return ::testing::AssertionFailure() << cov.offPhoto << " inside pixels off the photograph";
    if (cov.wrongColours) return ::testing::AssertionFailure() << cov.wrongColours << " pixels with wrong colours";
    const int32_t gridW = p.cols * p.cellWidth, gridH = p.rows * p.cellHeight;
    for (int32_t y = 0; y < cov.height; ++y)
        for (int32_t x = 0; x < cov.width; ++x) {
            int expected;
            if (x < gridW && y < gridH)
                expected = 1;
            else if (x <= gridW && y <= gridH && !(x == gridW && y == gridH))
                expected = 1;
            else
                expected = 0;
            if (cov.at(x, y) != expected)
                return ::testing::AssertionFailure()
                       << "pixel (" << x << ", " << y << ") is in " << cov.at(x, y) << " pieces, grid " << p.rows
                       << " x " << p.cols << ", cell " << p.cellWidth << " x " << p.cellHeight;
        }
    return ::testing::AssertionSuccess();
}

ModelSnapshot TakeModel(const PuzzleState& p) {
    ModelSnapshot m;
    const uint32_t n = PieceCount(&p);
    m.pieces.assign(p.pieces, p.pieces + n);
    m.order.assign(p.order, p.order + n);
    for (int v = 0; v < kViewCount; ++v) m.counts.push_back(p.views[v].count);
    return m;
}

::testing::AssertionResult SameModel(const ModelSnapshot& expected, const PuzzleState& p) {
    const ModelSnapshot actual = TakeModel(p);
    if (actual.counts != expected.counts) return ::testing::AssertionFailure() << "view counts differ";
    if (actual.order != expected.order) return ::testing::AssertionFailure() << "run order differs";
    for (size_t i = 0; i < expected.pieces.size(); ++i) {
        const PieceRecord &a = expected.pieces[i], &b = actual.pieces[i];
        if (a.x != b.x || a.y != b.y || a.group != b.group || a.lit != b.lit)
            return ::testing::AssertionFailure() << "piece " << i << " was (" << a.x << ", " << a.y << ") group "
                                                 << a.group << " lit " << int(a.lit) << ", is (" << b.x << ", "
                                                 << b.y << ") group " << b.group << " lit " << int(b.lit);
    }
    return ::testing::AssertionSuccess();
}
