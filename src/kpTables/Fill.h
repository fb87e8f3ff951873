// Texts with named gaps: Fill("Delete From {table} Where ClassID={id}", "table"_gap(table), "id"_gap(id)).
#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/InOut.h"

namespace kpTables {

/// A text cut at its gaps.
struct TemplatePieces {
    static constexpr std::size_t kMost = 8;
    /// Characters of the text, then the value of a gap; the last piece has none.
    struct Piece {
        std::uint16_t begin = 0;
        std::uint16_t length = 0;
        std::uint16_t gap = 0;
    };

    std::string_view text;
    std::array<Piece, kMost> pieces{};
    std::size_t count = 0;
};

/// Cuts a text at its gaps. std::invalid_argument unless every gap has one of the names, and every name a gap.
constexpr TemplatePieces CutTemplate(std::string_view text, std::span<const std::string_view> names) {
    const auto require = [](bool met, const char* fault) {
        if (!met) throw std::invalid_argument(fault);
    };
    TemplatePieces cut;
    cut.text = text;
    require(text.size() <= UINT16_MAX, "the text is too long");
    std::size_t begin = 0;
    const auto add = [&](std::size_t end, std::size_t gap) {
        require(cut.count < TemplatePieces::kMost, "too many gaps");
        cut.pieces[cut.count++] = {static_cast<std::uint16_t>(begin), static_cast<std::uint16_t>(end - begin),
                                   static_cast<std::uint16_t>(gap)};
    };
    for (std::size_t open = 0; (open = text.find_first_of("{}", begin)) != text.npos;) {
        const std::size_t close = text.find('}', open);
        require(text[open] == '{' && close != text.npos, "a brace without its other half");
        const auto name = std::find(names.begin(), names.end(), text.substr(open + 1, close - open - 1));
        require(name != names.end(), "a gap without a value");
        add(open, static_cast<std::size_t>(name - names.begin()));
        begin = close + 1;
    }
    for (std::size_t gap = 0; gap < names.size(); ++gap)
        require(std::any_of(cut.pieces.begin(), cut.pieces.begin() + cut.count,
                            [gap](const TemplatePieces::Piece& each) { return each.gap == gap; }),
                "a value without a gap");
    add(text.size(), names.size());
    return cut;
}

/// The text with its gaps filled by the values, which end with an empty one.
std::string JoinTemplate(const TemplatePieces& cut, const std::string_view* values);

/// The name of a gap, as a template argument.
struct GapName {
    static constexpr std::size_t kLongest = 16;
    template <std::size_t kSize>
    requires(kSize <= kLongest) consteval GapName(const char (&name)[kSize]) { std::copy_n(name, kSize, characters); }
    constexpr std::string_view View() const { return characters; }
    char characters[kLongest]{};
};

/// A text whose gaps are the names, each at least once: checked when it is compiled.
template <GapName... kNames>
class Template {
public:
    template <class Source>
    requires std::convertible_to<const Source&, std::string_view>
    consteval Template(const Source& text) : pieces_(CutTemplate(text, kViews)) {}
    const TemplatePieces& Pieces() const { return pieces_; }

private:
    static constexpr std::array<std::string_view, sizeof...(kNames)> kViews{kNames.View()...};
    TemplatePieces pieces_;
};

/// What fills a gap: a view of a text of the caller's, or a text of its own.
template <GapName kName, class Value>
struct Gap {
    Value value;
};

template <GapName kName>
struct NamedGap {
    template <class Value>
    auto operator()(Value&& value) const {
        if constexpr (std::is_same_v<Value, std::string>)
            return Gap<kName, std::string>{std::forward<Value>(value)};
        else if constexpr (std::convertible_to<Value, std::string_view>)
            return Gap<kName, std::string_view>{value};
        else
            return Gap<kName, std::string>{Text(value)};
    }
    template <class Value>
    auto operator()(const InOut<Value>& value) const {
        return (*this)(value.get());
    }
    template <class Value>
    auto operator()(InOut<Value>& value) const {
        return (*this)(value.get());
    }
};

template <GapName kName>
constexpr NamedGap<kName> operator""_gap() {
    return {};
}

/// The text with its gaps filled. Numbers, dates and Booleans take Visual Basic's text form.
template <GapName... kNames, class... Value>
std::string Fill(const std::type_identity_t<Template<kNames...>>& text, const Gap<kNames, Value>&... gaps) {
    const std::array<std::string_view, sizeof...(kNames) + 1> values{gaps.value..., std::string_view()};
    return JoinTemplate(text.Pieces(), values.data());
}

}  // namespace kpTables
