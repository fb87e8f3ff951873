// TRY_CAST: conversions that answer Null where CAST raises an error.
#include <algorithm>
#include <cmath>
#include <string_view>

#include "functions/Bodies.h"
#include "functions/Fault.h"
#include "functions/ServerDate.h"

namespace kpTables::functions {

namespace {

void NullForFault(const Arguments& a, Answer& answer, Body body) {
    try {
        body(a, answer);
    } catch (const Fault&) {
        answer = Answer();
    }
}

/// The server reads no text with a point or an exponent as a whole number.
bool IsWholeText(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == text.npos) return false;
    text = text.substr(first, text.find_last_not_of(' ') - first + 1);
    if (text.front() == '-' || text.front() == '+') text.remove_prefix(1);
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

void TryWhole(const Arguments& a, Answer& answer, Body body) {
    if (!a.IsText(0)) {
        const Value cut(a.Number(0) < 0 ? -std::floor(-a.Number(0)) : std::floor(a.Number(0)));
        return NullForFault(Arguments({&cut, 1}), answer, body);
    }
    if (IsWholeText(a.Text(0))) NullForFault(a, answer, body);
}

}  // namespace

void TryLong(const Arguments& a, Answer& answer) { TryWhole(a, answer, ToLong); }
void TryShort(const Arguments& a, Answer& answer) { TryWhole(a, answer, ToShort); }
void TryDouble(const Arguments& a, Answer& answer) { NullForFault(a, answer, ToDouble); }
void TryCurrency(const Arguments& a, Answer& answer) {
    if (a.IsText(0)) return NullForFault(a, answer, ToCurrency);
    const Value number(a.Number(0));
    NullForFault(Arguments({&number, 1}), answer, ToCurrency);
}
void TryBoolean(const Arguments& a, Answer& answer) { NullForFault(a, answer, ToBoolean); }
void TryDate(const Arguments& a, Answer& answer) { NullForFault(a, answer, ToServerDate); }

}  // namespace kpTables::functions
