// Functions that look for text in text.
#include <algorithm>
#include <string>
#include <utility>

#include "functions/Bodies.h"
#include "functions/Fault.h"
#include "kpTables/text/Message.h"
#include "text/CaseMapping.h"
#include "text/Like.h"
#include "text/TextOrder.h"
#include "text/Utf8.h"

namespace kpTables::functions {

namespace {

/// In bytes.
constexpr std::size_t kLongestReplaced = 100'000'000;
/// A search takes no longer than the product of both lengths; beyond this it is an error, since nothing can end it.
constexpr double kLongestSearch = 4e9;

void RequireSearchable(std::string_view text, std::string_view find) {
    const double steps = static_cast<double>(text.size()) * static_cast<double>(find.size());
    if (steps > kLongestSearch) Raise(FaultNumber::Overflow, Message("the texts are too long to be searched"));
}

/// Position from 1 of find in text at or after the character start (from 1), 0 when it is not there.
std::int64_t PositionOf(std::string_view text, std::string_view find, std::int32_t start, bool ignoreCase) {
    RequireSearchable(text, find);
    const std::string foldedText = ignoreCase ? text::FoldCase(text) : std::string(text);
    const std::string foldedFind = ignoreCase ? text::FoldCase(find) : std::string(find);
    const auto first = static_cast<std::size_t>(start - 1);
    const std::size_t from = text::OffsetOfCharacter(foldedText, first);
    if (first > 0 && from == foldedText.size()) return 0;
    const auto at = foldedText.find(foldedFind, from);
    if (at == std::string::npos || foldedText.empty()) return 0;
    return static_cast<std::int64_t>(text::CountCharacters(std::string_view(foldedText).substr(0, at))) + 1;
}

bool IgnoresCase(const Arguments& a, int index) { return a.Count() <= index || a.Whole(index) != 0; }

/// The length of the folded find at the text's start; 0 when it is not there.
std::size_t MatchedSize(std::string_view text, std::u32string_view find) {
    std::size_t at = 0;
    for (const char32_t character : find) {
        if (at >= text.size() || text::FoldCase(text::NextCharacter(text, at)) != character) return 0;
    }
    return at;
}

void Match(const Arguments& a, Answer& answer, text::LikeRules rules) {
    RequireSearchable(a.Text(0), a.Text(1));
    if (a.Count() > 2) {
        rules.escape = a.Text(2);
        if (text::CountCharacters(rules.escape) != 1)
            Raise(FaultNumber::InvalidCall, Message("the sign of ESCAPE is one character"));
    }
    answer.Test(text::Like(a.Text(0), a.Text(1), rules));
}

}  // namespace

void InStr(const Arguments& a, Answer& answer) {
    const bool withStart = a.Count() > 2;
    const std::int32_t start = withStart ? a.Whole(0) : 1;
    if (start < 1) Raise(FaultNumber::InvalidCall);
    const bool ignoreCase = IgnoresCase(a, 3);
    answer.Whole(PositionOf(a.Text(withStart ? 1 : 0), a.Text(withStart ? 2 : 1), start, ignoreCase));
}

/// Without a last position, or with -1, the whole text is searched.
void InStrRev(const Arguments& a, Answer& answer) {
    const std::int32_t last = a.Count() > 2 ? a.Whole(2) : -1;
    if (last == 0 || last < -1) Raise(FaultNumber::InvalidCall);
    const bool ignoreCase = IgnoresCase(a, 3);
    RequireSearchable(a.Text(0), a.Text(1));
    const std::string text = ignoreCase ? text::FoldCase(a.Text(0)) : std::string(a.Text(0));
    const std::string find = ignoreCase ? text::FoldCase(a.Text(1)) : std::string(a.Text(1));
    const auto length = static_cast<std::int64_t>(text::CountCharacters(text));
    if (last > length || text.empty()) return answer.Whole(0);
    const std::int64_t end = last < 0 ? length : last;
    if (find.empty()) return answer.Whole(end);
    const std::string_view searched = std::string_view(text).substr(0, text::OffsetOfCharacter(text, std::size_t(end)));
    const auto at = searched.rfind(find);
    if (at == searched.npos) return answer.Whole(0);
    answer.Whole(static_cast<std::int64_t>(text::CountCharacters(searched.substr(0, at))) + 1);
}

void PatIndex(const Arguments& a, Answer& answer) {
    std::string_view pattern = a.Text(0);
    const std::string_view text = a.Text(1);
    RequireSearchable(text, pattern);
    const text::LikeRules rules{.outside = "^"};
    if (!pattern.starts_with('%')) return answer.Whole(text::Like(text, pattern, rules) ? 1 : 0);
    pattern.remove_prefix(std::min(pattern.find_first_not_of('%'), pattern.size()));
    std::int64_t position = 1;
    for (std::size_t at = 0; at < text.size(); ++position) {
        if (text::Like(text.substr(at), pattern, rules)) return answer.Whole(position);
        text::NextCharacter(text, at);
    }
    answer.Whole(0);
}

void Replace(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    RequireSearchable(text, a.Text(1));
    std::u32string find;
    for (std::size_t at = 0; at < a.Text(1).size();) find += text::FoldCase(text::NextCharacter(a.Text(1), at));
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t matched = MatchedSize(text.substr(at), find);
        const std::size_t size = matched > 0 ? matched : text::CharacterSize(text, at);
        out += matched > 0 ? a.Text(2) : text.substr(at, size);
        if (out.size() > kLongestReplaced) Raise(FaultNumber::Overflow, Message("the text would be too long"));
        at += size;
    }
    answer.Text(std::move(out));
}

void StrComp(const Arguments& a, Answer& answer) {
    const int order = IgnoresCase(a, 2) ? text::CompareTexts(a.Text(0), a.Text(1)) : a.Text(0).compare(a.Text(1));
    answer.Whole((order > 0) - (order < 0));
}

void CharIndex(const Arguments& a, Answer& answer) {
    const std::int32_t start = a.Count() > 2 ? a.Whole(2) : 1;
    answer.Whole(a.Text(0).empty() ? 0 : PositionOf(a.Text(1), a.Text(0), start < 1 ? 1 : start, true));
}

void Like(const Arguments& a, Answer& answer) { Match(a, answer, {}); }
void LikeOnServer(const Arguments& a, Answer& answer) { Match(a, answer, {.outside = "^"}); }

}  // namespace kpTables::functions
