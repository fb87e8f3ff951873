#include "com/Value.h"

#include <oleauto.h>

#include <new>
#include <utility>

#include "com/Array.h"
#include "com/HostObject.h"
#include "com/LateBoundObject.h"
#include "com/Utf16.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables::com {
namespace {

BSTR NewBstr(const std::string& text) {
    const std::wstring utf16 = ToUtf16(text);
    const BSTR bstr = SysAllocStringLen(utf16.data(), static_cast<UINT>(utf16.size()));
    if (!bstr) throw std::bad_alloc();
    return bstr;
}

std::string FromBstr(BSTR bstr) { return bstr ? ToUtf8({bstr, SysStringLen(bstr)}) : std::string(); }

/// Where the value of a VARIANT lies: in it, or where it refers to.
const void* DataOf(const VARIANT& value) {
    if (value.vt & VT_BYREF) return value.byref;
    if (value.vt == VT_DECIMAL) return &value.decVal;
    return &value.llVal;
}

template <class T>
const T& As(const void* data) {
    return *static_cast<const T*>(data);
}

/// A whole number that may not fit a Long.
template <class T>
Variant WholeNumber(T number) {
    if (std::in_range<std::int32_t>(number)) return static_cast<std::int32_t>(number);
    return static_cast<double>(number);
}

Variant FromDecimal(DECIMAL decimal) {
    double number = 0;
    if (FAILED(VarR8FromDec(&decimal, &number))) Raise(ErrorNumber::Overflow);
    return number;
}

Variant FromUnknown(IUnknown* object) {
    if (!object) return nullptr;
    const auto dispatch = Query<IDispatch>(object, IID_IDispatch);
    if (!dispatch) Raise(ErrorNumber::TypeMismatch);
    return ObjectOf(dispatch.Get());
}

Variant FromData(VARTYPE type, const void* data) {
    switch (type) {
        case VT_EMPTY:
            return {};
        case VT_NULL:
            return Variant::Null();
        case VT_I1:
            return static_cast<std::int16_t>(As<signed char>(data));
        case VT_UI1:
            return static_cast<std::int16_t>(As<BYTE>(data));
        case VT_I2:
            return As<std::int16_t>(data);
        case VT_UI2:
            return static_cast<std::int32_t>(As<USHORT>(data));
        case VT_I4:
        case VT_INT:
            return static_cast<std::int32_t>(As<LONG>(data));
        case VT_UI4:
        case VT_UINT:
            return WholeNumber(As<ULONG>(data));
        case VT_I8:
            return WholeNumber(As<LONGLONG>(data));
        case VT_UI8:
            return WholeNumber(As<ULONGLONG>(data));
        case VT_R4:
            return static_cast<double>(As<float>(data));
        case VT_R8:
            return As<double>(data);
        case VT_CY:
            return Currency::FromScaled(As<CY>(data).int64);
        case VT_DATE:
            return kpTables::Date::FromSerial(As<double>(data));
        case VT_BOOL:
            return As<VARIANT_BOOL>(data) != VARIANT_FALSE;
        case VT_BSTR:
            return FromBstr(As<BSTR>(data));
        case VT_DECIMAL:
            return FromDecimal(As<DECIMAL>(data));
        case VT_DISPATCH:
            return ObjectOf(As<IDispatch*>(data));
        case VT_UNKNOWN:
            return FromUnknown(As<IUnknown*>(data));
        case VT_ERROR:
            if (As<SCODE>(data) == DISP_E_PARAMNOTFOUND) return Variant::Missing();
            break;
        default:
            break;
    }
    Raise(ErrorNumber::TypeMismatch);
}

/// The innermost VARIANT that one refers to.
const VARIANT& Referred(const VARIANT& value) {
    return value.vt == (VT_VARIANT | VT_BYREF) ? Referred(*value.pvarVal) : value;
}

IDispatch* DispatchIn(const VARIANT& value) {
    const VARIANT& referred = Referred(value);
    return (referred.vt & ~VT_BYREF) == VT_DISPATCH ? As<IDispatch*>(DataOf(referred)) : nullptr;
}

template <class T>
T Checked(std::int32_t number) {
    if (!std::in_range<T>(number)) Raise(ErrorNumber::Overflow);
    return static_cast<T>(number);
}

/// Writes to a variable of a plain type.
void WriteTo(VARTYPE type, void* variable, const Variant& value) {
    const auto write = [variable]<class T>(T converted) { *static_cast<T*>(variable) = converted; };
    switch (type) {
        case VT_I1:
            return write(Checked<signed char>(CLng(value)));
        case VT_UI1:
            return write(Checked<BYTE>(CLng(value)));
        case VT_I2:
            return write(CInt(value));
        case VT_UI2:
            return write(Checked<USHORT>(CLng(value)));
        case VT_I4:
        case VT_INT:
            return write(static_cast<LONG>(CLng(value)));
        case VT_UI4:
        case VT_UINT:
            return write(Checked<ULONG>(CLng(value)));
        case VT_I8:
            return write(static_cast<LONGLONG>(CLng(value)));
        case VT_R4:
            return write(static_cast<float>(CDbl(value)));
        case VT_R8:
            return write(CDbl(value));
        case VT_CY:
            return write(CY{.int64 = CCur(value).Scaled()});
        case VT_DATE:
            return write(CDate(value).Serial());
        case VT_BOOL:
            return write(CBool(value) ? VARIANT_TRUE : VARIANT_FALSE);
        case VT_BSTR: {
            const BSTR text = NewBstr(CStr(value));
            SysFreeString(*static_cast<BSTR*>(variable));
            return write(text);
        }
        default:
            break;
    }
}

}  // namespace

Value::Value(const Variant& value) : Value() {
    switch (value.Type()) {
        case VarType::Empty:
            break;
        case VarType::Null:
            vt = VT_NULL;
            break;
        case VarType::Missing:
            vt = VT_ERROR;
            scode = DISP_E_PARAMNOTFOUND;
            break;
        case VarType::Boolean:
            vt = VT_BOOL;
            boolVal = *value.If<bool>() ? VARIANT_TRUE : VARIANT_FALSE;
            break;
        case VarType::Integer:
            vt = VT_I2;
            iVal = *value.If<std::int16_t>();
            break;
        case VarType::Long:
            vt = VT_I4;
            lVal = *value.If<std::int32_t>();
            break;
        case VarType::Double:
            vt = VT_R8;
            dblVal = *value.If<double>();
            break;
        case VarType::Currency:
            vt = VT_CY;
            cyVal.int64 = value.If<Currency>()->Scaled();
            break;
        case VarType::Date:
            vt = VT_DATE;
            date = value.If<kpTables::Date>()->Serial();
            break;
        case VarType::String:
            bstrVal = NewBstr(*value.If<std::string>());
            vt = VT_BSTR;
            break;
        case VarType::Object:
            if (const auto* own = dynamic_cast<const OwnEnumerator*>(value.If<ObjectPtr>()->get())) {
                punkVal = Pointer<IUnknown>(own->Unknown()).Detach();
                vt = VT_UNKNOWN;
            } else {
                pdispVal = DispatchOf(*value.If<ObjectPtr>()).Detach();
                vt = VT_DISPATCH;
            }
            break;
        case VarType::Array:
            parray = ToSafeArray(**value.If<std::shared_ptr<VariantArray>>());
            vt = VT_ARRAY | VT_VARIANT;
            break;
    }
}

void Value::MoveTo(VARIANT* to) noexcept {
    *to = *this;
    VariantInit(this);
}

void Value::swap(Value& other) noexcept { std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other)); }

Variant FromVariant(const VARIANT& value) {
    const VARIANT& referred = Referred(value);
    if (referred.vt & VT_ARRAY) return FromSafeArray(As<SAFEARRAY*>(DataOf(referred)));
    return FromData(referred.vt & ~VT_BYREF, DataOf(referred));
}

Variant PlainFromVariant(const VARIANT& value) {
    if (IDispatch* const object = DispatchIn(value)) return LateBoundObject(Pointer<IDispatch>(object)).DefaultValue();
    return FromVariant(value);
}

bool HoldsObject(const VARIANT& value) noexcept {
    const VARTYPE type = Referred(value).vt & ~VT_BYREF;
    return type == VT_DISPATCH || type == VT_UNKNOWN;
}

void WriteBack(const VARIANT& argument, const Variant& value) {
    if (!(argument.vt & VT_BYREF) || HoldsObject(argument)) return;
    const VARIANT& referred = Referred(argument);
    if (referred.vt & VT_ARRAY) return;
    if (referred.vt & VT_BYREF) return WriteTo(referred.vt & ~VT_BYREF, referred.byref, value);
    Value written(value);
    auto* const variable = const_cast<VARIANT*>(&referred);
    VariantClear(variable);
    written.MoveTo(variable);
}

}  // namespace kpTables::com
