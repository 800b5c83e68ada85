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

// An uncompressed 32-bit AVI; frames are BGRX rows from the top, width * 4 bytes each. (Wine's player
// shows 24-bit frames as if they had 32 bits a pixel; 32-bit frames play right there and on Windows.)
struct AviClip {
    int width, height, framesPerSecond;
    std::vector<std::vector<uint8_t>> frames;
};
bool WriteAvi(const std::string& path, const AviClip& clip);

// The game's three clips: 0 the framed clip, 1 the completion celebration, 2 the opening title.
AviClip MakeClip(int kind);
