#include <string>
#include <vector>

#include "bookkeeping/Query.h"
#include "kpTables/Convert.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/Check.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

using Row = std::vector<Variant>;

std::string Condition(const std::string& column, const Variant& value) {
    return value.IsNull() ? column + " Is Null" : column + "=" + Text(value);
}

/// The text that selects the rows of one key, for every key with more than one row.
std::vector<std::string> DoubledKeys(Connection& book) {
    std::vector<std::string> keys;
    const auto rows =
        book.Execute("Select dpID,年份,月份,pdID From 仓库余额表 Group by dpID,年份,月份,pdID Having Count(*)>1");
    for (; !rows->Eof(); rows->MoveNext()) {
        keys.push_back(" From 仓库余额表 Where " + Condition("dpID", rows->GetValue(0)) + " And " +
                       Condition("年份", rows->GetValue(1)) + " And " + Condition("月份", rows->GetValue(2)) + " And " +
                       Condition("pdID", rows->GetValue(3)));
    }
    return keys;
}

Row ReadRow(const Recordset& rows) {
    Row row;
    for (int column = 0; column < rows.FieldCount(); ++column) row.push_back(rows.GetValue(column));
    return row;
}

bool Equal(const Row& a, const Row& b) {
    for (std::size_t column = 0; column < a.size(); ++column) {
        if (!a[column].Is(b[column])) return false;
    }
    return true;
}

/// The different rows of a key, in their order.
std::vector<Row> Different(Recordset& rows) {
    std::vector<Row> different;
    for (; !rows.Eof(); rows.MoveNext()) {
        Row row = ReadRow(rows);
        bool known = false;
        for (const Row& other : different) known = known || Equal(row, other);
        if (!known) different.push_back(std::move(row));
    }
    return different;
}

/// Rows have no id, so those of a key are taken out and the different ones put back.
void Replace(Connection& book, const std::string& key, const std::vector<Row>& rows) {
    book.Execute("Delete" + key);
    const auto table = book.Open("Select *" + key, SourceKind::Text);
    for (const Row& row : rows) {
        table->AddNew();
        for (std::size_t column = 0; column < row.size(); ++column)
            table->SetValue(static_cast<int>(column), row[column]);
        table->Update();
    }
    table->Close();
}

/// The number of rows that are equal to another; with remove they are removed.
std::int64_t Doubled(Connection& book, bool remove) {
    std::int64_t doubled = 0;
    for (const auto& key : DoubledKeys(book)) {
        const auto rows = book.Execute("Select *" + key);
        const auto different = Different(*rows);
        const auto equal = rows->RecordCount() - std::ssize(different);
        if (remove && equal > 0) Replace(book, key, different);
        doubled += equal;
    }
    return doubled;
}

}  // namespace

RepairResult RemoveDoubledRows(Connection& book, const std::shared_ptr<Host>& host) {
    RepairResult result;
    for (;;) {
        const auto seen = Doubled(book, false);
        result.doubled = seen;
        if (seen == 0) return result;
        const std::string text =
            Message("仓库余额表 has {1} doubled rows that are equal in every column; remove them?", seen);
        if (host->MsgBox(text, MessageButtons::YesNo, Message("repair")) != MessageAnswer::Yes) return result;
        Transaction transaction(book);
        result.removed = Doubled(book, true);
        // Others may have written in the meantime; the host agreed to what it was told.
        if (result.removed != seen) continue;
        transaction.Commit();
        return result;
    }
}

}  // namespace kpTables::bookkeeping
