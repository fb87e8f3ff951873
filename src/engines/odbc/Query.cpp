#include "engines/odbc/Query.h"

#include <algorithm>
#include <cmath>

#include "engines/odbc/WideText.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::odbc {

namespace {

SQLSMALLINT ShortLength(const std::u16string& text) noexcept { return static_cast<SQLSMALLINT>(text.size()); }

/// A name as an argument of the catalog's functions: none where it is empty.
SQLWCHAR* NameOrNone(std::u16string& name) noexcept { return name.empty() ? nullptr : Units(name); }

std::optional<Date> DateOf(const SQL_TIMESTAMP_STRUCT& moment) {
    constexpr SQLUINTEGER kHalfSecond = 500'000'000;
    constexpr double kSecond = 1.0 / 86400;
    const auto date = Date::FromParts(
        {moment.year, moment.month, moment.day, moment.hour, moment.minute, std::min<SQLUSMALLINT>(moment.second, 59)});
    if (!date || moment.fraction < kHalfSecond) return date;
    const double day = std::floor(date->Serial());
    return Date::FromSerial(day == date->Serial() || day >= 0 ? date->Serial() + kSecond : date->Serial() - kSecond);
}

}  // namespace

void Query::Check(SQLRETURN code) {
    if (!SQL_SUCCEEDED(code)) RaiseOfStatement();
}

void Query::RaiseOfStatement() {
    const DriverError error = ErrorOf(SQL_HANDLE_STMT, statement_.Get());
    session_.NoteFailure(error);
    RaiseFailure(error, shown_);
}

/// A change that touches no row is a success too.
void Query::Ran(SQLRETURN code) {
    if (code != SQL_NO_DATA) Check(code);
    session_.NoteSuccess();
}

void Query::BindAll(const Parameters& parameters) {
    const Library& library = LoadedLibrary();
    SQLUSMALLINT number = 0;
    for (const Parameters::Bound& bound : parameters.bound_) {
        Check(library.BindParameter(statement_.Get(), ++number, SQL_PARAM_INPUT, bound.valueType, bound.type.type,
                                    bound.type.size, bound.type.digits, bound.data, bound.room, &bound.length));
    }
}

void Query::ExecuteDirect(std::string_view text, const Parameters& parameters, std::string_view shown) {
    const Library& library = LoadedLibrary();
    shown_ = shown;
    if (parameters.bound_.empty()) {
        // Braces in the text are the text's. A driver that knows no such setting is not asked to look for them either.
        library.SetStatementAttribute(statement_.Get(), SQL_ATTR_NOSCAN, reinterpret_cast<SQLPOINTER>(SQL_NOSCAN_ON),
                                      0);
    }
    BindAll(parameters);
    std::u16string wide = Wide(text);
    Ran(session_.Await(statement_.Get(), [&] {
        return library.ExecuteDirect(statement_.Get(), Units(wide), static_cast<SQLINTEGER>(wide.size()));
    }));
}

void Query::Prepare(std::string_view text) {
    shown_ = text;
    std::u16string wide = Wide(text);
    Check(LoadedLibrary().Prepare(statement_.Get(), Units(wide), static_cast<SQLINTEGER>(wide.size())));
}

void Query::Execute(const Parameters& parameters, std::string_view shown) {
    if (!shown.empty()) shown_ = shown;
    BindAll(parameters);
    Ran(session_.Await(statement_.Get(), [&] { return LoadedLibrary().Execute(statement_.Get()); }));
}

void Query::ListTables(std::string_view pattern) {
    std::u16string name = Wide(pattern);
    std::u16string type = u"TABLE";
    Check(LoadedLibrary().Tables(statement_.Get(), nullptr, 0, nullptr, 0, NameOrNone(name), ShortLength(name),
                                 Units(type), ShortLength(type)));
}

void Query::ListColumns(const std::string& catalog, const std::string& schema, std::string_view tablePattern) {
    std::u16string inCatalog = Wide(catalog);
    std::u16string inSchema = Wide(schema);
    std::u16string name = Wide(tablePattern);
    Check(LoadedLibrary().Columns(statement_.Get(), NameOrNone(inCatalog), ShortLength(inCatalog), NameOrNone(inSchema),
                                  ShortLength(inSchema), NameOrNone(name), ShortLength(name), nullptr, 0));
}

void Query::ListPrimaryKeys(const std::string& catalog, const std::string& schema, const std::string& table) {
    std::u16string inCatalog = Wide(catalog);
    std::u16string inSchema = Wide(schema);
    std::u16string name = Wide(table);
    Check(LoadedLibrary().PrimaryKeys(statement_.Get(), NameOrNone(inCatalog), ShortLength(inCatalog),
                                      NameOrNone(inSchema), ShortLength(inSchema), Units(name), ShortLength(name)));
}

void Query::ListUniqueIndexes(const std::string& catalog, const std::string& schema, const std::string& table) {
    std::u16string inCatalog = Wide(catalog);
    std::u16string inSchema = Wide(schema);
    std::u16string name = Wide(table);
    Check(LoadedLibrary().Statistics(statement_.Get(), NameOrNone(inCatalog), ShortLength(inCatalog),
                                     NameOrNone(inSchema), ShortLength(inSchema), Units(name), ShortLength(name),
                                     SQL_INDEX_UNIQUE, SQL_QUICK));
}

int Query::Columns() {
    SQLSMALLINT columns = 0;
    Check(LoadedLibrary().CountColumns(statement_.Get(), &columns));
    return columns;
}

ColumnDescription Query::Describe(int column) {
    constexpr SQLSMALLINT kLongestName = 512;
    const auto number = static_cast<SQLUSMALLINT>(column + 1);
    SQLWCHAR name[kLongestName] = {};
    SQLSMALLINT length = 0;
    SQLSMALLINT nullable = 0;
    ColumnDescription described;
    Check(LoadedLibrary().DescribeColumn(statement_.Get(), number, name, kLongestName, &length, &described.type,
                                         &described.size, &described.digits, &nullable));
    described.name = NarrowUntilZero(name);
    SQLLEN counter = SQL_FALSE;
    const SQLRETURN code = LoadedLibrary().ColumnAttribute(statement_.Get(), number, SQL_DESC_AUTO_UNIQUE_VALUE,
                                                           nullptr, 0, nullptr, &counter);
    described.counter = SQL_SUCCEEDED(code) && counter == SQL_TRUE;
    return described;
}

std::int64_t Query::AffectedRows() {
    SQLLEN rows = -1;
    Check(LoadedLibrary().CountAffectedRows(statement_.Get(), &rows));
    return rows;
}

bool Query::NextResult() {
    const SQLRETURN code = LoadedLibrary().MoreResults(statement_.Get());
    if (code == SQL_NO_DATA) return false;
    Check(code);
    return true;
}

bool Query::Fetch() {
    const SQLRETURN code = LoadedLibrary().Fetch(statement_.Get());
    if (code == SQL_NO_DATA) return false;
    Check(code);
    return true;
}

void Query::CloseCursor() noexcept { LoadedLibrary().FreeStatement(statement_.Get(), SQL_CLOSE); }

template <class Value>
std::optional<Value> Query::Cell(int column, SQLSMALLINT type) {
    Value value{};
    SQLLEN length = 0;
    Check(LoadedLibrary().GetData(statement_.Get(), static_cast<SQLUSMALLINT>(column + 1), type, &value, sizeof value,
                                  &length));
    if (length == SQL_NULL_DATA) return std::nullopt;
    return value;
}

std::optional<std::int32_t> Query::Whole(int column) { return Cell<SQLINTEGER>(column, SQL_C_SLONG); }
std::optional<std::int64_t> Query::WideWhole(int column) { return Cell<SQLBIGINT>(column, SQL_C_SBIGINT); }
std::optional<double> Query::Real(int column) { return Cell<double>(column, SQL_C_DOUBLE); }

std::optional<bool> Query::Flag(int column) {
    const auto bit = Cell<unsigned char>(column, SQL_C_BIT);
    if (!bit) return std::nullopt;
    return *bit != 0;
}

std::optional<std::string> Query::Digits(int column) {
    constexpr std::size_t kMostDigits = 128;
    char text[kMostDigits] = {};
    SQLLEN length = 0;
    Check(LoadedLibrary().GetData(statement_.Get(), static_cast<SQLUSMALLINT>(column + 1), SQL_C_CHAR, text,
                                  sizeof text, &length));
    if (length == SQL_NULL_DATA) return std::nullopt;
    return std::string(text);
}

std::optional<Date> Query::Moment(int column) {
    const auto moment = Cell<SQL_TIMESTAMP_STRUCT>(column, SQL_C_TYPE_TIMESTAMP);
    if (!moment) return std::nullopt;
    auto date = DateOf(*moment);
    if (!date) {
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::TypeMismatch),
                            Message("The server's date of the year {1} is none from 100 to 9999", moment->year),
                            shown_);
    }
    return date;
}

std::optional<std::string_view> Query::Text(int column) {
    constexpr std::size_t kPiece = 2048;
    SQLWCHAR piece[kPiece];
    units_.clear();
    for (;;) {
        SQLLEN length = 0;
        const SQLRETURN code = LoadedLibrary().GetData(statement_.Get(), static_cast<SQLUSMALLINT>(column + 1),
                                                       SQL_C_WCHAR, piece, sizeof piece, &length);
        if (code == SQL_NO_DATA) break;
        Check(code);
        if (length == SQL_NULL_DATA) return std::nullopt;
        // A longer text comes in pieces that a zero ends.
        const bool more = length == SQL_NO_TOTAL || length > static_cast<SQLLEN>(sizeof piece - sizeof *piece);
        const std::size_t units = more ? kPiece - 1 : static_cast<std::size_t>(length) / sizeof *piece;
        units_.append(piece, piece + units);
        if (!more || code == SQL_SUCCESS) break;
    }
    text_.clear();
    AppendNarrow(text_, units_);
    return text_;
}

}  // namespace kpTables::engines::odbc
