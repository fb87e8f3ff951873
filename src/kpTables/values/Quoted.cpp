#include "kpTables/Quoted.h"

#include <algorithm>

namespace kpTables {

namespace {

constexpr char kQuote = '\'';

}  // namespace

std::string Quoted(std::string_view text) {
    std::string doubled;
    for (const char c : text) doubled.append(c == kQuote ? 2 : 1, c);
    return doubled;
}

bool HasLoneQuote(std::string_view text) {
    for (auto at = text.find(kQuote); at != text.npos; at = text.find(kQuote, at)) {
        const auto end = std::min(text.find_first_not_of(kQuote, at), text.size());
        if ((end - at) % 2 != 0) return true;
        at = end;
    }
    return false;
}

}  // namespace kpTables
