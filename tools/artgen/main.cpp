// artgen: draws every item of the resource pack.
//   artgen --words assets/art_words.tsv --out DIR [--png]
// writes DIR/items/<id>.bmp for each pack id, DIR/pack.list ("id items/<id>.bmp" lines for
// `rfpack build`), DIR/contact.png, and with --png a PNG of each item in DIR/png/.
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "app/art_ids.h"
#include "artgen/art_table.h"
#include "artgen/contact.h"
#include "artgen/items.h"
#include "artgen/patterns.h"
#include "artgen/quantize.h"
#include "gfx/dib.h"
#include "gfx/pack_writer.h"

namespace {

struct NamedId {
    const char* name;
    uint32_t id;
};
#define TAVIREL_ART_NAME(name, id, slots) {#name, id},
const NamedId kNamedIds[] = {TAVIREL_ART_IDS(TAVIREL_ART_NAME)};
#undef TAVIREL_ART_NAME

// Words per base id: six texts in language order.
using Words = std::map<uint32_t, std::vector<std::string>>;

bool LoadWords(const std::string& path, Words* words) {
    std::ifstream in(path);
    if (!in) return false;
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::vector<std::string> fields;
        std::stringstream ss(line);
        std::string field;
        while (std::getline(ss, field, '\t')) fields.push_back(field);
        if (fields.size() != 1 + kLanguageCount) {
            std::fprintf(stderr, "artgen: %s: expected 7 tab-separated fields: %s\n", path.c_str(), line.c_str());
            return false;
        }
        bool found = false;
        for (const NamedId& n : kNamedIds)
            if (fields[0] == n.name) {
                (*words)[n.id] = std::vector<std::string>(fields.begin() + 1, fields.end());
                found = true;
            }
        if (!found) {
            std::fprintf(stderr, "artgen: %s: unknown picture %s\n", path.c_str(), fields[0].c_str());
            return false;
        }
    }
    return true;
}

std::string DepthName(ArtDepth d) { return d == ArtDepth::Rgb24 ? "24-bit" : d == ArtDepth::House8 ? "8-bit house" : "8-bit"; }

struct Built {
    uint32_t id;
    const ArtEntry* entry;
    uint8_t* dib;
};

}  // namespace

int main(int argc, char** argv) {
    std::string out, wordsPath;
    bool png = false;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--out") && i + 1 < argc) out = argv[++i];
        else if (!std::strcmp(argv[i], "--words") && i + 1 < argc) wordsPath = argv[++i];
        else if (!std::strcmp(argv[i], "--png")) png = true;
        else {
            std::fprintf(stderr, "usage: artgen --words FILE.tsv --out DIR [--png]\n");
            return 2;
        }
    }
    Words words;
    if (out.empty() || wordsPath.empty() || !LoadWords(wordsPath, &words)) {
        std::fprintf(stderr, "artgen: need --out and a readable --words file\n");
        return 2;
    }
    mkdir(out.c_str(), 0755);
    mkdir((out + "/items").c_str(), 0755);
    if (png) mkdir((out + "/png").c_str(), 0755);

    // Every id the header names must have a table entry of the same size, and the other way round.
    for (const NamedId& n : kNamedIds)
        if (!FindArtEntry(n.id) || FindArtEntry(n.id)->id != n.id) {
            std::fprintf(stderr, "artgen: %s (%u) has no entry in the table\n", n.name, n.id);
            return 1;
        }

    std::vector<Built> built;
    std::vector<RgbaImage> houseImages;
    std::vector<size_t> houseSlots;
    for (int s = 0; s < kArtTableSize; ++s) {
        const ArtEntry& entry = kArtTable[s];
        for (int slot = 0; slot < entry.slots; ++slot) {
            uint32_t id = entry.id + uint32_t(slot);
            std::string text;
            if (entry.slots == kLanguageCount) {
                auto it = words.find(entry.id);
                if (it != words.end()) text = it->second[size_t(slot)];
            }
            Built b{id, &entry, nullptr};
            if (entry.layout == ArtLayout::Pattern) {
                b.dib = CutPatternToDib(MakeCutPattern(PatternStyle(slot)));
            } else if (entry.id == kArtCloth) {
                cairo_surface_t* cloth = DrawCloth(slot);
                RgbaImage im{100, 100, SurfaceToRgba(cloth, Rgb{0, 0, 0})};
                cairo_surface_destroy(cloth);
                std::vector<uint8_t*> q = QuantizeWithSharedPalette({im}, 256, 0.5);
                b.dib = q.empty() ? nullptr : q[0];
            } else {
                Rgb background;
                cairo_surface_t* surface = DrawArtItem(entry, id, text, &background);
                if (entry.depth == ArtDepth::House8) {
                    houseImages.push_back(RgbaImage{entry.width, entry.height, SurfaceToRgba(surface, background)});
                    houseSlots.push_back(built.size());
                } else {
                    b.dib = SurfaceToDib24(surface, background);
                }
                cairo_surface_destroy(surface);
            }
            built.push_back(b);
        }
    }
    // One palette for the pictures the game composes byte by byte.
    std::vector<uint8_t*> house = QuantizeWithSharedPalette(houseImages, 256, 0.8);
    if (house.size() != houseImages.size()) {
        std::fprintf(stderr, "artgen: the house palette could not be made\n");
        return 1;
    }
    for (size_t i = 0; i < house.size(); ++i) built[houseSlots[i]].dib = house[i];

    std::string listPath = out + "/pack.list";
    FILE* list = std::fopen(listPath.c_str(), "w");
    if (!list) return 1;
    std::fprintf(list, "# Tavirel.rf items, written by artgen\n");
    std::vector<ContactEntry> contact;
    int status = 0;
    for (const Built& b : built) {
        if (!b.dib) {
            std::fprintf(stderr, "artgen: item %u was not drawn\n", b.id);
            status = 1;
            continue;
        }
        char name[64];
        std::snprintf(name, sizeof name, "items/%u.bmp", b.id);
        if (!WriteDibAsBmp((out + "/" + name).c_str(), b.dib)) {
            std::fprintf(stderr, "artgen: cannot write %s\n", name);
            status = 1;
        }
        std::fprintf(list, "%u %s\n", b.id, name);
        if (png) WriteDibPng(out + "/png/" + std::to_string(b.id) + ".png", b.dib);
        const DibHeader* h = DibHeaderOf(b.dib);
        char label[128];
        std::snprintf(label, sizeof label, "%s  %dx%d %s", b.entry->name, h->biWidth, h->biHeight,
                      DepthName(b.entry->depth).c_str());
        contact.push_back(ContactEntry{b.id, label, b.dib});
    }
    std::fclose(list);
    if (!WriteContactSheet(out + "/contact.png", contact)) {
        std::fprintf(stderr, "artgen: cannot write the contact sheet\n");
        status = 1;
    }
    for (const Built& b : built) FreePackedDib(b.dib);
    return status;
}
