// Values of one column for many rows, as the server takes an array of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engines/postgres/ServerType.h"
#include "kpTables/Currency.h"
#include "kpTables/Date.h"
#include "sql/Type.h"

namespace kpTables::engines::postgres {

/// The type under the domain of a column.
ServerType ElementOf(sql::Type type) noexcept;
/// The array's type, as a statement names it: "bigint[]".
std::string_view ArrayName(ServerType element) noexcept;

/// A ValueSink that keeps every value it is given; the parameter's number does not matter. A value that the element
/// cannot hold is a DatabaseError.
class BinaryArray {
public:
    explicit BinaryArray(ServerType element) noexcept : element_(element) {}

    void BindNull(int parameter);
    void BindInteger(int parameter, std::int64_t value);
    void BindReal(int parameter, double value);
    void BindBoolean(int parameter, bool value) { BindInteger(parameter, value ? -1 : 0); }
    void BindCurrency(int parameter, Currency value) { BindInteger(parameter, value.Scaled()); }
    void BindCurrencyBound(int parameter, double scaled) { BindReal(parameter, scaled); }
    void BindDate(int parameter, Date value);
    void BindText(int parameter, std::string_view text);
    void BindTextCopy(int parameter, std::string_view text) { BindText(parameter, text); }

    std::size_t Size() const noexcept { return starts_.size(); }
    /// Bytes held.
    std::size_t Bytes() const noexcept { return cells_.size(); }
    /// Drops all values behind so many.
    void Cut(std::size_t size) noexcept;
    /// Some of the values as an array in binary form.
    std::string Slice(std::size_t first, std::size_t count) const;

private:
    /// Begins a value of so many bytes.
    void Begin(std::int32_t bytes);
    template <class Whole>
    void Put(Whole value);

    ServerType element_;
    bool hasNulls_ = false;
    std::string cells_;
    std::vector<std::size_t> starts_;
};

}  // namespace kpTables::engines::postgres
