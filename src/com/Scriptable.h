// An object whose members are the rows of an Interface.
#pragma once

#include <oaidl.h>
#include <ocidl.h>

#include "com/Interface.h"
#include "com/Object.h"

namespace kpTables::com {

/// IDispatch over the rows: named, optional and left-out arguments, by-reference ones written back, and the default
/// members of what a property answers (rs("x") is rs.Fields.Item("x")).
class Scriptable : public Object<IDispatch, ISupportErrorInfo> {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT number, LCID locale, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* info, UINT* wrong) override;
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override;

    /// Calls a row with arguments in the order of its parameters. The result is the error's own, which is set for the
    /// thread. answer may be null.
    HRESULT CallRow(std::size_t row, VARIANT* arguments, std::size_t count, VARIANT* answer) noexcept;

protected:
    explicit Scriptable(const Interface& members) noexcept : members_(&members) {}
    const Interface& Members() const noexcept { return *members_; }

private:
    const Interface* members_;
};

}  // namespace kpTables::com
