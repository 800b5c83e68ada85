// Win32 implementation of the platform services, for the game and its Windows tests.
#include "app/platform.h"

#include <windows.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

struct SysFile {
    HANDLE handle;
};

static SysFaultPlan g_faultPlan;  // the tests' planned failures; all zero in normal use
static int32_t g_writesSincePlan;

void SysSetFaultPlan(const SysFaultPlan* plan) {
    g_faultPlan = plan ? *plan : SysFaultPlan{};
    g_writesSincePlan = 0;
}

SysFile* SysOpenFile(const char* path, SysOpenMode mode) {
    if (!path) return nullptr;
    if (mode == SYS_OPEN_CREATE && g_faultPlan.failCreate) return nullptr;
    HANDLE h = INVALID_HANDLE_VALUE;
    switch (mode) {
    case SYS_OPEN_READ:
        h = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_ARCHIVE, nullptr);
        break;
    case SYS_OPEN_READ_EXCLUSIVE:
        h = CreateFileA(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        break;
    case SYS_OPEN_CREATE:
        h = CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        break;
    }
    if (h == INVALID_HANDLE_VALUE || h == nullptr) return nullptr;
    SysFile* file = new (std::nothrow) SysFile;
    if (!file) {
        CloseHandle(h);
        return nullptr;
    }
    file->handle = h;
    return file;
}

void SysCloseFile(SysFile* file) {
    if (!file) return;
    CloseHandle(file->handle);
    delete file;
}

bool SysReadFile(SysFile* file, void* buffer, uint32_t count, uint32_t* got) {
    if (got) *got = 0;
    if (!file) return false;
    DWORD read = 0;
    if (!ReadFile(file->handle, buffer, count, &read, nullptr)) return false;
    if (got) *got = read;
    return true;
}

bool SysWriteFile(SysFile* file, const void* buffer, uint32_t count) {
    if (!file) return false;
    DWORD written = 0;
    if (g_faultPlan.failWriteNumber > 0 && ++g_writesSincePlan == g_faultPlan.failWriteNumber) {
        if (g_faultPlan.shortWrite && count / 2 > 0) WriteFile(file->handle, buffer, count / 2, &written, nullptr);
        return false;
    }
    return WriteFile(file->handle, buffer, count, &written, nullptr) && written == count;
}

bool SysSeekFile(SysFile* file, int64_t offset, SysSeekFrom from, int64_t* position) {
    if (!file) return false;
    DWORD method = from == SYS_SEEK_BEGIN ? FILE_BEGIN : from == SYS_SEEK_CURRENT ? FILE_CURRENT : FILE_END;
    LARGE_INTEGER distance, result;
    distance.QuadPart = offset;
    if (!SetFilePointerEx(file->handle, distance, &result, method)) return false;
    if (position) *position = result.QuadPart;
    return true;
}

int64_t SysFileSize(SysFile* file) {
    LARGE_INTEGER size;
    if (!file || !GetFileSizeEx(file->handle, &size)) return -1;
    return size.QuadPart;
}

bool SysPathExists(const char* path) {
    return path && GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

bool SysDeleteFile(const char* path) { return path && DeleteFileA(path); }

bool SysReplaceFile(const char* from, const char* to) {
    if (g_faultPlan.failReplace) return false;
    return from && to && MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

static char FoldCase(char ch) {
    return char(reinterpret_cast<UINT_PTR>(CharLowerA(reinterpret_cast<LPSTR>(UINT_PTR(uint8_t(ch))))));
}

// '*' any run of characters, '?' exactly one, letters compared without case. FindFirstFileA also
// matches a name through its generated 8.3 alias, so "*.bmp" would bring in "x.bmpx" (alias
// "X~1.BMP"); checking the long name keeps the listing the same as on the POSIX side.
static bool MatchesWildcard(const char* pattern, const char* name) {
    const char* star = nullptr;  // last '*' seen, and the name position it stands for
    const char* resume = nullptr;
    while (*name) {
        if (*pattern == '*') {
            star = pattern++;
            resume = name;
        } else if (*pattern && (*pattern == '?' || FoldCase(*pattern) == FoldCase(*name))) {
            ++pattern;
            ++name;
        } else if (star) {
            pattern = star + 1;
            name = ++resume;
        } else {
            return false;
        }
    }
    while (*pattern == '*') ++pattern;
    return *pattern == 0;
}

bool SysListFolder(const char* pattern, SysFolderVisitor visit, void* context) {
    if (!pattern || !visit) return false;
    const char* wildcard = pattern;
    for (const char* p = pattern; *p; ++p)
        if (*p == '\\' || *p == '/' || *p == ':') wildcard = p + 1;
    // Windows reads "*.*" as "everything", names without a dot included.
    bool everything = std::strcmp(wildcard, "*.*") == 0;
    WIN32_FIND_DATAA found;
    HANDLE search = FindFirstFileA(pattern, &found);
    if (search == nullptr || search == INVALID_HANDLE_VALUE) return false;
    bool any = false;
    do {
        if (!everything && !MatchesWildcard(wildcard, found.cFileName)) continue;
        any = true;
        if (!visit(context, found.cFileName)) break;
    } while (FindNextFileA(search, &found));
    FindClose(search);
    return any;
}

void SysUtcTime(SysTime* time) {
    SYSTEMTIME now;
    GetSystemTime(&now);
    time->year = now.wYear;
    time->month = now.wMonth;
    time->day = now.wDay;
    time->hour = now.wHour;
    time->minute = now.wMinute;
    time->second = now.wSecond;
    time->millisecond = now.wMilliseconds;
}

static std::atomic<size_t> g_liveBlocks{0};

void* SysAllocBlock(size_t bytes) {
    void* block = GlobalAlloc(GMEM_FIXED, bytes ? bytes : 1);
    if (block) ++g_liveBlocks;
    return block;
}

void SysFreeBlock(void* block) {
    if (!block) return;
    GlobalFree(block);
    --g_liveBlocks;
}

size_t SysLiveBlocks() { return g_liveBlocks; }

// Large pages need a privilege ordinary players lack; the plain heap serves.
void* SysAllocLarge(size_t bytes) { return std::malloc(bytes); }
