// Cutting the photograph: scaling and pattern tables, the region tests, the sheet, the outline index
// and the scatter.
#include "puzzle/cut.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "gfx/dib.h"
#include "gfx/random.h"

PatternRegions PieceRegions(uint32_t patternRows, uint32_t patternColumns, int32_t row, int32_t column) {
    uint32_t pr = uint32_t(row) % patternRows, pc = uint32_t(column) % patternColumns;
    uint32_t own = pr * patternColumns + pc + 1;
    uint32_t beyond = patternRows * patternColumns + 1;  // P: the first number of the tabs from outside
    PatternRegions r;
    r.own = own;
    r.up = pr > 0 ? own - patternColumns : beyond + pc;
    r.right = pc < patternColumns - 1 ? own + 1 : beyond + patternColumns + pr;
    r.down = pr < patternRows - 1 ? own + patternColumns : beyond + patternRows + patternColumns + pc;
    r.left = pc > 0 ? own - 1 : beyond + 2 * patternColumns + patternRows + pr;
    return r;
}

int32_t PatternSample(int32_t pos, int32_t cell, int32_t margin) {
    // trunc((pos - margin) * (200 / cell) + 66), with everything below 1 taken as 0 and above 331 as 331.
    int64_t numerator = int64_t(pos - margin) * kPatternCell + int64_t(kPatternMargin) * cell;
    if (numerator <= 0) return 0;
    int64_t v = numerator / cell;
    return v > kPatternLastSample ? kPatternLastSample : int32_t(v);
}

DragSurfaceSizes DragSurfaceSizesFor(int32_t boxWidth, int32_t boxHeight) {
    return DragSurfaceSizes{boxWidth, boxHeight, 2 * boxWidth, 2 * boxHeight};
}

namespace {

// Bits of the region tests: a pixel whose pattern value has code k is inside when bit k is set both in
// its row's mask and in its column's mask. Code 0 (any other region) has no bit.
enum : uint32_t {
    kCodeOwn = 1,
    kCodeUp = 2,
    kCodeRight = 3,
    kCodeDown = 4,
    kCodeLeft = 5,
};

struct ByteBuffer {
    uint8_t* data;
    uint64_t size, capacity;
};

bool Reserve(ByteBuffer* b, uint64_t bytes) {
    if (b->size + bytes <= b->capacity) return true;
    uint64_t capacity = std::max<uint64_t>(b->capacity + b->capacity / 2, b->size + bytes);
    capacity = std::max<uint64_t>(capacity, 4096);
    if (capacity >= SIZE_MAX / 2) return false;
    void* grown = std::realloc(b->data, size_t(capacity));
    if (!grown) return false;
    b->data = static_cast<uint8_t*>(grown);
    b->capacity = capacity;
    return true;
}

// The outline index being made: shape blocks, and a colour area per piece.
struct OutlineBuilder {
    ByteBuffer shapes, colours;
    uint32_t* shapeOf;      // per piece
    uint64_t* colourOf;     // per piece
    int32_t rows;           // box rows
    uint64_t shapeStart;    // the shape being made
    uint32_t shapeColours;  // colour bytes of its rows so far
};

bool BeginOutlines(OutlineBuilder* b, uint32_t pieces, int32_t boxRows, uint64_t expectedColourBytes) {
    b->shapeOf = static_cast<uint32_t*>(std::malloc(size_t(pieces) * sizeof(uint32_t) + 1));
    b->colourOf = static_cast<uint64_t*>(std::malloc(size_t(pieces) * sizeof(uint64_t) + 1));
    b->rows = boxRows;
    return b->shapeOf && b->colourOf && Reserve(&b->colours, expectedColourBytes);
}

void DropOutlines(OutlineBuilder* b) {
    std::free(b->shapes.data);
    std::free(b->colours.data);
    std::free(b->shapeOf);
    std::free(b->colourOf);
    *b = OutlineBuilder{};
}

void InstallOutlines(PuzzleState* p, OutlineBuilder* b) {
    std::free(p->outlineShapes);
    std::free(p->outlineShape);
    std::free(p->outlineColours);
    std::free(p->outlineColour);
    p->outlineShapes = b->shapes.data;
    p->outlineShape = b->shapeOf;
    p->outlineColours = b->colours.data;
    p->outlineColour = b->colourOf;
    *b = OutlineBuilder{};
}

// A new shape block, with room for its row table.
bool BeginShape(OutlineBuilder* b) {
    uint64_t table = (uint64_t(b->rows) + 1) * sizeof(uint32_t);
    if (!Reserve(&b->shapes, table)) return false;
    b->shapeStart = b->shapes.size;
    b->shapeColours = 0;
    b->shapes.size += table;
    return true;
}

// Box row y's record: edges holds the columns where the inside flag changes (begin, end, begin, ...).
bool AddShapeRow(OutlineBuilder* b, int32_t y, const int32_t* edges, int32_t edgeCount) {
    const uint32_t spans = uint32_t(edgeCount / 2);
    const uint64_t bytes = 8 + uint64_t(spans) * sizeof(OutlineSpan);
    if (!Reserve(&b->shapes, bytes) || b->shapes.size + bytes > 0xFFFFFFFFull) return false;
    uint8_t* shape = b->shapes.data + b->shapeStart;
    reinterpret_cast<uint32_t*>(shape)[y] = uint32_t(b->shapes.size - b->shapeStart);
    uint32_t* record = reinterpret_cast<uint32_t*>(b->shapes.data + b->shapes.size);
    record[0] = spans;
    record[1] = b->shapeColours;
    OutlineSpan* out = reinterpret_cast<OutlineSpan*>(record + 2);
    for (uint32_t k = 0; k < spans; ++k) {
        out[k] = OutlineSpan{edges[2 * k], edges[2 * k + 1]};
        b->shapeColours += 3 * uint32_t(edges[2 * k + 1] - edges[2 * k]);
    }
    b->shapes.size += bytes;
    return true;
}

// Closes the shape: the last table entry is the size of a colour area, rounded up to 4 bytes.
uint32_t EndShape(OutlineBuilder* b) {
    reinterpret_cast<uint32_t*>(b->shapes.data + b->shapeStart)[b->rows] = (b->shapeColours + 3) & ~3u;
    return uint32_t(b->shapeStart);
}

// Room for one piece's colours (plus slack for the 4-byte stores of the last pixel); returns where.
uint8_t* BeginColours(OutlineBuilder* b, uint32_t piece, uint32_t shape) {
    uint32_t bytes = reinterpret_cast<const uint32_t*>(b->shapes.data + shape)[b->rows];
    if (!Reserve(&b->colours, uint64_t(bytes) + 4)) return nullptr;
    b->shapeOf[piece] = shape;
    b->colourOf[piece] = b->colours.size;
    uint8_t* at = b->colours.data + b->colours.size;
    b->colours.size += bytes;
    return at;
}

// Where the inside flag of a row of flags changes: begin, end, begin, ... Returns how many.
int32_t FindEdges(const uint8_t* inside, int32_t width, int32_t* edges) {
    uint32_t previous = 0;
    int32_t count = 0;
    for (int32_t x = 0; x < width; ++x) {
        edges[count] = x;
        count += int32_t(inside[x] ^ previous);
        previous = inside[x];
    }
    edges[count] = width;
    return count + int32_t(previous);
}

bool ImageUsable(const uint8_t* image) {
    if (!image) return false;
    const DibHeader* h = DibHeaderOf(image);
    return h->biWidth >= 1 && h->biHeight >= 1 && (h->biBitCount == 8 || h->biBitCount == 24) &&
           h->biCompression == 0 && h->biPlanes == 1;
}

bool PatternUsable(const uint8_t* pattern, uint32_t patternRows, uint32_t patternColumns) {
    if (!pattern || patternRows < 1 || patternColumns < 1 || patternRows > 1000 || patternColumns > 1000)
        return false;
    const DibHeader* h = DibHeaderOf(pattern);
    return h->biBitCount == 8 && h->biCompression == 0 &&
           h->biWidth == int32_t(patternColumns) * kPatternCell + 2 * kPatternMargin &&
           h->biHeight == int32_t(patternRows) * kPatternCell + 2 * kPatternMargin;
}

// The work tables of one cut; all of them live only while it runs.
struct CutTables {
    int32_t* srcColumn;   // per image column X, shifted by the left margin: byte offset in a source row
    int32_t* srcRow;      // per image row Y: source row counted from the top
    int32_t* patColumn;   // per box column: 0 .. 331
    int32_t* patRow;      // per box row
    uint32_t* columnMask; // per box column of the shape being made: region bits allowed by the column
    uint8_t* codes;       // per pattern cell, 256 entries: pattern value -> region code
    uint8_t* inside;      // per box column of the shape being made: the inside flag
    int32_t* edges;       // per box row: the columns where the inside flag changes
    uint32_t* shapeOfKind; // per kind of piece (pattern cell, place on the border): its shape, or none
};
constexpr uint32_t kNoShape = 0xFFFFFFFFu;

void FreeTables(CutTables* t) {
    std::free(t->srcColumn);
    std::free(t->srcRow);
    std::free(t->patColumn);
    std::free(t->patRow);
    std::free(t->columnMask);
    std::free(t->codes);
    std::free(t->inside);
    std::free(t->edges);
    std::free(t->shapeOfKind);
    *t = CutTables{};
}

// The geometry a cut works with.
struct CutGeometry {
    int32_t rows, cols, sw, sh, w, h, mx, my, W, H;
};

// The outline of piece (r, c) by the region tests, pixel by pixel: inside when the pattern names its own
// region, or a neighbour's region where that neighbour is missing beyond the border; never outside the
// photograph, and never sticking out of the puzzle's border. Every piece of the same pattern cell and the
// same place on the border (first, last or inner row and column) gets the same outline.
bool MakeShape(OutlineBuilder* b, CutTables* t, const CutGeometry& g, const uint8_t* pattern, uint32_t patternRows,
               uint32_t patternColumns, int32_t r, int32_t c) {
    const uint32_t pr = uint32_t(r) % patternRows, pc = uint32_t(c) % patternColumns;
    const uint8_t* code = t->codes + size_t(pr * patternColumns + pc) * 256;
    const bool firstColumn = c == 0, lastColumn = c == g.cols - 1;
    const int32_t patHeight = DibHeaderOf(pattern)->biHeight;
    const int64_t patStride = DibStride(8, DibHeaderOf(pattern)->biWidth);
    for (int32_t x = 0; x < g.W; ++x) {
        int64_t X = int64_t(c) * g.w + x - g.mx;
        uint32_t mask = 0;
        if (X >= 0 && X < g.sw) {
            mask = 1u << kCodeUp | 1u << kCodeDown;
            if (!(firstColumn && x < g.mx) && !(lastColumn && x > g.w + g.mx)) mask |= 1u << kCodeOwn;
            if (lastColumn && x <= g.w + g.mx) mask |= 1u << kCodeRight;
            if (firstColumn && x >= g.mx) mask |= 1u << kCodeLeft;
        }
        t->columnMask[x] = mask;
    }
    if (!BeginShape(b)) return false;
    for (int32_t y = 0; y < g.H; ++y) {
        const int32_t Y = r * g.h + y - g.my;
        uint32_t rowMask = 0;
        if (Y >= 0 && Y < g.sh) {
            rowMask = 1u << kCodeRight | 1u << kCodeLeft;
            if (!(r == 0 && y < g.my) && !(r == g.rows - 1 && y > g.h + g.my)) rowMask |= 1u << kCodeOwn;
            if (r == 0 && y >= g.my) rowMask |= 1u << kCodeUp;
            if (r == g.rows - 1 && y <= g.h + g.my) rowMask |= 1u << kCodeDown;
        }
        const int64_t patternRow = t->patRow[y] + int64_t(pr) * kPatternCell;
        const uint8_t* pat = DibPixels(pattern) + (patHeight - 1 - patternRow) * patStride + int64_t(pc) * kPatternCell;
        for (int32_t x = 0; x < g.W; ++x)
            t->inside[x] = uint8_t((rowMask & t->columnMask[x]) >> code[pat[t->patColumn[x]]] & 1u);
        if (!AddShapeRow(b, y, t->edges, FindEdges(t->inside, g.W, t->edges))) return false;
    }
    return true;
}

// Puts every piece somewhere across the table's width in its lower half, then shuffles the drawing order.
void ScatterPieces(PuzzleState* p) {
    uint32_t n = PieceCount(p);
    PutAllPiecesOnTable(p);
    p->puzzle_dirty = 0;
    p->finished = 0;
    p->clockPending = 1;
    p->elapsed = 0;
    p->hintsUsed = 0;
    for (uint32_t i = 0; i < n; ++i) {
        PieceRecord& piece = p->pieces[i];
        p->order[i] = i;
        piece.group = 0;
        piece.lit = 1;
        // The y fraction is drawn first.
        double a = RandomFraction();
        piece.y = int32_t((a + 1.0) * (p->tableHeight - p->boxHeight) * 0.5);
        double b = RandomFraction();
        piece.x = int32_t(b * (p->tableWidth - p->boxWidth));
    }
    for (uint32_t k = 0; k < n; ++k) {
        uint32_t i = uint32_t(RandomFraction() * n);
        uint32_t j = uint32_t(RandomFraction() * n);
        if (i != j) {
            uint32_t t = p->order[i];
            p->order[i] = p->order[j];
            p->order[j] = t;
        }
    }
    if (g_puzzleHooks.showClock) g_puzzleHooks.showClock("00:00:00");
}

bool FailCut(PuzzleState* p, CutTables* t, OutlineBuilder* b) {
    FreeTables(t);
    DropOutlines(b);
    ClearPuzzle(p, true);
    return false;
}

}  // namespace

bool CutPuzzle(PuzzleState* p, const uint8_t* image, const uint8_t* pattern, uint32_t patternRows,
               uint32_t patternColumns, uint32_t patternId, bool scatter) {
    if (!ImageUsable(image) || !PatternUsable(pattern, patternRows, patternColumns)) return false;
    const DibHeader* ih = DibHeaderOf(image);
    const int32_t srcW = ih->biWidth, srcH = ih->biHeight;
    const int32_t rows = p->rows, cols = p->cols;
    const double scale = p->scale;
    PuzzleGeometry pg;
    if (!ComputePuzzleGeometry(srcW, srcH, scale, rows, cols, &pg)) return false;

    if (g_puzzleHooks.waitCursor) g_puzzleHooks.waitCursor();
    const CutGeometry g{rows, cols, pg.scaledWidth, pg.scaledHeight, pg.cellWidth, pg.cellHeight,
                        pg.marginX, pg.marginY, pg.boxWidth, pg.boxHeight};
    const uint32_t cellCount = patternRows * patternColumns;

    // Image columns a box can reach run from -mx to cols * w + mx; the column table covers them all, the
    // ones outside the photograph pointing at its first pixel (their pixels are outside anyway).
    const int64_t columnSpan = int64_t(g.mx) + std::max<int64_t>(g.sw, int64_t(cols) * g.w + g.mx + 1);
    CutTables t{};
    OutlineBuilder outlines{};
    t.srcColumn = static_cast<int32_t*>(std::malloc(size_t(columnSpan) * sizeof(int32_t)));
    t.srcRow = static_cast<int32_t*>(std::malloc(size_t(g.sh) * sizeof(int32_t)));
    t.patColumn = static_cast<int32_t*>(std::malloc(size_t(g.W) * sizeof(int32_t)));
    t.patRow = static_cast<int32_t*>(std::malloc(size_t(g.H) * sizeof(int32_t)));
    t.columnMask = static_cast<uint32_t*>(std::malloc(size_t(g.W) * sizeof(uint32_t)));
    t.codes = static_cast<uint8_t*>(std::calloc(cellCount, 256));
    t.inside = static_cast<uint8_t*>(std::malloc(size_t(g.W)));
    t.edges = static_cast<int32_t*>(std::malloc(size_t(g.W + 2) * sizeof(int32_t)));
    t.shapeOfKind = static_cast<uint32_t*>(std::malloc(size_t(cellCount) * 16 * sizeof(uint32_t)));
    bool tablesMade = t.srcColumn && t.srcRow && t.patColumn && t.patRow && t.columnMask && t.codes && t.inside &&
                      t.edges && t.shapeOfKind;
    if (!tablesMade) return FailCut(p, &t, &outlines);
    if (!AllocatePuzzle(p, pg, rows, cols, scale)) {  // which has cleared the puzzle already
        FreeTables(&t);
        return false;
    }
    // The pieces' outlines cover about the photograph's grid: a tab adds what a hollow takes.
    const uint32_t pieceCount = PieceCount(p);
    const uint64_t expectedColours = 3 * ((uint64_t(cols) * g.w + 1) * (uint64_t(rows) * g.h + 1)) +
                                     uint64_t(pieceCount) * 8 + uint64_t(g.W) * g.H * 3;
    if (!BeginOutlines(&outlines, pieceCount, g.H, expectedColours)) return FailCut(p, &t, &outlines);
    p->patternRows = patternRows;
    p->patternColumns = patternColumns;
    p->patternId = patternId;
    if (g_puzzleHooks.prepareDragSurfaces) {
        DragSurfaceSizes sizes = DragSurfaceSizesFor(g.W, g.H);
        if (!g_puzzleHooks.prepareDragSurfaces(sizes.backgroundWidth, sizes.backgroundHeight))
            return FailCut(p, &t, &outlines);
    }

    // Scaling: image column X and row Y sample the photograph at trunc(X / scale), trunc(Y / scale).
    const int bytesPerPixel = ih->biBitCount / 8;
    const int64_t stride = DibStride(ih->biBitCount, srcW);
    for (int64_t k = 0; k < columnSpan; ++k) {
        int64_t X = k - g.mx;
        int32_t column = 0;
        if (X >= 0 && X < g.sw) {
            column = int32_t(double(X) / scale);
            if (column > srcW - 1) column = srcW - 1;
        }
        t.srcColumn[k] = column * bytesPerPixel;
    }
    for (int32_t Y = 0; Y < g.sh; ++Y) {
        int32_t row = int32_t(double(Y) / scale);
        t.srcRow[Y] = row > srcH - 1 ? srcH - 1 : row;
    }
    for (int32_t x = 0; x < g.W; ++x) t.patColumn[x] = PatternSample(x, g.w, g.mx);
    for (int32_t y = 0; y < g.H; ++y) t.patRow[y] = PatternSample(y, g.h, g.my);
    // Region codes per pattern cell, given in reverse so that the first test wins should numbers repeat.
    for (uint32_t cell = 0; cell < cellCount; ++cell) {
        PatternRegions r = PieceRegions(patternRows, patternColumns, int32_t(cell / patternColumns),
                                        int32_t(cell % patternColumns));
        uint8_t* code = t.codes + size_t(cell) * 256;
        const uint32_t order[5] = {r.left, r.down, r.right, r.up, r.own};
        const uint8_t value[5] = {kCodeLeft, kCodeDown, kCodeRight, kCodeUp, kCodeOwn};
        for (int k = 0; k < 5; ++k)
            if (order[k] < 256) code[order[k]] = value[k];
    }
    for (uint32_t k = 0; k < cellCount * 16; ++k) t.shapeOfKind[k] = kNoShape;
    uint32_t palette[256];
    for (int k = 0; k < 256; ++k) {
        const DibColor& c = DibPalette(image)[k];
        palette[k] = uint32_t(c.blue) | uint32_t(c.green) << 8 | uint32_t(c.red) << 16 | 1u << 24;
    }

    // Every piece: its shape (made the first time its kind is met), then its pixels, run by run: the sheet
    // gets the photograph's colour with the inside flag, the colour area the same colour in 24 bits.
    const uint8_t* srcPixels = DibPixels(image);
    const int64_t sheetWidth = int64_t(g.W) * cols;
    for (int32_t r = 0; r < rows; ++r) {
        const uint32_t rowKind = uint32_t(r == 0) | uint32_t(r == rows - 1) << 1;
        for (int32_t c = 0; c < cols; ++c) {
            const uint32_t cell = (uint32_t(r) % patternRows) * patternColumns + uint32_t(c) % patternColumns;
            const uint32_t kind = (cell * 4 + rowKind) * 4 + (uint32_t(c == 0) | uint32_t(c == cols - 1) << 1);
            if (t.shapeOfKind[kind] == kNoShape) {
                if (!MakeShape(&outlines, &t, g, pattern, patternRows, patternColumns, r, c))
                    return FailCut(p, &t, &outlines);
                t.shapeOfKind[kind] = EndShape(&outlines);
            }
            const uint32_t piece = uint32_t(r) * uint32_t(cols) + uint32_t(c);
            uint8_t* colours = BeginColours(&outlines, piece, t.shapeOfKind[kind]);
            if (!colours) return FailCut(p, &t, &outlines);
            const uint8_t* shape = outlines.shapes.data + t.shapeOfKind[kind];
            const int32_t* srcColumn = t.srcColumn + int64_t(c) * g.w;  // box column x -> srcColumn[x]
            for (int32_t y = 0; y < g.H; ++y) {
                uint32_t* out = p->sheet + (int64_t(g.H) * rows - int64_t(r) * g.H - y - 1) * sheetWidth + int64_t(c) * g.W;
                const uint32_t* record = reinterpret_cast<const uint32_t*>(shape + reinterpret_cast<const uint32_t*>(shape)[y]);
                const OutlineSpan* spans = reinterpret_cast<const OutlineSpan*>(record + 2);
                const int32_t Y = r * g.h + y - g.my;
                // A row with runs lies on the photograph.
                const uint8_t* src = record[0] ? srcPixels + (int64_t(srcH) - t.srcRow[Y] - 1) * stride : srcPixels;
                int32_t x = 0;
                for (uint32_t m = 0; m < record[0]; ++m) {
                    std::memset(out + x, 0, size_t(spans[m].begin - x) * sizeof(uint32_t));
                    for (x = spans[m].begin; x < spans[m].end; ++x) {
                        uint32_t color;
                        if (bytesPerPixel == 3) {
                            const uint8_t* px = src + srcColumn[x];
                            color = uint32_t(px[0]) | uint32_t(px[1]) << 8 | uint32_t(px[2]) << 16 | 1u << 24;
                        } else {
                            color = palette[src[srcColumn[x]]];
                        }
                        out[x] = color;
                        std::memcpy(colours, &color, 4);  // its fourth byte is the next pixel's first
                        colours += 3;
                    }
                }
                std::memset(out + x, 0, size_t(g.W - x) * sizeof(uint32_t));
            }
        }
    }
    InstallOutlines(p, &outlines);
    FreeTables(&t);

    if (g_puzzleHooks.stopClock) g_puzzleHooks.stopClock();
    p->timerId = 0;
    if (g_puzzleHooks.refitPreview) g_puzzleHooks.refitPreview();
    if (scatter) ScatterPieces(p);
    if (g_puzzleHooks.restoreCursor) g_puzzleHooks.restoreCursor();
    return true;
}

bool IndexPieceOutlines(PuzzleState* p) {
    if (!p->sheet) return false;
    OutlineBuilder b{};
    const uint32_t n = PieceCount(p);
    const int32_t W = p->boxWidth, H = p->boxHeight;
    uint8_t* inside = static_cast<uint8_t*>(std::malloc(size_t(W)));
    int32_t* edges = static_cast<int32_t*>(std::malloc(size_t(W + 2) * sizeof(int32_t)));
    bool ok = inside && edges && BeginOutlines(&b, n, H, uint64_t(n) * p->cellWidth * p->cellHeight * 3);
    // One shape per piece: a sheet filled by hand need not repeat outlines.
    for (uint32_t i = 0; ok && i < n; ++i) {
        ok = BeginShape(&b);
        for (int32_t y = 0; ok && y < H; ++y) {
            const uint32_t* row = SheetPixel(p, i, 0, y);
            for (int32_t x = 0; x < W; ++x) inside[x] = uint8_t((row[x] >> 24) != 0);
            ok = AddShapeRow(&b, y, edges, FindEdges(inside, W, edges));
        }
        uint8_t* colours = ok ? BeginColours(&b, i, EndShape(&b)) : nullptr;
        ok = colours != nullptr;
        for (int32_t y = 0; ok && y < H; ++y) {
            const uint32_t* row = SheetPixel(p, i, 0, y);
            for (int32_t x = 0; x < W; ++x)
                if (row[x] >> 24) {
                    std::memcpy(colours, &row[x], 4);
                    colours += 3;
                }
        }
    }
    std::free(inside);
    std::free(edges);
    if (!ok) {
        DropOutlines(&b);
        return false;
    }
    InstallOutlines(p, &b);
    return true;
}
