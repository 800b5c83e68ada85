// Fuzz targets read through the same file API as the game, so each input is written to a scratch file.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

inline std::string WriteFuzzInput(const uint8_t* data, size_t size, const char* suffix) {
    std::string path = "/tmp/tavirel-fuzz-" + std::to_string(getpid()) + suffix;
    FILE* file = std::fopen(path.c_str(), "wb");
    if (file) {
        std::fwrite(data, 1, size, file);
        std::fclose(file);
    }
    return path;
}
