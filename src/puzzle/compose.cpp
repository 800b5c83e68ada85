// Composing views from the piece sheet: the reference composer, the fast composer and RepaintRect.
#include "puzzle/compose.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <thread>

#include "puzzle/cut.h"

TableTexture g_tableTexture;
ComposeCounters g_composeCounters;
bool g_composeShared = true;

bool SetTableTexture(PuzzleState* p, const uint8_t* texture) {
    bool usable = false;
    if (texture) {
        const DibHeader* h = DibHeaderOf(texture);
        usable = h->biWidth == kTextureSize && h->biHeight == kTextureSize && h->biBitCount == 8 &&
                 h->biCompression == 0;
    }
    std::memset(&g_tableTexture, 0, sizeof g_tableTexture);
    if (usable) {
        g_tableTexture.present = true;
        std::memcpy(g_tableTexture.dib, texture, sizeof g_tableTexture.dib);
        const uint8_t* texels = DibPixels(g_tableTexture.dib);
        const DibColor* palette = DibPalette(g_tableTexture.dib);
        for (int32_t ty = 0; ty < kTextureSize; ++ty) {
            const uint8_t* stored = texels + (kTextureSize - 1 - ty) * kTextureSize;  // rows are bottom-up
            for (int32_t tx = 0; tx < 2 * kTextureSize; ++tx) {
                const DibColor& c = palette[stored[tx % kTextureSize]];
                uint8_t* out = &g_tableTexture.rows[ty][3 * tx];
                out[0] = c.blue;
                out[1] = c.green;
                out[2] = c.red;
            }
        }
    }
    // An empty table shows the cloth as well: every view with a surface is painted again.
    if (p)
        for (int v = 0; v < kViewCount; ++v) RepaintView(p, v, true);
    return usable;
}

bool ClipToView(const ViewSurface& view, Rect* area) {
    int64_t x0 = std::max<int64_t>(area->x, 0), y0 = std::max<int64_t>(area->y, 0);
    int64_t x1 = std::min<int64_t>(int64_t(area->x) + area->width, view.width);
    int64_t y1 = std::min<int64_t>(int64_t(area->y) + area->height, view.height);
    if (x0 >= x1 || y0 >= y1) return false;
    *area = Rect{int32_t(x0), int32_t(y0), int32_t(x1 - x0), int32_t(y1 - y0)};
    return true;
}

bool IsTiledRepaint(const PuzzleState* p, const Rect& clipped) {
    return clipped.width > p->boxWidth && clipped.height > p->boxHeight;
}

Rect RepaintTile(const Rect& clipped, int i, int j) {
    int32_t tw = clipped.width / 5, th = clipped.height / 5;
    Rect tile{i * tw, j * th, tw, th};
    if (i == 4) tile.width = clipped.x + clipped.width - tile.x;
    if (j == 4) tile.height = clipped.y + clipped.height - tile.y;
    return tile;
}

Rect RepaintArea(const PuzzleState* p, const Rect& clipped) {
    if (!IsTiledRepaint(p, clipped)) return clipped;
    return Rect{0, 0, clipped.x + clipped.width, clipped.y + clipped.height};
}

namespace {

// Whether a piece's W x H box meets columns x0 .. x1 - 1 and rows y0 .. y1 - 1 of its view.
inline bool BoxMeets(const PieceRecord& piece, int32_t W, int32_t H, int64_t x0, int64_t y0, int64_t x1, int64_t y1) {
    return int64_t(piece.x) + W > x0 && piece.x < x1 && int64_t(piece.y) + H > y0 && piece.y < y1;
}

// The cloth's colour at view pixel (x, y), straight from the kept bitmap.
void ClothTexel(int32_t x, int32_t y, uint8_t* out) {
    if (!g_tableTexture.present) {
        out[0] = out[1] = out[2] = 0;
        return;
    }
    const uint8_t* texels = DibPixels(g_tableTexture.dib);
    uint8_t index = texels[(kTextureSize - 1 - y % kTextureSize) * kTextureSize + x % kTextureSize];
    const DibColor& c = DibPalette(g_tableTexture.dib)[index];
    out[0] = c.blue;
    out[1] = c.green;
    out[2] = c.red;
}

bool ViewComposable(const PuzzleState* p, int view) {
    return view >= 0 && view < kViewCount && p->surfaces[view].pixels;
}

}  // namespace

void ComposeTileReference(PuzzleState* p, int view, const Rect& tile, bool skipTop) {
    const ViewSurface& s = p->surfaces[view];
    const ViewList& list = p->views[view];
    const int32_t W = p->boxWidth, H = p->boxHeight;
    const uint32_t sheetWidth = uint32_t(p->sheetWidth);
    uint32_t candidates = 0;
    if (p->sheet)
        for (uint32_t k = skipTop ? 1 : 0; k < list.count; ++k) {
            uint32_t i = list.entries[k];
            const PieceRecord& piece = p->pieces[i];
            if (!BoxMeets(piece, W, H, tile.x, tile.y, int64_t(tile.x) + tile.width, int64_t(tile.y) + tile.height))
                continue;
            // The offsets that turn a view pixel into a sheet pixel, in the sheet's unsigned arithmetic.
            p->renderPiece[candidates] = i;
            p->renderRow[candidates] = uint32_t(piece.y - PieceRow(p, i) * H) * sheetWidth;
            p->renderColumn[candidates] = uint32_t(piece.x - PieceColumn(p, i) * W);
            ++candidates;
        }
    for (int32_t y = tile.y; y < tile.y + tile.height; ++y) {
        uint8_t* row = s.pixels + int64_t(s.height - 1 - y) * s.stride;
        for (int32_t x = tile.x; x < tile.x + tile.width; ++x) {
            uint8_t* out = row + 3 * int64_t(x);
            bool covered = false;
            for (uint32_t m = 0; m < candidates; ++m) {
                const PieceRecord& piece = p->pieces[p->renderPiece[m]];
                if (x < piece.x || x >= int64_t(piece.x) + W || y < piece.y || y >= int64_t(piece.y) + H) continue;
                uint32_t at = uint32_t(p->sheetLastRow - y) * sheetWidth + p->renderRow[m] + uint32_t(x) -
                              p->renderColumn[m];
                uint32_t pixel = p->sheet[at];
                if (!(pixel >> 24)) continue;
                out[0] = uint8_t(pixel);
                out[1] = uint8_t(pixel >> 8);
                out[2] = uint8_t(pixel >> 16);
                if (!piece.lit && (y - piece.y) % 2 == 0 && (x - piece.x) % 3 == 0) {
                    out[0] = uint8_t(255 - out[0]);
                    out[1] = uint8_t(255 - out[1]);
                    out[2] = uint8_t(255 - out[2]);
                }
                covered = true;
                break;
            }
            if (!covered) ClothTexel(x, y, out);
        }
    }
}

void ComposeRectReference(PuzzleState* p, int view, int32_t x, int32_t y, int32_t width, int32_t height,
                          bool skipTop) {
    if (!ViewComposable(p, view)) return;
    Rect r{x, y, width, height};
    if (!ClipToView(p->surfaces[view], &r)) return;
    if (!IsTiledRepaint(p, r)) {
        ComposeTileReference(p, view, r, skipTop);
        return;
    }
    for (int j = 0; j < 5; ++j)
        for (int i = 0; i < 5; ++i) ComposeTileReference(p, view, RepaintTile(r, i, j), skipTop);
}

namespace {

// One composing thread's work memory, grown as needed and kept: which pixels of the rows being composed
// are already final, one bit each, a row of words per view row.
struct ComposeScratch {
    uint64_t* bits;
    size_t words;
};

uint64_t* ClearCoverage(ComposeScratch* scratch, size_t words) {
    if (words > scratch->words) {
        void* grown = std::realloc(scratch->bits, words * sizeof(uint64_t));
        if (!grown) return nullptr;
        scratch->bits = static_cast<uint64_t*>(grown);
        scratch->words = words;
    }
    std::memset(scratch->bits, 0, words * sizeof(uint64_t));
    return scratch->bits;
}

inline int LowestBit(uint64_t v) { return __builtin_ctzll(v); }

// Copies n >= 3 bytes; short runs are the common case, where the library's copy costs more to start than
// to run. Overlapping 16-, 8- or 4-byte moves cover any length.
inline void CopyRunBytes(uint8_t* to, const uint8_t* from, size_t n) {
    if (n >= 16) {
        size_t k = 0;
        for (; k + 16 <= n; k += 16) std::memcpy(to + k, from + k, 16);
        std::memcpy(to + n - 16, from + n - 16, 16);
    } else if (n >= 8) {
        std::memcpy(to, from, 8);
        std::memcpy(to + n - 8, from + n - 8, 8);
    } else if (n >= 4) {
        std::memcpy(to, from, 4);
        std::memcpy(to + n - 4, from + n - 4, 4);
    } else {
        for (size_t k = 0; k < n; ++k) to[k] = from[k];
    }
}

// Copies the not yet covered part of columns from .. to - 1 (relative to the area's left edge, whose view
// column is left) of one row and marks it covered; view column x takes packed pixel firstPixel + x.
// Returns how many pixels it took.
inline uint32_t TakeUncovered(uint64_t* coverage, int32_t from, int32_t to, int32_t left, uint8_t* viewRow,
                              const uint8_t* packed, int64_t firstPixel, int32_t pieceX, bool stipple) {
    uint32_t taken = 0;
    int32_t first = from >> 6, last = (to - 1) >> 6;
    for (int32_t word = first; word <= last; ++word) {
        uint64_t want = ~0ull;
        if (word == first) want &= ~0ull << (from & 63);
        if (word == last) want &= ~0ull >> (63 - ((to - 1) & 63));
        uint64_t fresh = want & ~coverage[word];
        if (!fresh) continue;
        coverage[word] |= fresh;
        while (fresh) {
            int start = LowestBit(fresh);
            uint64_t rest = ~(fresh >> start);
            int length = rest ? LowestBit(rest) : 64 - start;
            fresh = start + length >= 64 ? 0 : fresh & (~0ull << (start + length));
            int32_t x = left + word * 64 + start;
            uint8_t* out = viewRow + 3 * int64_t(x);
            CopyRunBytes(out, packed + 3 * (firstPixel + x), size_t(length) * 3);
            if (stipple)
                for (int32_t k = (3 - (x - pieceX) % 3) % 3; k < length; k += 3) {
                    uint8_t* px = out + 3 * k;
                    px[0] = uint8_t(255 - px[0]);
                    px[1] = uint8_t(255 - px[1]);
                    px[2] = uint8_t(255 - px[2]);
                }
            taken += uint32_t(length);
        }
    }
    return taken;
}

// Fills columns x .. x + n - 1 of a view row from the cloth row. The cloth row is two periods wide, so
// 100 texels from any phase are one stretch; copied with our short moves, as the compiler would otherwise
// make a string move, slow to start, of each stretch.
inline void PaintCloth(uint8_t* viewRow, int32_t x, int32_t n, const uint8_t* clothRow) {
    uint8_t* out = viewRow + 3 * int64_t(x);
    const uint8_t* from = clothRow + 3 * (x % kTextureSize);
    while (n > 0) {
        int32_t chunk = n < kTextureSize ? n : kTextureSize;
        CopyRunBytes(out, from, size_t(chunk) * 3);
        out += 3 * chunk;
        n -= chunk;
    }
}

// The first column from `from` on (before limit) whose coverage bit is `covered`; limit if none.
inline int32_t NextBitWithState(const uint64_t* row, int32_t from, int32_t limit, bool covered) {
    while (from < limit) {
        size_t word = size_t(from) >> 6;
        uint64_t v = (covered ? row[word] : ~row[word]) & (~0ull << (from & 63));
        if (v) {
            int32_t at = int32_t(word * 64) + LowestBit(v);
            return at < limit ? at : limit;
        }
        from = int32_t(word * 64 + 64);
    }
    return limit;
}

// The fast composer over view rows top .. bottom - 1 of one area (already clipped; the tiling rule already
// applied). The pieces whose boxes meet those rows are taken in stacking order, topmost first; each copies
// the runs of its outline that no piece above it has covered, and the cloth fills what is left. A box row
// that is covered all along is passed over without reading the piece's outline at all. Touches only
// those rows of the picture, the scratch and the counters given, so two threads can share an area.
bool ComposeRows(const PuzzleState* p, int view, const Rect& area, int32_t top, int32_t bottom, bool skipTop,
                 bool withPieces, ComposeScratch* scratch, ComposeCounters* counters) {
    const ViewSurface& s = p->surfaces[view];
    const int32_t W = p->boxWidth, H = p->boxHeight;
    const size_t wordsPerRow = (size_t(area.width) + 63) / 64;
    uint64_t* coverage = ClearCoverage(scratch, wordsPerRow * size_t(bottom - top));
    if (!coverage) return false;
    const ViewList& list = p->views[view];
    const uint32_t count = withPieces ? list.count : 0;
    const int64_t areaRight = int64_t(area.x) + area.width;
    const uint64_t total = uint64_t(area.width) * uint64_t(bottom - top);
    uint64_t covered = 0;
    for (uint32_t k = skipTop ? 1 : 0; k < count && covered < total; ++k) {
        const uint32_t i = list.entries[k];
        const PieceRecord& piece = p->pieces[i];
        if (!BoxMeets(piece, W, H, area.x, top, areaRight, bottom)) continue;
        ++counters->piecesVisited;
        // Columns x0 .. x1 - 1 of the area and the coverage words they fall in, with the masks of the
        // partly met first and last word: the test for a row already covered all along.
        const int32_t x0 = int32_t(std::max<int64_t>(area.x, piece.x)) - area.x;
        const int32_t x1 = int32_t(std::min<int64_t>(areaRight, int64_t(piece.x) + W)) - area.x;
        const int32_t y0 = std::max(top, piece.y);
        const int32_t y1 = int32_t(std::min<int64_t>(bottom, int64_t(piece.y) + H));
        const int32_t firstWord = x0 >> 6, lastWord = ((x1 - 1) >> 6) - firstWord;
        const uint64_t firstMask = ~0ull << (x0 & 63), lastMask = ~0ull >> (63 - ((x1 - 1) & 63));
        const uint8_t* block = PieceShape(p, i);
        const uint32_t* rowTable = reinterpret_cast<const uint32_t*>(block);
        const uint8_t* colours = PieceColours(p, i);
        for (int32_t y = y0; y < y1; ++y) {
            uint64_t* rowCoverage = coverage + size_t(y - top) * wordsPerRow;
            const uint64_t* met = rowCoverage + firstWord;
            uint64_t open = lastWord ? (~met[0] & firstMask) | (~met[lastWord] & lastMask)
                                     : ~met[0] & firstMask & lastMask;
            for (int32_t word = 1; word < lastWord; ++word) open |= ~met[word];
            if (!open) continue;
            const int32_t boxRow = y - piece.y;
            const uint32_t* record = reinterpret_cast<const uint32_t*>(block + rowTable[boxRow]);
            const uint32_t spanCount = record[0];
            if (!spanCount) continue;
            const OutlineSpan* spans = reinterpret_cast<const OutlineSpan*>(record + 2);
            const uint8_t* pixels = colours + record[1];
            uint8_t* viewRow = s.pixels + int64_t(s.height - 1 - y) * s.stride;
            const bool stipple = !piece.lit && boxRow % 2 == 0;
            for (uint32_t m = 0; m < spanCount; ++m) {
                const OutlineSpan& span = spans[m];
                const uint8_t* spanPixels = pixels;
                pixels += 3 * (span.end - span.begin);
                int64_t left = std::max<int64_t>(int64_t(piece.x) - area.x + span.begin, x0);
                int64_t right = std::min<int64_t>(int64_t(piece.x) - area.x + span.end, x1);
                if (left >= right) continue;
                covered += TakeUncovered(rowCoverage, int32_t(left), int32_t(right), area.x, viewRow,
                                         spanPixels, -(int64_t(piece.x) + span.begin), piece.x, stipple);
            }
        }
    }
    counters->piecePixels += covered;
    counters->clothPixels += total - covered;
    if (covered == total) return true;

    // The cloth under everything no piece covered.
    for (int32_t y = top; y < bottom; ++y) {
        const uint64_t* rowCoverage = coverage + size_t(y - top) * wordsPerRow;
        uint8_t* viewRow = s.pixels + int64_t(s.height - 1 - y) * s.stride;
        const uint8_t* clothRow = g_tableTexture.rows[y % kTextureSize];
        int32_t x = 0;
        while (x < area.width) {
            int32_t open = NextBitWithState(rowCoverage, x, area.width, false);
            if (open == area.width) break;
            x = NextBitWithState(rowCoverage, open, area.width, true);
            PaintCloth(viewRow, area.x + open, x - open, clothRow);
        }
    }
    return true;
}

// ---- Two threads for large areas ----
// A full recompose is cut into bands of rows of about equal work, which the interface thread and one
// helper thread take in turn; each band has its own rows of the picture, so the threads never write the
// same bytes. Smaller areas (a box, a drag step) are composed on the calling thread alone, as the
// hand-over costs tens of microseconds.

constexpr uint64_t kSharedAreaPixels = 1u << 18;  // a quarter megapixel and up is shared
constexpr int kShareBands = 8;                    // enough that a helper held up by others costs little

struct SharedCompose {
    const PuzzleState* p;
    int view;
    Rect area;
    bool skipTop, withPieces;
    int32_t bandTop[kShareBands + 1];  // band b is view rows bandTop[b] .. bandTop[b + 1] - 1
    std::atomic<int> nextBand;
    std::atomic<bool> failed;
};

// The helper thread: made on the first large area, it then lives as long as the program, waiting.
struct ComposeHelper {
    std::mutex lock;
    std::condition_variable wake, idle;
    SharedCompose* job;  // offered work, or null
    bool working;        // the helper has taken the offered work and not finished it
    ComposeScratch scratch;
    ComposeCounters counters;
};
ComposeHelper* g_helper;
bool g_helperTried;
ComposeScratch g_mainScratch;

// Takes bands until none is left.
void TakeBands(SharedCompose* job, ComposeScratch* scratch, ComposeCounters* counters) {
    for (int b = job->nextBand.fetch_add(1); b < kShareBands; b = job->nextBand.fetch_add(1)) {
        if (job->bandTop[b] == job->bandTop[b + 1]) continue;
        if (!ComposeRows(job->p, job->view, job->area, job->bandTop[b], job->bandTop[b + 1], job->skipTop,
                         job->withPieces, scratch, counters))
            job->failed = true;
    }
}

void HelperLoop(ComposeHelper* h) {
    std::unique_lock<std::mutex> hold(h->lock);
    for (;;) {
        h->wake.wait(hold, [h] { return h->job != nullptr; });
        SharedCompose* job = h->job;
        h->working = true;
        hold.unlock();
        TakeBands(job, &h->scratch, &h->counters);
        hold.lock();
        h->working = false;
        h->job = nullptr;
        h->idle.notify_one();
    }
}

ComposeHelper* Helper() {
    if (!g_helperTried) {
        g_helperTried = true;
        // Never freed: the thread waits on it until the program ends.
        if (std::thread::hardware_concurrency() >= 2) {
            g_helper = new ComposeHelper();
            std::thread(HelperLoop, g_helper).detach();
        }
    }
    return g_helper;
}

// Cuts the area's rows into bands of about equal work: a row costs its width (the cloth, or the coverage
// scan) and, for every box that meets it, about as much as 64 pixels of cloth. Returns how many boxes
// meet the area.
uint32_t CutIntoBands(const PuzzleState* p, int view, const Rect& area, bool skipTop, bool withPieces,
                      int32_t* boxesFrom, int32_t* bandTop) {
    const int32_t W = p->boxWidth, H = p->boxHeight;
    std::memset(boxesFrom, 0, (size_t(area.height) + 1) * sizeof(int32_t));
    const ViewList& list = p->views[view];
    const int64_t areaRight = int64_t(area.x) + area.width, areaBottom = int64_t(area.y) + area.height;
    uint32_t met = 0;
    for (uint32_t k = skipTop ? 1 : 0; withPieces && k < list.count; ++k) {
        const PieceRecord& piece = p->pieces[list.entries[k]];
        if (!BoxMeets(piece, W, H, area.x, area.y, areaRight, areaBottom)) continue;
        ++met;
        ++boxesFrom[std::max<int64_t>(area.y, piece.y) - area.y];
        --boxesFrom[std::min<int64_t>(areaBottom, int64_t(piece.y) + H) - area.y];
    }
    uint64_t total = 0;
    for (int32_t r = 0, boxes = 0; r < area.height; ++r) {
        boxes += boxesFrom[r];
        total += uint64_t(area.width) + 64 * uint64_t(boxes);
    }
    bandTop[0] = area.y;
    uint64_t work = 0;
    int b = 1;
    for (int32_t r = 0, boxes = 0; r < area.height && b < kShareBands; ++r) {
        boxes += boxesFrom[r];
        work += uint64_t(area.width) + 64 * uint64_t(boxes);
        while (b < kShareBands && work * kShareBands >= total * uint64_t(b)) bandTop[b++] = area.y + r + 1;
    }
    while (b <= kShareBands) bandTop[b++] = area.y + area.height;
    return met;
}

bool ComposeAreaFast(PuzzleState* p, int view, const Rect& area, bool skipTop, bool withPieces) {
    ComposeHelper* helper = nullptr;
    if (g_composeShared && uint64_t(area.width) * uint64_t(area.height) >= kSharedAreaPixels &&
        area.height >= kShareBands)
        helper = Helper();
    if (!helper) return ComposeRows(p, view, area, area.y, area.y + area.height, skipTop, withPieces,
                                    &g_mainScratch, &g_composeCounters);
    SharedCompose job;
    job.p = p;
    job.view = view;
    job.area = area;
    job.skipTop = skipTop;
    job.withPieces = withPieces;
    job.nextBand = 0;
    job.failed = false;
    // The row counts are worked out in the interface thread's coverage memory, free until it composes.
    const size_t countWords = (size_t(area.height) + 2) / 2;
    if (!ClearCoverage(&g_mainScratch, countWords)) return false;
    const uint32_t met = CutIntoBands(p, view, area, skipTop, withPieces,
                                      reinterpret_cast<int32_t*>(g_mainScratch.bits), job.bandTop);
    {
        std::lock_guard<std::mutex> hold(helper->lock);
        helper->job = &job;
        helper->counters = ComposeCounters{};
    }
    helper->wake.notify_one();
    ComposeCounters mine{};
    TakeBands(&job, &g_mainScratch, &mine);
    {
        // A helper that has not woken yet gets the offer back; one at work is waited for.
        std::unique_lock<std::mutex> hold(helper->lock);
        if (helper->working) helper->idle.wait(hold, [helper] { return !helper->working; });
        helper->job = nullptr;
        g_composeCounters.piecePixels += mine.piecePixels + helper->counters.piecePixels;
        g_composeCounters.clothPixels += mine.clothPixels + helper->counters.clothPixels;
        g_composeCounters.piecesVisited += met;  // a box across bands was visited in each
    }
    return !job.failed;
}

}  // namespace

void ComposeRect(PuzzleState* p, int view, int32_t x, int32_t y, int32_t width, int32_t height, bool skipTop) {
    if (!ViewComposable(p, view)) return;
    Rect r{x, y, width, height};
    if (!ClipToView(p->surfaces[view], &r)) return;
    // A sheet filled without the cutter gets its outline index now; short of memory, the slow way.
    bool withPieces = p->sheet != nullptr;
    if (withPieces && !p->outlineShapes && !IndexPieceOutlines(p)) {
        ComposeRectReference(p, view, x, y, width, height, skipTop);
        return;
    }
    if (!ComposeAreaFast(p, view, RepaintArea(p, r), skipTop, withPieces))
        ComposeRectReference(p, view, x, y, width, height, skipTop);
}

void RepaintRect(PuzzleState* p, int view, int32_t x, int32_t y, int32_t width, int32_t height, bool invalidate,
                 bool skipTop) {
    if (!ViewComposable(p, view)) return;
    Rect r{x, y, width, height};
    if (!ClipToView(p->surfaces[view], &r)) return;
    ComposeRect(p, view, r.x, r.y, r.width, r.height, skipTop);
    if (invalidate && g_puzzleHooks.invalidateRect) g_puzzleHooks.invalidateRect(view, r);
}

void RepaintView(PuzzleState* p, int view, bool invalidate) {
    if (!ViewComposable(p, view)) return;
    RepaintRect(p, view, 0, 0, p->surfaces[view].width, p->surfaces[view].height, invalidate, false);
}
