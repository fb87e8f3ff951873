#include "com/Array.h"

#include <oleauto.h>

#include <new>
#include <vector>

#include "com/Value.h"
#include "kpTables/Error.h"

namespace kpTables::com {
namespace {

/// Goes through the positions of an array as VariantArray keeps them: the last index fastest.
class Positions {
public:
    explicit Positions(const std::vector<VariantArray::Bound>& bounds) : bounds_(bounds) {
        for (const auto& bound : bounds) indices_.push_back(bound.lower);
    }
    LONG* Indices() { return indices_.data(); }
    void Next() {
        for (std::size_t i = bounds_.size(); i-- > 0;) {
            if (++indices_[i] < bounds_[i].lower + bounds_[i].count) return;
            indices_[i] = bounds_[i].lower;
        }
    }

private:
    const std::vector<VariantArray::Bound>& bounds_;
    std::vector<LONG> indices_;
};

void Check(HRESULT result) {
    if (result == E_OUTOFMEMORY) throw std::bad_alloc();
    if (FAILED(result)) Raise(ErrorNumber::SubscriptOutOfRange);
}

struct SafeArrayDestroyer {
    void operator()(SAFEARRAY* array) const { SafeArrayDestroy(array); }
};

}  // namespace

SAFEARRAY* ToSafeArray(const VariantArray& array) {
    std::vector<SAFEARRAYBOUND> bounds;
    for (const auto& bound : array.bounds)
        bounds.push_back({.cElements = static_cast<ULONG>(bound.count), .lLbound = bound.lower});
    if (bounds.empty()) bounds.push_back({.cElements = 0, .lLbound = 0});
    std::unique_ptr<SAFEARRAY, SafeArrayDestroyer> made(
        SafeArrayCreate(VT_VARIANT, static_cast<UINT>(bounds.size()), bounds.data()));
    if (!made) throw std::bad_alloc();
    Positions positions(array.bounds);
    for (const Variant& item : array.items) {
        Value value(item);
        Check(SafeArrayPutElement(made.get(), positions.Indices(), &value));
        positions.Next();
    }
    return made.release();
}

std::shared_ptr<VariantArray> FromSafeArray(SAFEARRAY* array) {
    auto copy = std::make_shared<VariantArray>();
    if (!array) return copy;
    VARTYPE type = VT_EMPTY;
    Check(SafeArrayGetVartype(array, &type));
    std::size_t count = 1;
    for (UINT dimension = 1; dimension <= SafeArrayGetDim(array); ++dimension) {
        LONG lower = 0, upper = -1;
        Check(SafeArrayGetLBound(array, dimension, &lower));
        Check(SafeArrayGetUBound(array, dimension, &upper));
        copy->bounds.push_back({lower, static_cast<std::int32_t>(upper - lower + 1)});
        count *= static_cast<std::size_t>(copy->bounds.back().count);
    }
    Positions positions(copy->bounds);
    for (std::size_t i = 0; i < count; ++i) {
        VARIANT element;
        VariantInit(&element);
        element.vt = static_cast<VARTYPE>(type | VT_BYREF);
        Check(SafeArrayPtrOfIndex(array, positions.Indices(), &element.byref));
        copy->items.push_back(FromVariant(element));
        positions.Next();
    }
    return copy;
}

}  // namespace kpTables::com
