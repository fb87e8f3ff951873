#include "recordset/Criteria.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <compare>
#include <system_error>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "text/Ascii.h"
#include "text/FoldedText.h"
#include "text/Like.h"

namespace kpTables::recordset {

namespace {

using text::EqualsIgnoringCase;
using text::WithoutTrailingBlanks;

bool Meets(std::partial_ordering order, Comparison comparison) {
    switch (comparison) {
        case Comparison::Equal:
            return order == 0;
        case Comparison::NotEqual:
            return order != 0;
        case Comparison::Less:
            return order < 0;
        case Comparison::LessOrEqual:
            return order <= 0;
        case Comparison::Greater:
            return order > 0;
        case Comparison::GreaterOrEqual:
            return order >= 0;
        case Comparison::Like:
            break;
    }
    return false;
}

std::uint64_t KeyOfNumber(double number) noexcept {
    return std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);  // -0 is 0
}

/// Scans a condition or an order once.
class Reader {
public:
    explicit Reader(std::string_view text) : all_(text), rest_(Trim(text)) {}

    [[noreturn]] void Fail() const { Raise(ErrorNumber::InvalidArgument, std::string(all_)); }
    bool AtEnd() const { return rest_.empty(); }

    bool Take(char c) {
        if (rest_.empty() || rest_[0] != c) return false;
        rest_.remove_prefix(1);
        SkipBlanks();
        return true;
    }

    /// A name up to a blank, an operator or a comma, or anything in brackets.
    std::string_view ReadName() {
        const bool bracket = rest_.starts_with('[');
        const std::size_t end = bracket ? rest_.find(']') : std::min(rest_.find_first_of(" =<>,'#"), rest_.size());
        if (end == std::string_view::npos || end == (bracket ? 1u : 0u)) Fail();
        const std::string_view name = bracket ? rest_.substr(1, end - 1) : rest_.substr(0, end);
        Advance(bracket ? end + 1 : end);
        return name;
    }

    /// Takes a keyword, if it is next.
    bool TakeWord(std::string_view word) {
        if (!EqualsIgnoringCase(rest_.substr(0, word.size()), word)) return false;
        const auto after = rest_.substr(word.size());
        if (!after.empty() && std::string_view(" ,'#").find(after[0]) == std::string_view::npos) return false;
        Advance(word.size());
        return true;
    }

    Comparison ReadComparison() {
        struct Operator {
            std::string_view text;
            Comparison comparison;
        };
        constexpr Operator kOperators[] = {
            {"<>", Comparison::NotEqual}, {"<=", Comparison::LessOrEqual}, {">=", Comparison::GreaterOrEqual},
            {"=", Comparison::Equal},     {"<", Comparison::Less},         {">", Comparison::Greater}};
        for (const Operator& op : kOperators) {
            if (!rest_.starts_with(op.text)) continue;
            Advance(op.text.size());
            return op.comparison;
        }
        if (!TakeWord("like")) Fail();
        return Comparison::Like;
    }

    Variant ReadValue() {
        if (rest_.starts_with('\'')) return ReadQuoted();
        if (rest_.starts_with('#')) return ReadDate();
        if (TakeWord("true")) return true;
        if (TakeWord("false")) return false;
        return ReadNumber();
    }

private:
    void SkipBlanks() {
        while (!rest_.empty() && rest_[0] == ' ') rest_.remove_prefix(1);
    }
    void Advance(std::size_t count) {
        rest_.remove_prefix(count);
        SkipBlanks();
    }

    Variant ReadNumber() {
        const std::string_view text = rest_.substr(rest_.starts_with('+') ? 1 : 0);
        // from_chars would accept the words inf and nan.
        if (text.find_first_of("0123456789") > 2) Fail();
        double number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || (text.size() != rest_.size() && text[0] == '-')) Fail();
        Advance(static_cast<std::size_t>(end - rest_.data()));
        return number;
    }

    Variant ReadQuoted() {
        std::string text;
        for (std::size_t i = 1; i < rest_.size(); ++i) {
            if (rest_[i] == '\'') {
                if (i + 1 == rest_.size() || rest_[i + 1] != '\'') {
                    Advance(i + 1);
                    return text;
                }
                ++i;
            }
            text += rest_[i];
        }
        Fail();
    }

    Variant ReadDate() {
        const std::size_t end = rest_.find('#', 1);
        const auto date = end == std::string_view::npos ? std::nullopt : Date::Parse(rest_.substr(1, end - 1));
        if (!date) Fail();
        Advance(end + 1);
        return *date;
    }

    std::string_view all_;
    std::string_view rest_;
};

}  // namespace

CriteriaText CriteriaText::Parse(std::string_view text) {
    Reader reader(text);
    CriteriaText criteria;
    criteria.column = reader.ReadName();
    criteria.comparison = reader.ReadComparison();
    criteria.value = reader.ReadValue();
    if (!reader.AtEnd()) reader.Fail();
    return criteria;
}

Criteria::Criteria(int column, const FieldInfo& field, const CriteriaText& text, const TextOrder& texts)
    : column_(column), texts_(&texts), comparison_(text.comparison) {
    try {
        isText_ = comparison_ == Comparison::Like || field.type == VarType::String ||
                  (field.type == VarType::Empty && text.value.Type() == VarType::String);
        if (isText_) {
            text_ = CStr(text.value);
        } else if (field.type == VarType::Date) {
            number_ = CDate(text.value).Serial();
        } else if (field.type == VarType::Boolean) {
            number_ = CBool(text.value) ? -1 : 0;
        } else {
            number_ = CDbl(text.value);
        }
    } catch (const Error&) {
        Raise(ErrorNumber::InvalidArgument, field.name);
    }
}

bool Criteria::Matches(const RowStore& rows, std::size_t row) const {
    const VarType type = rows.TypeAt(row, column_);
    if (type == VarType::Null) return false;
    if (isText_) {
        if (type == VarType::String) return MatchesText(rows.TextAt(row, column_));
        return comparison_ == Comparison::Like && MatchesText(CStr(rows.GetValue(row, column_)));
    }
    if (type == VarType::String) return false;
    return Meets(rows.NumberAt(row, column_) <=> number_, comparison_);
}

bool Criteria::MatchesText(std::string_view cell) const {
    if (comparison_ == Comparison::Like) {
        return text::LikeInCriteria(WithoutTrailingBlanks(cell), WithoutTrailingBlanks(text_));
    }
    return Meets(texts_->compare(cell, text_) <=> 0, comparison_);
}

std::optional<std::uint64_t> Criteria::Key() const noexcept {
    return isText_ ? texts_->key(text_) : KeyOfNumber(number_);
}

std::optional<std::uint64_t> Criteria::KeyOf(const RowStore& rows, std::size_t row) const noexcept {
    if (rows.TypeAt(row, column_) == VarType::String) return texts_->key(rows.TextAt(row, column_));
    return KeyOfNumber(rows.NumberAt(row, column_));
}

std::vector<SortColumn> ParseSort(std::string_view text) {
    Reader reader(text);
    std::vector<SortColumn> columns;
    for (bool more = !reader.AtEnd(); more;) {
        SortColumn column{std::string(reader.ReadName()), false};
        if (reader.TakeWord("desc")) {
            column.descending = true;
        } else {
            reader.TakeWord("asc");
        }
        columns.push_back(std::move(column));
        more = reader.Take(',');
        if (!more && !reader.AtEnd()) reader.Fail();
    }
    return columns;
}

}  // namespace kpTables::recordset
