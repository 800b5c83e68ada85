// The contact sheet: every pack item on one PNG, labelled with its id, for review.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct ContactEntry {
    uint32_t id;
    std::string label;  // name, size and depth
    const uint8_t* dib; // packed DIB as it goes into the pack
};

// Writes the sheet: a grid of the items (8- or 24-bit packed DIBs) scaled to fit, each with its id.
bool WriteContactSheet(const std::string& path, const std::vector<ContactEntry>& entries);
// One item as a PNG at its own size.
bool WriteDibPng(const std::string& path, const uint8_t* dib);
