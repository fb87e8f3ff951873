// Functions that cut and build text.
#include <cstdint>
#include <string>

#include "../TextLength.h"
#include "Characters.h"
#include "Function.h"
#include "kpTables/Error.h"
#include "text/CaseMapping.h"
#include "text/Utf8.h"

namespace kpTables::sqlite {

namespace {

/// A text of more characters is an error rather than an exhausted memory.
constexpr std::int32_t kLongestMadeText = 10'000'000;

std::size_t Length(const Arguments& a, int index) {
    const std::int32_t length = a.Whole(index);
    if (length < 0) Raise(ErrorNumber::InvalidCall);
    return static_cast<std::size_t>(length);
}

std::size_t MadeLength(const Arguments& a, int index) {
    const std::size_t length = Length(a, index);
    if (length > kLongestMadeText) Raise(ErrorNumber::Overflow);
    return length;
}

void Left(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    answer.Text(text.substr(0, text::OffsetOfCharacter(text, Length(a, 1))));
}

void Right(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    const std::size_t count = text::CountCharacters(text);
    const std::size_t wanted = Length(a, 1);
    answer.Text(wanted >= count ? text : text.substr(text::OffsetOfCharacter(text, count - wanted)));
}

void Mid(const Arguments& a, Answer& answer) {
    const std::size_t start = Length(a, 1);
    if (start == 0) Raise(ErrorNumber::InvalidCall);
    const std::string_view rest = a.Text(0).substr(text::OffsetOfCharacter(a.Text(0), start - 1));
    answer.Text(a.Count() > 2 ? rest.substr(0, text::OffsetOfCharacter(rest, Length(a, 2))) : rest);
}

void Char(const Arguments& a, Answer& answer) {
    const std::size_t wanted = MadeLength(a, 1);
    const std::string_view text = a.Text(0);
    const std::size_t count = text::CountCharacters(text);
    if (count >= wanted) return answer.Text(text.substr(0, text::OffsetOfCharacter(text, wanted)));
    answer.Text(std::string(text).append(wanted - count, ' '));
}

void Space(const Arguments& a, Answer& answer) { answer.Text(std::string(MadeLength(a, 0), ' ')); }

void String(const Arguments& a, Answer& answer) {
    const std::size_t count = MadeLength(a, 0);
    const std::string_view text = a.Text(1);
    if (text.empty()) Raise(ErrorNumber::InvalidCall);
    const std::string_view character = text.substr(0, text::CharacterSize(text, 0));
    std::string out;
    out.reserve(count * character.size());
    for (std::size_t i = 0; i < count; ++i) out += character;
    answer.Text(out);
}

void Upper(const Arguments& a, Answer& answer) { answer.Text(text::UpperCase(a.Text(0))); }
void Lower(const Arguments& a, Answer& answer) { answer.Text(text::LowerCase(a.Text(0))); }

void Reverse(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    std::string out;
    for (std::size_t at = 0; at < text.size(); at += text::CharacterSize(text, at)) {
        out.insert(0, text.substr(at, text::CharacterSize(text, at)));
    }
    answer.Text(out);
}

void Fit(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    if (const auto complaint = LengthComplaint(text, a.Whole(1), a.Text(2))) {
        throw Error(static_cast<std::int32_t>(ErrorNumber::Overflow), *complaint);
    }
    answer.Text(text);
}

void Join(const Arguments& a, Answer& answer) {
    if (!a.IsNull(0) || !a.IsNull(1)) answer.Text(std::string(a.Text(0)).append(a.Text(1)));
}

void Asc(const Arguments& a, Answer& answer) {
    const std::string_view text = a.Text(0);
    if (text.empty()) Raise(ErrorNumber::InvalidCall);
    std::size_t at = 0;
    answer.Whole(AnsiCode(text::NextCharacter(text, at)));
}

void Chr(const Arguments& a, Answer& answer) { answer.Text(TextOfAnsiCode(a.Whole(0))); }

constexpr bool kNullToo = true;

constexpr ScalarFunction kFunctions[] = {
    {"kp_asc", Asc},
    {"kp_char", Char},
    {"kp_chr", Chr},
    {"kp_fit", Fit},
    {"kp_join", Join, kNullToo},
    {"kp_lcase", Lower},
    {"kp_left", Left},
    {"kp_mid", Mid},
    {"kp_right", Right},
    {"kp_space", Space},
    {"kp_string", String},
    {"kp_strreverse", Reverse},
    {"kp_ucase", Upper},
};

}  // namespace

std::span<const ScalarFunction> TextFunctions() noexcept { return kFunctions; }

}  // namespace kpTables::sqlite
