#include "kpTables/bookkeeping/DidYouMean.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "bookkeeping/Names.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

constexpr std::size_t kMostNamed = 3;

/// The characters of a text, in lower case.
std::vector<std::string> CharactersOf(std::string_view text) {
    std::vector<std::string> characters;
    for (const char byte : text) {
        const bool continues = (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
        if (continues && !characters.empty()) {
            characters.back() += byte;
        } else {
            characters.emplace_back(1, LowerLetter(byte));
        }
    }
    return characters;
}

/// How many characters must be added, left out, replaced or exchanged with their neighbours.
std::size_t Distance(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    std::vector<std::size_t> next(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        next[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            next[j] = std::min({row[j] + 1, next[j - 1] + 1, row[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            const bool exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (exchanged) next[j] = std::min(next[j], before[j - 2] + 1);
        }
        before = row;
        row = next;
    }
    return row.back();
}

std::vector<std::string_view> Nearest(std::string_view given, std::span<const std::string_view> names) {
    const auto characters = CharactersOf(given);
    std::size_t least = characters.size() < 2 ? 0 : std::max<std::size_t>(1, characters.size() / 3);
    std::vector<std::string_view> nearest;
    for (const std::string_view name : names) {
        const std::size_t distance = Distance(characters, CharactersOf(name));
        if (distance > least || std::ranges::find(nearest, name) != nearest.end()) continue;
        if (distance < least) nearest.clear();
        least = distance;
        nearest.push_back(name);
    }
    return nearest;
}

/// The names that contain the given one, or are a part of it. A single byte is in too many of them.
std::vector<std::string_view> Containing(std::string_view given, std::span<const std::string_view> names) {
    std::vector<std::string_view> found;
    if (given.size() < 2) return found;
    for (const std::string_view name : names) {
        const bool isNear = name.size() > 1 && (name.find(given) != name.npos || given.find(name) != given.npos);
        if (isNear && std::ranges::find(found, name) == found.end()) found.push_back(name);
    }
    return found;
}

}  // namespace

std::string DidYouMean(std::string_view given, std::span<const std::string_view> names) {
    auto meant = Nearest(given, names);
    if (meant.empty()) meant = Containing(given, names);
    if (meant.empty() || meant.size() > kMostNamed) return {};
    if (meant.size() == 1) return Message("; did you mean {1}?", meant[0]);
    if (meant.size() == 2) return Message("; did you mean {1} or {2}?", meant[0], meant[1]);
    return Message("; did you mean {1}, {2} or {3}?", meant[0], meant[1], meant[2]);
}

std::string DidYouMean(std::string_view given, std::span<const std::string> names) {
    return DidYouMean(given, std::vector<std::string_view>(names.begin(), names.end()));
}

}  // namespace kpTables::bookkeeping
