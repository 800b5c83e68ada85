// The three piece-shape styles. The pattern is drawn as a window onto an endless plane of 200-pixel
// cells repeating every two cells, so the shapes across the pattern's border are the same edges seen
// again and the 2 x 2 pattern repeats without a seam. Every edge is one path in its own coordinates:
// u along the edge (0..200), v across it, positive into the second cell (below or right).
#include "artgen/patterns.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "artgen/noise.h"
#include "gfx/dib.h"

namespace {

// Cells shown by the pattern: -1..2 in each direction (the margins are slices of cells -1 and 2).
constexpr int kFirstCell = -1, kLastCell = 2;

int Mod2(int v) { return ((v % 2) + 2) % 2; }

// A number 1..16 that names a cell of the 4 x 4 block while drawing.
int CellCode(int row, int col) { return (row - kFirstCell) * 4 + (col - kFirstCell) + 1; }

// What the game reads: own region, wrap-around region, or 0 for the corner cells.
uint8_t RegionOf(int row, int col) {
    bool rowIn = row >= 0 && row < kPatternCells, colIn = col >= 0 && col < kPatternCells;
    const int P = kPatternCells * kPatternCells + 1;
    if (rowIn && colIn) return uint8_t(row * kPatternCells + col + 1);
    if (row < 0 && colIn) return uint8_t(P + col);
    if (col >= kPatternCells && rowIn) return uint8_t(P + kPatternCells + row);
    if (row >= kPatternCells && colIn) return uint8_t(P + kPatternCells + kPatternCells + col);
    if (col < 0 && rowIn) return uint8_t(P + 2 * kPatternCells + kPatternCells + row);
    return 0;
}

struct EdgeShape {
    double side;    // +1: the tab belongs to the first cell and reaches into the second; -1 the reverse
    double centre;  // where along the edge the tab sits
    double depth;   // how far it reaches across (at most 58: the game allows 66)
    double width;   // half width of the tab's head
    double neck;    // half width of its neck
};

// Edges repeat with the 2 x 2 pattern, so one shape per (direction, row parity, column parity).
EdgeShape ShapeOf(PatternStyle style, bool vertical, int rowParity, int colParity) {
    Rng rng{HashInt(uint32_t(style) * 131u + (vertical ? 17u : 3u) + uint32_t(rowParity) * 7u +
                    uint32_t(colParity) * 29u + 12345u)};
    // Alternate directions like a real puzzle, so no cell has all tabs or all blanks.
    static const double kSides[2][2][2] = {{{1, -1}, {-1, 1}}, {{-1, 1}, {1, -1}}};
    EdgeShape e;
    e.side = kSides[vertical][rowParity][colParity];
    e.centre = 100 + rng.Range(-8, 8);
    switch (style) {
    case kStyleClassic:
        e.depth = rng.Range(52, 57);
        e.width = rng.Range(24, 27);
        e.neck = rng.Range(12, 14);
        break;
    case kStyleDovetail:
        e.depth = rng.Range(40, 45);
        e.width = rng.Range(30, 34);
        e.neck = rng.Range(19, 22);
        break;
    default:
        e.depth = rng.Range(44, 50);
        e.width = rng.Range(32, 36);
        e.neck = 0;
        break;
    }
    return e;
}

// The edge's path from (0, 0) to (200, 0), tab toward +v, closed back along v = 0.
void EdgePath(cairo_t* cr, PatternStyle style, const EdgeShape& e) {
    double c = e.centre;
    cairo_move_to(cr, 0, 0);
    if (style == kStyleClassic) {
        double R = e.width, hc = e.depth - R;  // head centre
        double nx = e.neck;
        double ny = hc - std::sqrt(R * R - nx * nx);
        double a0 = std::atan2(ny - hc, -nx), a1 = std::atan2(ny - hc, nx);
        cairo_line_to(cr, c - nx - 9, 0);
        cairo_curve_to(cr, c - nx - 2, 0, c - nx + 2, ny * 0.4, c - nx, ny);
        cairo_arc_negative(cr, c, hc, R, a0, a1);
        cairo_curve_to(cr, c + nx - 2, ny * 0.4, c + nx + 2, 0, c + nx + 9, 0);
    } else if (style == kStyleDovetail) {
        // A square-shouldered dovetail with slightly eased corners.
        double n = e.neck, w = e.width, d = e.depth;
        cairo_line_to(cr, c - n - 3, 0);
        cairo_line_to(cr, c - n, 3);
        cairo_line_to(cr, c - w + 2, d - 3);
        cairo_line_to(cr, c - w + 5, d);
        cairo_line_to(cr, c + w - 5, d);
        cairo_line_to(cr, c + w - 2, d - 3);
        cairo_line_to(cr, c + n, 3);
        cairo_line_to(cr, c + n + 3, 0);
    } else {
        // A free-form wave: a broad bump between two shallow hollows, fading out at the corners.
        for (int i = 1; i < 200; ++i) {
            double u = i;
            double env = std::pow(std::sin(M_PI * u / 200), 1.5);
            double bump = std::exp(-std::pow((u - c) / e.width, 2)) * e.depth;
            double hollow = -12 * (std::exp(-std::pow((u - c + 52) / 16, 2)) + std::exp(-std::pow((u - c - 52) / 16, 2)));
            cairo_line_to(cr, u, env * (bump + hollow));
        }
    }
    cairo_line_to(cr, 200, 0);
    cairo_close_path(cr);
}

void FillCode(cairo_t* cr, int code) { cairo_set_source_rgb(cr, code / 255.0, 0, 0); }

}  // namespace

std::vector<uint8_t> MakeCutPattern(PatternStyle style) {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kPatternSize, kPatternSize);
    cairo_t* cr = cairo_create(surface);
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_translate(cr, kPatternMargin, kPatternMargin);
    for (int row = kFirstCell; row <= kLastCell; ++row)
        for (int col = kFirstCell; col <= kLastCell; ++col) {
            cairo_rectangle(cr, col * kPatternCell, row * kPatternCell, kPatternCell, kPatternCell);
            FillCode(cr, CellCode(row, col));
            cairo_fill(cr);
        }
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
    for (int vertical = 0; vertical < 2; ++vertical)
        for (int row = kFirstCell; row <= kLastCell; ++row)
            for (int col = kFirstCell; col <= kLastCell; ++col) {
                // The edge after cell (row, col): below it, or to its right.
                int row2 = vertical ? row : row + 1, col2 = vertical ? col + 1 : col;
                if (row2 > kLastCell || col2 > kLastCell) continue;
                EdgeShape e = ShapeOf(style, vertical, Mod2(row2), Mod2(col2));
                cairo_matrix_t m;
                double ox = col2 * kPatternCell, oy = row2 * kPatternCell;
                if (vertical)
                    cairo_matrix_init(&m, 0, 1, e.side, 0, ox, oy);  // u down, v right (or left)
                else
                    cairo_matrix_init(&m, 1, 0, 0, e.side, ox, oy);  // u right, v down (or up)
                int first = CellCode(row, col), second = CellCode(row2, col2);
                int owner = e.side > 0 ? first : second, other = e.side > 0 ? second : first;
                int otherRow = e.side > 0 ? row2 : row, otherCol = e.side > 0 ? col2 : col;
                int ownerRow = e.side > 0 ? row : row2, ownerCol = e.side > 0 ? col : col2;
                // The tab's pixels inside the other cell go to the owner, the hollows inside the
                // owner's cell (the wave's dips) go to the other.
                for (int pass = 0; pass < 2; ++pass) {
                    int clipRow = pass == 0 ? otherRow : ownerRow, clipCol = pass == 0 ? otherCol : ownerCol;
                    cairo_save(cr);
                    cairo_rectangle(cr, clipCol * kPatternCell, clipRow * kPatternCell, kPatternCell, kPatternCell);
                    cairo_clip(cr);
                    cairo_save(cr);
                    cairo_transform(cr, &m);
                    EdgePath(cr, style, e);
                    cairo_restore(cr);
                    FillCode(cr, pass == 0 ? owner : other);
                    cairo_fill(cr);
                    cairo_restore(cr);
                }
            }
    cairo_destroy(cr);
    cairo_surface_flush(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    int stride = cairo_image_surface_get_stride(surface);
    uint8_t regionOfCode[17] = {0};
    for (int row = kFirstCell; row <= kLastCell; ++row)
        for (int col = kFirstCell; col <= kLastCell; ++col) regionOfCode[CellCode(row, col)] = RegionOf(row, col);
    std::vector<uint8_t> labels(size_t(kPatternSize) * kPatternSize);
    for (int y = 0; y < kPatternSize; ++y)
        for (int x = 0; x < kPatternSize; ++x) {
            uint32_t p = reinterpret_cast<const uint32_t*>(data + y * stride)[x];
            int code = int((p >> 16) & 255);
            labels[size_t(y) * kPatternSize + x] = code >= 1 && code <= 16 ? regionOfCode[code] : 255;
        }
    cairo_surface_destroy(surface);
    return labels;
}

uint8_t* CutPatternToDib(const std::vector<uint8_t>& labels) {
    uint8_t* dib = AllocPackedDib(kPatternSize, kPatternSize, 8, 256);
    if (!dib) return nullptr;
    // A palette that makes the regions readable when the pattern is viewed: dark outside, four warm
    // own colours, and paler tints for the wrap-around regions.
    static const uint32_t kColours[13] = {0x202020, 0xd9534f, 0x5cb85c, 0x428bca, 0xf0ad4e, 0xf2b8b6, 0xb9e2b9,
                                          0xaecbea, 0xf8d9aa, 0xe6a3a1, 0xa3d6a3, 0x9dbfe3, 0xf5cf95};
    DibColor* palette = DibPalette(dib);
    for (int i = 0; i < 256; ++i) {
        uint32_t c = i < 13 ? kColours[i] : 0xff00ff;
        palette[i] = DibColor{uint8_t(c & 255), uint8_t((c >> 8) & 255), uint8_t(c >> 16), 0};
    }
    int64_t stride = DibStride(8, kPatternSize);
    for (int y = 0; y < kPatternSize; ++y)
        std::memcpy(DibPixels(dib) + (kPatternSize - 1 - y) * stride, &labels[size_t(y) * kPatternSize], kPatternSize);
    return dib;
}
