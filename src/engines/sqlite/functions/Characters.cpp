#include "Characters.h"

#include <unicode/ucnv.h>

#include <memory>

#include "kpTables/Error.h"
#include "text/Utf8.h"

namespace kpTables::sqlite {

namespace {

using text::AppendCharacter;
using text::kLastAscii;

struct CloseConverter {
    void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};

/// A converter keeps state, so each call has its own.
std::unique_ptr<UConverter, CloseConverter> CodePage936() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UConverter, CloseConverter> converter(ucnv_open("windows-936", &status));
    if (U_FAILURE(status)) Raise(ErrorNumber::InvalidCall, "code page 936 is not installed");
    return converter;
}

}  // namespace

std::int16_t AnsiCode(char32_t character) {
    if (character <= kLastAscii) return static_cast<std::int16_t>(character);
    const auto converter = CodePage936();
    UChar units[U16_MAX_LENGTH];
    int count = 0;
    U16_APPEND_UNSAFE(units, count, static_cast<UChar32>(character));
    char bytes[8];
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setSubstChars(converter.get(), "?", 1, &status);
    const int size = ucnv_fromUChars(converter.get(), bytes, sizeof bytes, units, count, &status);
    const auto first = static_cast<unsigned char>(bytes[0]);
    if (size < 2) return static_cast<std::int16_t>(first);
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(first << 8 | static_cast<unsigned char>(bytes[1])));
}

std::string TextOfAnsiCode(std::int32_t code) {
    constexpr int kByte = 0x100;
    if (code < INT16_MIN || code > UINT16_MAX) Raise(ErrorNumber::InvalidCall);
    const auto unsignedCode = static_cast<std::uint16_t>(code);
    if (unsignedCode <= kLastAscii) return std::string(1, static_cast<char>(unsignedCode));
    const char bytes[] = {static_cast<char>(unsignedCode / kByte), static_cast<char>(unsignedCode % kByte)};
    const bool oneByte = unsignedCode < kByte;
    const auto converter = CodePage936();
    UErrorCode status = U_ZERO_ERROR;
    const char* source = oneByte ? bytes + 1 : bytes;
    const UChar32 c = ucnv_getNextUChar(converter.get(), &source, bytes + sizeof bytes, &status);
    std::string text;
    if (U_SUCCESS(status)) AppendCharacter(text, static_cast<char32_t>(c));
    return text;
}

}  // namespace kpTables::sqlite
