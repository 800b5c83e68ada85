// Every pack item of the game, drawn in the house look: walnut wood, brass, parchment and baize.
#include "artgen/items.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "app/art_ids.h"
#include "artgen/noise.h"
#include "artgen/patterns.h"
#include "artgen/widgets.h"

using namespace house;

namespace {

// A texture computed per pixel from (u, v) in [0, 1), periodic when the function is.
cairo_surface_t* PixelTexture(int w, int h, const std::function<Rgb(double u, double v, int x, int y)>& f) {
    cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h);
    cairo_surface_flush(s);
    unsigned char* data = cairo_image_surface_get_data(s);
    int stride = cairo_image_surface_get_stride(s);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            Rgb c = f(double(x) / w, double(y) / h, x, y);
            auto b = [](double v) { return uint32_t(std::lround(std::clamp(v, 0.0, 1.0) * 255)); };
            reinterpret_cast<uint32_t*>(data + y * stride)[x] = 0xFF000000u | (b(c.r) << 16) | (b(c.g) << 8) | b(c.b);
        }
    cairo_surface_mark_dirty(s);
    return s;
}

Rgb Weave(double u, double v, int x, int y, int threads, Rgb warp, Rgb weft, uint32_t seed) {
    // Plain weave: over-under threads; each thread varies a little in shade (slubs).
    double pu = u * threads, pv = v * threads;
    int tu = int(pu), tv = int(pv);
    double fu = pu - tu, fv = pv - tv;
    bool warpOnTop = ((tu + tv) & 1) == 0;
    double shadeU = 0.92 + 0.16 * PeriodicNoise(tu, v * 8, threads, 8, seed);
    double shadeV = 0.92 + 0.16 * PeriodicNoise(u * 8, tv, 8, threads, seed + 1);
    double roundU = std::sin(M_PI * fu), roundV = std::sin(M_PI * fv);
    Rgb c = warpOnTop ? Scale(warp, shadeU * (0.75 + 0.3 * roundU)) : Scale(weft, shadeV * (0.75 + 0.3 * roundV));
    double fleck = PeriodicNoise(u * 50, v * 50, 50, 50, seed + 2);
    (void)x;
    (void)y;
    return Scale(c, 0.95 + 0.1 * fleck);
}

// Shorthands for a strip drawn on a surface of the entry's size.
struct Item {
    cairo_surface_t* surface;
    cairo_t* cr;
    int w, h;
};
Item Begin(const ArtEntry& entry) {
    Item it{NewSurface(entry.width, entry.height), nullptr, entry.width, entry.height};
    it.cr = cairo_create(it.surface);
    return it;
}

void TileBorderH(cairo_t* cr, int w, double y, double thickness) {
    // A brass rail running across a tile (seamless: it spans the whole width).
    cairo_pattern_t* g = cairo_pattern_create_linear(0, y, 0, y + thickness);
    cairo_pattern_add_color_stop_rgb(g, 0, kBrassShine.r, kBrassShine.g, kBrassShine.b);
    cairo_pattern_add_color_stop_rgb(g, 0.5, kBrass.r, kBrass.g, kBrass.b);
    cairo_pattern_add_color_stop_rgb(g, 1, kBrassDark.r, kBrassDark.g, kBrassDark.b);
    cairo_rectangle(cr, 0, y, w, thickness);
    cairo_set_source(cr, g);
    cairo_fill(cr);
    cairo_pattern_destroy(g);
}

void TileBorderV(cairo_t* cr, int h, double x, double thickness) {
    cairo_pattern_t* g = cairo_pattern_create_linear(x, 0, x + thickness, 0);
    cairo_pattern_add_color_stop_rgb(g, 0, kBrassShine.r, kBrassShine.g, kBrassShine.b);
    cairo_pattern_add_color_stop_rgb(g, 0.5, kBrass.r, kBrass.g, kBrass.b);
    cairo_pattern_add_color_stop_rgb(g, 1, kBrassDark.r, kBrassDark.g, kBrassDark.b);
    cairo_rectangle(cr, x, 0, thickness, h);
    cairo_set_source(cr, g);
    cairo_fill(cr);
    cairo_pattern_destroy(g);
}

// A wood tile exactly periodic over its own size.
void WoodTile(cairo_t* cr, int w, int h, uint32_t seed, bool vertical, double darken = 1.0) {
    cairo_surface_t* wood = MakeWood(w, h, Scale(kWalnutDark, darken), Scale(kWalnutLight, darken), seed, vertical);
    cairo_set_source_surface(cr, wood, 0, 0);
    cairo_paint(cr);
    cairo_surface_destroy(wood);
}

// A dark walnut socket behind an animated button's medallion frames.
void AnimSockets(cairo_t* cr) {
    for (int f = 0; f < 10; ++f) {
        cairo_save(cr);
        cairo_rectangle(cr, f * 50, 0, 50, 50);
        cairo_clip(cr);
        WoodTile(cr, 500, 50, 91, false, 0.55);
        cairo_restore(cr);
    }
}

void AnimButton(cairo_t* cr, Icon icon, Rgb accent) {
    AnimSockets(cr);
    DrawAnimButtonStrip(cr, icon, accent);
}

// The same with an eleventh, disabled frame: its socket is the rest frame's wood in deeper shade.
void AnimButtonWithDisabled(cairo_t* cr, Icon icon, Rgb accent) {
    AnimSockets(cr);
    cairo_save(cr);
    cairo_translate(cr, 10 * 50, 0);
    cairo_rectangle(cr, 0, 0, 50, 50);
    cairo_clip(cr);
    WoodTile(cr, 500, 50, 91, false, 0.36);
    cairo_restore(cr);
    DrawAnimButtonStrip(cr, icon, accent, true);
}

// The side buttons of the trays: only their left half shows at the screen edge, so the number and
// the tray mark sit in that half.
void TrayButton(cairo_t* cr, int k, bool full) {
    static const uint32_t kTrayColours[6] = {0xc0392b, 0xd68910, 0x27ae60, 0x2471a3, 0x7d3c98, 0x916b3d};
    Rgb accent = Hex(kTrayColours[k]);
    for (int f = 0; f < 3; ++f) {
        double y = f * 46;
        ButtonState st = ButtonState(f);
        cairo_save(cr);
        cairo_rectangle(cr, 0, y, 50, 46);
        cairo_clip(cr);
        // A drawer front with a rounded left end.
        RoundedRect(cr, 1, y + 2, 60, 42, 12);
        cairo_save(cr);
        cairo_clip_preserve(cr);
        cairo_new_path(cr);
        WoodTile(cr, 50, 138, 300 + k, false, st == kStateLit ? 1.15 : st == kStatePressed ? 0.8 : 1.0);
        cairo_restore(cr);
        RoundedRect(cr, 1, y + 2, 60, 42, 12);
        SetColor(cr, kBrass);
        cairo_set_line_width(cr, 2);
        cairo_stroke(cr);
        // Coloured enamel disc with the tray number.
        double cx = 14, cy = y + 23;
        cairo_arc(cr, cx, cy, 10, 0, 2 * M_PI);
        SetColor(cr, kBrassDark);
        cairo_fill(cr);
        cairo_arc(cr, cx, cy, 8.5, 0, 2 * M_PI);
        SetColor(cr, full ? Scale(accent, st == kStateLit ? 1.3 : 1.0) : Scale(accent, 0.45));
        cairo_fill(cr);
        TextStyle s{kButtonFont, 13, full ? Hex(0xffffff) : kParchmentDark, kTextPlain, 0, false};
        DrawText(cr, std::to_string(k + 1), cx - 9, cy - 9, 18, 18, s);
        // Full trays show a few piece tips peeking out; empty ones an open slot.
        if (full) {
            for (int p = 0; p < 3; ++p) {
                cairo_save(cr);
                cairo_translate(cr, 27 + p * 0.5, y + 8 + p * 11);
                cairo_rotate(cr, (p - 1) * 0.3);
                PiecePath(cr, -6, -6, 12);
                SetColor(cr, Scale(Hex(p == 0 ? 0xe8c07a : p == 1 ? 0x9fc5e8 : 0xb6d7a8), st == kStateLit ? 1.15 : 1));
                cairo_fill_preserve(cr);
                SetColor(cr, kWalnutDark);
                cairo_set_line_width(cr, 0.8);
                cairo_stroke(cr);
                cairo_restore(cr);
            }
        } else {
            RoundedRect(cr, 27, y + 16, 18, 14, 3);
            SetColor(cr, kWalnutDark, 0.8);
            cairo_fill(cr);
        }
        if (st == kStatePressed) {
            cairo_rectangle(cr, 0, y, 50, 46);
            cairo_set_source_rgba(cr, 0, 0, 0, 0.2);
            cairo_fill(cr);
        }
        cairo_restore(cr);
    }
}

// The shape picture: each style shown as four pieces of its own pattern, slightly pulled apart.
void ShapePicture(cairo_t* cr, int w, int frameH) {
    static const uint32_t kPieceColours[4] = {0xc8793a, 0x6f9d5a, 0x4f7fa8, 0xd9b44a};
    for (int style = 0; style < kStyleCount; ++style) {
        std::vector<uint8_t> labels = MakeCutPattern(PatternStyle(style));
        double y0 = style * frameH;
        cairo_save(cr);
        cairo_rectangle(cr, 0, y0, w, frameH);
        cairo_clip(cr);
        DrawParchment(cr, 0, y0, w, frameH, 0, 50 + style);
        // Each own region becomes a coloured piece, drawn 0.27 x, gaps between pieces.
        const double scale = 0.27;
        double cellPx = kPatternCell * scale;
        double ox = (w - 2 * cellPx - 8) / 2, oy = y0 + (frameH - 2 * cellPx - 8) / 2;
        for (int region = 1; region <= 4; ++region) {
            int pr = (region - 1) / 2, pc = (region - 1) % 2;
            cairo_surface_t* mask = cairo_image_surface_create(CAIRO_FORMAT_A8, kPatternSize, kPatternSize);
            cairo_surface_flush(mask);
            unsigned char* md = cairo_image_surface_get_data(mask);
            int ms = cairo_image_surface_get_stride(mask);
            for (int y = 0; y < kPatternSize; ++y)
                for (int x = 0; x < kPatternSize; ++x) md[y * ms + x] = labels[size_t(y) * kPatternSize + x] == region ? 255 : 0;
            cairo_surface_mark_dirty(mask);
            cairo_save(cr);
            cairo_translate(cr, ox + pc * 8 - kPatternMargin * scale, oy + pr * 8 - kPatternMargin * scale);
            cairo_scale(cr, scale, scale);
            // Shadow, body, then a light edge.
            cairo_set_source_rgba(cr, 0, 0, 0, 0.35);
            cairo_mask_surface(cr, mask, 8, 10);
            Rgb c = Hex(kPieceColours[region - 1]);
            SetColor(cr, c);
            cairo_mask_surface(cr, mask, 0, 0);
            cairo_restore(cr);
            cairo_surface_destroy(mask);
        }
        cairo_restore(cr);
        DrawBevel(cr, 0, y0, w, frameH, 0, 2, false);
    }
}

void SpinningPiece(cairo_t* cr) {
    AnimSockets(cr);
    for (int f = 0; f < 10; ++f) {
        cairo_save(cr);
        cairo_translate(cr, f * 50 + 25, 25);
        cairo_rotate(cr, f * 2 * M_PI / 10);
        double squash = std::fabs(std::cos(f * M_PI / 10)) * 0.35 + 0.65;
        cairo_scale(cr, squash, 1);
        PiecePath(cr, -22, -22, 44);
        cairo_pattern_t* g = cairo_pattern_create_linear(-18, -18, 18, 18);
        cairo_pattern_add_color_stop_rgb(g, 0, kBrassShine.r, kBrassShine.g, kBrassShine.b);
        cairo_pattern_add_color_stop_rgb(g, 0.6, kBrass.r, kBrass.g, kBrass.b);
        cairo_pattern_add_color_stop_rgb(g, 1, kBrassDark.r, kBrassDark.g, kBrassDark.b);
        cairo_set_source(cr, g);
        cairo_fill_preserve(cr);
        cairo_pattern_destroy(g);
        SetColor(cr, kWalnutDark);
        cairo_set_line_width(cr, 1.2);
        cairo_stroke(cr);
        cairo_restore(cr);
    }
}

void Indicator(cairo_t* cr, Rgb lamp, Icon icon) {
    for (int f = 0; f < 2; ++f) {
        double y = f * 30, cx = 15, cy = y + 15;
        cairo_save(cr);
        cairo_rectangle(cr, 0, y, 30, 30);
        cairo_clip(cr);
        WoodTile(cr, 30, 60, 400, false, 0.7);
        cairo_arc(cr, cx, cy, 13, 0, 2 * M_PI);
        SetColor(cr, kBrassDark);
        cairo_fill(cr);
        cairo_arc(cr, cx, cy, 11.5, 0, 2 * M_PI);
        SetColor(cr, kBrass);
        cairo_fill(cr);
        Rgb c = f ? lamp : Scale(lamp, 0.3);
        cairo_pattern_t* g = cairo_pattern_create_radial(cx - 3, cy - 3, 1, cx, cy, 10);
        cairo_pattern_add_color_stop_rgb(g, 0, Scale(c, 1.7).r, Scale(c, 1.7).g, Scale(c, 1.7).b);
        cairo_pattern_add_color_stop_rgb(g, 1, Scale(c, 0.7).r, Scale(c, 0.7).g, Scale(c, 0.7).b);
        cairo_arc(cr, cx, cy, 9.5, 0, 2 * M_PI);
        cairo_set_source(cr, g);
        cairo_fill(cr);
        cairo_pattern_destroy(g);
        DrawIcon(cr, icon, cx, cy, 11, f ? Hex(0xffffff) : Scale(kParchment, 0.6));
        cairo_restore(cr);
    }
}

// A vertical slider track carved into a panel, from (x, y0) to (x, y1), with a scale beside it.
void SliderTrack(cairo_t* cr, double x, double y0, double y1) {
    RoundedRect(cr, x - 4, y0 - 6, 8, y1 - y0 + 12, 4);
    SetColor(cr, kWalnutDark);
    cairo_fill(cr);
    DrawBevel(cr, x - 5, y0 - 7, 10, y1 - y0 + 14, 5, 1.5, false);
    for (int i = 0; i <= 10; ++i) {
        double y = y0 + (y1 - y0) * i / 10.0;
        cairo_move_to(cr, x + 9, y);
        cairo_line_to(cr, x + (i % 5 == 0 ? 19 : 14), y);
    }
    SetColor(cr, kInkSoft);
    cairo_set_line_width(cr, 1);
    cairo_stroke(cr);
}

void Wordmark(cairo_t* cr, double x, double y, double w, double h, Rgb colour, TextEffect effect) {
    TextStyle s{kTitleFont, h * 0.8, colour, effect, 0, false};
    DrawText(cr, "Tavirel Puzzle", x, y, w, h, s);
}

// A baize table-like damask tile for the backdrops behind the picture window and the honour roll.
void BackdropTile(cairo_t* cr, int w, int h) {
    cairo_surface_t* felt = MakeFelt(w, h, Scale(kBaize, 0.7), 0.22, 808);
    cairo_set_source_surface(cr, felt, 0, 0);
    cairo_paint(cr);
    cairo_surface_destroy(felt);
    // A faint lozenge pattern, whole within the tile so that it repeats cleanly.
    cairo_save(cr);
    cairo_set_line_width(cr, 1);
    SetColor(cr, kBrassLight, 0.13);
    cairo_move_to(cr, w / 2.0, 0);
    cairo_line_to(cr, w, h / 2.0);
    cairo_line_to(cr, w / 2.0, h);
    cairo_line_to(cr, 0, h / 2.0);
    cairo_close_path(cr);
    cairo_stroke(cr);
    cairo_arc(cr, w / 2.0, h / 2.0, 4, 0, 2 * M_PI);
    SetColor(cr, kBrassLight, 0.18);
    cairo_fill(cr);
    cairo_restore(cr);
}

void HonourPanel(cairo_t* cr, int w, int h) {
    DrawPanel(cr, w, h, "", 1590, 18);
    // Heading band (the title picture sits above the panel on screen; inside, a cup emblem).
    DrawIcon(cr, kIconCup, w / 2.0 + 1, 34, 34, kBrassShine);
    DrawIcon(cr, kIconCup, w / 2.0, 33, 34, kBrassDark);
    // Ten ruled rows at 63 + 30 i: rank at 30, name at 60, score at 420. The game writes them in light
    // ivory with a dark shadow, so they lie on a sunken board of dark felt, as the message window's text.
    const double bx = 22, by = 58, bw = w - 44, bh = 310;
    cairo_surface_t* felt = MakeFelt(128, 128, Scale(kWalnutDark, 1.15), 0.2, 1592);
    cairo_save(cr);
    RoundedRect(cr, bx, by, bw, bh, 5);
    cairo_translate(cr, bx, by);
    FillWithTexture(cr, felt);
    cairo_restore(cr);
    cairo_surface_destroy(felt);
    for (int i = 0; i < 10; ++i) {
        double y = 63 + 30 * i;
        if (i % 2 == 0) {
            cairo_rectangle(cr, bx + 2, y, bw - 4, 30);
            SetColor(cr, kWalnutLight, 0.12);
            cairo_fill(cr);
        }
        if (i < 9) {
            cairo_move_to(cr, bx + 2, y + 29.5);
            cairo_line_to(cr, bx + bw - 2, y + 29.5);
            SetColor(cr, kBrass, 0.3);
            cairo_set_line_width(cr, 1);
            cairo_stroke(cr);
        }
    }
    cairo_move_to(cr, 57.5, 63);
    cairo_line_to(cr, 57.5, 363);
    cairo_move_to(cr, 410.5, 63);
    cairo_line_to(cr, 410.5, 363);
    SetColor(cr, kBrass, 0.35);
    cairo_stroke(cr);
    DrawBevel(cr, bx, by, bw, bh, 5, 2.5, false);
    DrawInlay(cr, bx - 3, by - 3, bw + 6, bh + 6, 7);
    // The lower part holds the wipe and close buttons on screen; a laurel rule decorates it.
    cairo_move_to(cr, 120, 400);
    cairo_line_to(cr, w - 120, 400);
    SetColor(cr, kBrass);
    cairo_set_line_width(cr, 2);
    cairo_stroke(cr);
    for (int k = -1; k <= 1; k += 2) {
        cairo_arc(cr, w / 2.0 + k * 20, 400, 5, 0, 2 * M_PI);
        SetColor(cr, kBrass);
        cairo_fill(cr);
    }
}

void MessageFrame(cairo_t* cr, int w, int h) {
    DrawPanel(cr, w, h, "", 1480, 10);
    // The heading plaque's place (the localised heading is pasted over it at (13, 7)).
    DrawTitlePlaque(cr, 13, 7, 474, 46, "");
    // The game sets the message in light ivory from (20, 60), 460 wide, over up to five lines, with the
    // name field at (20, 160): all of it lies on a sunken board of dark felt, where light letters read.
    // The buttons stay on the parchment below it, at y 255.
    const double bx = 13, by = 57, bw = w - 26, bh = 190;
    cairo_surface_t* felt = MakeFelt(128, 128, Scale(kWalnutDark, 1.15), 0.2, 1482);
    cairo_save(cr);
    RoundedRect(cr, bx, by, bw, bh, 5);
    cairo_translate(cr, bx, by);
    FillWithTexture(cr, felt);
    cairo_restore(cr);
    cairo_surface_destroy(felt);
    DrawBevel(cr, bx, by, bw, bh, 5, 2.5, false);
    DrawInlay(cr, bx - 3, by - 3, bw + 6, bh + 6, 7);
}

void PictureFrame(cairo_t* cr, int w, int h) {
    DrawWoodBoard(cr, 0, 0, w, h, 2610);
    DrawBevel(cr, 0, 0, w, h, 0, 4, true);
    DrawParchment(cr, 22, 22, w - 44, h - 44, 8, 2611);
    DrawBevel(cr, 21, 21, w - 42, h - 42, 9, 3, false);
    DrawInlay(cr, 32, 32, w - 65, h - 65, 6);
    // The title runs across the top (drawn by the game at about y 30); a rule below it.
    cairo_move_to(cr, 150, 78.5);
    cairo_line_to(cr, w - 150, 78.5);
    SetColor(cr, kBrass);
    cairo_set_line_width(cr, 1.5);
    cairo_stroke(cr);
    // The picture's well: 550 x 388 centred across, below the title, framed by a moulding.
    double px = (w - 550) / 2.0, py = (h - 388) / 2.0, pw = 550, ph = 388;
    DrawShadow(cr, px - 14, py - 14, pw + 28, ph + 28, 2, 6, 0.35);
    DrawFrameMoulding(cr, px, py, pw, ph, 14, 2612);
    cairo_rectangle(cr, px, py, pw, ph);
    SetColor(cr, Hex(0x1a120c));
    cairo_fill(cr);
    // Button sockets at (590, 496) and (669, 496).
    for (int k = 0; k < 2; ++k) {
        double bx = k ? 669 : 590, by = 496;
        RoundedRect(cr, bx - 4, by - 4, 58, 58, 8);
        SetColor(cr, kWalnutDark, 0.3);
        cairo_fill(cr);
    }
    Wordmark(cr, 60, 514, 300, 40, kInkSoft, kTextPlain);
}

void NewPuzzlePanel(cairo_t* cr, int w, int h, const std::string& title, bool browser) {
    DrawWoodBoard(cr, 0, 0, w, h, browser ? 3250 : 2000);
    DrawBevel(cr, 0, 0, w, h, 0, 3, true);
    // The page: 500 x 230 at x 105 (x 5 for the browser, whose client is 100 px narrower).
    double px = browser ? 4 : 104, py = 44, pw = browser ? 532 : 502, ph = 232;
    DrawParchment(cr, px, py, pw, ph, 6, 2001);
    DrawBevel(cr, px - 1, py - 1, pw + 2, ph + 2, 7, 2.5, false);
    if (!browser) {
        // The title, written upwards on a brass plaque in the left column.
        double tx = 22, ty = 40, tw = 56, th = 230;
        DrawShadow(cr, tx, ty, tw, th, 12, 3, 0.35);
        DrawBrassPlate(cr, tx, ty, tw, th, 12, kStateNormal);
        TextStyle s{kTitleFont, 34, Hex(0x3a200b), kTextEngraved, 0, false};
        DrawTextUpwards(cr, title, tx + 4, ty + 12, tw - 8, th - 24, s);
    } else {
        for (int i = 0; i < 4; ++i) {
            DrawWell(cr, 4 + 111 * i, 86, 112, 131);
            // The saved game's name is written at (6 + 111 i, 193) in light ivory: a dark plate under it.
            RoundedRect(cr, 6 + 111 * i, 193, 108, 24, 3);
            SetColor(cr, kWalnutDark, 0.92);
            cairo_fill_preserve(cr);
            SetColor(cr, kBrassDark, 0.8);
            cairo_set_line_width(cr, 1);
            cairo_stroke(cr);
        }
    }
    // The wood rail under the page holds the close, start and help buttons.
    cairo_move_to(cr, px, py + ph + 6.5);
    cairo_line_to(cr, px + pw, py + ph + 6.5);
    SetColor(cr, kBrass, 0.7);
    cairo_set_line_width(cr, 1);
    cairo_stroke(cr);
}

void ScreenPanel800(cairo_t* cr, int w, int h, uint32_t seed, bool textPage) {
    DrawWoodBoard(cr, 0, 0, w, h, seed);
    DrawBevel(cr, 0, 0, w, h, 0, 4, true);
    DrawParchment(cr, 20, 20, w - 40, h - 40, 8, seed + 1);
    DrawBevel(cr, 19, 19, w - 38, h - 38, 9, 3, false);
    DrawInlay(cr, 30, 30, w - 61, h - 61, 6);
    if (textPage) {
        // The text box from (100, 50), 600 wide: a page with a red margin rule.
        cairo_move_to(cr, 88.5, 46);
        cairo_line_to(cr, 88.5, 500);
        SetColor(cr, kRuby, 0.45);
        cairo_set_line_width(cr, 1);
        cairo_stroke(cr);
        for (int i = 0; i < 26; ++i) {
            cairo_move_to(cr, 96, 66.5 + 16.5 * i);
            cairo_line_to(cr, 704, 66.5 + 16.5 * i);
        }
        SetColor(cr, Hex(0x7fa0c0), 0.18);
        cairo_stroke(cr);
    } else {
        // The gallery: fifteen thumbnail places in three rows of five.
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 5; ++c) DrawWell(cr, 70 + 136 * c, 70 + 136 * r, 116, 116);
    }
    Wordmark(cr, 50, 530, 300, 36, kInkSoft, kTextPlain);
}

void PrintBanner(cairo_t* cr, int w, int h, bool header) {
    // White paper: a copper ornament rule and the game's name in the header, a thin rule and
    // small print in the footer.
    cairo_rectangle(cr, 0, 0, w, h);
    SetColor(cr, Hex(0xffffff));
    cairo_fill(cr);
    double y = header ? h * 0.72 : h * 0.3;
    cairo_move_to(cr, 60, y);
    cairo_line_to(cr, w - 60, y);
    SetColor(cr, kCopper);
    cairo_set_line_width(cr, header ? 6 : 3);
    cairo_stroke(cr);
    for (int k = 0; k < 3; ++k) {
        cairo_save(cr);
        cairo_translate(cr, w / 2.0 + (k - 1) * 60, y);
        cairo_rotate(cr, M_PI / 4);
        cairo_rectangle(cr, -9, -9, 18, 18);
        SetColor(cr, k == 1 ? kBrassDark : kCopper);
        cairo_fill(cr);
        cairo_restore(cr);
    }
    if (header) {
        TextStyle s{kTitleFont, 110, kWalnut, kTextPlain, 0, false};
        DrawText(cr, "Tavirel Puzzle", 0, 10, w, h * 0.6, s);
        PiecePath(cr, 70, 20, 120);
        SetColor(cr, kCopper);
        cairo_fill(cr);
        PiecePath(cr, w - 190, 20, 120);
        SetColor(cr, kBrass);
        cairo_fill(cr);
    } else {
        TextStyle s{kTextFont, 34, kInkSoft, kTextPlain, 0, false};
        DrawText(cr, "Tavirel Puzzle  \u00b7  a jigsaw game of photographs", 0, h * 0.42, w, h * 0.4, s);
    }
}

void WaitPanel(cairo_t* cr, int w, int h) {
    DrawPanel(cr, w, h, "", 3010, 12);
    DrawIcon(cr, kIconPrinter, w / 2.0 + 1, 71, 70, kBrassShine);
    DrawIcon(cr, kIconPrinter, w / 2.0, 70, 70, kInkSoft);
    // Five unlit squares at 125 + 50 k, 247 (the progress picture's unlit cell).
    for (int k = 0; k < 5; ++k) DrawWell(cr, 125 + 50 * k - 2, 245, 48, 48);
}

void ProgressSquares(cairo_t* cr) {
    for (int f = 0; f < 2; ++f) {
        double y = f * 44;
        cairo_save(cr);
        cairo_rectangle(cr, 0, y, 44, 44);
        cairo_clip(cr);
        DrawBrassPlate(cr, 1, y + 1, 42, 42, 7, kStateNormal);
        Rgb c = f ? Hex(0xf5b335) : Hex(0x4a3a22);
        cairo_pattern_t* g = cairo_pattern_create_radial(18, y + 18, 2, 22, y + 22, 16);
        cairo_pattern_add_color_stop_rgb(g, 0, Scale(c, 1.6).r, Scale(c, 1.6).g, Scale(c, 1.6).b);
        cairo_pattern_add_color_stop_rgb(g, 1, Scale(c, 0.7).r, Scale(c, 0.7).g, Scale(c, 0.7).b);
        RoundedRect(cr, 8, y + 8, 28, 28, 5);
        cairo_set_source(cr, g);
        cairo_fill(cr);
        cairo_pattern_destroy(g);
        cairo_restore(cr);
    }
}

void MusicPanel(cairo_t* cr, int w, int h) {
    DrawPanel(cr, w, h, "", 2140, 12);
    // Two sliders: master at x 69, wave at x 181, from y 100 to 236; indicator sockets above them.
    SliderTrack(cr, 69 + 18, 100 + 10, 236 + 10);
    SliderTrack(cr, 181 + 18, 100 + 10, 236 + 10);
    DrawIcon(cr, kIconSpeaker, 87, 76, 20, kInkSoft);
    DrawIcon(cr, kIconMusic, 199, 76, 20, kInkSoft);
    // The four track buttons stand in a 2 x 2 block at (262, 104) .. (382, 224) on an engraved disc.
    cairo_arc(cr, 322, 164, 78, 0, 2 * M_PI);
    SetColor(cr, kParchmentDark, 0.45);
    cairo_fill(cr);
    DrawIcon(cr, kIconDisc, 322, 164, 150, Scale(kBrass, 0.9));
    cairo_arc(cr, 322, 164, 62, 0, 2 * M_PI);
    SetColor(cr, kParchmentDark, 0.55);
    cairo_fill(cr);
    for (int k = 0; k < 4; ++k) {
        double x = 262 + (k % 2) * 70, y = 104 + (k / 2) * 70;
        cairo_arc(cr, x + 25, y + 25, 24, 0, 2 * M_PI);
        SetColor(cr, kWalnutDark, 0.45);
        cairo_fill(cr);
    }
}

void VideoFrame(cairo_t* cr, int w, int h) {
    DrawPanel(cr, w, h, "", 1660, 12);
    // The clip (320 x 240) plays at (60, 50).
    DrawShadow(cr, 50, 40, 340, 260, 2, 5, 0.35);
    DrawFrameMoulding(cr, 60, 50, 320, 240, 10, 1661);
    cairo_rectangle(cr, 60, 50, 320, 240);
    SetColor(cr, Hex(0x000000));
    cairo_fill(cr);
    Wordmark(cr, 40, 312, 360, 44, kInkSoft, kTextPlain);
}

void ClothPanel(cairo_t* cr, int w, int h) {
    DrawPanel(cr, w, h, "", 3050, 12);
    // Preview well for the 100 x 100 texture, and the selector's groove.
    DrawShadow(cr, 150, 80, 104, 104, 2, 4, 0.3);
    DrawFrameMoulding(cr, 152, 82, 100, 100, 8, 3051);
    cairo_rectangle(cr, 152, 82, 100, 100);
    SetColor(cr, kBaize);
    cairo_fill(cr);
}

void ClothBadge(cairo_t* cr, int w, int h) {
    DrawBrassPlate(cr, 0, 0, w, h, 10, kStateNormal);
    for (int k = 0; k < 5; ++k) {
        cairo_surface_t* cloth = DrawCloth(k);
        cairo_save(cr);
        double x = 14 + k * 36;
        RoundedRect(cr, x, 8, 28, 28, 4);
        cairo_clip(cr);
        cairo_set_source_surface(cr, cloth, x, 8);
        cairo_paint(cr);
        cairo_restore(cr);
        RoundedRect(cr, x, 8, 28, 28, 4);
        SetColor(cr, kBrassDark);
        cairo_set_line_width(cr, 1.5);
        cairo_stroke(cr);
        cairo_surface_destroy(cloth);
    }
}

void LanguagePanel(cairo_t* cr, int w, int h) {
    DrawPanel(cr, w, h, "", 3040, 12);
    DrawIcon(cr, kIconGlobe, w - 60, 60, 60, kBrass);
    // Two lines for the language names at (50, 60) and (50, 90).
    for (int i = 0; i < 2; ++i) {
        cairo_move_to(cr, 40, 92.5 + 30 * i);
        cairo_line_to(cr, 220, 92.5 + 30 * i);
    }
    SetColor(cr, kBrassDark, 0.3);
    cairo_set_line_width(cr, 1);
    cairo_stroke(cr);
}

// The title bar's open and save buttons stand in the 190 pixels an 800-pixel screen leaves between New
// puzzle and the about button: a narrow plate with the icon above a short word. The save button's strip
// starts with a dimmed frame, shown while there is nothing to save.
static void TitleFileButtonStrip(cairo_t* cr, int w, int frameH, const std::string& words, Icon icon,
                                 bool disabledFrame) {
    const int first = disabledFrame ? 1 : 0;
    for (int f = 0; f < 3 + first; ++f) {
        bool dimmed = disabledFrame && f == 0;
        ButtonState state = dimmed ? kStateNormal : ButtonState(f - first);
        double y = f * frameH, dy = state == kStatePressed ? 1 : 0;
        DrawBrassPlate(cr, 0.5, y + 0.5, w - 1, frameH - 1, std::min(w, frameH) * 0.28, state);
        Rgb ink = state == kStateLit ? Hex(0x2a1405) : Hex(0x3d240f);
        double size = frameH * 0.38;
        DrawIcon(cr, icon, w / 2.0, y + 4 + size / 2 + 1 + dy, size, kBrassShine);
        DrawIcon(cr, icon, w / 2.0, y + 4 + size / 2 + dy, size, ink);
        TextStyle s{kButtonFont, frameH * 0.3, ink, kTextEngraved, 0, false};
        DrawText(cr, words, 5, y + 6 + size + dy, w - 10, frameH - size - 10, s);
        if (dimmed) {
            // Tarnished: the plate sinks into the walnut behind it.
            cairo_rectangle(cr, 0, y, w, frameH);
            SetColor(cr, kWalnutDark, 0.55);
            cairo_fill(cr);
        }
    }
}

void CommandTileTitle(cairo_t* cr, int w, int h) {
    // Title bar: walnut with a brass rail along the bottom and a soft light along the top.
    WoodTile(cr, w, h, 1220, false);
    cairo_pattern_t* g = cairo_pattern_create_linear(0, 0, 0, h);
    cairo_pattern_add_color_stop_rgba(g, 0, 1, 0.9, 0.7, 0.18);
    cairo_pattern_add_color_stop_rgba(g, 0.4, 1, 0.9, 0.7, 0.0);
    cairo_pattern_add_color_stop_rgba(g, 1, 0, 0, 0, 0.3);
    cairo_rectangle(cr, 0, 0, w, h);
    cairo_set_source(cr, g);
    cairo_fill(cr);
    cairo_pattern_destroy(g);
    TileBorderH(cr, w, h - 6, 4);
    cairo_rectangle(cr, 0, h - 2, w, 2);
    SetColor(cr, kWalnutDark);
    cairo_fill(cr);
}

}  // namespace

cairo_surface_t* DrawCloth(int k) {
    const int n = 100;
    const uint32_t seed = 6000 + uint32_t(k);
    switch (k) {
    case 0: return MakeFelt(n, n, kBaize, 0.35, seed);
    case 1: return MakeFelt(n, n, Hex(0x1f4f8a), 0.35, seed);
    case 2:  // burgundy velvet: deep pile with a soft sheen
        return PixelTexture(n, n, [&](double u, double v, int, int) {
            double sheen = PeriodicFbm(u, v, 2, 2, 3, seed);
            double pile = PeriodicNoise(u * n, v * n, n, n, seed + 3);
            return Scale(Hex(0x6e1625), 0.75 + 0.6 * sheen * sheen + 0.08 * (pile - 0.5));
        });
    case 3: return PixelTexture(n, n, [&](double u, double v, int x, int y) {
            return Weave(u, v, x, y, 50, Hex(0xd8cdb4), Hex(0xcfc2a5), seed);
        });
    case 4: return MakeWood(n, n, kWalnutDark, kWalnutLight, seed, false);
    case 5: {  // oak parquet: four 50 x 50 blocks, grain turning from block to block
        cairo_surface_t* s = NewSurface(n, n);
        cairo_t* cr = cairo_create(s);
        for (int b = 0; b < 4; ++b) {
            int bx = (b % 2) * 50, by = (b / 2) * 50;
            bool vertical = (b == 1 || b == 2);
            cairo_surface_t* wood = MakeWood(50, 50, Hex(0x8a6232), Hex(0xd2a86a), seed + b, vertical);
            cairo_set_source_surface(cr, wood, bx, by);
            cairo_rectangle(cr, bx, by, 50, 50);
            cairo_fill(cr);
            cairo_surface_destroy(wood);
            cairo_rectangle(cr, bx + 0.5, by + 0.5, 49, 49);
            SetColor(cr, Hex(0x4a3018), 0.55);
            cairo_set_line_width(cr, 1);
            cairo_stroke(cr);
        }
        cairo_destroy(cr);
        return s;
    }
    case 6: return PixelTexture(n, n, [&](double u, double v, int, int) {  // cork
            double a = PeriodicNoise(u * 25, v * 25, 25, 25, seed), b = PeriodicNoise(u * 50, v * 50, 50, 50, seed + 1);
            double c = PeriodicFbm(u, v, 4, 4, 3, seed + 2);
            Rgb base = Mix(Hex(0xa8743f), Hex(0xd6a86c), c);
            if (a > 0.78) base = Scale(base, 0.7);
            if (b < 0.12) base = Scale(base, 0.75);
            return base;
        });
    case 7: return MakeFelt(n, n, Hex(0x55595e), 0.4, seed);
    case 8: return PixelTexture(n, n, [&](double u, double v, int x, int y) {  // sand canvas
            return Weave(u, v, x, y, 25, Hex(0xcdb386), Hex(0xbfa474), seed);
        });
    default: return PixelTexture(n, n, [&](double u, double v, int, int) {  // marble
            double t = PeriodicFbm(u, v, 3, 3, 5, seed);
            double vein = std::fabs(std::sin(2 * M_PI * (u + v + 2.2 * t)));
            double line = std::pow(1 - vein, 10);
            Rgb base = Mix(Hex(0xf1eee8), Hex(0xd9d4cb), PeriodicFbm(u, v, 2, 2, 3, seed + 5));
            return Mix(base, Hex(0x6f6a64), line * 0.8);
        });
    }
}

cairo_surface_t* DrawArtItem(const ArtEntry& entry, uint32_t id, const std::string& words, Rgb* background) {
    Item it = Begin(entry);
    cairo_t* cr = it.cr;
    int w = it.w, h = it.h;
    *background = kWalnut;
    int slot = int(id - entry.id);
    switch (entry.id) {
    case kArtExitButton: DrawIconCommandStrip(cr, w, h / 3, kIconClose); break;
    case kArtMinimiseButton: DrawIconCommandStrip(cr, w, h / 3, kIconMinimise); break;
    case kArtTitleBarTile: CommandTileTitle(cr, w, h); break;
    case kArtAboutButton:
        for (int f = 0; f < 3; ++f) {
            double y = f * 52;
            DrawBrassPlate(cr, 1, y + 2, w - 2, 48, 14, ButtonState(f));
            PiecePath(cr, 10, y + 8, 36);
            SetColor(cr, Scale(kCopper, f == 1 ? 1.2 : 1.0));
            cairo_fill(cr);
            TextStyle s{kTitleFont, 30, Hex(0x3a200b), kTextEngraved, 0, false};
            DrawText(cr, "Tavirel", 46, y + 2 + (f == 2), w - 56, 48, s);
        }
        break;
    case kArtNewPuzzleButton: DrawWordCommandStrip(cr, w, h / 3, words, kIconPiece); break;
    case kArtOpenPuzzleButton: TitleFileButtonStrip(cr, w, h / 3, words, kIconFolder, false); break;
    case kArtSavePuzzleButton: TitleFileButtonStrip(cr, w, h / 4, words, kIconDisk, true); break;
    case kArtInfoButton: DrawIconCommandStrip(cr, w, h / 3, kIconInfo); break;
    case kArtTrayEmptyButton: TrayButton(cr, slot, false); break;
    case kArtTrayFullButton: TrayButton(cr, slot, true); break;
    case kArtTrayCloseButton: DrawIconCommandStrip(cr, w, h / 3, kIconClose); break;
    case kArtTrayRenameButton: DrawIconCommandStrip(cr, w, h / 3, kIconPencil); break;
    case kArtTrayTile: {
        cairo_surface_t* felt = MakeFelt(w, h, Scale(kBaize, 0.62), 0.2, 2270);
        cairo_set_source_surface(cr, felt, 0, 0);
        cairo_paint(cr);
        cairo_surface_destroy(felt);
        break;
    }
    case kArtMainFrameAcross: WoodTile(cr, w, h, 3320, false, 0.82); break;
    case kArtMainFrameUpright: WoodTile(cr, w, h, 3330, true, 0.82); break;
    case kArtToolsBarTile:
        WoodTile(cr, w, h, 1040, true);
        TileBorderV(cr, h, w - 4, 3);
        break;
    case kArtOptionsBarTile:
        WoodTile(cr, w, h, 1050, false);
        TileBorderH(cr, w, 1, 3);
        break;
    case kArtToolsPanelTile:
        WoodTile(cr, w, h, 1200, true, 0.9);
        TileBorderV(cr, h, w - 5, 4);
        break;
    case kArtOptionsPanelTile:
        WoodTile(cr, w, h, 1230, false, 0.9);
        TileBorderH(cr, w, 1, 4);
        break;
    case kArtToolsBarLabel:
        for (int f = 0; f < 3; ++f) {
            double y = f * 140;
            cairo_save(cr);
            cairo_rectangle(cr, 0, y, w, 140);
            cairo_clip(cr);
            WoodTile(cr, w, h, 1040, true, f == 1 ? 1.2 : f == 2 ? 0.8 : 1.0);
            TileBorderV(cr, h, w - 4, 3);
            TextStyle s{kButtonFont, 15, f == 1 ? kBrassShine : kBrassLight, kTextRaised, 0, false};
            DrawTextUpwards(cr, words, 0, y + 6, w - 4, 128, s);
            cairo_restore(cr);
        }
        break;
    case kArtOptionsBarLabel:
        for (int f = 0; f < 3; ++f) {
            double y = f * 25;
            cairo_save(cr);
            cairo_rectangle(cr, 0, y, w, 25);
            cairo_clip(cr);
            cairo_translate(cr, 0, y);
            WoodTile(cr, w, 25, 1050, false, f == 1 ? 1.2 : f == 2 ? 0.8 : 1.0);
            TileBorderH(cr, w, 1, 3);
            TextStyle s{kButtonFont, 15, f == 1 ? kBrassShine : kBrassLight, kTextRaised, 0, false};
            DrawText(cr, words, 4, 3, w - 8, 22, s);
            cairo_restore(cr);
        }
        break;
    case kArtAssembleButton: AnimButton(cr, kIconPiece, kEmerald); break;
    case kArtHintButton: AnimButton(cr, kIconBulb, Hex(0xb8860b)); break;
    case kArtMusicButton: AnimButton(cr, kIconMusic, Hex(0x2e5f8a)); break;
    case kArtHonourButton: AnimButton(cr, kIconCup, Hex(0x8a5a1a)); break;
    case kArtGatherEdgesButton: AnimButtonWithDisabled(cr, kIconEdges, Hex(0x6e3f6a)); break;
    case kArtLanguageButton: AnimButton(cr, kIconGlobe, Hex(0x2e7a7a)); break;
    case kArtClothButton: AnimButton(cr, kIconCloth, kBaize); break;
    case kArtHelpButton: case kArtPanelHelpButton: AnimButton(cr, kIconHelp, Hex(0x2e5f8a)); break;
    case kArtPreviewButton: AnimButton(cr, kIconMagnifier, kEmerald); break;
    case kArtQuitButton: AnimButton(cr, kIconDoor, kRuby); break;
    case kArtMessageFrame: MessageFrame(cr, w, h); break;
    case kArtMessageHeading: DrawTitlePlaque(cr, 0, 0, w, h, words); *background = kParchment; break;
    case kArtMessageOkButton: DrawIconCommandStrip(cr, w, h / 3, kIconCheck); *background = kParchment; break;
    case kArtMessageCancelButton: DrawIconCommandStrip(cr, w, h / 3, kIconClose); *background = kParchment; break;
    case kArtLanguagePanel: LanguagePanel(cr, w, h); break;
    case kArtDoneButton: DrawIconCommandStrip(cr, w, h / 3, kIconCheck); break;
    case kArtStopButton: DrawIconCommandStrip(cr, w, h / 3, kIconStop); break;
    case kArtNewPuzzlePanel: NewPuzzlePanel(cr, w, h, words, false); break;
    case kArtNewPuzzleCloseButton: DrawIconCommandStrip(cr, w, h / 3, kIconClose); break;
    case kArtNewPuzzleHelpButton: DrawIconCommandStrip(cr, w, h / 3, kIconHelp); break;
    case kArtTabPictures: case kArtTabSize: case kArtTabPieces: case kArtTabShape:
        DrawTabCheckStrip(cr, w, h / 4, words);
        break;
    case kArtShapeClassicCheck: case kArtShapeDovetailCheck: case kArtShapeWaveCheck:
        DrawLampCheckStrip(cr, w, h / 4, words);
        *background = kParchment;
        break;
    case kArtFitSizeButton: AnimButton(cr, kIconFit, Hex(0x2e5f8a)); break;
    case kArtActualSizeButton: AnimButton(cr, kIconActualSize, Hex(0x2e5f8a)); break;
    case kArtStartButton: AnimButton(cr, kIconPlay, kEmerald); break;
    case kArtShapePicture: ShapePicture(cr, w, h / 3); break;
    case kArtSpinningPiece: SpinningPiece(cr); break;
    case kArtZoomScroll: case kArtCountScroll: case kArtImageListScroll: case kArtBrowserScroll:
    case kArtClothScroll:
        DrawScrollStrip(cr, w, entry.zones);
        break;
    case kArtBrowserPanel: NewPuzzlePanel(cr, w, h, "", true); break;
    case kArtBrowserOpenTitle: case kArtBrowserSaveTitle: case kArtImagePreviewTitle: case kArtMusicTitle:
        DrawTitlePlaque(cr, 0, 0, w, h, words);
        break;
    case kArtBrowserOpenButton: DrawIconCommandStrip(cr, w, h / 3, kIconFolder); break;
    case kArtBrowserSaveButton: DrawIconCommandStrip(cr, w, h / 3, kIconDisk); break;
    case kArtBrowserDeleteButton: AnimButton(cr, kIconTrash, kRuby); break;
    case kArtBackdropTile: BackdropTile(cr, w, h); break;
    case kArtPictureFrame: PictureFrame(cr, w, h); break;
    case kArtPrintButton: AnimButton(cr, kIconPrinter, Hex(0x5a4a8a)); break;
    case kArtCloseAnimButton: AnimButton(cr, kIconClose, kRuby); break;
    case kArtHonourPanel: HonourPanel(cr, w, h); break;
    case kArtHonourTitle: {
        // The title floats over the backdrop tiles: a plaque on a band of the backdrop's own baize.
        BackdropTile(cr, w, h);
        DrawTitlePlaque(cr, 20, 4, w - 40, h - 8, words);
        break;
    }
    case kArtWipeButton: AnimButton(cr, kIconEraser, kRuby); break;
    case kArtPrintHeader: PrintBanner(cr, w, h, true); break;
    case kArtPrintFooter: PrintBanner(cr, w, h, false); break;
    case kArtPrintWaitPanel: WaitPanel(cr, w, h); break;
    case kArtProgressSquare: ProgressSquares(cr); break;
    case kArtGalleryPanel: ScreenPanel800(cr, w, h, 3080, false); break;
    case kArtGalleryInfoButton: AnimButton(cr, kIconBook, Hex(0x2e5f8a)); break;
    case kArtGalleryNextButton: AnimButton(cr, kIconArrowRight, kEmerald); break;
    case kArtGalleryPreviousButton: AnimButton(cr, kIconArrowLeft, kEmerald); break;
    case kArtInfoTextPanel: ScreenPanel800(cr, w, h, 3120, true); break;
    case kArtInfoNextPageButton: DrawIconCommandStrip(cr, w, h / 3, kIconArrowRight); break;
    case kArtInfoPreviousPageButton: DrawIconCommandStrip(cr, w, h / 3, kIconArrowLeft); break;
    case kArtMusicPanel: MusicPanel(cr, w, h); break;
    case kArtTrackButton: {
        static const uint32_t kTrackColours[4] = {0x2e5f8a, 0x8a5a1a, 0x6e3f6a, 0x8a2e3a};
        const int k = int(id - kArtTrackButton);
        // Each frame stands on the very pixels of the music panel under the button, so no seam shows.
        cairo_surface_t* panel = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 420, 300);
        cairo_t* pc = cairo_create(panel);
        MusicPanel(pc, 420, 300);
        cairo_destroy(pc);
        const double bx = 262 + (k % 2) * 70, by = 104 + (k / 2) * 70;
        for (int f = 0; f < 11; ++f) {
            cairo_save(cr);
            cairo_rectangle(cr, f * 50, 0, 50, 50);
            cairo_clip(cr);
            cairo_set_source_surface(cr, panel, f * 50 - bx, -by);
            cairo_paint(cr);
            cairo_restore(cr);
        }
        cairo_surface_destroy(panel);
        DrawTrackButtonStrip(cr, std::to_string(k + 1), Hex(kTrackColours[k]));
        break;
    }
    case kArtMasterIndicator: Indicator(cr, Hex(0xf5b335), kIconSpeaker); break;
    case kArtWaveIndicator: Indicator(cr, Hex(0x4fc37a), kIconMusic); break;
    case kArtDiscIndicator: Indicator(cr, Hex(0x4f9fe0), kIconDisc); break;
    case kArtVolumeThumb: DrawBrassPlate(cr, 0, 0, w, h, 5, kStateNormal);
        for (int k = -1; k <= 1; ++k) {
            cairo_move_to(cr, 8, h / 2.0 + 4 * k);
            cairo_line_to(cr, w - 8, h / 2.0 + 4 * k);
        }
        SetColor(cr, kBrassDark);
        cairo_set_line_width(cr, 1);
        cairo_stroke(cr);
        break;
    case kArtVideoFrame: VideoFrame(cr, w, h); break;
    case kArtVideoCloseButton: DrawIconCommandStrip(cr, w, h / 3, kIconClose); break;
    case kArtVideoWebButton: DrawIconCommandStrip(cr, w, h / 3, kIconGlobe); break;
    case kArtVideoReplayButton: DrawIconCommandStrip(cr, w, h / 3, kIconReplay); break;
    case kArtClothPanel: ClothPanel(cr, w, h); break;
    case kArtClothPanelBadge: ClothBadge(cr, w, h); break;
    case kArtClothCloseButton: DrawIconCommandStrip(cr, w, h / 3, kIconClose); break;
    case kArtClothPreview:
        for (int k = 0; k < 10; ++k) {
            cairo_surface_t* cloth = DrawCloth(k);
            cairo_set_source_surface(cr, cloth, 0, k * 100);
            cairo_rectangle(cr, 0, k * 100, 100, 100);
            cairo_fill(cr);
            cairo_surface_destroy(cloth);
            cairo_rectangle(cr, 0.5, k * 100 + 0.5, 99, 99);
            SetColor(cr, kBrassDark, 0.6);
            cairo_set_line_width(cr, 1);
            cairo_stroke(cr);
        }
        break;
    default: {
        // Anything new in the table without a drawing yet shows as a labelled placeholder.
        cairo_rectangle(cr, 0, 0, w, h);
        SetColor(cr, Hex(0xff00ff));
        cairo_fill(cr);
        break;
    }
    }
    cairo_destroy(cr);
    return it.surface;
}
