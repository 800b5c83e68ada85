// Reader of the resource pack.
#include "gfx/pack.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "gfx/dib.h"

ResourcePack g_pack;

bool OpenPack(ResourcePack* pack, const char* path) {
    std::memset(pack, 0, sizeof *pack);
    if (!SysPathExists(path)) return false;
    SysFile* file = SysOpenFile(path, SYS_OPEN_READ_EXCLUSIVE);
    if (!file) return false;
    int64_t size = SysFileSize(file);
    uint32_t count = 0, got = 0;
    bool ok = size >= 4 && SysSeekFile(file, -4, SYS_SEEK_END, nullptr) && SysReadFile(file, &count, 4, &got) &&
              got == 4 && int64_t(count) <= (size - 4) / 16 && count <= kPackLargestDirectory;
    PackEntry* directory = nullptr;
    if (ok && count > 0) {
        directory = static_cast<PackEntry*>(std::malloc(size_t(count) * sizeof(PackEntry)));
        uint32_t bytes = count * uint32_t(sizeof(PackEntry));
        ok = directory && SysSeekFile(file, -(4 + int64_t(bytes)), SYS_SEEK_END, nullptr) &&
             SysReadFile(file, directory, bytes, &got) && got == bytes;
    }
    if (!ok) {
        std::free(directory);
        SysCloseFile(file);
        return false;
    }
    pack->file = file;
    pack->count = count;
    pack->directory = directory;
    pack->fileSize = size;
    return true;
}

void ClosePack(ResourcePack* pack) {
    if (pack->file) SysCloseFile(pack->file);
    std::free(pack->directory);
    std::memset(pack, 0, sizeof *pack);
}

bool IsPackOpen(const ResourcePack* pack) { return pack->file != nullptr; }

int32_t FindPackEntry(const ResourcePack* pack, uint32_t id) {
    uint32_t reachable = pack->count < kPackReachableEntries ? pack->count : kPackReachableEntries;
    for (uint32_t i = 0; i < reachable; ++i)
        if (pack->directory[i].id == id) return int32_t(i);
    return -1;
}

uint8_t* LoadPackItem(ResourcePack* pack, uint32_t id) {
    if (!pack->file) return nullptr;
    int32_t index = FindPackEntry(pack, id);
    if (index < 0) return nullptr;
    const PackEntry& entry = pack->directory[index];
    int64_t offset = int64_t((uint64_t(entry.offsetHigh) << 32) | entry.offsetLow);
    if (offset < 0 || offset > pack->fileSize - int64_t(kDibHeaderBytes)) return nullptr;

    DibHeader header;
    uint32_t got = 0;
    if (!SysSeekFile(pack->file, offset, SYS_SEEK_BEGIN, nullptr) ||
        !SysReadFile(pack->file, &header, kDibHeaderBytes, &got) || got != kDibHeaderBytes)
        return nullptr;
    // The item must lie inside the file: this also bounds the allocation by the file's size.
    if (header.biClrUsed > kDibMaxColors) return nullptr;
    int64_t remaining = pack->fileSize - offset - kDibHeaderBytes - 4 * int64_t(header.biClrUsed);
    if (int64_t(header.biSizeImage) > remaining) return nullptr;
    // On 32-bit builds a pack over 4 GiB could otherwise wrap the block size.
    if (uint64_t(header.biSizeImage) + kDibPixelOffset > SIZE_MAX) return nullptr;

    uint8_t* block = static_cast<uint8_t*>(SysAllocBlock(size_t(header.biSizeImage) + kDibPixelOffset));
    if (!block) return nullptr;
    std::memcpy(block, &header, kDibHeaderBytes);
    bool ok = true;
    if (header.biClrUsed) {
        uint32_t bytes = 4 * header.biClrUsed;
        ok = SysReadFile(pack->file, block + kDibPaletteOffset, bytes, &got) && got == bytes;
    }
    if (ok && header.biSizeImage) {
        // Pixels always start at 1,064: room for a full table is kept whatever the colour count.
        ok = SysReadFile(pack->file, block + kDibPixelOffset, header.biSizeImage, &got) && got == header.biSizeImage;
    }
    if (!ok) {
        SysFreeBlock(block);
        return nullptr;
    }
    return block;
}
