// patcheck: validates cut-pattern bitmaps for the cutter.
//   patcheck PATTERN.bmp...   prints "ok" or each broken rule per file; exit 0 only if all pass
#include <cstdio>
#include <string>

#include "patcheck/pattern_rules.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: patcheck PATTERN.bmp...\n");
        return 2;
    }
    int failed = 0;
    for (int i = 1; i < argc; ++i) {
        PatternImage image;
        std::string reason;
        if (!ReadPatternBmp(argv[i], &image, &reason)) {
            std::printf("%s: %s\n", argv[i], reason.c_str());
            ++failed;
            continue;
        }
        std::vector<std::string> errors = CheckPattern(image);
        if (errors.empty()) std::printf("%s: ok\n", argv[i]);
        for (const std::string& e : errors) std::printf("%s: %s\n", argv[i], e.c_str());
        failed += !errors.empty();
    }
    return failed ? 1 : 0;
}
