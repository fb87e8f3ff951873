// Find and Sort on a small recordset, against a scan and a sort of their own; and any other criteria, with and without
// the index that repeated searches build.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "Input.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/MemoryRecordset.h"
#include "recordset/RowStore.h"
#include "text/Ascii.h"
#include "text/FoldedText.h"
#include "text/TextOrder.h"

namespace {

using namespace kpTables;
using kpTables::fuzz::Input;
using kpTables::fuzz::Require;

enum Column : std::size_t { kNumber, kText, kMoney, kDay, kFlag, kColumns };
const std::vector<FieldInfo> kFields = {{"n", VarType::Double},
                                        {"名称", VarType::String},
                                        {"金额", VarType::Currency},
                                        {"d", VarType::Date},
                                        {"f", VarType::Boolean}};
constexpr std::string_view kTexts[] = {"",     "a",  "A ", "ab", "AB",        "a%",       "b*c",  "it's",
                                       "张三", "Ａ", "１", "1",  "e\xCC\x81", "\xC3\xA9", "\xFF", "水泥  "};
constexpr double kNumbers[] = {0, -0.0, 1, -1, 0.5, 1e15, 12.25, -3};
constexpr std::string_view kSigns[] = {"=", "<>", "<", "<=", ">", ">=", "Like"};
using SearchedRow = std::vector<Variant>;

const TextOrder kBookOrder = {text::CompareTexts,
                              [](std::string_view value) noexcept { return std::optional(text::HashOfText(value)); }};

Variant CellOf(std::size_t column, std::size_t choice) {
    constexpr int kFirstDay = 38000;
    if (choice % 5 == 4) return Variant::Null();
    const double number = kNumbers[choice % std::size(kNumbers)];
    switch (column) {
        case kNumber:
            return number;
        case kText:
            return kTexts[choice % std::size(kTexts)];
        case kMoney:
            return Currency::FromDouble(number / 10);
        case kDay:
            return Date::FromSerial(kFirstDay + static_cast<double>(choice % 3));
        default:
            return choice % 2 == 0;
    }
}

std::string Written(const Variant& value) {
    if (const auto* date = value.If<Date>()) return '#' + date->ToText() + '#';
    const auto* text = value.If<std::string>();
    if (!text) return Text(value);
    std::string quoted = "'";
    for (const char c : *text) quoted.append(c == '\'' ? 2 : 1, c);
    return quoted + '\'';
}

bool IsLike(std::string_view value, std::string_view pattern) {
    if (pattern.empty()) return value.empty();
    if (pattern[0] == '%' || pattern[0] == '*')
        return IsLike(value, pattern.substr(1)) || (!value.empty() && IsLike(value.substr(1), pattern));
    return !value.empty() && text::Lower(value[0]) == text::Lower(pattern[0]) &&
           IsLike(value.substr(1), pattern.substr(1));
}

int SignOf(double left, double right) { return (left > right) - (left < right); }

/// The rows as the model keeps them, in the recordset's present order.
class Model {
public:
    Model(std::vector<SearchedRow> rows, bool bookOrder)
        : rows_(std::move(rows)), bookOrder_(bookOrder), order_(rows_.size()) {
        std::iota(order_.begin(), order_.end(), 0U);
    }

    std::unique_ptr<MemoryRecordset> Recordset() const {
        auto store = std::make_unique<recordset::RowStore>(kFields);
        for (const SearchedRow& row : rows_) {
            store->BeginRow();
            for (std::size_t i = 0; i < row.size(); ++i) store->PutValue(static_cast<int>(i), row[i]);
        }
        return std::make_unique<MemoryRecordset>(std::move(store), false, bookOrder_ ? &kBookOrder : nullptr);
    }

    std::size_t Size() const { return rows_.size(); }

    int Compared(const Variant& left, const Variant& right) const {
        const auto* leftText = left.If<std::string>();
        const auto* rightText = right.If<std::string>();
        if (!leftText || !rightText) return SignOf(CDbl(left), CDbl(right));
        if (bookOrder_) return SignOf(text::CompareTexts(*leftText, *rightText), 0);
        const auto order = text::CompareFolded(*leftText, *rightText);
        return order < 0 ? -1 : order > 0 ? 1 : 0;
    }

    bool Meets(std::size_t position, std::size_t column, std::string_view sign, const Variant& value) const {
        const Variant& cell = rows_[order_[position]][column];
        if (cell.IsNull()) return false;
        if (sign == "Like") {
            return IsLike(text::WithoutTrailingBlanks(CStr(cell)), text::WithoutTrailingBlanks(CStr(value)));
        }
        const int order = Compared(cell, value);
        if (sign == "=") return order == 0;
        if (sign == "<>") return order != 0;
        if (order == 0) return sign.size() == 2;
        return (order < 0) == (sign[0] == '<');
    }

    /// The position, from 1, or -3 for the end.
    std::int32_t Found(std::int64_t from, int direction, std::size_t column, std::string_view sign,
                       const Variant& value) const {
        constexpr std::int32_t kEof = -3;
        for (; from >= 0 && from < static_cast<std::int64_t>(Size()); from += direction)
            if (Meets(static_cast<std::size_t>(from), column, sign, value)) return static_cast<std::int32_t>(from) + 1;
        return kEof;
    }

    void Sort(const std::vector<std::pair<std::size_t, bool>>& keys) {
        std::iota(order_.begin(), order_.end(), 0U);
        std::stable_sort(order_.begin(), order_.end(), [&](std::size_t left, std::size_t right) {
            for (const auto& [column, descending] : keys) {
                const Variant& a = rows_[left][column];
                const Variant& b = rows_[right][column];
                const int order = a.IsNull() || b.IsNull() ? SignOf(b.IsNull(), a.IsNull()) : Compared(a, b);
                if (order != 0) return (order < 0) != descending;
            }
            return false;
        });
    }

    const SearchedRow& RowAt(std::size_t position) const { return rows_[order_[position]]; }

private:
    std::vector<SearchedRow> rows_;
    bool bookOrder_;
    std::vector<std::size_t> order_;
};

void CheckFind(Input& input, const Model& model, MemoryRecordset& rows) {
    const std::size_t column = input.Below(kColumns);
    const std::string_view sign = kSigns[input.Below(std::size(kSigns))];
    Variant value = CellOf(column, input.Byte());
    if (value.IsNull()) value = CellOf(column, 0);
    const auto skip = static_cast<std::int32_t>(input.Below(3));
    const int direction = input.Flag() ? 1 : -1;
    const std::string criteria = '[' + kFields[column].name + "] " + std::string(sign) + ' ' + Written(value);
    for (std::size_t repeat = input.Below(16); repeat != std::size_t(-1); --repeat) {
        rows.MoveFirst();
        const std::size_t begin = repeat % model.Size();
        for (std::size_t i = 0; i < begin; ++i) rows.MoveNext();
        rows.Find(criteria, skip, direction);
        const std::int64_t from = static_cast<std::int64_t>(begin) + std::int64_t{skip} * direction;
        Require(rows.AbsolutePosition() == model.Found(from, direction, column, sign, value), "found by a scan",
                criteria);
    }
}

void CheckSort(Input& input, Model& model, MemoryRecordset& rows) {
    std::vector<std::pair<std::size_t, bool>> keys;
    std::string order;
    for (std::size_t count = 1 + input.Below(3); count > 0; --count) {
        keys.emplace_back(input.Below(kColumns), input.Flag());
        if (!order.empty()) order += ", ";
        order += kFields[keys.back().first].name;
        order += keys.back().second ? " DESC" : "";
    }
    rows.Sort(order);
    model.Sort(keys);
    for (std::size_t i = 0; i < model.Size(); ++i, rows.MoveNext()) {
        for (std::size_t column = 0; column < kColumns; ++column) {
            Require(rows.GetValue(static_cast<int>(column)).Is(model.RowAt(i)[column]), "sorted alike", order);
        }
    }
}

/// The position after a search from the first row; the number of the error when it raises one.
std::int32_t PositionAfter(MemoryRecordset& rows, std::string_view criteria) {
    rows.MoveFirst();
    try {
        rows.Find(criteria);
        return rows.AbsolutePosition();
    } catch (const Error& error) {
        return error.Number();
    }
}

void CheckAny(std::string_view criteria, const Model& model) {
    constexpr int kEnoughForAnIndex = 12;
    const auto rows = model.Recordset();
    const std::int32_t first = PositionAfter(*rows, criteria);
    for (int i = 0; i < kEnoughForAnIndex; ++i)
        Require(PositionAfter(*rows, criteria) == first, "an index finds the same row", criteria);
    try {
        rows->Sort(criteria);
    } catch (const Error& error) {
        const bool refused = error.Number() == static_cast<std::int32_t>(ErrorNumber::InvalidArgument) ||
                             error.Number() == static_cast<std::int32_t>(ErrorNumber::ItemNotFound);
        Require(refused, "an order is refused as such", criteria);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const bool bookOrder = input.Flag();
    std::vector<SearchedRow> table(1 + input.Below(8));
    for (SearchedRow& row : table)
        for (std::size_t column = 0; column < kColumns; ++column) row.push_back(CellOf(column, input.Byte()));
    Model model(std::move(table), bookOrder);
    const auto rows = model.Recordset();
    while (!input.AtEnd()) {
        switch (input.Below(3)) {
            case 0:
                CheckFind(input, model, *rows);
                break;
            case 1:
                CheckSort(input, model, *rows);
                break;
            default:
                CheckAny(input.Line(), model);
        }
    }
    return 0;
}
