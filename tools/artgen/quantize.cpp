// libimagequant over a shared histogram: every image adds its colours, one palette is chosen for all,
// then each image is remapped (with dithering) to that palette.
#include "artgen/quantize.h"

#include <libimagequant.h>

#include <cstring>

std::vector<uint8_t*> QuantizeWithSharedPalette(const std::vector<RgbaImage>& images, int maxColors, double dither) {
    std::vector<uint8_t*> out;
    liq_attr* attr = liq_attr_create();
    liq_set_max_colors(attr, maxColors);
    liq_set_speed(attr, 3);
    liq_histogram* histogram = liq_histogram_create(attr);
    std::vector<liq_image*> liqImages;
    bool ok = true;
    for (const RgbaImage& im : images) {
        liq_image* li = liq_image_create_rgba(attr, im.rgba.data(), im.width, im.height, 0);
        liqImages.push_back(li);
        if (!li || liq_histogram_add_image(histogram, attr, li) != LIQ_OK) ok = false;
    }
    liq_result* result = nullptr;
    if (ok && liq_histogram_quantize(histogram, attr, &result) != LIQ_OK) ok = false;
    if (ok) {
        liq_set_dithering_level(result, float(dither));
        for (size_t i = 0; i < images.size() && ok; ++i) {
            const RgbaImage& im = images[i];
            std::vector<uint8_t> indices(size_t(im.width) * im.height);
            if (liq_write_remapped_image(result, liqImages[i], indices.data(), indices.size()) != LIQ_OK) {
                ok = false;
                break;
            }
            const liq_palette* palette = liq_get_palette(result);
            uint8_t* dib = AllocPackedDib(im.width, im.height, 8, palette->count);
            DibColor* table = DibPalette(dib);
            for (unsigned k = 0; k < palette->count; ++k)
                table[k] = DibColor{palette->entries[k].b, palette->entries[k].g, palette->entries[k].r, 0};
            int64_t stride = DibStride(8, im.width);
            for (int y = 0; y < im.height; ++y)
                std::memcpy(DibPixels(dib) + (im.height - 1 - y) * stride, &indices[size_t(y) * im.width], im.width);
            out.push_back(dib);
        }
        liq_result_destroy(result);
    }
    for (liq_image* li : liqImages)
        if (li) liq_image_destroy(li);
    liq_histogram_destroy(histogram);
    liq_attr_destroy(attr);
    if (!ok) {
        for (uint8_t* dib : out) FreePackedDib(dib);
        out.clear();
    }
    return out;
}
