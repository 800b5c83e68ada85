// Saved-puzzle file tests: byte layout, thumbnail, failed writes, loading, hostile files, the round trip.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/platform.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "gfx/pack_writer.h"
#include "puzzle/cut.h"
#include "puzzle/join.h"
#include "puzzle/model.h"
#include "puzzle/picture.h"
#include "puzzle_test_support.h"
#include "setup/saved_puzzle.h"
#include "test_support.h"

namespace {

constexpr uint32_t kPatternId = 5000;

uint32_t U32At(const std::vector<uint8_t>& b, size_t at) {
    return uint32_t(b[at]) | uint32_t(b[at + 1]) << 8 | uint32_t(b[at + 2]) << 16 | uint32_t(b[at + 3]) << 24;
}
int32_t I32At(const std::vector<uint8_t>& b, size_t at) { return int32_t(U32At(b, at)); }
void SetU32(std::vector<uint8_t>& b, size_t at, uint32_t v) {
    for (int k = 0; k < 4; ++k) b[at + k] = uint8_t(v >> (8 * k));
}

// Everything of the puzzle in play that a file keeps, and what a failed load must not touch.
struct GameSnapshot {
    int32_t rows = 0, cols = 0;
    double scale = 0;
    uint32_t patternRows = 0, patternColumns = 0, patternId = 0;
    uint32_t counts[kViewCount] = {};
    std::vector<uint32_t> order;
    std::vector<PieceRecord> pieces;
    uint32_t hintsUsed = 0, elapsed = 0;
    uint8_t finished = 0, clockPending = 0, puzzleDirty = 0, paused = 0;
    int32_t cellWidth = 0, cellHeight = 0, boxWidth = 0, boxHeight = 0;
    const uint32_t* sheet = nullptr;
    const uint8_t* picture = nullptr;
    std::string picturePath;
};

GameSnapshot Snapshot(const PuzzleState* p) {
    GameSnapshot s;
    s.rows = p->rows;
    s.cols = p->cols;
    s.scale = p->scale;
    s.patternRows = p->patternRows;
    s.patternColumns = p->patternColumns;
    s.patternId = p->patternId;
    for (int v = 0; v < kViewCount; ++v) s.counts[v] = p->views[v].count;
    const uint32_t n = HasPuzzle(p) ? PieceCount(p) : 0;
    if (n) {
        s.order.assign(p->order, p->order + n);
        s.pieces.assign(p->pieces, p->pieces + n);
    }
    s.hintsUsed = p->hintsUsed;
    s.elapsed = p->elapsed;
    s.finished = p->finished;
    s.clockPending = p->clockPending;
    s.puzzleDirty = p->puzzle_dirty;
    s.paused = p->paused;
    s.cellWidth = p->cellWidth;
    s.cellHeight = p->cellHeight;
    s.boxWidth = p->boxWidth;
    s.boxHeight = p->boxHeight;
    s.sheet = p->sheet;
    s.picture = CurrentPicture();
    s.picturePath = CurrentPicturePath();
    return s;
}

bool SameRecords(const std::vector<PieceRecord>& a, const std::vector<PieceRecord>& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i].group != b[i].group || a[i].lit != b[i].lit || a[i].x != b[i].x || a[i].y != b[i].y) return false;
    return true;
}

// The fields a file keeps are equal.
::testing::AssertionResult SameSavedFields(const GameSnapshot& a, const GameSnapshot& b) {
    if (a.rows != b.rows || a.cols != b.cols) return ::testing::AssertionFailure() << "grid differs";
    if (a.scale != b.scale) return ::testing::AssertionFailure() << "scale " << a.scale << " vs " << b.scale;
    if (a.patternRows != b.patternRows || a.patternColumns != b.patternColumns || a.patternId != b.patternId)
        return ::testing::AssertionFailure() << "pattern differs";
    for (int v = 0; v < kViewCount; ++v)
        if (a.counts[v] != b.counts[v]) return ::testing::AssertionFailure() << "count of view " << v << " differs";
    if (a.order != b.order) return ::testing::AssertionFailure() << "order differs";
    if (!SameRecords(a.pieces, b.pieces)) return ::testing::AssertionFailure() << "piece records differ";
    if (a.hintsUsed != b.hintsUsed || a.elapsed != b.elapsed || a.finished != b.finished)
        return ::testing::AssertionFailure() << "counters differ";
    if (a.picturePath != b.picturePath)
        return ::testing::AssertionFailure() << "picture path " << a.picturePath << " vs " << b.picturePath;
    return ::testing::AssertionSuccess();
}

// Nothing of the game in play changed, down to the arrays' addresses.
::testing::AssertionResult Untouched(const GameSnapshot& before, const PuzzleState* p) {
    GameSnapshot now = Snapshot(p);
    ::testing::AssertionResult same = SameSavedFields(before, now);
    if (!same) return same;
    if (now.sheet != before.sheet || now.picture != before.picture)
        return ::testing::AssertionFailure() << "sheet or picture replaced";
    if (now.clockPending != before.clockPending || now.puzzleDirty != before.puzzleDirty ||
        now.paused != before.paused)
        return ::testing::AssertionFailure() << "flags changed";
    if (now.cellWidth != before.cellWidth || now.boxWidth != before.boxWidth || now.boxHeight != before.boxHeight)
        return ::testing::AssertionFailure() << "sizes changed";
    if (!PuzzleInvariantsHold(p)) return ::testing::AssertionFailure() << "invariants broken";
    return ::testing::AssertionSuccess();
}

int g_prepareCalls = 0;
int32_t g_lastPrepareWidth = 0, g_lastPrepareHeight = 0;

class SavedPuzzle : public ::testing::Test {
  protected:
    ScratchFolder folder;
    char savedAppFolder[kPathCapacity] = {};
    std::string photoPath, packPath;
    SavedBoxNames names = {};

    void SetUp() override {
        std::memcpy(savedAppFolder, g_appFolder, sizeof savedAppFolder);
        std::snprintf(g_appFolder, sizeof g_appFolder, "%s/", folder.path.string().c_str());
        packPath = folder.File("Tavirel.rf");
        std::vector<uint8_t> pattern = MakeTestPattern(2, 2);
        PackWriter writer;
        ASSERT_TRUE(BeginPack(&writer, packPath.c_str()));
        ASSERT_TRUE(AddPackDib(&writer, kPatternId, pattern.data()));
        ASSERT_TRUE(FinishPack(&writer));
        ASSERT_TRUE(OpenPack(&g_pack, packPath.c_str()));
        InstallRecordingHooks();
        g_prepareCalls = 0;
        g_puzzleHooks.prepareDragSurfaces = [](int32_t w, int32_t h) {
            ++g_prepareCalls;
            g_lastPrepareWidth = w;
            g_lastPrepareHeight = h;
            return true;
        };
        for (int k = 0; k < kTrayCount; ++k) SetSavedBoxName(&names, k, ("Box " + std::to_string(k)).c_str());
    }

    void TearDown() override {
        SysSetFaultPlan(nullptr);
        ReleaseTestPuzzle(&g_puzzle);
        for (int v = 0; v < kViewCount; ++v) g_puzzle.surfaces[v] = ViewSurface{};
        g_puzzle = PuzzleState{};
        ClosePack(&g_pack);
        ClearCurrentPicture();
        g_puzzleHooks = PuzzleHooks{};
        std::memcpy(g_appFolder, savedAppFolder, sizeof savedAppFolder);
    }

    // A photograph file made current, and a game cut from it; the views get sizes but no pictures.
    void StartGame(int32_t photoWidth, int32_t photoHeight, int32_t rows, int32_t cols, double scale = 1.0,
                   const char* name = "photo.bmp", int bits = 24) {
        photoPath = folder.File(name);
        std::vector<uint8_t> photo = MakeTestPhoto(photoWidth, photoHeight, bits);
        ASSERT_TRUE(WriteDibAsBmp(photoPath.c_str(), photo.data()));
        ASSERT_TRUE(LoadCurrentPicture(photoPath.c_str()));
        std::vector<uint8_t> pattern = MakeTestPattern(2, 2);
        g_puzzle.rows = rows;
        g_puzzle.cols = cols;
        g_puzzle.scale = scale;
        g_puzzle.tableWidth = 947;
        g_puzzle.tableHeight = 640;
        for (int v = 0; v < kViewCount; ++v) {
            g_puzzle.surfaces[v].width = v == kTableView ? 947 : 288;
            g_puzzle.surfaces[v].height = v == kTableView ? 640 : 200;
        }
        ASSERT_TRUE(CutPuzzle(&g_puzzle, CurrentPicture(), pattern.data(), 2, 2, kPatternId, true));
    }

    bool Save(const std::string& path, bool withThumbnail = true) {
        return SavePuzzleToFile(path.c_str(), &g_puzzle, CurrentPicturePath(), names, CurrentPicture(),
                                withThumbnail);
    }

    bool Load(const std::string& path, ::SavedPuzzle* saved) {
        if (!LoadSavedPuzzle(path.c_str(), &g_puzzle, saved)) return false;
        ShowLoadedPuzzle(&g_puzzle);
        return true;
    }

    // Some play: pieces into trays 0 and 3, one join on the table, a piece selected, time and a hint.
    void PlayALittle() {
        PuzzleState* p = &g_puzzle;
        uint32_t n = PieceCount(p);
        DropPiece(p, 0, kTableView, p->views[kTableView].entries[0], 10, 20);
        DropPiece(p, 3, kTableView, p->views[kTableView].entries[0], 30, 40);
        int view;
        uint32_t at;
        ASSERT_TRUE(FindPieceInViews(p, n - 1, &view, &at));
        if (view == kTableView && p->pieces[n - 2].group == 0 && p->pieces[n - 1].group == 0) {
            int otherView;
            ASSERT_TRUE(FindPieceInViews(p, n - 2, &otherView, nullptr));
            if (otherView == kTableView)
                DropPiece(p, kTableView, kTableView, n - 2, p->pieces[n - 1].x - p->cellWidth + 2,
                          p->pieces[n - 1].y - 1);
        }
        p->pieces[p->views[kTableView].entries[0]].lit = 0;
        p->elapsed = 3725;
        p->hintsUsed = 1;
        ASSERT_TRUE(PuzzleInvariantsHold(p));
    }

    void ExpectLoadFailsUntouched(const std::string& path) {
        GameSnapshot before = Snapshot(&g_puzzle);
        size_t blocks = SysLiveBlocks();
        g_hookLog.events.clear();
        ::SavedPuzzle saved;
        EXPECT_FALSE(LoadSavedPuzzle(path.c_str(), &g_puzzle, &saved));
        EXPECT_TRUE(Untouched(before, &g_puzzle));
        EXPECT_EQ(SysLiveBlocks(), blocks) << "a block was left behind";
        EXPECT_EQ(g_hookLog.count("emptied"), 0);
        EXPECT_EQ(g_hookLog.count("filled"), 0);
        EXPECT_EQ(g_hookLog.count("stop clock"), 0);
        EXPECT_EQ(g_hookLog.count("repaint"), 0);
        EXPECT_EQ(g_hookLog.count("clock"), 0);
    }
};

// ---- The file's first bytes ----

TEST_F(SavedPuzzle, MagicWhoseSeventhByteIsNotNulIsRefused) {
    StartGame(160, 120, 2, 3);
    const std::string path = folder.File("game.epf");
    ASSERT_TRUE(Save(path));
    std::vector<uint8_t> bytes = ReadBytes(path);
    ASSERT_EQ(std::string(reinterpret_cast<char*>(bytes.data()), 7), std::string("QMPF10\0", 7));
    ::SavedPuzzle decoded;
    EXPECT_TRUE(DecodeSavedPuzzle(bytes.data(), bytes.size(), &decoded));
    bytes[6] = 'X';
    ASSERT_TRUE(WriteBytes(path, bytes));
    EXPECT_FALSE(DecodeSavedPuzzle(bytes.data(), bytes.size(), &decoded));
    EXPECT_EQ(ReadPuzzlePreview(path.c_str()), nullptr);
    ExpectLoadFailsUntouched(path);
}

TEST_F(SavedPuzzle, PathOf260CharactersFailsAndLeavesThePreviousFileAsItWas) {
    StartGame(160, 120, 2, 3);
    const std::string path = folder.File("game.epf");
    const std::vector<uint8_t> previous = {'o', 'l', 'd', ' ', 'g', 'a', 'm', 'e'};
    ASSERT_TRUE(WriteBytes(path, previous));
    const std::string longPath = "C:\\" + std::string(257, 'a');
    ASSERT_EQ(longPath.size(), 260u);
    EXPECT_FALSE(SavePuzzleToFile(path.c_str(), &g_puzzle, longPath.c_str(), names, CurrentPicture(), true));
    EXPECT_EQ(ReadBytes(path), previous);
    EXPECT_FALSE(SysPathExists((path + ".tmp").c_str()));
    // One character less fits the field with its NUL.
    const std::string fits = longPath.substr(0, 259);
    ASSERT_TRUE(SavePuzzleToFile(path.c_str(), &g_puzzle, fits.c_str(), names, CurrentPicture(), true));
    std::vector<uint8_t> bytes = ReadBytes(path);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.data() + 40)), fits);
    EXPECT_EQ(bytes[40 + 259], 0);
}

TEST_F(SavedPuzzle, BoxNameOfMoreThan23CharactersIsSavedCutTo23) {
    StartGame(160, 120, 2, 3);
    SetSavedBoxName(&names, 2, "A rather long box name of thirty-odd characters");
    const std::string path = folder.File("game.epf");
    ASSERT_TRUE(Save(path));
    std::vector<uint8_t> bytes = ReadBytes(path);
    const char* field = reinterpret_cast<const char*>(bytes.data() + 300 + 2 * 24);
    EXPECT_EQ(std::string(field, 23), "A rather long box name ");
    EXPECT_EQ(field[23], 0);
    ::SavedPuzzle saved;
    ASSERT_TRUE(Load(path, &saved));
    EXPECT_STREQ(saved.boxes.names[2], "A rather long box name ");
    EXPECT_STREQ(saved.boxes.names[5], "Box 5");
}

// ---- The thumbnail ----

TEST_F(SavedPuzzle, SquarePictureTakesTheWidthBranchAndGives104By104) {
    int32_t pw = 0, ph = 0;
    ASSERT_TRUE(ThumbnailSize(300, 300, &pw, &ph));
    EXPECT_EQ(pw, 104);
    EXPECT_EQ(ph, 104);
    StartGame(150, 150, 2, 2);
    const std::string path = folder.File("square.epf");
    ASSERT_TRUE(Save(path));
    std::vector<uint8_t> bytes = ReadBytes(path);
    EXPECT_EQ(I32At(bytes, 480), 104);
    EXPECT_EQ(I32At(bytes, 484), 104);
    EXPECT_EQ(bytes.size(), 516u + 20u * 4 + 208u * 104);
}

TEST_F(SavedPuzzle, PictureWhoseHeightRatioIsExactly123TakesTheWidthBranch) {
    // 104 * 246 / 208 is 123 exactly: not above 123, so s = 104 / 208 = 0.5.
    ASSERT_EQ(104.0 * 246 / 208, 123.0);
    int32_t pw = 0, ph = 0;
    ASSERT_TRUE(ThumbnailSize(208, 246, &pw, &ph));
    EXPECT_EQ(pw, 104);
    EXPECT_EQ(ph, 123);
    // One row more is above 123 and takes the height branch: s = 123 / 247.
    ASSERT_TRUE(ThumbnailSize(208, 247, &pw, &ph));
    EXPECT_EQ(pw, int32_t(208 * (123.0 / 247)));
    EXPECT_EQ(ph, 123);
    // The pixels are sampled at s = 0.5: thumbnail (x, y) takes source (2x, 2y), rows as stored.
    std::vector<uint8_t> photo = MakeTestPhoto(208, 246, 24);
    std::vector<uint8_t> thumb;
    ASSERT_TRUE(MakeThumbnail(photo.data(), &thumb, &pw, &ph));
    const uint8_t* source = DibPixels(photo.data());
    const int64_t stride = DibStride(24, 208);
    for (int32_t y : {0, 1, 61, 122})
        for (int32_t x : {0, 1, 50, 103}) {
            const uint8_t* px = source + int64_t(2 * y) * stride + 3 * 2 * x;
            const uint32_t expected = (px[2] >> 3) << 10 | (px[1] >> 3) << 5 | (px[0] >> 3);
            EXPECT_EQ(thumb[size_t(y) * 208 + 2 * x] | thumb[size_t(y) * 208 + 2 * x + 1] << 8, expected);
        }
}

// ---- The byte layout ----

// Checks every field of a saved file against the game it came from, and its thumbnail pixel by pixel.
void ExpectLayout(const std::vector<uint8_t>& b, const PuzzleState* p, const std::vector<uint8_t>& photo,
                  const std::string& imagePath, const SavedBoxNames& names, int32_t pw, int32_t ph) {
    const uint32_t n = PieceCount(p);
    const int64_t stride = ((int64_t(pw) * 2 + 3) / 4) * 4;
    ASSERT_EQ(b.size(), size_t(516 + 20 * n + stride * ph));
    EXPECT_EQ(std::memcmp(b.data(), "QMPF10\0", 7), 0);
    for (int k = 7; k < 26; ++k) EXPECT_EQ(b[k], 0) << "magic byte " << k;
    EXPECT_EQ(b[26], 0);
    EXPECT_EQ(b[27], 0);
    EXPECT_EQ(U32At(b, 28), p->patternRows);
    EXPECT_EQ(U32At(b, 32), p->patternColumns);
    EXPECT_EQ(U32At(b, 36), p->patternId);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(b.data() + 40)), imagePath);
    for (size_t k = 40 + imagePath.size(); k < 300; ++k) ASSERT_EQ(b[k], 0) << "path byte " << k;
    for (int box = 0; box < 6; ++box) {
        const char* field = reinterpret_cast<const char*>(b.data() + 300 + 24 * box);
        EXPECT_STREQ(field, names.names[box]);
        for (size_t k = std::strlen(field); k < 24; ++k) EXPECT_EQ(field[k], 0);
    }
    EXPECT_EQ(I32At(b, 444), p->rows);
    EXPECT_EQ(I32At(b, 448), p->cols);
    EXPECT_EQ(U32At(b, 452), 0u);
    double scale;
    std::memcpy(&scale, b.data() + 456, 8);
    EXPECT_EQ(scale, p->scale);
    EXPECT_EQ(U32At(b, 464), p->hintsUsed);
    EXPECT_EQ(U32At(b, 468), p->elapsed);
    EXPECT_EQ(b[472], p->finished);
    EXPECT_EQ(b[473], 1);
    EXPECT_EQ(b[474], 0);
    EXPECT_EQ(b[475], 0);
    EXPECT_EQ(U32At(b, 476), 20 * n + 28);
    EXPECT_EQ(I32At(b, 480), pw);
    EXPECT_EQ(I32At(b, 484), ph);
    for (int v = 0; v < 7; ++v) EXPECT_EQ(U32At(b, 488 + 4 * v), p->views[v].count) << "view " << v;
    for (uint32_t k = 0; k < n; ++k) ASSERT_EQ(U32At(b, 516 + 4 * k), p->order[k]) << "order " << k;
    const size_t records = 516 + 4 * size_t(n);
    for (uint32_t i = 0; i < n; ++i) {
        const size_t r = records + 16 * i;
        ASSERT_EQ(U32At(b, r), p->pieces[i].group) << "piece " << i;
        ASSERT_EQ(b[r + 4], p->pieces[i].lit);
        ASSERT_EQ(b[r + 5] | b[r + 6] | b[r + 7], 0);
        ASSERT_EQ(I32At(b, r + 8), p->pieces[i].x);
        ASSERT_EQ(I32At(b, r + 12), p->pieces[i].y);
    }
    // Thumbnail: bottom row first, each pixel the source pixel at (trunc(x / s), trunc(y / s)) in 5-5-5.
    const DibHeader* h = DibHeaderOf(photo.data());
    const double s = 104.0 * h->biHeight / h->biWidth > 123.0 ? 123.0 / h->biHeight : 104.0 / h->biWidth;
    const int64_t sourceStride = DibStride(24, h->biWidth);
    const size_t thumbnail = records + 16 * size_t(n);
    for (int32_t y = 0; y < ph; ++y) {
        for (int32_t x = 0; x < pw; ++x) {
            const uint8_t* px = DibPixels(photo.data()) + int64_t(y / s) * sourceStride + 3 * int64_t(x / s);
            const uint32_t expected = (px[2] >> 3) << 10 | (px[1] >> 3) << 5 | (px[0] >> 3);
            const size_t at = thumbnail + size_t(y) * stride + 2 * x;
            ASSERT_EQ(uint32_t(b[at] | b[at + 1] << 8), expected) << "thumbnail (" << x << ", " << y << ")";
        }
        for (int64_t k = 2 * pw; k < stride; ++k) ASSERT_EQ(b[thumbnail + size_t(y) * stride + k], 0);
    }
}

TEST_F(SavedPuzzle, LandscapeGameIsWrittenFieldByFieldAtItsOffsets) {
    StartGame(640, 480, 3, 4, 0.5);
    PlayALittle();
    SetSavedBoxName(&names, 4, "Edges");
    const std::string path = folder.File("landscape.epf");
    ASSERT_TRUE(Save(path));
    ExpectLayout(ReadBytes(path), &g_puzzle, MakeTestPhoto(640, 480, 24), photoPath, names, 104, 78);
}

TEST_F(SavedPuzzle, PortraitGameIsWrittenFieldByFieldAtItsOffsets) {
    StartGame(480, 640, 4, 3, 0.5);
    PlayALittle();
    const std::string path = folder.File("portrait.epf");
    ASSERT_TRUE(Save(path));
    ExpectLayout(ReadBytes(path), &g_puzzle, MakeTestPhoto(480, 640, 24), photoPath, names, 92, 123);
}

TEST_F(SavedPuzzle, SaveWithoutThumbnailEndsAfterThePieceTable) {
    StartGame(160, 120, 2, 3);
    const std::string path = folder.File("plain.epf");
    ASSERT_TRUE(Save(path, false));
    std::vector<uint8_t> bytes = ReadBytes(path);
    EXPECT_EQ(bytes.size(), 516u + 20 * 6);
    EXPECT_EQ(bytes[473], 0);
    EXPECT_EQ(ReadPuzzlePreview(path.c_str()), nullptr);
}

// ---- Loading ----

TEST_F(SavedPuzzle, LoadReplacesTheGameInPlayAndTellsTheClock) {
    StartGame(320, 240, 3, 4);
    PlayALittle();
    const std::string path = folder.File("game.epf");
    ASSERT_TRUE(Save(path));
    GameSnapshot saved = Snapshot(&g_puzzle);
    const std::string savedPhoto = photoPath;
    StartGame(200, 150, 2, 2, 1.0, "other.bmp");
    g_puzzle.puzzle_dirty = 1;
    g_puzzle.paused = 1;
    g_hookLog.events.clear();
    ::SavedPuzzle file;
    ASSERT_TRUE(Load(path, &file));
    EXPECT_TRUE(SameSavedFields(saved, Snapshot(&g_puzzle)));
    EXPECT_TRUE(PuzzleInvariantsHold(&g_puzzle));
    EXPECT_EQ(g_puzzle.clockPending, 1);
    EXPECT_EQ(g_puzzle.paused, 0);
    EXPECT_EQ(g_puzzle.puzzle_dirty, 0);
    EXPECT_EQ(g_puzzle.timerId, 0u);
    EXPECT_TRUE(g_hookLog.has("stop clock"));
    EXPECT_TRUE(g_hookLog.has("clock 01:02:05"));
    EXPECT_TRUE(g_hookLog.has("refit preview"));
    EXPECT_FALSE(g_hookLog.has("start clock"));
    // The old game's trays are not told they emptied; the caller tells every box its new state.
    EXPECT_EQ(g_hookLog.count("emptied"), 0);
    EXPECT_EQ(file.counts[0], g_puzzle.views[0].count);
    EXPECT_STREQ(CurrentPicturePath(), savedPhoto.c_str());
    // 1 hint used of trunc(0.2 * 12) = 2.
    EXPECT_TRUE(SavedHintsLeft(file));
    file.hintsUsed = 2;
    EXPECT_FALSE(SavedHintsLeft(file));
}

TEST_F(SavedPuzzle, LoadingAFinishedPuzzleLeavesTheClockStopped) {
    StartGame(200, 150, 2, 3);
    ShowComplete(&g_puzzle);
    ASSERT_EQ(g_puzzle.finished, 1);
    g_puzzle.elapsed = 61;
    const std::string path = folder.File("done.epf");
    ASSERT_TRUE(Save(path));
    StartGame(200, 150, 2, 2, 1.0, "other.bmp");
    g_puzzle.clockPending = 1;
    g_hookLog.events.clear();
    ::SavedPuzzle file;
    ASSERT_TRUE(Load(path, &file));
    EXPECT_EQ(g_puzzle.finished, 1);
    EXPECT_EQ(g_puzzle.clockPending, 0);
    EXPECT_EQ(g_puzzle.timerId, 0u);
    EXPECT_TRUE(g_hookLog.has("stop clock"));
    EXPECT_FALSE(g_hookLog.has("start clock"));
    EXPECT_TRUE(g_hookLog.has("clock 00:01:01"));
}

TEST_F(SavedPuzzle, FinishedPuzzleIsNotInProgressEvenAfterMoves) {
    StartGame(200, 150, 2, 3);
    ShowComplete(&g_puzzle);
    const std::string path = folder.File("done.epf");
    ASSERT_TRUE(Save(path));
    ::SavedPuzzle file;
    ASSERT_TRUE(Load(path, &file));
    const uint32_t top = g_puzzle.views[kTableView].entries[0];
    DropPiece(&g_puzzle, kTableView, kTableView, top, g_puzzle.pieces[top].x + 40, g_puzzle.pieces[top].y + 30);
    EXPECT_EQ(g_puzzle.puzzle_dirty, 1);
    EXPECT_FALSE(IsPuzzleChangedSinceSave(&g_puzzle));
    EXPECT_EQ(g_puzzle.clockPending, 0);
    EXPECT_FALSE(g_hookLog.has("start clock"));
    // The same moves in an unfinished loaded game make it a game in progress.
    StartGame(200, 150, 2, 3);
    ASSERT_TRUE(Save(path));
    ASSERT_TRUE(Load(path, &file));
    const uint32_t piece = g_puzzle.views[kTableView].entries[0];
    DropPiece(&g_puzzle, kTableView, kTableView, piece, 400, 300);
    EXPECT_TRUE(IsPuzzleChangedSinceSave(&g_puzzle));
}

TEST_F(SavedPuzzle, MissingPhotographIsFoundInTheImageFolderBesideTheProgram) {
    std::filesystem::create_directory(folder.path / "Image");
    StartGame(200, 150, 2, 3, 1.0, "Image\\moved.bmp");
    const std::string path = folder.File("game.epf");
    const std::string oldPath = "Z:\\nowhere\\Image\\moved.bmp";
    ASSERT_TRUE(SavePuzzleToFile(path.c_str(), &g_puzzle, oldPath.c_str(), names, CurrentPicture(), true));
    GameSnapshot saved = Snapshot(&g_puzzle);
    StartGame(200, 150, 2, 2, 1.0, "other.bmp");
    ::SavedPuzzle file;
    ASSERT_TRUE(Load(path, &file));
    EXPECT_EQ(std::string(CurrentPicturePath()), std::string(g_appFolder) + "Image\\moved.bmp");
    saved.picturePath = CurrentPicturePath();
    EXPECT_TRUE(SameSavedFields(saved, Snapshot(&g_puzzle)));
}

// ---- Hostile files: each fails cleanly, the game in play untouched ----

class SavedPuzzleHostile : public SavedPuzzle {
  protected:
    std::string path;
    std::vector<uint8_t> good;
    uint32_t n = 0;
    void SetUp() override {
        SavedPuzzle::SetUp();
        // The file holds a 3 x 4 game; the game in play is a 2 x 3 one from another photograph.
        StartGame(320, 240, 3, 4, 1.0, "saved.bmp");
        PlayALittle();
        path = folder.File("hostile.epf");
        ASSERT_TRUE(Save(path));
        good = ReadBytes(path);
        n = 12;
        StartGame(200, 150, 2, 3, 1.0, "play.bmp");
        PlayALittle();
        g_puzzle.puzzle_dirty = 1;
    }
    void Write(const std::vector<uint8_t>& bytes) { ASSERT_TRUE(WriteBytes(path, bytes)); }
    size_t Record(uint32_t i) const { return 516 + 4 * size_t(n) + 16 * size_t(i); }
};

TEST_F(SavedPuzzleHostile, TheUnchangedFileLoads) {
    ::SavedPuzzle file;
    EXPECT_TRUE(LoadSavedPuzzle(path.c_str(), &g_puzzle, &file));
}

TEST_F(SavedPuzzleHostile, TruncatedFileFails) {
    for (size_t size : {size_t(0), size_t(100), size_t(487), size_t(488), size_t(515), size_t(516 + 20 * n - 1)}) {
        Write(std::vector<uint8_t>(good.begin(), good.begin() + long(size)));
        ExpectLoadFailsUntouched(path);
    }
    // The thumbnail is not needed for a load.
    Write(std::vector<uint8_t>(good.begin(), good.begin() + long(516 + 20 * n)));
    ::SavedPuzzle file;
    EXPECT_TRUE(LoadSavedPuzzle(path.c_str(), &g_puzzle, &file));
}

TEST_F(SavedPuzzleHostile, GridOf65536By65536Fails) {
    std::vector<uint8_t> bytes = good;
    SetU32(bytes, 444, 65536);
    SetU32(bytes, 448, 65536);
    Write(bytes);
    ExpectLoadFailsUntouched(path);
    SetU32(bytes, 444, 1);
    SetU32(bytes, 448, 12);
    Write(bytes);
    ExpectLoadFailsUntouched(path);
}

TEST_F(SavedPuzzleHostile, CountsThatDoNotAddUpFail) {
    std::vector<uint8_t> bytes = good;
    SetU32(bytes, 488, U32At(bytes, 488) + 1);
    Write(bytes);
    ExpectLoadFailsUntouched(path);
    // Wrapping around 32 bits does not make them add up either.
    bytes = good;
    SetU32(bytes, 488, U32At(bytes, 488) + 0x80000000u);
    SetU32(bytes, 492, U32At(bytes, 492) + 0x80000000u);
    Write(bytes);
    ExpectLoadFailsUntouched(path);
}

TEST_F(SavedPuzzleHostile, DuplicatedIndexInTheOrderFails) {
    std::vector<uint8_t> bytes = good;
    SetU32(bytes, 516 + 4, U32At(bytes, 516));
    Write(bytes);
    ExpectLoadFailsUntouched(path);
    bytes = good;
    SetU32(bytes, 516, n);
    Write(bytes);
    ExpectLoadFailsUntouched(path);
}

TEST_F(SavedPuzzleHostile, ThumbnailOf2To30PixelsIsRefusedWithoutAllocating) {
    std::vector<uint8_t> bytes = good;
    SetU32(bytes, 480, 32768);
    SetU32(bytes, 484, 32768);
    Write(bytes);
    const size_t blocks = SysLiveBlocks();
    EXPECT_EQ(ReadPuzzlePreview(path.c_str()), nullptr);
    EXPECT_EQ(SysLiveBlocks(), blocks);
    // The load does not read the thumbnail at all.
    ::SavedPuzzle file;
    EXPECT_TRUE(LoadSavedPuzzle(path.c_str(), &g_puzzle, &file));
}

TEST_F(SavedPuzzleHostile, MissingPhotographFails) {
    std::remove(folder.File("saved.bmp").c_str());
    ExpectLoadFailsUntouched(path);
}

TEST_F(SavedPuzzleHostile, GroupIdOutOfRangeFails) {
    std::vector<uint8_t> bytes = good;
    SetU32(bytes, Record(5), n + 1);
    Write(bytes);
    ExpectLoadFailsUntouched(path);
}

TEST_F(SavedPuzzleHostile, GroupWhoseMembersAreNotAtExactOffsetsFailsAndTheDragSurfacesComeBack) {
    // Pieces 0 and 1 both on the table, called one group, one pixel off their true offset.
    ::SavedPuzzle file;
    ASSERT_TRUE(DecodeSavedPuzzle(good.data(), good.size(), &file));
    std::vector<uint8_t> bytes = good;
    for (int v = 0; v < 7; ++v) SetU32(bytes, 488 + 4 * v, v == kTableView ? n : 0);
    for (uint32_t k = 0; k < n; ++k) SetU32(bytes, 516 + 4 * k, k);
    for (uint32_t i = 0; i < n; ++i) {
        SetU32(bytes, Record(i), 0);
        SetU32(bytes, Record(i) + 8, 10 * i);
        SetU32(bytes, Record(i) + 12, 5);
    }
    Write(bytes);
    ASSERT_TRUE(LoadSavedPuzzle(path.c_str(), &g_puzzle, &file)) << "the plain layout itself loads";
    StartGame(200, 150, 2, 3, 1.0, "play.bmp");
    const int32_t w = 320 / 4;  // the saved game's cell width
    SetU32(bytes, Record(0), 2);
    SetU32(bytes, Record(1), 2);
    SetU32(bytes, Record(0) + 8, 100);
    SetU32(bytes, Record(1) + 8, uint32_t(100 + w + 1));
    Write(bytes);
    g_prepareCalls = 0;
    ExpectLoadFailsUntouched(path);
    // The cut made drag surfaces for the saved game's box; the game in play got its own back.
    const DragSurfaceSizes sizes = DragSurfaceSizesFor(g_puzzle.boxWidth, g_puzzle.boxHeight);
    EXPECT_EQ(g_prepareCalls, 2);
    EXPECT_EQ(g_lastPrepareWidth, sizes.backgroundWidth);
    EXPECT_EQ(g_lastPrepareHeight, sizes.backgroundHeight);
    // At the exact offset the same group loads.
    SetU32(bytes, Record(1) + 8, uint32_t(100 + w));
    Write(bytes);
    EXPECT_TRUE(LoadSavedPuzzle(path.c_str(), &g_puzzle, &file));
}

TEST_F(SavedPuzzleHostile, UnfinishedFileHoldingACompletePuzzleFails) {
    StartGame(320, 240, 3, 4, 1.0, "saved.bmp");
    ShowComplete(&g_puzzle);
    ASSERT_TRUE(Save(path));
    std::vector<uint8_t> bytes = ReadBytes(path);
    bytes[472] = 0;
    Write(bytes);
    StartGame(200, 150, 2, 3, 1.0, "play.bmp");
    ExpectLoadFailsUntouched(path);
}

TEST_F(SavedPuzzleHostile, FlagsAndPositionsOutOfRangeFail) {
    std::vector<uint8_t> bytes = good;
    bytes[Record(3) + 4] = 2;  // lit
    Write(bytes);
    ExpectLoadFailsUntouched(path);
    bytes = good;
    bytes[472] = 2;  // finished
    Write(bytes);
    ExpectLoadFailsUntouched(path);
    bytes = good;
    SetU32(bytes, Record(3) + 12, uint32_t(-70000));
    Write(bytes);
    ExpectLoadFailsUntouched(path);
    bytes = good;
    const double nan = std::nan("");
    std::memcpy(bytes.data() + 456, &nan, 8);
    Write(bytes);
    ExpectLoadFailsUntouched(path);
    bytes = good;
    bytes[40 + 3] = 0;  // a path the photograph is not at
    Write(bytes);
    ExpectLoadFailsUntouched(path);
    bytes = good;
    SetU32(bytes, 36, 5999);  // a cut pattern the pack does not hold
    Write(bytes);
    ExpectLoadFailsUntouched(path);
}

// ---- Writing aside: failures leave the previous file ----

TEST_F(SavedPuzzle, SaveFailingAtAnyWriteLeavesThePreviousFileAndNoTemporaryFile) {
    StartGame(320, 240, 3, 4);
    const std::string path = folder.File("game.epf");
    ASSERT_TRUE(Save(path));
    const std::vector<uint8_t> previous = ReadBytes(path);
    PlayALittle();
    for (bool shortWrite : {false, true})
        for (int32_t k = 1; k <= 5; ++k) {
            SysFaultPlan plan{k, shortWrite, false, false};
            SysSetFaultPlan(&plan);
            EXPECT_FALSE(Save(path)) << "write " << k << (shortWrite ? " short" : "");
            SysSetFaultPlan(nullptr);
            EXPECT_EQ(ReadBytes(path), previous) << "write " << k;
            EXPECT_FALSE(SysPathExists((path + ".tmp").c_str())) << "write " << k;
        }
    SysFaultPlan create{0, false, false, true};
    SysSetFaultPlan(&create);
    EXPECT_FALSE(Save(path));
    SysFaultPlan replace{0, false, true, false};
    SysSetFaultPlan(&replace);
    EXPECT_FALSE(Save(path));
    EXPECT_EQ(ReadBytes(path), previous);
    EXPECT_FALSE(SysPathExists((path + ".tmp").c_str()));
    // A save makes five writes: failing a sixth changes nothing.
    SysFaultPlan sixth{6, false, false, false};
    SysSetFaultPlan(&sixth);
    EXPECT_TRUE(Save(path));
    EXPECT_NE(ReadBytes(path), previous);
    EXPECT_FALSE(SysPathExists((path + ".tmp").c_str()));
}

// ---- The thumbnail reader ----

TEST_F(SavedPuzzle, PreviewHoldsTheThumbnailBehindABitmapHeader) {
    StartGame(640, 480, 3, 4, 0.5);
    const std::string path = folder.File("game.epf");
    ASSERT_TRUE(Save(path));
    std::vector<uint8_t> bytes = ReadBytes(path);
    const size_t blocks = SysLiveBlocks();
    uint8_t* preview = ReadPuzzlePreview(path.c_str());
    ASSERT_NE(preview, nullptr);
    EXPECT_EQ(SysLiveBlocks(), blocks + 1);
    const DibHeader* h = DibHeaderOf(preview);
    EXPECT_EQ(h->biSize, 40u);
    EXPECT_EQ(h->biWidth, 104);
    EXPECT_EQ(h->biHeight, 78);
    EXPECT_EQ(h->biPlanes, 1);
    EXPECT_EQ(h->biBitCount, 16);
    EXPECT_EQ(h->biCompression, 0u);
    EXPECT_EQ(h->biSizeImage, 4u * 104 * 78);
    EXPECT_EQ(h->biXPelsPerMeter | h->biYPelsPerMeter | int32_t(h->biClrUsed | h->biClrImportant), 0);
    for (uint32_t k = 40; k < 1064; ++k) ASSERT_EQ(preview[k], 0) << k;
    const size_t thumbnail = 516 + 20 * 12, stored = 208 * 78;
    EXPECT_EQ(std::memcmp(preview + 1064, bytes.data() + thumbnail, stored), 0);
    // What the file did not hold of the doubled request stays zero.
    for (size_t k = stored; k < 4u * 104 * 78; ++k) ASSERT_EQ(preview[1064 + k], 0) << k;
    SysFreeBlock(preview);
    EXPECT_EQ(SysLiveBlocks(), blocks);
}

TEST_F(SavedPuzzle, PreviewRefusesBadSizesAndAFileEndingBeforeTheThumbnail) {
    StartGame(160, 120, 2, 3);
    const std::string path = folder.File("game.epf");
    ASSERT_TRUE(Save(path));
    const std::vector<uint8_t> good = ReadBytes(path);
    const size_t blocks = SysLiveBlocks();
    struct Change {
        size_t at;
        uint32_t value;
    };
    for (Change c : {Change{476, 20 * 6 + 27}, Change{476, 0}, Change{480, 0}, Change{484, 0}, Change{480, 105},
                     Change{484, 124}, Change{480, uint32_t(-1)}, Change{444, 0x40000000}}) {
        std::vector<uint8_t> bytes = good;
        SetU32(bytes, c.at, c.value);
        ASSERT_TRUE(WriteBytes(path, bytes));
        EXPECT_EQ(ReadPuzzlePreview(path.c_str()), nullptr) << "offset " << c.at << " value " << c.value;
    }
    ASSERT_TRUE(WriteBytes(path, std::vector<uint8_t>(good.begin(), good.begin() + 516 + 20 * 6)));
    EXPECT_EQ(ReadPuzzlePreview(path.c_str()), nullptr);
    EXPECT_EQ(ReadPuzzlePreview(folder.File("absent.epf").c_str()), nullptr);
    EXPECT_EQ(SysLiveBlocks(), blocks);
    // One byte of thumbnail is enough.
    ASSERT_TRUE(WriteBytes(path, std::vector<uint8_t>(good.begin(), good.begin() + 516 + 20 * 6 + 1)));
    uint8_t* preview = ReadPuzzlePreview(path.c_str());
    ASSERT_NE(preview, nullptr);
    EXPECT_EQ(preview[1064], good[516 + 20 * 6]);
    EXPECT_EQ(preview[1065], 0);
    SysFreeBlock(preview);
}

// ---- The round trip ----

// Random play on the game in play: drops between views (half of them beside a true neighbour, so groups
// form by real joins), selections, hints, time, sometimes the solve.
void PlayRandomly(std::mt19937* random, int moves) {
    PuzzleState* p = &g_puzzle;
    const uint32_t n = PieceCount(p);
    auto pick = [&](uint32_t limit) { return uint32_t((*random)() % limit); };
    for (int m = 0; m < moves && !p->finished; ++m) {
        const uint32_t piece = pick(n);
        int view;
        uint32_t at;
        ASSERT_TRUE(FindPieceInViews(p, piece, &view, &at));
        MoveRun(p, view, at, 1, view);
        int dest = pick(3) == 0 ? int(pick(kTrayCount)) : kTableView;
        int32_t x = int32_t(pick(300)) - 20, y = int32_t(pick(200)) - 20;
        const uint32_t neighbour = pick(2) ? piece + 1 : piece + uint32_t(p->cols);
        int neighbourView;
        if (pick(2) && neighbour < n && FindPieceInViews(p, neighbour, &neighbourView, nullptr) &&
            p->pieces[neighbour].group != p->pieces[piece].group) {
            dest = neighbourView;
            const int32_t dc = PieceColumn(p, neighbour) - PieceColumn(p, piece);
            const int32_t dr = PieceRow(p, neighbour) - PieceRow(p, piece);
            x = p->pieces[neighbour].x - dc * p->cellWidth + int32_t(pick(5)) - 2;
            y = p->pieces[neighbour].y - dr * p->cellHeight + int32_t(pick(5)) - 2;
        }
        DropPiece(p, dest, view, piece, x, y);
        ASSERT_TRUE(PuzzleInvariantsHold(p));
    }
    if (p->finished) return;
    if (pick(4) == 0) GiveHint(p);
    for (uint32_t i = 0; i < n; ++i) p->pieces[i].lit = pick(8) == 0 ? 0 : 1;
    if (pick(40) == 0) ShowComplete(p);
    p->elapsed = (*random)() % 400000;
}

TEST_F(SavedPuzzle, RandomGamesComeBackEqualInEverySavedField) {
    std::mt19937 random(20240611);
    const std::string path = folder.File("round.epf");
    int games = 0;
    for (int round = 0; round < 90; ++round) {
        const int32_t rows = 2 + int32_t(random() % 4), cols = 2 + int32_t(random() % 4);
        const int32_t width = 90 + int32_t(random() % 100), height = 90 + int32_t(random() % 100);
        StartGame(width, height, rows, cols, 1.0, round % 2 ? "a.bmp" : "b.bmp", round % 3 ? 24 : 8);
        if (HasFailure()) return;
        for (int step = 0; step < 40; ++step) {
            PlayRandomly(&random, 1 + int(random() % 6));
            if (HasFailure()) return;
            for (int k = 0; k < kTrayCount; ++k) {
                std::string name(random() % 30, 'a' + char(random() % 26));
                SetSavedBoxName(&names, k, name.c_str());
            }
            const GameSnapshot before = Snapshot(&g_puzzle);
            ASSERT_TRUE(Save(path, step % 2 == 0));
            ::SavedPuzzle file;
            ASSERT_TRUE(LoadSavedPuzzle(path.c_str(), &g_puzzle, &file)) << "round " << round << " step " << step;
            ASSERT_TRUE(SameSavedFields(before, Snapshot(&g_puzzle))) << "round " << round << " step " << step;
            for (int k = 0; k < kTrayCount; ++k) ASSERT_STREQ(file.boxes.names[k], names.names[k]);
            ASSERT_EQ(g_puzzle.clockPending, g_puzzle.finished ? 0 : 1);
            ++games;
            if (g_puzzle.finished) break;
        }
    }
    EXPECT_GT(games, 1200);
}

}  // namespace
