#include "kpTables/bookkeeping/BookCopy.h"

#include <utility>

#include "bookkeeping/OwnTables.h"
#include "bookkeeping/Refusal.h"
#include "bookkeeping/TableSum.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Transaction.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

std::vector<std::string> NamesOf(const TableInfo& table) {
    std::vector<std::string> names;
    for (const auto& column : table.columns) names.push_back(column.name);
    return names;
}

RecordsetPtr RowsOf(Book& book, const TableInfo& table) {
    std::string columns;
    for (const auto& column : table.columns) columns += (columns.empty() ? "[" : ",[") + column.name + "]";
    return book.Execute("Select " + columns + " From [" + table.name + "]");
}

class Copier {
public:
    Copier(Book& from, Book& to, const CopyProgress& progress)
        : from_(from), to_(to), progress_(progress), tables_(from.Tables()) {}

    BookCopy Copy() {
        MakeTables();
        CountSteps();
        for (const TableInfo& table : tables_) copy_.tables.push_back(CopyRows(table));
        for (std::size_t i = 0; i < tables_.size(); ++i) Compare(tables_[i], copy_.tables[i]);
        for (const TableInfo& table : tables_) to_.AdvanceCounter(table.name, from_.LastCounter(table.name));
        return std::move(copy_);
    }

private:
    /// What the host has added, and changed.
    void MakeTables() {
        const auto fresh = to_.Tables();
        for (const TableInfo& table : tables_) {
            const TableInfo* to = FindTable(fresh, table.name);
            if (to) {
                TakeOwnColumns(table, *to, to_);
                TakeColumnTypes(table, *to, to_);
            } else {
                for (std::string& column : MakeTable(table, to_)) copy_.leftDefaults.push_back(std::move(column));
            }
        }
    }

    void CountSteps() {
        if (!progress_) return;
        // Each row is written, and read again.
        for (const TableInfo& table : tables_)
            steps_ += 2 * std::int64_t{CLng(from_.Execute("Select Count(*) From [" + table.name + "]")->GetValue(0))};
    }

    void Step() {
        constexpr std::int64_t kBetween = 1000;
        if (++done_ % kBetween == 0 && progress_) progress_(done_, steps_);
    }

    TableSum CopyRows(const TableInfo& table) {
        TableSum sum{table.name};
        const auto rows = RowsOf(from_, table);
        const auto appender = to_.AppendTo(table.name, NamesOf(table));
        std::vector<Variant> values(table.columns.size());
        for (; !rows->Eof(); rows->MoveNext(), Step()) {
            ++sum.rows;
            sum.checksum += RowChecksum(*rows);
            for (std::size_t column = 0; column < values.size(); ++column)
                values[column] = rows->GetValue(static_cast<int>(column));
            try {
                appender->Append(values);
            } catch (const Error& error) {
                throw Error(error.Number(), Message("row {1} of {2} (it begins with {3}) cannot be copied: {4}",
                                                    sum.rows, table.name, Text(values.front()), error.Description()));
            }
        }
        return sum;
    }

    void Compare(const TableInfo& table, const TableSum& sum) {
        TableSum copied{table.name};
        for (const auto rows = RowsOf(to_, table); !rows->Eof(); rows->MoveNext(), Step()) {
            ++copied.rows;
            copied.checksum += RowChecksum(*rows);
        }
        if (copied == sum) return;
        if (copied.rows != sum.rows)
            RefuseWith(Message("{1} has {2} rows, and its copy {3}", table.name, sum.rows, copied.rows));
        RefuseWith(
            Message("the copy of {1} does not hold the values of the book: a value does not fit its column's type",
                    table.name));
    }

    Book& from_;
    Book& to_;
    const CopyProgress& progress_;
    std::vector<TableInfo> tables_;
    std::int64_t steps_ = 0;
    std::int64_t done_ = 0;
    BookCopy copy_;
};

}  // namespace

HeaderDialect HeaderDialectOf(Book& book) {
    const auto tables = book.Tables();
    const TableInfo* header = FindTable(tables, "Header");
    return header && FindColumn(*header, "TableName") ? HeaderDialect::SqlServer : HeaderDialect::Jet;
}

BookCopy CopyBook(Book& from, const BookPtr& to, const CopyProgress& progress) {
    // All is read of one moment.
    const Transaction reading(from);
    Transaction writing(*to);
    BookCopy copy = Copier(from, *to, progress).Copy();
    writing.Commit();
    return copy;
}

}  // namespace kpTables::bookkeeping
