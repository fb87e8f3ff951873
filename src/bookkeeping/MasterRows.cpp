#include "bookkeeping/MasterRows.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "bookkeeping/CheckedTables.h"
#include "bookkeeping/Query.h"
#include "bookkeeping/Refusal.h"
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Quoted.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// Candidates that an error lists.
constexpr std::size_t kMostCandidates = 8;

std::string ColumnsOf(const MasterTable& table) {
    const auto orNothing = [](const char* column) { return *column ? std::string(column) : std::string("''"); };
    const bool isProduct = table.kind == MasterKind::Product;
    return orNothing(table.id) + "," + orNothing(table.number) + "," + table.name +
           (isProduct ? ",规格,型号" : ",'',''");
}

std::vector<MasterRow> ReadRows(Connection& book, const MasterTable& table, const std::string& condition) {
    const bool hasId = *table.id != '\0';
    const std::string order = hasId ? " Order by " + std::string(table.id) : "";
    const auto found =
        book.Execute("Select " + ColumnsOf(table) + " From " + table.table + " Where " + condition + order);
    std::vector<MasterRow> rows;
    for (; !found->Eof(); found->MoveNext()) {
        std::string extra;
        for (const int column : {3, 4}) {
            const std::string part(Trim(Text(found->GetValue(column))));
            if (!part.empty()) extra += " " + part;
        }
        rows.push_back({hasId ? CLng(found->GetValue(0)) : 0, Text(found->GetValue(1)), Text(found->GetValue(2)),
                        std::move(extra)});
    }
    return rows;
}

/// Gives each row of a table without ids its place in the table.
void NumberByPlace(Connection& book, const MasterTable& table, std::vector<MasterRow>& rows) {
    if (*table.id != '\0' || rows.empty()) return;
    const auto all = ReadRows(book, table, "True");
    std::size_t next = 0;
    for (MasterRow& row : rows) {
        while (next < all.size() && (all[next].name != row.name || all[next].number != row.number)) ++next;
        row.id = static_cast<std::int32_t>(++next);
    }
}

std::string ListOf(const std::vector<MasterRow>& rows) {
    std::string list;
    for (std::size_t i = 0; i < std::min(rows.size(), kMostCandidates); ++i)
        list += (i > 0 ? ", " : "") + rows[i].Text();
    return rows.size() > kMostCandidates ? Message("{1}, and {2} more", list, rows.size() - kMostCandidates) : list;
}

/// The rows that match in the first column that matches at all.
std::vector<MasterRow> FirstMatches(Connection& book, const MasterTable& table, const std::string& text) {
    for (const char* column : table.known) {
        if (auto rows = RowsWith(book, table, column, text); !rows.empty()) return rows;
    }
    return {};
}

/// The whole number that a text of digits is.
std::optional<std::int32_t> IdIn(const std::string& text) {
    std::int32_t id = 0;
    const auto* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, id);
    if (read.ec != std::errc() || read.ptr != end || id < 0 || text.front() == '-') return std::nullopt;
    return id;
}

std::optional<MasterRow> RowOfId(Connection& book, const MasterTable& table, std::int32_t id) {
    if (*table.id != '\0') {
        const auto rows = ReadRows(book, table, std::string(table.id) + "=" + std::to_string(id));
        return rows.empty() ? std::nullopt : std::optional(rows.front());
    }
    auto rows = ReadRows(book, table, "True");
    if (id < 1 || static_cast<std::size_t>(id) > rows.size()) return std::nullopt;
    rows[static_cast<std::size_t>(id) - 1].id = id;
    return rows[static_cast<std::size_t>(id) - 1];
}

/// What the component's own look-up answers; 0 when it has none, or finds nothing. A look-up takes the first of several
/// rows.
std::int32_t LookedUp(const ConnectionPtr& book, MasterKind kind, const std::string& text) {
    return CheckedTables(book).Ask([&](CTables& tables) -> std::int32_t {
        switch (kind) {
            case MasterKind::Warehouse:
                return std::max(tables.Get仓库ID(Quoted(text)), 0);
            case MasterKind::Supplier:
                return tables.Get厂商ID(Quoted(text));
            case MasterKind::Customer:
                return tables.Get客户ID(Quoted(text));
            case MasterKind::Product:
                return tables.Get商品ID(Quoted(text));
            default:
                return 0;
        }
    });
}

[[noreturn]] void RefuseUnknown(Connection& book, const MasterTable& table, const std::string& text) {
    const auto near = ReadRows(book, table, "InStr(" + std::string(table.name) + ",'" + Quoted(text) + "')>0");
    RefuseWith(Message("the book has no {1} {2}{3}", Translated(table.noun), text,
                       near.empty() ? std::string() : Message("; near: {1}", ListOf(near))));
}

}  // namespace

std::string MasterRow::Text() const {
    std::string words = number;
    if (!name.empty()) words += (words.empty() ? "" : " ") + name;
    words += extra;
    return id == 0 ? words : std::to_string(id) + " (" + words + ")";
}

std::vector<MasterRow> RowsWhere(Connection& book, const MasterTable& table, const std::string& condition) {
    auto rows = ReadRows(book, table, condition);
    NumberByPlace(book, table, rows);
    return rows;
}

std::vector<MasterRow> RowsWith(Connection& book, const MasterTable& table, const std::string& column,
                                const std::string& text) {
    return RowsWhere(book, table, column + "='" + Quoted(text) + "'");
}

std::string ConditionOf(const MasterTable& table, const MasterRow& row) {
    if (*table.id != '\0') return std::string(table.id) + "=" + std::to_string(row.id);
    const bool hasNumber = *table.number != '\0';
    return TextIs(hasNumber ? table.number : table.name, hasNumber ? row.number : row.name);
}

std::vector<MasterRow> MatchingRows(const ConnectionPtr& book, MasterKind kind, const std::string& text) {
    const MasterTable& table = TableOf(kind);
    const std::string words(Trim(text));
    if (words.empty()) RefuseWith(Message("the {1} is not named", Translated(table.noun)));
    // The look-up takes the first of several rows, so whether others match is asked as well.
    const std::int32_t lookedUp = LookedUp(book, kind, words);
    auto rows = FirstMatches(*book, table, words);
    if (rows.size() > 1 || (rows.size() == 1 && (lookedUp == 0 || rows.front().id == lookedUp))) return rows;
    if (const auto id = lookedUp > 0 ? std::optional(lookedUp) : IdIn(words)) {
        if (const auto row = RowOfId(*book, table, *id)) return {*row};
    }
    return {};
}

MasterRow FindMaster(const ConnectionPtr& book, MasterKind kind, const std::string& text) {
    const MasterTable& table = TableOf(kind);
    const std::string words(Trim(text));
    const auto rows = MatchingRows(book, kind, words);
    if (rows.empty()) RefuseUnknown(*book, table, words);
    if (rows.size() == 1) return rows.front();
    RefuseWith(
        Message("'{1}' may be any of these {2}: {3}; give the id", words, Translated(table.plural), ListOf(rows)));
}

}  // namespace kpTables::bookkeeping
