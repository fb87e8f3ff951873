// The records of a CSV text must not depend on the pieces in which it arrives (the first byte gives their size), and
// well-formed ones must read the same when they are written out again.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "kpbook/input/CsvReader.h"

namespace {

struct Record {
    std::int64_t line;
    std::vector<std::string> fields;
    std::string problem;
    bool operator==(const Record&) const = default;
};

std::vector<Record> Read(std::string_view text, std::size_t piece) {
    kpTables::kpbook::input::CsvReader reader([&](char* buffer, std::size_t size) {
        const std::size_t count = std::min({size, piece, text.size()});
        std::memcpy(buffer, text.data(), count);
        text.remove_prefix(count);
        return count;
    });
    std::vector<Record> records;
    while (reader.Next()) {
        Record record{reader.Line(), {}, reader.Problem()};
        for (std::size_t i = 0; i < reader.FieldCount(); ++i) record.fields.emplace_back(reader.Field(i));
        records.push_back(std::move(record));
    }
    return records;
}

std::string Written(const std::vector<Record>& records) {
    std::string text;
    for (const Record& record : records) {
        for (std::size_t i = 0; i < record.fields.size(); ++i) {
            text += i > 0 ? ",\"" : "\"";
            for (const char character : record.fields[i]) text.append(character == '"' ? 2 : 1, character);
            text += '"';
        }
        text += '\n';
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    constexpr std::size_t kLongestPiece = 16;
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::vector<Record> records = Read(text, text.size() + 1);
    if (Read(text, 1 + data[0] % kLongestPiece) != records) std::abort();
    if (std::ranges::any_of(records, [](const Record& record) { return !record.problem.empty(); })) return 0;
    const std::vector<Record> again = Read(Written(records), kLongestPiece);
    const auto sameFields = [](const Record& a, const Record& b) {
        return a.problem == b.problem && a.fields == b.fields;
    };
    if (!std::ranges::equal(records, again, sameFields)) std::abort();
    return 0;
}
