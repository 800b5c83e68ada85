// The saved-puzzle browser's small rules: slot labels, the scroll range, slot to entry, the name filter,
// the save path with its length limit, and the name a picked entry puts in the name field.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "setup/browser_rules.h"

namespace {

std::string Label(const char* name) {
    char out[kBrowserLabelLength + 1];
    std::memset(out, 'X', sizeof out);
    MakeSlotLabel(name, out);
    return std::string(out);
}

std::string SavePath(const char* folder, const char* name) {
    char out[400];
    std::memset(out, 'X', sizeof out);
    if (!MakeSavePath(folder, name, out, sizeof out)) {
        EXPECT_EQ(out[0], 0) << "a refused path leaves the buffer empty";
        return "<refused>";
    }
    return out;
}

}  // namespace

TEST(BrowserRules, ShortNameLabelIsTheNameBeforeThePeriodPaddedToSeventeen) {
    EXPECT_EQ(Label("Castle.epf"), "Castle           ");
    EXPECT_EQ(Label("Castle.epf").size(), 17u);
}

TEST(BrowserRules, NameOfElevenOrMoreCharactersBeforeThePeriodShowsOnlyItsFirstEleven) {
    EXPECT_EQ(Label("Lighthouses.epf"), "Lighthouses      ");       // exactly 11
    EXPECT_EQ(Label("LighthousesAtDusk.epf"), "Lighthouses      ");  // 17 before the period
    EXPECT_EQ(Label("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), "ABCDEFGHIJK      ");  // no period at all
}

TEST(BrowserRules, LabelStopsAtTheFirstPeriod) {
    EXPECT_EQ(Label("a.b.epf"), "a                ");
    EXPECT_EQ(Label(".epf"), "                 ");
}

TEST(BrowserRules, LabelIsAlwaysSeventeenCharactersEvenWithoutAName) {
    for (const char* name : {"", "x", "x.epf", "0123456789.epf", "01234567890123456789.epf"})
        EXPECT_EQ(std::strlen(Label(name).c_str()), 17u) << name;
    EXPECT_EQ(Label(nullptr), std::string(17, ' '));
}

TEST(BrowserRules, ScrollRangeRunsFromFourMinusCountToZero) {
    const int32_t expected[] = {0, 0, 0, 0, 0, -1, -2};
    for (int32_t count = 0; count <= 6; ++count)
        EXPECT_EQ(BrowserScrollMinimum(count), expected[count]) << count << " files";
    EXPECT_EQ(BrowserScrollMinimum(1000), -996);
}

TEST(BrowserRules, OnlyMoreThanFourNamesNeedAScrollControl) {
    for (int32_t count = 0; count <= 6; ++count) EXPECT_EQ(BrowserNeedsScroll(count), count > 4) << count;
}

TEST(BrowserRules, SlotShowsEntrySlotMinusPosition) {
    // Six names, at the top (p = 0) and scrolled to the end (p = -2).
    for (int32_t slot = 0; slot < 4; ++slot) {
        EXPECT_EQ(BrowserSlotEntry(slot, 0, 6), slot);
        EXPECT_EQ(BrowserSlotEntry(slot, -2, 6), slot + 2);
        EXPECT_EQ(BrowserSlotEntry(slot, -1, 6), slot + 1);
    }
}

TEST(BrowserRules, SlotsPastTheListShowNothing) {
    EXPECT_EQ(BrowserSlotEntry(0, 0, 2), 0);
    EXPECT_EQ(BrowserSlotEntry(1, 0, 2), 1);
    EXPECT_EQ(BrowserSlotEntry(2, 0, 2), -1);
    EXPECT_EQ(BrowserSlotEntry(3, 0, 2), -1);
    for (int32_t slot = 0; slot < 4; ++slot) EXPECT_EQ(BrowserSlotEntry(slot, 0, 0), -1);
    EXPECT_EQ(BrowserSlotEntry(0, 1, 5), -1);  // a position above 0 never reaches a negative entry
}

TEST(BrowserRules, ClickedSlotSelectsIdMinusFirstIdMinusPosition) {
    EXPECT_EQ(BrowserSelectionOfSlot(303 - kBrowserFirstSlotId, -1, 5), 4);
    EXPECT_EQ(BrowserSelectionOfSlot(300 - kBrowserFirstSlotId, -1, 5), 1);
    EXPECT_EQ(BrowserSelectionOfSlot(3, 0, 3), -1);
}

TEST(BrowserRules, SlotsStandEvery111PixelsFromSix) {
    EXPECT_EQ(BrowserSlotLeft(0), 6);
    EXPECT_EQ(BrowserSlotLeft(1), 117);
    EXPECT_EQ(BrowserSlotLeft(3), 339);
}

TEST(BrowserRules, SelectionPastTheEndOfAShrunkenListMovesToTheLastEntry) {
    EXPECT_EQ(ClampBrowserSelection(4, 4), 3);
    EXPECT_EQ(ClampBrowserSelection(2, 4), 2);
    EXPECT_EQ(ClampBrowserSelection(0, 0), 0);
    EXPECT_EQ(ClampBrowserSelection(3, 0), 0);
    EXPECT_EQ(ClampBrowserSelection(-5, 3), 0);
}

TEST(BrowserRules, FilterRejectsExactlyTheTenFileNameCharacters) {
    const unsigned rejected[] = {34, 42, 46, 47, 58, 60, 62, 63, 92, 124};
    int count = 0;
    for (unsigned code = 0; code < 256; ++code) {
        bool expected = false;
        for (unsigned r : rejected) expected = expected || r == code;
        EXPECT_EQ(IsRejectedNameChar(code), expected) << "character " << code;
        count += IsRejectedNameChar(code);
    }
    EXPECT_EQ(count, 10);
    EXPECT_FALSE(IsRejectedNameChar(13));  // Enter is the action, not a refused character
    EXPECT_FALSE(IsRejectedNameChar(0x100 + '.'));
}

TEST(BrowserRules, SavePathIsFolderThenFolderSubfolderThenNameThenExtension) {
    EXPECT_EQ(SavePath("C:\\Games\\Tavirel\\", "hd"), "C:\\Games\\Tavirel\\folder\\hd.epf");
    EXPECT_EQ(SavePath("", "a"), "folder\\a.epf");
}

TEST(BrowserRules, SavePathRefusesAnEmptyName) {
    EXPECT_EQ(SavePath("C:\\", ""), "<refused>");
    EXPECT_EQ(SavePath("C:\\", nullptr), "<refused>");
}

TEST(BrowserRules, SavePathRefusesNamesThatMakeAPathOf260OrMore) {
    std::string folder = "C:\\Games\\";  // 9 characters; with "folder\" and ".epf" 20 besides the name
    std::string fits(259 - 20, 'n');      // a path of 259 characters: the longest Windows takes
    std::string tooLong(260 - 20, 'n');   // 260: no room for the NUL
    std::string path = SavePath(folder.c_str(), fits.c_str());
    EXPECT_EQ(path.size(), 259u);
    EXPECT_EQ(SavePath(folder.c_str(), tooLong.c_str()), "<refused>");
    EXPECT_EQ(SavePath(folder.c_str(), std::string(5000, 'n').c_str()), "<refused>");
}

TEST(BrowserRules, SavePathRefusesABufferTooSmall) {
    char out[12];
    EXPECT_FALSE(MakeSavePath("C:\\", "abcdef", out, sizeof out));
    EXPECT_EQ(out[0], 0);
}

TEST(BrowserRules, SavedFileAndListPathsAreUnderTheSavedFolder) {
    char out[300];
    ASSERT_TRUE(MakeSavedFilePath("D:\\T\\", "Castle.epf", out, sizeof out));
    EXPECT_STREQ(out, "D:\\T\\folder\\Castle.epf");
    ASSERT_TRUE(MakeSavedListPattern("D:\\T\\", out, sizeof out));
    EXPECT_STREQ(out, "D:\\T\\folder\\*.epf");
    EXPECT_FALSE(MakeSavedFilePath("D:\\T\\", std::string(300, 'x').c_str(), out, sizeof out));
    EXPECT_STREQ(out, "");
}

TEST(BrowserRules, PickedEntryGivesItsNameWithoutTheExtension) {
    char out[64];
    NameWithoutExtension("Castle.epf", out, sizeof out);
    EXPECT_STREQ(out, "Castle");
    NameWithoutExtension("Old.castle.epf", out, sizeof out);
    EXPECT_STREQ(out, "Old.castle");  // saving it again replaces the same file
    NameWithoutExtension("NoExtension", out, sizeof out);
    EXPECT_STREQ(out, "NoExtension");
    NameWithoutExtension("Castle.epf", out, 4);
    EXPECT_STREQ(out, "Cas");
}
