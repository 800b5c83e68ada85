// A minimal AVI writer: one video stream of uncompressed 32-bit DIB frames ('00db' chunks) with an
// idx1 index, which Windows' and Wine's MCI play without any codec.
#include <cstdio>
#include <cstring>

#include "mediagen/media.h"

namespace {

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

}  // namespace

bool WriteAvi(const std::string& path, const AviClip& clip) {
    const uint32_t stride = uint32_t(clip.width * 4);
    const uint32_t frameBytes = stride * uint32_t(clip.height);
    const uint32_t frames = uint32_t(clip.frames.size());
    Writer w;
    size_t riff = w.Begin("RIFF", "AVI ");
    size_t hdrl = w.Begin("LIST", "hdrl");
    w.Fourcc("avih");
    w.U32(56);
    w.U32(1000000u / uint32_t(clip.framesPerSecond));  // microseconds a frame
    w.U32(frameBytes * uint32_t(clip.framesPerSecond));
    w.U32(0);
    w.U32(0x10);  // AVIF_HASINDEX
    w.U32(frames);
    w.U32(0);
    w.U32(1);     // streams
    w.U32(frameBytes);
    w.U32(uint32_t(clip.width));
    w.U32(uint32_t(clip.height));
    for (int i = 0; i < 4; ++i) w.U32(0);
    size_t strl = w.Begin("LIST", "strl");
    w.Fourcc("strh");
    w.U32(56);
    w.Fourcc("vids");
    w.Fourcc("DIB ");
    w.U32(0);
    w.U16(0);
    w.U16(0);
    w.U32(0);
    w.U32(1);                                 // scale
    w.U32(uint32_t(clip.framesPerSecond));    // rate
    w.U32(0);
    w.U32(frames);
    w.U32(frameBytes);
    w.U32(0xFFFFFFFFu);                       // quality: default
    w.U32(0);
    w.U16(0);
    w.U16(0);
    w.U16(uint16_t(clip.width));
    w.U16(uint16_t(clip.height));
    w.Fourcc("strf");
    w.U32(40);
    w.U32(40);
    w.U32(uint32_t(clip.width));
    w.U32(uint32_t(clip.height));             // positive: rows bottom-up
    w.U16(1);
    w.U16(32);
    w.U32(0);                                 // BI_RGB
    w.U32(frameBytes);
    w.U32(0);
    w.U32(0);
    w.U32(0);
    w.U32(0);
    w.End(strl);
    w.End(hdrl);
    size_t movi = w.Begin("LIST", "movi");
    size_t moviData = movi + 4;  // index offsets count from the 'movi' type
    std::vector<uint32_t> offsets;
    std::vector<uint8_t> row(stride, 0);
    for (const std::vector<uint8_t>& frame : clip.frames) {
        offsets.push_back(uint32_t(w.bytes.size() - moviData));
        w.Fourcc("00db");
        w.U32(frameBytes);
        for (int y = clip.height - 1; y >= 0; --y) {
            std::memcpy(row.data(), &frame[size_t(y) * stride], stride);
            w.bytes.insert(w.bytes.end(), row.begin(), row.end());
        }
    }
    w.End(movi);
    w.Fourcc("idx1");
    w.U32(16 * frames);
    for (uint32_t i = 0; i < frames; ++i) {
        w.Fourcc("00db");
        w.U32(0x10);  // AVIIF_KEYFRAME
        w.U32(offsets[i]);
        w.U32(frameBytes);
    }
    w.End(riff);
    std::string temp = path + ".part";
    FILE* f = std::fopen(temp.c_str(), "wb");
    if (!f) return false;
    bool ok = std::fwrite(w.bytes.data(), 1, w.bytes.size(), f) == w.bytes.size();
    ok = std::fclose(f) == 0 && ok;
    return ok && std::rename(temp.c_str(), path.c_str()) == 0;
}
