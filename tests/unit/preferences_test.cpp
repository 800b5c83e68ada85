// Reading back the remembered language and cloth.
#include <gtest/gtest.h>

#include "app/app_state.h"
#include "app/preferences.h"

TEST(Preferences, SpanishAndEnglishAreReadBack) {
    EXPECT_EQ(LanguageFromSetting("0"), kSpanish);
    EXPECT_EQ(LanguageFromSetting("1"), kEnglish);
}

TEST(Preferences, AMissingOrEmptyLanguageGivesEnglish) {
    EXPECT_EQ(LanguageFromSetting(nullptr), kEnglish);
    EXPECT_EQ(LanguageFromSetting(""), kEnglish);
}

// Only the two languages the chooser offers; a hand-edited other index or any text gives English.
TEST(Preferences, AnInvalidLanguageGivesEnglish) {
    for (const char* text : {"2", "5", "-1", "01x", " 0", "0 ", "Spanish", "99999999999999999999"})
        EXPECT_EQ(LanguageFromSetting(text), kEnglish) << text;
}

TEST(Preferences, EveryClothIsReadBack) {
    const char* texts[] = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
    for (int k = 0; k < kClothCount; ++k) EXPECT_EQ(ClothFromSetting(texts[k]), k);
}

TEST(Preferences, AMissingOrInvalidClothGivesTheBaize) {
    for (const char* text : {static_cast<const char*>(nullptr), "", "10", "-3", "4a", "x", "00000000000000000000012"})
        EXPECT_EQ(ClothFromSetting(text), 0) << (text ? text : "(null)");
}

TEST(Preferences, LeadingZerosStillReadAsTheirNumber) {
    EXPECT_EQ(ClothFromSetting("04"), 4);
    EXPECT_EQ(LanguageFromSetting("00"), kSpanish);
}
