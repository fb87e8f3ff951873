// The messages of the library and of its host, in the user's language.
//
// Every message stands in the code in English, whole, with numbered gaps for what is known only when it is made:
//     Message("unknown column '{1}' in table '{2}'", column, table)
// A host that sets a translator has them in another language: its catalogue answers the English text with another one,
// and the gaps are filled after that, in whatever order the other language has them.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace kpTables {

/// Answers a text in the user's language, or one of its arguments where it knows none better; what it answers stays
/// valid for good. many: the form of the text for several, count: of how many; null and 0 where nothing is counted.
/// Called from any thread.
using Translator = const char* (*)(const char* one, const char* many, std::uint64_t count);

/// Sets the translator of the whole program; null, as at the start: the texts stay English. A host sets it once, before
/// it makes any other call.
void SetTranslator(Translator translator) noexcept;

/// The text in the user's language, its gaps unfilled.
const char* Translated(const char* text);

/// Marks a text of a table that is translated later, by Translated, for the extraction of messages.
constexpr const char* Translatable(const char* text) noexcept { return text; }

/// A message's English text, with the gaps {1} to {kGaps}, each at least once; checked when it is compiled.
template <std::size_t kGaps>
class MessageText {
public:
    consteval MessageText(const char* text) : text_(text) {
        bool seen[kGaps + 1]{};
        for (std::string_view rest = text; rest.size() > 2; rest.remove_prefix(1)) {
            if (rest[0] != '{' || rest[1] < '1' || rest[1] > '9' || rest[2] != '}') continue;
            const std::size_t gap = static_cast<std::size_t>(rest[1] - '0');
            if (gap > kGaps) throw "a gap without a value";
            seen[gap] = true;
        }
        for (std::size_t gap = 1; gap <= kGaps; ++gap) {
            if (!seen[gap]) throw "a value without a gap";
        }
    }
    const char* Text() const noexcept { return text_; }

private:
    const char* text_;
};

/// What fills a gap: a text or a whole number.
class GapValue {
public:
    template <class Text>
    requires std::convertible_to<const Text&, std::string_view> GapValue(const Text& text) : text_(text) {}
    template <std::integral Number>
    GapValue(Number number) : digits_(std::to_string(number)), isNumber_(true) {}
    std::string_view Text() const noexcept { return isNumber_ ? std::string_view(digits_) : text_; }

private:
    std::string_view text_;
    std::string digits_;
    bool isNumber_ = false;
};

/// The text with its gaps filled by the values, as it stands: not translated.
std::string FillGaps(std::string_view text, std::span<const GapValue> values);
/// The text in the user's language, filled. one, many, count: see CountedMessage.
std::string MakeMessage(const char* one, const char* many, std::uint64_t count, std::span<const GapValue> values);

/// What the system says of an error: of errno, or of a code of the standard library.
std::string SystemMessage(int error);
std::string SystemMessage(const std::error_code& error);

/// A message in the user's language.
template <class... Values>
std::string Message(std::type_identity_t<MessageText<sizeof...(Values)>> text, const Values&... values) {
    if constexpr (sizeof...(Values) == 0) {
        return Translated(text.Text());
    } else {
        const GapValue filling[] = {values...};
        return MakeMessage(text.Text(), nullptr, 0, filling);
    }
}

/// A message that counts something: {1} is the count, further gaps are the values.
template <class... Values>
std::string CountedMessage(std::int64_t count, std::type_identity_t<MessageText<sizeof...(Values) + 1>> one,
                           std::type_identity_t<MessageText<sizeof...(Values) + 1>> many, const Values&... values) {
    const GapValue filling[] = {count, values...};
    const std::uint64_t size = count < 0 ? 0 - static_cast<std::uint64_t>(count) : static_cast<std::uint64_t>(count);
    return MakeMessage(one.Text(), many.Text(), size, filling);
}

}  // namespace kpTables
