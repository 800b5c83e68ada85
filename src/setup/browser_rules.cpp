// The saved-puzzle browser's geometry and small rules.
#include "setup/browser_rules.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr int32_t kFirstSlotLeft = 6;
constexpr int32_t kSlotPitch = 111;
constexpr size_t kWindowsPathLimit = 260;  // MAX_PATH, NUL included
constexpr char kSavedFolder[] = "folder\\";
constexpr char kSavedExtension[] = ".epf";

// Joins the parts into out when the result with its NUL fits both the buffer and a Windows path.
bool JoinPath(const char* a, const char* b, const char* c, char* out, size_t size) {
    if (!out || size == 0) return false;
    out[0] = 0;
    if (!a || !b || !c) return false;
    size_t total = std::strlen(a) + std::strlen(b) + std::strlen(c);
    if (total + 1 > kWindowsPathLimit || total + 1 > size) return false;
    std::snprintf(out, size, "%s%s%s", a, b, c);
    return true;
}

}  // namespace

int32_t BrowserSlotLeft(int32_t slot) { return kFirstSlotLeft + kSlotPitch * slot; }

void MakeSlotLabel(const char* fileName, char out[kBrowserLabelLength + 1]) {
    std::memset(out, ' ', kBrowserLabelLength);
    out[kBrowserLabelLength] = 0;
    if (!fileName) return;
    for (int32_t n = 0; n < kBrowserLabelNameLimit && fileName[n] && fileName[n] != '.'; ++n) out[n] = fileName[n];
}

int32_t BrowserScrollMinimum(int32_t count) {
    return BrowserNeedsScroll(count) ? kBrowserSlotCount - count : 0;
}

bool BrowserNeedsScroll(int32_t count) { return count > kBrowserSlotCount; }

int32_t BrowserSlotEntry(int32_t slot, int32_t position, int32_t count) {
    int64_t entry = int64_t(slot) - position;
    return entry >= 0 && entry < count ? int32_t(entry) : -1;
}

int32_t ClampBrowserSelection(int32_t selected, int32_t count) {
    if (count <= 0 || selected < 0) return 0;
    return selected < count ? selected : count - 1;
}

bool IsRejectedNameChar(unsigned code) {
    switch (code) {
    case '"': case '*': case '.': case '/': case ':': case '<': case '>': case '?': case '\\': case '|':
        return true;
    default:
        return false;
    }
}

bool MakeSavePath(const char* folder, const char* name, char* out, size_t size) {
    if (out && size > 0) out[0] = 0;
    if (!name || !name[0] || !folder) return false;
    size_t nameLength = std::strlen(name);
    size_t total = std::strlen(folder) + std::strlen(kSavedFolder) + nameLength + std::strlen(kSavedExtension);
    if (total + 1 > kWindowsPathLimit || !out || total + 1 > size) return false;
    std::snprintf(out, size, "%s%s%s%s", folder, kSavedFolder, name, kSavedExtension);
    return true;
}

bool MakeSavedFilePath(const char* folder, const char* fileName, char* out, size_t size) {
    return JoinPath(folder, kSavedFolder, fileName, out, size);
}

bool MakeSavedListPattern(const char* folder, char* out, size_t size) {
    return JoinPath(folder, kSavedFolder, "*.epf", out, size);
}

void NameWithoutExtension(const char* fileName, char* out, size_t size) {
    if (!out || size == 0) return;
    out[0] = 0;
    if (!fileName) return;
    size_t length = std::strlen(fileName);
    const char* dot = std::strrchr(fileName, '.');
    if (dot) length = size_t(dot - fileName);
    if (length > size - 1) length = size - 1;
    std::memcpy(out, fileName, length);
    out[length] = 0;
}
