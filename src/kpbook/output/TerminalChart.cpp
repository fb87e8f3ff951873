#include <algorithm>
#include <cmath>

#include "kpTables/Variant.h"
#include "kpbook/Utf8.h"
#include "kpbook/output/Chart.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/Presentation.h"

namespace kpTables::kpbook::output {

namespace {

constexpr double kBarWidth = 40;

std::string PaddedTo(const std::string& text, std::size_t width) {
    const auto taken = DisplayWidth(text);
    return text + std::string(width > taken ? width - taken : 0, ' ');
}

/// Whole blocks, and an eighth's block for the rest, so that small figures can be told apart.
std::string BarOf(double part) {
    static constexpr const char* kEighths[] = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
    const auto eighths = static_cast<int>(std::lround(std::min(part, 1.0) * kBarWidth * 8));
    std::string bar;
    for (int i = 0; i < eighths / 8; ++i) bar += "█";
    return bar + kEighths[eighths % 8];
}

double LargestOf(const Chart& chart) {
    double largest = 0;
    for (const auto& series : chart.series) {
        for (const double value : series.values) largest = std::max(largest, std::fabs(value));
    }
    return largest;
}

std::size_t WidestOf(const std::vector<std::string>& texts) {
    std::size_t width = 0;
    for (const auto& text : texts) width = std::max(width, DisplayWidth(Printable(text)));
    return width;
}

}  // namespace

void WriteTerminalChart(const Chart& chart, Output& output) {
    if (chart.IsEmpty()) return;
    output.Write("\n" + Printable(chart.title) + "\n");
    std::vector<std::string> names;
    if (chart.series.size() > 1) {
        for (const auto& series : chart.series) names.push_back(series.name);
    }
    const auto categoryWidth = WidestOf(chart.categories);
    const auto nameWidth = WidestOf(names);
    const double largest = LargestOf(chart);
    for (std::size_t i = 0; i < chart.categories.size(); ++i) {
        for (std::size_t k = 0; k < chart.series.size(); ++k) {
            const double value = chart.series[k].values[i];
            std::string line = PaddedTo(k == 0 ? Printable(chart.categories[i]) : "", categoryWidth) + "  ";
            if (!names.empty()) line += PaddedTo(Printable(names[k]), nameWidth) + "  ";
            if (value < 0) line += "-";
            line += BarOf(std::fabs(value) / largest);
            output.Write(line + (value == 0 ? "" : " ") + ShownText(Variant(value), Look::Money) + "\n");
        }
    }
}

}  // namespace kpTables::kpbook::output
