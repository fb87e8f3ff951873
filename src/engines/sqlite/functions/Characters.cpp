#include "Characters.h"

#include "kpTables/Error.h"
#include "text/CodePage936.h"
#include "text/Utf8.h"

namespace kpTables::sqlite {

std::int16_t AnsiCode(char32_t character) { return static_cast<std::int16_t>(text::CodeOf936(character)); }

std::string TextOfAnsiCode(std::int32_t code) {
    if (code < INT16_MIN || code > UINT16_MAX) Raise(ErrorNumber::InvalidCall);
    std::string text;
    text::AppendCharacter(text, text::CharacterOf936(static_cast<std::uint16_t>(code)));
    return text;
}

}  // namespace kpTables::sqlite
