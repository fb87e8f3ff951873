// A value as the server takes it in binary form: its length and its bytes.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "engines/postgres/ServerType.h"
#include "kpTables/Currency.h"
#include "kpTables/Date.h"
#include "sql/Type.h"

namespace kpTables::engines::postgres {

/// The type under the domain of a column.
ServerType ElementOf(sql::Type type) noexcept;

/// Writes a whole number in network order.
template <class Whole>
void WriteWhole(char* bytes, Whole value) noexcept {
    const auto bits = static_cast<std::make_unsigned_t<Whole>>(value);
    constexpr unsigned kByte = 8;
    for (unsigned i = 0; i < sizeof(Whole); ++i)
        bytes[i] = static_cast<char>(bits >> ((sizeof(Whole) - 1 - i) * kByte) & 0xFFU);
}

template <class Whole>
void AppendWhole(std::string& bytes, Whole value) {
    std::array<char, sizeof(Whole)> written;
    WriteWhole(written.data(), value);
    bytes.append(written.data(), written.size());
}

/// A ValueSink that appends the one value it is given; the parameter's number does not matter. A value that the element
/// cannot hold is a DatabaseError, and nothing is appended.
class BinaryCell {
public:
    BinaryCell(ServerType element, std::string& bytes) noexcept : element_(element), bytes_(bytes) {}

    void BindNull(int parameter);
    void BindInteger(int parameter, std::int64_t value);
    void BindReal(int parameter, double value);
    void BindBoolean(int parameter, bool value) { BindInteger(parameter, value ? -1 : 0); }
    void BindCurrency(int parameter, Currency value) { BindInteger(parameter, value.Scaled()); }
    void BindCurrencyBound(int parameter, double scaled) { BindReal(parameter, scaled); }
    void BindDate(int parameter, Date value);
    void BindText(int parameter, std::string_view text);
    void BindTextCopy(int parameter, std::string_view text) { BindText(parameter, text); }

private:
    template <class Whole>
    void Put(Whole value);

    ServerType element_;
    std::string& bytes_;
};

}  // namespace kpTables::engines::postgres
