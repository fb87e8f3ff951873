#include "State.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/MemoryRecordset.h"

namespace kpTables::testdriver {

namespace {

constexpr std::string_view kCounterInBatch = "; SELECT SCOPE_IDENTITY()";

/// The text with @p1, @p2, ... for its markers.
std::string WithNames(std::string_view text) {
    std::string named;
    char quote = 0;
    int number = 0;
    for (const char c : text) {
        if (quote != 0) {
            if (c == quote) quote = 0;
        } else if (c == '\'' || c == '"') {
            quote = c;
        } else if (c == '?') {
            named += "@p" + std::to_string(++number);
            continue;
        }
        named += c;
    }
    return named;
}

bool BeginsWithWord(std::string_view text, std::string_view word) {
    return text.size() >= word.size() && strncasecmp(text.data(), word.data(), word.size()) == 0;
}

Variant ValueOf(const Statement::Marker& marker) {
    if (marker.length && *marker.length == SQL_NULL_DATA) return Variant::Null();
    switch (marker.valueType) {
        case SQL_C_SLONG:
            return std::int32_t{*static_cast<SQLINTEGER*>(marker.data)};
        case SQL_C_DOUBLE:
            return *static_cast<double*>(marker.data);
        case SQL_C_BIT:
            return *static_cast<unsigned char*>(marker.data) != 0;
        case SQL_C_WCHAR:
            return FromUnits(static_cast<SQLWCHAR*>(marker.data),
                             static_cast<SQLINTEGER>(*marker.length / static_cast<SQLLEN>(sizeof(SQLWCHAR))));
        case SQL_C_CHAR:
            return Currency::FromDecimalText(
                std::string_view(static_cast<char*>(marker.data), static_cast<std::size_t>(*marker.length)));
        case SQL_C_TYPE_TIMESTAMP: {
            const auto& moment = *static_cast<SQL_TIMESTAMP_STRUCT*>(marker.data);
            return *Date::FromParts({moment.year, moment.month, moment.day, moment.hour, moment.minute, moment.second});
        }
        default:
            throw std::runtime_error("a parameter of a type that this driver does not know");
    }
}

}  // namespace

void Connection::Begin() {
    if (!book) return;
    book->BeginTrans();
    hasTransaction = true;
}

void Connection::End(bool commit) {
    if (!hasTransaction) return;
    hasTransaction = false;
    for (; !savepoints.empty(); savepoints.pop_back()) commit ? book->CommitTrans() : book->RollbackTrans();
    commit ? book->CommitTrans() : book->RollbackTrans();
}

void Connection::RollBackTo(const std::string& savepoint) {
    while (!savepoints.empty()) {
        const bool last = savepoints.back() == savepoint;
        book->RollbackTrans();
        savepoints.pop_back();
        if (last) return;
    }
    throw std::runtime_error("no such savepoint");
}

NamedValues Statement::Values() const {
    NamedValues values;
    for (const Marker& marker : markers) values.push_back({"p" + std::to_string(values.size() + 1), ValueOf(marker)});
    return values;
}

/// What the server reads that a book's front end does not. False for any other text.
bool Statement::RunForServer(std::string_view text) {
    constexpr std::string_view kSave = "SAVE TRANSACTION ";
    constexpr std::string_view kRollBack = "ROLLBACK TRANSACTION ";
    if (text == "SELECT @@TRANCOUNT") {
        auto count = std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{{"", VarType::Long}});
        count->AddNew();
        count->SetValue(0, connection.hasTransaction ? 1 : 0);
        count->Update();
        results.push_back({std::move(count)});
        return true;
    }
    if (BeginsWithWord(text, kSave)) {
        connection.book->BeginTrans();
        connection.savepoints.emplace_back(text.substr(kSave.size()));
    } else if (BeginsWithWord(text, kRollBack)) {
        connection.RollBackTo(std::string(text.substr(kRollBack.size())));
    } else if (!BeginsWithWord(text, "SET ")) {
        return false;
    }
    results.push_back({});
    return true;
}

void Statement::RunOne(std::string_view text) {
    Book& book = *connection.book;
    book.Dialect(connection.IsServer() ? SqlDialect::SqlServer : SqlDialect::Jet);
    Result result{book.Execute(WithNames(text), Values())};
    if (!result.rows) result.affected = book.RecordsAffected();
    results.push_back(std::move(result));
}

void Statement::Run(std::string_view text) {
    results.clear();
    described = onRow = false;
    piecesOf = -1;
    if (!connection.book) {
        const bool rows = BeginsWithWord(text, "Select") || BeginsWithWord(text, "TRANSFORM");
        if (rows) {
            auto none = std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{{"n", VarType::Long}});
            results.push_back({std::move(none)});
        } else {
            results.push_back({nullptr, 0});
        }
        return;
    }
    // As after SET IMPLICIT_TRANSACTIONS: a statement begins the transaction that there is not.
    if (!connection.autoCommit && !connection.hasTransaction && text != "SELECT @@TRANCOUNT") connection.Begin();
    try {
        RunAll(text);
    } catch (...) {
        if (connection.isFragile) connection.End(false);
        throw;
    }
}

void Statement::RunAll(std::string_view text) {
    if (connection.IsServer() && RunForServer(text)) return;
    if (connection.IsServer() && text.ends_with(kCounterInBatch)) {
        RunOne(text.substr(0, text.size() - kCounterInBatch.size()));
        results.push_back({connection.book->Execute("Select @@IDENTITY")});
        return;
    }
    RunOne(text);
}

const std::vector<FieldInfo>& Statement::Fields() {
    if (described) return fields;
    fields.clear();
    RecordsetPtr rows = results.empty() ? nullptr : results.front().rows;
    if (results.empty() && connection.book && BeginsWithWord(prepared, "Select") &&
        prepared.find('?') == std::string::npos)
        rows = connection.book->Execute(prepared);
    for (int i = 0; rows && i < rows->FieldCount(); ++i) fields.push_back(rows->FieldAt(i));
    described = true;
    return fields;
}

void WriteDown(const SQLWCHAR* text, std::size_t units) {
    const char* const path = std::getenv("KPTABLES_TEST_TEXTS");
    if (!path) return;
    std::FILE* const file = std::fopen(path, "ab");
    if (!file) std::abort();
    const auto length = static_cast<std::uint32_t>(units);
    std::fwrite(&length, sizeof length, 1, file);
    std::fwrite(text, sizeof *text, units, file);
    std::fclose(file);
}

std::u16string ToUnits(std::string_view text) {
    std::u16string units;
    for (std::size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i]);
        const int more = first < 0x80 ? 0 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
        char32_t character = more == 0 ? first : first & (0x3Fu >> static_cast<unsigned>(more));
        for (int k = 1; k <= more; ++k)
            character = character << 6u | (static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]) & 0x3Fu);
        i += static_cast<std::size_t>(more) + 1;
        if (character < 0x10000) {
            units += static_cast<char16_t>(character);
        } else {
            units += static_cast<char16_t>(0xD7C0u + (character >> 10u));
            units += static_cast<char16_t>(0xDC00u | (character & 0x3FFu));
        }
    }
    return units;
}

std::string FromUnits(const SQLWCHAR* text, SQLINTEGER length) {
    std::size_t units = static_cast<std::size_t>(length);
    if (length == SQL_NTS) {
        units = 0;
        while (text[units] != 0) ++units;
    }
    std::string bytes;
    for (std::size_t i = 0; i < units; ++i) {
        char32_t character = text[i];
        if (character >= 0xD800 && character < 0xDC00 && i + 1 < units)
            character = 0x10000 + ((character - 0xD800) << 10u) + (text[++i] - 0xDC00u);
        const auto put = [&](char32_t byte) { bytes += static_cast<char>(byte); };
        if (character < 0x80) {
            put(character);
        } else if (character < 0x800) {
            put(0xC0 | character >> 6u);
            put(0x80 | (character & 0x3F));
        } else if (character < 0x10000) {
            put(0xE0 | character >> 12u);
            put(0x80 | (character >> 6u & 0x3F));
            put(0x80 | (character & 0x3F));
        } else {
            put(0xF0 | character >> 18u);
            put(0x80 | (character >> 12u & 0x3F));
            put(0x80 | (character >> 6u & 0x3F));
            put(0x80 | (character & 0x3F));
        }
    }
    return bytes;
}

Diagnosis DiagnosisOf(const std::exception& error) {
    const auto* known = dynamic_cast<const Error*>(&error);
    const auto is = [&](DatabaseErrorNumber number) {
        return known && known->Number() == static_cast<std::int32_t>(number);
    };
    const char* state = "HY000";
    if (is(DatabaseErrorNumber::Syntax)) state = "42000";
    if (is(DatabaseErrorNumber::UnknownTable)) state = "42S02";
    if (is(DatabaseErrorNumber::UnknownColumn)) state = "42S22";
    if (is(DatabaseErrorNumber::TypeMismatch)) state = "22018";
    if (is(DatabaseErrorNumber::Overflow)) state = "22003";
    if (is(DatabaseErrorNumber::ConstraintViolated)) state = "23000";
    if (is(DatabaseErrorNumber::Locked)) state = "HYT00";
    return {state, error.what()};
}

}  // namespace kpTables::testdriver
