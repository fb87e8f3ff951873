// Reports, beside the statements that a specialist would write for this server.
#include <algorithm>
#include <cmath>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "../Digest.h"
#include "../Report.h"
#include "../Reports.h"
#include "Benchmarks.h"
#include "Books.h"
#include "Server.h"
#include "kpTables/Book.h"
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"

namespace kpTables::bench {

namespace {

std::string Replaced(const std::string& text, const char* pattern, const char* with) {
    return std::regex_replace(text, std::regex(pattern), with);
}

/// The statement by hand, in this server's words.
std::string ForServer(std::string text) {
    text = Replaced(text, "(BillID|dpID|ksID|KSID|pjID|pdID|ClassCode|项目ID)", "\"$1\"");
    text = Replaced(text, " CROSS JOIN ", " JOIN ");
    text = Replaced(text, "TOTAL\\((R.q)\\) FILTER (\\([^)]*\\))", "COALESCE(SUM($1) FILTER $2, 0)");
    return Replaced(text, "BY \\+R", "BY R");
}

constexpr double kScale = 10'000;

/// Money comes as its count of ten-thousandths, exact; dates written.
std::vector<double> DigestOf(const ServerRows& rows, std::string_view kinds, bool ordered) {
    Digest digest(ordered);
    for (int row = 0; row < rows.Count(); ++row) {
        for (int column = 0; column < rows.Columns(); ++column) {
            const std::string text = rows.Text(row, column);
            if (rows.IsNull(row, column)) {
                digest.Null();
            } else if (kinds[static_cast<std::size_t>(column)] == 'k') {
                digest.Key(text);
            } else if (kinds[static_cast<std::size_t>(column)] == 'd') {
                digest.Figure(Date::ParseIso(text.substr(0, 10))->Serial());
            } else {
                digest.Figure(std::stod(text) / (kinds[static_cast<std::size_t>(column)] == 'm' ? kScale : 1));
            }
        }
        digest.EndRow();
    }
    return digest.Figures();
}

std::vector<double> DigestOf(Recordset& rows, std::string_view kinds, bool ordered) {
    Digest digest(ordered);
    for (; !rows.Eof(); rows.MoveNext()) {
        for (int column = 0; column < rows.FieldCount(); ++column) {
            const Variant value = rows.GetValue(column);
            if (value.IsNull()) {
                digest.Null();
            } else if (kinds[static_cast<std::size_t>(column)] == 'k') {
                digest.Key(Text(value));
            } else if (kinds[static_cast<std::size_t>(column)] == 'd') {
                digest.Figure(CDate(value).Serial());
            } else {
                digest.Figure(CDbl(value));
            }
        }
        digest.EndRow();
    }
    return digest.Figures();
}

/// Every value is looked at, as a program that shows rows does.
std::size_t BytesOf(const ServerRows& rows) {
    std::size_t bytes = 0;
    for (int row = 0; row < rows.Count(); ++row) {
        for (int column = 0; column < rows.Columns(); ++column) bytes += rows.Value(row, column).size();
    }
    return bytes;
}

}  // namespace

bool BenchServerReports(const ServerSetting& setting, const std::string& book) {
    const auto connection = OpenBook(BookAddress(book));
    const Server server(ServerAddress(), book);
    bool same = true;
    int number = 0;
    for (const ReportCase& report : Reports()) {
        CTables tables;
        tables.Cnn(connection);
        tables.isSQL(report.isSQL);
        const std::string name = "r" + std::to_string(++number);
        server.Prepare(name, ForServer(report.byHand));
        const auto theirAnswer = server.Ask(name, {});
        const auto ourAnswer = report.ask(tables);
        if (!SameFigures(DigestOf(*ourAnswer, report.columns, report.ordered),
                         DigestOf(theirAnswer, report.columns, report.ordered))) {
            std::fprintf(stderr, "%s: the answers differ\n", report.name.c_str());
            same = false;
        }
        Row processor{report.name + ": " + std::to_string(theirAnswer.Count()) + " rows",
                      report.rival,
                      "CPU s",
                      4,
                      {},
                      {},
                      RatioUpTo(1.2)};
        Row seconds = processor;
        seconds.unit = "s";
        seconds.goal = {};
        for (int run = 0; run < setting.runs; ++run) {
            constexpr int kTimes = 5;
            CostMeter ours;
            for (int i = 0; i < kTimes; ++i) report.ask(tables);
            const Cost our = ours.Read();
            CostMeter theirs;
            std::size_t bytes = 0;
            for (int i = 0; i < kTimes; ++i) bytes += BytesOf(server.Ask(name, {}, true));
            const Cost their = theirs.Read();
            if (bytes == 0) throw std::runtime_error("no rows");
            Note(processor, seconds, our, their, 1.0 / kTimes);
        }
        setting.results->Add(processor);
        setting.results->Add(seconds);
    }
    return same;
}

}  // namespace kpTables::bench
