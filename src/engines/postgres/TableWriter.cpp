#include "engines/postgres/TableWriter.h"

#include <algorithm>
#include <utility>

#include "engines/common/Failure.h"
#include "engines/postgres/BookLock.h"
#include "engines/postgres/RowReader.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

using engines::ColumnSet;
using engines::RowKey;
using engines::WrittenTable;
using engines::WrittenValues;
using sql::print::postgres::QuotedName;
using sql::print::postgres::QuotedText;

namespace {

std::int64_t WholeAt(const Result& rows, int row, int column) {
    const std::string_view bytes = rows.Value(row, column);
    return bytes.size() == sizeof(std::int32_t) ? WholeOf<std::int32_t>(bytes) : WholeOf<std::int64_t>(bytes);
}

std::int64_t TransactionAt(const Result& rows, int row, int column) {
    return WholeOf<std::uint32_t>(rows.Value(row, column));
}

/// Whether an error is about a row, and not about the connection or the host's wish.
bool IsOfARow(const Database& database, const DatabaseError& error) noexcept {
    return database.IsConnected() && error.Number() != static_cast<std::int32_t>(DatabaseErrorNumber::Cancelled);
}

}  // namespace

TableWriter::TableWriter(Database& database, WrittenTable table, const sql::CatalogTable& known)
    : RowWriter(std::move(table)),
      database_(database),
      quotedName_(QuotedName(Table().name)),
      quotedRowId_(QuotedName(known.rowId)),
      counts_(known.rowId != sql::print::postgres::kHiddenRowId) {
    for (const WrittenTable::Column& column : Table().columns)
        elements_.push_back(ElementOf(sql::FindColumn(known, column.name)->type));
}

TableWriter::~TableWriter() {
    database_.Withdraw(*this);
    for (Kept& kept : kept_) database_.Forget(std::move(kept.name));
}

std::int64_t TableWriter::CountRows() {
    const std::string text = "SELECT COUNT(*) FROM " + quotedName_;
    return database_.Guarded([&] { return database_.Run(text); }).Integer(0, 0);
}

void TableWriter::BeforeRead() {
    // Nobody else changes the book while this connection does.
    if (!database_.InTransaction()) database_.LookForOthers();
}

bool TableWriter::FollowsAnother() const noexcept {
    return database_.InTransaction() && statementsBefore_ == database_.Statements();
}

std::int64_t TableWriter::InsertRow(const ColumnSet& set, WrittenValues values) {
    if (counts_ || !FollowsAnother()) {
        ids_.clear();
        const Written row = WriteNow(Kind::Insert, {}, set, values);
        version_ = row.version;
        return row.id;
    }
    const RowKey row{NextId()};
    Gather(Kind::InsertNumbered, row, set, values);
    return row.id;
}

void TableWriter::InsertRowLater(const ColumnSet& set, WrittenValues values, std::int64_t row,
                                 const engines::RefusedRow& refused) {
    ids_.clear();
    if (!set.Empty() && database_.InTransaction()) return GatherCopied(set, values, row, refused);
    database_.SendPending();
    WriteNow(Kind::Insert, {}, set, values);
}

void TableWriter::GatherCopied(const ColumnSet& set, WrittenValues values, std::int64_t row,
                               const engines::RefusedRow& refused) {
    // Counters are to follow the order of the rows.
    if (copied_.Empty() || copied_.Set() != set || refused_ != &refused) {
        database_.SendPending();
        copied_ = CopyBatch(set, elements_);
        refused_ = &refused;
        firstRow_ = row;
    }
    copied_.Add(values);
    database_.Pend(*this);
    if (copied_.IsFull()) database_.SendPending();
}

void TableWriter::ChangeRow(const RowKey& row, const ColumnSet& set, WrittenValues values) {
    const bool isRead = row.moment == database_.others.Count();
    const Kind kind = isRead ? Kind::Change : Kind::ChangeVersion;
    if (batch_.Has(row.id)) database_.SendPending();
    RowKey key = row;
    if (row.version < 0) key.version = versions_[static_cast<std::size_t>(-row.version - 1)];
    if (FollowsAnother() && IsFree(set)) return Gather(kind, key, set, values);
    version_ = WriteNow(kind, key, set, values).version;
}

void TableWriter::DeleteRow(std::int64_t rowId) {
    const std::string text = "DELETE FROM " + quotedName_ + " WHERE " + quotedRowId_ + " = " + std::to_string(rowId);
    Changing(database_, [&] { database_.Run(text); });
}

void TableWriter::Gather(Kind kind, const RowKey& row, const ColumnSet& set, WrittenValues values) {
    if (batch_.Empty() || batch_.GetKind() != kind) {
        database_.SendPending();
        batch_ = RowBatch(kind, elements_);
    }
    batch_.Add(row, set, values);
    version_ = -static_cast<std::int64_t>(versions_.size()) - 1;
    database_.Pend(*this);
    if (batch_.IsFull()) database_.SendPending();
    statementsBefore_ = database_.Statements();
}

TableWriter::Written TableWriter::WriteNow(Kind kind, const RowKey& row, const ColumnSet& set, WrittenValues values) {
    RowBatch one(kind, elements_);
    one.Add(row, set, values);
    const Written written = Write(one, 0);
    statementsBefore_ = database_.Statements();
    return written;
}

void TableWriter::Send() {
    if (!copied_.Empty()) {
        const CopyBatch rows = std::exchange(copied_, {});
        return Copy(rows, 0, rows.Rows());
    }
    const RowBatch batch = std::exchange(batch_, {});
    try {
        versions_.push_back(Write(batch, std::nullopt).version);
    } catch (const DatabaseError& error) {
        versions_.push_back(0);
        if (!IsOfARow(database_, error)) throw;
        WriteOneByOne(batch);
    }
}

void TableWriter::Drop() noexcept {
    batch_ = {};
    copied_ = {};
}

void TableWriter::DropLater() noexcept {
    if (copied_.Empty()) return;
    database_.Withdraw(*this);
    copied_ = {};
}

void TableWriter::Copy(const CopyBatch& rows, std::size_t first, std::size_t count) {
    try {
        if (count == 1) {
            Changing(database_, [&] {
                const Command insert{StatementFor(Kind::Insert, rows.Set()), rows.ParametersOf(first)};
                database_.RunTogether({insert}, TextOf(Kind::Insert, rows.Set()));
            });
        } else {
            const std::string copy = CopyTextOf(rows.Set());
            Changing(database_, [&] { database_.CopyRows(copy, rows.Slice(first, count)); });
        }
    } catch (const DatabaseError& error) {
        if (!IsOfARow(database_, error)) throw;
        if (count == 1) return (*refused_)(firstRow_ + static_cast<std::int64_t>(first), error);
        const std::size_t part = ChecksEachRow() ? 1 : (count + 1) / 2;
        for (std::size_t done = 0; done < count; done += part) Copy(rows, first + done, std::min(part, count - done));
    }
}

bool TableWriter::ChecksEachRow() {
    if (!checksEachRow_) {
        Parameters parameters;
        parameters.BindText(1, quotedName_);
        constexpr std::string_view kAsk = "SELECT row_security_active(CAST($1 AS text))";
        checksEachRow_ = database_.Guarded([&] { return database_.Ask(kAsk, parameters); }).Value(0, 0) == "t";
    }
    return *checksEachRow_;
}

void TableWriter::WriteOneByOne(const RowBatch& batch) {
    for (std::size_t row = 0; row < batch.Rows(); ++row) {
        try {
            Write(batch, row);
        } catch (const DatabaseError& error) {
            const std::size_t behind = batch.Rows() - row - 1;
            if (!IsOfARow(database_, error) || behind == 0) throw;
            throw DatabaseError(error.Number(),
                                CountedMessage(static_cast<std::int64_t>(behind),
                                               "{2}; {1} row that was written behind it is not in the book either",
                                               "{2}; {1} rows that were written behind it are not in the book either",
                                               error.Description()),
                                error.Statement());
        }
    }
}

TableWriter::Written TableWriter::Write(const RowBatch& batch, std::optional<std::size_t> row) {
    const auto isChange = [](Kind kind) { return kind == Kind::Change || kind == Kind::ChangeVersion; };
    return Changing(database_, [&] {
        std::vector<Command> commands;
        if (row) {
            const auto [group, place] = batch.PlaceOf(*row);
            const RowBatch::Group& of = batch.Groups()[group];
            commands.push_back({StatementFor(batch.GetKind(), of.set), RowBatch::ParametersOf(of, place, 1)});
        } else {
            for (const RowBatch::Group& group : batch.Groups()) {
                commands.push_back(
                    {StatementFor(batch.GetKind(), group.set), RowBatch::ParametersOf(group, 0, group.rows)});
            }
        }
        const std::string text = TextOf(batch.GetKind(), batch.Groups().front().set);
        const std::vector<Result> results = database_.RunTogether(commands, text);
        std::size_t written = 0;
        for (const Result& result : results) written += static_cast<std::size_t>(result.Rows());
        if (written < (row ? 1 : batch.Rows())) RaiseUnchanged(batch, row, text);
        const Result& first = results.front();
        if (isChange(batch.GetKind())) return Written{0, TransactionAt(first, 0, 0)};
        return Written{WholeAt(first, 0, 1), TransactionAt(first, 0, 0)};
    });
}

void TableWriter::RaiseUnchanged(const RowBatch& batch, std::optional<std::size_t> row, const std::string& text) {
    if (!row || batch.GetKind() == Kind::Change) engines::RaiseRowGone(text);
    const auto [group, place] = batch.PlaceOf(*row);
    const std::string find =
        "SELECT COUNT(*) FROM " + quotedName_ + " WHERE " + quotedRowId_ + " = ANY (CAST($1 AS bigint[]))";
    Parameters parameters;
    parameters.BindBytes(1, batch.Groups()[group].arrays.front().Slice(place, 1));
    if (database_.Ask(find, parameters).Integer(0, 0) > 0) engines::RaiseRowChanged(text);
    engines::RaiseRowGone(text);
}

std::int64_t TableWriter::NextId() {
    if (ids_.empty()) {
        const std::string sequence = "CAST(pg_get_serial_sequence(" + QuotedText(quotedName_) + ", " +
                                     QuotedText(sql::print::postgres::kHiddenRowId) + ") AS regclass)";
        const std::string text = "SELECT nextval((SELECT " + sequence + ")) FROM generate_series(1, 1000)";
        const Result ids = database_.Guarded([&] { return database_.Run(text); });
        for (int row = ids.Rows(); row > 0; --row) ids_.push_back(ids.Integer(row - 1, 0));
        statementsBefore_ = database_.Statements();
    }
    const std::int64_t id = ids_.back();
    ids_.pop_back();
    return id;
}

bool TableWriter::IsFree(const ColumnSet& set) {
    const std::vector<WrittenTable::Column>& columns = Table().columns;
    if (!uniqueColumns_) {
        constexpr std::string_view kUnique =
            "SELECT attname FROM pg_index JOIN pg_attribute ON attrelid = indrelid AND attnum = ANY (indkey) WHERE "
            "indrelid = CAST(CAST($1 AS text) AS regclass) AND indisunique";
        Parameters parameters;
        parameters.BindText(1, quotedName_);
        const Result found = database_.Guarded([&] { return database_.Ask(kUnique, parameters); });
        statementsBefore_ = database_.Statements();
        uniqueColumns_.emplace(columns.size());
        for (int row = 0; row < found.Rows(); ++row) {
            for (std::size_t i = 0; i < columns.size(); ++i) {
                if (sql::print::postgres::ServerName(columns[i].name) == found.Value(row, 0))
                    uniqueColumns_->Add(static_cast<int>(i));
            }
        }
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (set.Has(static_cast<int>(i)) && uniqueColumns_->Has(static_cast<int>(i))) return false;
    }
    return true;
}

const std::string& TableWriter::StatementFor(Kind kind, const ColumnSet& set) {
    for (const Kept& one : kept_) {
        if (one.kind == kind && one.set == set) return one.name;
    }
    const std::string text = TextOf(kind, set);
    kept_.push_back({kind, set, database_.Prepare(text, text)});
    return kept_.back().name;
}

std::string TableWriter::CopyTextOf(const ColumnSet& set) const {
    std::string names;
    for (std::size_t i = 0; i < Table().columns.size(); ++i) {
        if (set.Has(static_cast<int>(i)))
            names.append(names.empty() ? "" : ", ").append(QuotedName(Table().columns[i].name));
    }
    return "COPY " + quotedName_ + " (" + names + ") FROM STDIN (FORMAT binary)";
}

std::string TableWriter::TextOf(Kind kind, const ColumnSet& set) const {
    const std::vector<WrittenTable::Column>& columns = Table().columns;
    int number = 0;
    std::string arrays;
    std::string names;
    std::string assignments;
    const auto add = [&](ServerType element) {
        arrays.append(arrays.empty() ? "$" : ", $").append(std::to_string(++number));
        arrays.append("::").append(ArrayName(element));
        return "kp_new.c" + std::to_string(number);
    };
    if (kind != Kind::Insert) add(kInteger8);
    if (kind == Kind::InsertNumbered) names = quotedRowId_;
    if (kind == Kind::ChangeVersion) add(kTransaction);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        const std::string name = QuotedName(columns[i].name);
        names.append(names.empty() ? "" : ", ").append(name);
        assignments.append(assignments.empty() ? "" : ", ").append(name).append(" = ").append(add(elements_[i]));
    }
    if (kind == Kind::Insert || kind == Kind::InsertNumbered) {
        const std::string rows =
            arrays.empty() ? " DEFAULT VALUES" : " (" + names + ") SELECT * FROM unnest(" + arrays + ")";
        return "INSERT INTO " + quotedName_ + rows + " RETURNING xmin, " + quotedRowId_;
    }
    std::string fields;
    for (int i = 1; i <= number; ++i) fields.append(fields.empty() ? "c" : ", c").append(std::to_string(i));
    return "UPDATE " + quotedName_ + " AS kp_old SET " + assignments + " FROM unnest(" + arrays + ") AS kp_new(" +
           fields + ") WHERE kp_old." + quotedRowId_ + " = kp_new.c1" +
           (kind == Kind::ChangeVersion ? " AND kp_old.xmin = kp_new.c2" : "") + " RETURNING kp_old.xmin";
}

}  // namespace kpTables::engines::postgres
