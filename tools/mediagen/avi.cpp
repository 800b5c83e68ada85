// A minimal AVI writer: one video stream of 8-bit MS-RLE frames ('mrle', '00dc' chunks) with one
// palette for the whole clip in the stream format and an idx1 index. Keyframes are complete pictures,
// the frames between them only what changed. Windows' and Wine's MCI both decode MS-RLE themselves.
#include <libimagequant.h>

#include <algorithm>
#include <cstdlib>
#include <cstdio>
#include <cstring>

#include "mediagen/media.h"

namespace {

// Palette entries within a tolerance of each other on every channel may stand in for each other: a
// run carries them all, and a delta frame leaves such a pixel alone. The textured backgrounds break
// exact runs every pixel or two, so a clip that does not fit kClipBudget bytes with exact runs gets the
// smallest tolerance that makes it fit.
const size_t kClipBudget = 1400 * 1000;
struct Likeness {
    bool alike[256][256];
};

// A keyframe comes every kKeyframeEvery frames, so a player that drops frames is right again soon.
const int kKeyframeEvery = 12;

struct Writer {
    std::vector<uint8_t> bytes;
    void Fourcc(const char* f) { bytes.insert(bytes.end(), f, f + 4); }
    void U32(uint32_t v) { uint8_t b[4]; std::memcpy(b, &v, 4); bytes.insert(bytes.end(), b, b + 4); }
    void U16(uint16_t v) { uint8_t b[2]; std::memcpy(b, &v, 2); bytes.insert(bytes.end(), b, b + 2); }
    size_t Begin(const char* list, const char* type) {  // LIST or RIFF with a size to patch
        Fourcc(list);
        size_t at = bytes.size();
        U32(0);
        Fourcc(type);
        return at;
    }
    void End(size_t at) {
        uint32_t size = uint32_t(bytes.size() - at - 4);
        std::memcpy(&bytes[at], &size, 4);
    }
};

bool Alike(const Likeness* likeness, uint8_t a, uint8_t b) { return a == b || (likeness && likeness->alike[a][b]); }

// Length of the run at row[i] of colours like row[i]'s, at most 255.
int RunAt(const uint8_t* row, int i, int width, const Likeness* likeness) {
    int n = 1;
    while (i + n < width && n < 255 && Alike(likeness, row[i], row[i + n])) ++n;
    return n;
}

// One row or part of one; `shown` receives what the decoder will draw there.
void EncodeRow(const uint8_t* row, uint8_t* shown, int width, const Likeness* likeness, std::vector<uint8_t>* out) {
    int i = 0;
    while (i < width) {
        int run = RunAt(row, i, width, likeness);
        if (run >= 2) {
            out->push_back(uint8_t(run));
            out->push_back(row[i]);
            std::memset(shown + i, row[i], size_t(run));
            i += run;
            continue;
        }
        // Gather differing bytes until a run of three or more starts: a pair costs the same either way.
        int end = i + 1;
        while (end < width && end - i < 255 && RunAt(row, end, width, likeness) < 3) ++end;
        int count = end - i;
        if (count < 3) {
            // Absolute mode needs at least three bytes (0x00 0x01 and 0x00 0x02 are escapes).
            for (int k = i; k < end; ++k) {
                out->push_back(1);
                out->push_back(row[k]);
            }
        } else {
            out->push_back(0);
            out->push_back(uint8_t(count));
            out->insert(out->end(), row + i, row + end);
            if (count & 1) out->push_back(0);  // absolute runs end on a 16-bit boundary
        }
        std::memcpy(shown + i, row + i, size_t(count));
        i = end;
    }
}

void Put(std::vector<uint8_t>* out, int a, int b) {
    out->push_back(uint8_t(a));
    out->push_back(uint8_t(b));
}

// Moves the decoder's cursor from (*x, *y) to (toX, toY), rows counted from the bottom: an end of line
// to go back left, then delta escapes (0x00 0x02 dx dy) of at most 255 each way.
void MoveTo(std::vector<uint8_t>* out, int* x, int* y, int toX, int toY) {
    if (toY > *y && toX < *x) {
        Put(out, 0, 0);
        *x = 0;
        ++*y;
    }
    int dx = toX - *x, dy = toY - *y;
    while (dx > 0 || dy > 0) {
        int sx = std::min(dx, 255), sy = std::min(dy, 255);
        Put(out, 0, 2);
        Put(out, sx, sy);
        dx -= sx;
        dy -= sy;
    }
    *x = toX;
    *y = toY;
}

// Unchanged stretches shorter than this are cheaper to repeat than to jump over.
const int kMinSkip = 6;

void MakeLikeness(const uint8_t palette[256][4], int tolerance, Likeness* likeness) {
    for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; ++b) {
            int d = 0;
            for (int k = 0; k < 3; ++k) d = std::max(d, std::abs(int(palette[a][k]) - int(palette[b][k])));
            likeness->alike[a][b] = d <= tolerance;
        }
}

// One RLE8 frame of `wanted` (indices, rows from the top; likeness may be null for exact runs), rows
// bottom-up and ending with an end of bitmap. A keyframe is a complete picture with an end of line
// after each row but the last; otherwise only what no longer looks like `shown` is sent, reached with
// delta escapes. `shown` holds what the decoder shows and is brought up to date.
std::vector<uint8_t> EncodeRle8(const uint8_t* wanted, bool keyframe, const Likeness* likeness, uint8_t* shown,
                                int width, int height) {
    std::vector<uint8_t> out;
    if (keyframe) {
        for (int y = height - 1; y >= 0; --y) {
            size_t at = size_t(y) * width;
            EncodeRow(wanted + at, shown + at, width, likeness, &out);
            if (y > 0) Put(&out, 0, 0);  // end of line
        }
        Put(&out, 0, 1);  // end of bitmap
        return out;
    }
    // A delta frame: only the stretches of each row that now look different; the decoder keeps the rest.
    int cx = 0, cy = 0;
    for (int r = 0; r < height; ++r) {
        size_t at = size_t(height - 1 - r) * width;
        const uint8_t* row = wanted + at;
        uint8_t* now = shown + at;
        int x = 0;
        while (x < width) {
            while (x < width && Alike(likeness, now[x], row[x])) ++x;
            if (x == width) break;
            int end = x + 1, same = 0;
            for (int k = x + 1; k < width && same < kMinSkip; ++k) {
                if (Alike(likeness, now[k], row[k])) {
                    ++same;
                } else {
                    same = 0;
                    end = k + 1;
                }
            }
            MoveTo(&out, &cx, &cy, x, r);
            EncodeRow(row + x, now + x, end - x, likeness, &out);
            cx = end;
            x = end;
        }
    }
    Put(&out, 0, 1);
    return out;
}

bool IsKeyframe(int frame) { return frame % kKeyframeEvery == 0; }

// One palette for the whole clip (BGRX entries, unused ones zero) and the frames remapped to it without
// dithering, rows from the top.
bool QuantizeClip(const AviClip& clip, uint8_t palette[256][4], std::vector<std::vector<uint8_t>>* indexed) {
    const size_t pixels = size_t(clip.width) * clip.height;
    std::vector<std::vector<uint8_t>> rgba(clip.frames.size());
    liq_attr* attr = liq_attr_create();
    liq_set_max_colors(attr, 256);
    liq_set_speed(attr, 3);
    liq_histogram* histogram = liq_histogram_create(attr);
    std::vector<liq_image*> images;
    bool ok = true;
    for (size_t f = 0; f < clip.frames.size() && ok; ++f) {
        const std::vector<uint8_t>& bgrx = clip.frames[f];
        rgba[f].resize(pixels * 4);
        for (size_t p = 0; p < pixels; ++p) {
            rgba[f][p * 4 + 0] = bgrx[p * 4 + 2];
            rgba[f][p * 4 + 1] = bgrx[p * 4 + 1];
            rgba[f][p * 4 + 2] = bgrx[p * 4 + 0];
            rgba[f][p * 4 + 3] = 255;
        }
        liq_image* li = liq_image_create_rgba(attr, rgba[f].data(), clip.width, clip.height, 0);
        images.push_back(li);
        if (!li || liq_histogram_add_image(histogram, attr, li) != LIQ_OK) ok = false;
    }
    liq_result* result = nullptr;
    if (ok && liq_histogram_quantize(histogram, attr, &result) != LIQ_OK) ok = false;
    if (ok) {
        // No dithering: the textures stay in flat patches, which is what keeps the runs long.
        liq_set_dithering_level(result, 0);
        indexed->assign(clip.frames.size(), std::vector<uint8_t>(pixels));
        for (size_t f = 0; f < images.size() && ok; ++f)
            ok = liq_write_remapped_image(result, images[f], (*indexed)[f].data(), pixels) == LIQ_OK;
        const liq_palette* colours = liq_get_palette(result);
        std::memset(palette, 0, 256 * 4);
        for (unsigned k = 0; k < colours->count && k < 256; ++k) {
            palette[k][0] = colours->entries[k].b;
            palette[k][1] = colours->entries[k].g;
            palette[k][2] = colours->entries[k].r;
        }
        liq_result_destroy(result);
    }
    for (liq_image* li : images)
        if (li) liq_image_destroy(li);
    liq_histogram_destroy(histogram);
    liq_attr_destroy(attr);
    return ok;
}

}  // namespace

bool WriteAvi(const std::string& path, const AviClip& clip) {
    uint8_t palette[256][4];
    std::vector<std::vector<uint8_t>> indexed;
    if (clip.frames.empty() || !QuantizeClip(clip, palette, &indexed)) return false;
    // Exact runs when they fit the budget; otherwise the smallest likeness that does.
    static Likeness likeness;
    std::vector<std::vector<uint8_t>> encoded;
    const int tolerances[] = {0, 2, 4, 6, 8, 12, 16};
    for (int tolerance : tolerances) {
        MakeLikeness(palette, tolerance, &likeness);
        std::vector<uint8_t> shown(size_t(clip.width) * clip.height);
        encoded.clear();
        size_t total = 0;
        for (size_t f = 0; f < indexed.size(); ++f) {
            encoded.push_back(EncodeRle8(indexed[f].data(), IsKeyframe(int(f)), tolerance ? &likeness : nullptr,
                                         shown.data(), clip.width, clip.height));
            total += encoded.back().size() + 24;  // with its chunk header and index entry
        }
        if (total <= kClipBudget) break;
    }
    uint32_t largest = 0;
    for (const std::vector<uint8_t>& data : encoded) largest = std::max(largest, uint32_t(data.size()));
    const uint32_t imageBytes = uint32_t((clip.width + 3) & ~3) * uint32_t(clip.height);  // decoded
    const uint32_t frames = uint32_t(encoded.size());
    Writer w;
    size_t riff = w.Begin("RIFF", "AVI ");
    size_t hdrl = w.Begin("LIST", "hdrl");
    w.Fourcc("avih");
    w.U32(56);
    w.U32(1000000u / uint32_t(clip.framesPerSecond));  // microseconds a frame
    w.U32(largest * uint32_t(clip.framesPerSecond));
    w.U32(0);
    w.U32(0x10);  // AVIF_HASINDEX
    w.U32(frames);
    w.U32(0);
    w.U32(1);     // streams
    w.U32(largest);
    w.U32(uint32_t(clip.width));
    w.U32(uint32_t(clip.height));
    for (int i = 0; i < 4; ++i) w.U32(0);
    size_t strl = w.Begin("LIST", "strl");
    w.Fourcc("strh");
    w.U32(56);
    w.Fourcc("vids");
    w.Fourcc("mrle");
    w.U32(0);
    w.U16(0);
    w.U16(0);
    w.U32(0);
    w.U32(1);                                 // scale
    w.U32(uint32_t(clip.framesPerSecond));    // rate
    w.U32(0);
    w.U32(frames);
    w.U32(largest);
    w.U32(0xFFFFFFFFu);                       // quality: default
    w.U32(0);
    w.U16(0);
    w.U16(0);
    w.U16(uint16_t(clip.width));
    w.U16(uint16_t(clip.height));
    w.Fourcc("strf");
    w.U32(40 + 256 * 4);
    w.U32(40);
    w.U32(uint32_t(clip.width));
    w.U32(uint32_t(clip.height));             // positive: rows bottom-up
    w.U16(1);
    w.U16(8);
    w.U32(1);                                 // BI_RLE8
    w.U32(imageBytes);
    w.U32(0);
    w.U32(0);
    w.U32(256);                               // colours used
    w.U32(0);
    w.bytes.insert(w.bytes.end(), &palette[0][0], &palette[0][0] + 256 * 4);
    w.End(strl);
    w.End(hdrl);
    size_t movi = w.Begin("LIST", "movi");
    size_t moviData = movi + 4;  // index offsets count from the 'movi' type
    std::vector<uint32_t> offsets;
    for (const std::vector<uint8_t>& data : encoded) {
        offsets.push_back(uint32_t(w.bytes.size() - moviData));
        w.Fourcc("00dc");
        w.U32(uint32_t(data.size()));
        w.bytes.insert(w.bytes.end(), data.begin(), data.end());
        if (data.size() & 1) w.bytes.push_back(0);  // chunks start on even offsets
    }
    w.End(movi);
    w.Fourcc("idx1");
    w.U32(16 * frames);
    for (uint32_t i = 0; i < frames; ++i) {
        w.Fourcc("00dc");
        w.U32(IsKeyframe(int(i)) ? 0x10 : 0);  // AVIIF_KEYFRAME
        w.U32(offsets[i]);
        w.U32(uint32_t(encoded[i].size()));
    }
    w.End(riff);
    std::string temp = path + ".part";
    FILE* f = std::fopen(temp.c_str(), "wb");
    if (!f) return false;
    bool ok = std::fwrite(w.bytes.data(), 1, w.bytes.size(), f) == w.bytes.size();
    ok = std::fclose(f) == 0 && ok;
    return ok && std::rename(temp.c_str(), path.c_str()) == 0;
}
