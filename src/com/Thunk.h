// Functions of an interface's virtual table, made from the signatures of the component's methods.
#pragma once

#include <oleauto.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>

#include "com/Scriptable.h"
#include "kpTables/CTables.h"

namespace kpTables::com {

/// What the functions of the virtual table are called on.
struct DualFace {
    const void* const* functions;  ///< the virtual table, where callers expect it
    Scriptable* owner;
};

// Native<T>: how a value of T passes through the virtual table, and its VARIANT type. Abi is the type by value, which
// is a pointer to it where it is in/out or the answer.

template <class T>
struct Native;

#define KPTABLES_NATIVE(T, AbiType, variantType, member)                         \
    template <>                                                                  \
    struct Native<T> {                                                           \
        using Abi = AbiType;                                                     \
        static constexpr VARTYPE kType = variantType;                            \
        static void Put(VARIANT& wrapped, Abi value) { wrapped.member = value; } \
        static Abi Take(const VARIANT& wrapped) { return wrapped.member; }       \
    }
KPTABLES_NATIVE(std::int16_t, SHORT, VT_I2, iVal);
KPTABLES_NATIVE(std::int32_t, LONG, VT_I4, lVal);
KPTABLES_NATIVE(double, double, VT_R8, dblVal);
KPTABLES_NATIVE(Currency, CY, VT_CY, cyVal);
KPTABLES_NATIVE(Date, DATE, VT_DATE, date);
KPTABLES_NATIVE(std::string, BSTR, VT_BSTR, bstrVal);
KPTABLES_NATIVE(bool, VARIANT_BOOL, VT_BOOL, boolVal);
KPTABLES_NATIVE(std::shared_ptr<VariantArray>, SAFEARRAY*, VT_ARRAY | VT_VARIANT, parray);
KPTABLES_NATIVE(ConnectionPtr, IDispatch*, VT_DISPATCH, pdispVal);
KPTABLES_NATIVE(RecordsetPtr, IDispatch*, VT_DISPATCH, pdispVal);
KPTABLES_NATIVE(GridPtr, IDispatch*, VT_DISPATCH, pdispVal);
#undef KPTABLES_NATIVE
template <class T>
struct Native<T*> : Native<RecordsetPtr> {};
template <>
struct Native<Variant> {
    using Abi = VARIANT;
    static constexpr VARTYPE kType = VT_VARIANT;
    static VARIANT Take(const VARIANT& wrapped) { return wrapped; }
};

/// A parameter of type P as the virtual table has it.
template <class P>
struct NativeParameter {
    using Value = Native<std::remove_cvref_t<P>>;
    using Abi = typename Value::Abi;
    static VARIANT Wrap(Abi value) {
        if constexpr (std::is_same_v<Abi, VARIANT>) {
            return value;
        } else {
            VARIANT wrapped = {};
            wrapped.vt = Value::kType;
            Value::Put(wrapped, value);
            return wrapped;
        }
    }
};
template <class T>
struct NativeParameter<InOut<T>> {
    using Value = Native<T>;
    using Abi = typename Value::Abi*;
    static VARIANT Wrap(Abi variable) {
        VARIANT wrapped = {};
        if (variable) {
            wrapped.vt = static_cast<VARTYPE>(Value::kType | VT_BYREF);
            wrapped.byref = variable;
        } else {
            wrapped.vt = VT_ERROR;
            wrapped.scode = DISP_E_PARAMNOTFOUND;
        }
        return wrapped;
    }
};

/// The function of the row that kFunction makes; row is set when the virtual table is made.
template <auto kFunction, class Result, class... P>
struct Thunk {
    using Answer = typename Native<std::remove_cvref_t<Result>>::Abi;
    static inline std::size_t row = 0;

    static HRESULT STDMETHODCALLTYPE Call(DualFace* face, typename NativeParameter<P>::Abi... arguments,
                                          Answer* answer) {
        if (!answer) return E_POINTER;
        *answer = Answer{};
        std::array<VARIANT, sizeof...(P) + 1> wrapped = {NativeParameter<P>::Wrap(arguments)...};
        VARIANT value = {};
        const HRESULT result = face->owner->CallRow(row, wrapped.data(), sizeof...(P), &value);
        if (SUCCEEDED(result)) *answer = Native<std::remove_cvref_t<Result>>::Take(value);
        return result;
    }
};
template <auto kFunction, class... P>
struct Thunk<kFunction, void, P...> {
    static inline std::size_t row = 0;

    static HRESULT STDMETHODCALLTYPE Call(DualFace* face, typename NativeParameter<P>::Abi... arguments) {
        std::array<VARIANT, sizeof...(P) + 1> wrapped = {NativeParameter<P>::Wrap(arguments)...};
        return face->owner->CallRow(row, wrapped.data(), sizeof...(P), nullptr);
    }
};

}  // namespace kpTables::com
