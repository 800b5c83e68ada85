// Contact sheet and PNG previews, read back from the packed DIBs so they show exactly what the game gets.
#include "artgen/contact.h"

#include <algorithm>
#include <cstdio>

#include "artgen/paint.h"
#include "gfx/dib.h"

static cairo_surface_t* DibToSurface(const uint8_t* dib) {
    const DibHeader* h = DibHeaderOf(dib);
    int w = h->biWidth, hh = h->biHeight < 0 ? -h->biHeight : h->biHeight;
    cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_RGB24, w, hh);
    cairo_surface_flush(s);
    unsigned char* data = cairo_image_surface_get_data(s);
    int stride = cairo_image_surface_get_stride(s);
    int64_t dibStride = DibStride(h->biBitCount, w);
    const DibColor* palette = DibPalette(dib);
    for (int y = 0; y < hh; ++y) {
        const uint8_t* row = DibPixels(dib) + (h->biHeight > 0 ? hh - 1 - y : y) * dibStride;
        uint32_t* out = reinterpret_cast<uint32_t*>(data + y * stride);
        for (int x = 0; x < w; ++x) {
            uint8_t r, g, b;
            if (h->biBitCount == 8) {
                DibColor c = palette[row[x]];
                r = c.red, g = c.green, b = c.blue;
            } else {
                b = row[3 * x], g = row[3 * x + 1], r = row[3 * x + 2];
            }
            out[x] = 0xFF000000u | (uint32_t(r) << 16) | (uint32_t(g) << 8) | b;
        }
    }
    cairo_surface_mark_dirty(s);
    return s;
}

bool WriteDibPng(const std::string& path, const uint8_t* dib) {
    cairo_surface_t* s = DibToSurface(dib);
    bool ok = cairo_surface_write_to_png(s, path.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(s);
    return ok;
}

bool WriteContactSheet(const std::string& path, const std::vector<ContactEntry>& entries) {
    const int columns = 8, cellW = 220, cellH = 190, thumbW = 200, thumbH = 140;
    int rows = int((entries.size() + columns - 1) / columns);
    cairo_surface_t* sheet = cairo_image_surface_create(CAIRO_FORMAT_RGB24, columns * cellW, rows * cellH + 60);
    cairo_t* cr = cairo_create(sheet);
    cairo_set_source_rgb(cr, 0.16, 0.16, 0.17);
    cairo_paint(cr);
    TextStyle title{kTitleFont, 30, Hex(0xe9cf86), kTextPlain, -1, false};
    DrawText(cr, "Tavirel Puzzle \u2014 resource pack contact sheet", 16, 8, columns * cellW - 32, 44, title);
    for (size_t i = 0; i < entries.size(); ++i) {
        double x = double(i % columns) * cellW + 10, y = double(i / columns) * cellH + 60;
        cairo_surface_t* item = DibToSurface(entries[i].dib);
        int w = cairo_image_surface_get_width(item), h = cairo_image_surface_get_height(item);
        double scale = std::min({1.0, double(thumbW) / w, double(thumbH) / h});
        // A checker behind shows the item's true extent.
        cairo_rectangle(cr, x, y, thumbW, thumbH);
        cairo_set_source_rgb(cr, 0.24, 0.24, 0.25);
        cairo_fill(cr);
        cairo_save(cr);
        cairo_translate(cr, x + (thumbW - w * scale) / 2, y + (thumbH - h * scale) / 2);
        cairo_scale(cr, scale, scale);
        cairo_set_source_surface(cr, item, 0, 0);
        cairo_pattern_set_filter(cairo_get_source(cr), scale < 1 ? CAIRO_FILTER_GOOD : CAIRO_FILTER_NEAREST);
        cairo_paint(cr);
        cairo_restore(cr);
        cairo_surface_destroy(item);
        char id[32];
        std::snprintf(id, sizeof id, "%u", entries[i].id);
        TextStyle big{"Lato Bold", 16, Hex(0xffffff), kTextPlain, -1, false};
        DrawText(cr, id, x, y + thumbH + 2, thumbW, 20, big);
        TextStyle small{"Lato", 11, Hex(0xbbbbbb), kTextPlain, -1, false};
        DrawText(cr, entries[i].label, x, y + thumbH + 22, thumbW, 16, small);
    }
    cairo_destroy(cr);
    bool ok = cairo_surface_write_to_png(sheet, path.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(sheet);
    return ok;
}
