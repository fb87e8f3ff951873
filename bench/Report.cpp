#include "Report.h"

#include <algorithm>
#include <cstdio>

namespace kpTables::bench {

double Minimum(const std::vector<double>& values) { return *std::min_element(values.begin(), values.end()); }

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

double Maximum(const std::vector<double>& values) { return *std::max_element(values.begin(), values.end()); }

std::string Fixed(double value, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

namespace {

/// Columns of the terminal: Chinese characters, three bytes long, take two.
std::size_t Width(const std::string& text) {
    std::size_t width = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        width += byte >= 0xE0 ? 2 : byte >= 0xC0 || byte < 0x80 ? 1 : 0;
    }
    return width;
}

}  // namespace

void PrintTable(std::FILE* file, const std::vector<std::vector<std::string>>& rows, std::size_t textColumns) {
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const auto& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], Width(row[column]));
        }
    }
    for (const auto& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::string blanks(widths[column] - Width(row[column]), ' ');
            const std::string& cell = row[column];
            std::fprintf(file, "  %s", (column < textColumns ? cell + blanks : blanks + cell).c_str());
        }
        std::fputc('\n', file);
    }
    std::fflush(file);
}

}  // namespace kpTables::bench
