// Enumerators over a list that was copied when they were made.
#pragma once

#include <ocidl.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "com/Failure.h"
#include "com/Object.h"

namespace kpTables::com {

/// Traits: Interface and its Iid, the Item that it gives, what is Held for one, and static void Give(held, item).
template <class Traits>
class Enumerator final : public Object<typename Traits::Interface> {
public:
    using Item = typename Traits::Item;
    using List = std::shared_ptr<const std::vector<typename Traits::Held>>;

    explicit Enumerator(List list, std::size_t at = 0) : list_(std::move(list)), at_(at) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        if (iid == IID_IUnknown || iid == Traits::Iid())
            return Answer(static_cast<typename Traits::Interface*>(this), object);
        *object = nullptr;
        return E_NOINTERFACE;
    }
    HRESULT STDMETHODCALLTYPE Next(ULONG count, Item* items, ULONG* fetched) override {
        if (!items) return E_POINTER;
        ULONG given = 0;
        const HRESULT result = Returned([&] {
            for (; given < count && at_ < list_->size(); ++given, ++at_) Traits::Give((*list_)[at_], &items[given]);
            return S_OK;
        });
        if (fetched) *fetched = given;
        if (FAILED(result)) return result;
        return given == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = list_->size() - at_;
        at_ += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        at_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(typename Traits::Interface** clone) override {
        if (!clone) return E_POINTER;
        return Returned([&] {
            *clone = new Enumerator(list_, at_);
            return S_OK;
        });
    }

private:
    List list_;
    std::size_t at_;
};

}  // namespace kpTables::com
