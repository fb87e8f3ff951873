// Figures drawn as bars.
#pragma once

#include <string>
#include <vector>

namespace kpTables::kpbook::output {

class Output;

struct ChartSeries {
    std::string name;
    std::vector<double> values;  ///< one a category
};

struct Chart {
    enum class Shape {
        Columns,  ///< upright, series side by side: few series over time
        Stacked,  ///< upright, series on top of each other: parts of a whole over time
        Bars,     ///< lying, for names
    };
    std::string title;
    Shape shape = Shape::Columns;
    std::vector<std::string> categories;
    std::vector<ChartSeries> series;

    /// Without figures there is nothing to draw.
    bool IsEmpty() const noexcept;
};

/// The chart as an SVG element with its title and, for several series, a legend, for a page of HTML.
std::string SvgChart(const Chart& chart);
/// Draws the chart with characters, a bar a line.
void WriteTerminalChart(const Chart& chart, Output& output);

}  // namespace kpTables::kpbook::output
