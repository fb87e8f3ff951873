#include "BalanceTables.h"

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "Child.h"
#include "RawDatabase.h"

namespace kpTables::bench {

namespace {

bool SameCell(sqlite3_stmt* left, sqlite3_stmt* right, int column) {
    const int type = sqlite3_column_type(left, column);
    if (type == SQLITE_FLOAT || sqlite3_column_type(right, column) == SQLITE_FLOAT) {
        const double l = sqlite3_column_double(left, column);
        const double r = sqlite3_column_double(right, column);
        return std::abs(l - r) <= 1e-9 * std::max(1.0, std::abs(l));
    }
    if (type != sqlite3_column_type(right, column)) {
        return false;
    }
    return type == SQLITE_NULL || std::string(reinterpret_cast<const char*>(sqlite3_column_text(left, column))) ==
                                      reinterpret_cast<const char*>(sqlite3_column_text(right, column));
}

std::int64_t RowsInCommon(const std::string& left, const std::string& right) {
    const RawDatabase leftBook(left);
    const RawDatabase rightBook(right);
    const char* text = "SELECT * FROM 仓库余额表 ORDER BY 月份, dpID, pdID";
    RawStatement leftRows = leftBook.Prepare(text);
    RawStatement rightRows = rightBook.Prepare(text);
    std::int64_t rows = 0;
    for (;;) {
        const bool more = leftRows.Step();
        if (more != rightRows.Step()) {
            throw std::runtime_error("the balance tables have different numbers of rows");
        }
        if (!more) {
            return rows;
        }
        ++rows;
        for (int column = 0; column < sqlite3_column_count(leftRows.Get()); ++column) {
            if (!SameCell(leftRows.Get(), rightRows.Get(), column)) {
                throw std::runtime_error("the balance tables differ in row " + std::to_string(rows) + ", " +
                                         sqlite3_column_name(leftRows.Get(), column));
            }
        }
    }
}

}  // namespace

double CompareBalances(const std::filesystem::path& left, const std::filesystem::path& right) {
    try {
        return InChild([&] {
                   return std::vector<double>{static_cast<double>(RowsInCommon(left.string(), right.string()))};
               })
            .figures.at(0);
    } catch (const std::exception&) {
        return -1;
    }
}

}  // namespace kpTables::bench
