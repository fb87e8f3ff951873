#include "SqliteBook.h"

#include <stdexcept>

#include "sql/Translate.h"
#include "sql/parse/Parser.h"
#include "sql/print/sqlite/DeclaredType.h"
#include "sql/print/sqlite/FunctionList.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::sql::test {

using print::sqlite::DeclaredType;
using print::sqlite::EngineFunctions;
using print::sqlite::QuotedName;

namespace {

Translation TranslatedAsForABook(const std::string& text, const Catalog& catalog,
                                 const std::vector<LiteralValue>& pivotValues = {}) {
    return Translate(*parse::Parse(text), catalog, print::sqlite::SqliteEngine(), pivotValues);
}

int CompareTexts(void*, int leftSize, const void* left, int rightSize, const void* right) {
    std::string a(static_cast<const char*>(left), static_cast<std::size_t>(leftSize));
    std::string b(static_cast<const char*>(right), static_cast<std::size_t>(rightSize));
    for (auto* text : {&a, &b}) {
        text->erase(text->find_last_not_of(' ') + 1);
        for (char& c : *text)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return a.compare(b);
}

// The part of a date "2004-3-7" that a binding takes.
std::string DatePart(const std::string& text, int part) {
    std::size_t begin = 0;
    for (; part > 0; --part) begin = text.find('-', begin) + 1;
    return text.substr(begin, text.find('-', begin) - begin);
}

// A literal as SQLite takes it in place of its parameter; only what the tests here need.
BoundValue Bound(const LiteralValue& value, Binding binding) {
    switch (binding) {
        case Binding::Currency:
        case Binding::CurrencyBound:
            return {std::to_string(std::stod(value.text) * 10000), true};
        case Binding::Boolean:
            return {value.text == "0" ? "0" : "-1", true};
        case Binding::DateYear:
            return {DatePart(value.text, 0), true};
        case Binding::DateMonth:
            return {DatePart(value.text, 1), true};
        case Binding::DateDay:
            return {DatePart(value.text, 2), true};
        case Binding::Text:
            return {value.text, false};
        default:
            return {value.text, true};
    }
}

void AnswerNull(sqlite3_context* context, int, sqlite3_value**) { sqlite3_result_null(context); }
void StepOver(sqlite3_context*, int, sqlite3_value**) {}
void FinishNull(sqlite3_context* context) { sqlite3_result_null(context); }

}  // namespace

SqliteBook::SqliteBook() {
    if (sqlite3_open(":memory:", &database_) != SQLITE_OK) throw std::runtime_error("SQLite does not open");
    sqlite3_create_collation(database_, "KPTEXT", SQLITE_UTF8, nullptr, CompareTexts);
    for (const auto& function : EngineFunctions()) {
        const std::string name(function.name);
        for (int n = function.minimumArguments; n <= function.maximumArguments; ++n)
            sqlite3_create_function(database_, name.c_str(), n, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                                    function.aggregate ? nullptr : AnswerNull, function.aggregate ? StepOver : nullptr,
                                    function.aggregate ? FinishNull : nullptr);
    }
    for (const auto& table : catalog_.Tables()) {
        std::string columns;
        for (const auto& column : table.columns) {
            TypeName type;
            type.type = column.type;
            type.counter = column.counter;
            columns += (columns.empty() ? "" : ", ") + QuotedName(column.name) + " " + DeclaredType(type, false);
        }
        RunPlain("CREATE TABLE " + QuotedName(table.name) + " (" + columns + ")");
    }
}

SqliteBook::~SqliteBook() { sqlite3_close(database_); }

std::string SqliteBook::RunPlain(const std::string& sql, const std::vector<BoundValue>& parameters) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(database_) + (" in " + sql));
    // Every parameter of a translation stands in its text.
    if (sqlite3_bind_parameter_count(statement) != static_cast<int>(parameters.size()))
        throw std::runtime_error("parameters do not match in " + sql);
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const int index = static_cast<int>(i) + 1;
        if (parameters[i].number)
            sqlite3_bind_double(statement, index, std::stod(parameters[i].text));
        else
            sqlite3_bind_text(statement, index, parameters[i].text.c_str(), -1, SQLITE_TRANSIENT);
    }
    std::string rows;
    int result = sqlite3_step(statement);
    for (; result == SQLITE_ROW; result = sqlite3_step(statement)) {
        for (int i = 0; i < sqlite3_column_count(statement); ++i) {
            const auto* value = sqlite3_column_text(statement, i);
            rows.append(value ? reinterpret_cast<const char*>(value) : "").append("|");
        }
        rows += "\n";
    }
    const std::string error = sqlite3_errmsg(database_);
    sqlite3_finalize(statement);
    if (result != SQLITE_DONE) throw std::runtime_error(error + " in " + sql);
    return rows;
}

std::string SqliteBook::Run(const std::string& text, const std::vector<LiteralValue>& pivotValues) {
    const auto translation = TranslatedAsForABook(text, catalog_, pivotValues);
    const auto literals = parse::Tokenize(text).literals;
    std::vector<BoundValue> parameters;
    for (const auto& parameter : translation.parameters)
        parameters.push_back(Bound(literals.at(static_cast<std::size_t>(parameter.literal)), parameter.binding));
    return RunPlain(translation.text, parameters);
}

void SqliteBook::Prepare(const std::string& text, const std::vector<LiteralValue>& pivotValues) {
    const auto translation = TranslatedAsForABook(text, catalog_, pivotValues);
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(database_, translation.text.c_str(), -1, &statement, nullptr);
    const bool parameters = sqlite3_bind_parameter_count(statement) == static_cast<int>(translation.parameters.size());
    const bool columns = sqlite3_column_count(statement) == static_cast<int>(translation.columns.size());
    sqlite3_finalize(statement);
    if (result != SQLITE_OK || !parameters || !columns)
        throw std::runtime_error(std::string(result != SQLITE_OK ? sqlite3_errmsg(database_) : "counts differ") +
                                 " in " + translation.text);
}

std::string SqliteBook::Plan(const std::string& text) {
    const auto translation = TranslatedAsForABook(text, catalog_);
    return RunPlain("EXPLAIN QUERY PLAN " + translation.text,
                    std::vector<BoundValue>(translation.parameters.size(), BoundValue{"1", true}));
}

}  // namespace kpTables::sql::test
