// The C library's calls with which kpbook syncs and names files itself, replaced for the whole program so that they
// fail as planned and a power cut knows of them.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>

#include "faults/Plan.h"
#include "faults/PowerCut.h"

namespace {

using namespace kpTables::faults;

bool IsCutPlanned() { return Armed().kind && Armed().kind->effect == Effect::PowerCut; }

std::string Absolute(const char* path) { return std::filesystem::absolute(path).lexically_normal().string(); }

int Failed(int code) {
    errno = code;
    return -1;
}

/// Nothing has to wait for a disk: the files are kept in memory.
int Sync(int file) {
    if (Fails(Point::Sync)) return Failed(EIO);
    if (!IsCutPlanned()) return 0;
    struct stat status {};
    if (::fstat(file, &status) != 0) return -1;
    if (S_ISDIR(status.st_mode)) {
        NoteFolderSynced();
        return 0;
    }
    char path[4096] = {};
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    if (::readlink(link.c_str(), path, sizeof path - 1) < 0) return -1;
    NoteSynced(path);
    return 0;
}

int Named(long result, const char* from, const char* to) {
    if (result == 0 && IsCutPlanned()) NoteRename(Absolute(from).c_str(), Absolute(to).c_str());
    return static_cast<int>(result);
}

}  // namespace

extern "C" {

int fsync(int file) { return Sync(file); }
int fdatasync(int file) { return Sync(file); }

int rename(const char* from, const char* to) noexcept {
    if (Fails(Point::Delete)) return Failed(EIO);
    return Named(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0U), from, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
    if (Fails(Point::Delete)) return Failed(EIO);
    return Named(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags), from, to);
}

int link(const char* from, const char* to) noexcept {
    if (Fails(Point::Delete)) return Failed(EIO);
    return Named(::syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0), from, to);
}

}  // extern "C"
