// Controls and panels in the house look.
#include "artgen/widgets.h"

#include <algorithm>
#include <cmath>

using namespace house;

static Rgb EngraveColor(ButtonState state) { return state == kStateLit ? Hex(0x2a1405) : Hex(0x3d240f); }

void DrawIconButton(cairo_t* cr, double x, double y, double w, double h, ButtonState state, Icon icon) {
    double r = std::min(w, h) * 0.22;
    DrawBrassPlate(cr, x + 0.5, y + 0.5, w - 1, h - 1, r, state);
    double size = std::min(w, h) * 0.55;
    double dy = state == kStatePressed ? 1 : 0;
    DrawIcon(cr, icon, x + w / 2, y + h / 2 + 1 + dy, size, Scale(kBrassShine, 1.0));
    DrawIcon(cr, icon, x + w / 2, y + h / 2 + dy, size, EngraveColor(state));
}

void DrawWordButton(cairo_t* cr, double x, double y, double w, double h, ButtonState state, const std::string& words,
                    Icon icon) {
    double r = std::min(w, h) * 0.28;
    DrawBrassPlate(cr, x + 0.5, y + 0.5, w - 1, h - 1, r, state);
    double dy = state == kStatePressed ? 1 : 0;
    double pad = h * 0.18;
    double tx = x + pad, tw = w - 2 * pad;
    if (icon != kIconCount) {
        double size = h * 0.5;
        DrawIcon(cr, icon, x + pad + size / 2, y + h / 2 + 1 + dy, size, kBrassShine);
        DrawIcon(cr, icon, x + pad + size / 2, y + h / 2 + dy, size, EngraveColor(state));
        tx += size + pad * 0.5;
        tw -= size + pad * 0.5;
    }
    TextStyle s{kButtonFont, h * 0.42, EngraveColor(state), kTextEngraved, 0, false};
    DrawText(cr, words, tx, y + dy, tw, h, s);
}

void DrawIconCommandStrip(cairo_t* cr, int w, int frameH, Icon icon) {
    for (int f = 0; f < 3; ++f) DrawIconButton(cr, 0, f * frameH, w, frameH, ButtonState(f), icon);
}

void DrawWordCommandStrip(cairo_t* cr, int w, int frameH, const std::string& words, Icon icon) {
    for (int f = 0; f < 3; ++f) DrawWordButton(cr, 0, f * frameH, w, frameH, ButtonState(f), words, icon);
}

void DrawTabCheckStrip(cairo_t* cr, int w, int frameH, const std::string& words) {
    for (int f = 0; f < 4; ++f) {
        bool checked = f >= 2, lit = f % 2 == 1;
        double y = f * frameH;
        cairo_save(cr);
        cairo_rectangle(cr, 0, y, w, frameH);
        cairo_clip(cr);
        // A card tab: rounded top corners, open at the bottom into the panel's page.
        double r = frameH * 0.35;
        cairo_new_path(cr);
        cairo_move_to(cr, 1, y + frameH);
        cairo_line_to(cr, 1, y + r + 2);
        cairo_arc(cr, 1 + r, y + r + 2, r, M_PI, 1.5 * M_PI);
        cairo_line_to(cr, w - 1 - r, y + 2);
        cairo_arc(cr, w - 1 - r, y + r + 2, r, 1.5 * M_PI, 2 * M_PI);
        cairo_line_to(cr, w - 1, y + frameH);
        cairo_close_path(cr);
        if (checked) {
            DrawParchment(cr, 0, y, w, frameH + r, 0, 31);
            cairo_new_path(cr);
            cairo_move_to(cr, 1, y + frameH);
            cairo_line_to(cr, 1, y + r + 2);
            cairo_arc(cr, 1 + r, y + r + 2, r, M_PI, 1.5 * M_PI);
            cairo_line_to(cr, w - 1 - r, y + 2);
            cairo_arc(cr, w - 1 - r, y + r + 2, r, 1.5 * M_PI, 2 * M_PI);
            cairo_line_to(cr, w - 1, y + frameH);
            SetColor(cr, kBrassDark);
            cairo_set_line_width(cr, 1.5);
            cairo_stroke(cr);
        } else {
            cairo_pattern_t* g = cairo_pattern_create_linear(0, y, 0, y + frameH);
            Rgb top = lit ? Hex(0x9a6a3c) : Hex(0x7a4c26), low = lit ? Hex(0x6a4222) : Hex(0x4e2e14);
            cairo_pattern_add_color_stop_rgb(g, 0, top.r, top.g, top.b);
            cairo_pattern_add_color_stop_rgb(g, 1, low.r, low.g, low.b);
            cairo_set_source(cr, g);
            cairo_fill_preserve(cr);
            cairo_pattern_destroy(g);
            SetColor(cr, kWalnutDark);
            cairo_set_line_width(cr, 1.5);
            cairo_stroke(cr);
            // The page's edge line runs under an unselected tab.
            cairo_rectangle(cr, 0, y + frameH - 2, w, 2);
            SetColor(cr, kBrassDark);
            cairo_fill(cr);
        }
        TextStyle s{kTitleFont, frameH * 0.52, checked ? kInk : (lit ? kBrassShine : kParchment),
                    checked ? kTextPlain : kTextRaised, 0, false};
        DrawText(cr, words, 8, y + 3, w - 16, frameH - 3, s);
        cairo_restore(cr);
    }
}

void DrawLampCheckStrip(cairo_t* cr, int w, int frameH, const std::string& words) {
    for (int f = 0; f < 4; ++f) {
        bool checked = f >= 2, lit = f % 2 == 1;
        double y = f * frameH;
        cairo_save(cr);
        cairo_rectangle(cr, 0, y, w, frameH);
        cairo_clip(cr);
        DrawParchment(cr, 0, y, w, frameH, 0, 41);
        if (lit) {
            RoundedRect(cr, 1, y + 1, w - 2, frameH - 2, frameH * 0.3);
            SetColor(cr, kBrassLight, 0.35);
            cairo_fill(cr);
        }
        double rr = frameH * 0.34, cx = 4 + rr + 2, cy = y + frameH / 2;
        // Brass bezel and a lamp: dark when off, emerald with a highlight when on.
        cairo_arc(cr, cx, cy, rr + 2, 0, 2 * M_PI);
        SetColor(cr, kBrassDark);
        cairo_fill(cr);
        cairo_arc(cr, cx, cy, rr + 0.8, 0, 2 * M_PI);
        SetColor(cr, kBrass);
        cairo_fill(cr);
        cairo_pattern_t* g = cairo_pattern_create_radial(cx - rr * 0.3, cy - rr * 0.3, rr * 0.1, cx, cy, rr);
        Rgb on = Hex(0x5fd08a), off = Hex(0x2f3a2c);
        Rgb c = checked ? on : (lit ? Hex(0x4a5a44) : off);
        cairo_pattern_add_color_stop_rgb(g, 0, Scale(c, 1.6).r, Scale(c, 1.6).g, Scale(c, 1.6).b);
        cairo_pattern_add_color_stop_rgb(g, 1, Scale(c, 0.6).r, Scale(c, 0.6).g, Scale(c, 0.6).b);
        cairo_arc(cr, cx, cy, rr - 0.5, 0, 2 * M_PI);
        cairo_set_source(cr, g);
        cairo_fill(cr);
        cairo_pattern_destroy(g);
        if (checked) DrawIcon(cr, kIconCheck, cx, cy, rr * 1.3, Hex(0xffffff));
        TextStyle s{kTitleFont, frameH * 0.55, checked ? kInk : kInkSoft, kTextPlain, -1, false};
        DrawText(cr, words, cx + rr + 8, y, w - (cx + rr + 12), frameH, s);
        cairo_restore(cr);
    }
}

// A colour drained towards its own grey by amount (0 keeps it, 1 leaves the grey).
static Rgb Drained(Rgb c, double amount) {
    double grey = 0.3 * c.r + 0.59 * c.g + 0.11 * c.b;
    return Mix(c, Rgb{grey, grey, grey}, amount);
}

// One 50 x 50 medallion of an animated strip at x: frame f of 0..9 (t = f / 9), or with disabled the
// rest frame drained of its colour and dimmed: no glow, dull metal, grey enamel, a grey icon.
static void DrawAnimFrame(cairo_t* cr, double x, int f, Icon icon, Rgb accent, bool disabled) {
    double t = f / 9.0;
    cairo_save(cr);
    cairo_rectangle(cr, x, 0, 50, 50);
    cairo_clip(cr);
    double cx = x + 25, cy = 25;
    // Glow halo grows with the frame.
    if (f > 0) {
        cairo_pattern_t* halo = cairo_pattern_create_radial(cx, cy, 14, cx, cy, 25);
        cairo_pattern_add_color_stop_rgba(halo, 0, 1, 0.85, 0.45, 0.75 * t);
        cairo_pattern_add_color_stop_rgba(halo, 1, 1, 0.85, 0.45, 0);
        cairo_set_source(cr, halo);
        cairo_paint(cr);
        cairo_pattern_destroy(halo);
    }
    // Medallion: dark rim, brass ring, coloured enamel centre.
    cairo_arc(cr, cx, cy, 22, 0, 2 * M_PI);
    SetColor(cr, disabled ? Scale(kWalnutDark, 0.7) : kWalnutDark);
    cairo_fill(cr);
    cairo_pattern_t* ring = cairo_pattern_create_linear(cx - 20, cy - 20, cx + 20, cy + 20);
    Rgb hi = Scale(kBrassShine, 1 + 0.1 * t), mid = kBrass, lo = kBrassDark;
    if (disabled) {
        hi = Scale(Drained(hi, 0.85), 0.45);
        mid = Scale(Drained(mid, 0.85), 0.4);
        lo = Scale(Drained(lo, 0.85), 0.5);
    }
    cairo_pattern_add_color_stop_rgb(ring, 0, hi.r, hi.g, hi.b);
    cairo_pattern_add_color_stop_rgb(ring, 0.5, mid.r, mid.g, mid.b);
    cairo_pattern_add_color_stop_rgb(ring, 1, lo.r, lo.g, lo.b);
    cairo_arc(cr, cx, cy, 20.5, 0, 2 * M_PI);
    cairo_set_source(cr, ring);
    cairo_fill(cr);
    cairo_pattern_destroy(ring);
    Rgb enamel = disabled ? Scale(Drained(accent, 0.9), 0.6) : Mix(accent, Scale(accent, 1.45), t);
    cairo_pattern_t* face = cairo_pattern_create_radial(cx - 5, cy - 6, 2, cx, cy, 17);
    cairo_pattern_add_color_stop_rgb(face, 0, Scale(enamel, 1.5).r, Scale(enamel, 1.5).g, Scale(enamel, 1.5).b);
    cairo_pattern_add_color_stop_rgb(face, 1, Scale(enamel, 0.7).r, Scale(enamel, 0.7).g, Scale(enamel, 0.7).b);
    cairo_arc(cr, cx, cy, 16.5, 0, 2 * M_PI);
    cairo_set_source(cr, face);
    cairo_fill(cr);
    cairo_pattern_destroy(face);
    // Icon with a little swing and swell.
    cairo_save(cr);
    cairo_translate(cr, cx, cy);
    cairo_rotate(cr, 0.18 * std::sin(t * 2 * M_PI) * (f > 0));
    double grow = 1 + 0.1 * std::sin(t * M_PI);
    DrawIcon(cr, icon, 0.8, 1.2, 19 * grow, Hex(0x000000));
    DrawIcon(cr, icon, 0, 0, 19 * grow, disabled ? Scale(Drained(kCream, 1), 0.55) : Mix(kCream, Hex(0xffffff), t));
    cairo_restore(cr);
    // Glass highlight.
    cairo_save(cr);
    cairo_arc(cr, cx, cy, 16.5, 0, 2 * M_PI);
    cairo_clip(cr);
    cairo_scale(cr, 1, 0.6);
    cairo_arc(cr, cx, (cy - 9) / 0.6, 13, 0, 2 * M_PI);
    cairo_set_source_rgba(cr, 1, 1, 1, disabled ? 0.07 : 0.16 + 0.1 * t);
    cairo_fill(cr);
    cairo_restore(cr);
    cairo_restore(cr);
}

void DrawAnimButtonStrip(cairo_t* cr, Icon icon, Rgb accent, bool withDisabled) {
    for (int f = 0; f < 10; ++f) DrawAnimFrame(cr, f * 50, f, icon, accent, false);
    if (withDisabled) DrawAnimFrame(cr, 10 * 50, 0, icon, accent, true);
}

void DrawTrackButtonStrip(cairo_t* cr, const std::string& numeral, Rgb accent) {
    for (int f = 0; f <= 10; ++f) {
        const double x = f * 50;
        const int glow = f == 10 ? 9 : f;
        if (f == 10) {
            // The playing look: a green lamp ring round the medallion.
            cairo_pattern_t* lamp = cairo_pattern_create_radial(x + 25, 25, 18, x + 25, 25, 25);
            cairo_pattern_add_color_stop_rgba(lamp, 0, 0.45, 0.95, 0.5, 0.95);
            cairo_pattern_add_color_stop_rgba(lamp, 1, 0.2, 0.7, 0.3, 0);
            cairo_save(cr);
            cairo_rectangle(cr, x, 0, 50, 50);
            cairo_clip(cr);
            cairo_set_source(cr, lamp);
            cairo_paint(cr);
            cairo_restore(cr);
            cairo_pattern_destroy(lamp);
        }
        DrawAnimFrame(cr, x, glow, kIconCount, accent, false);
        if (f == 10) {
            cairo_arc(cr, x + 25, 25, 22.5, 0, 2 * M_PI);
            cairo_set_source_rgb(cr, 0.35, 0.95, 0.45);
            cairo_set_line_width(cr, 2.5);
            cairo_stroke(cr);
        }
        const double t = glow / 9.0;
        TextStyle shadow{kButtonFont, 24, Hex(0x000000), kTextPlain, 0, false};
        TextStyle face{kButtonFont, 24, Mix(kCream, Hex(0xffffff), t), kTextPlain, 0, false};
        DrawText(cr, numeral, x + 1, 1, 50, 50, shadow);
        DrawText(cr, numeral, x, 0, 50, 50, face);
    }
}

void DrawScrollStrip(cairo_t* cr, int w, const int zones[3]) {
    int y = 0;
    for (int zone = 0; zone < 3; ++zone) {
        int h = zones[zone];
        for (int f = 0; f < 3; ++f, y += h) {
            ButtonState state = ButtonState(f);
            cairo_save(cr);
            cairo_rectangle(cr, 0, y, w, h);
            cairo_clip(cr);
            if (zone == 1) {
                // The track: a sunken walnut groove with engraved brass marks along it. The control has
                // no thumb (the value shows elsewhere), so nothing here may look like one.
                DrawWoodBoard(cr, 0, y, w, h, 77, true);
                RoundedRect(cr, w * 0.3, y + 2, w * 0.4, h - 4, w * 0.2);
                SetColor(cr, kWalnutDark, 0.85);
                cairo_fill(cr);
                const Rgb& mark = state == kStateNormal ? kBrassDark : kBrassLight;
                double shine = state == kStatePressed ? 1.0 : 0.8;
                int step = 8, count = (h - 8) / step;
                double first = y + (h - (count - 1) * step) / 2.0;
                for (int k = 0; k < count; ++k) {
                    double ly = std::floor(first + k * step) + 0.5;
                    double half = (k % 2 == 0) ? w * 0.2 : w * 0.12;
                    cairo_move_to(cr, w / 2.0 - half, ly);
                    cairo_line_to(cr, w / 2.0 + half, ly);
                    SetColor(cr, mark, shine);
                    cairo_set_line_width(cr, 1);
                    cairo_stroke(cr);
                }
            } else {
                DrawIconButton(cr, 0, y, w, h, state, zone == 0 ? kIconArrowUp : kIconArrowDown);
            }
            cairo_restore(cr);
        }
    }
}

void DrawTitlePlaque(cairo_t* cr, double x, double y, double w, double h, const std::string& words) {
    DrawShadow(cr, x, y, w, h, h * 0.3, 3, 0.35);
    DrawBrassPlate(cr, x, y, w, h, h * 0.3, kStateNormal);
    // Screw heads at both ends.
    for (int k = 0; k < 2; ++k) {
        double sx = k ? x + w - h * 0.32 : x + h * 0.32, sy = y + h / 2;
        cairo_arc(cr, sx, sy, h * 0.09, 0, 2 * M_PI);
        SetColor(cr, kBrassDark);
        cairo_fill(cr);
        cairo_move_to(cr, sx - h * 0.07, sy - h * 0.03);
        cairo_line_to(cr, sx + h * 0.07, sy + h * 0.03);
        SetColor(cr, kBrassShine, 0.8);
        cairo_set_line_width(cr, 1);
        cairo_stroke(cr);
    }
    TextStyle s{kTitleFont, h * 0.62, Hex(0x3a200b), kTextEngraved, 0, false};
    DrawText(cr, words, x + h * 0.6, y, w - h * 1.2, h, s);
}

void DrawWell(cairo_t* cr, double x, double y, double w, double h) {
    RoundedRect(cr, x, y, w, h, 4);
    SetColor(cr, kWalnutDark, 0.18);
    cairo_fill(cr);
    DrawBevel(cr, x, y, w, h, 4, 2, false);
}

void DrawPanel(cairo_t* cr, int w, int h, const std::string& title, uint32_t seed, double frameWidth) {
    DrawWoodBoard(cr, 0, 0, w, h, seed);
    DrawBevel(cr, 0, 0, w, h, 0, 3, true);
    double fw = frameWidth;
    DrawParchment(cr, fw, fw, w - 2 * fw, h - 2 * fw, 6, seed + 1);
    DrawBevel(cr, fw - 1, fw - 1, w - 2 * fw + 2, h - 2 * fw + 2, 7, 2.5, false);
    DrawInlay(cr, fw + 6, fw + 6, w - 2 * fw - 13, h - 2 * fw - 13, 4);
    if (!title.empty()) {
        double pw = std::min(w * 0.6, 320.0), ph = 34;
        DrawTitlePlaque(cr, (w - pw) / 2, 4, pw, ph, title);
    }
}
