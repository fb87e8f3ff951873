// The values of a statement's parameters, as the server takes them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Currency.h"
#include "kpTables/Date.h"

namespace kpTables::engines::postgres {

/// A ValueSink. Texts are sent as their bytes, all else in the form in which it is written.
class Parameters {
public:
    void BindNull(int parameter);
    void BindInteger(int parameter, std::int64_t value);
    void BindReal(int parameter, double value);
    void BindBoolean(int parameter, bool value) { BindInteger(parameter, value ? -1 : 0); }
    void BindCurrency(int parameter, Currency value) { BindInteger(parameter, value.Scaled()); }
    void BindCurrencyBound(int parameter, double scaled) { BindReal(parameter, scaled); }
    void BindDate(int parameter, Date value);
    void BindText(int parameter, std::string_view text);
    /// A value in binary form.
    void BindBytes(int parameter, std::string bytes);
    void BindTextCopy(int parameter, std::string_view text) { BindText(parameter, text); }

    int Count() const noexcept { return static_cast<int>(values_.size()); }
    // The arrays that libpq reads; valid until the next Bind.
    const char* const* Values() const;
    const int* Lengths() const noexcept { return lengths_.data(); }
    const int* Formats() const noexcept { return formats_.data(); }

private:
    std::string& Place(int parameter, bool binary);

    std::vector<std::string> values_;
    std::vector<bool> nulls_;
    std::vector<int> lengths_;
    std::vector<int> formats_;
    mutable std::vector<const char*> pointers_;
};

}  // namespace kpTables::engines::postgres
