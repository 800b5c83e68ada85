// Cursors and the application icon, drawn with Cairo and stored as .cur / .ico files: each image a
// 32-bit DIB (height doubled for the mask) followed by its 1-bit AND mask.
#include <cairo.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include "artgen/paint.h"
#include "mediagen/media.h"

namespace {

struct IconImage {
    int size;
    int hotX, hotY;                // cursors only
    std::vector<uint8_t> bgra;     // rows from the top, straight alpha
};

IconImage Capture(cairo_surface_t* s, int hotX, int hotY) {
    cairo_surface_flush(s);
    int n = cairo_image_surface_get_width(s), stride = cairo_image_surface_get_stride(s);
    const unsigned char* data = cairo_image_surface_get_data(s);
    IconImage im{n, hotX, hotY, std::vector<uint8_t>(size_t(n) * n * 4)};
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) {
            uint32_t p = reinterpret_cast<const uint32_t*>(data + y * stride)[x];
            uint32_t a = p >> 24;
            uint8_t* o = &im.bgra[(size_t(y) * n + x) * 4];
            // Cairo keeps colours premultiplied; icon files want them straight.
            for (int c = 0; c < 3; ++c) {
                uint32_t v = (p >> (8 * c)) & 255;
                o[c] = uint8_t(a ? std::min(255u, (v * 255 + a / 2) / a) : 0);
            }
            o[3] = uint8_t(a);
        }
    return im;
}

bool WriteIconFile(const std::string& path, const std::vector<IconImage>& images, bool cursor) {
    std::vector<uint8_t> out(6 + 16 * images.size());
    auto put16 = [&](size_t at, uint16_t v) { std::memcpy(&out[at], &v, 2); };
    auto put32 = [&](size_t at, uint32_t v) { std::memcpy(&out[at], &v, 4); };
    put16(0, 0);
    put16(2, cursor ? 2 : 1);
    put16(4, uint16_t(images.size()));
    for (size_t i = 0; i < images.size(); ++i) {
        const IconImage& im = images[i];
        int n = im.size;
        uint32_t maskStride = uint32_t(((n + 31) / 32) * 4);
        uint32_t bytes = 40 + uint32_t(n * n * 4) + maskStride * n;
        size_t entry = 6 + 16 * i;
        out[entry] = uint8_t(n);
        out[entry + 1] = uint8_t(n);
        out[entry + 2] = 0;
        out[entry + 3] = 0;
        put16(entry + 4, cursor ? uint16_t(im.hotX) : 1);
        put16(entry + 6, cursor ? uint16_t(im.hotY) : 32);
        put32(entry + 8, bytes);
        put32(entry + 12, uint32_t(out.size()));
        size_t at = out.size();
        out.resize(at + bytes, 0);
        put32(at, 40);
        put32(at + 4, uint32_t(n));
        put32(at + 8, uint32_t(2 * n));  // image and mask
        put16(at + 12, 1);
        put16(at + 14, 32);
        put32(at + 20, bytes - 40);
        for (int y = 0; y < n; ++y) {
            std::memcpy(&out[at + 40 + size_t(n - 1 - y) * n * 4], &im.bgra[size_t(y) * n * 4], size_t(n) * 4);
            // AND mask: 1 where transparent.
            uint8_t* mask = &out[at + 40 + size_t(n) * n * 4 + size_t(n - 1 - y) * maskStride];
            for (int x = 0; x < n; ++x)
                if (im.bgra[(size_t(y) * n + x) * 4 + 3] < 128) mask[x / 8] |= uint8_t(0x80 >> (x % 8));
        }
    }
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return false;
    bool ok = std::fwrite(out.data(), 1, out.size(), f) == out.size();
    return std::fclose(f) == 0 && ok;
}

// The house pointer: a brass arrow with a dark outline; its tip is the hotspot (1, 1).
void Arrow(cairo_t* cr, double scale) {
    cairo_save(cr);
    cairo_scale(cr, scale, scale);
    cairo_move_to(cr, 1, 1);
    cairo_line_to(cr, 1, 18);
    cairo_line_to(cr, 5.5, 14);
    cairo_line_to(cr, 9, 21);
    cairo_line_to(cr, 12, 19.5);
    cairo_line_to(cr, 8.5, 12.5);
    cairo_line_to(cr, 14, 12.5);
    cairo_close_path(cr);
    cairo_pattern_t* g = cairo_pattern_create_linear(0, 0, 12, 20);
    cairo_pattern_add_color_stop_rgb(g, 0, 1.0, 0.95, 0.77);
    cairo_pattern_add_color_stop_rgb(g, 1, 0.76, 0.6, 0.27);
    cairo_set_source(cr, g);
    cairo_fill_preserve(cr);
    cairo_pattern_destroy(g);
    cairo_set_source_rgb(cr, 0.16, 0.09, 0.05);
    cairo_set_line_width(cr, 1.2);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_stroke(cr);
    cairo_restore(cr);
}

IconImage NormalCursor() {
    cairo_surface_t* s = NewSurface(32, 32);
    cairo_t* cr = cairo_create(s);
    Arrow(cr, 1.0);
    cairo_destroy(cr);
    IconImage im = Capture(s, 1, 1);
    cairo_surface_destroy(s);
    return im;
}

// Pointer with a tray under it: "put the piece into this tray".
IconImage TrayCursor() {
    cairo_surface_t* s = NewSurface(32, 32);
    cairo_t* cr = cairo_create(s);
    Arrow(cr, 1.0);
    cairo_set_source_rgb(cr, 0.16, 0.09, 0.05);
    DrawIcon(cr, kIconTray, 22, 23, 18, Hex(0x2a170c));
    DrawIcon(cr, kIconTray, 22, 22.5, 15, Hex(0xc29a45));
    PiecePath(cr, 16, 10, 12);
    cairo_set_source_rgb(cr, 0.85, 0.57, 0.39);
    cairo_fill_preserve(cr);
    cairo_set_source_rgb(cr, 0.16, 0.09, 0.05);
    cairo_set_line_width(cr, 1);
    cairo_stroke(cr);
    cairo_destroy(cr);
    IconImage im = Capture(s, 1, 1);
    cairo_surface_destroy(s);
    return im;
}

// Four arrows around a piece: dragging to resize or to change the count; hotspot in the middle.
IconImage DragCursor() {
    cairo_surface_t* s = NewSurface(32, 32);
    cairo_t* cr = cairo_create(s);
    for (int k = 0; k < 4; ++k) {
        Icon icons[4] = {kIconArrowUp, kIconArrowDown, kIconArrowLeft, kIconArrowRight};
        double dx[4] = {0, 0, -10, 10}, dy[4] = {-10, 10, 0, 0};
        DrawIcon(cr, icons[k], 16 + dx[k], 16 + dy[k], 13, Hex(0x2a170c));
        DrawIcon(cr, icons[k], 16 + dx[k], 16 + dy[k], 10, Hex(0xe9cf86));
    }
    cairo_arc(cr, 16, 16, 3.5, 0, 2 * M_PI);
    cairo_set_source_rgb(cr, 0.85, 0.57, 0.39);
    cairo_fill_preserve(cr);
    cairo_set_source_rgb(cr, 0.16, 0.09, 0.05);
    cairo_set_line_width(cr, 1);
    cairo_stroke(cr);
    cairo_destroy(cr);
    IconImage im = Capture(s, 16, 16);
    cairo_surface_destroy(s);
    return im;
}

// The application icon: a copper piece on a walnut tile with a brass rim.
IconImage AppIcon(int n) {
    cairo_surface_t* s = NewSurface(n, n);
    cairo_t* cr = cairo_create(s);
    double k = n / 48.0;
    RoundedRect(cr, 1 * k, 1 * k, 46 * k, 46 * k, 9 * k);
    cairo_pattern_t* g = cairo_pattern_create_linear(0, 0, 0, n);
    cairo_pattern_add_color_stop_rgb(g, 0, 0.54, 0.35, 0.19);
    cairo_pattern_add_color_stop_rgb(g, 1, 0.2, 0.11, 0.05);
    cairo_set_source(cr, g);
    cairo_fill_preserve(cr);
    cairo_pattern_destroy(g);
    cairo_set_source_rgb(cr, 0.76, 0.6, 0.27);
    cairo_set_line_width(cr, 2 * k);
    cairo_stroke(cr);
    PiecePath(cr, 4 * k, 4 * k, 40 * k);
    g = cairo_pattern_create_linear(8 * k, 8 * k, 40 * k, 40 * k);
    cairo_pattern_add_color_stop_rgb(g, 0, 0.98, 0.8, 0.62);
    cairo_pattern_add_color_stop_rgb(g, 1, 0.72, 0.4, 0.22);
    cairo_set_source(cr, g);
    cairo_fill_preserve(cr);
    cairo_pattern_destroy(g);
    cairo_set_source_rgb(cr, 0.16, 0.09, 0.05);
    cairo_set_line_width(cr, 1.5 * k);
    cairo_stroke(cr);
    cairo_destroy(cr);
    IconImage im = Capture(s, 0, 0);
    cairo_surface_destroy(s);
    return im;
}

}  // namespace

bool WriteCursors(const std::string& folder) {
    return WriteIconFile(folder + "/tray.cur", {TrayCursor()}, true) &&
           WriteIconFile(folder + "/drag.cur", {DragCursor()}, true) &&
           WriteIconFile(folder + "/normal.cur", {NormalCursor()}, true);
}

bool WriteIcon(const std::string& path) { return WriteIconFile(path, {AppIcon(16), AppIcon(32), AppIcon(48)}, false); }
