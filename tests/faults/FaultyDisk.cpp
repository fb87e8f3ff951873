#include "faults/FaultyDisk.h"

#include <sqlite3.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

#include "faults/Plan.h"
#include "faults/PowerCut.h"

namespace kpTables::faults {

namespace {

// A file of the real file system follows directly in memory.
struct FaultyFile {
    sqlite3_file base;
    const char* path;  ///< nullptr for a temporary file
    bool recorded;     ///< its contents matter after a power cut
};

sqlite3_vfs* realDisk = nullptr;
sqlite3_vfs faultyDisk{};

FaultyFile& Faulty(sqlite3_file* file) { return *reinterpret_cast<FaultyFile*>(file); }
sqlite3_file* Real(sqlite3_file* file) {
    return reinterpret_cast<sqlite3_file*>(reinterpret_cast<char*>(file) + sizeof(FaultyFile));
}
int CodeOf(int usual) { return Armed().kind && Armed().kind->code != SQLITE_IOERR ? Armed().kind->code : usual; }

int Close(sqlite3_file* file) { return Real(file)->pMethods->xClose(Real(file)); }

int Read(sqlite3_file* file, void* bytes, int count, sqlite3_int64 offset) {
    if (Fails(Point::Read)) return CodeOf(SQLITE_IOERR_READ);
    return Real(file)->pMethods->xRead(Real(file), bytes, count, offset);
}

/// A failed write may have written its beginning.
void WriteTorn(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
    const int written = static_cast<int>(Random(Armed().seed).Below(static_cast<std::uint64_t>(count)));
    if (written > 0) Real(file)->pMethods->xWrite(Real(file), bytes, written, offset);
}

int Write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
    const FaultyFile& self = Faulty(file);
    sqlite3_int64 size = 0;
    Real(file)->pMethods->xFileSize(Real(file), &size);
    if (self.recorded) NoteWrite(self.path, offset, {static_cast<const char*>(bytes), static_cast<std::size_t>(count)});
    if (offset + count > size && Fails(Point::Grow)) return CodeOf(SQLITE_FULL);
    if (Fails(Point::Write)) {
        WriteTorn(file, bytes, count, offset);
        return CodeOf(SQLITE_IOERR_WRITE);
    }
    return Real(file)->pMethods->xWrite(Real(file), bytes, count, offset);
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
    const FaultyFile& self = Faulty(file);
    if (self.recorded) NoteTruncate(self.path, size);
    if (Fails(Point::Truncate)) return CodeOf(SQLITE_IOERR_TRUNCATE);
    return Real(file)->pMethods->xTruncate(Real(file), size);
}

int Sync(sqlite3_file* file, int flags) {
    if (Fails(Point::Sync)) return CodeOf(SQLITE_IOERR_FSYNC);
    const FaultyFile& self = Faulty(file);
    // The files are kept in memory, where there is nothing to wait for.
    (void)flags;
    if (self.recorded) NoteSynced(self.path);
    return SQLITE_OK;
}

int FileSize(sqlite3_file* file, sqlite3_int64* size) {
    if (Fails(Point::Size)) return CodeOf(SQLITE_IOERR_FSTAT);
    return Real(file)->pMethods->xFileSize(Real(file), size);
}

int Lock(sqlite3_file* file, int level) {
    if (Fails(Point::Lock)) return CodeOf(SQLITE_IOERR_LOCK);
    return Real(file)->pMethods->xLock(Real(file), level);
}

int Unlock(sqlite3_file* file, int level) { return Real(file)->pMethods->xUnlock(Real(file), level); }

int CheckReservedLock(sqlite3_file* file, int* reserved) {
    return Real(file)->pMethods->xCheckReservedLock(Real(file), reserved);
}

int FileControl(sqlite3_file* file, int operation, void* argument) {
    return Real(file)->pMethods->xFileControl(Real(file), operation, argument);
}

int SectorSize(sqlite3_file* file) { return Real(file)->pMethods->xSectorSize(Real(file)); }

int DeviceCharacteristics(sqlite3_file* file) { return Real(file)->pMethods->xDeviceCharacteristics(Real(file)); }

int ShmMap(sqlite3_file* file, int region, int size, int extend, void volatile** memory) {
    if (Fails(Point::SharedMemory)) {
        *memory = nullptr;
        return CodeOf(SQLITE_IOERR_SHMMAP);
    }
    return Real(file)->pMethods->xShmMap(Real(file), region, size, extend, memory);
}

int ShmLock(sqlite3_file* file, int offset, int count, int flags) {
    if ((flags & SQLITE_SHM_LOCK) != 0 && Fails(Point::SharedMemory)) return CodeOf(SQLITE_IOERR_SHMLOCK);
    return Real(file)->pMethods->xShmLock(Real(file), offset, count, flags);
}

void ShmBarrier(sqlite3_file* file) { Real(file)->pMethods->xShmBarrier(Real(file)); }

int ShmUnmap(sqlite3_file* file, int remove) { return Real(file)->pMethods->xShmUnmap(Real(file), remove); }

constexpr sqlite3_io_methods kMethods = {2,
                                         Close,
                                         Read,
                                         Write,
                                         Truncate,
                                         Sync,
                                         FileSize,
                                         Lock,
                                         Unlock,
                                         CheckReservedLock,
                                         FileControl,
                                         SectorSize,
                                         DeviceCharacteristics,
                                         ShmMap,
                                         ShmLock,
                                         ShmBarrier,
                                         ShmUnmap,
                                         nullptr,
                                         nullptr};

int Open(sqlite3_vfs*, const char* path, sqlite3_file* file, int flags, int* outFlags) {
    FaultyFile& self = Faulty(file);
    self.base.pMethods = nullptr;
    self.path = path;
    constexpr int kKept = SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_WAL | SQLITE_OPEN_MAIN_JOURNAL;
    self.recorded = path && (flags & kKept) != 0;
    if (Fails(Point::Open)) return CodeOf(SQLITE_CANTOPEN);
    if (self.recorded && (flags & SQLITE_OPEN_READWRITE) != 0) NoteOpened(path);
    const int code = realDisk->xOpen(realDisk, path, Real(file), flags, outFlags);
    if (Real(file)->pMethods) self.base.pMethods = &kMethods;
    return code;
}

int Delete(sqlite3_vfs*, const char* path, int syncFolder) {
    NoteRemove(path, false);
    if (Fails(Point::Delete)) return CodeOf(SQLITE_IOERR_DELETE);
    const int code = realDisk->xDelete(realDisk, path, 0);
    if (syncFolder != 0 && code == SQLITE_OK) NoteRemove(path, true);
    return code;
}

/// Waiting takes no time: a book that stays busy is found so at once.
int Sleep(sqlite3_vfs*, int microseconds) { return microseconds; }

}  // namespace

void InstallFaultyDisk() {
    realDisk = sqlite3_vfs_find("unix");
    if (!realDisk) throw std::runtime_error("no file system named unix");
    faultyDisk = *realDisk;
    faultyDisk.pNext = nullptr;
    faultyDisk.zName = "faulty";
    faultyDisk.szOsFile = static_cast<int>(sizeof(FaultyFile)) + realDisk->szOsFile;
    faultyDisk.xOpen = Open;
    faultyDisk.xDelete = Delete;
    faultyDisk.xSleep = Sleep;
    constexpr int kDefault = 1;
    if (sqlite3_vfs_register(&faultyDisk, kDefault) != SQLITE_OK) throw std::runtime_error("cannot be registered");
}

}  // namespace kpTables::faults
