// Win32 implementation of the platform services, for the game and its Windows tests.
#include "app/platform.h"

#include <windows.h>

#include <atomic>

struct SysFile {
    HANDLE handle;
};

SysFile* SysOpenFile(const char* path, SysOpenMode mode) {
    if (!path) return nullptr;
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
    SysFile* file = new SysFile;
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
    return from && to && MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

bool SysListFolder(const char* pattern, SysFolderVisitor visit, void* context) {
    if (!pattern || !visit) return false;
    WIN32_FIND_DATAA found;
    HANDLE search = FindFirstFileA(pattern, &found);
    if (search == nullptr || search == INVALID_HANDLE_VALUE) return false;
    do {
        if (!visit(context, found.cFileName)) break;
    } while (FindNextFileA(search, &found));
    FindClose(search);
    return true;
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
