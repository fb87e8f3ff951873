#include "Answers.h"

#include <sqlite3.h>

#include <stdexcept>
#include <string>

#include "Digest.h"
#include "kpTables/Convert.h"

namespace kpTables::bench {

namespace {

constexpr double kTenThousandths = 10'000;

void CheckColumns(int columns, ColumnKinds kinds) {
    if (columns != static_cast<int>(kinds.size())) {
        throw std::runtime_error("an answer has " + std::to_string(columns) + " columns");
    }
}

}  // namespace

std::vector<double> DigestOf(Recordset& rows, ColumnKinds kinds, bool ordered) {
    CheckColumns(rows.FieldCount(), kinds);
    Digest digest(ordered);
    for (; !rows.Eof(); rows.MoveNext()) {
        for (int column = 0; column < rows.FieldCount(); ++column) {
            const Variant value = rows.GetValue(column);
            const char kind = kinds[static_cast<std::size_t>(column)];
            if (value.IsNull()) {
                digest.Null();
            } else if (kind == 'k' || kind == 'd') {
                digest.Key(Text(value));
            } else {
                digest.Figure(CDbl(value));
            }
        }
        digest.EndRow();
    }
    return digest.Figures();
}

std::vector<double> DigestOf(RawStatement& rows, ColumnKinds kinds, bool ordered) {
    CheckColumns(sqlite3_column_count(rows.Get()), kinds);
    Digest digest(ordered);
    while (rows.Step()) {
        for (int column = 0; column < sqlite3_column_count(rows.Get()); ++column) {
            const char kind = kinds[static_cast<std::size_t>(column)];
            if (sqlite3_column_type(rows.Get(), column) == SQLITE_NULL) {
                digest.Null();
            } else if (kind == 'k' || kind == 'd') {
                const std::string text = reinterpret_cast<const char*>(sqlite3_column_text(rows.Get(), column));
                digest.Key(kind == 'd' ? Text(Variant(Date::ParseIso(text).value())) : text);
            } else {
                const double value = sqlite3_column_double(rows.Get(), column);
                digest.Figure(kind == 'm' ? value / kTenThousandths : value);
            }
        }
        digest.EndRow();
    }
    return digest.Figures();
}

}  // namespace kpTables::bench
