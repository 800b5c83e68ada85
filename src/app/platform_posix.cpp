// POSIX implementation of the platform services, for native builds (tests, tools, benchmarks).
#include "app/platform.h"

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

struct SysFile {
    int fd;
};

static SysFaultPlan g_faultPlan;  // the tests' planned failures; all zero in normal use
static int32_t g_writesSincePlan;

void SysSetFaultPlan(const SysFaultPlan* plan) {
    g_faultPlan = plan ? *plan : SysFaultPlan{};
    g_writesSincePlan = 0;
}

static std::string NativePath(const char* path) {
    std::string p(path);
    for (char& ch : p)
        if (ch == '\\') ch = '/';
    return p;
}

SysFile* SysOpenFile(const char* path, SysOpenMode mode) {
    if (!path) return nullptr;
    std::string native = NativePath(path);
    int fd = -1;
    if (mode == SYS_OPEN_CREATE && g_faultPlan.failCreate) return nullptr;
    if (mode == SYS_OPEN_CREATE)
        fd = open(native.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    else
        fd = open(native.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return nullptr;
    struct stat st;
    if (fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
        close(fd);
        return nullptr;
    }
    SysFile* file = new SysFile;
    file->fd = fd;
    return file;
}

void SysCloseFile(SysFile* file) {
    if (!file) return;
    close(file->fd);
    delete file;
}

bool SysReadFile(SysFile* file, void* buffer, uint32_t count, uint32_t* got) {
    if (got) *got = 0;
    if (!file) return false;
    uint32_t total = 0;
    char* out = static_cast<char*>(buffer);
    while (total < count) {
        ssize_t n = read(file->fd, out + total, count - total);
        if (n < 0) return false;
        if (n == 0) break;
        total += static_cast<uint32_t>(n);
    }
    if (got) *got = total;
    return true;
}

bool SysWriteFile(SysFile* file, const void* buffer, uint32_t count) {
    if (!file) return false;
    uint32_t total = 0;
    const char* in = static_cast<const char*>(buffer);
    if (g_faultPlan.failWriteNumber > 0 && ++g_writesSincePlan == g_faultPlan.failWriteNumber) {
        if (g_faultPlan.shortWrite && count / 2 > 0 && write(file->fd, in, count / 2) < 0) return false;
        return false;
    }
    while (total < count) {
        ssize_t n = write(file->fd, in + total, count - total);
        if (n <= 0) return false;
        total += static_cast<uint32_t>(n);
    }
    return true;
}

bool SysSeekFile(SysFile* file, int64_t offset, SysSeekFrom from, int64_t* position) {
    if (!file) return false;
    int whence = from == SYS_SEEK_BEGIN ? SEEK_SET : from == SYS_SEEK_CURRENT ? SEEK_CUR : SEEK_END;
    off_t at = lseek(file->fd, static_cast<off_t>(offset), whence);
    if (at < 0) return false;
    if (position) *position = at;
    return true;
}

int64_t SysFileSize(SysFile* file) {
    struct stat st;
    if (!file || fstat(file->fd, &st) != 0) return -1;
    return st.st_size;
}

bool SysPathExists(const char* path) {
    struct stat st;
    return path && stat(NativePath(path).c_str(), &st) == 0;
}

bool SysDeleteFile(const char* path) { return path && unlink(NativePath(path).c_str()) == 0; }

bool SysReplaceFile(const char* from, const char* to) {
    if (g_faultPlan.failReplace) return false;
    return from && to && rename(NativePath(from).c_str(), NativePath(to).c_str()) == 0;
}

bool SysListFolder(const char* pattern, SysFolderVisitor visit, void* context) {
    if (!pattern || !visit) return false;
    std::string native = NativePath(pattern);
    size_t slash = native.rfind('/');
    std::string folder = slash == std::string::npos ? "." : native.substr(0, slash);
    if (folder.empty()) folder = "/";
    std::string wildcard = slash == std::string::npos ? native : native.substr(slash + 1);
    // Windows treats "*.*" as "everything", names without a dot included.
    if (wildcard == "*.*") wildcard = "*";
    DIR* dir = opendir(folder.c_str());
    if (!dir) return false;
    bool any = false;
    while (struct dirent* entry = readdir(dir)) {
        if (fnmatch(wildcard.c_str(), entry->d_name, FNM_CASEFOLD) != 0) continue;
        any = true;
        if (!visit(context, entry->d_name)) break;
    }
    closedir(dir);
    return any;
}

void SysUtcTime(SysTime* time) {
    struct timeval tv;
    gettimeofday(&tv, nullptr);
    struct tm parts;
    time_t seconds = tv.tv_sec;
    gmtime_r(&seconds, &parts);
    time->year = static_cast<uint16_t>(parts.tm_year + 1900);
    time->month = static_cast<uint16_t>(parts.tm_mon + 1);
    time->day = static_cast<uint16_t>(parts.tm_mday);
    time->hour = static_cast<uint16_t>(parts.tm_hour);
    time->minute = static_cast<uint16_t>(parts.tm_min);
    time->second = static_cast<uint16_t>(parts.tm_sec);
    time->millisecond = static_cast<uint16_t>(tv.tv_usec / 1000);
}

static std::atomic<size_t> g_liveBlocks{0};

void* SysAllocBlock(size_t bytes) {
    void* block = std::malloc(bytes ? bytes : 1);
    if (block) ++g_liveBlocks;
    return block;
}

void SysFreeBlock(void* block) {
    if (!block) return;
    std::free(block);
    --g_liveBlocks;
}

size_t SysLiveBlocks() { return g_liveBlocks; }

void* SysAllocLarge(size_t bytes) {
    const size_t largePage = size_t(2) << 20;
    if (bytes < 4 * largePage) return std::malloc(bytes);
    void* block = nullptr;
    if (posix_memalign(&block, largePage, bytes) != 0) return nullptr;
#ifdef MADV_HUGEPAGE
    madvise(block, bytes, MADV_HUGEPAGE);  // only advice: without large pages the block still works
#endif
    return block;
}
