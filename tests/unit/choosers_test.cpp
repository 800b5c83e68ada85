// The size and piece-count choosers' arithmetic: fit and smallest zooms, the piece-count range, both
// sliders, both drags, the frame and picture fits, and the operations the new-puzzle screen calls.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "app/app_state.h"
#include "app/platform.h"
#include "gfx/dib.h"
#include "puzzle/model.h"
#include "puzzle/picture.h"
#include "setup/choosers.h"
#include "test_support.h"

namespace {

// A 640 x 480 image on the table of a 1024 x 768 screen (947 x 640).
ChooserState Sized(int32_t w, int32_t h, int32_t a = 947, int32_t b = 640) {
    ChooserState s = {};
    SetUpSizing(&s, w, h, a, b);
    s.image_chosen = true;
    return s;
}

// The program-wide operations, on a current picture of the given size and a 1024 x 768 screen whose
// table has not been laid out yet. Restores every global it touches.
struct ChooserOperations : ::testing::Test {
    ScratchFolder folder;
    PuzzleState savedPuzzle;
    int32_t savedWidth = 0, savedHeight = 0;
    int repaints = 0;
    static ChooserOperations* current;

    void SetUp() override {
        savedPuzzle = g_puzzle;
        savedWidth = g_screenWidth;
        savedHeight = g_screenHeight;
        g_screenWidth = 1024;
        g_screenHeight = 768;
        g_puzzle.tableWidth = 0;
        g_puzzle.tableHeight = 0;
        current = this;
        g_repaintChoosers = [] { ++current->repaints; };
    }
    void TearDown() override {
        ForgetChosenImage();
        ClearCurrentPicture();
        g_repaintChoosers = nullptr;
        g_puzzle = savedPuzzle;
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
    }
    void Choose(int32_t w, int32_t h) {
        std::string path = folder.File("photo.bmp");
        WriteBytes(path, MakeBmp(w, h, 24, 0, [](int32_t x, int32_t y) { return uint32_t(x * 7 + y); }));
        ASSERT_TRUE(LoadCurrentPicture(path.c_str()));
        PrepareImageForSizing();
        ASSERT_TRUE(g_choosers.image_chosen);
    }
};
ChooserOperations* ChooserOperations::current = nullptr;

}  // namespace

// ---- Zooms ----

TEST(ChooserZoom, FourByThreeImageOn1024By768ScreenFitsByHeight) {
    // 480 * 947 / 640 = 710.25 is more than 640: the height decides.
    EXPECT_EQ(FitZoom(640, 480, 947, 640), 640.0 / 480.0);
    EXPECT_EQ(SmallestZoom(640, 480), 135.0 / 480.0);
}

TEST(ChooserZoom, WideImageFitsByWidth) {
    EXPECT_EQ(FitZoom(2000, 500, 947, 640), 947.0 / 2000.0);
    // Exactly filling both ways counts as fitting by width.
    EXPECT_EQ(FitZoom(947, 640, 947, 640), 1.0);
    EXPECT_EQ(SmallestZoom(2000, 500), 135.0 / 500.0);
}

TEST(ChooserZoom, ActualSizeOfAnImageWhoseSmallerSideIsUnder135IsZoomMin) {
    ChooserState s = Sized(120, 100);
    EXPECT_EQ(s.zoom_min, 1.35);
    EXPECT_EQ(ActualSizeZoom(s), 1.35);
    // Exactly 135 pixels: zoom_min is 1.0, and so is the actual size.
    EXPECT_EQ(ActualSizeZoom(Sized(135, 400)), 1.0);
}

TEST(ChooserZoom, ActualSizeIsOneWithinLimitsAndTwiceFitAtMost) {
    EXPECT_EQ(ActualSizeZoom(Sized(640, 480)), 1.0);
    // 4000 x 3000 fits at 640 / 3000; twice that is below 1.
    ChooserState big = Sized(4000, 3000);
    EXPECT_EQ(ActualSizeZoom(big), 2.0 * (640.0 / 3000.0));
}

// ---- Piece-count range ----

TEST(ChooserRange, FourByThreeImageAtFitAllows5To18ColumnsAnd4To14Rows) {
    PieceRange r = PieceRangeAt(640, 480, 640.0 / 480.0);  // 853.3 x 640 table pixels
    EXPECT_EQ(r.cols_max, 18);
    EXPECT_EQ(r.rows_max, 14);
    EXPECT_EQ(r.cols_min, 5);
    EXPECT_EQ(r.rows_min, 4);
    EXPECT_EQ(r.count_steps, 23);
    EXPECT_EQ(r.rows_per_step, 10.0 / 23.0);
    EXPECT_EQ(r.cols_per_step, 13.0 / 23.0);
}

TEST(ChooserRange, EveryMinimumAndMaximumIsAtLeastTwo) {
    // A side below 300 table pixels has a minimum of 2; at 300 trunc gives 2 by itself, at 450 3.
    EXPECT_EQ(PieceRangeAt(299, 1000, 1.0).cols_min, 2);
    EXPECT_EQ(PieceRangeAt(300, 1000, 1.0).cols_min, 2);
    EXPECT_EQ(PieceRangeAt(450, 1000, 1.0).cols_min, 3);
    // Below 90 the maximum is 2 as well.
    PieceRange thin = PieceRangeAt(89, 1000, 1.0);
    EXPECT_EQ(thin.cols_max, 2);
    EXPECT_EQ(thin.cols_min, 2);
    EXPECT_EQ(PieceRangeAt(135, 1000, 1.0).cols_max, 3);
    // Rows follow the same rule from the height.
    PieceRange flat = PieceRangeAt(1000, 20, 1.0);
    EXPECT_EQ(flat.rows_min, 2);
    EXPECT_EQ(flat.rows_max, 2);
    // Tiny images and any zoom: never fewer than 2 either way.
    for (double zoom : {0.01, 0.1, 0.5, 1.0, 3.0})
        for (int32_t side : {1, 10, 44, 89, 90, 299, 301, 1000}) {
            PieceRange r = PieceRangeAt(side, side / 2 + 1, zoom);
            EXPECT_GE(r.rows_min, 2);
            EXPECT_GE(r.cols_min, 2);
            EXPECT_GE(r.rows_max, r.rows_min);
            EXPECT_GE(r.cols_max, r.cols_min);
        }
}

TEST(ChooserRange, SingleCountHasNoStepsAndFiniteZeroPerStepValues) {
    PieceRange r = PieceRangeAt(80, 80, 1.0);
    EXPECT_EQ(r.rows_min, 2);
    EXPECT_EQ(r.rows_max, 2);
    EXPECT_EQ(r.cols_min, 2);
    EXPECT_EQ(r.cols_max, 2);
    EXPECT_EQ(r.count_steps, 0);
    EXPECT_TRUE(std::isfinite(r.rows_per_step));
    EXPECT_TRUE(std::isfinite(r.cols_per_step));
    EXPECT_EQ(r.rows_per_step, 0.0);
    EXPECT_EQ(r.cols_per_step, 0.0);
}

// ---- Count slider ----

TEST(ChooserCountSlider, SingleCountGivesOneSliderPositionAndTwoByTwo) {
    PieceRange r = PieceRangeAt(80, 80, 1.0);
    for (int32_t k : {0, 1, 5, -3}) {
        PieceGrid g = GridAtCountPosition(r, k);
        EXPECT_EQ(g.rows, 2) << k;
        EXPECT_EQ(g.cols, 2) << k;
        EXPECT_EQ(CountPositionOf(r, g), 0) << k;
    }
}

TEST(ChooserCountSlider, ZeroIsTheFewestPiecesAndTheFarEndTheMost) {
    PieceRange r = PieceRangeAt(640, 480, 640.0 / 480.0);
    PieceGrid fewest = GridAtCountPosition(r, 0);
    EXPECT_EQ(fewest.rows, 4);
    EXPECT_EQ(fewest.cols, 5);
    EXPECT_EQ(CountPositionOf(r, fewest), 0);
    PieceGrid most = GridAtCountPosition(r, 23);
    EXPECT_EQ(most.rows, 14);
    EXPECT_EQ(most.cols, 18);
    EXPECT_EQ(CountPositionOf(r, most), 23);
}

TEST(ChooserCountSlider, FarEndReachesTheMaximumForEveryRange) {
    // k * (max - min) / count_steps is exact: no range loses its last row or column to rounding.
    for (int32_t w = 90; w <= 3000; w += 37)
        for (int32_t h = 90; h <= 3000; h += 41) {
            PieceRange r = PieceRangeAt(w, h, 1.0);
            PieceGrid most = GridAtCountPosition(r, r.count_steps);
            ASSERT_EQ(most.rows, r.rows_max) << w << " x " << h;
            ASSERT_EQ(most.cols, r.cols_max) << w << " x " << h;
            ASSERT_EQ(CountPositionOf(r, most), r.count_steps) << w << " x " << h;
        }
}

TEST(ChooserCountSlider, RowsAndColumnsGrowTogetherAlongTheDiagonal) {
    PieceRange r = PieceRangeAt(640, 480, 640.0 / 480.0);
    PieceGrid before = GridAtCountPosition(r, 0);
    for (int32_t k = 1; k <= r.count_steps; ++k) {
        PieceGrid g = GridAtCountPosition(r, k);
        EXPECT_GE(g.rows, before.rows) << k;
        EXPECT_GE(g.cols, before.cols) << k;
        EXPECT_EQ(g.rows, 4 + k * 10 / 23) << k;
        EXPECT_EQ(g.cols, 5 + k * 13 / 23) << k;
        before = g;
    }
}

TEST(ChooserCountSlider, PositionsOutsideTheRangeAreHeldToItsEnds) {
    PieceRange r = PieceRangeAt(640, 480, 1.0);
    PieceGrid low = GridAtCountPosition(r, -4), high = GridAtCountPosition(r, r.count_steps + 9);
    EXPECT_EQ(low.rows, r.rows_min);
    EXPECT_EQ(low.cols, r.cols_min);
    EXPECT_EQ(high.rows, r.rows_max);
    EXPECT_EQ(high.cols, r.cols_max);
}

TEST(ChooserCountSlider, PieceEdgeIsTheMeanOfTheCellSides) {
    // 853.3 / 18 = 47.4 and 640 / 14 = 45.7: (45.7 + 47.4) / 2 = 46.5.
    EXPECT_EQ(PieceEdgeOf(640, 480, 640.0 / 480.0, PieceGrid{14, 18}), 46);
    EXPECT_EQ(PieceEdgeOf(640, 480, 640.0 / 480.0, PieceGrid{4, 5}), 165);
    EXPECT_EQ(PieceEdgeOf(80, 80, 1.0, PieceGrid{2, 2}), 40);
}

// ---- Zoom slider ----

TEST(ChooserZoomSlider, EndsAreZoomMinAndTwiceTheFit) {
    ChooserState s = Sized(640, 480);
    EXPECT_EQ(ZoomAtPercent(s, 0), 135.0 / 480.0);
    EXPECT_DOUBLE_EQ(ZoomAtPercent(s, 100), 2.0 * 640.0 / 480.0);
    EXPECT_EQ(ZoomPercentOf(s, 135.0 / 480.0), 0);
    EXPECT_EQ(ZoomPercentOf(s, 2.0 * 640.0 / 480.0), 100);
    // The fit itself: (1.3333 - 0.28125) * 100 / (2.6667 - 0.28125) = 44.1.
    EXPECT_EQ(ZoomPercentOf(s, 640.0 / 480.0), 44);
}

TEST(ChooserZoomSlider, EveryPercentReadsBackAsItself) {
    for (auto size : {std::pair<int32_t, int32_t>{640, 480}, {1000, 1000}, {300, 2000}, {120, 100}, {4000, 3000},
                      {1023, 767}})
        for (int32_t p = 0; p <= 100; ++p) {
            ChooserState s = Sized(size.first, size.second);
            ASSERT_EQ(ZoomPercentOf(s, ZoomAtPercent(s, p)), p) << size.first << " x " << size.second;
        }
}

TEST(ChooserZoomSlider, PercentsOutsideTheSliderAreHeldToItsEnds) {
    ChooserState s = Sized(640, 480);
    EXPECT_EQ(ZoomAtPercent(s, -20), ZoomAtPercent(s, 0));
    EXPECT_EQ(ZoomAtPercent(s, 250), ZoomAtPercent(s, 100));
    EXPECT_EQ(ZoomPercentOf(s, 0.0), 0);
    EXPECT_EQ(ZoomPercentOf(s, 9.0), 100);
}

TEST(ChooserZoomSlider, ImageTooThinForAnyZoomRangeRestsAtZero) {
    // 4000 x 100 fits at 947 / 4000; twice that is below zoom_min 1.35: no span to divide by.
    ChooserState s = Sized(4000, 100);
    ASSERT_LT(2.0 * s.zoom_fit, s.zoom_min);
    EXPECT_EQ(ZoomPercentOf(s, s.zoom_min), 0);
    EXPECT_EQ(ZoomPercentOf(s, 1.0), 0);
}

// ---- Frame and picture fits ----

TEST(ChooserFrame, TableOf1024By768ScreenFitsAs236By160At122And61) {
    // 250 * 640 / 947 = 168.95 is more than 160: height-bound, frame_scale 0.25.
    PictureFit frame = FitTableFrame(947, 640);
    EXPECT_EQ(frame.scale, 0.25);
    EXPECT_EQ(frame.width, 236);
    EXPECT_EQ(frame.height, 160);
    ChooserRect place = SizeChooserRect(frame);
    EXPECT_EQ(place.x, 122);
    EXPECT_EQ(place.y, 61);
    EXPECT_EQ(place.width, 236);
    EXPECT_EQ(place.height, 160);
}

TEST(ChooserFrame, WideScreenTableIsWidthBound) {
    // 1600 x 900 screen: 1523 x 772, 250 * 772 / 1523 = 126.7.
    PictureFit frame = FitTableFrame(1523, 772);
    EXPECT_TRUE(frame.widthBound);
    EXPECT_EQ(frame.width, 250);
    EXPECT_EQ(frame.height, 126);
    ChooserRect place = SizeChooserRect(frame);
    EXPECT_EQ(place.x, 115);
    EXPECT_EQ(place.y, 61 + 17);
}

TEST(ChooserFrame, CountPictureIsFittedInto250By160AndCentred) {
    ChooserState s = Sized(640, 480);
    EXPECT_EQ(s.countFit.width, 213);
    EXPECT_EQ(s.countFit.height, 160);
    EXPECT_EQ(s.countLeft, 18);
    EXPECT_EQ(s.countTop, 0);
    ChooserState wide = Sized(1000, 400);
    EXPECT_EQ(wide.countFit.width, 250);
    EXPECT_EQ(wide.countFit.height, 100);
    EXPECT_EQ(wide.countLeft, 0);
    EXPECT_EQ(wide.countTop, 30);
}

TEST(ChooserFrame, ZoomedCopyIsCentredAndMayOverhangTheFrame) {
    PictureFit frame = FitTableFrame(947, 640);  // 236 x 160
    // The 640 x 480 copy is 160 x 120; at the fit it covers 213 x 160.
    ChooserRect fit = ZoomedCopyRect(frame, 160, 120, 640.0 / 480.0);
    EXPECT_EQ(fit.width, 213);
    EXPECT_EQ(fit.height, 160);
    EXPECT_EQ(fit.x, 11);
    EXPECT_EQ(fit.y, 0);
    // Twice the fit overhangs: the halves are truncated toward zero.
    ChooserRect twice = ZoomedCopyRect(frame, 160, 120, 2.0 * 640.0 / 480.0);
    EXPECT_EQ(twice.width, 426);
    EXPECT_EQ(twice.height, 320);
    EXPECT_EQ(twice.x, -95);
    EXPECT_EQ(twice.y, -80);
    ChooserRect odd = ZoomedCopyRect(frame, 160, 120, 1.0);  // (236 - 160) / 2, (160 - 120) / 2
    EXPECT_EQ(odd.x, 38);
    EXPECT_EQ(odd.y, 20);
    ChooserRect overhangOdd = ZoomedCopyRect(frame, 239, 120, 1.0);  // (236 - 239) / 2 = -1.5 -> -1
    EXPECT_EQ(overhangOdd.x, -1);
}

TEST(ChooserFrame, GridLinesFallAtWholeFractionsOfThePicture) {
    EXPECT_EQ(GridLine(18, 213, 1, 3), 18 + 71);
    EXPECT_EQ(GridLine(18, 213, 2, 3), 18 + 142);
    EXPECT_EQ(GridLine(0, 160, 1, 7), 22);
    EXPECT_EQ(GridLine(5, 100, 0, 0), 5);
}

TEST(ChooserFrame, PressCountsOnThePictureWithItsEdges) {
    ChooserState s = Sized(640, 480);  // picture at 18 .. 231 x 0 .. 160
    EXPECT_TRUE(PointOnCountPicture(s, 18, 0));
    EXPECT_TRUE(PointOnCountPicture(s, 231, 160));
    EXPECT_FALSE(PointOnCountPicture(s, 17, 50));
    EXPECT_FALSE(PointOnCountPicture(s, 232, 50));
    EXPECT_FALSE(PointOnCountPicture(s, 100, 161));
}

// ---- Drags ----

TEST(ChooserDrag, SizeDragFollowsTheFrameDiagonal) {
    ChooserState s = Sized(640, 480);  // frame 236 x 160
    double start = 640.0 / 480.0;
    double diagonal = std::sqrt(236.0 * 236.0 + 160.0 * 160.0);
    EXPECT_DOUBLE_EQ(DragZoom(s, start, 50, 30), start + (236.0 * 50 + 160.0 * 30) / (diagonal * 200.0));
    EXPECT_DOUBLE_EQ(DragZoom(s, start, -40, 0), start - 236.0 * 40 / (diagonal * 200.0));
    // Movement across the diagonal changes nothing.
    EXPECT_DOUBLE_EQ(DragZoom(s, start, 160, -236), start);
    EXPECT_EQ(DragZoom(s, start, 0, 0), start);
}

TEST(ChooserDrag, SizeDragStopsAtTwiceTheFitAndAtZoomMin) {
    ChooserState s = Sized(640, 480);
    EXPECT_EQ(DragZoom(s, 640.0 / 480.0, 1000, 1000), 2.0 * (640.0 / 480.0));
    EXPECT_EQ(DragZoom(s, 640.0 / 480.0, -1000, -1000), 135.0 / 480.0);
}

TEST(ChooserDrag, SizeDragLowerLimitWinsWhenTheLimitsCross) {
    ChooserState s = Sized(4000, 100);
    ASSERT_LT(2.0 * s.zoom_fit, s.zoom_min);
    EXPECT_EQ(DragZoom(s, s.zoom_min, 1000, 1000), s.zoom_min);
    EXPECT_EQ(DragZoom(s, s.zoom_min, -1000, -1000), s.zoom_min);
}

TEST(ChooserDrag, CountDragFarOutwardClampsAt150AndFarInwardAt45) {
    ChooserState s = Sized(640, 480);
    EXPECT_EQ(DragPieceEdge(s, 45, 1000, 1000), 150);
    EXPECT_EQ(DragPieceEdge(s, 100, 400, 0), 150);
    EXPECT_EQ(DragPieceEdge(s, 150, -1000, -1000), 45);
    EXPECT_EQ(DragPieceEdge(s, 60, 0, -400), 45);
    PieceGrid fewest = GridForPieceEdge(640, 480, 640.0 / 480.0, 150);
    EXPECT_EQ(fewest.rows, 4);
    EXPECT_EQ(fewest.cols, 5);
    PieceGrid most = GridForPieceEdge(640, 480, 640.0 / 480.0, 45);
    EXPECT_EQ(most.rows, 14);
    EXPECT_EQ(most.cols, 18);
}

TEST(ChooserDrag, CountDragWeighsSidewaysMovementByHeightAndUpDownByWidth) {
    ChooserState s = Sized(640, 480);  // picture 213 x 160, diagonal 266.4
    // 100 * 160 * 0.5 / 266.4 = 30.03; 100 * 213 * 0.5 / 266.4 = 39.98.
    EXPECT_EQ(DragPieceEdge(s, 45, 100, 0), 75);
    EXPECT_EQ(DragPieceEdge(s, 45, 0, 100), 84);
    EXPECT_EQ(DragPieceEdge(s, 100, -100, 0), 69);  // trunc(100 - 30.03)
    EXPECT_EQ(DragPieceEdge(s, 45, 0, 0), 45);
}

TEST(ChooserDrag, CountGridForAnEdgeIsNeverThinnerThanTwo) {
    PieceGrid g = GridForPieceEdge(100, 60, 1.0, 150);
    EXPECT_EQ(g.rows, 2);
    EXPECT_EQ(g.cols, 2);
    PieceGrid h = GridForPieceEdge(1000, 500, 1.0, 100);
    EXPECT_EQ(h.rows, 5);
    EXPECT_EQ(h.cols, 10);
}

// ---- Program-wide operations ----

TEST_F(ChooserOperations, PreparingAnImageFitsItAndStartsFromTheMostPieces) {
    Choose(640, 480);
    EXPECT_EQ(g_choosers.tableWidth, 947);
    EXPECT_EQ(g_choosers.tableHeight, 640);
    EXPECT_EQ(g_choosers.zoom_fit, 640.0 / 480.0);
    EXPECT_EQ(g_choosers.zoom_min, 135.0 / 480.0);
    EXPECT_EQ(g_puzzle.scale, 640.0 / 480.0);
    EXPECT_EQ(g_puzzle.rows, 14);
    EXPECT_EQ(g_puzzle.cols, 18);
    EXPECT_EQ(g_choosers.piece_edge, 45);
    EXPECT_EQ(GetCountSteps(), 23);
    EXPECT_EQ(GetCountPosition(), 23);
    EXPECT_EQ(GetZoomPercent(), 44);
    EXPECT_GE(repaints, 1);
}

TEST_F(ChooserOperations, PreparingMakesBothScaledCopies) {
    Choose(640, 480);
    ASSERT_NE(g_choosers.sizeCopy, nullptr);
    ASSERT_NE(g_choosers.countCopy, nullptr);
    EXPECT_EQ(DibHeaderOf(g_choosers.sizeCopy)->biWidth, 160);  // 640 * 0.25
    EXPECT_EQ(DibHeaderOf(g_choosers.sizeCopy)->biHeight, 120);
    EXPECT_EQ(DibHeaderOf(g_choosers.countCopy)->biWidth, 213);
    EXPECT_EQ(DibHeaderOf(g_choosers.countCopy)->biHeight, 160);
    size_t live = SysLiveBlocks();
    ForgetChosenImage();
    EXPECT_EQ(SysLiveBlocks(), live - 2);
    EXPECT_EQ(g_choosers.sizeCopy, nullptr);
    EXPECT_FALSE(g_choosers.image_chosen);
}

TEST_F(ChooserOperations, LaidOutTableSizeIsPreferredToTheScreen) {
    g_puzzle.tableWidth = 723;
    g_puzzle.tableHeight = 472;
    Choose(640, 480);
    EXPECT_EQ(g_choosers.tableWidth, 723);
    EXPECT_EQ(g_choosers.zoom_fit, 472.0 / 480.0);
}

TEST_F(ChooserOperations, WithoutAnImageNothingChangesAndTheSlidersReadOne) {
    g_puzzle.rows = 7;
    g_puzzle.cols = 9;
    g_puzzle.scale = 0.5;
    PrepareImageForSizing();  // no current picture
    EXPECT_FALSE(g_choosers.image_chosen);
    EXPECT_EQ(GetZoomPercent(), 1);
    EXPECT_EQ(GetCountSteps(), 1);
    EXPECT_EQ(GetCountPosition(), 0);
    RecomputePieceRange();
    ZoomToFit();
    ZoomToActualSize();
    SetZoomPercent(80);
    SetCountPosition(3);
    EXPECT_FALSE(DragSizeChooser(0.5, 100, 100));
    EXPECT_FALSE(DragCountChooser(45, 100, 100));
    EXPECT_EQ(g_puzzle.rows, 7);
    EXPECT_EQ(g_puzzle.cols, 9);
    EXPECT_EQ(g_puzzle.scale, 0.5);
}

TEST_F(ChooserOperations, EveryZoomChangeResetsTheCountToTheMost) {
    Choose(640, 480);
    SetCountPosition(0);
    EXPECT_EQ(g_puzzle.rows, 4);
    EXPECT_EQ(g_puzzle.cols, 5);
    EXPECT_EQ(g_choosers.piece_edge, 165);
    SetZoomPercent(100);
    EXPECT_EQ(GetCountPosition(), GetCountSteps());
    EXPECT_EQ(g_puzzle.rows, g_choosers.range.rows_max);
    EXPECT_EQ(g_choosers.piece_edge, 45);
    SetCountPosition(1);
    ZoomToFit();
    EXPECT_EQ(g_puzzle.rows, 14);
    EXPECT_EQ(g_puzzle.cols, 18);
    SetCountPosition(2);
    ZoomToActualSize();
    EXPECT_EQ(g_puzzle.scale, 1.0);
    EXPECT_EQ(g_puzzle.rows, 10);  // 480 / 45
    EXPECT_EQ(g_puzzle.cols, 14);  // 640 / 45
}

TEST_F(ChooserOperations, ActualSizeOfASmallImageIsZoomMin) {
    Choose(120, 100);
    ZoomToActualSize();
    EXPECT_EQ(g_puzzle.scale, 1.35);
    EXPECT_EQ(GetZoomPercent(), 0);
}

TEST_F(ChooserOperations, CountStepsOfZeroLeaveASingleSliderPosition) {
    Choose(80, 80);
    g_puzzle.scale = 1.0;  // 80 x 80 table pixels: 2 x 2 is the only count
    RecomputePieceRange();
    EXPECT_EQ(GetCountSteps(), 0);
    EXPECT_EQ(GetCountPosition(), 0);
    for (int32_t k : {0, 1, 7}) {
        SetCountPosition(k);
        EXPECT_EQ(g_puzzle.rows, 2);
        EXPECT_EQ(g_puzzle.cols, 2);
        EXPECT_EQ(GetCountPosition(), 0);
        EXPECT_EQ(g_choosers.piece_edge, 40);
    }
}

TEST_F(ChooserOperations, CountSliderRoundTripsAtBothEnds) {
    Choose(1000, 700);
    int32_t steps = GetCountSteps();
    SetCountPosition(0);
    EXPECT_EQ(GetCountPosition(), 0);
    SetCountPosition(steps);
    EXPECT_EQ(GetCountPosition(), steps);
    EXPECT_EQ(g_puzzle.rows, g_choosers.range.rows_max);
    EXPECT_EQ(g_puzzle.cols, g_choosers.range.cols_max);
}

TEST_F(ChooserOperations, ZoomSliderRoundTripsEveryPercent) {
    Choose(640, 480);
    for (int32_t p = 0; p <= 100; ++p) {
        SetZoomPercent(p);
        ASSERT_EQ(GetZoomPercent(), p);
    }
}

TEST_F(ChooserOperations, SizeDragReportsAChangeOnlyWhenTheZoomMoves) {
    Choose(640, 480);
    double start = g_puzzle.scale;
    SetCountPosition(0);
    EXPECT_TRUE(DragSizeChooser(start, 30, 10));
    EXPECT_EQ(g_puzzle.scale, DragZoom(g_choosers, start, 30, 10));
    EXPECT_EQ(GetCountPosition(), GetCountSteps());  // the count went back to the most
    EXPECT_FALSE(DragSizeChooser(start, 30, 10));     // the same place again
    EXPECT_TRUE(DragSizeChooser(start, 5000, 5000));
    EXPECT_EQ(g_puzzle.scale, 2.0 * g_choosers.zoom_fit);
    EXPECT_FALSE(DragSizeChooser(start, 6000, 6000));  // held at the limit
}

TEST_F(ChooserOperations, CountDragTakesTheNewEdgeOnlyWhenTheGridChanges) {
    Choose(640, 480);
    EXPECT_FALSE(DragCountChooser(45, 1, 1));  // edge 46: still 14 x 18
    EXPECT_EQ(g_choosers.piece_edge, 45);
    int before = repaints;
    EXPECT_TRUE(DragCountChooser(45, 1000, 1000));
    EXPECT_EQ(g_choosers.piece_edge, 150);
    EXPECT_EQ(g_puzzle.rows, 4);
    EXPECT_EQ(g_puzzle.cols, 5);
    EXPECT_GT(repaints, before);
    EXPECT_FALSE(DragCountChooser(150, 50, 50));  // still clamped at 150
    EXPECT_TRUE(DragCountChooser(150, -1000, -1000));
    EXPECT_EQ(g_choosers.piece_edge, 45);
    EXPECT_EQ(g_puzzle.rows, 14);
    EXPECT_EQ(g_puzzle.cols, 18);
}

TEST_F(ChooserOperations, EveryChangeOfZoomOrCountAsksForARepaint) {
    Choose(640, 480);
    int before = repaints;
    ZoomToFit();
    EXPECT_EQ(repaints, before + 1);
    ZoomToActualSize();
    EXPECT_EQ(repaints, before + 2);
    SetZoomPercent(30);
    EXPECT_EQ(repaints, before + 3);
    SetCountPosition(3);
    EXPECT_EQ(repaints, before + 4);
    RecomputePieceRange();
    EXPECT_EQ(repaints, before + 5);
}
