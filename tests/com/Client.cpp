#include "Client.h"

#include <oleauto.h>

#include <utility>

#include "com/Utf16.h"
#include "com/Value.h"

namespace kpTables::test {
namespace {

std::string TakeText(BSTR text) {
    std::string utf8 = text ? com::ToUtf8({text, SysStringLen(text)}) : std::string();
    SysFreeString(text);
    return utf8;
}

}  // namespace

com::Pointer<IDispatch> Create(const wchar_t* progId) {
    CLSID id;
    com::Pointer<IDispatch> object;
    if (SUCCEEDED(CLSIDFromProgID(progId, &id)))
        CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.ReceiveAny());
    return object;
}

DISPID IdOf(IDispatch* object, const std::string& name) {
    std::wstring wide = com::ToUtf16(name);
    LPOLESTR names = wide.data();
    DISPID id = DISPID_UNKNOWN;
    object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    return id;
}

CallOutcome CallByName(IDispatch* object, const std::string& name, std::vector<Variant>& variables, WORD flags) {
    std::vector<com::Value> held;
    for (const Variant& variable : variables) held.emplace_back(variable);
    std::vector<VARIANT> references(held.size());
    for (std::size_t i = 0; i < held.size(); ++i) {
        VARIANT& reference = references[held.size() - 1 - i];
        if (variables[i].IsMissing()) {
            reference = held[i];
            continue;
        }
        reference.vt = VT_VARIANT | VT_BYREF;
        reference.pvarVal = &held[i];
    }
    DISPPARAMS parameters = {references.data(), nullptr, static_cast<UINT>(references.size()), 0};
    com::Value value;
    EXCEPINFO info = {};
    CallOutcome outcome;
    outcome.result =
        object->Invoke(IdOf(object, name), IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, &value, &info, nullptr);
    outcome.value = com::FromVariant(value);
    outcome.code = info.scode;
    outcome.description = TakeText(info.bstrDescription);
    outcome.source = TakeText(info.bstrSource);
    for (std::size_t i = 0; i < held.size(); ++i)
        if (!variables[i].IsMissing()) variables[i] = com::FromVariant(held[i]);
    return outcome;
}

CallOutcome CallByName(IDispatch* object, const std::string& name) {
    std::vector<Variant> none;
    return CallByName(object, name, none);
}

HRESULT PutByName(IDispatch* object, const std::string& name, const VARIANT& value) {
    VARIANT argument = value;
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {&argument, &put, 1, 1};
    const WORD flags = value.vt == VT_DISPATCH ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT;
    return object->Invoke(IdOf(object, name), IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, nullptr, nullptr,
                          nullptr);
}

}  // namespace kpTables::test
