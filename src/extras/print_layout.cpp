// Page arithmetic of the two print jobs, and the caption file beside a photograph.
#include "extras/print_layout.h"

#include <cstdlib>
#include <cstring>

#include "app/platform.h"

namespace {

// The caption's path is looked for within the game's path length.
constexpr size_t kCaptionPathScan = 260;
constexpr char kCaptionExtension[] = ".txt";

}  // namespace

bool LayOutPrintFrame(int32_t pageWidth, int32_t pageHeight, PrintFrame* frame) {
    if (!frame || pageWidth < 1 || pageHeight < 1) return false;
    double pw = pageWidth, ph = pageHeight;
    double headerScale = pw * kHeaderArtHeight / kHeaderArtWidth > ph ? ph / kHeaderArtHeight : pw / kHeaderArtWidth;
    double footerScale = pw * kFooterArtHeight / kFooterArtWidth <= ph ? pw / kFooterArtWidth : ph / kFooterArtHeight;
    frame->pageWidth = pageWidth;
    frame->pageHeight = pageHeight;
    frame->headerWidth = int32_t(kHeaderArtWidth * headerScale);
    frame->headerHeight = int32_t(kHeaderArtHeight * headerScale);
    frame->footerWidth = int32_t(kFooterArtWidth * footerScale);
    frame->footerHeight = int32_t(kFooterArtHeight * footerScale);
    return true;
}

bool LayOutPhotograph(const PrintFrame* frame, int32_t imageWidth, int32_t imageHeight, PhotoPrintLayout* layout) {
    if (!frame || !layout || imageWidth < 1 || imageHeight < 1) return false;
    int64_t room = int64_t(frame->pageHeight) - 2 * int64_t(frame->headerHeight) - frame->footerHeight;
    if (room < 1 || frame->pageWidth < 1) return false;
    double pw = frame->pageWidth, ah = double(room);
    double f = double(imageHeight) * pw / imageWidth <= ah ? pw / imageWidth : ah / imageHeight;
    layout->scale = f;
    layout->width = int32_t(imageWidth * f);
    layout->bandHeight = int32_t(imageHeight * f * 0.2);
    layout->bandRows = imageHeight / kPrintBandCount;
    layout->x = (frame->pageWidth - layout->width) / 2;
    layout->top = int32_t((int64_t(frame->pageHeight) - int64_t(kPrintBandCount) * layout->bandHeight) / 2);
    return true;
}

int32_t PhotoBandY(const PhotoPrintLayout* layout, int32_t band) {
    return layout->top + (kPrintBandCount - 1 - band) * layout->bandHeight;
}

int32_t PhotoBandFirstRow(const PhotoPrintLayout* layout, int32_t band) { return band * layout->bandRows; }

void MakeCaptionPath(char* path, size_t capacity) {
    if (!path || capacity == 0) return;
    size_t scan = capacity < kCaptionPathScan ? capacity : kCaptionPathScan;
    size_t dot = 0;  // no "." at all: the extension goes over the start
    for (size_t i = 0; i < scan && path[i]; ++i)
        if (path[i] == '.') dot = i;
    size_t room = capacity - dot;  // bytes from the dot to the buffer's end, at least 1
    size_t letters = sizeof kCaptionExtension - 1;
    if (letters > room - 1) letters = room - 1;
    std::memcpy(path + dot, kCaptionExtension, letters);
    path[dot + letters] = 0;
}

char* ReadCaptionText(const char* path) {
    if (!path) return nullptr;
    SysFile* file = SysOpenFile(path, SYS_OPEN_READ);
    if (!file) return nullptr;
    int64_t size = SysFileSize(file);
    char* text = nullptr;
    if (size > 0 && size <= kCaptionLargest) text = static_cast<char*>(std::malloc(size_t(size) + 1));
    uint32_t got = 0;
    if (text && (!SysReadFile(file, text, uint32_t(size), &got) || got != uint32_t(size))) {
        std::free(text);
        text = nullptr;
    }
    if (text) text[size] = 0;
    SysCloseFile(file);
    return text;
}

int32_t InfoPrintStep(int32_t lineHeight, int32_t page, int32_t line) {
    const InfoLine* entry = InfoTextLine(page, line);
    if (entry && entry->endsSection) return 2 * lineHeight;
    if (entry && entry->endsParagraph) return lineHeight + lineHeight / 2;
    return lineHeight;
}

// Top of each line of the page for one line height; the bottom of the last line in *bottom.
static void PlaceInfoLines(const PrintFrame* frame, int32_t page, int32_t lineHeight, InfoPrintLayout* layout,
                           int64_t* bottom) {
    int64_t y = int64_t(frame->headerHeight) + 2 * int64_t(lineHeight);
    for (int32_t line = 0; line < kInfoLinesPerPage; ++line) {
        layout->y[line] = int32_t(y);
        if (line + 1 < kInfoLinesPerPage) y += InfoPrintStep(lineHeight, page, line);
    }
    *bottom = y + lineHeight;
}

bool LayOutInfoPage(const PrintFrame* frame, int32_t page, InfoPrintLayout* layout) {
    if (!frame || !layout || page < 0 || page >= kInfoPageCount) return false;
    int64_t footerTop = int64_t(frame->pageHeight) - frame->footerHeight;
    layout->x = frame->headerWidth / 10;
    for (int32_t lineHeight = frame->headerHeight / 3; lineHeight >= 1; --lineHeight) {
        int64_t bottom = 0;
        PlaceInfoLines(frame, page, lineHeight, layout, &bottom);
        layout->lineHeight = lineHeight;
        if (bottom <= footerTop) return true;
    }
    return false;
}
