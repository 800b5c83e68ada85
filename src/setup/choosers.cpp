// The choosers' arithmetic and the operations the new-puzzle screen calls.
#include "setup/choosers.h"

#include <cmath>

#include "app/app_state.h"
#include "gfx/dib.h"

ChooserState g_choosers;
void (*g_repaintChoosers)() = nullptr;

namespace {

// Truncation toward zero that cannot overflow: NaN gives 0, values beyond the range its nearest end.
int32_t TruncToInt(double value) {
    if (std::isnan(value)) return 0;
    if (value >= 2147483647.0) return INT32_MAX;
    if (value <= -2147483648.0) return INT32_MIN;
    return int32_t(value);
}

int32_t AtLeastTwo(int32_t value) { return value < kFewestRowsOrColumns ? kFewestRowsOrColumns : value; }

int32_t Clamp(int32_t value, int32_t low, int32_t high) { return value < low ? low : value > high ? high : value; }

// How far a percentage read back may sit below a whole number and still count as it.
constexpr double kPercentSlack = 1e-9;

void RepaintChoosers() {
    if (g_repaintChoosers) g_repaintChoosers();
}

void FreeCopies(ChooserState* s) {
    FreePackedDib(s->sizeCopy);
    FreePackedDib(s->countCopy);
    s->sizeCopy = nullptr;
    s->countCopy = nullptr;
}

}  // namespace

double FitZoom(int32_t imageWidth, int32_t imageHeight, int32_t tableWidth, int32_t tableHeight) {
    if (imageWidth < 1 || imageHeight < 1) return 0.0;
    if (double(imageHeight) * tableWidth / imageWidth <= tableHeight) return double(tableWidth) / imageWidth;
    return double(tableHeight) / imageHeight;
}

double SmallestZoom(int32_t imageWidth, int32_t imageHeight) {
    int32_t side = imageWidth < imageHeight ? imageWidth : imageHeight;
    if (side < 1) return 0.0;
    return double(kSmallestShownSide) / side;
}

PictureFit FitTableFrame(int32_t tableWidth, int32_t tableHeight) {
    return FitPicture(tableWidth, tableHeight, kChooserAreaWidth, kChooserAreaHeight);
}

void SetUpSizing(ChooserState* s, int32_t imageWidth, int32_t imageHeight, int32_t tableWidth,
                 int32_t tableHeight) {
    s->imageWidth = imageWidth;
    s->imageHeight = imageHeight;
    s->tableWidth = tableWidth;
    s->tableHeight = tableHeight;
    s->zoom_fit = FitZoom(imageWidth, imageHeight, tableWidth, tableHeight);
    s->zoom_min = SmallestZoom(imageWidth, imageHeight);
    s->frame = FitTableFrame(tableWidth, tableHeight);
    s->countFit = FitPicture(imageWidth, imageHeight, kChooserAreaWidth, kChooserAreaHeight);
    s->countLeft = (kChooserAreaWidth - s->countFit.width) / 2;
    s->countTop = (kChooserAreaHeight - s->countFit.height) / 2;
}

ChooserRect SizeChooserRect(const PictureFit& frame) {
    return ChooserRect{kChooserAreaLeft + (kChooserAreaWidth - frame.width) / 2,
                       kChooserAreaTop + (kChooserAreaHeight - frame.height) / 2, frame.width, frame.height};
}

ChooserRect ZoomedCopyRect(const PictureFit& frame, int32_t copyWidth, int32_t copyHeight, double zoom) {
    int32_t width = TruncToInt(copyWidth * zoom);
    int32_t height = TruncToInt(copyHeight * zoom);
    return ChooserRect{(frame.width - width) / 2, (frame.height - height) / 2, width, height};
}

PieceRange PieceRangeAt(int32_t imageWidth, int32_t imageHeight, double zoom) {
    double ws = imageWidth * zoom, hs = imageHeight * zoom;
    PieceRange r;
    r.cols_max = AtLeastTwo(TruncToInt(ws / kSmallestPieceEdge));
    r.rows_max = AtLeastTwo(TruncToInt(hs / kSmallestPieceEdge));
    r.cols_min = AtLeastTwo(TruncToInt(ws / kLargestPieceEdge));
    r.rows_min = AtLeastTwo(TruncToInt(hs / kLargestPieceEdge));
    r.count_steps = (r.rows_max - r.rows_min) + (r.cols_max - r.cols_min);
    // With a single count the per-step values would be 0 / 0: the slider has one position instead.
    r.rows_per_step = r.count_steps ? double(r.rows_max - r.rows_min) / r.count_steps : 0.0;
    r.cols_per_step = r.count_steps ? double(r.cols_max - r.cols_min) / r.count_steps : 0.0;
    return r;
}

// trunc(k * per_step + minimum), with k * (max - min) / count_steps worked out in integers, so that the
// slider's far end always reaches the maximum.
PieceGrid GridAtCountPosition(const PieceRange& range, int32_t position) {
    if (range.count_steps <= 0) return PieceGrid{range.rows_min, range.cols_min};
    int64_t k = Clamp(position, 0, range.count_steps);
    return PieceGrid{range.rows_min + int32_t(k * (range.rows_max - range.rows_min) / range.count_steps),
                     range.cols_min + int32_t(k * (range.cols_max - range.cols_min) / range.count_steps)};
}

int32_t CountPositionOf(const PieceRange& range, PieceGrid grid) {
    return (grid.rows - range.rows_min) + (grid.cols - range.cols_min);
}

int32_t PieceEdgeOf(int32_t imageWidth, int32_t imageHeight, double zoom, PieceGrid grid) {
    if (grid.rows < 1 || grid.cols < 1) return 0;
    double ws = imageWidth * zoom, hs = imageHeight * zoom;
    return TruncToInt((hs / grid.rows + ws / grid.cols) * 0.5);
}

PieceGrid GridForPieceEdge(int32_t imageWidth, int32_t imageHeight, double zoom, int32_t edge) {
    if (edge < 1) edge = 1;
    double ws = imageWidth * zoom, hs = imageHeight * zoom;
    return PieceGrid{AtLeastTwo(TruncToInt(hs / edge)), AtLeastTwo(TruncToInt(ws / edge))};
}

int32_t ZoomPercentOf(const ChooserState& s, double zoom) {
    double span = 2.0 * s.zoom_fit - s.zoom_min;
    // An image too thin to reach 135 pixels within twice its fit has no zoom range: the slider rests at 0.
    if (!(span > 0.0)) return 0;
    return Clamp(TruncToInt((zoom - s.zoom_min) * 100.0 / span + kPercentSlack), 0, 100);
}

double ZoomAtPercent(const ChooserState& s, int32_t percent) {
    percent = Clamp(percent, 0, 100);
    return (2.0 * s.zoom_fit - s.zoom_min) * percent * 0.01 + s.zoom_min;
}

double ActualSizeZoom(const ChooserState& s) {
    double zoom = 1.0;
    if (zoom <= s.zoom_min) zoom = s.zoom_min;
    if (2.0 * s.zoom_fit < zoom) zoom = 2.0 * s.zoom_fit;
    return zoom;
}

double DragZoom(const ChooserState& s, double startZoom, int32_t dx, int32_t dy) {
    double fw = s.frame.width, fh = s.frame.height;
    double diagonal = std::sqrt(fw * fw + fh * fh);
    double zoom = startZoom;
    if (diagonal > 0.0) zoom += (fw * dx + fh * dy) / (diagonal * 200.0);
    if (zoom >= 2.0 * s.zoom_fit) zoom = 2.0 * s.zoom_fit;
    if (zoom <= s.zoom_min) zoom = s.zoom_min;
    return zoom;
}

int32_t DragPieceEdge(const ChooserState& s, int32_t startEdge, int32_t dx, int32_t dy) {
    double tw = s.countFit.width, th = s.countFit.height;
    double diagonal = std::sqrt(tw * tw + th * th);
    int32_t edge = startEdge;
    if (diagonal > 0.0) edge = TruncToInt((double(dy) * tw + double(dx) * th) * 0.5 / diagonal + startEdge);
    return Clamp(edge, kSmallestPieceEdge, kLargestPieceEdge);
}

int32_t GridLine(int32_t origin, int32_t extent, int32_t i, int32_t n) {
    if (n < 1) return origin;
    return origin + int32_t(int64_t(i) * extent / n);
}

bool PointOnCountPicture(const ChooserState& s, int32_t x, int32_t y) {
    int32_t px = x - s.countLeft, py = y - s.countTop;
    return px >= 0 && px <= s.countFit.width && py >= 0 && py <= s.countFit.height;
}

void TakeTableSize() {
    ChooserState* s = &g_choosers;
    s->tableWidth = g_puzzle.tableWidth > 0 ? g_puzzle.tableWidth : g_screenWidth - kTableWidthMargin;
    s->tableHeight = g_puzzle.tableHeight > 0 ? g_puzzle.tableHeight : g_screenHeight - kTableHeightMargin;
    s->frame = FitTableFrame(s->tableWidth, s->tableHeight);
}

void PrepareImageForSizing() {
    ChooserState* s = &g_choosers;
    FreeCopies(s);
    s->image_chosen = false;
    const uint8_t* picture = CurrentPicture();
    TakeTableSize();
    if (!picture || s->tableWidth < 1 || s->tableHeight < 1) {
        RepaintChoosers();
        return;
    }
    const DibHeader* header = DibHeaderOf(picture);
    int32_t width = header->biWidth, height = header->biHeight < 0 ? -header->biHeight : header->biHeight;
    SetUpSizing(s, width, height, s->tableWidth, s->tableHeight);
    s->image_chosen = true;
    g_puzzle.scale = s->zoom_fit;
    // Either copy may be missing (memory, or a side that rounds to nothing): the chooser then shows
    // no picture, while the arithmetic goes on.
    s->sizeCopy = ScalePackedDib(picture, ScaleByFit(width, s->frame), ScaleByFit(height, s->frame));
    s->countCopy = ScalePackedDib(picture, s->countFit.width, s->countFit.height);
    RecomputePieceRange();
}

void ForgetChosenImage() {
    g_choosers.image_chosen = false;
    FreeCopies(&g_choosers);
    RepaintChoosers();
}

void RecomputePieceRange() {
    ChooserState* s = &g_choosers;
    if (!s->image_chosen) return;
    s->range = PieceRangeAt(s->imageWidth, s->imageHeight, g_puzzle.scale);
    g_puzzle.rows = s->range.rows_max;
    g_puzzle.cols = s->range.cols_max;
    s->piece_edge = kSmallestPieceEdge;
    RepaintChoosers();
}

void ZoomToFit() {
    if (!g_choosers.image_chosen) return;
    g_puzzle.scale = g_choosers.zoom_fit;
    RecomputePieceRange();
}

void ZoomToActualSize() {
    if (!g_choosers.image_chosen) return;
    g_puzzle.scale = ActualSizeZoom(g_choosers);
    RecomputePieceRange();
}

int32_t GetZoomPercent() {
    if (!g_choosers.image_chosen) return 1;
    return ZoomPercentOf(g_choosers, g_puzzle.scale);
}

void SetZoomPercent(int32_t percent) {
    if (!g_choosers.image_chosen) return;
    g_puzzle.scale = ZoomAtPercent(g_choosers, percent);
    RecomputePieceRange();
}

int32_t GetCountSteps() {
    if (!g_choosers.image_chosen) return 1;
    return g_choosers.range.count_steps;
}

int32_t GetCountPosition() {
    if (!g_choosers.image_chosen) return 0;
    return CountPositionOf(g_choosers.range, PieceGrid{g_puzzle.rows, g_puzzle.cols});
}

void SetCountPosition(int32_t position) {
    ChooserState* s = &g_choosers;
    if (!s->image_chosen) return;
    PieceGrid grid = GridAtCountPosition(s->range, position);
    g_puzzle.rows = grid.rows;
    g_puzzle.cols = grid.cols;
    s->piece_edge = PieceEdgeOf(s->imageWidth, s->imageHeight, g_puzzle.scale, grid);
    RepaintChoosers();
}

bool DragSizeChooser(double startZoom, int32_t dx, int32_t dy) {
    if (!g_choosers.image_chosen) return false;
    double zoom = DragZoom(g_choosers, startZoom, dx, dy);
    if (zoom == g_puzzle.scale) return false;
    g_puzzle.scale = zoom;
    RecomputePieceRange();
    return true;
}

bool DragCountChooser(int32_t startEdge, int32_t dx, int32_t dy) {
    ChooserState* s = &g_choosers;
    if (!s->image_chosen) return false;
    int32_t edge = DragPieceEdge(*s, startEdge, dx, dy);
    PieceGrid grid = GridForPieceEdge(s->imageWidth, s->imageHeight, g_puzzle.scale, edge);
    bool changed = grid.rows != g_puzzle.rows || grid.cols != g_puzzle.cols;
    g_puzzle.rows = grid.rows;
    g_puzzle.cols = grid.cols;
    if (!changed) return false;
    s->piece_edge = edge;
    RepaintChoosers();
    return true;
}
