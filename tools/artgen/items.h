// Drawing of every pack item by id.
#pragma once

#include <cstdint>
#include <string>

#include "artgen/art_table.h"
#include "artgen/paint.h"

// A new surface of the entry's size holding item id (one slot of the entry) with the given words;
// *background receives the colour its transparent parts are flattened over.
cairo_surface_t* DrawArtItem(const ArtEntry& entry, uint32_t id, const std::string& words, Rgb* background);
// Table cloth k (0..9): a seamless 100 x 100 tile.
cairo_surface_t* DrawCloth(int k);
