// What a disk holds when the power fails: what was synced, and whatever part of the rest.
#pragma once

#include <cstdint>
#include <string_view>

namespace kpTables::faults {

// The file system tells what it is asked for, before it is done. Only a run whose plan is a power cut keeps a record;
// others allocate nothing here, since it might be their allocation that is to fail.

void NoteOpened(const char* path);
void NoteWrite(const char* path, std::int64_t offset, std::string_view bytes);
void NoteTruncate(const char* path, std::int64_t size);
/// A removed name comes back unless its folder was synced.
void NoteRemove(const char* path, bool folderSynced);
/// A file's new name, which is lost unless its folder is synced.
void NoteRename(const char* from, const char* to);
/// After the sync has succeeded.
void NoteSynced(const char* path);
void NoteFolderSynced();

/// Leaves on the disk what the plan's seed says, and ends the process.
[[noreturn]] void CutPower();

}  // namespace kpTables::faults
