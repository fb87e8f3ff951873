#include "engines/sqlite/TableChange.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "engines/sqlite/TableDefinition.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::engines::sqlite {

namespace {

using sql::SameName;
using sql::print::sqlite::QuotedName;

using Texts = std::vector<std::string>;
using Parts = std::vector<TablePart>;

/// A table, index or trigger.
struct SchemaItem {
    std::string name;
    std::string text;  ///< its CREATE statement
};

std::vector<SchemaItem> Items(const Database& database, const std::string& condition, const std::string& name = {}) {
    PreparedStatement find = database.Prepare(
        "SELECT name, sql FROM sqlite_schema WHERE sql IS NOT NULL AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' AND " +
        condition + " ORDER BY rowid");
    if (!name.empty()) find.BindText(1, name);
    std::vector<SchemaItem> items;
    while (find.Step()) items.push_back({std::string(find.Text(0)), std::string(find.Text(1))});
    return items;
}

const SchemaItem* FindItem(const std::vector<SchemaItem>& items, const std::string& name) {
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const SchemaItem& item) { return SameName(item.name, name); });
    return found == items.end() ? nullptr : &*found;
}

const TablePart* FindColumn(const Parts& parts, const std::string& name) {
    const auto found = std::find_if(parts.begin(), parts.end(),
                                    [&](const TablePart& part) { return !name.empty() && SameName(part.name, name); });
    return found == parts.end() ? nullptr : &*found;
}

bool IsConstraint(const TablePart& part) noexcept { return part.name.empty(); }

bool HasConstraint(const Parts& parts, const std::string& text) {
    return std::any_of(parts.begin(), parts.end(),
                       [&](const TablePart& part) { return IsConstraint(part) && part.text == text; });
}

/// The wanted columns, those that only the book has, and the constraints of both.
Parts Merged(const Parts& present, const Parts& wanted) {
    Parts merged;
    std::copy_if(wanted.begin(), wanted.end(), std::back_inserter(merged),
                 [](const auto& p) { return !IsConstraint(p); });
    for (const TablePart& part : present) {
        if (!IsConstraint(part) && !FindColumn(wanted, part.name)) merged.push_back(part);
    }
    std::copy_if(wanted.begin(), wanted.end(), std::back_inserter(merged), IsConstraint);
    for (const TablePart& part : present) {
        if (IsConstraint(part) && !HasConstraint(wanted, part.text)) merged.push_back(part);
    }
    return merged;
}

bool SameParts(const Parts& a, const Parts& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const TablePart& left, const TablePart& right) { return left.text == right.text; });
}

/// What makes a table's definition another.
Texts Differences(const std::string& table, const Parts& present, const Parts& merged) {
    Texts changes;
    std::string changed;
    for (const TablePart& part : merged) {
        if (IsConstraint(part)) continue;
        const TablePart* const before = FindColumn(present, part.name);
        if (!before) {
            changes.push_back(Message("added the column {1}.{2}", table, part.name));
        } else if (before->text != part.text) {
            changed.append(changed.empty() ? "" : ", ").append(part.name);
        }
    }
    if (!changed.empty()) changes.push_back(Message("changed the columns of {1}: {2}", table, changed));
    if (changes.empty()) changes.push_back(Message("put the columns and keys of {1} in order", table));
    return changes;
}

/// The columns that have values of their own, and the one that is the row's id ("" when none is).
struct Columns {
    Texts stored;
    std::string rowId;
    std::size_t count = 0;
};

Columns ReadColumns(const Database& database, const std::string& table) {
    PreparedStatement read = database.Prepare("PRAGMA table_xinfo(" + QuotedName(table) + ")");
    enum { kName = 1, kType, kNotNull, kDefault, kKey, kHidden };
    Columns columns;
    int keys = 0;
    while (read.Step()) {
        ++columns.count;
        if (read.Integer(kHidden) == 0) columns.stored.emplace_back(read.Text(kName));
        if (read.Integer(kKey) == 0) continue;
        if (++keys == 1 && SameName(read.Text(kType), "INTEGER")) columns.rowId = read.Text(kName);
    }
    if (keys > 1) columns.rowId.clear();
    return columns;
}

bool Contains(const Texts& names, std::string_view name) {
    return std::any_of(names.begin(), names.end(), [&](const std::string& other) { return SameName(other, name); });
}

/// The name by which statements read the row id of tables with these columns.
std::string RowIdName(const Texts& columns) {
    for (const char* name : {"rowid", "_rowid_"}) {
        if (!Contains(columns, name)) return name;
    }
    return "oid";
}

constexpr const char* kNewTable = "kp_new";

/// Copies the rows with their ids, which are the order in which they were entered. change: the column whose values are
/// converted, or nullptr.
void CopyRows(const Database& book, const std::string& table, const sql::ColumnChange* change) {
    const Columns from = ReadColumns(book, table);
    const Columns to = ReadColumns(book, kNewTable);
    std::string columns;
    if (to.rowId.empty() || !Contains(from.stored, to.rowId)) columns = RowIdName(from.stored);
    std::string values = columns;
    for (const std::string& name : to.stored) {
        if (!Contains(from.stored, name)) continue;
        const std::string_view separator = columns.empty() ? "" : ", ";
        const bool changes = change && SameName(change->column, name);
        columns.append(separator).append(QuotedName(name));
        values.append(separator).append(changes ? change->value : QuotedName(name));
    }
    book.Run("INSERT INTO " + QuotedName(kNewTable) + " (" + columns + ") SELECT " + values + " FROM " +
             QuotedName(table));
}

std::optional<std::int64_t> LastCounter(const Database& book, const std::string& table) {
    PreparedStatement find = book.Prepare("SELECT seq FROM sqlite_sequence WHERE name = ?1");
    find.BindText(1, table);
    return find.Step() ? std::optional(find.Integer(0)) : std::nullopt;
}

/// A number that was given to a row since deleted is not given again.
void SetLastCounter(const Database& book, const std::string& table, std::int64_t last) {
    for (const char* text : {"INSERT INTO sqlite_sequence (name, seq) SELECT ?1, 0 "
                             "WHERE NOT EXISTS (SELECT 1 FROM sqlite_sequence WHERE name = ?1)",
                             "UPDATE sqlite_sequence SET seq = max(seq, ?2) WHERE name = ?1"}) {
        PreparedStatement change = book.Prepare(text);
        change.BindText(1, table);
        if (std::string_view(text).find("?2") != std::string_view::npos) change.BindInteger(2, last);
        change.Run();
    }
}

/// Makes the table of these parts in place of the present one, without indexes and triggers.
void Replace(const Database& book, const std::string& table, const Parts& parts,
             const sql::ColumnChange* change = nullptr) {
    const auto counter = LastCounter(book, table);
    std::string text = "CREATE TABLE " + QuotedName(kNewTable) + " (";
    for (const TablePart& part : parts) text.append(&part == parts.data() ? "" : ", ").append(part.text);
    book.Run(text + ")");
    CopyRows(book, table, change);
    book.Run("DROP TABLE " + QuotedName(table));
    book.Run("ALTER TABLE " + QuotedName(kNewTable) + " RENAME TO " + QuotedName(table));
    if (counter) SetLastCounter(book, table, *counter);
}

/// The column's DEFAULT, its value converted as the rows' values are; "" when it has none.
std::string DefaultOf(const Database& database, const sql::ColumnChange& change) {
    PreparedStatement read = database.Prepare("PRAGMA table_xinfo(" + QuotedName(change.table) + ")");
    constexpr int kName = 1;
    constexpr int kDefault = 4;
    while (read.Step()) {
        if (!SameName(read.Text(kName), change.column) || read.IsNull(kDefault)) continue;
        const std::string value(read.Text(kDefault));
        // The day or the time of entry is no constant.
        if (value.find("kp_") != std::string::npos) return " DEFAULT (" + value + ")";
        PreparedStatement convert =
            database.Prepare("SELECT quote(" + change.value + ") FROM (SELECT " + value + " AS " +
                             QuotedName(change.column) + ") AS " + QuotedName(change.table));
        return convert.Step() ? " DEFAULT " + std::string(convert.Text(0)) : std::string();
    }
    return {};
}

constexpr const char* kIndexes = "type = 'index' AND tbl_name = ?1 COLLATE NOCASE";

class TableChanger {
public:
    TableChanger(const Database& book, SchemaItem wanted, std::vector<SchemaItem> wantedIndexes)
        : book_(book), wanted_(std::move(wanted)), wantedIndexes_(std::move(wantedIndexes)) {}

    Texts Change() {
        const auto tables = Items(book_, "type = 'table' AND name = ?1 COLLATE NOCASE", wanted_.name);
        if (tables.empty()) {
            book_.Run(wanted_.text);
            changes_.push_back(Message("made the table {1}", wanted_.name));
        } else {
            ChangeTable(tables.front());
        }
        ChangeIndexes(tables.empty());
        return std::move(changes_);
    }

private:
    void ChangeTable(const SchemaItem& table) {
        indexesBefore_ = Items(book_, kIndexes, table.name);
        const Parts present = TableParts(table.text);
        const auto columns =
            std::count_if(present.begin(), present.end(), [](const auto& p) { return !IsConstraint(p); });
        if (static_cast<std::size_t>(columns) != ReadColumns(book_, table.name).count) {
            throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                                Message("the definition of the table {1} cannot be read: {2}", table.name, table.text));
        }
        const Parts merged = Merged(present, TableParts(wanted_.text));
        if (SameParts(present, merged)) return;
        changes_ = Differences(wanted_.name, present, merged);
        const auto triggers = Items(book_, "type = 'trigger' AND tbl_name = ?1 COLLATE NOCASE", table.name);
        Replace(book_, table.name, merged);
        for (const SchemaItem& index : indexesBefore_) {
            if (!FindItem(wantedIndexes_, index.name)) book_.Run(index.text);
        }
        for (const SchemaItem& trigger : triggers) book_.Run(trigger.text);
    }

    void ChangeIndexes(bool newTable) {
        const auto present = Items(book_, kIndexes, wanted_.name);
        for (const SchemaItem& index : wantedIndexes_) {
            const SchemaItem* const before = FindItem(indexesBefore_, index.name);
            if (!newTable && (!before || before->text != index.text)) {
                changes_.push_back(before ? Message("changed the index {1}", index.name)
                                          : Message("made the index {1}", index.name));
            }
            const SchemaItem* const now = FindItem(present, index.name);
            if (now && now->text == index.text) continue;
            if (now) book_.Run("DROP INDEX " + QuotedName(index.name));
            book_.Run(index.text);
        }
    }

    const Database& book_;
    SchemaItem wanted_;
    std::vector<SchemaItem> wantedIndexes_;
    std::vector<SchemaItem> indexesBefore_;
    Texts changes_;
};

}  // namespace

void ChangeColumn(const Database& book, const sql::ColumnChange& change) {
    const auto tables = Items(book, "type = 'table' AND name = ?1 COLLATE NOCASE", change.table);
    Parts parts = TableParts(tables.front().text);
    for (TablePart& part : parts) {
        if (IsConstraint(part) || !SameName(part.name, change.column)) continue;
        part.text = change.definition;
        if (change.definition.find(" DEFAULT ") == std::string::npos) part.text += DefaultOf(book, change);
    }
    const auto indexes = Items(book, kIndexes, change.table);
    const auto triggers = Items(book, "type = 'trigger' AND tbl_name = ?1 COLLATE NOCASE", change.table);
    Replace(book, change.table, parts, &change);
    for (const SchemaItem& index : indexes) book.Run(index.text);
    for (const SchemaItem& trigger : triggers) book.Run(trigger.text);
}

std::vector<std::string> ChangeTables(const Database& book, const Database& wanted) {
    Texts changes;
    for (SchemaItem& table : Items(wanted, "type = 'table' AND name NOT LIKE 'kp\\_%' ESCAPE '\\'")) {
        auto indexes = Items(wanted, kIndexes, table.name);
        for (std::string& change : TableChanger(book, std::move(table), std::move(indexes)).Change()) {
            changes.push_back(std::move(change));
        }
    }
    return changes;
}

}  // namespace kpTables::engines::sqlite
