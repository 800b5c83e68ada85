// The few system services the portable core needs: files, folder search, UTC time, memory blocks.
// Implemented once over Win32 (platform_win32.cpp) and once over POSIX (platform_posix.cpp).
// Paths use the program's own form, backslash-separated ("Image\*.bmp"); the POSIX side maps them.
#pragma once

#include <cstddef>
#include <cstdint>

struct SysFile;  // an open file; opaque

enum SysOpenMode {
    SYS_OPEN_READ,            // an existing file, others may read it too
    SYS_OPEN_READ_EXCLUSIVE,  // an existing file, nobody else may open it (the pack)
    SYS_OPEN_CREATE,          // a new or truncated file for writing
};

enum SysSeekFrom { SYS_SEEK_BEGIN, SYS_SEEK_CURRENT, SYS_SEEK_END };

// Null when the file cannot be opened.
SysFile* SysOpenFile(const char* path, SysOpenMode mode);
void SysCloseFile(SysFile* file);
// False on an error; *got (when given) receives the byte count actually read, which is short at the end.
bool SysReadFile(SysFile* file, void* buffer, uint32_t count, uint32_t* got);
// False unless every byte was written.
bool SysWriteFile(SysFile* file, const void* buffer, uint32_t count);
// *position (when given) receives the new position from the file's start.
bool SysSeekFile(SysFile* file, int64_t offset, SysSeekFrom from, int64_t* position);
// -1 when unknown.
int64_t SysFileSize(SysFile* file);

bool SysPathExists(const char* path);
bool SysDeleteFile(const char* path);
// Puts `from` in place of `to` in one step, so a reader never sees a half-written file.
bool SysReplaceFile(const char* from, const char* to);

// Calls visit once per entry whose name matches the wildcard of the pattern's last component
// (case-insensitive, as on Windows), in the order the file system gives; visit returns false to stop.
// False when the folder cannot be searched or nothing matches.
typedef bool (*SysFolderVisitor)(void* context, const char* name);
bool SysListFolder(const char* pattern, SysFolderVisitor visit, void* context);

struct SysTime {
    uint16_t year, month, day;
    uint16_t hour, minute, second, millisecond;
};
void SysUtcTime(SysTime* time);

// Fixed memory blocks for packed bitmaps and headers. SysLiveBlocks counts the blocks not yet freed,
// so tests can prove that reloads release what they replace.
void* SysAllocBlock(size_t bytes);
void SysFreeBlock(void* block);
size_t SysLiveBlocks();

// Test seam: makes file writing fail on purpose, so tests can prove that writers never leave a half-written
// file where a good one stood. Writes are counted from the moment a plan is set; write number
// failWriteNumber (1 = the first, 0 = none) fails, as a short write (half its bytes written) when shortWrite
// is set. failCreate refuses every SYS_OPEN_CREATE, failReplace every SysReplaceFile. Null clears the plan;
// the game never sets one.
struct SysFaultPlan {
    int32_t failWriteNumber;
    bool shortWrite;
    bool failReplace;
    bool failCreate;
};
void SysSetFaultPlan(const SysFaultPlan* plan);

// Heap memory for the few very large arrays (the piece sheet): on systems that can, backed by large pages
// so that filling it does not fault page by page. Released with std::free.
void* SysAllocLarge(size_t bytes);
