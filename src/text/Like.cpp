#include "text/Like.h"

#include <optional>

#include "text/Ascii.h"
#include "text/CaseMapping.h"
#include "text/Utf8.h"

namespace kpTables::text {

namespace {

/// Whether the class after the bracket at position at contains the character; at moves past the class. Nothing when the
/// bracket is never closed, which makes it a literal.
std::optional<bool> InClass(std::string_view pattern, std::size_t& at, char32_t character, std::string_view outside) {
    const auto close = pattern.find(']', at + 1);
    if (close == pattern.npos) return std::nullopt;
    std::string_view members = pattern.substr(at, close - at);
    at = close + 1;
    const bool negated = members.size() > 1 && outside.find(members[0]) != outside.npos;
    if (negated) members.remove_prefix(1);
    bool found = false;
    for (std::size_t i = 0; i < members.size();) {
        const char32_t low = FoldCase(NextCharacter(members, i));
        char32_t high = low;
        if (i + 1 < members.size() && members[i] == '-') {
            ++i;
            high = FoldCase(NextCharacter(members, i));
        }
        found = found || (character >= low && character <= high);
    }
    return found != negated;
}

/// The elements of a pattern in SQL.
struct SqlElements {
    const LikeRules& rules;

    bool IsRun(char sign) const noexcept { return sign == '%' && rules.escape != "%"; }

    static std::size_t Size(std::string_view text, std::size_t at) noexcept { return CharacterSize(text, at); }

    /// Whether one pattern element matches the text's next character; both positions move past it.
    bool MatchesOne(std::string_view text, std::size_t& textAt, std::string_view pattern,
                    std::size_t& patternAt) const {
        const char32_t character = FoldCase(NextCharacter(text, textAt));
        if (!rules.escape.empty() && pattern.substr(patternAt).starts_with(rules.escape) &&
            patternAt + rules.escape.size() < pattern.size()) {
            patternAt += rules.escape.size();
            return FoldCase(NextCharacter(pattern, patternAt)) == character;
        }
        const char32_t element = FoldCase(NextCharacter(pattern, patternAt));
        if (element == '_') return true;
        if (element == '[') {
            if (const auto in = InClass(pattern, patternAt, character, rules.outside)) return *in;
        }
        return element == character;
    }
};

/// The elements of a pattern in a criteria text, byte by byte.
struct CriteriaElements {
    static bool IsRun(char sign) noexcept { return sign == '%' || sign == '*'; }

    static std::size_t Size(std::string_view, std::size_t) noexcept { return 1; }

    static bool MatchesOne(std::string_view text, std::size_t& textAt, std::string_view pattern,
                           std::size_t& patternAt) noexcept {
        return Lower(text[textAt++]) == Lower(pattern[patternAt++]);
    }
};

/// Each wildcard takes the shortest stretch that lets the rest match, and only the last one is retried: no pattern
/// takes longer than the product of both lengths.
template <class Elements>
bool Matches(const Elements& elements, std::string_view text, std::string_view pattern) {
    std::size_t textAt = 0;
    std::size_t patternAt = 0;
    std::optional<std::size_t> behindRun;
    std::size_t retry = 0;
    while (textAt < text.size()) {
        if (patternAt < pattern.size() && elements.IsRun(pattern[patternAt])) {
            behindRun = ++patternAt;
            retry = textAt;
            continue;
        }
        if (patternAt < pattern.size() && elements.MatchesOne(text, textAt, pattern, patternAt)) continue;
        if (!behindRun) return false;
        patternAt = *behindRun;
        retry += elements.Size(text, retry);
        textAt = retry;
    }
    while (patternAt < pattern.size() && elements.IsRun(pattern[patternAt])) ++patternAt;
    return patternAt == pattern.size();
}

}  // namespace

bool Like(std::string_view text, std::string_view pattern, const LikeRules& rules) {
    return Matches(SqlElements{rules}, text, pattern);
}

bool LikeInCriteria(std::string_view text, std::string_view pattern) {
    return Matches(CriteriaElements{}, text, pattern);
}

}  // namespace kpTables::text
