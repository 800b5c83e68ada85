// The saved-puzzle file: encoding, checking, rebuilding a game aside and installing it, the thumbnail reader.
#include "setup/saved_puzzle.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "app/app_state.h"
#include "app/clock_text.h"
#include "app/platform.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "puzzle/compose.h"
#include "puzzle/cut.h"
#include "puzzle/picture.h"

namespace {

constexpr char kSavedMagic[kSavedMagicBytes] = {'Q', 'M', 'P', 'F', '1', '0', 0};
// Image paths that start with this root followed by "Image\" are stored with the flag set, and loaded
// with the root's drive letter in place of the stored one (photographs kept on a removable medium). The
// game keeps its photographs beside itself, so no such root applies: the flag stays 0 and paths are kept
// as they are.
constexpr char kImageMediumRoot[] = "";
constexpr char kImageFolder[] = "Image\\";

void PutU32(uint8_t* at, uint32_t value) {
    for (int k = 0; k < 4; ++k) at[k] = uint8_t(value >> (8 * k));
}
void PutI32(uint8_t* at, int32_t value) { PutU32(at, uint32_t(value)); }
uint32_t GetU32(const uint8_t* at) {
    return uint32_t(at[0]) | uint32_t(at[1]) << 8 | uint32_t(at[2]) << 16 | uint32_t(at[3]) << 24;
}
int32_t GetI32(const uint8_t* at) { return int32_t(GetU32(at)); }
void PutF64(uint8_t* at, double value) {
    uint64_t bits;
    std::memcpy(&bits, &value, 8);
    PutU32(at, uint32_t(bits));
    PutU32(at + 4, uint32_t(bits >> 32));
}
double GetF64(const uint8_t* at) {
    uint64_t bits = uint64_t(GetU32(at)) | uint64_t(GetU32(at + 4)) << 32;
    double value;
    std::memcpy(&value, &bits, 8);
    return value;
}

bool HasMagic(const uint8_t* header) { return std::memcmp(header, kSavedMagic, kSavedMagicBytes) == 0; }

uint8_t ImageInImageFolder(const char* path) {
    const size_t rootLength = std::strlen(kImageMediumRoot);
    if (rootLength == 0) return 0;
    std::string prefix = std::string(kImageMediumRoot) + kImageFolder;
    return std::strncmp(path, prefix.c_str(), prefix.size()) == 0 ? 1 : 0;
}

double ThumbnailScale(int32_t width, int32_t height) {
    return 104.0 * height / width > 123.0 ? 123.0 / height : 104.0 / width;
}

// The game's hooks with every one silenced that would touch the game in play while a loaded puzzle is
// cut aside. The drag surfaces stay: the cut needs them for its box size.
PuzzleHooks QuietHooks(const PuzzleHooks& game) {
    PuzzleHooks quiet = game;
    quiet.stopClock = nullptr;
    quiet.viewEmptied = nullptr;
    quiet.viewFilled = nullptr;
    quiet.repaintView = nullptr;
    quiet.restoreCursor = nullptr;
    quiet.invalidateRect = nullptr;
    quiet.updateView = nullptr;
    quiet.hideTray = nullptr;
    quiet.startClock = nullptr;
    quiet.showClock = nullptr;
    quiet.enableSave = nullptr;
    quiet.refitPreview = nullptr;  // it would fit the photograph still in play; done after the load
    quiet.joinSound = nullptr;
    quiet.puzzleCompleted = nullptr;
    return quiet;
}

// The loaded puzzle's arrays and counters go into target; target keeps its views' surfaces and table size.
void MoveLoadedPuzzle(PuzzleState* target, const PuzzleState& loaded) {
    ViewSurface surfaces[kViewCount];
    std::memcpy(surfaces, target->surfaces, sizeof surfaces);
    const int32_t tableWidth = target->tableWidth, tableHeight = target->tableHeight;
    *target = loaded;
    std::memcpy(target->surfaces, surfaces, sizeof surfaces);
    target->tableWidth = tableWidth;
    target->tableHeight = tableHeight;
    RelinkViewRuns(target);
}

}  // namespace

// ---- The thumbnail ----

bool ThumbnailSize(int32_t width, int32_t height, int32_t* thumbWidth, int32_t* thumbHeight) {
    if (width < 1 || height < 1) return false;
    const double s = ThumbnailScale(width, height);
    // Only a picture thinner than a pixel in the thumbnail would truncate to nothing; it keeps one.
    *thumbWidth = std::max<int32_t>(1, int32_t(width * s));
    *thumbHeight = std::max<int32_t>(1, int32_t(height * s));
    return true;
}

bool MakeThumbnail(const uint8_t* picture, std::vector<uint8_t>* pixels, int32_t* thumbWidth,
                   int32_t* thumbHeight) {
    if (!picture) return false;
    const DibHeader* h = DibHeaderOf(picture);
    const int32_t W = h->biWidth, H = h->biHeight;
    if ((h->biBitCount != 8 && h->biBitCount != 24) || h->biCompression != 0 || W < 1 || H < 1) return false;
    int32_t pw, ph;
    if (!ThumbnailSize(W, H, &pw, &ph)) return false;
    const double s = ThumbnailScale(W, H);
    const int64_t stride = ThumbnailStride(pw);
    const int64_t sourceStride = DibStride(h->biBitCount, W);
    const uint8_t* source = DibPixels(picture);
    const DibColor* palette = DibPalette(picture);
    pixels->assign(size_t(stride * ph), 0);
    // Both pictures bottom-up: thumbnail row y takes source row trunc(y / s), rows counted as stored.
    for (int32_t y = ph - 1; y >= 0; --y) {
        int32_t sy = int32_t(y / s);
        if (sy > H - 1) sy = H - 1;
        const uint8_t* in = source + int64_t(sy) * sourceStride;
        uint8_t* out = pixels->data() + int64_t(y) * stride;
        for (int32_t x = pw - 1; x >= 0; --x) {
            int32_t sx = int32_t(x / s);
            if (sx > W - 1) sx = W - 1;
            uint32_t blue, green, red;
            if (h->biBitCount == 24) {
                blue = in[3 * sx];
                green = in[3 * sx + 1];
                red = in[3 * sx + 2];
            } else {
                const DibColor& c = palette[in[sx]];
                blue = c.blue;
                green = c.green;
                red = c.red;
            }
            const uint32_t value = (red >> 3) << 10 | (green >> 3) << 5 | (blue >> 3);
            out[2 * x] = uint8_t(value);
            out[2 * x + 1] = uint8_t(value >> 8);
        }
    }
    *thumbWidth = pw;
    *thumbHeight = ph;
    return true;
}

// ---- Writing ----

void SetSavedBoxName(SavedBoxNames* boxes, int box, const char* name) {
    if (box < 0 || box >= kTrayCount) return;
    char* field = boxes->names[box];
    std::memset(field, 0, kSavedNameBytes);
    if (name) std::memcpy(field, name, strnlen(name, kSavedNameBytes - 1));
}

bool EncodeSavedPuzzle(const PuzzleState* p, const char* imagePath, const SavedBoxNames& boxes,
                       const uint8_t* picture, std::vector<uint8_t>* out) {
    if (!p || !HasPuzzle(p) || !p->pieces || !p->order || !imagePath) return false;
    const size_t pathLength = strnlen(imagePath, kSavedPathBytes);
    if (pathLength >= kSavedPathBytes) return false;
    const uint32_t n = PieceCount(p);
    std::vector<uint8_t> thumbnail;
    int32_t pw = 0, ph = 0;
    if (picture && !MakeThumbnail(picture, &thumbnail, &pw, &ph)) return false;

    using namespace saved_offset;
    out->assign(size_t(kSavedOrderOffset) + size_t(n) * 20 + thumbnail.size(), 0);
    uint8_t* b = out->data();
    std::memcpy(b, kSavedMagic, kSavedMagicBytes);
    b[kImageFolderFlag] = ImageInImageFolder(imagePath);
    PutU32(b + kPatternRows, p->patternRows);
    PutU32(b + kPatternColumns, p->patternColumns);
    PutU32(b + kPatternId, p->patternId);
    std::memcpy(b + kImagePath, imagePath, pathLength);
    for (int k = 0; k < kTrayCount; ++k) {
        const char* name = boxes.names[k];
        std::memcpy(b + kBoxNames + k * kSavedNameBytes, name, strnlen(name, kSavedNameBytes - 1));
    }
    PutI32(b + kRows, p->rows);
    PutI32(b + kCols, p->cols);
    PutF64(b + kScale, p->scale);
    PutU32(b + kHintsUsed, p->hintsUsed);
    PutU32(b + kElapsed, p->elapsed);
    b[kFinished] = p->finished ? 1 : 0;
    if (picture) {
        b[kThumbnailFlag] = 1;
        PutU32(b + kThumbnailDistance, 20 * n + kSavedCountsBytes);
        PutI32(b + kThumbnailWidth, pw);
        PutI32(b + kThumbnailHeight, ph);
    }
    for (int v = 0; v < kViewCount; ++v) PutU32(b + kSavedHeaderBytes + 4 * v, p->views[v].count);
    uint8_t* order = b + kSavedOrderOffset;
    for (uint32_t k = 0; k < n; ++k) PutU32(order + 4 * size_t(k), p->order[k]);
    uint8_t* records = order + 4 * size_t(n);
    for (uint32_t i = 0; i < n; ++i) {
        uint8_t* r = records + 16 * size_t(i);
        PutU32(r, p->pieces[i].group);
        r[4] = p->pieces[i].lit;
        PutI32(r + 8, p->pieces[i].x);
        PutI32(r + 12, p->pieces[i].y);
    }
    if (!thumbnail.empty()) std::memcpy(records + 16 * size_t(n), thumbnail.data(), thumbnail.size());
    return true;
}

bool SavePuzzleToFile(const char* path, const PuzzleState* p, const char* imagePath, const SavedBoxNames& boxes,
                      const uint8_t* picture, bool withThumbnail) {
    if (!path || !*path || (withThumbnail && !picture)) return false;
    std::vector<uint8_t> bytes;
    if (!EncodeSavedPuzzle(p, imagePath, boxes, withThumbnail ? picture : nullptr, &bytes)) return false;
    const std::string temporary = std::string(path) + ".tmp";
    SysFile* file = SysOpenFile(temporary.c_str(), SYS_OPEN_CREATE);
    if (!file) return false;
    // One write per block, as the blocks are laid out.
    const uint32_t n = PieceCount(p);
    const size_t blocks[5] = {kSavedHeaderBytes, kSavedCountsBytes, 4 * size_t(n), 16 * size_t(n),
                              bytes.size() - kSavedOrderOffset - 20 * size_t(n)};
    bool ok = true;
    size_t at = 0;
    for (size_t block : blocks) {
        if (block == 0) continue;
        ok = SysWriteFile(file, bytes.data() + at, uint32_t(block));
        if (!ok) break;
        at += block;
    }
    SysCloseFile(file);
    if (ok) ok = SysReplaceFile(temporary.c_str(), path);
    if (!ok) SysDeleteFile(temporary.c_str());
    return ok;
}

// ---- Reading ----

bool DecodeSavedHeader(const uint8_t* header, SavedPuzzle* out) {
    using namespace saved_offset;
    if (!HasMagic(header)) return false;
    const uint32_t rows = GetU32(header + kRows), cols = GetU32(header + kCols);
    if (rows < 2 || cols < 2 || rows > uint32_t(kSavedMostRowsOrColumns) || cols > uint32_t(kSavedMostRowsOrColumns))
        return false;
    if (uint64_t(rows) * cols > kSavedMostPieces) return false;
    out->patternRows = GetU32(header + kPatternRows);
    out->patternColumns = GetU32(header + kPatternColumns);
    out->patternId = GetU32(header + kPatternId);
    if (out->patternRows < 1 || out->patternColumns < 1 || out->patternRows > kSavedMostPatternCells ||
        out->patternColumns > kSavedMostPatternCells)
        return false;
    out->scale = GetF64(header + kScale);
    if (!std::isfinite(out->scale) || !(out->scale > 0.0)) return false;
    out->finished = header[kFinished];
    if (out->finished > 1) return false;
    const char* path = reinterpret_cast<const char*>(header + kImagePath);
    const size_t pathLength = strnlen(path, kSavedPathBytes);
    if (pathLength == 0 || pathLength >= kSavedPathBytes) return false;
    std::memcpy(out->imagePath, path, pathLength + 1);
    // A name that fills its field without a NUL is read as its first 23 characters.
    for (int k = 0; k < kTrayCount; ++k)
        SetSavedBoxName(&out->boxes, k, std::string(reinterpret_cast<const char*>(header + kBoxNames) +
                                                        k * kSavedNameBytes, kSavedNameBytes - 1).c_str());
    out->imageInImageFolder = header[kImageFolderFlag];
    out->rows = int32_t(rows);
    out->cols = int32_t(cols);
    out->hintsUsed = GetU32(header + kHintsUsed);
    out->elapsed = GetU32(header + kElapsed);
    out->thumbnailPresent = header[kThumbnailFlag];
    out->thumbnailDistance = GetU32(header + kThumbnailDistance);
    out->thumbnailWidth = GetI32(header + kThumbnailWidth);
    out->thumbnailHeight = GetI32(header + kThumbnailHeight);
    return true;
}

bool DecodeSavedPuzzle(const uint8_t* bytes, size_t size, SavedPuzzle* out) {
    if (!bytes || size < kSavedHeaderBytes || !DecodeSavedHeader(bytes, out)) return false;
    const uint32_t n = uint32_t(out->rows) * uint32_t(out->cols);
    if (size < size_t(kSavedOrderOffset) + 20 * size_t(n)) return false;
    uint64_t total = 0;
    for (int v = 0; v < kViewCount; ++v) {
        out->counts[v] = GetU32(bytes + kSavedHeaderBytes + 4 * v);
        total += out->counts[v];
    }
    if (total != n) return false;
    const uint8_t* order = bytes + kSavedOrderOffset;
    out->order.assign(n, 0);
    std::vector<uint8_t> seen(n, 0);
    for (uint32_t k = 0; k < n; ++k) {
        const uint32_t i = GetU32(order + 4 * size_t(k));
        if (i >= n || seen[i]) return false;
        seen[i] = 1;
        out->order[k] = i;
    }
    const uint8_t* records = order + 4 * size_t(n);
    out->pieces.assign(n, PieceRecord{});
    for (uint32_t i = 0; i < n; ++i) {
        const uint8_t* r = records + 16 * size_t(i);
        PieceRecord& piece = out->pieces[i];
        piece.group = GetU32(r);
        piece.lit = r[4];
        piece.x = GetI32(r + 8);
        piece.y = GetI32(r + 12);
        if (piece.group > n || piece.lit > 1) return false;
        if (piece.x < -kSavedFarthestPosition || piece.x > kSavedFarthestPosition ||
            piece.y < -kSavedFarthestPosition || piece.y > kSavedFarthestPosition)
            return false;
    }
    return true;
}

bool ReadSavedPuzzleFile(const char* path, SavedPuzzle* out) {
    SysFile* file = SysOpenFile(path, SYS_OPEN_READ);
    if (!file) return false;
    std::vector<uint8_t> bytes(kSavedHeaderBytes);
    uint32_t got = 0;
    bool ok = SysReadFile(file, bytes.data(), kSavedHeaderBytes, &got) && got == kSavedHeaderBytes &&
              DecodeSavedHeader(bytes.data(), out);
    if (ok) {
        // The header is sound, so the rest is at most 2 MB.
        const uint32_t rest = kSavedCountsBytes + 20 * uint32_t(out->rows) * uint32_t(out->cols);
        bytes.resize(size_t(kSavedHeaderBytes) + rest);
        ok = SysReadFile(file, bytes.data() + kSavedHeaderBytes, rest, &got) && got == rest;
    }
    SysCloseFile(file);
    return ok && DecodeSavedPuzzle(bytes.data(), bytes.size(), out);
}

bool SavedHintsLeft(const SavedPuzzle& saved) {
    return double(saved.hintsUsed) < std::trunc(0.2 * saved.rows * saved.cols);
}

uint8_t* ReadSavedPicture(const SavedPuzzle& saved, char usedPath[kSavedPathBytes]) {
    char path[kSavedPathBytes];
    std::memcpy(path, saved.imagePath, kSavedPathBytes);
    if (saved.imageInImageFolder && kImageMediumRoot[0]) path[0] = kImageMediumRoot[0];
    uint8_t* picture = ReadPictureFile(path);
    // A saved game survives the game folder moving: a photograph of the Image folder that is no longer
    // where it was is looked for in the Image folder beside the program.
    if (!picture && std::strstr(path, kImageFolder)) {
        const char* name = path;
        for (const char* c = path; *c; ++c)
            if (*c == '\\' || *c == '/') name = c + 1;
        std::string moved = std::string(g_appFolder) + kImageFolder + name;
        if (*name && moved.size() < kSavedPathBytes) {
            std::memcpy(path, moved.c_str(), moved.size() + 1);
            picture = ReadPictureFile(path);
        }
    }
    if (picture) std::memcpy(usedPath, path, kSavedPathBytes);
    return picture;
}

bool BuildSavedPuzzle(const SavedPuzzle& saved, const uint8_t* picture, const uint8_t* pattern,
                      PuzzleState* loaded) {
    const uint32_t n = uint32_t(saved.rows) * uint32_t(saved.cols);
    if (saved.order.size() != n || saved.pieces.size() != n) return false;
    loaded->rows = saved.rows;
    loaded->cols = saved.cols;
    loaded->scale = saved.scale;
    if (!CutPuzzle(loaded, picture, pattern, saved.patternRows, saved.patternColumns, saved.patternId, false)) {
        ClearPuzzle(loaded, false);
        return false;
    }
    for (int v = 0; v < kViewCount; ++v) loaded->views[v].count = saved.counts[v];
    std::memcpy(loaded->order, saved.order.data(), n * sizeof(uint32_t));
    std::memcpy(loaded->pieces, saved.pieces.data(), n * sizeof(PieceRecord));
    RelinkViewRuns(loaded);
    loaded->hintsUsed = saved.hintsUsed;
    loaded->elapsed = saved.elapsed;
    loaded->finished = saved.finished;
    if (!PuzzleInvariantsHold(loaded) || (!saved.finished && IsPuzzleComplete(loaded))) {
        ClearPuzzle(loaded, false);
        return false;
    }
    return true;
}

bool LoadSavedPuzzle(const char* path, PuzzleState* target, SavedPuzzle* saved) {
    if (!path || !target || !saved || !ReadSavedPuzzleFile(path, saved)) return false;
    char usedPath[kSavedPathBytes];
    uint8_t* picture = ReadSavedPicture(*saved, usedPath);
    if (!picture) return false;
    uint8_t* pattern = LoadPackItem(&g_pack, saved->patternId);
    if (!pattern) {
        FreePackedDib(picture);
        return false;
    }
    const PuzzleHooks game = g_puzzleHooks;
    g_puzzleHooks = QuietHooks(game);
    PuzzleState loaded = {};
    loaded.tableWidth = target->tableWidth;
    loaded.tableHeight = target->tableHeight;
    std::memcpy(loaded.surfaces, target->surfaces, sizeof loaded.surfaces);
    const bool built = BuildSavedPuzzle(*saved, picture, pattern, &loaded);
    FreePackedDib(pattern);
    if (!built) {
        g_puzzleHooks = game;
        // The cut made the drag surfaces for the loaded puzzle's box; the game in play needs its own back.
        if (HasPuzzle(target) && game.prepareDragSurfaces) {
            const DragSurfaceSizes sizes = DragSurfaceSizesFor(target->boxWidth, target->boxHeight);
            game.prepareDragSurfaces(sizes.backgroundWidth, sizes.backgroundHeight);
        }
        FreePackedDib(picture);
        return false;
    }
    // Still quiet: the trays hear of their new contents from the caller, not of the old game's end.
    ClearPuzzle(target, false);
    g_puzzleHooks = game;
    MoveLoadedPuzzle(target, loaded);
    SetCurrentPicture(picture, usedPath);
    if (game.stopClock) game.stopClock();
    target->timerId = 0;
    // An unfinished puzzle's clock starts again at the next grab; a finished one's stays stopped.
    target->clockPending = target->finished ? 0 : 1;
    target->paused = 0;
    target->puzzle_dirty = 0;
    target->dragMode = 0;
    if (game.restoreCursor) game.restoreCursor();
    return true;
}

void ShowLoadedPuzzle(PuzzleState* p) {
    for (int v = 0; v < kViewCount; ++v) RepaintView(p, v, true);
    if (g_puzzleHooks.showClock) {
        char text[16];
        FormatClockSeconds(p->elapsed, text, int(sizeof text));
        g_puzzleHooks.showClock(text);
    }
    if (g_puzzleHooks.refitPreview) g_puzzleHooks.refitPreview();
}

uint8_t* ReadPuzzlePreview(const char* path) {
    SysFile* file = SysOpenFile(path, SYS_OPEN_READ);
    if (!file) return nullptr;
    using namespace saved_offset;
    uint8_t header[kSavedHeaderBytes];
    uint32_t got = 0;
    bool ok = SysReadFile(file, header, kSavedHeaderBytes, &got) && got == kSavedHeaderBytes && HasMagic(header);
    const uint64_t n = uint64_t(GetU32(header + kRows)) * GetU32(header + kCols);
    const int32_t pw = GetI32(header + kThumbnailWidth), ph = GetI32(header + kThumbnailHeight);
    // Every size is checked before anything is allocated.
    ok = ok && GetU32(header + kThumbnailDistance) == 20 * n + kSavedCountsBytes;
    ok = ok && pw >= 1 && ph >= 1 && pw <= kThumbnailBoxWidth && ph <= kThumbnailBoxHeight;
    ok = ok && SysSeekFile(file, int64_t(GetU32(header + kThumbnailDistance)), SYS_SEEK_CURRENT, nullptr);
    uint8_t* block = nullptr;
    if (ok) {
        // Twice the stored size is asked for on purpose: the thumbnail ends the file, and any bytes at all
        // are accepted. What is not read stays zero.
        const uint32_t bytes = 4 * uint32_t(pw) * uint32_t(ph);
        block = static_cast<uint8_t*>(SysAllocBlock(size_t(kDibPixelOffset) + bytes));
        if (block) {
            std::memset(block, 0, size_t(kDibPixelOffset) + bytes);
            if (SysReadFile(file, block + kDibPixelOffset, bytes, &got) && got > 0) {
                DibHeader* h = DibHeaderOf(block);
                h->biSize = kDibHeaderBytes;
                h->biWidth = pw;
                h->biHeight = ph;
                h->biPlanes = 1;
                h->biBitCount = 16;
                h->biCompression = 0;
                h->biSizeImage = bytes;
            } else {
                SysFreeBlock(block);
                block = nullptr;
            }
        }
    }
    SysCloseFile(file);
    return block;
}
