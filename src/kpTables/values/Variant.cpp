#include "kpTables/Variant.h"

#include <algorithm>

namespace kpTables {

VariantArray::VariantArray(std::vector<Variant> elements, std::int32_t lower)
    : bounds{{lower, static_cast<std::int32_t>(elements.size())}}, items(std::move(elements)) {}

VarType Variant::Type() const noexcept {
    constexpr VarType kTypes[] = {VarType::Empty,   VarType::Null,   VarType::Missing, VarType::Boolean,
                                  VarType::Integer, VarType::Long,   VarType::Double,  VarType::Currency,
                                  VarType::Date,    VarType::String, VarType::Object,  VarType::Array};
    static_assert(std::size(kTypes) == std::variant_size_v<decltype(value_)>);
    return kTypes[value_.index()];
}

bool Variant::Is(const Variant& other) const {
    const auto* left = If<std::shared_ptr<VariantArray>>();
    const auto* right = other.If<std::shared_ptr<VariantArray>>();
    if (!left || !right || !*left || !*right || *left == *right) return value_ == other.value_;
    const auto& a = **left;
    const auto& b = **right;
    return std::equal(a.bounds.begin(), a.bounds.end(), b.bounds.begin(), b.bounds.end(),
                      [](const auto& x, const auto& y) { return x.lower == y.lower && x.count == y.count; }) &&
           std::equal(a.items.begin(), a.items.end(), b.items.begin(), b.items.end(),
                      [](const Variant& x, const Variant& y) { return x.Is(y); });
}

}  // namespace kpTables
