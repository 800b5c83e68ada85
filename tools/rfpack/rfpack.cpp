// rfpack: builds, lists and unpacks the game's resource pack.
//   rfpack build PACK.rf LIST     LIST holds "id file.bmp" lines (blank lines and # comments skipped;
//                                 relative paths are taken from the list's folder)
//   rfpack list PACK.rf           one line per directory entry: id size offset width height bits colours
//   rfpack extract PACK.rf ID OUT.bmp
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "gfx/dib.h"
#include "gfx/pack.h"
#include "gfx/pack_writer.h"

static int Usage() {
    std::fprintf(stderr,
                 "usage: rfpack build PACK.rf LIST\n"
                 "       rfpack list PACK.rf\n"
                 "       rfpack extract PACK.rf ID OUT.bmp\n");
    return 2;
}

static bool ParseId(const char* text, uint32_t* id) {
    char* end = nullptr;
    unsigned long long value = std::strtoull(text, &end, 0);
    if (!*text || *end || value > 0xFFFFFFFFull) return false;
    *id = uint32_t(value);
    return true;
}

static int Build(const char* packPath, const char* listPath) {
    FILE* list = std::fopen(listPath, "r");
    if (!list) {
        std::fprintf(stderr, "rfpack: cannot read %s\n", listPath);
        return 1;
    }
    std::string folder(listPath);
    size_t slash = folder.find_last_of("/\\");
    folder = slash == std::string::npos ? "" : folder.substr(0, slash + 1);

    PackWriter writer;
    if (!BeginPack(&writer, packPath)) {
        std::fprintf(stderr, "rfpack: cannot write %s\n", packPath);
        std::fclose(list);
        return 1;
    }
    char line[4096];
    int lineNumber = 0, status = 0;
    while (status == 0 && std::fgets(line, sizeof line, list)) {
        ++lineNumber;
        char idText[64], file[4000];
        if (line[0] == '#' || std::sscanf(line, "%63s %3999s", idText, file) != 2) {
            if (line[0] != '#' && std::strspn(line, " \t\r\n") != std::strlen(line)) status = 1;
            if (status) std::fprintf(stderr, "rfpack: %s:%d: expected \"id file.bmp\"\n", listPath, lineNumber);
            continue;
        }
        uint32_t id;
        std::string path = (file[0] == '/' ? std::string() : folder) + file;
        std::vector<uint8_t> bmp, item;
        if (!ParseId(idText, &id)) {
            std::fprintf(stderr, "rfpack: %s:%d: bad id %s\n", listPath, lineNumber, idText);
            status = 1;
        } else if (!ReadWholeFile(path.c_str(), &bmp) || !BmpBytesToPackItem(bmp, &item)) {
            std::fprintf(stderr, "rfpack: %s:%d: %s is not an uncompressed BMP\n", listPath, lineNumber,
                         path.c_str());
            status = 1;
        } else if (!AddPackItem(&writer, id, item.data(), uint32_t(item.size()))) {
            std::fprintf(stderr, "rfpack: write failed\n");
            status = 1;
        }
    }
    std::fclose(list);
    if (status) {
        AbortPack(&writer);
        return status;
    }
    if (!FinishPack(&writer)) {
        std::fprintf(stderr, "rfpack: cannot finish %s\n", packPath);
        return 1;
    }
    return 0;
}

static int List(const char* packPath) {
    ResourcePack pack;
    if (!OpenPack(&pack, packPath)) {
        std::fprintf(stderr, "rfpack: %s is not a readable pack\n", packPath);
        return 1;
    }
    for (uint32_t i = 0; i < pack.count; ++i) {
        const PackEntry& e = pack.directory[i];
        uint64_t offset = (uint64_t(e.offsetHigh) << 32) | e.offsetLow;
        uint8_t* dib = FindPackEntry(&pack, e.id) == int32_t(i) ? LoadPackItem(&pack, e.id) : nullptr;
        if (dib) {
            const DibHeader* h = DibHeaderOf(dib);
            std::printf("%u %u %" PRIu64 " %d %d %u %u\n", e.id, e.size, offset, h->biWidth, h->biHeight,
                        h->biBitCount, h->biClrUsed);
            FreePackedDib(dib);
        } else {
            std::printf("%u %u %" PRIu64 " - - - -\n", e.id, e.size, offset);
        }
    }
    ClosePack(&pack);
    return 0;
}

static int Extract(const char* packPath, const char* idText, const char* outPath) {
    uint32_t id;
    if (!ParseId(idText, &id)) return Usage();
    ResourcePack pack;
    if (!OpenPack(&pack, packPath)) {
        std::fprintf(stderr, "rfpack: %s is not a readable pack\n", packPath);
        return 1;
    }
    uint8_t* dib = LoadPackItem(&pack, id);
    ClosePack(&pack);
    if (!dib) {
        std::fprintf(stderr, "rfpack: no item %u\n", id);
        return 1;
    }
    bool ok = WriteDibAsBmp(outPath, dib);
    FreePackedDib(dib);
    if (!ok) std::fprintf(stderr, "rfpack: cannot write %s\n", outPath);
    return ok ? 0 : 1;
}

int main(int argc, char** argv) {
    if (argc == 4 && !std::strcmp(argv[1], "build")) return Build(argv[2], argv[3]);
    if (argc == 3 && !std::strcmp(argv[1], "list")) return List(argv[2]);
    if (argc == 5 && !std::strcmp(argv[1], "extract")) return Extract(argv[2], argv[3], argv[4]);
    return Usage();
}
