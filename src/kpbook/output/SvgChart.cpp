#include <algorithm>
#include <cmath>
#include <cstdio>

#include "kpTables/Variant.h"
#include "kpbook/Utf8.h"
#include "kpbook/output/Chart.h"
#include "kpbook/output/HtmlText.h"
#include "kpbook/output/Presentation.h"

namespace kpTables::kpbook::output {

namespace {

constexpr const char* kColors[] = {"#2f6fab", "#d9822b", "#3f9b6b", "#b0503e",
                                   "#7a62a8", "#b79a2e", "#3f97ab", "#8a8a8a"};

constexpr double kWidth = 900;
constexpr double kHeight = 300;
constexpr double kLeft = 64;    // for the figures of the axis
constexpr double kBottom = 28;  // for the categories
constexpr double kTop = 10;
constexpr double kRight = 8;

const char* ColorOf(std::size_t series) { return kColors[series % std::size(kColors)]; }

/// A coordinate: tenths of a pixel are enough.
std::string At(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.1f", value);
    return buffer;
}

/// "12.5万": short enough for an axis.
std::string AxisText(double value) {
    const double size = std::fabs(value);
    const bool isHuge = size >= 1e8;
    const bool isLarge = !isHuge && size >= 1e4;
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%.4g%s",
                  value / (isHuge    ? 1e8
                           : isLarge ? 1e4
                                     : 1),
                  isHuge    ? "亿"
                  : isLarge ? "万"
                            : "");
    return buffer;
}

/// From a round number at or below the least figure to one at or above the greatest.
struct Scale {
    double least = 0;
    double greatest = 0;
    double step = 1;

    Scale(double low, double high) {
        constexpr double kSteps = 5;
        const double span = std::max(high - low, 1e-9);
        const double power = std::pow(10, std::floor(std::log10(span / kSteps)));
        step = power * 10;
        for (const double multiple : {1.0, 2.0, 2.5, 5.0}) {
            if (power * multiple * kSteps >= span) {
                step = power * multiple;
                break;
            }
        }
        least = std::floor(low / step) * step;
        greatest = std::ceil(high / step) * step;
    }
    /// How far up a figure is, from 0 to 1.
    double Part(double value) const { return (value - least) / (greatest - least); }
};

bool HasNegative(const Chart& chart) {
    return std::ranges::any_of(chart.series, [](const ChartSeries& series) {
        return std::ranges::any_of(series.values, [](double value) { return value < 0; });
    });
}

Scale ScaleOf(const Chart& chart, bool isStacked) {
    double low = 0;
    double high = 0;
    for (std::size_t i = 0; i < chart.categories.size(); ++i) {
        double sum = 0;
        for (const auto& series : chart.series) {
            sum = isStacked ? sum + series.values[i] : series.values[i];
            low = std::min(low, sum);
            high = std::max(high, sum);
        }
    }
    return {low, high};
}

std::string Box(double x, double y, double width, double height, std::size_t series, const std::string& tip) {
    return "<rect x=\"" + At(x) + "\" y=\"" + At(y) + "\" width=\"" + At(std::max(width, 0.5)) + "\" height=\"" +
           At(height) + "\" fill=\"" + ColorOf(series) + "\"><title>" + HtmlText(tip) + "</title></rect>\n";
}

std::string Label(double x, double y, const char* anchor, const std::string& text) {
    return "<text x=\"" + At(x) + "\" y=\"" + At(y) + "\" text-anchor=\"" + anchor + "\">" + HtmlText(text) +
           "</text>\n";
}

std::string TipOf(const Chart& chart, std::size_t category, std::size_t series) {
    const std::string name = chart.series.size() > 1 ? " " + chart.series[series].name : "";
    return chart.categories[category] + name + ": " +
           ShownText(Variant(chart.series[series].values[category]), Look::Money);
}

std::string HorizontalLines(const Scale& scale) {
    const double height = kHeight - kTop - kBottom;
    std::string lines;
    for (double value = scale.least; value <= scale.greatest + scale.step / 2; value += scale.step) {
        const double y = kTop + height * (1 - scale.Part(value));
        lines += "<line x1=\"" + At(kLeft) + "\" x2=\"" + At(kWidth - kRight) + "\" y1=\"" + At(y) + "\" y2=\"" +
                 At(y) + "\"/>\n" +
                 Label(kLeft - 6, y + 4, "end", AxisText(std::fabs(value) < scale.step / 2 ? 0 : value));
    }
    return lines;
}

std::string Upright(const Chart& chart) {
    const bool isStacked = chart.shape == Chart::Shape::Stacked && !HasNegative(chart);
    const Scale scale = ScaleOf(chart, isStacked);
    const double height = kHeight - kTop - kBottom;
    const double slot = (kWidth - kLeft - kRight) / static_cast<double>(chart.categories.size());
    const double barWidth = slot * 0.8 / (isStacked ? 1 : static_cast<double>(chart.series.size()));
    constexpr std::size_t kMostLabels = 31;
    const std::size_t everyLabel = (chart.categories.size() + kMostLabels - 1) / kMostLabels;
    std::string svg = HorizontalLines(scale);
    for (std::size_t i = 0; i < chart.categories.size(); ++i) {
        double x = kLeft + slot * static_cast<double>(i) + slot * 0.1;
        double base = 0;
        for (std::size_t k = 0; k < chart.series.size(); ++k) {
            const double value = chart.series[k].values[i];
            const double from = kTop + height * (1 - scale.Part(std::max(base, base + value)));
            const double size = height * std::fabs(value) / (scale.greatest - scale.least);
            if (value != 0) svg += Box(x, from, barWidth, size, k, TipOf(chart, i, k));
            if (isStacked) {
                base += value;
            } else {
                x += barWidth;
            }
        }
        if (i % everyLabel == 0) {
            svg += Label(kLeft + slot * (static_cast<double>(i) + 0.5), kHeight - 8, "middle", chart.categories[i]);
        }
    }
    return "<svg viewBox=\"0 0 " + At(kWidth) + " " + At(kHeight) + "\" role=\"img\">\n" + svg + "</svg>\n";
}

/// The text, cut where it would be wider than the space for names.
std::string Shortened(const std::string& text, std::size_t width) {
    if (DisplayWidth(text) <= width) return text;
    std::string part = text;
    while (!part.empty() && DisplayWidth(part) + 1 > width) {
        do part.pop_back();
        while (!part.empty() && !IsValidUtf8(part));
    }
    return part + "…";
}

std::string Lying(const Chart& chart) {
    constexpr double kNames = 230;
    constexpr std::size_t kNameWidth = 32;
    constexpr double kFigures = 110;
    constexpr double kLine = 26;
    const Scale scale = ScaleOf(chart, false);
    const double width = kWidth - kNames - kFigures;
    const double zero = kNames + width * scale.Part(0);
    std::string svg;
    for (std::size_t i = 0; i < chart.categories.size(); ++i) {
        const double value = chart.series.front().values[i];
        const double y = kLine * static_cast<double>(i);
        const double size = width * std::fabs(value) / (scale.greatest - scale.least);
        svg += Label(kNames - 8, y + 17, "end", Shortened(chart.categories[i], kNameWidth)) +
               Box(value < 0 ? zero - size : zero, y + 4, size, kLine - 8, 0, TipOf(chart, i, 0)) +
               Label((value < 0 ? zero : zero + size) + 6, y + 17, "start", ShownText(Variant(value), Look::Money));
    }
    return "<svg viewBox=\"0 0 " + At(kWidth) + " " + At(kLine * static_cast<double>(chart.categories.size())) +
           "\" role=\"img\">\n" + svg + "</svg>\n";
}

std::string Legend(const Chart& chart) {
    if (chart.series.size() < 2) return "";
    std::string legend = "<p class=\"legend\">";
    for (std::size_t k = 0; k < chart.series.size(); ++k) {
        legend += std::string("<span><i style=\"background:") + ColorOf(k) + "\"></i>" +
                  HtmlText(chart.series[k].name) + "</span> ";
    }
    return legend + "</p>\n";
}

}  // namespace

bool Chart::IsEmpty() const noexcept {
    return std::ranges::none_of(series, [](const ChartSeries& each) {
        return std::ranges::any_of(each.values, [](double value) { return value != 0; });
    });
}

std::string SvgChart(const Chart& chart) {
    if (chart.IsEmpty()) return "";
    return "<figure>\n<figcaption>" + HtmlText(chart.title) + "</figcaption>\n" + Legend(chart) +
           "<div class=\"wide\">" + (chart.shape == Chart::Shape::Bars ? Lying(chart) : Upright(chart)) +
           "</div>\n</figure>\n";
}

}  // namespace kpTables::kpbook::output
