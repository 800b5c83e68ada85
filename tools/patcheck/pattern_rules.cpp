// Checks of a cut pattern. A pixel's region number names the cell that owns it: own regions the
// pattern's cells, wrap-around regions the cells just outside it. Reading every pixel as "owned by
// cell (row, col)" of the endless repeated plane lets each rule be stated once.
#include "patcheck/pattern_rules.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

namespace {

constexpr int kCell = 200, kMargin = 66;

template <typename T>
T Get(const std::vector<uint8_t>& b, size_t at) {
    T v;
    std::memcpy(&v, &b[at], sizeof v);
    return v;
}

struct Owner {
    bool known = false;  // false for 0: one of the corner cells, which carry no number
    int row = 0, col = 0;  // in cells, the pattern's first cell being (0, 0)
};

// The cell a region number names, for a rows x cols pattern.
bool DecodeRegion(int value, int rows, int cols, Owner* owner) {
    const int P = rows * cols + 1;
    owner->known = true;
    if (value == 0) { owner->known = false; return true; }
    if (value < P) { owner->row = (value - 1) / cols; owner->col = (value - 1) % cols; return true; }
    int k = value - P;
    if (k < cols) { owner->row = -1; owner->col = k; return true; }
    k -= cols;
    if (k < rows) { owner->row = k; owner->col = cols; return true; }
    k -= rows;
    if (k < cols) { owner->row = rows; owner->col = k; return true; }
    k -= cols;
    if (k < rows) { owner->row = k; owner->col = -1; return true; }
    return false;
}

int FloorDiv(int a, int b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }

// The number the pattern must carry for a pixel owned by cell (row, col), or -1 if no number exists
// (a corner cell, shown as 0).
int EncodeRegion(int row, int col, int rows, int cols) {
    const int P = rows * cols + 1;
    bool rowIn = row >= 0 && row < rows, colIn = col >= 0 && col < cols;
    if (rowIn && colIn) return row * cols + col + 1;
    if (row == -1 && colIn) return P + col;
    if (col == cols && rowIn) return P + cols + row;
    if (row == rows && colIn) return P + cols + rows + col;
    if (col == -1 && rowIn) return P + 2 * cols + rows + row;
    return -1;
}

}  // namespace

bool ReadPatternBmp(const std::string& path, PatternImage* image, std::string* reason) {
    std::ifstream in(path, std::ios::binary);
    std::vector<uint8_t> b((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (b.size() < 54 || b[0] != 'B' || b[1] != 'M') { *reason = "not a BMP file"; return false; }
    uint32_t offBits = Get<uint32_t>(b, 10), headerSize = Get<uint32_t>(b, 14);
    int32_t w = Get<int32_t>(b, 18), h = Get<int32_t>(b, 22);
    image->width = w;
    image->height = h < 0 ? -h : h;
    image->bitCount = Get<uint16_t>(b, 28);
    image->compression = Get<uint32_t>(b, 30);
    image->colorsUsed = Get<uint32_t>(b, 46);
    if (headerSize != 40) { *reason = "header is not 40 bytes"; return false; }
    if (image->bitCount != 8 || image->compression != 0 || w <= 0 || image->height <= 0) return true;
    size_t stride = (size_t(w) + 3) & ~size_t(3);
    if (offBits + stride * image->height > b.size()) { *reason = "pixel rows run past the end"; return false; }
    image->pixels.resize(size_t(w) * image->height);
    for (int y = 0; y < image->height; ++y) {
        int fileRow = h > 0 ? image->height - 1 - y : y;
        std::memcpy(&image->pixels[size_t(y) * w], &b[offBits + fileRow * stride], size_t(w));
    }
    return true;
}

std::vector<std::string> CheckPattern(const PatternImage& im) {
    std::vector<std::string> errors;
    char line[256];
    if (im.bitCount != 8) errors.push_back("not 8 bits a pixel");
    if (im.compression != 0) errors.push_back("compressed");
    if (im.colorsUsed == 0 || im.colorsUsed > 256) errors.push_back("biClrUsed is not 1..256");
    int cols = (im.width - 2 * kMargin) / kCell, rows = (im.height - 2 * kMargin) / kCell;
    if (cols < 1 || rows < 1 || im.width != cols * kCell + 2 * kMargin || im.height != rows * kCell + 2 * kMargin)
        errors.push_back("size is not (cells x 200 + 132) each way");
    if (!errors.empty() || im.pixels.empty()) return errors;

    const int W = im.width, H = im.height;
    auto at = [&](int x, int y) { return int(im.pixels[size_t(y) * W + x]); };
    // Geometric cell of a pixel and its position inside that cell.
    auto cellOf = [&](int v) { return FloorDiv(v - kMargin, kCell); };
    int badValue = 0, badOwner = 0, tooDeep = 0, strayZero = 0;
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
            Owner o;
            int gr = cellOf(y), gc = cellOf(x);
            if (!DecodeRegion(at(x, y), rows, cols, &o)) { ++badValue; continue; }
            bool inCells = gr >= 0 && gr < rows && gc >= 0 && gc < cols;
            if (!o.known) {
                if (inCells) ++strayZero;
                continue;
            }
            int dr = o.row - gr, dc = o.col - gc;
            if (std::abs(dr) + std::abs(dc) > 1) { ++badOwner; continue; }
            // A tab may reach at most 66 pixels over the edge it crosses.
            int ix = x - kMargin - gc * kCell, iy = y - kMargin - gr * kCell;  // 0..199 inside the cell
            int depth = dc < 0 ? ix + 1 : dc > 0 ? kCell - ix : dr < 0 ? iy + 1 : dr > 0 ? kCell - iy : 0;
            if (depth > kMargin) ++tooDeep;
        }
    if (badValue) { std::snprintf(line, sizeof line, "%d pixels hold no region number", badValue); errors.push_back(line); }
    if (badOwner) { std::snprintf(line, sizeof line, "%d pixels belong to a cell that does not touch them", badOwner); errors.push_back(line); }
    if (tooDeep) { std::snprintf(line, sizeof line, "%d pixels of tabs reach more than 66 px into a neighbour", tooDeep); errors.push_back(line); }
    if (strayZero) { std::snprintf(line, sizeof line, "%d pixels inside the cells are 0", strayZero); errors.push_back(line); }
    if (!errors.empty()) return errors;

    // The repeat: a pixel and the same place one pattern further on must be owned by the same cell of
    // the endless plane, so the margins mirror the opposite edges exactly.
    int seams = 0;
    for (int pass = 0; pass < 2; ++pass) {
        int dx = pass ? cols * kCell : 0, dy = pass ? 0 : rows * kCell;
        for (int y = 0; y + dy < H; ++y)
            for (int x = 0; x + dx < W; ++x) {
                Owner a, b;
                DecodeRegion(at(x, y), rows, cols, &a);
                DecodeRegion(at(x + dx, y + dy), rows, cols, &b);
                int shiftR = dy / kCell, shiftC = dx / kCell;
                bool ok = true;
                if (a.known) {
                    int want = EncodeRegion(a.row + shiftR, a.col + shiftC, rows, cols);
                    ok = want < 0 ? !b.known : (b.known && b.row == a.row + shiftR && b.col == a.col + shiftC);
                }
                if (ok && b.known) {
                    int want = EncodeRegion(b.row - shiftR, b.col - shiftC, rows, cols);
                    ok = want < 0 ? !a.known : a.known;
                }
                if (!ok) ++seams;
            }
    }
    if (seams) {
        std::snprintf(line, sizeof line, "%d pixels do not match the opposite edge (the repeat has a seam)", seams);
        errors.push_back(line);
    }

    // Every own region is one connected piece that holds its cell's centre and keeps a sensible size.
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < cols; ++c) {
            int region = r * cols + c + 1, total = 0;
            for (int v : im.pixels) total += v == region;
            int cx = kMargin + c * kCell + kCell / 2, cy = kMargin + r * kCell + kCell / 2;
            if (at(cx, cy) != region) {
                std::snprintf(line, sizeof line, "region %d does not hold its cell's centre", region);
                errors.push_back(line);
                continue;
            }
            std::vector<uint8_t> seen(im.pixels.size(), 0);
            std::vector<int> stack{cy * W + cx};
            seen[size_t(cy) * W + cx] = 1;
            int reached = 0;
            while (!stack.empty()) {
                int p = stack.back();
                stack.pop_back();
                ++reached;
                int px = p % W, py = p / W;
                const int n[4][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
                for (auto& d : n) {
                    int qx = px + d[0], qy = py + d[1];
                    if (qx < 0 || qy < 0 || qx >= W || qy >= H) continue;
                    size_t q = size_t(qy) * W + qx;
                    if (!seen[q] && im.pixels[q] == region) { seen[q] = 1; stack.push_back(int(q)); }
                }
            }
            if (reached != total) {
                std::snprintf(line, sizeof line, "region %d falls apart (%d of %d pixels connected)", region, reached, total);
                errors.push_back(line);
            }
            if (total < kCell * kCell / 2 || total > kCell * kCell * 3 / 2) {
                std::snprintf(line, sizeof line, "region %d has %d pixels, far from a cell's 40000", region, total);
                errors.push_back(line);
            }
        }
    return errors;
}
