// A counted reference to an interface.
#pragma once

#include <unknwn.h>

#include <utility>

namespace kpTables::com {

template <class T>
class Pointer {
public:
    Pointer() noexcept = default;
    Pointer(std::nullptr_t) noexcept {}
    explicit Pointer(T* object) noexcept : object_(object) {
        if (object_) object_->AddRef();
    }
    Pointer(const Pointer& other) noexcept : Pointer(other.object_) {}
    Pointer(Pointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Pointer& operator=(Pointer other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Pointer() {
        if (object_) object_->Release();
    }

    /// Takes over a reference that is counted already.
    static Pointer Attach(T* object) noexcept {
        Pointer pointer;
        pointer.object_ = object;
        return pointer;
    }
    /// Gives the counted reference away.
    T* Detach() noexcept { return std::exchange(object_, nullptr); }

    T* Get() const noexcept { return object_; }
    T* operator->() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

    /// For calls that answer with a counted reference.
    T** Receive() noexcept {
        Pointer().swap(*this);
        return &object_;
    }
    void** ReceiveAny() noexcept { return reinterpret_cast<void**>(Receive()); }

private:
    void swap(Pointer& other) noexcept { std::swap(object_, other.object_); }

    T* object_ = nullptr;
};

/// Another interface of an object; null when it has none.
template <class To>
Pointer<To> Query(IUnknown* object, REFIID iid) noexcept {
    Pointer<To> other;
    if (object && FAILED(object->QueryInterface(iid, other.ReceiveAny()))) return nullptr;
    return other;
}

}  // namespace kpTables::com
