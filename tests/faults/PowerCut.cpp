#include "faults/PowerCut.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <vector>

#include "faults/Plan.h"

namespace kpTables::faults {

namespace {

using Contents = std::optional<std::string>;  // nothing: there is no such file

struct Change {
    enum class Kind { Write, Truncate, Remove, Create } kind;
    std::int64_t offset = 0;  // or the new size
    std::string bytes = {};
};

struct FileRecord {
    Contents durable;
    std::vector<Change> unsynced;
};

// How much of what was not synced a cut leaves.
enum class Left : std::uint64_t { Nothing, Everything, SomeChanges, SomeSectors, BeginningTorn, kCount };

constexpr std::size_t kSector = 512;

std::map<std::string, FileRecord>& Files() {
    static std::map<std::string, FileRecord> files;
    return files;
}

struct Renamed {
    std::string from;
    std::string to;
    FileRecord replaced;
};

/// The new names whose folder was not synced yet.
std::vector<Renamed>& Renames() {
    static std::vector<Renamed> renames;
    return renames;
}

/// The last new names may never have reached the disk.
void UndoRenames(std::uint64_t kept) {
    for (; Renames().size() > kept; Renames().pop_back()) {
        const Renamed& last = Renames().back();
        Files()[last.from] = Files()[last.to];
        Files()[last.to] = last.replaced;
    }
}

bool IsRecording() { return Armed().kind && Armed().kind->effect == Effect::PowerCut; }

Contents Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// The record of a file; what it holds when it is first heard of counts as durable.
FileRecord& RecordOf(const std::string& path) {
    const auto known = Files().find(path);
    if (known != Files().end()) return known->second;
    return Files().emplace(path, FileRecord{Read(path), {}}).first->second;
}

void WriteAt(Contents& contents, std::size_t offset, std::string_view bytes) {
    if (!contents) contents.emplace();
    if (contents->size() < offset + bytes.size()) contents->resize(offset + bytes.size());
    std::copy(bytes.begin(), bytes.end(), contents->begin() + static_cast<std::ptrdiff_t>(offset));
}

void Apply(Contents& contents, const Change& change) {
    switch (change.kind) {
        case Change::Kind::Write:
            WriteAt(contents, static_cast<std::size_t>(change.offset), change.bytes);
            break;
        case Change::Kind::Truncate:
            if (contents) contents->resize(static_cast<std::size_t>(change.offset));
            break;
        case Change::Kind::Remove:
            contents.reset();
            break;
        case Change::Kind::Create:
            if (!contents) contents.emplace();
            break;
    }
}

void ApplySomeSectors(Contents& contents, const Change& change, Random& random) {
    for (std::size_t at = 0; at < change.bytes.size();) {
        const std::size_t position = static_cast<std::size_t>(change.offset) + at;
        const std::size_t length = std::min(kSector - position % kSector, change.bytes.size() - at);
        if (random.Below(2) == 0) WriteAt(contents, position, std::string_view(change.bytes).substr(at, length));
        at += length;
    }
}

/// What a file holds after the cut.
Contents Remains(const FileRecord& file, Left left, Random& random) {
    Contents contents = file.durable;
    const std::size_t kept =
        left == Left::BeginningTorn ? random.Below(file.unsynced.size() + 1) : file.unsynced.size();
    for (std::size_t i = 0; i < kept; ++i) {
        const Change& change = file.unsynced[i];
        const bool isWrite = change.kind == Change::Kind::Write;
        switch (left) {
            case Left::Nothing:
                break;
            case Left::SomeChanges:
                if (random.Below(2) == 0) Apply(contents, change);
                break;
            case Left::SomeSectors:
                if (isWrite)
                    ApplySomeSectors(contents, change, random);
                else if (random.Below(2) == 0)
                    Apply(contents, change);
                break;
            default:
                if (left == Left::BeginningTorn && i + 1 == kept && isWrite) {
                    WriteAt(contents, static_cast<std::size_t>(change.offset),
                            std::string_view(change.bytes).substr(0, random.Below(change.bytes.size() + 1)));
                } else {
                    Apply(contents, change);
                }
        }
    }
    return contents;
}

}  // namespace

void NoteOpened(const char* path) {
    if (!IsRecording()) return;
    FileRecord& file = RecordOf(path);
    file.unsynced.push_back({Change::Kind::Create});
}

void NoteWrite(const char* path, std::int64_t offset, std::string_view bytes) {
    if (IsRecording()) RecordOf(path).unsynced.push_back({Change::Kind::Write, offset, std::string(bytes)});
}

void NoteTruncate(const char* path, std::int64_t size) {
    if (IsRecording()) RecordOf(path).unsynced.push_back({Change::Kind::Truncate, size});
}

void NoteRemove(const char* path, bool folderSynced) {
    if (!IsRecording()) return;
    FileRecord& file = RecordOf(path);
    if (folderSynced)
        file = {};
    else
        file.unsynced.push_back({Change::Kind::Remove});
}

void NoteRename(const char* from, const char* to) {
    if (!IsRecording()) return;
    const auto replaced = Files().find(to);
    Renames().push_back({from, to, replaced == Files().end() ? FileRecord() : replaced->second});
    const auto known = Files().find(from);
    FileRecord moved = known == Files().end() ? FileRecord() : known->second;
    // A name whose contents never reached the disk is an empty file.
    if (!moved.durable) moved.durable.emplace();
    Files()[to] = std::move(moved);
    Files()[from] = {};
}

void NoteSynced(const char* path) {
    if (!IsRecording()) return;
    // Whoever wrote it: the engine, or the program itself.
    Files()[path] = {Read(path), {}};
}

void NoteFolderSynced() { Renames().clear(); }

void CutPower() {
    Random random(Armed().seed * 1000003U + static_cast<std::uint64_t>(Armed().number));
    const auto left = static_cast<Left>(random.Below(static_cast<std::uint64_t>(Left::kCount)));
    UndoRenames(random.Below(Renames().size() + 1));
    for (const auto& [path, file] : Files()) {
        const Contents contents = Remains(file, left, random);
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
        // Locks and mappings of the ended program are gone; its index of the log never reached the disk.
        std::filesystem::remove(path + "-shm", ignored);
        if (contents) std::ofstream(path, std::ios::binary) << *contents;
    }
    ::_exit(kEnded);
}

}  // namespace kpTables::faults
