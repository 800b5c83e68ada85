// The new-puzzle screen's geometry and small rules.
#include "setup/new_puzzle_layout.h"

#include "puzzle/picture.h"

namespace {

constexpr int32_t kTabPitch = 126;          // 120 wide with a 6-pixel gap: four fill the page's width
constexpr int32_t kFirstTabLeft = 106;
constexpr Point kFirstShapeCheckAt = {392, 79};  // the column is centred on the shape picture
constexpr int32_t kShapeCheckPitch = 40;
constexpr int32_t kFirstSlotLeft = 106;
constexpr int32_t kSlotPitch = 111;

}  // namespace

int32_t TabLeft(int32_t page) { return kFirstTabLeft + kTabPitch * page; }

Point ShapeCheckPlace(int32_t shape) {
    return Point{kFirstShapeCheckAt.x, kFirstShapeCheckAt.y + kShapeCheckPitch * shape};
}

int32_t SlotLeft(int32_t slot) { return kFirstSlotLeft + kSlotPitch * slot; }

Rect PlaceThumbnail(int32_t imageWidth, int32_t imageHeight) {
    PictureFit fit = FitPicture(imageWidth, imageHeight, kThumbnailBoxWidth, kThumbnailBoxHeight);
    if (fit.width < 1 || fit.height < 1) return Rect{0, 0, 0, 0};
    return Rect{(kSlotWidth - fit.width) / 2, (kSlotHeight - fit.height) / 2, fit.width, fit.height};
}

int32_t ImageScrollMinimum(int32_t imageCount) {
    int32_t minimum = kThumbnailSlotCount - imageCount;
    return minimum < 0 ? minimum : 0;
}

int32_t SlotEntry(int32_t slot, int32_t scrollPosition, int32_t imageCount) {
    int64_t entry = int64_t(slot) - scrollPosition;
    return entry >= 0 && entry < imageCount ? int32_t(entry) : -1;
}

int32_t NextShape(int32_t shape) { return (shape + 1) % kShapeCount; }

int32_t WipeStripCount() { return (kPageArea.height - 2) / kWipeStep + 1; }

Rect WipeStrip(int32_t k) {
    int32_t top = 2 + kWipeStep * k - kWipeStep / 2;
    int32_t bottom = top + kWipeStep;
    if (bottom > kPageArea.height) bottom = kPageArea.height;
    return Rect{0, top, kPageArea.width, bottom - top};
}
