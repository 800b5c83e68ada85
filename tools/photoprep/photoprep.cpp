// photoprep: the default photographs of Image\ with their captions and credits.
//   photoprep --list assets/pictures.tsv --source DIR --out IMAGE_DIR --credits FILE
// Each listed photograph found in DIR is decoded (stb_image), scaled to 1024 pixels on its long side
// with Cairo's best filter and written as an uncompressed 24-bit BMP with a 40-byte header, named
// <stem><NN>.bmp so that the title lookup finds its number; <stem><NN>.txt holds the printed caption.
// When fewer than ten photographs are found, drawn pictures (numbers 51..56) make up the set.
#include <cairo.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_JPEG
#define STBI_ONLY_PNG
#include <stb/stb_image.h>

#include "artgen/noise.h"
#include "artgen/paint.h"
#include "gfx/dib.h"
#include "gfx/pack_writer.h"

namespace {

constexpr int kLongSide = 1024;

struct Picture {
    std::string number, source, stem, caption, credit, licence;
};

bool WriteText(const std::string& path, const std::string& text) {
    return WriteWholeFile(path.c_str(), reinterpret_cast<const uint8_t*>(text.data()), text.size());
}

bool SaveSurface(cairo_surface_t* s, const std::string& path) {
    uint8_t* dib = SurfaceToDib24(s, Rgb{0, 0, 0});
    bool ok = dib && WriteDibAsBmp(path.c_str(), dib);
    FreePackedDib(dib);
    return ok;
}

// Decodes and scales one photograph; null when the file is missing or unreadable.
cairo_surface_t* LoadScaled(const std::string& path) {
    int w, h, channels;
    unsigned char* rgb = stbi_load(path.c_str(), &w, &h, &channels, 3);
    if (!rgb) return nullptr;
    cairo_surface_t* full = cairo_image_surface_create(CAIRO_FORMAT_RGB24, w, h);
    cairo_surface_flush(full);
    unsigned char* data = cairo_image_surface_get_data(full);
    int stride = cairo_image_surface_get_stride(full);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const unsigned char* p = rgb + (size_t(y) * w + x) * 3;
            reinterpret_cast<uint32_t*>(data + y * stride)[x] =
                0xFF000000u | (uint32_t(p[0]) << 16) | (uint32_t(p[1]) << 8) | p[2];
        }
    cairo_surface_mark_dirty(full);
    stbi_image_free(rgb);
    double scale = double(kLongSide) / std::max(w, h);
    if (scale > 1) scale = 1;
    int sw = std::max(1, int(std::lround(w * scale))), sh = std::max(1, int(std::lround(h * scale)));
    cairo_surface_t* out = cairo_image_surface_create(CAIRO_FORMAT_RGB24, sw, sh);
    cairo_t* cr = cairo_create(out);
    cairo_scale(cr, double(sw) / w, double(sh) / h);
    cairo_set_source_surface(cr, full, 0, 0);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_BEST);
    cairo_paint(cr);
    cairo_destroy(cr);
    cairo_surface_destroy(full);
    return out;
}

// Drawn pictures for a machine without the photograph package.
cairo_surface_t* DrawnPicture(int k) {
    const int w = 1024, h = 768;
    cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_RGB24, w, h);
    cairo_t* cr = cairo_create(s);
    Rng rng{uint32_t(9000 + k)};
    auto sky = [&](Rgb top, Rgb bottom) {
        cairo_pattern_t* g = cairo_pattern_create_linear(0, 0, 0, h);
        cairo_pattern_add_color_stop_rgb(g, 0, top.r, top.g, top.b);
        cairo_pattern_add_color_stop_rgb(g, 1, bottom.r, bottom.g, bottom.b);
        cairo_set_source(cr, g);
        cairo_paint(cr);
        cairo_pattern_destroy(g);
    };
    switch (k) {
    case 0:  // evening hills
        sky(Hex(0x2b3a67), Hex(0xf4a259));
        cairo_arc(cr, 700, 420, 70, 0, 2 * M_PI);
        SetColor(cr, Hex(0xffe3a3));
        cairo_fill(cr);
        for (int layer = 0; layer < 5; ++layer) {
            double base = 430 + layer * 70;
            cairo_move_to(cr, 0, h);
            for (int x = 0; x <= w; x += 8)
                cairo_line_to(cr, x, base - 60 * PeriodicFbm(x / double(w), layer * 0.2, 3, 3, 3, 50 + layer) * (1.5 - layer * 0.2));
            cairo_line_to(cr, w, h);
            cairo_close_path(cr);
            SetColor(cr, Mix(Hex(0x6a4c7c), Hex(0x1c2b2a), layer / 4.0));
            cairo_fill(cr);
        }
        break;
    case 1:  // lemons in a bowl
        sky(Hex(0x3d5a80), Hex(0x1b263b));
        cairo_rectangle(cr, 0, 520, w, h - 520);
        SetColor(cr, Hex(0x8d6e63));
        cairo_fill(cr);
        for (int i = 0; i < 7; ++i) {
            double x = 300 + rng.Range(0, 420), y = 380 + rng.Range(-60, 60);
            cairo_save(cr);
            cairo_translate(cr, x, y);
            cairo_rotate(cr, rng.Range(-0.5, 0.5));
            cairo_scale(cr, 1.3, 1);
            cairo_pattern_t* g = cairo_pattern_create_radial(-20, -25, 5, 0, 0, 75);
            cairo_pattern_add_color_stop_rgb(g, 0, 1, 0.98, 0.7);
            cairo_pattern_add_color_stop_rgb(g, 1, 0.85, 0.65, 0.05);
            cairo_arc(cr, 0, 0, 70, 0, 2 * M_PI);
            cairo_set_source(cr, g);
            cairo_fill(cr);
            cairo_pattern_destroy(g);
            cairo_restore(cr);
        }
        cairo_move_to(cr, 220, 420);
        cairo_curve_to(cr, 260, 640, 760, 640, 800, 420);
        cairo_close_path(cr);
        SetColor(cr, Hex(0xe0e1dd));
        cairo_fill(cr);
        break;
    case 2:  // sailing boats at dusk
        sky(Hex(0x14213d), Hex(0xfca311));
        cairo_rectangle(cr, 0, 470, w, h - 470);
        SetColor(cr, Hex(0x1d3557));
        cairo_fill(cr);
        for (int i = 0; i < 40; ++i) {
            double y = 480 + i * 7;
            cairo_move_to(cr, rng.Range(0, w), y);
            cairo_rel_line_to(cr, rng.Range(40, 200), 0);
            SetColor(cr, Hex(0xfca311), 0.35);
            cairo_set_line_width(cr, 2);
            cairo_stroke(cr);
        }
        for (int b = 0; b < 3; ++b) {
            double x = 180 + b * 280, y = 470 - b * 10, size = 1.0 - b * 0.2;
            cairo_move_to(cr, x - 80 * size, y);
            cairo_line_to(cr, x + 80 * size, y);
            cairo_line_to(cr, x + 60 * size, y + 25 * size);
            cairo_line_to(cr, x - 60 * size, y + 25 * size);
            cairo_close_path(cr);
            SetColor(cr, Hex(0x0b0b0b));
            cairo_fill(cr);
            cairo_move_to(cr, x, y - 5);
            cairo_line_to(cr, x, y - 220 * size);
            cairo_line_to(cr, x + 90 * size, y - 10);
            cairo_close_path(cr);
            SetColor(cr, Hex(0xf1faee));
            cairo_fill(cr);
        }
        break;
    case 3: {  // quilt
        const Rgb colours[6] = {Hex(0xe63946), Hex(0xf1faee), Hex(0xa8dadc), Hex(0x457b9d), Hex(0x1d3557), Hex(0xf4a261)};
        for (int y = 0; y < h; y += 128)
            for (int x = 0; x < w; x += 128) {
                cairo_rectangle(cr, x, y, 128, 128);
                SetColor(cr, colours[rng.Next() % 6]);
                cairo_fill(cr);
                cairo_move_to(cr, x, y);
                cairo_line_to(cr, x + 128, y + 128);
                cairo_line_to(cr, x, y + 128);
                cairo_close_path(cr);
                SetColor(cr, colours[rng.Next() % 6]);
                cairo_fill(cr);
                cairo_rectangle(cr, x + 4, y + 4, 120, 120);
                cairo_set_dash(cr, (const double[]){6, 5}, 2, 0);
                SetColor(cr, Hex(0xffffff), 0.6);
                cairo_set_line_width(cr, 2);
                cairo_stroke(cr);
                cairo_set_dash(cr, nullptr, 0, 0);
            }
        break;
    }
    case 4:  // stained glass rose
        cairo_set_source_rgb(cr, 0.05, 0.05, 0.08);
        cairo_paint(cr);
        for (int ring = 5; ring >= 1; --ring)
            for (int p = 0; p < 12; ++p) {
                double a = p * M_PI / 6 + ring * 0.26, r = ring * 70;
                cairo_move_to(cr, w / 2.0, h / 2.0);
                cairo_arc(cr, w / 2.0, h / 2.0, r, a, a + M_PI / 6);
                cairo_close_path(cr);
                SetColor(cr, Mix(Hex(0x9d0208), Hex(0x3a86ff), rng.Uniform()));
                cairo_fill_preserve(cr);
                SetColor(cr, Hex(0x111111));
                cairo_set_line_width(cr, 5);
                cairo_stroke(cr);
            }
        break;
    default:  // lanterns
        sky(Hex(0x03071e), Hex(0x370617));
        for (int i = 0; i < 14; ++i) {
            double x = rng.Range(60, w - 60), y = rng.Range(80, h - 120), r = rng.Range(25, 60);
            cairo_pattern_t* g = cairo_pattern_create_radial(x, y, 2, x, y, r * 2.2);
            cairo_pattern_add_color_stop_rgba(g, 0, 1, 0.8, 0.4, 0.9);
            cairo_pattern_add_color_stop_rgba(g, 1, 1, 0.5, 0.1, 0);
            cairo_arc(cr, x, y, r * 2.2, 0, 2 * M_PI);
            cairo_set_source(cr, g);
            cairo_fill(cr);
            cairo_pattern_destroy(g);
            RoundedRect(cr, x - r * 0.7, y - r, r * 1.4, r * 2, r * 0.5);
            SetColor(cr, Hex(0xe85d04));
            cairo_fill(cr);
        }
        break;
    }
    cairo_destroy(cr);
    return s;
}

}  // namespace

int main(int argc, char** argv) {
    std::string listPath, source, out, credits;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (!std::strcmp(argv[i], "--list")) listPath = argv[i + 1];
        else if (!std::strcmp(argv[i], "--source")) source = argv[i + 1];
        else if (!std::strcmp(argv[i], "--out")) out = argv[i + 1];
        else if (!std::strcmp(argv[i], "--credits")) credits = argv[i + 1];
    }
    if (listPath.empty() || out.empty() || credits.empty()) {
        std::fprintf(stderr, "usage: photoprep --list FILE --source DIR --out DIR --credits FILE\n");
        return 2;
    }
    std::ifstream list(listPath);
    std::vector<Picture> pictures;
    std::string line;
    while (std::getline(list, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::stringstream ss(line);
        Picture p;
        std::getline(ss, p.number, '\t');
        std::getline(ss, p.source, '\t');
        std::getline(ss, p.stem, '\t');
        std::getline(ss, p.caption, '\t');
        std::getline(ss, p.credit, '\t');
        std::getline(ss, p.licence, '\t');
        pictures.push_back(p);
    }
    mkdir(out.c_str(), 0755);
    std::string text =
        "Photographs in the Image folder\r\n"
        "===============================\r\n\r\n"
        "Taken from the nature set of the MATE desktop backgrounds (Debian package mate-backgrounds),\r\n"
        "scaled to 1024 pixels on the long side. Each is licensed under the GNU General Public License,\r\n"
        "version 2 or (at your option) any later version; see COPYING-GPL-2.txt or\r\n"
        "https://www.gnu.org/licenses/old-licenses/gpl-2.0.html\r\n\r\n";
    int made = 0, status = 0;
    for (const Picture& p : pictures) {
        cairo_surface_t* s = source.empty() ? nullptr : LoadScaled(source + "/" + p.source);
        if (!s) continue;
        std::string name = p.stem + p.number;
        bool ok = SaveSurface(s, out + "/" + name + ".bmp") && WriteText(out + "/" + name + ".txt", p.caption);
        cairo_surface_destroy(s);
        if (!ok) { status = 1; continue; }
        text += "Image\\" + name + ".bmp  (from " + p.source + ")\r\n  Copyright " + p.credit + "\r\n  Licence: " +
                p.licence + "\r\n\r\n";
        ++made;
    }
    if (made < 10) {
        static const char* kStems[6] = {"Hills", "Lemons", "Boats", "Quilt", "Rose", "Lanterns"};
        static const char* kCaptions[6] = {"Evening light over rolling hills.", "A bowl of lemons on a wooden table.",
                                           "Three sailing boats come home at dusk.", "A patchwork quilt of many colours.",
                                           "A rose window of stained glass.", "Paper lanterns glowing in the night."};
        text += "Drawn pictures (made by the game's own tools; same licence as the game):\r\n";
        for (int k = 0; k < 6; ++k) {
            std::string name = std::string(kStems[k]) + std::to_string(51 + k);
            cairo_surface_t* s = DrawnPicture(k);
            bool ok = SaveSurface(s, out + "/" + name + ".bmp") && WriteText(out + "/" + name + ".txt", kCaptions[k]);
            cairo_surface_destroy(s);
            if (!ok) status = 1;
            text += "  Image\\" + name + ".bmp\r\n";
        }
    }
    if (!WriteText(credits, text)) status = 1;
    std::printf("photoprep: %d photographs%s\n", made, made < 10 ? " and 6 drawn pictures" : "");
    return status;
}
