#include "text/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace kpTables::text {

namespace {

constexpr int kDigits = 15;  // what a Double always holds exactly

char* Put(char* at, const char* text, int count) {
    std::memcpy(at, text, static_cast<std::size_t>(count));
    return at + count;
}

char* PutZeros(char* at, int count) {
    std::memset(at, '0', static_cast<std::size_t>(count));
    return at + count;
}

char* PutExponent(char* at, int exponent) {
    *at++ = 'E';
    *at++ = exponent < 0 ? '-' : '+';
    const int magnitude = exponent < 0 ? -exponent : exponent;
    if (magnitude < 10) *at++ = '0';
    return std::to_chars(at, at + 4, magnitude).ptr;
}

/// The significant digits of a positive number, at most 15 without trailing zeros, and the power of ten of the first.
void ReadDigits(double value, char (&digits)[kDigits], int& count, int& exponent) {
    char text[32];  // d.dddddddddddddde[+-]xx
    const char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, kDigits - 1).ptr;
    digits[0] = text[0];
    std::memcpy(digits + 1, text + 2, kDigits - 1);
    count = kDigits;
    while (count > 1 && digits[count - 1] == '0') --count;
    const char* sign = text + kDigits + 2;
    std::from_chars(sign + 1, end, exponent);
    if (*sign == '-') exponent = -exponent;
}

// digits are the significant ones without trailing zeros, the first one standing for 10^exponent. A number is written
// plain as long as neither side of the point needs more than 15 places.
char* PutNumber(char* at, const char* digits, int count, int exponent) {
    const int decimals = count - 1 - exponent;
    if (exponent >= kDigits || decimals > kDigits) {
        *at++ = digits[0];
        if (count > 1) {
            *at++ = '.';
            at = Put(at, digits + 1, count - 1);
        }
        return PutExponent(at, exponent);
    }
    if (exponent < 0) {
        *at++ = '0';
        *at++ = '.';
        at = PutZeros(at, -exponent - 1);
        return Put(at, digits, count);
    }
    if (decimals <= 0) {
        at = Put(at, digits, count);
        return PutZeros(at, -decimals);
    }
    at = Put(at, digits, exponent + 1);
    *at++ = '.';
    return Put(at, digits + exponent + 1, decimals);
}

}  // namespace

char* WriteWhole(char* buffer, std::int64_t value) noexcept {
    return std::to_chars(buffer, buffer + kLongestNumberText, value).ptr;
}

char* WriteNumber(char* buffer, double value) noexcept {
    if (std::isnan(value)) return Put(buffer, "-1.#IND", 7);
    if (std::isinf(value)) return value < 0 ? Put(buffer, "-1.#INF", 7) : Put(buffer, "1.#INF", 6);
    if (value == std::trunc(value) && std::fabs(value) < 1e15) {
        return WriteWhole(buffer, static_cast<std::int64_t>(value));
    }
    char digits[kDigits];
    int count = 0;
    int exponent = 0;
    ReadDigits(std::fabs(value), digits, count, exponent);
    char* at = buffer;
    if (value < 0) *at++ = '-';
    return PutNumber(at, digits, count, exponent);
}

std::string WholeText(std::int64_t value) {
    char text[kLongestNumberText];
    return {text, WriteWhole(text, value)};
}

std::string NumberText(double value) {
    char text[kLongestNumberText];
    return {text, WriteNumber(text, value)};
}

}  // namespace kpTables::text
