// The media maker's parts: sounds, cursors and icon, AVI clips, background music.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The two interface sounds as complete RIFF/WAVE files (16-bit mono PCM).
std::vector<uint8_t> MakeHoverSound();
std::vector<uint8_t> MakeClickSound();
// A complete RIFF/WAVE file of 16-bit mono PCM samples.
std::vector<uint8_t> MakeWaveFile(const std::vector<int16_t>& samples, int rate);

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

// The game's three clips: 0 the framed clip, 1 the completion celebration, 2 the opening title.
AviClip MakeClip(int kind);

// The game's background music: piece 0..3 composed and played by our own synthesiser, as a
// RIFF/WAVE file of 16-bit mono PCM at 11025 samples a second (MCI's waveaudio device plays that on
// every Windows without a codec). Gives its file name (Track1.wav..) and title too.
constexpr int kMusicPieces = 4;
std::vector<uint8_t> MakeMusicPiece(int index, std::string* file, std::string* title);
