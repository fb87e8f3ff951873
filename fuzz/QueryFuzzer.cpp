// A random query gives the same rows whether it is translated or printed for SQLite node by node, without any
// rewriting; where it asks for an order, the keys come in the same sequence.
#include <sqlite3.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Input.h"
#include "SmallBook.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "query/Printer.h"
#include "query/RandomQuery.h"
#include "text/CaseMapping.h"
#include "text/FoldedText.h"

namespace {

using namespace kpTables;
using kpTables::fuzz::Input;
using kpTables::fuzz::Require;
namespace query = kpTables::fuzz::query;

using QueriedRow = std::vector<std::string>;

std::string Shown(double number) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.4f", number == 0 ? 0.0 : number);
    return buffer;
}

// Which of two equal texts stands for a group is open.
std::string Shown(std::string_view text) { return '\'' + text::LowerCase(text::WithoutTrailingBlanks(text)); }

std::vector<QueriedRow> Translated(const std::string& text) {
    std::vector<QueriedRow> rows;
    const RecordsetPtr answer = fuzz::SmallBook().Execute(text);
    for (; !answer->Eof(); answer->MoveNext()) {
        QueriedRow row;
        for (int i = 0; i < answer->FieldCount(); ++i) {
            const Variant value = answer->GetValue(i);
            if (value.IsNull()) {
                row.emplace_back("Null");
            } else if (const auto* date = value.If<Date>()) {
                row.push_back(Shown(date->ToIso()));
            } else if (const auto* known = value.If<std::string>()) {
                row.push_back(Shown(*known));
            } else {
                row.push_back(Shown(CDbl(value)));
            }
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<QueriedRow> Naive(const query::Select& select) {
    constexpr double kTenThousandths = 10000;
    sqlite3* const database = fuzz::SmallBook().GetDatabase().Get();
    const std::string text = NaiveText(select);
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(database, text.c_str(), -1, &prepared, nullptr);
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement(prepared, sqlite3_finalize);
    Require(prepared != nullptr, sqlite3_errmsg(database), text);
    std::vector<QueriedRow> rows;
    int code = 0;
    while ((code = sqlite3_step(prepared)) == SQLITE_ROW) {
        QueriedRow row;
        for (int i = 0; i < sqlite3_column_count(prepared); ++i) {
            const query::Kind kind = select.items[static_cast<std::size_t>(i)].value.kind;
            if (sqlite3_column_type(prepared, i) == SQLITE_NULL) {
                row.emplace_back("Null");
            } else if (kind == query::Kind::Text || kind == query::Kind::Day) {
                row.push_back(Shown(reinterpret_cast<const char*>(sqlite3_column_text(prepared, i))));
            } else {
                const double number = sqlite3_column_double(prepared, i);
                row.push_back(Shown(kind == query::Kind::Money ? number / kTenThousandths : number));
            }
        }
        rows.push_back(std::move(row));
    }
    Require(code == SQLITE_DONE, sqlite3_errmsg(database), text);
    return rows;
}

std::string Text(const std::vector<QueriedRow>& rows) {
    std::string text;
    for (const QueriedRow& row : rows) {
        for (const std::string& cell : row) text += cell + '|';
        text += '\n';
    }
    return text;
}

std::vector<QueriedRow> KeysOf(const std::vector<QueriedRow>& rows, const query::Select& select) {
    std::vector<QueriedRow> keys;
    for (const QueriedRow& row : rows) {
        keys.emplace_back();
        for (const auto& [item, descending] : select.order) keys.back().push_back(row[item]);
    }
    return keys;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const query::Select select = query::RandomQuery(input);
    const std::string text = HostText(select);
    std::vector<QueriedRow> translated;
    try {
        translated = Translated(text);
    } catch (const Error& error) {
        Require(false, error.Description(), text);
    }
    std::vector<QueriedRow> naive = Naive(select);
    const bool inOrder = KeysOf(translated, select) == KeysOf(naive, select);
    std::sort(translated.begin(), translated.end());
    std::sort(naive.begin(), naive.end());
    if (translated != naive || !inOrder) {
        const std::string about = text + "\n\nfor SQLite:\n" + NaiveText(select) + "\n\ntranslated:\n" +
                                  Text(translated) + "\nnaive:\n" + Text(naive);
        Require(false, "the same rows in the same order", about);
    }
    return 0;
}
