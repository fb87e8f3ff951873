// What a disk holds when the power fails: what was synced, and whatever part of the rest.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kpTables::faults {

// The file system tells what it is asked for, before it is done. Only a run whose plan is a power cut keeps a record.

void NoteOpened(const std::string& path);
void NoteWrite(const std::string& path, std::int64_t offset, std::string_view bytes);
void NoteTruncate(const std::string& path, std::int64_t size);
/// A removed name comes back unless its folder was synced.
void NoteRemove(const std::string& path, bool folderSynced);
/// Both names; durable at once: what is tested is that the file's contents were synced before.
void NoteRename(const std::string& from, const std::string& to);
/// After the sync has succeeded.
void NoteSynced(const std::string& path);

/// Leaves on the disk what the plan's seed says, and ends the process.
[[noreturn]] void CutPower();

}  // namespace kpTables::faults
