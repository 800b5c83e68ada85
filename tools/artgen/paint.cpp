// Materials, text and icons of the house look.
#include "artgen/paint.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "artgen/noise.h"
#include "gfx/dib.h"

Rgb Hex(uint32_t rgb) { return Rgb{((rgb >> 16) & 255) / 255.0, ((rgb >> 8) & 255) / 255.0, (rgb & 255) / 255.0}; }
Rgb Mix(Rgb a, Rgb b, double t) { return Rgb{a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t}; }
Rgb Scale(Rgb c, double f) {
    auto one = [f](double v) { return std::clamp(f <= 1 ? v * f : v + (1 - v) * (f - 1), 0.0, 1.0); };
    return Rgb{one(c.r), one(c.g), one(c.b)};
}

namespace house {
const Rgb kWalnutDark = Hex(0x2a170c), kWalnut = Hex(0x5a3418), kWalnutLight = Hex(0x8a5a30);
const Rgb kBrassDark = Hex(0x6e4f16), kBrass = Hex(0xc29a45), kBrassLight = Hex(0xe9cf86), kBrassShine = Hex(0xfff2c4);
const Rgb kParchment = Hex(0xf3e7c9), kParchmentDark = Hex(0xd6bf8e), kInk = Hex(0x3b2312), kInkSoft = Hex(0x6b4a2e);
const Rgb kBaize = Hex(0x1f5e3d), kBaizeDark = Hex(0x123a25), kCopper = Hex(0xd89264), kCream = Hex(0xfbf3dc);
const Rgb kRuby = Hex(0x9e2a2b), kEmerald = Hex(0x2e7d4f);
}  // namespace house
using namespace house;

const char* const kTitleFont = "Linux Libertine O Bold";
const char* const kButtonFont = "Lato Heavy";
const char* const kTextFont = "Lato";

cairo_surface_t* NewSurface(int width, int height) {
    cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    return s;
}

void SetColor(cairo_t* cr, Rgb c, double alpha) { cairo_set_source_rgba(cr, c.r, c.g, c.b, alpha); }

void RoundedRect(cairo_t* cr, double x, double y, double w, double h, double r) {
    r = std::min({r, w / 2, h / 2});
    if (r <= 0) {
        cairo_rectangle(cr, x, y, w, h);
        return;
    }
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + w - r, y + r, r, -M_PI / 2, 0);
    cairo_arc(cr, x + w - r, y + h - r, r, 0, M_PI / 2);
    cairo_arc(cr, x + r, y + h - r, r, M_PI / 2, M_PI);
    cairo_arc(cr, x + r, y + r, r, M_PI, 3 * M_PI / 2);
    cairo_close_path(cr);
}

// Writes one opaque pixel into an ARGB32 surface's data.
static void PutPixel(unsigned char* data, int stride, int x, int y, Rgb c) {
    uint32_t* row = reinterpret_cast<uint32_t*>(data + y * stride);
    auto b = [](double v) { return uint32_t(std::lround(std::clamp(v, 0.0, 1.0) * 255)); };
    row[x] = 0xFF000000u | (b(c.r) << 16) | (b(c.g) << 8) | b(c.b);
}

cairo_surface_t* MakeWood(int width, int height, Rgb dark, Rgb light, uint32_t seed, bool vertical) {
    cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    cairo_surface_flush(s);
    unsigned char* data = cairo_image_surface_get_data(s);
    int stride = cairo_image_surface_get_stride(s);
    // Grain runs along the long axis: few lattice cells along it, many across it.
    int along = vertical ? height : width, across = vertical ? width : height;
    int cellsAlong = std::max(1, along / 60), cellsAcross = std::max(2, across / 6);
    int rings = std::max(1, across / 14);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            double u = double(vertical ? y : x) / along, v = double(vertical ? x : y) / across;
            double warp = PeriodicFbm(u, v, cellsAlong, std::max(1, cellsAcross / 6), 3, seed);
            double ring = 0.5 + 0.5 * std::sin(2 * M_PI * (v * rings + 1.6 * warp));
            double fine = PeriodicFbm(u, v, cellsAlong * 4, cellsAcross, 2, seed + 11);
            double t = 0.55 * std::pow(ring, 1.6) + 0.45 * fine;
            Rgb c = Mix(dark, light, std::clamp(t, 0.0, 1.0));
            double pore = PeriodicNoise(u * along / 3.0, v * across, std::max(1, along / 3), across, seed + 5);
            if (pore > 0.93) c = Scale(c, 0.85);
            PutPixel(data, stride, x, y, c);
        }
    cairo_surface_mark_dirty(s);
    return s;
}

cairo_surface_t* MakeParchment(int width, int height, uint32_t seed) {
    cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    cairo_surface_flush(s);
    unsigned char* data = cairo_image_surface_get_data(s);
    int stride = cairo_image_surface_get_stride(s);
    int cx = std::max(1, width / 90), cy = std::max(1, height / 90);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            double u = double(x) / width, v = double(y) / height;
            double blot = PeriodicFbm(u, v, cx, cy, 4, seed);
            double grain = PeriodicNoise(u * width / 2.0, v * height / 2.0, std::max(1, width / 2),
                                         std::max(1, height / 2), seed + 3);
            Rgb c = Mix(kCream, kParchmentDark, std::clamp((blot - 0.35) * 1.1, 0.0, 1.0) * 0.55);
            c = Scale(c, 0.97 + 0.05 * grain);
            PutPixel(data, stride, x, y, c);
        }
    cairo_surface_mark_dirty(s);
    return s;
}

cairo_surface_t* MakeFelt(int width, int height, Rgb base, double fibre, uint32_t seed) {
    cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    cairo_surface_flush(s);
    unsigned char* data = cairo_image_surface_get_data(s);
    int stride = cairo_image_surface_get_stride(s);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            double u = double(x) / width, v = double(y) / height;
            double cloud = PeriodicFbm(u, v, std::max(1, width / 50), std::max(1, height / 50), 3, seed);
            double hair = PeriodicNoise(u * width, v * height, width, height, seed + 7);
            double hair2 = PeriodicNoise(u * width / 2.0, v * height * 0.5, std::max(1, width / 2),
                                         std::max(1, height / 2), seed + 9);
            double f = 0.92 + 0.16 * (cloud - 0.5) + fibre * ((hair - 0.5) * 0.6 + (hair2 - 0.5) * 0.4);
            PutPixel(data, stride, x, y, Scale(base, f));
        }
    cairo_surface_mark_dirty(s);
    return s;
}

void FillWithTexture(cairo_t* cr, cairo_surface_t* texture, bool preserve) {
    cairo_pattern_t* p = cairo_pattern_create_for_surface(texture);
    cairo_pattern_set_extend(p, CAIRO_EXTEND_REPEAT);
    cairo_set_source(cr, p);
    if (preserve)
        cairo_fill_preserve(cr);
    else
        cairo_fill(cr);
    cairo_pattern_destroy(p);
}

void DrawWoodBoard(cairo_t* cr, double x, double y, double w, double h, uint32_t seed, bool vertical) {
    int tw = vertical ? 128 : 512, th = vertical ? 512 : 128;
    cairo_surface_t* wood = MakeWood(tw, th, kWalnutDark, kWalnutLight, seed, vertical);
    cairo_save(cr);
    cairo_rectangle(cr, x, y, w, h);
    cairo_translate(cr, x, y);
    FillWithTexture(cr, wood);
    cairo_restore(cr);
    cairo_surface_destroy(wood);
}

void DrawParchment(cairo_t* cr, double x, double y, double w, double h, double r, uint32_t seed) {
    cairo_surface_t* paper = MakeParchment(256, 256, seed);
    cairo_save(cr);
    RoundedRect(cr, x, y, w, h, r);
    cairo_translate(cr, x, y);
    FillWithTexture(cr, paper, true);
    cairo_restore(cr);
    // Darkened, slightly burnt edges.
    cairo_save(cr);
    cairo_clip(cr);
    double edge = std::min(w, h) * 0.18;
    cairo_pattern_t* g;
    for (int side = 0; side < 4; ++side) {
        double x0 = x, y0 = y, x1 = x, y1 = y;
        if (side == 0) { y1 = y + edge; }
        if (side == 1) { y0 = y + h; y1 = y + h - edge; }
        if (side == 2) { x1 = x + edge; }
        if (side == 3) { x0 = x + w; x1 = x + w - edge; }
        g = cairo_pattern_create_linear(x0, y0, x1, y1);
        cairo_pattern_add_color_stop_rgba(g, 0, 0.55, 0.38, 0.18, 0.35);
        cairo_pattern_add_color_stop_rgba(g, 1, 0.55, 0.38, 0.18, 0.0);
        cairo_set_source(cr, g);
        cairo_paint(cr);
        cairo_pattern_destroy(g);
    }
    cairo_restore(cr);
}

void DrawBaize(cairo_t* cr, double x, double y, double w, double h, double r, uint32_t seed) {
    cairo_surface_t* felt = MakeFelt(128, 128, kBaize, 0.25, seed);
    cairo_save(cr);
    RoundedRect(cr, x, y, w, h, r);
    cairo_translate(cr, x, y);
    FillWithTexture(cr, felt);
    cairo_restore(cr);
    cairo_surface_destroy(felt);
}

void DrawShadow(cairo_t* cr, double x, double y, double w, double h, double r, double spread, double alpha) {
    int steps = std::max(1, int(spread));
    for (int i = steps; i >= 1; --i) {
        RoundedRect(cr, x - i + spread * 0.3, y - i + spread * 0.5, w + 2 * i, h + 2 * i, r + i);
        cairo_set_source_rgba(cr, 0, 0, 0, alpha / steps * 0.9);
        cairo_fill(cr);
    }
}

void DrawBrassPlate(cairo_t* cr, double x, double y, double w, double h, double r, ButtonState state) {
    double lift = state == kStateLit ? 1.12 : state == kStatePressed ? 0.86 : 1.0;
    Rgb top = Scale(kBrassLight, lift), mid = Scale(kBrass, lift), low = Scale(kBrassDark, lift);
    // Outer dark rim.
    RoundedRect(cr, x, y, w, h, r);
    SetColor(cr, Scale(kWalnutDark, 0.8));
    cairo_fill(cr);
    double inset = 1.5;
    cairo_pattern_t* g = cairo_pattern_create_linear(0, y, 0, y + h);
    if (state == kStatePressed) std::swap(top, low);
    cairo_pattern_add_color_stop_rgb(g, 0, top.r, top.g, top.b);
    cairo_pattern_add_color_stop_rgb(g, 0.45, mid.r, mid.g, mid.b);
    cairo_pattern_add_color_stop_rgb(g, 0.55, Scale(mid, 0.92).r, Scale(mid, 0.92).g, Scale(mid, 0.92).b);
    cairo_pattern_add_color_stop_rgb(g, 1, low.r, low.g, low.b);
    RoundedRect(cr, x + inset, y + inset, w - 2 * inset, h - 2 * inset, std::max(0.0, r - inset));
    cairo_set_source(cr, g);
    cairo_fill(cr);
    cairo_pattern_destroy(g);
    // Brushed streaks.
    cairo_save(cr);
    RoundedRect(cr, x + inset, y + inset, w - 2 * inset, h - 2 * inset, std::max(0.0, r - inset));
    cairo_clip(cr);
    Rng rng{uint32_t(w * 131 + h * 7)};
    for (int i = 0; i < int(h * 1.5); ++i) {
        double yy = y + rng.Range(0, h);
        cairo_move_to(cr, x, yy);
        cairo_line_to(cr, x + w, yy + rng.Range(-1, 1));
        cairo_set_source_rgba(cr, 1, 1, 0.9, rng.Range(0.0, 0.08));
        cairo_set_line_width(cr, 0.7);
        cairo_stroke(cr);
    }
    cairo_restore(cr);
    // Bevel: light upper-left edge, dark lower-right edge.
    double bw = std::max(1.5, std::min(w, h) * 0.07);
    RoundedRect(cr, x + inset + bw / 2, y + inset + bw / 2, w - 2 * inset - bw, h - 2 * inset - bw,
                std::max(0.0, r - inset - bw / 2));
    g = cairo_pattern_create_linear(x, y, x + w * 0.3, y + h);
    Rgb hi = state == kStatePressed ? Scale(kBrassDark, 0.9) : Scale(kBrassShine, lift);
    Rgb lo = state == kStatePressed ? kBrassLight : Scale(kBrassDark, 0.8);
    cairo_pattern_add_color_stop_rgba(g, 0, hi.r, hi.g, hi.b, 0.9);
    cairo_pattern_add_color_stop_rgba(g, 0.5, hi.r, hi.g, hi.b, 0.0);
    cairo_pattern_add_color_stop_rgba(g, 0.5, lo.r, lo.g, lo.b, 0.0);
    cairo_pattern_add_color_stop_rgba(g, 1, lo.r, lo.g, lo.b, 0.8);
    cairo_set_source(cr, g);
    cairo_set_line_width(cr, bw);
    cairo_stroke(cr);
    cairo_pattern_destroy(g);
    if (state == kStateLit) {  // warm glow of a lit button
        cairo_pattern_t* glow = cairo_pattern_create_radial(x + w / 2, y + h / 2, 0, x + w / 2, y + h / 2,
                                                            std::max(w, h) * 0.6);
        cairo_pattern_add_color_stop_rgba(glow, 0, 1, 0.95, 0.7, 0.35);
        cairo_pattern_add_color_stop_rgba(glow, 1, 1, 0.95, 0.7, 0.0);
        RoundedRect(cr, x + inset, y + inset, w - 2 * inset, h - 2 * inset, std::max(0.0, r - inset));
        cairo_set_source(cr, glow);
        cairo_fill(cr);
        cairo_pattern_destroy(glow);
    }
}

void DrawBevel(cairo_t* cr, double x, double y, double w, double h, double r, double width, bool raised) {
    cairo_save(cr);
    cairo_set_line_width(cr, width);
    RoundedRect(cr, x + width / 2, y + width / 2, w - width, h - width, r);
    cairo_pattern_t* g = cairo_pattern_create_linear(x, y, x + w * 0.25, y + h);
    double a = raised ? 1 : 0, b = raised ? 0 : 1;
    cairo_pattern_add_color_stop_rgba(g, 0, a, a, a * 0.9, 0.45);
    cairo_pattern_add_color_stop_rgba(g, 0.5, 0.5, 0.5, 0.5, 0.0);
    cairo_pattern_add_color_stop_rgba(g, 1, b, b, b * 0.9, 0.45);
    cairo_set_source(cr, g);
    cairo_stroke(cr);
    cairo_pattern_destroy(g);
    cairo_restore(cr);
}

void DrawInlay(cairo_t* cr, double x, double y, double w, double h, double r) {
    cairo_save(cr);
    RoundedRect(cr, x + 1, y + 1, w, h, r);
    SetColor(cr, kWalnutDark, 0.7);
    cairo_set_line_width(cr, 1.2);
    cairo_stroke(cr);
    RoundedRect(cr, x, y, w, h, r);
    SetColor(cr, kBrassLight);
    cairo_set_line_width(cr, 1.2);
    cairo_stroke(cr);
    cairo_restore(cr);
}

void DrawFrameMoulding(cairo_t* cr, double x, double y, double w, double h, double width, uint32_t seed) {
    double ox = x - width, oy = y - width, ow = w + 2 * width, oh = h + 2 * width;
    cairo_save(cr);
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_rectangle(cr, ox, oy, ow, oh);
    cairo_rectangle(cr, x, y, w, h);
    cairo_clip(cr);
    DrawWoodBoard(cr, ox, oy, ow, oh, seed);
    // Rounded moulding profile: light on the outer half, shade toward the opening.
    for (int side = 0; side < 4; ++side) {
        cairo_pattern_t* g;
        if (side == 0) g = cairo_pattern_create_linear(0, oy, 0, y);
        else if (side == 1) g = cairo_pattern_create_linear(0, oy + oh, 0, y + h);
        else if (side == 2) g = cairo_pattern_create_linear(ox, 0, x, 0);
        else g = cairo_pattern_create_linear(ox + ow, 0, x + w, 0);
        bool lightSide = side == 0 || side == 2;
        cairo_pattern_add_color_stop_rgba(g, 0, 0, 0, 0, 0.55);
        cairo_pattern_add_color_stop_rgba(g, 0.15, 1, 0.9, 0.7, lightSide ? 0.28 : 0.08);
        cairo_pattern_add_color_stop_rgba(g, 0.55, 0, 0, 0, 0.0);
        cairo_pattern_add_color_stop_rgba(g, 1, 0, 0, 0, lightSide ? 0.45 : 0.3);
        cairo_save(cr);
        cairo_new_path(cr);
        // The trapezoid of this side (mitred corners).
        if (side == 0) { cairo_move_to(cr, ox, oy); cairo_line_to(cr, ox + ow, oy); cairo_line_to(cr, x + w, y); cairo_line_to(cr, x, y); }
        if (side == 1) { cairo_move_to(cr, ox, oy + oh); cairo_line_to(cr, ox + ow, oy + oh); cairo_line_to(cr, x + w, y + h); cairo_line_to(cr, x, y + h); }
        if (side == 2) { cairo_move_to(cr, ox, oy); cairo_line_to(cr, x, y); cairo_line_to(cr, x, y + h); cairo_line_to(cr, ox, oy + oh); }
        if (side == 3) { cairo_move_to(cr, ox + ow, oy); cairo_line_to(cr, x + w, y); cairo_line_to(cr, x + w, y + h); cairo_line_to(cr, ox + ow, oy + oh); }
        cairo_close_path(cr);
        cairo_set_source(cr, g);
        cairo_fill(cr);
        cairo_restore(cr);
        cairo_pattern_destroy(g);
    }
    // Mitre lines.
    cairo_set_line_width(cr, 1);
    SetColor(cr, kWalnutDark, 0.6);
    cairo_move_to(cr, ox, oy); cairo_line_to(cr, x, y);
    cairo_move_to(cr, ox + ow, oy); cairo_line_to(cr, x + w, y);
    cairo_move_to(cr, ox, oy + oh); cairo_line_to(cr, x, y + h);
    cairo_move_to(cr, ox + ow, oy + oh); cairo_line_to(cr, x + w, y + h);
    cairo_stroke(cr);
    cairo_restore(cr);
    // Gold lip around the opening.
    double lip = std::max(2.0, width * 0.14);
    cairo_save(cr);
    cairo_rectangle(cr, x - lip / 2, y - lip / 2, w + lip, h + lip);
    cairo_pattern_t* g = cairo_pattern_create_linear(x, y, x + w, y + h);
    cairo_pattern_add_color_stop_rgb(g, 0, kBrassShine.r, kBrassShine.g, kBrassShine.b);
    cairo_pattern_add_color_stop_rgb(g, 0.5, kBrass.r, kBrass.g, kBrass.b);
    cairo_pattern_add_color_stop_rgb(g, 1, kBrassDark.r, kBrassDark.g, kBrassDark.b);
    cairo_set_source(cr, g);
    cairo_set_line_width(cr, lip);
    cairo_stroke(cr);
    cairo_pattern_destroy(g);
    cairo_restore(cr);
    // Outer edge line.
    cairo_rectangle(cr, ox + 0.5, oy + 0.5, ow - 1, oh - 1);
    SetColor(cr, kWalnutDark);
    cairo_set_line_width(cr, 1);
    cairo_stroke(cr);
}

static PangoLayout* MakeLayout(cairo_t* cr, const std::string& text, const char* font, double size, double width,
                               int align, bool wrap) {
    PangoLayout* layout = pango_cairo_create_layout(cr);
    PangoFontDescription* desc = pango_font_description_from_string(font);
    pango_font_description_set_absolute_size(desc, size * PANGO_SCALE);
    pango_layout_set_font_description(layout, desc);
    pango_font_description_free(desc);
    pango_layout_set_text(layout, text.c_str(), -1);
    if (wrap) {
        pango_layout_set_width(layout, int(width * PANGO_SCALE));
        pango_layout_set_wrap(layout, PANGO_WRAP_WORD);
    }
    pango_layout_set_alignment(layout, align < 0 ? PANGO_ALIGN_LEFT : align > 0 ? PANGO_ALIGN_RIGHT : PANGO_ALIGN_CENTER);
    return layout;
}

static void RenderLayout(cairo_t* cr, PangoLayout* layout, double x, double y, const TextStyle& s) {
    auto at = [&](double dx, double dy, Rgb c, double alpha) {
        cairo_move_to(cr, x + dx, y + dy);
        SetColor(cr, c, alpha);
        pango_cairo_show_layout(cr, layout);
    };
    double k = std::max(1.0, s.size / 28);
    switch (s.effect) {
    case kTextEngraved:
        at(0, k, kBrassShine, 0.8);
        at(0, -0.6 * k, kBrassDark, 0.5);
        at(0, 0, s.color, 1);
        break;
    case kTextRaised:
        at(k, 1.5 * k, Hex(0x000000), 0.55);
        at(0, 0, s.color, 1);
        break;
    case kTextGlow: {
        cairo_save(cr);
        cairo_move_to(cr, x, y);
        pango_cairo_layout_path(cr, layout);
        cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
        for (int i = 4; i >= 1; --i) {
            cairo_set_line_width(cr, i * 2.0 * k);
            cairo_set_source_rgba(cr, 0.15, 0.07, 0.02, 0.18);
            cairo_stroke_preserve(cr);
        }
        cairo_new_path(cr);
        cairo_restore(cr);
        at(0, 0, s.color, 1);
        break;
    }
    default:
        at(0, 0, s.color, 1);
    }
}

double DrawText(cairo_t* cr, const std::string& utf8, double x, double y, double w, double h, const TextStyle& s) {
    double size = s.size;
    PangoLayout* layout = nullptr;
    int lw = 0, lh = 0;
    for (;;) {
        if (layout) g_object_unref(layout);
        layout = MakeLayout(cr, utf8, s.font, size, w, s.align, s.wrap);
        PangoRectangle ink, logical;
        pango_layout_get_pixel_extents(layout, &ink, &logical);
        lw = logical.width;
        lh = logical.height;
        if ((lw <= w && lh <= h) || size < s.size * 0.4) break;
        size *= 0.94;
    }
    double tx = s.wrap ? x : s.align < 0 ? x : s.align > 0 ? x + w - lw : x + (w - lw) / 2;
    double ty = y + (h - lh) / 2;
    TextStyle used = s;
    used.size = size;
    RenderLayout(cr, layout, tx, ty, used);
    g_object_unref(layout);
    return size;
}

void DrawTextUpwards(cairo_t* cr, const std::string& utf8, double x, double y, double w, double h,
                     const TextStyle& s) {
    cairo_save(cr);
    cairo_translate(cr, x, y + h);
    cairo_rotate(cr, -M_PI / 2);
    DrawText(cr, utf8, 0, 0, h, w, s);
    cairo_restore(cr);
}

void PiecePath(cairo_t* cr, double x, double y, double s) {
    // Unit piece in a square with room for the tabs: body from 0.18 to 0.82.
    auto P = [&](double u, double v) { return std::pair<double, double>(x + u * s, y + v * s); };
    double a = 0.2, b = 0.8;
    auto m = [&](double u, double v) { auto p = P(u, v); cairo_move_to(cr, p.first, p.second); };
    auto l = [&](double u, double v) { auto p = P(u, v); cairo_line_to(cr, p.first, p.second); };
    auto c = [&](double u1, double v1, double u2, double v2, double u3, double v3) {
        auto p1 = P(u1, v1), p2 = P(u2, v2), p3 = P(u3, v3);
        cairo_curve_to(cr, p1.first, p1.second, p2.first, p2.second, p3.first, p3.second);
    };
    m(a, a);
    // Top edge with a tab going up.
    l(0.42, a);
    c(0.45, a - 0.02, 0.36, a - 0.16, 0.5, a - 0.17);
    c(0.64, a - 0.16, 0.55, a - 0.02, 0.58, a);
    l(b, a);
    // Right edge with a tab going out.
    l(b, 0.42);
    c(b + 0.02, 0.45, b + 0.16, 0.36, b + 0.17, 0.5);
    c(b + 0.16, 0.64, b + 0.02, 0.55, b, 0.58);
    l(b, b);
    // Bottom edge with a blank (hollow going in).
    l(0.58, b);
    c(0.55, b - 0.02, 0.64, b - 0.16, 0.5, b - 0.17);
    c(0.36, b - 0.16, 0.45, b - 0.02, 0.42, b);
    l(a, b);
    // Left edge with a blank.
    l(a, 0.58);
    c(a + 0.02, 0.55, a + 0.16, 0.64, a + 0.17, 0.5);
    c(a + 0.16, 0.36, a + 0.02, 0.45, a, 0.42);
    cairo_close_path(cr);
}

static void Glyph(cairo_t* cr, const char* text, const char* font, double cx, double cy, double size, Rgb color) {
    TextStyle s{font, size, color, kTextPlain, 0, false};
    DrawText(cr, text, cx - size, cy - size * 0.62, 2 * size, size * 1.24, s);
}

void DrawIcon(cairo_t* cr, Icon icon, double cx, double cy, double size, Rgb color) {
    cairo_save(cr);
    double s = size / 2;  // half size
    double lw = std::max(1.5, size * 0.12);
    cairo_set_line_width(cr, lw);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    SetColor(cr, color);
    switch (icon) {
    case kIconClose:
        cairo_set_line_width(cr, lw * 1.3);
        cairo_move_to(cr, cx - s * 0.6, cy - s * 0.6); cairo_line_to(cr, cx + s * 0.6, cy + s * 0.6);
        cairo_move_to(cr, cx + s * 0.6, cy - s * 0.6); cairo_line_to(cr, cx - s * 0.6, cy + s * 0.6);
        cairo_stroke(cr);
        break;
    case kIconHelp: Glyph(cr, "?", "Linux Libertine O Bold", cx, cy, size * 1.1, color); break;
    case kIconInfo: Glyph(cr, "i", "Linux Libertine O Bold Italic", cx, cy, size * 1.1, color); break;
    case kIconActualSize: Glyph(cr, "1:1", "Lato Black", cx, cy, size * 0.62, color); break;
    case kIconCheck:
        cairo_set_line_width(cr, lw * 1.4);
        cairo_move_to(cr, cx - s * 0.65, cy + s * 0.02);
        cairo_line_to(cr, cx - s * 0.18, cy + s * 0.5);
        cairo_line_to(cr, cx + s * 0.7, cy - s * 0.55);
        cairo_stroke(cr);
        break;
    case kIconArrowLeft: case kIconArrowRight: case kIconArrowUp: case kIconArrowDown: {
        double angle = icon == kIconArrowRight ? 0 : icon == kIconArrowDown ? M_PI / 2 : icon == kIconArrowLeft ? M_PI : -M_PI / 2;
        cairo_translate(cr, cx, cy);
        cairo_rotate(cr, angle);
        cairo_move_to(cr, s * 0.75, 0);
        cairo_line_to(cr, -s * 0.25, -s * 0.7);
        cairo_line_to(cr, -s * 0.25, -s * 0.25);
        cairo_line_to(cr, -s * 0.75, -s * 0.25);
        cairo_line_to(cr, -s * 0.75, s * 0.25);
        cairo_line_to(cr, -s * 0.25, s * 0.25);
        cairo_line_to(cr, -s * 0.25, s * 0.7);
        cairo_close_path(cr);
        cairo_fill(cr);
        break;
    }
    case kIconMusic:
        cairo_arc(cr, cx - s * 0.45, cy + s * 0.5, s * 0.26, 0, 2 * M_PI);
        cairo_fill(cr);
        cairo_arc(cr, cx + s * 0.45, cy + s * 0.32, s * 0.26, 0, 2 * M_PI);
        cairo_fill(cr);
        cairo_set_line_width(cr, lw * 0.8);
        cairo_move_to(cr, cx - s * 0.22, cy + s * 0.5); cairo_line_to(cr, cx - s * 0.22, cy - s * 0.6);
        cairo_line_to(cr, cx + s * 0.68, cy - s * 0.8); cairo_line_to(cr, cx + s * 0.68, cy + s * 0.32);
        cairo_stroke(cr);
        cairo_set_line_width(cr, lw * 1.2);
        cairo_move_to(cr, cx - s * 0.22, cy - s * 0.42); cairo_line_to(cr, cx + s * 0.68, cy - s * 0.62);
        cairo_stroke(cr);
        break;
    case kIconMagnifier:
        cairo_arc(cr, cx - s * 0.15, cy - s * 0.15, s * 0.45, 0, 2 * M_PI);
        cairo_stroke(cr);
        cairo_set_line_width(cr, lw * 1.8);
        cairo_move_to(cr, cx + s * 0.18, cy + s * 0.18); cairo_line_to(cr, cx + s * 0.7, cy + s * 0.7);
        cairo_stroke(cr);
        break;
    case kIconCup:
        cairo_move_to(cr, cx - s * 0.55, cy - s * 0.7);
        cairo_line_to(cr, cx + s * 0.55, cy - s * 0.7);
        cairo_curve_to(cr, cx + s * 0.55, cy + s * 0.05, cx + s * 0.3, cy + s * 0.2, cx + s * 0.08, cy + s * 0.25);
        cairo_line_to(cr, cx + s * 0.08, cy + s * 0.5);
        cairo_line_to(cr, cx + s * 0.4, cy + s * 0.55);
        cairo_line_to(cr, cx + s * 0.4, cy + s * 0.75);
        cairo_line_to(cr, cx - s * 0.4, cy + s * 0.75);
        cairo_line_to(cr, cx - s * 0.4, cy + s * 0.55);
        cairo_line_to(cr, cx - s * 0.08, cy + s * 0.5);
        cairo_line_to(cr, cx - s * 0.08, cy + s * 0.25);
        cairo_curve_to(cr, cx - s * 0.3, cy + s * 0.2, cx - s * 0.55, cy + s * 0.05, cx - s * 0.55, cy - s * 0.7);
        cairo_close_path(cr);
        cairo_fill(cr);
        cairo_set_line_width(cr, lw * 0.7);
        cairo_arc(cr, cx - s * 0.55, cy - s * 0.35, s * 0.22, M_PI / 2, 3 * M_PI / 2);
        cairo_stroke(cr);
        cairo_arc_negative(cr, cx + s * 0.55, cy - s * 0.35, s * 0.22, M_PI / 2, -M_PI / 2);
        cairo_stroke(cr);
        break;
    case kIconBulb:
        cairo_arc(cr, cx, cy - s * 0.2, s * 0.5, M_PI * 0.8, M_PI * 2.2);
        cairo_line_to(cr, cx + s * 0.2, cy + s * 0.45);
        cairo_line_to(cr, cx - s * 0.2, cy + s * 0.45);
        cairo_close_path(cr);
        cairo_fill(cr);
        cairo_set_line_width(cr, lw * 0.7);
        cairo_move_to(cr, cx - s * 0.2, cy + s * 0.58); cairo_line_to(cr, cx + s * 0.2, cy + s * 0.58);
        cairo_move_to(cr, cx - s * 0.15, cy + s * 0.72); cairo_line_to(cr, cx + s * 0.15, cy + s * 0.72);
        cairo_stroke(cr);
        break;
    case kIconPiece:
        PiecePath(cr, cx - s, cy - s, size);
        cairo_fill(cr);
        break;
    case kIconPrinter:
        RoundedRect(cr, cx - s * 0.8, cy - s * 0.2, s * 1.6, s * 0.7, s * 0.1);
        cairo_fill(cr);
        cairo_rectangle(cr, cx - s * 0.45, cy - s * 0.75, s * 0.9, s * 0.5);
        cairo_set_line_width(cr, lw * 0.7);
        cairo_stroke(cr);
        cairo_rectangle(cr, cx - s * 0.45, cy + s * 0.3, s * 0.9, s * 0.5);
        cairo_fill(cr);
        break;
    case kIconDoor:
        cairo_rectangle(cr, cx - s * 0.5, cy - s * 0.75, s * 0.85, s * 1.5);
        cairo_set_line_width(cr, lw * 0.8);
        cairo_stroke(cr);
        cairo_move_to(cr, cx - s * 0.5, cy - s * 0.75);
        cairo_line_to(cr, cx + s * 0.1, cy - s * 0.55);
        cairo_line_to(cr, cx + s * 0.1, cy + s * 0.95);
        cairo_line_to(cr, cx - s * 0.5, cy + s * 0.75);
        cairo_close_path(cr);
        cairo_fill(cr);
        cairo_move_to(cr, cx + s * 0.3, cy); cairo_line_to(cr, cx + s * 0.85, cy);
        cairo_move_to(cr, cx + s * 0.65, cy - s * 0.2); cairo_line_to(cr, cx + s * 0.85, cy);
        cairo_line_to(cr, cx + s * 0.65, cy + s * 0.2);
        cairo_stroke(cr);
        break;
    case kIconMinimise:
        cairo_set_line_width(cr, lw * 1.4);
        cairo_move_to(cr, cx - s * 0.55, cy + s * 0.45); cairo_line_to(cr, cx + s * 0.55, cy + s * 0.45);
        cairo_stroke(cr);
        break;
    case kIconEraser:
        cairo_translate(cr, cx, cy);
        cairo_rotate(cr, -M_PI / 5);
        RoundedRect(cr, -s * 0.75, -s * 0.32, s * 1.5, s * 0.64, s * 0.1);
        cairo_set_line_width(cr, lw * 0.7);
        cairo_stroke(cr);
        RoundedRect(cr, -s * 0.75, -s * 0.32, s * 0.6, s * 0.64, s * 0.1);
        cairo_fill(cr);
        break;
    case kIconFolder:
        cairo_move_to(cr, cx - s * 0.8, cy - s * 0.55);
        cairo_line_to(cr, cx - s * 0.25, cy - s * 0.55);
        cairo_line_to(cr, cx - s * 0.1, cy - s * 0.38);
        cairo_line_to(cr, cx + s * 0.8, cy - s * 0.38);
        cairo_line_to(cr, cx + s * 0.8, cy + s * 0.6);
        cairo_line_to(cr, cx - s * 0.8, cy + s * 0.6);
        cairo_close_path(cr);
        cairo_fill(cr);
        break;
    case kIconDisk:
        RoundedRect(cr, cx - s * 0.7, cy - s * 0.7, s * 1.4, s * 1.4, s * 0.1);
        cairo_fill(cr);
        cairo_set_source_rgba(cr, 1, 1, 1, 0.75);
        cairo_rectangle(cr, cx - s * 0.4, cy - s * 0.7, s * 0.8, s * 0.45);
        cairo_fill(cr);
        cairo_rectangle(cr, cx - s * 0.45, cy + s * 0.1, s * 0.9, s * 0.5);
        cairo_fill(cr);
        break;
    case kIconTrash:
        cairo_move_to(cr, cx - s * 0.5, cy - s * 0.4);
        cairo_line_to(cr, cx + s * 0.5, cy - s * 0.4);
        cairo_line_to(cr, cx + s * 0.4, cy + s * 0.75);
        cairo_line_to(cr, cx - s * 0.4, cy + s * 0.75);
        cairo_close_path(cr);
        cairo_fill(cr);
        cairo_move_to(cr, cx - s * 0.7, cy - s * 0.58); cairo_line_to(cr, cx + s * 0.7, cy - s * 0.58);
        cairo_move_to(cr, cx - s * 0.15, cy - s * 0.75); cairo_line_to(cr, cx + s * 0.15, cy - s * 0.75);
        cairo_stroke(cr);
        break;
    case kIconReplay:
        cairo_set_line_width(cr, lw * 1.1);
        cairo_arc(cr, cx, cy, s * 0.55, -M_PI * 0.3, M_PI * 1.45);
        cairo_stroke(cr);
        cairo_move_to(cr, cx + s * 0.25, cy - s * 0.85);
        cairo_line_to(cr, cx + s * 0.75, cy - s * 0.5);
        cairo_line_to(cr, cx + s * 0.2, cy - s * 0.2);
        cairo_close_path(cr);
        cairo_fill(cr);
        break;
    case kIconGlobe:
        cairo_set_line_width(cr, lw * 0.7);
        cairo_arc(cr, cx, cy, s * 0.7, 0, 2 * M_PI);
        cairo_stroke(cr);
        cairo_save(cr);
        cairo_translate(cr, cx, cy);
        cairo_scale(cr, 0.4, 1);
        cairo_arc(cr, 0, 0, s * 0.7, 0, 2 * M_PI);
        cairo_restore(cr);
        cairo_stroke(cr);
        cairo_move_to(cr, cx - s * 0.7, cy); cairo_line_to(cr, cx + s * 0.7, cy);
        cairo_move_to(cr, cx - s * 0.6, cy - s * 0.35); cairo_line_to(cr, cx + s * 0.6, cy - s * 0.35);
        cairo_move_to(cr, cx - s * 0.6, cy + s * 0.35); cairo_line_to(cr, cx + s * 0.6, cy + s * 0.35);
        cairo_stroke(cr);
        break;
    case kIconBook:
        cairo_move_to(cr, cx, cy - s * 0.5);
        cairo_curve_to(cr, cx - s * 0.3, cy - s * 0.7, cx - s * 0.6, cy - s * 0.7, cx - s * 0.85, cy - s * 0.55);
        cairo_line_to(cr, cx - s * 0.85, cy + s * 0.65);
        cairo_curve_to(cr, cx - s * 0.6, cy + s * 0.5, cx - s * 0.3, cy + s * 0.5, cx, cy + s * 0.7);
        cairo_curve_to(cr, cx + s * 0.3, cy + s * 0.5, cx + s * 0.6, cy + s * 0.5, cx + s * 0.85, cy + s * 0.65);
        cairo_line_to(cr, cx + s * 0.85, cy - s * 0.55);
        cairo_curve_to(cr, cx + s * 0.6, cy - s * 0.7, cx + s * 0.3, cy - s * 0.7, cx, cy - s * 0.5);
        cairo_close_path(cr);
        cairo_fill(cr);
        cairo_set_source_rgba(cr, 1, 1, 1, 0.6);
        cairo_set_line_width(cr, lw * 0.5);
        cairo_move_to(cr, cx, cy - s * 0.45); cairo_line_to(cr, cx, cy + s * 0.6);
        cairo_stroke(cr);
        break;
    case kIconFit: {
        cairo_set_line_width(cr, lw * 0.9);
        for (int k = 0; k < 4; ++k) {
            double sx = (k & 1) ? 1 : -1, sy = (k & 2) ? 1 : -1;
            cairo_move_to(cr, cx + sx * s * 0.25, cy + sy * s * 0.25);
            cairo_line_to(cr, cx + sx * s * 0.75, cy + sy * s * 0.75);
            cairo_stroke(cr);
            cairo_move_to(cr, cx + sx * s * 0.8, cy + sy * s * 0.8);
            cairo_line_to(cr, cx + sx * s * 0.8, cy + sy * s * 0.35);
            cairo_line_to(cr, cx + sx * s * 0.35, cy + sy * s * 0.8);
            cairo_close_path(cr);
            cairo_fill(cr);
        }
        break;
    }
    case kIconPlay:
        cairo_move_to(cr, cx - s * 0.45, cy - s * 0.7);
        cairo_line_to(cr, cx + s * 0.7, cy);
        cairo_line_to(cr, cx - s * 0.45, cy + s * 0.7);
        cairo_close_path(cr);
        cairo_fill(cr);
        break;
    case kIconPencil:
        cairo_translate(cr, cx, cy);
        cairo_rotate(cr, -M_PI / 4);
        cairo_rectangle(cr, -s * 0.55, -s * 0.18, s * 1.0, s * 0.36);
        cairo_fill(cr);
        cairo_move_to(cr, s * 0.5, -s * 0.18);
        cairo_line_to(cr, s * 0.8, 0);
        cairo_line_to(cr, s * 0.5, s * 0.18);
        cairo_close_path(cr);
        cairo_fill(cr);
        break;
    case kIconStop:
        RoundedRect(cr, cx - s * 0.5, cy - s * 0.5, s, s, s * 0.1);
        cairo_fill(cr);
        break;
    case kIconSpeaker:
        cairo_move_to(cr, cx - s * 0.75, cy - s * 0.25);
        cairo_line_to(cr, cx - s * 0.4, cy - s * 0.25);
        cairo_line_to(cr, cx, cy - s * 0.65);
        cairo_line_to(cr, cx, cy + s * 0.65);
        cairo_line_to(cr, cx - s * 0.4, cy + s * 0.25);
        cairo_line_to(cr, cx - s * 0.75, cy + s * 0.25);
        cairo_close_path(cr);
        cairo_fill(cr);
        cairo_set_line_width(cr, lw * 0.7);
        cairo_arc(cr, cx + s * 0.05, cy, s * 0.35, -M_PI / 3, M_PI / 3);
        cairo_stroke(cr);
        cairo_arc(cr, cx + s * 0.05, cy, s * 0.65, -M_PI / 3, M_PI / 3);
        cairo_stroke(cr);
        break;
    case kIconDisc:
        cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
        cairo_arc(cr, cx, cy, s * 0.75, 0, 2 * M_PI);
        cairo_new_sub_path(cr);
        cairo_arc(cr, cx, cy, s * 0.18, 0, 2 * M_PI);
        cairo_fill(cr);
        break;
    case kIconTray:
        cairo_move_to(cr, cx - s * 0.8, cy - s * 0.1);
        cairo_line_to(cr, cx - s * 0.6, cy + s * 0.6);
        cairo_line_to(cr, cx + s * 0.6, cy + s * 0.6);
        cairo_line_to(cr, cx + s * 0.8, cy - s * 0.1);
        cairo_line_to(cr, cx + s * 0.35, cy - s * 0.1);
        cairo_line_to(cr, cx + s * 0.25, cy + s * 0.15);
        cairo_line_to(cr, cx - s * 0.25, cy + s * 0.15);
        cairo_line_to(cr, cx - s * 0.35, cy - s * 0.1);
        cairo_close_path(cr);
        cairo_fill(cr);
        break;
    case kIconCloth: {
        // A square of cloth, its top right corner folded over, a woven diagonal and a fringe below.
        double l = cx - s * 0.62, t = cy - s * 0.62, r = cx + s * 0.62, b = cy + s * 0.42, fold = s * 0.42;
        cairo_move_to(cr, l, t);
        cairo_line_to(cr, r - fold, t);
        cairo_line_to(cr, r, t + fold);
        cairo_line_to(cr, r, b);
        cairo_line_to(cr, l, b);
        cairo_close_path(cr);
        cairo_set_line_width(cr, lw * 0.8);
        cairo_stroke(cr);
        cairo_move_to(cr, r - fold, t);
        cairo_line_to(cr, r - fold, t + fold);
        cairo_line_to(cr, r, t + fold);
        cairo_stroke(cr);
        cairo_set_line_width(cr, lw * 0.45);
        for (int i = 1; i <= 3; ++i) {
            double d = i * (b - t) / 4;
            cairo_move_to(cr, l, t + d);
            cairo_line_to(cr, l + d, t);
            cairo_move_to(cr, l + d, b);
            cairo_line_to(cr, std::min(r, l + d + (b - t) - d), t + d);
        }
        cairo_stroke(cr);
        cairo_set_line_width(cr, lw * 0.55);
        for (int i = 0; i <= 6; ++i) {
            double x = l + i * (r - l) / 6;
            cairo_move_to(cr, x, b);
            cairo_line_to(cr, x, b + s * 0.22);
        }
        cairo_stroke(cr);
        break;
    }
    case kIconEdges: {
        // The border of a jigsaw: a square ring of four corner pieces, flat outside, round an empty
        // middle. The ring is filled whole, then the seam in the middle of each side is cut out of it
        // with the round knob of a jigsaw joint (the knobs turn alternately one way and the other).
        const double outer = s * 0.9, inner = s * 0.44;
        const double knob = s * 0.19, neck = knob * 0.5, mid = -(outer + inner) / 2;
        const double reach = std::sqrt(knob * knob - neck * neck);
        cairo_push_group(cr);
        cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
        cairo_rectangle(cr, cx - outer, cy - outer, 2 * outer, 2 * outer);
        cairo_rectangle(cr, cx - inner, cy - inner, 2 * inner, 2 * inner);
        cairo_fill(cr);
        cairo_translate(cr, cx, cy);
        cairo_set_operator(cr, CAIRO_OPERATOR_CLEAR);
        cairo_set_line_width(cr, s * 0.13);
        cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
        for (int k = 0; k < 4; ++k) {
            // The seam across the top band, turned for the other sides: straight in from the outside,
            // round the knob, straight on to the inside.
            cairo_save(cr);
            cairo_rotate(cr, k * M_PI / 2);
            cairo_move_to(cr, 0, -outer - 1);
            cairo_line_to(cr, 0, mid - neck);
            if (k % 2) cairo_arc(cr, reach, mid, knob, std::atan2(-neck, -reach), std::atan2(neck, -reach));
            else cairo_arc_negative(cr, -reach, mid, knob, std::atan2(-neck, reach), std::atan2(neck, reach));
            cairo_line_to(cr, 0, -inner + 1);
            cairo_stroke(cr);
            cairo_restore(cr);
        }
        cairo_pop_group_to_source(cr);
        cairo_paint(cr);
        break;
    }
    default:
        break;
    }
    cairo_restore(cr);
}

std::vector<uint8_t> SurfaceToRgba(cairo_surface_t* surface, Rgb background) {
    cairo_surface_flush(surface);
    int w = cairo_image_surface_get_width(surface), h = cairo_image_surface_get_height(surface);
    int stride = cairo_image_surface_get_stride(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    std::vector<uint8_t> out(size_t(w) * h * 4);
    for (int y = 0; y < h; ++y) {
        const uint32_t* row = reinterpret_cast<const uint32_t*>(data + y * stride);
        for (int x = 0; x < w; ++x) {
            uint32_t p = row[x];
            double a = (p >> 24) / 255.0;
            // Premultiplied: colour + background * (1 - alpha).
            double r = ((p >> 16) & 255) + background.r * 255 * (1 - a);
            double g = ((p >> 8) & 255) + background.g * 255 * (1 - a);
            double b = (p & 255) + background.b * 255 * (1 - a);
            uint8_t* o = &out[(size_t(y) * w + x) * 4];
            o[0] = uint8_t(std::clamp(std::lround(r), 0L, 255L));
            o[1] = uint8_t(std::clamp(std::lround(g), 0L, 255L));
            o[2] = uint8_t(std::clamp(std::lround(b), 0L, 255L));
            o[3] = 255;
        }
    }
    return out;
}

uint8_t* SurfaceToDib24(cairo_surface_t* surface, Rgb background) {
    int w = cairo_image_surface_get_width(surface), h = cairo_image_surface_get_height(surface);
    std::vector<uint8_t> rgba = SurfaceToRgba(surface, background);
    uint8_t* dib = AllocPackedDib(w, h, 24, 0);
    if (!dib) return nullptr;
    int64_t stride = DibStride(24, w);
    for (int y = 0; y < h; ++y) {
        uint8_t* row = DibPixels(dib) + (h - 1 - y) * stride;
        for (int x = 0; x < w; ++x) {
            const uint8_t* p = &rgba[(size_t(y) * w + x) * 4];
            row[3 * x] = p[2];
            row[3 * x + 1] = p[1];
            row[3 * x + 2] = p[0];
        }
    }
    return dib;
}
