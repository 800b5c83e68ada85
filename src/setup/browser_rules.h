// The saved-puzzle browser's geometry and small rules: slot labels, the scroll range, which list entry a
// slot shows, the name field's character filter, the save path and the name a picked entry puts in the field.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr int32_t kBrowserSlotCount = 4;
constexpr int32_t kBrowserSlotWidth = 108;
constexpr int32_t kBrowserSlotHeight = 90;
constexpr int32_t kBrowserSlotTop = 108;
constexpr int32_t kBrowserLabelTop = 193;
constexpr int32_t kBrowserFirstSlotId = 300;  // slot i has control id 300 + i
// Width of the client area: the backdrop picture's width less this.
constexpr int32_t kBrowserBackdropTrim = 100;

// Ids of the other children, so that each can be found by its id.
enum BrowserChildId {
    kBrowserNameFieldId = 310,
    kBrowserActionId = 311,
    kBrowserCloseId = 312,
    kBrowserHelpId = 313,
    kBrowserDeleteId = 314,
    kBrowserScrollId = 315,
};

// Read-only questions a browser window answers (for tests and tools).
constexpr unsigned PM_BROWSER_GETLABEL = 1560;      // wParam slot, lParam char[kBrowserLabelLength + 1]
constexpr unsigned PM_BROWSER_GETSELECTION = 1561;  // the selected list entry
constexpr unsigned PM_BROWSER_GETCOUNT = 1562;      // names in the list
constexpr unsigned PM_BROWSER_GETPOSITION = 1563;   // the scroll position p (0 without a scroll control)

// A slot label is always this many characters: the first 11 of the name before its first period,
// padded with spaces, so that a shorter label covers what a longer one drew.
constexpr int32_t kBrowserLabelLength = 17;
constexpr int32_t kBrowserLabelNameLimit = 11;

// Left edge of slot i and of its label.
int32_t BrowserSlotLeft(int32_t slot);

// Fills out[0..16] from the file name and ends it with a NUL at out[17]; a null name gives spaces only.
void MakeSlotLabel(const char* fileName, char out[kBrowserLabelLength + 1]);

// The scroll position runs from 4 - count up to 0; four names or fewer cannot scroll (0 to 0).
int32_t BrowserScrollMinimum(int32_t count);
// Only a list of more than four names has a scroll control.
bool BrowserNeedsScroll(int32_t count);
// The list entry slot i shows at scroll position p: i - p, or -1 when that is outside the list.
int32_t BrowserSlotEntry(int32_t slot, int32_t position, int32_t count);
// The entry a click on slot i selects, or -1 for a slot past the list.
inline int32_t BrowserSelectionOfSlot(int32_t slot, int32_t position, int32_t count) {
    return BrowserSlotEntry(slot, position, count);
}
// A selection left past the end of a shrunken list moves to the last entry; 0 for an empty list.
int32_t ClampBrowserSelection(int32_t selected, int32_t count);

// The characters a file name cannot hold: " * . / : < > ? \ |. The period is refused too, because
// ".epf" is always appended.
bool IsRejectedNameChar(unsigned code);

// folder + "folder\" + name + ".epf" into out. False, with out emptied, for an empty name or when the
// whole path with its NUL would not fit a Windows path (260 characters or more) or the buffer.
bool MakeSavePath(const char* folder, const char* name, char* out, size_t size);
// folder + "folder\" + fileName (a list entry, extension included); false when it does not fit.
bool MakeSavedFilePath(const char* folder, const char* fileName, char* out, size_t size);
// folder + "folder\*.epf", the search that fills the list.
bool MakeSavedListPattern(const char* folder, char* out, size_t size);
// The file name without its last extension ("Castle.epf" -> "Castle"), at most size - 1 characters.
void NameWithoutExtension(const char* fileName, char* out, size_t size);
