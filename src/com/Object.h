// What every object of the server has: a count of its references, and its share in keeping the module loaded.
#pragma once

#include <unknwn.h>

#include <atomic>

#include "com/Module.h"
#include "com/Pointer.h"

namespace kpTables::com {

/// Implements AddRef and Release of its bases. The first reference is the maker's: Make.
template <class... Interfaces>
class Object : public Interfaces... {
public:
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

protected:
    Object() = default;
    virtual ~Object() = default;

private:
    std::atomic<ULONG> references_ = 1;
    ModuleUse use_;
};

template <class T, class... Arguments>
Pointer<T> Make(Arguments&&... arguments) {
    return Pointer<T>::Attach(new T(std::forward<Arguments>(arguments)...));
}

/// Answers QueryInterface with an interface of the object.
template <class T>
HRESULT Answer(T* interface_, void** object) noexcept {
    interface_->AddRef();
    *object = interface_;
    return S_OK;
}

}  // namespace kpTables::com
