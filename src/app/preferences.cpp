// Reading back the remembered language and cloth: only a value the game itself could have written counts.
#include "app/preferences.h"

#include "app/app_state.h"

namespace {

// A plain decimal number below `limit`, nothing before or after it; -1 otherwise.
int32_t SmallNumber(const char* text, int32_t limit) {
    if (!text || !*text) return -1;
    int32_t value = 0;
    for (const char* p = text; *p; ++p) {
        if (*p < '0' || *p > '9') return -1;
        value = value * 10 + (*p - '0');
        if (value >= limit) return -1;
    }
    return value;
}

}  // namespace

int32_t LanguageFromSetting(const char* text) {
    int32_t value = SmallNumber(text, kEnglish + 1);
    return value < 0 ? int32_t(kEnglish) : value;
}

int32_t ClothFromSetting(const char* text) {
    int32_t value = SmallNumber(text, kClothCount);
    return value < 0 ? 0 : value;
}
