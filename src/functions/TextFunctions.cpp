// Functions that extract and build text.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include "functions/Bodies.h"
#include "functions/Fault.h"
#include "functions/TextLength.h"
#include "text/CaseMapping.h"
#include "text/CodePage936.h"
#include "text/Utf8.h"

namespace kpTables::functions {

namespace {

/// A longer text is an error, so that it cannot exhaust memory.
constexpr std::int32_t kLongestMadeText = 10'000'000;

std::size_t Length(const Arguments& a, int index) {
    const std::int32_t length = a.Whole(index);
    if (length < 0) Raise(FaultNumber::InvalidCall);
    return static_cast<std::size_t>(length);
}

std::size_t MadeLength(const Arguments& a, int index) {
    const std::size_t length = Length(a, index);
    if (length > kLongestMadeText) Raise(FaultNumber::Overflow);
    return length;
}

}  // namespace

void Left(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    answer.Part(text.substr(0, text::OffsetOfCharacter(text, Length(a, 1))));
}

void Right(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    const std::size_t count = text::CountCharacters(text);
    const std::size_t wanted = Length(a, 1);
    answer.Part(wanted >= count ? text : text.substr(text::OffsetOfCharacter(text, count - wanted)));
}

void Mid(const Arguments& a, Answer& answer) {
    const std::size_t start = Length(a, 1);
    if (start == 0) Raise(FaultNumber::InvalidCall);
    const std::string_view rest = a.Text(0).substr(text::OffsetOfCharacter(a.Text(0), start - 1));
    answer.Part(a.Count() > 2 ? rest.substr(0, text::OffsetOfCharacter(rest, Length(a, 2))) : rest);
}

/// As the server's: what lies before the first character counts, but is empty.
void Substring(const Arguments& a, Answer& answer) {
    const std::int64_t start = a.Whole(1);
    const std::int64_t end = start + static_cast<std::int64_t>(Length(a, 2));
    const std::string_view text = a.Text(0);
    const auto first = static_cast<std::size_t>(std::max<std::int64_t>(start, 1) - 1);
    const auto last = static_cast<std::size_t>(std::max<std::int64_t>(end, 1) - 1);
    if (last <= first) return answer.Part("");
    const std::string_view rest = text.substr(text::OffsetOfCharacter(text, first));
    answer.Part(rest.substr(0, text::OffsetOfCharacter(rest, last - first)));
}

/// Stuff(text, start, count, with): Null where there is no such start.
void Stuff(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    const std::int32_t start = a.Whole(1);
    const std::int32_t count = a.Whole(2);
    if (start < 1 || count < 0 || static_cast<std::size_t>(start) > text::CountCharacters(text)) return;
    const std::size_t at = text::OffsetOfCharacter(text, static_cast<std::size_t>(start - 1));
    const std::string_view rest = text.substr(at);
    std::string out(text.substr(0, at));
    out.append(a.Text(3)).append(rest.substr(text::OffsetOfCharacter(rest, static_cast<std::size_t>(count))));
    answer.Text(std::move(out));
}

/// Null for a negative count.
void Replicate(const Arguments& a, Answer& answer) {
    const std::int32_t count = a.Whole(1);
    if (count < 0) return;
    const std::string_view text = a.Text(0);
    if (count > kLongestMadeText || text.size() * static_cast<std::size_t>(count) > kLongestMadeText)
        Raise(FaultNumber::Overflow);
    std::string out;
    for (std::int32_t i = 0; i < count; ++i) out += text;
    answer.Text(std::move(out));
}

/// Every word with a capital first letter.
void Proper(const Arguments& a, Answer& answer) {
    const std::string lower = text::LowerCase(a.Text(0));
    std::string out;
    bool begins = true;
    for (std::size_t at = 0; at < lower.size();) {
        const std::string_view character = std::string_view(lower).substr(at, text::CharacterSize(lower, at));
        out += begins ? text::UpperCase(character) : std::string(character);
        begins = character == " " || character == "\t" || character == "\n" || character == "\r";
        at += character.size();
    }
    answer.Text(std::move(out));
}

void Unicode(const Arguments& a, Answer& answer) {
    if (a.Text(0).empty()) return;
    answer.Whole(text::DecodeUtf8(a.Text(0)).character);
}

void NChar(const Arguments& a, Answer& answer) {
    const std::int32_t code = a.Whole(0);
    constexpr std::int32_t kLast = 0x10FFFF;
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < 1 || code > kLast || surrogate) Raise(FaultNumber::InvalidCall);
    std::string text;
    text::AppendCharacter(text, static_cast<char32_t>(code));
    answer.Text(std::move(text));
}

void Char(const Arguments& a, Answer& answer) {
    const std::size_t wanted = MadeLength(a, 1);
    const std::string_view text = a.Text(0);
    const std::size_t count = text::CountCharacters(text);
    if (count >= wanted) return answer.Part(text.substr(0, text::OffsetOfCharacter(text, wanted)));
    answer.Text(std::string(text).append(wanted - count, ' '));
}

void Space(const Arguments& a, Answer& answer) { answer.Text(std::string(MadeLength(a, 0), ' ')); }

void String(const Arguments& a, Answer& answer) {
    const std::size_t count = MadeLength(a, 0);
    const std::string_view text = a.Text(1);
    if (text.empty()) Raise(FaultNumber::InvalidCall);
    const std::string_view character = text.substr(0, text::CharacterSize(text, 0));
    std::string out;
    out.reserve(count * character.size());
    for (std::size_t i = 0; i < count; ++i) out += character;
    answer.Text(std::move(out));
}

void Upper(const Arguments& a, Answer& answer) { answer.Text(text::UpperCase(a.Text(0))); }
void Lower(const Arguments& a, Answer& answer) { answer.Text(text::LowerCase(a.Text(0))); }

void Reverse(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    std::string out(text.size(), ' ');
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t size = text::CharacterSize(text, at);
        text.copy(out.data() + out.size() - at - size, size, at);
        at += size;
    }
    answer.Text(std::move(out));
}

void Fit(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    if (const auto complaint = LengthComplaint(text, a.Whole(1), a.Text(2))) {
        throw Fault(FaultNumber::Overflow, *complaint);
    }
    answer.Part(text);
}

void Join(const Arguments& a, Answer& answer) {
    if (a.IsNull(0) && a.IsNull(1)) return;
    const std::string_view left = a.Text(0);
    const std::string_view right = a.Text(1);
    std::string joined;
    joined.reserve(left.size() + right.size());
    joined.append(left).append(right);
    answer.Text(std::move(joined));
}

void Asc(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    if (text.empty()) Raise(FaultNumber::InvalidCall);
    answer.Whole(static_cast<std::int16_t>(text::CodeOf936(text::DecodeUtf8(text).character)));
}

void Chr(const Arguments& a, Answer& answer) {
    const std::int32_t code = a.Whole(0);
    if (code < std::numeric_limits<std::int16_t>::min() || code > std::numeric_limits<std::uint16_t>::max()) {
        Raise(FaultNumber::InvalidCall);
    }
    std::string text;
    text::AppendCharacter(text, text::CharacterOf936(static_cast<std::uint16_t>(code)));
    answer.Text(std::move(text));
}

}  // namespace kpTables::functions
