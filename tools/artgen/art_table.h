// The one table of pack items: id, size, depth and frame layout of everything the generator draws.
// Pure data, shared by the generator and the pack-content test.
#pragma once

#include <cstdint>

enum class ArtDepth {
    Rgb24,    // 24-bit, no colour table
    House8,   // 8-bit with the shared house palette (items composed with the software blit)
    Own8,     // 8-bit with a palette of its own
};

enum class ArtLayout {
    Whole,    // drawn or copied in one piece
    Tile,     // repeated edge to edge
    Command,  // 3 frames stacked: normal, lit, pressed
    CommandWithDisabled,  // 4 frames stacked: disabled, normal, lit, pressed
    Check,    // 4 frames stacked: unchecked, unchecked lit, checked, checked lit
    Anim,     // rows x cols grid of frames
    Scroll,   // zone-major scroll strip: 3 zones x (normal, lit, pressed)
    Pattern,  // region-numbered cut pattern
};

struct ArtEntry {
    uint32_t id;        // first id
    int slots;          // consecutive ids: 6 for base + language, 3 patterns, 10 cloths
    const char* name;
    int width, height;  // of the whole strip
    ArtDepth depth;
    ArtLayout layout;
    int rows, cols;     // Anim grid (1 x 1 otherwise)
    int zones[3];       // Scroll zone heights, top to bottom
};

extern const ArtEntry kArtTable[];
extern const int kArtTableSize;

// The frame count a layout stacks vertically (Command 3, Check 4, Scroll 3, Anim rows, else 1).
int ArtVerticalFrames(const ArtEntry& entry);
const ArtEntry* FindArtEntry(uint32_t id);  // the entry whose slots cover id, or null
