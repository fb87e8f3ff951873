#include "Function.h"

#include <sqlite3.h>

#include <cmath>
#include <limits>

#include "../Failure.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "sql/print/sqlite/FunctionList.h"

namespace kpTables::sqlite {

namespace {

void Fail(sqlite3_context* context, std::int32_t number, const char* text) noexcept {
    sqlite3_result_error(context, text, -1);
    sqlite3_result_error_code(context, FunctionFailureCode(number));
}

void CallScalar(sqlite3_context* context, int count, sqlite3_value** values) noexcept {
    const auto& function = *static_cast<const ScalarFunction*>(sqlite3_user_data(context));
    const Arguments arguments({values, static_cast<std::size_t>(count)});
    if (!function.nullToo && arguments.AnyNull()) return;
    try {
        Answer answer(context);
        function.body(arguments, answer);
    } catch (const Error& error) {
        Fail(context, error.Number(), error.what());
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    }
}

void RegisterScalar(sqlite3* database, const sql::print::sqlite::EngineFunction& listed,
                    const ScalarFunction& function) {
    const int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | (listed.deterministic ? SQLITE_DETERMINISTIC : 0);
    const std::string name(listed.name);
    // SQLite hands the pointer back as it is. NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
    auto* const handed = const_cast<ScalarFunction*>(&function);
    for (int count = listed.minimumArguments; count <= listed.maximumArguments; ++count) {
        Check(database, sqlite3_create_function_v2(database, name.c_str(), count, flags, handed, CallScalar, nullptr,
                                                   nullptr, nullptr));
    }
}

const ScalarFunction* FindScalar(std::string_view name) noexcept {
    for (const auto table : {TextFunctions(), SearchFunctions(), DateFunctions(), DateIntervalFunctions(),
                             NumberFunctions(), ConversionFunctions()}) {
        for (const ScalarFunction& function : table) {
            if (function.name == name) return &function;
        }
    }
    return nullptr;
}

}  // namespace

void RaiseMismatch(std::string_view text, std::string_view complaint) {
    std::string detail = "'";
    Raise(ErrorNumber::TypeMismatch, detail.append(text).append("' ").append(complaint));
}

bool Arguments::AnyNull() const noexcept {
    for (sqlite3_value* value : values_) {
        if (sqlite3_value_type(value) == SQLITE_NULL) return true;
    }
    return false;
}

bool Arguments::IsNull(int index) const noexcept {
    return sqlite3_value_type(values_[static_cast<std::size_t>(index)]) == SQLITE_NULL;
}

bool Arguments::IsText(int index) const noexcept {
    return sqlite3_value_type(values_[static_cast<std::size_t>(index)]) == SQLITE_TEXT;
}

bool Arguments::IsWhole(int index) const noexcept {
    return sqlite3_value_type(values_[static_cast<std::size_t>(index)]) == SQLITE_INTEGER;
}

std::string_view Arguments::Text(int index) const noexcept {
    sqlite3_value* value = values_[static_cast<std::size_t>(index)];
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return text ? std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value))) : std::string_view();
}

double Arguments::Number(int index) const {
    if (!IsText(index)) return sqlite3_value_double(values_[static_cast<std::size_t>(index)]);
    const auto number = ParseNumber(Text(index));
    if (!number) RaiseMismatch(Text(index), "is no number");
    return *number;
}

std::int32_t Arguments::Whole(int index) const {
    const double number = std::nearbyint(Number(index));
    if (!(number >= std::numeric_limits<std::int32_t>::min() && number <= std::numeric_limits<std::int32_t>::max())) {
        Raise(ErrorNumber::Overflow);
    }
    return static_cast<std::int32_t>(number);
}

std::int64_t Arguments::Stored(int index) const noexcept {
    return sqlite3_value_int64(values_[static_cast<std::size_t>(index)]);
}

kpTables::Date Arguments::Date(int index, double dayZero) const {
    if (!IsText(index)) return kpTables::Date::FromSerial(Number(index) + dayZero);
    const std::string_view text = Text(index);
    if (const auto date = kpTables::Date::ParseIso(text)) return *date;
    if (const auto date = kpTables::Date::Parse(text)) return *date;
    const auto days = ParseNumber(text);
    if (!days) RaiseMismatch(text, "is no date");
    return kpTables::Date::FromSerial(*days + dayZero);
}

void Answer::Whole(std::int64_t value) noexcept { sqlite3_result_int64(context_, value); }

void Answer::Number(double value) {
    if (!std::isfinite(value)) Raise(ErrorNumber::Overflow);
    sqlite3_result_double(context_, value);
}

void Answer::Text(std::string_view text) noexcept {
    const char* data = text.empty() ? "" : text.data();
    sqlite3_result_text64(context_, data, text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void Answer::Date(kpTables::Date date) { Text(date.ToIso()); }

void RegisterFunctions(sqlite3* database) {
    RegisterFirstAndLast(database);
    RegisterSpread(database);
    for (const sql::print::sqlite::EngineFunction& listed : sql::print::sqlite::EngineFunctions()) {
        if (const ScalarFunction* function = FindScalar(listed.name)) RegisterScalar(database, listed, *function);
    }
}

}  // namespace kpTables::sqlite
