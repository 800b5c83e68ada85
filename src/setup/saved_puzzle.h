// The saved-puzzle file (".epf"): its byte layout, the encoder, the checking decoder and the thumbnail reader.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "puzzle/model.h"

// Block sizes and header offsets; all integers little-endian.
constexpr uint32_t kSavedHeaderBytes = 488;
constexpr uint32_t kSavedCountsBytes = 28;          // seven u32 view counts at 488
constexpr uint32_t kSavedOrderOffset = 516;         // then 4 * N order entries, 16 * N piece records
constexpr uint32_t kSavedPathBytes = 260;           // the image path field, with its NUL
constexpr uint32_t kSavedNameBytes = 24;            // one box name field, at most 23 characters
constexpr uint32_t kSavedMagicBytes = 7;            // "QMPF10" and its NUL
constexpr int32_t kThumbnailBoxWidth = 104;
constexpr int32_t kThumbnailBoxHeight = 123;

namespace saved_offset {
constexpr uint32_t kImageFolderFlag = 26, kPatternRows = 28, kPatternColumns = 32, kPatternId = 36;
constexpr uint32_t kImagePath = 40, kBoxNames = 300, kRows = 444, kCols = 448, kScale = 456;
constexpr uint32_t kHintsUsed = 464, kElapsed = 468, kFinished = 472, kThumbnailFlag = 473;
constexpr uint32_t kThumbnailDistance = 476, kThumbnailWidth = 480, kThumbnailHeight = 484;
}  // namespace saved_offset

// What a loaded file may hold. The choosers never make more than about 170 rows or columns even on the
// largest screens; these bounds keep hostile files from asking for absurd memory.
constexpr int32_t kSavedMostRowsOrColumns = 400;
constexpr uint32_t kSavedMostPieces = 100000;
constexpr uint32_t kSavedMostPatternCells = 64;     // pattern rows and columns each
constexpr int32_t kSavedFarthestPosition = 65536;   // |x| and |y| of a piece's box

// The six box names as the file keeps them: NUL-terminated, at most 23 characters each.
struct SavedBoxNames {
    char names[kTrayCount][kSavedNameBytes];
};

// A saved puzzle as read from its file, checked in itself (see DecodeSavedPuzzle).
struct SavedPuzzle {
    uint8_t imageInImageFolder;
    uint32_t patternRows, patternColumns, patternId;
    char imagePath[kSavedPathBytes];
    SavedBoxNames boxes;
    int32_t rows, cols;
    double scale;
    uint32_t hintsUsed, elapsed;
    uint8_t finished;
    uint8_t thumbnailPresent;
    uint32_t thumbnailDistance;
    int32_t thumbnailWidth, thumbnailHeight;
    uint32_t counts[kViewCount];
    std::vector<uint32_t> order;
    std::vector<PieceRecord> pieces;  // unused bytes zeroed
};

// ---- The thumbnail ----

// The thumbnail's size for a W x H photograph: width-bound (s = 104 / W) unless 104 * H / W, in floating
// point, is above 123 (then s = 123 / H); each side truncated. False for a picture without area.
bool ThumbnailSize(int32_t width, int32_t height, int32_t* thumbWidth, int32_t* thumbHeight);
// Bytes of one thumbnail row: ((PW * 2 + 3) div 4) * 4.
inline int64_t ThumbnailStride(int32_t thumbWidth) { return ((int64_t(thumbWidth) * 2 + 3) / 4) * 4; }
// The 5-5-5 thumbnail of a packed DIB (8 or 24 bits, bottom-up), nearest neighbour, bottom row first,
// padding bytes zero. False for anything else.
bool MakeThumbnail(const uint8_t* picture, std::vector<uint8_t>* pixels, int32_t* thumbWidth, int32_t* thumbHeight);

// ---- Writing ----

// Bytes of a whole saved puzzle: the header, the view counts, the order, the piece table and, with
// picture non-null, its thumbnail. False when there is no puzzle, the image path does not fit its field
// (260 characters or more) or the thumbnail cannot be made. Unused bytes are zero.
bool EncodeSavedPuzzle(const PuzzleState* p, const char* imagePath, const SavedBoxNames& boxes,
                       const uint8_t* picture, std::vector<uint8_t>* out);
// Encodes and writes the puzzle to path: beside it first (path + ".tmp"), one write per block, and put in
// its place only when every write succeeded; on failure the temporary file is removed and whatever stood
// at path is left as it was. Nothing is created when the encoding fails.
bool SavePuzzleToFile(const char* path, const PuzzleState* p, const char* imagePath, const SavedBoxNames& boxes,
                      const uint8_t* picture, bool withThumbnail);
// A box name as the file keeps it: the first 23 characters, NUL-terminated, zeros after.
void SetSavedBoxName(SavedBoxNames* boxes, int box, const char* name);

// ---- Reading ----

// Checks the 488-byte header: the magic "QMPF10" with its NUL, rows and columns each 2 .. 400 with at most
// 100,000 pieces, pattern cells 1 .. 64 each way, a finite positive scale, finished 0 or 1, a NUL within
// the image path.
bool DecodeSavedHeader(const uint8_t* header, SavedPuzzle* out);
// Decodes and checks header, counts, order and piece table (the thumbnail is not read): the counts add up
// to rows * cols, the order is a permutation of 0 .. N - 1, groups are 0 or 1 .. N, lit flags 0 or 1,
// positions within 65,536 of the origin. Any byte count is safe.
bool DecodeSavedPuzzle(const uint8_t* bytes, size_t size, SavedPuzzle* out);
// Reads and decodes the file at path (header first, so nothing large is asked for on a bad header).
bool ReadSavedPuzzleFile(const char* path, SavedPuzzle* out);
// hintsUsed < trunc(0.2 * rows * cols): hints are allowed for a fifth of the pieces.
bool SavedHintsLeft(const SavedPuzzle& saved);

// Reads the saved puzzle's photograph into a new packed DIB; *usedPath gets the path it came from.
// Null when no picture can be read.
uint8_t* ReadSavedPicture(const SavedPuzzle& saved, char usedPath[kSavedPathBytes]);

// Rebuilds the saved puzzle in a new state `loaded` (its table size and surfaces given by the caller): the
// cut, then the stored runs and records; false unless the model's invariants hold and an unfinished
// puzzle is not already complete. On failure loaded holds nothing.
bool BuildSavedPuzzle(const SavedPuzzle& saved, const uint8_t* picture, const uint8_t* pattern,
                      PuzzleState* loaded);

// Reads path, its photograph and the cut pattern (from the game's pack), and rebuilds the puzzle aside
// with the hooks that would touch the game in play silenced; only when all of that succeeded does it
// replace the puzzle in target (arrays and counters; target keeps its views' surfaces and table size)
// and become the current picture. Then the clock is stopped (clockPending = not finished), paused and
// puzzle_dirty are cleared. A failure leaves target and the current picture as they were. *saved gets the
// file's contents for the window steps that follow.
bool LoadSavedPuzzle(const char* path, PuzzleState* target, SavedPuzzle* saved);
// The table steps after a load: every view repainted, the clock showing the elapsed time, the preview
// refitted to the loaded photograph.
void ShowLoadedPuzzle(PuzzleState* p);

// Reads only the thumbnail of a saved puzzle, for the browser: a block from SysAllocBlock (free it with
// SysFreeBlock) holding a 40-byte bitmap header (16 bits, 5-5-5), 1,024 unused bytes, then the pixels
// from byte 1,064, bottom row first. Null when the file cannot be read or its header is not plausible.
uint8_t* ReadPuzzlePreview(const char* path);
