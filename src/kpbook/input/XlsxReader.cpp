#include "kpbook/input/XlsxReader.h"

#include <array>
#include <charconv>
#include <cmath>

#include "kpTables/Convert.h"
#include "kpTables/Date.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"

namespace kpTables::kpbook::input {

namespace {

constexpr std::size_t kMostColumns = 16'384;

/// The number of a column from a place such as "AB12", counted from 0; a large one when it is no place.
std::size_t ColumnOf(std::string_view place) noexcept {
    std::size_t column = 0;
    for (const char letter : place) {
        if (letter < 'A' || letter > 'Z') break;
        column = column * 26 + static_cast<std::size_t>(letter - 'A') + 1;
        if (column > kMostColumns) break;
    }
    return column == 0 ? kMostColumns : column - 1;
}

/// Calls what reads the file, and names the file in its errors.
template <class Action>
auto NamingFile(const std::string& name, Action action) {
    try {
        return action();
    } catch (const CommandError& error) {
        const std::string what = error.what();
        throw CommandError(what.starts_with(name) ? what : name + ": " + what);
    }
}

}  // namespace

XlsxReader::XlsxReader(std::string bytes, const std::string& name, const std::string& sheet)
    : name_(name),
      archive_(std::move(bytes), name),
      workbook_(NamingFile(name, [&] { return ReadWorkbook(archive_, sheet); })) {
    if (!archive_.Open(workbook_.sheet)) throw CommandError(Message("{1}: is damaged: a sheet is missing", name_));
    parser_ =
        std::make_unique<XmlParser>([this](char* buffer, std::size_t size) { return archive_.Read(buffer, size); });
    parser_->onStart = [this](std::string_view element, const XmlAttributes& attributes) {
        Start(element, attributes);
    };
    parser_->onEnd = [this](std::string_view element) { End(element); };
    parser_->onText = [this](std::string_view text) {
        if (inValue_) value_ += text;
    };
}

bool XlsxReader::Next() {
    do {
        rowIsRead_ = false;
        const bool more = NamingFile(name_, [this] { return parser_->Run(); });
        if (!more && !rowIsRead_) return false;
        SetWidth();
    } while (cells_.empty() || (width_ > 0 && cells_ == std::vector<std::string>(width_)));
    if (width_ == 0) width_ = cells_.size();
    return true;
}

void XlsxReader::SetWidth() {
    while (cells_.size() > width_ && cells_.back().empty()) cells_.pop_back();
    if (cells_.size() < width_) cells_.resize(width_);
}

void XlsxReader::Start(std::string_view name, const XmlAttributes& attributes) {
    if (name == "row") {
        const auto place = attributes["r"];
        std::int64_t line = line_ + 1;
        std::from_chars(place.data(), place.data() + place.size(), line);
        line_ = line;
        cells_.clear();
        problem_.clear();
        column_ = kMostColumns;
    } else if (name == "c") {
        StartCell(attributes);
    } else if (name == "rPh") {
        inPhonetic_ = true;
    }
    inValue_ = (name == "v" || name == "t") && !inPhonetic_;
}

void XlsxReader::StartCell(const XmlAttributes& attributes) {
    const auto place = attributes["r"];
    column_ = place.empty() ? cells_.size() : ColumnOf(place);
    if (column_ >= kMostColumns) throw CommandError(Message("is damaged: there is no cell {1}", place));
    type_ = attributes["t"];
    value_.clear();
    const auto style = attributes["s"];
    std::size_t number = 0;
    std::from_chars(style.data(), style.data() + style.size(), number);
    isDate_ = number < workbook_.dateStyles.size() && workbook_.dateStyles[number];
}

void XlsxReader::End(std::string_view name) {
    inValue_ = false;
    if (name == "c") EndCell();
    if (name == "rPh") inPhonetic_ = false;
    if (name != "row") return;
    rowIsRead_ = true;
    parser_->Pause();
}

void XlsxReader::EndCell() {
    std::string text = std::move(value_);
    if (type_ == "s") {
        std::size_t number = 0;
        const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
        if (read.ec != std::errc() || number >= workbook_.texts.size()) {
            throw CommandError(Message("is damaged: line {1} has a text that is not there", line_));
        }
        text = workbook_.texts[number];
    } else if (type_ == "b") {
        text = text == "1" ? "True" : "False";
    } else if (type_ == "e") {
        if (problem_.empty()) problem_ = Message("field {1}: the sheet's error {2}", column_ + 1, text);
    } else if (type_.empty() || type_ == "n") {
        text = NumberText(text);
    }
    if (column_ >= cells_.size()) cells_.resize(column_ + 1);
    cells_[column_] = std::move(text);
}

std::string XlsxReader::NumberText(const std::string& value) const {
    double number = 0;
    const auto read = std::from_chars(value.data(), value.data() + value.size(), number);
    if (read.ec != std::errc() || read.ptr != value.data() + value.size() || !std::isfinite(number)) return value;
    if (isDate_) {
        constexpr double kDaysTo1904 = 1462;
        constexpr double kLeapDay = 60;  // 1900-02-29, which a sheet counts though there was none
        if (workbook_.from1904) number += kDaysTo1904;
        try {
            return Date::FromSerial(number >= 1 && number < kLeapDay ? number + 1 : number).ToIso(' ');
        } catch (const Error&) {
            return value;
        }
    }
    constexpr int kDigits = 15;
    std::array<char, 400> text{};
    auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, kDigits).ptr;
    std::from_chars(text.data(), end, number);
    end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed).ptr;
    return {text.data(), end};
}

}  // namespace kpTables::kpbook::input
