#include "com/LateBoundObject.h"

#include <dispex.h>
#include <oleauto.h>

#include <utility>
#include <vector>

#include "com/Failure.h"
#include "com/Utf16.h"
#include "com/Value.h"
#include "kpTables/Error.h"

namespace kpTables::com {
namespace {

constexpr WORD kRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
constexpr const char* kDefault = "(default)";

[[noreturn]] void RaiseNoObject(const char* member) { throw Error(424, std::string("Object required: ") + member); }

Value InvokeMember(IDispatch* object, DISPID id, WORD kind, std::initializer_list<Variant> arguments,
                   const char* member) {
    std::vector<Value> values;
    for (auto each = arguments.end(); each != arguments.begin();) values.emplace_back(*--each);
    // Value adds no data to VARIANT.
    static_assert(sizeof(Value) == sizeof(VARIANT));
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {values.data(), nullptr, static_cast<UINT>(values.size()), 0};
    if (kind == DISPATCH_PROPERTYPUT) {
        parameters.rgdispidNamedArgs = &put;
        parameters.cNamedArgs = 1;
    }
    Value result;
    VARIANT* const wanted = kind == DISPATCH_PROPERTYPUT ? nullptr : &result;
    EXCEPINFO info = {};
    UINT wrong = 0;
    const auto scripted = Query<IDispatchEx>(object, __uuidof(IDispatchEx));
    const LCID locale = GetUserDefaultLCID();
    const HRESULT answer = scripted ? scripted->InvokeEx(id, locale, kind, &parameters, wanted, &info, nullptr)
                                    : object->Invoke(id, IID_NULL, locale, kind, &parameters, wanted, &info, &wrong);
    if (FAILED(answer)) RaiseFailure(answer, info, member);
    return result;
}

Pointer<IDispatch> ObjectIn(const Value& value, const char* member) {
    if (value.vt == VT_DISPATCH) return Pointer<IDispatch>(value.pdispVal);
    if (value.vt == VT_UNKNOWN)
        if (auto object = Query<IDispatch>(value.punkVal, IID_IDispatch)) return object;
    RaiseNoObject(member);
}

}  // namespace

LateBoundObject LateBoundObject::Create(const wchar_t* progId) {
    constexpr std::int32_t kCannotCreate = 429;
    CLSID id;
    Pointer<IDispatch> object;
    if (FAILED(CLSIDFromProgID(progId, &id)) ||
        FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                                object.ReceiveAny())))
        throw Error(kCannotCreate, "ActiveX component can't create object: " + ToUtf8(progId));
    return LateBoundObject(std::move(object));
}

HRESULT LateBoundObject::Find(const char* member, DISPID* id) const {
    std::wstring name = ToUtf16(member);
    // Objects of scripts answer the names of their members through this interface alone in some engines.
    if (const auto scripted = Query<IDispatchEx>(object_.Get(), __uuidof(IDispatchEx))) {
        const BSTR bstr = SysAllocStringLen(name.data(), static_cast<UINT>(name.size()));
        const HRESULT result = scripted->GetDispID(bstr, fdexNameCaseInsensitive, id);
        SysFreeString(bstr);
        return result;
    }
    LPOLESTR names = name.data();
    return object_->GetIDsOfNames(IID_NULL, &names, 1, GetUserDefaultLCID(), id);
}

DISPID LateBoundObject::IdOf(const char* member) const {
    if (!object_) Raise(ErrorNumber::ObjectNotSet, member);
    DISPID id = DISPID_UNKNOWN;
    EXCEPINFO none = {};
    const HRESULT result = Find(member, &id);
    if (FAILED(result)) RaiseFailure(result, none, member);
    return id;
}

bool LateBoundObject::Has(const char* member) const {
    DISPID id = DISPID_UNKNOWN;
    return object_ && SUCCEEDED(Find(member, &id));
}

Variant LateBoundObject::Get(const char* member, std::initializer_list<Variant> arguments) const {
    return FromVariant(InvokeMember(object_.Get(), IdOf(member), kRead, arguments, member));
}

LateBoundObject LateBoundObject::GetInner(const char* member, std::initializer_list<Variant> arguments) const {
    const DISPID id = IdOf(member);
    return LateBoundObject(ObjectIn(InvokeMember(object_.Get(), id, kRead, arguments, member), member));
}

void LateBoundObject::Call(const char* member, std::initializer_list<Variant> arguments) const {
    InvokeMember(object_.Get(), IdOf(member), DISPATCH_METHOD, arguments, member);
}

void LateBoundObject::Put(const char* member, std::initializer_list<Variant> arguments) const {
    InvokeMember(object_.Get(), IdOf(member), DISPATCH_PROPERTYPUT, arguments, member);
}

Variant LateBoundObject::DefaultValue() const {
    // An object that is its own default property would be asked without end.
    constexpr int kDeepest = 8;
    Pointer<IDispatch> object = object_;
    for (int depth = 0; depth < kDeepest; ++depth) {
        if (!object) Raise(ErrorNumber::ObjectNotSet);
        const Value value = InvokeMember(object.Get(), DISPID_VALUE, kRead, {}, kDefault);
        if (value.vt != VT_DISPATCH) return FromVariant(value);
        object = Pointer<IDispatch>(value.pdispVal);
    }
    Raise(ErrorNumber::TypeMismatch);
}

Variant LateBoundObject::DefaultItem(const Variant& argument) const {
    if (!object_) Raise(ErrorNumber::ObjectNotSet);
    return FromVariant(InvokeMember(object_.Get(), DISPID_VALUE, kRead, {argument}, kDefault));
}

}  // namespace kpTables::com
