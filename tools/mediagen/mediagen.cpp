// mediagen: the executable's sounds, cursors and icon, the game's video clips and its music.
//   mediagen resources DIR   hover.wav, click.wav, tray.cur, drag.cur, normal.cur, tavirel.ico
//   mediagen clips DIR       0.avi, 1.avi, 2.avi
//   mediagen music DIR       Track1.wav .. Track4.wav, listed one line each (file, title, length, bytes)
#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

#include "mediagen/media.h"

static bool WriteFile(const std::string& path, const std::vector<uint8_t>& bytes) {
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return false;
    bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    return std::fclose(f) == 0 && ok;
}

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: mediagen resources|clips|music DIR\n");
        return 2;
    }
    std::string dir = argv[2];
    mkdir(dir.c_str(), 0755);
    bool ok;
    if (!std::strcmp(argv[1], "resources")) {
        ok = WriteFile(dir + "/hover.wav", MakeHoverSound()) && WriteFile(dir + "/click.wav", MakeClickSound()) &&
             WriteCursors(dir) && WriteIcon(dir + "/tavirel.ico");
    } else if (!std::strcmp(argv[1], "clips")) {
        ok = true;
        for (int kind = 0; kind < 3 && ok; ++kind) ok = WriteAvi(dir + "/" + std::to_string(kind) + ".avi", MakeClip(kind));
    } else if (!std::strcmp(argv[1], "music")) {
        ok = true;
        for (int piece = 0; piece < kMusicPieces && ok; ++piece) {
            std::string file, title;
            std::vector<uint8_t> wave = MakeMusicPiece(piece, &file, &title);
            ok = WriteFile(dir + "/" + file, wave);
            long seconds = std::lround((wave.size() - 44) / 2 / 11025.0);  // 16-bit mono at 11025 a second
            if (ok)
                std::printf("%-11s %-19s %ld:%02ld %9zu bytes\n", file.c_str(), title.c_str(), seconds / 60, seconds % 60,
                            wave.size());
        }
    } else {
        std::fprintf(stderr, "usage: mediagen resources|clips|music DIR\n");
        return 2;
    }
    if (!ok) std::fprintf(stderr, "mediagen: cannot write into %s\n", dir.c_str());
    return ok ? 0 : 1;
}
