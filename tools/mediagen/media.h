// The media maker's parts: sounds, cursors and icon, AVI clips.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The two interface sounds as complete RIFF/WAVE files (16-bit mono PCM).
std::vector<uint8_t> MakeHoverSound();
std::vector<uint8_t> MakeClickSound();

// Cursor and icon files (.cur / .ico with 32-bit images and their AND masks).
bool WriteCursors(const std::string& folder);  // tray.cur, drag.cur, normal.cur
bool WriteIcon(const std::string& path);        // 16, 32 and 48 pixel images

// A clip: frames are BGRX rows from the top, width * 4 bytes each. WriteAvi stores it as 8-bit MS-RLE
// with one 256-colour palette made for the whole clip (uncompressed 32-bit frames were megabytes a
// second; Windows and Wine both decode MS-RLE).
struct AviClip {
    int width, height, framesPerSecond;
    std::vector<std::vector<uint8_t>> frames;
};
bool WriteAvi(const std::string& path, const AviClip& clip);

// The parts of WriteAvi. QuantizeClip makes one palette (BGRX entries, unused ones zero) and the
// frames remapped to it without dithering, rows from the top.
bool QuantizeClip(const AviClip& clip, uint8_t palette[256][4], std::vector<std::vector<uint8_t>>* indexed);

// Palette entries within a tolerance of each other on every channel may stand in for each other: a
// run carries them all, and a delta frame leaves such a pixel alone. The textured backgrounds break
// exact runs every pixel or two, so a clip that does not fit kClipBudget bytes with exact runs gets the
// smallest tolerance that makes it fit.
const size_t kClipBudget = 1400 * 1000;
struct Likeness {
    bool alike[256][256];
};
void MakeLikeness(const uint8_t palette[256][4], int tolerance, Likeness* likeness);

// One RLE8 frame of `wanted` (indices, rows from the top; likeness may be null for exact runs), rows
// bottom-up and ending with an end of bitmap. A keyframe is a complete picture with an end of line
// after each row but the last; otherwise only what no longer looks like `shown` is sent, reached with
// delta escapes. `shown` holds what the decoder shows and is brought up to date.
// A keyframe comes every kKeyframeEvery frames, so a player that drops frames is right again soon.
const int kKeyframeEvery = 12;
bool IsKeyframe(int frame);
std::vector<uint8_t> EncodeRle8(const uint8_t* wanted, bool keyframe, const Likeness* likeness, uint8_t* shown,
                                int width, int height);

// The game's three clips: 0 the framed clip, 1 the completion celebration, 2 the opening title.
AviClip MakeClip(int kind);
