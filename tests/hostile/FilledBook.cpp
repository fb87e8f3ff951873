#include "hostile/FilledBook.h"

#include <algorithm>
#include <memory>
#include <regex>
#include <vector>

#include "kpTables/Convert.h"

namespace kpTables::test {

namespace {

Variant CellOf(const TableInfo::Column& column, int row) {
    const Variant number = std::int32_t{row};
    switch (column.type) {
        case VarType::String:
            return row == 1 ? "a" : "b";
        case VarType::Date:
            return Date::FromYearMonthDay(2004, 3, row);
        case VarType::Boolean:
            return row == 1;
        case VarType::Currency:
            return CCur(number);
        case VarType::Double:
            return CDbl(number);
        case VarType::Integer:
            return CInt(number);
        default:
            return number;
    }
}

// Between separators that no text of the tests has.
constexpr char kCell = '\x1E';
constexpr char kRow = '\x1D';

}  // namespace

BookPtr FilledBook() {
    BookPtr book = CreateBook("memory:");
    for (const TableInfo& table : book->Tables()) {
        std::vector<std::string> columns;
        for (const TableInfo::Column& column : table.columns) columns.push_back(column.name);
        const auto appender = book->AppendTo(table.name, columns);
        for (int row = 1; row <= 2; ++row) {
            std::vector<Variant> cells;
            for (const TableInfo::Column& column : table.columns) cells.push_back(CellOf(column, row));
            appender->Append(cells);
        }
    }
    return book;
}

Contents ContentsOf(Book& book) {
    Contents contents;
    for (const TableInfo& table : book.Tables()) {
        std::string& text = contents[table.name];
        const RecordsetPtr rows = book.Execute("Select * From [" + table.name + ']');
        for (; !rows->Eof(); rows->MoveNext(), text += kRow) {
            for (int i = 0; i < rows->FieldCount(); ++i) {
                const Variant value = rows->GetValue(i);
                text += kCell;
                text += value.IsNull() ? "Null" : Text(value);
            }
            text += kCell;
        }
    }
    return contents;
}

std::set<std::string> Changed(const Contents& before, const Contents& after) {
    std::set<std::string> changed;
    for (const auto& [table, rows] : before) {
        const auto found = after.find(table);
        if (found == after.end() || found->second != rows) changed.insert(table);
    }
    for (const auto& [table, rows] : after)
        if (before.count(table) == 0) changed.insert(table);
    return changed;
}

std::string WrittenTable(std::string_view kind, std::string_view text) {
    const std::string statement(text);
    if (kind == "open table") return statement;
    static const std::regex change(R"(^\s*(?:Insert\s+Into|Update|Delete\s+(?:\*\s+)?From)\s+\[?([^\s(\]]+))",
                                   std::regex::icase);
    static const std::regex opened(R"(\sFrom\s+\[?([^\s(\]]+))", std::regex::icase);
    std::smatch found;
    return std::regex_search(statement, found, kind == "open" ? opened : change) ? found[1].str() : std::string();
}

std::string CellText(std::string_view text) { return kCell + std::string(text) + kCell; }

}  // namespace kpTables::test
