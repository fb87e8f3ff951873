#include "engines/odbc/TableWriter.h"

#include <algorithm>
#include <utility>

#include "engines/common/Failure.h"
#include "engines/odbc/RowReader.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/Names.h"

namespace kpTables::engines::odbc {

namespace {

[[noreturn]] void RefuseChange(const std::string& message) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), message);
}

[[noreturn]] void RefuseEqualRows(const std::string& table) {
    RefuseChange(
        Message("The row cannot be changed: the table {1} has no key, and another of its rows is equal", table));
}

bool IsReal(const ServerColumn& column) noexcept { return FieldTypeOf(column.description) == VarType::Double; }

}  // namespace

TableWriter::TableWriter(Session& session, const ServerTable& table, const std::vector<ColumnDescription>& columns)
    : session_(session),
      name_(table.schema.empty() ? session.Quoted(table.name)
                                 : session.Quoted(table.schema) + "." + session.Quoted(table.name)),
      hasCounter_(table.Counter() != nullptr) {
    for (const ColumnDescription& described : columns) {
        const ServerColumn* const known = table.Find(described.name);
        if (!known) Raise(ErrorNumber::ItemNotFound, described.name);
        ServerColumn column = *known;
        column.description.type = described.type;
        column.description.size = described.size;
        column.description.digits = described.digits;
        column.counter = column.counter || described.counter;
        const int place = static_cast<int>(columns_.size());
        if (column.counter) counter_ = place;
        all_.push_back(place);
        columns_.push_back(std::move(column));
    }
    hasCounter_ = hasCounter_ || counter_;
    for (const std::string& name : table.key) {
        const auto found = std::ranges::find_if(
            columns_, [&](const ServerColumn& column) { return sql::SameName(column.name, name); });
        if (found == columns_.end()) {
            key_.clear();
            break;
        }
        key_.push_back(static_cast<int>(found - columns_.begin()));
    }
}

Query& TableWriter::Prepared(const std::string& text) {
    constexpr std::size_t kMostStatements = 32;
    const auto found = prepared_.find(text);
    if (found != prepared_.end()) return *found->second;
    if (prepared_.size() >= kMostStatements) prepared_.clear();
    auto query = std::make_unique<Query>(session_);
    query->Prepare(text);
    return *prepared_.emplace(text, std::move(query)).first->second;
}

void TableWriter::RefuseCounterValue(const ColumnSet& set) const {
    if (counter_ && set.Has(*counter_)) {
        if (!session_.Traits().keepsCounters) return;
        RefuseChange(Message("The server gives the counter '{1}' its values itself; leave the column out",
                             columns_[static_cast<std::size_t>(*counter_)].name));
    }
    if (hasCounter_ && !*session_.Traits().lastCounter) {
        RefuseChange(
            Message("It is not known how the server {1} tells the counter of a new row; give the row its value",
                    session_.ServerName()));
    }
}

std::optional<std::int32_t> TableWriter::Insert(const ColumnSet& set, WrittenValues values) {
    RefuseCounterValue(set);
    std::string names;
    std::string markers;
    Parameters parameters;
    auto value = values.begin();
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        if (!names.empty()) {
            names += ",";
            markers += ",";
        }
        names += session_.Quoted(columns_[i].name);
        markers += "?";
        parameters.Add(**value++, columns_[i].Type());
    }
    std::string text = "INSERT INTO " + name_;
    text += names.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + markers + ")";
    const bool given = !hasCounter_ || (counter_ && set.Has(*counter_));
    if (!given && session_.Traits().counterInBatch) text.append("; ").append(session_.Traits().lastCounter);
    Query& insert = Prepared(text);
    insert.Execute(parameters);
    std::optional<std::int32_t> counter;
    if (!given) counter = ReadCounter(insert, text);
    insert.CloseCursor();
    return counter;
}

std::optional<std::int32_t> TableWriter::ReadCounter(Query& insert, const std::string& text) {
    const auto read = [](Query& query) { return query.Fetch() ? query.Whole(0) : std::nullopt; };
    std::optional<std::int32_t> counter;
    if (session_.Traits().counterInBatch) {
        bool more = true;
        while (insert.Columns() == 0 && more) more = insert.NextResult();
        if (more) counter = read(insert);
    } else {
        Query query(session_);
        query.ExecuteDirect(session_.Traits().lastCounter, {}, text);
        counter = read(query);
    }
    if (!counter) RefuseChange(Message("The server does not tell the counter of the row that was added"));
    return counter;
}

std::vector<int> TableWriter::With(bool reals) const {
    std::vector<int> chosen;
    for (const int column : all_) {
        const ServerColumn& each = columns_[static_cast<std::size_t>(column)];
        if (each.IsComparable() && (reals || !IsReal(each))) chosen.push_back(column);
    }
    return chosen;
}

std::string TableWriter::Condition(const std::vector<int>& columns, const RowValues& before,
                                   Parameters& parameters) const {
    std::string condition = " WHERE ";
    for (const int column : columns) {
        const auto at = static_cast<std::size_t>(column);
        if (column != columns.front()) condition += " AND ";
        condition += session_.Quoted(columns_[at].name);
        if (before[at].IsNull()) {
            condition += " IS NULL";
        } else {
            condition += " = ?";
            parameters.Add(before[at], columns_[at].Type());
        }
    }
    return condition;
}

std::string TableWriter::Assignments(const ColumnSet& set, WrittenValues values, Parameters& parameters) const {
    std::string assignments;
    auto value = values.begin();
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        if (!assignments.empty()) assignments += ", ";
        assignments += session_.Quoted(columns_[i].name) + " = ?";
        parameters.Add(**value++, columns_[i].Type());
    }
    return assignments;
}

std::int64_t TableWriter::CountWhere(const std::vector<int>& columns, const RowValues& before) {
    Parameters parameters;
    Query& query = Prepared("SELECT COUNT(*) FROM " + name_ + Condition(columns, before, parameters));
    query.Execute(parameters);
    const std::int64_t rows = query.Fetch() ? query.Whole(0).value_or(0) : 0;
    query.CloseCursor();
    return rows;
}

std::int64_t TableWriter::ChangeWhere(const ColumnSet& set, WrittenValues values, const std::vector<int>& columns,
                                      const RowValues& before) {
    Parameters parameters;
    std::string text = "UPDATE " + name_ + " SET " + Assignments(set, values, parameters);
    text += Condition(columns, before, parameters);
    Query& update = Prepared(text);
    update.Execute(parameters);
    const std::int64_t rows = update.AffectedRows();
    update.CloseCursor();
    if (rows < 0) RefuseChange(Message("The driver does not tell whether a row was changed"));
    return rows;
}

void TableWriter::Change(const ColumnSet& set, WrittenValues values, const RowValues& before, bool isOwn) {
    if (!key_.empty()) {
        std::vector<int> told = key_;
        if (!isOwn) {
            for (const int column : With(true)) {
                if (std::ranges::find(key_, column) == key_.end()) told.push_back(column);
            }
        }
        if (ChangeWhere(set, values, told, before) > 0) return;
        if (isOwn) engines::RaiseRowGone(name_);
    } else {
        const std::int64_t rows = CountWhere(With(true), before);
        if (rows > 1) RefuseEqualRows(name_);
        if (rows == 1 && ChangeWhere(set, values, With(true), before) > 0) return;
    }
    ChangeIfUnchanged(set, values, before);
}

/// A server may round what it is given for comparing, a double's last digits or a fraction of a second: what it now
/// answers is compared with what it answered before.
void TableWriter::ChangeIfUnchanged(const ColumnSet& set, WrittenValues values, const RowValues& before) {
    const std::vector<int> identity = key_.empty() ? With(false) : key_;
    std::string text = "SELECT ";
    for (const int column : all_) {
        if (column > 0) text += ",";
        text += session_.Quoted(columns_[static_cast<std::size_t>(column)].name);
    }
    Parameters parameters;
    text += " FROM " + name_ + Condition(identity, before, parameters);
    Query query(session_);
    query.ExecuteDirect(text, parameters, text);
    const auto rows = ReadRows(query, session_, FieldsOf(query), {}, text);
    query.CloseCursor();
    const auto isUnchanged = [&](std::size_t row) {
        return std::ranges::all_of(
            all_, [&](int column) { return rows->GetValue(row, column).Is(before[static_cast<std::size_t>(column)]); });
    };
    std::size_t unchanged = 0;
    for (std::size_t row = 0; row < rows->Rows(); ++row) unchanged += isUnchanged(row) ? 1 : 0;
    if (rows->Rows() == 0) engines::RaiseRowGone(text);
    if (unchanged == 0) engines::RaiseRowChanged(text);
    if (rows->Rows() > 1) RefuseEqualRows(name_);
    if (ChangeWhere(set, values, identity, before) == 0) engines::RaiseRowChanged(text);
}

std::int64_t TableWriter::CountRows() {
    Query& query = Prepared("SELECT COUNT(*) FROM " + name_);
    query.Execute({});
    const std::int64_t rows = query.Fetch() ? query.Whole(0).value_or(0) : 0;
    query.CloseCursor();
    return rows;
}

}  // namespace kpTables::engines::odbc
