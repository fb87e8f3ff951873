#include "kpbook/input/Manifest.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/input/InputFile.h"
#include "kpbook/input/JsonInput.h"
#include "kpbook/input/WholeFile.h"
#include "text/Path.h"

namespace kpTables::kpbook::input {

namespace {

namespace fs = std::filesystem;

const Json& Member(const Json& object, const char* key) {
    if (object.is_object() && object.contains(key)) return object[key];
    Raise(ErrorNumber::InvalidCall, Message("\"{1}\" is missing in {2}", key, Shown(object)));
}

std::vector<ManifestEntry> ReadManifest(const std::string& text) {
    std::vector<ManifestEntry> entries;
    const Json manifest = ParseJson(text);
    for (const Json& table : Member(manifest, "tables")) {
        ManifestEntry entry{TextOf(Member(table, "table"), "table"), TextOf(Member(table, "file"), "file"), {}};
        const Json& rows = Member(table, "rows");
        if (!rows.is_number_integer())
            Raise(ErrorNumber::InvalidCall, Message("\"rows\" takes a number, not {1}", Shown(rows)));
        if (text::PathOf(entry.file).filename().string() != entry.file) {
            Raise(ErrorNumber::InvalidCall,
                  Message("\"file\" takes the name of a file in the folder, not {1}", entry.file));
        }
        entry.rows = rows.get<std::int64_t>();
        entries.push_back(std::move(entry));
    }
    return entries;
}

std::vector<ManifestEntry> CsvFilesOf(const std::string& folder) {
    std::vector<ManifestEntry> entries;
    std::error_code error;
    for (fs::directory_iterator file(text::PathOf(folder), error), end; !error && file != end; file.increment(error)) {
        if (file->path().extension() != ".csv") continue;
        entries.push_back({file->path().stem().string(), file->path().filename().string(), {}});
    }
    if (error) throw CommandError(Message("{1}: cannot be read: {2}", folder, SystemMessage(error)));
    std::ranges::sort(entries, {}, &ManifestEntry::file);
    return entries;
}

}  // namespace

std::vector<ManifestEntry> ReadFolder(const std::string& folder) {
    const std::string path = folder + "/" + kManifestName;
    std::vector<ManifestEntry> entries;
    if (std::error_code error; fs::exists(text::PathOf(path), error)) {
        try {
            InputFile file(path);
            entries =
                ReadManifest(WholeOf([&file](char* buffer, std::size_t size) { return file.Read(buffer, size); }));
        } catch (const Error& error) {
            throw CommandError(path + ": " + error.Description());
        }
    } else {
        entries = CsvFilesOf(folder);
    }
    if (entries.empty()) throw CommandError(Message("{1}: holds no tables (NAME.csv)", folder));
    return entries;
}

}  // namespace kpTables::kpbook::input
