// Where things go on a printed page: the header and footer banners, the photograph's five bands, the
// caption's file and the lines of the information text. Printer units throughout (GetDeviceCaps).
#pragma once

#include <cstddef>
#include <cstdint>

#include "extras/info_text.h"

// The banners' own size in the pack (ids 272 and 273).
constexpr int32_t kHeaderArtWidth = 1496, kHeaderArtHeight = 243;
constexpr int32_t kFooterArtWidth = 1496, kFooterArtHeight = 228;

constexpr int32_t kPrintBandCount = 5;
// A caption is a sentence or two; a larger file beside a photograph is not one and is left out.
constexpr int64_t kCaptionLargest = 64 * 1024;

struct PrintFrame {
    int32_t pageWidth, pageHeight;        // PW, PH
    int32_t headerWidth, headerHeight;    // W1, H1: drawn at (0, 0)
    int32_t footerWidth, footerHeight;    // W2, H2: drawn at (0, PH - H2)
};

// Both banners keep their shape; each is as wide as the page unless that would make it taller than
// the page. False for a page without area.
bool LayOutPrintFrame(int32_t pageWidth, int32_t pageHeight, PrintFrame* frame);

struct PhotoPrintLayout {
    double scale;          // f: file pixels to printer units
    int32_t width;         // DW, the printed width
    int32_t bandHeight;    // BH, one band's printed height
    int32_t bandRows;      // file rows in one band: height / 5; the height mod 5 top rows never print
    int32_t x;             // left edge of every band: (PW - DW) / 2
    int32_t top;           // top of the topmost band: (PH - 5 BH) / 2, centred on the whole page
};

// The photograph fills the page width unless it would then be taller than the room between the
// header (counted twice, the caption sits under it) and the footer; then that room's height sets the
// scale. Either way the picture is centred on the full page height, not between the banners.
// False for an image or a room without area.
bool LayOutPhotograph(const PrintFrame* frame, int32_t imageWidth, int32_t imageHeight, PhotoPrintLayout* layout);
// Band 0 is read first and holds the picture's bottom rows (bottom-up row 0 on); each next band goes
// one band height higher on the page.
int32_t PhotoBandY(const PhotoPrintLayout* layout, int32_t band);
// The first bottom-up row of a band in the picture.
int32_t PhotoBandFirstRow(const PhotoPrintLayout* layout, int32_t band);

// Turns a photograph's path into its caption's path, in place: the last "." among the first 260
// characters and everything after it become ".txt". A path without a "." gets ".txt" over its start,
// which names no caption. Nothing is written at or past capacity; the result is always terminated
// (cut short when the ".txt" does not fit, so that no caption is found either).
void MakeCaptionPath(char* path, size_t capacity);
// The whole caption file with a terminator, in a block freed with std::free; null when the file is
// missing, empty, unreadable or larger than kCaptionLargest.
char* ReadCaptionText(const char* path);

struct InfoPrintLayout {
    int32_t x;                        // left margin, W1 / 10; the right margin is as wide
    int32_t lineHeight;               // L: the font's height and the step inside a paragraph
    int32_t y[kInfoLinesPerPage];     // top of each line
};

// The step after a line: L inside a paragraph, L + L / 2 after a paragraph's last line (which is
// H1 / 6 + L at the full line height) and 2 L after the last line of a section.
int32_t InfoPrintStep(int32_t lineHeight, int32_t page, int32_t line);
// Page 0 or 1 of the information text. The line height is H1 / 3 when the page holds the 26 lines
// from H1 + 2 L down to the footer at that height; on a page that does not (an A4 sheet does not),
// the largest smaller height that fits, so that no line runs into the footer or off the paper.
// False for a page outside 0..1 or a frame too small for any text.
bool LayOutInfoPage(const PrintFrame* frame, int32_t page, InfoPrintLayout* layout);
