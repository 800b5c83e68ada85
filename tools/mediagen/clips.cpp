// The three clips, drawn frame by frame with the house look.
#include <cairo.h>

#include <cmath>

#include "artgen/noise.h"
#include "artgen/paint.h"
#include "mediagen/media.h"

using namespace house;

namespace {

double EaseOut(double t) { t = std::min(1.0, std::max(0.0, t)); return 1 - (1 - t) * (1 - t) * (1 - t); }
double Ramp(double t, double from, double to) { return std::min(1.0, std::max(0.0, (t - from) / (to - from))); }

std::vector<uint8_t> FrameBytes(cairo_surface_t* s) {
    cairo_surface_flush(s);
    int w = cairo_image_surface_get_width(s), h = cairo_image_surface_get_height(s);
    int stride = cairo_image_surface_get_stride(s);
    const unsigned char* data = cairo_image_surface_get_data(s);
    std::vector<uint8_t> out(size_t(w) * h * 4);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            uint32_t p = reinterpret_cast<const uint32_t*>(data + y * stride)[x];
            uint8_t* o = &out[(size_t(y) * w + x) * 4];
            o[0] = uint8_t(p & 255);
            o[1] = uint8_t((p >> 8) & 255);
            o[2] = uint8_t((p >> 16) & 255);
        }
    return out;
}

void Piece(cairo_t* cr, double x, double y, double size, double angle, Rgb colour) {
    cairo_save(cr);
    cairo_translate(cr, x + size / 2, y + size / 2);
    cairo_rotate(cr, angle);
    PiecePath(cr, -size / 2, -size / 2, size);
    cairo_pattern_t* g = cairo_pattern_create_linear(-size / 2, -size / 2, size / 2, size / 2);
    cairo_pattern_add_color_stop_rgb(g, 0, Scale(colour, 1.35).r, Scale(colour, 1.35).g, Scale(colour, 1.35).b);
    cairo_pattern_add_color_stop_rgb(g, 1, Scale(colour, 0.75).r, Scale(colour, 0.75).g, Scale(colour, 0.75).b);
    cairo_set_source(cr, g);
    cairo_fill_preserve(cr);
    cairo_pattern_destroy(g);
    SetColor(cr, kWalnutDark);
    cairo_set_line_width(cr, 1.5);
    cairo_stroke(cr);
    cairo_restore(cr);
}

// 2: the opening title. Four pieces fly in and lock together, then the name appears.
void OpeningFrame(cairo_t* cr, int w, int h, double t) {
    DrawWoodBoard(cr, 0, 0, w, h, 7001);
    cairo_pattern_t* v = cairo_pattern_create_radial(w / 2.0, h / 2.0, 40, w / 2.0, h / 2.0, w * 0.7);
    cairo_pattern_add_color_stop_rgba(v, 0, 0, 0, 0, 0);
    cairo_pattern_add_color_stop_rgba(v, 1, 0, 0, 0, 0.55);
    cairo_set_source(cr, v);
    cairo_paint(cr);
    cairo_pattern_destroy(v);
    const Rgb colours[4] = {kCopper, kBrass, Hex(0x5f9a6e), Hex(0x5a86b0)};
    // Pieces of 70 px whose bodies (the middle 60 %) meet in a 2 x 2 block.
    double size = 70, body = size * 0.6, cx = w / 2.0, cy = 100;
    for (int k = 0; k < 4; ++k) {
        int r = k / 2, c = k % 2;
        double tx = cx - body + c * body - size * 0.2, ty = cy - body + r * body - size * 0.2;
        double sx = (c ? w + 40 : -120), sy = (r ? h + 40 : -120);
        double p = EaseOut(Ramp(t, 0.05 + 0.08 * k, 0.5 + 0.05 * k));
        double angle = (1 - p) * (k % 2 ? 2.4 : -2.1);
        // Each piece carries the same shape turned to fit its neighbours.
        cairo_save(cr);
        Piece(cr, sx + (tx - sx) * p, sy + (ty - sy) * p, size, angle + k * M_PI / 2 * (1 - p), colours[k]);
        cairo_restore(cr);
    }
    double title = Ramp(t, 0.55, 0.8);
    if (title > 0) {
        cairo_push_group(cr);
        TextStyle s{kTitleFont, 48, kBrassLight, kTextGlow, 0, false};
        DrawText(cr, "Tavirel Puzzle", 0, 170, w, 60, s);
        cairo_pop_group_to_source(cr);
        cairo_paint_with_alpha(cr, title);
    }
    double tag = Ramp(t, 0.75, 0.95);
    if (tag > 0) {
        cairo_push_group(cr);
        cairo_move_to(cr, w / 2.0 - 110, 236.5);
        cairo_line_to(cr, w / 2.0 + 110, 236.5);
        SetColor(cr, kBrass);
        cairo_set_line_width(cr, 1);
        cairo_stroke(cr);
        TextStyle s{"Lato Italic", 16, kParchment, kTextPlain, 0, false};
        DrawText(cr, "photographs in pieces", 0, 242, w, 26, s);
        cairo_pop_group_to_source(cr);
        cairo_paint_with_alpha(cr, tag);
    }
}

// 1: the completion celebration: a burst of golden rays, confetti pieces and "Bravo!".
void CelebrationFrame(cairo_t* cr, int w, int h, double t) {
    DrawBaize(cr, 0, 0, w, h, 0, 7002);
    double cx = w / 2.0, cy = h / 2.0 - 10;
    cairo_save(cr);
    cairo_translate(cr, cx, cy);
    cairo_rotate(cr, t * 0.8);
    for (int i = 0; i < 16; ++i) {
        double a = i * 2 * M_PI / 16;
        cairo_move_to(cr, 0, 0);
        cairo_arc(cr, 0, 0, 260, a, a + M_PI / 16);
        cairo_close_path(cr);
    }
    cairo_pattern_t* g = cairo_pattern_create_radial(0, 0, 10, 0, 0, 220);
    cairo_pattern_add_color_stop_rgba(g, 0, 1, 0.9, 0.55, 0.55 * Ramp(t, 0, 0.2));
    cairo_pattern_add_color_stop_rgba(g, 1, 1, 0.9, 0.55, 0);
    cairo_set_source(cr, g);
    cairo_fill(cr);
    cairo_pattern_destroy(g);
    cairo_restore(cr);
    // Confetti: small pieces tumbling down, the same ones in every frame.
    Rng rng{4242};
    const Rgb colours[5] = {kCopper, kBrassLight, Hex(0x9fc5e8), Hex(0xb6d7a8), Hex(0xe6a3a1)};
    for (int i = 0; i < 40; ++i) {
        double x0 = rng.Range(0, w), speed = rng.Range(90, 200), start = rng.Range(-200, 0);
        double spin = rng.Range(-4, 4), size = rng.Range(10, 18);
        Rgb c = colours[rng.Next() % 5];
        double y = start + speed * t * 3;
        Piece(cr, x0 + 12 * std::sin(t * 6 + i), y, size, spin * t * 3, c);
    }
    double s = EaseOut(Ramp(t, 0.1, 0.45));
    if (s > 0) {
        cairo_save(cr);
        cairo_translate(cr, cx, cy);
        cairo_scale(cr, 0.4 + 0.6 * s, 0.4 + 0.6 * s);
        DrawIcon(cr, kIconCup, 2, -28, 70, Hex(0x000000));
        DrawIcon(cr, kIconCup, 0, -30, 70, kBrassLight);
        TextStyle ts{kTitleFont, 64, kBrassShine, kTextGlow, 0, false};
        DrawText(cr, "Bravo!", -w / 2.0, 10, w, 80, ts);
        cairo_restore(cr);
    }
}

// 0: a short framed clip: a piece turning over the parchment with the name beneath.
void FramedFrame(cairo_t* cr, int w, int h, double t) {
    DrawParchment(cr, 0, 0, w, h, 0, 7003);
    double angle = t * 2 * M_PI;
    double squash = std::fabs(std::cos(angle / 2)) * 0.6 + 0.4;
    cairo_save(cr);
    cairo_translate(cr, w / 2.0, 100);
    cairo_scale(cr, squash, 1);
    Piece(cr, -60, -60, 120, 0, kCopper);
    cairo_restore(cr);
    TextStyle s{kTitleFont, 34, kInk, kTextPlain, 0, false};
    DrawText(cr, "Tavirel Puzzle", 0, 176, w, 44, s);
}

}  // namespace

AviClip MakeClip(int kind) {
    AviClip clip{kind == 0 ? 320 : 400, kind == 0 ? 240 : 300, 12, {}};
    int frames = kind == 0 ? 24 : 36;
    for (int f = 0; f < frames; ++f) {
        cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_RGB24, clip.width, clip.height);
        cairo_t* cr = cairo_create(s);
        double t = double(f) / (frames - 1);
        if (kind == 2) OpeningFrame(cr, clip.width, clip.height, t);
        else if (kind == 1) CelebrationFrame(cr, clip.width, clip.height, t);
        else FramedFrame(cr, clip.width, clip.height, t);
        cairo_destroy(cr);
        clip.frames.push_back(FrameBytes(s));
        cairo_surface_destroy(s);
    }
    return clip;
}
