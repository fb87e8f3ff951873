#include "engines/sqlite/Functions.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <new>
#include <string>

#include "engines/sqlite/Failure.h"
#include "functions/Fault.h"
#include "functions/FunctionTable.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::sqlite {

namespace {

using functions::Value;

/// Raises bad_alloc where SQLite has to copy a text and cannot.
Value ValueOf(sqlite3_value* value) {
    switch (sqlite3_value_type(value)) {
        case SQLITE_NULL:
            return {};
        case SQLITE_INTEGER:
            return Value(std::int64_t{sqlite3_value_int64(value)});
        case SQLITE_FLOAT:
            return Value(sqlite3_value_double(value));
        default:
            break;
    }
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (!text) throw std::bad_alloc();
    return Value(std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value))));
}

void SetResult(sqlite3_context* context, const Value& value) noexcept {
    switch (value.Type()) {
        case Value::Kind::Null:
            return sqlite3_result_null(context);
        case Value::Kind::Whole:
            return sqlite3_result_int64(context, value.Whole());
        case Value::Kind::Real:
            return sqlite3_result_double(context, value.Real());
        case Value::Kind::Text:
            break;
    }
    const std::string_view text = value.Text();
    const char* data = text.empty() ? "" : text.data();
    sqlite3_result_text64(context, data, text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void Fail(sqlite3_context* context, const functions::Fault& fault) noexcept {
    sqlite3_result_error(context, fault.what(), -1);
    sqlite3_result_error_code(context, FunctionFailureCode(static_cast<int>(fault.Number())));
}

void CallScalar(sqlite3_context* context, int count, sqlite3_value** values) noexcept {
    const auto& function = *static_cast<const functions::Function*>(sqlite3_user_data(context));
    const auto size = static_cast<std::size_t>(count);
    std::array<Value, functions::kMostArguments> read;
    try {
        for (std::size_t i = 0; i < size; ++i) read[i] = ValueOf(values[i]);
        const functions::Arguments arguments({read.data(), size});
        functions::Answer answer;
        functions::Call(function, arguments, answer);
        SetResult(context, answer.Get());
    } catch (const functions::Fault& fault) {
        Fail(context, fault);
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    }
}

void RegisterScalars(sqlite3* database) {
    for (const functions::Function& function : functions::AllFunctions()) {
        const int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | (function.deterministic ? SQLITE_DETERMINISTIC : 0);
        const std::string name(function.name);
        // SQLite hands the pointer back as it is. NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
        auto* const handed = const_cast<functions::Function*>(&function);
        for (int count = function.minimumArguments; count <= function.maximumArguments; ++count) {
            Check(database, sqlite3_create_function_v2(database, name.c_str(), count, flags, handed, CallScalar,
                                                       nullptr, nullptr, nullptr));
        }
    }
}

bool HasBody(const sql::print::sqlite::EngineFunction& listed) noexcept {
    if (listed.aggregate) return IsAggregate(listed.name);
    const auto* function = functions::FindFunction(listed.name);
    return function && function->minimumArguments <= listed.minimumArguments &&
           function->maximumArguments >= listed.maximumArguments;
}

}  // namespace

void RegisterFunctions(sqlite3* database) {
    RequireBodies(sql::print::sqlite::EngineFunctions());
    RegisterScalars(database);
    RegisterAggregates(database);
}

void RequireBodies(std::span<const sql::print::sqlite::EngineFunction> listed) {
    const auto missing = std::ranges::find_if_not(listed, HasBody);
    if (missing == listed.end()) return;
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        Message("The engine has no body for the function {1}", missing->name));
}

}  // namespace kpTables::engines::sqlite
