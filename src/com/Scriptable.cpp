#include "com/Scriptable.h"

#include <oleauto.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "com/Failure.h"
#include "com/HostObject.h"
#include "com/Value.h"
#include "kpTables/Error.h"

namespace kpTables::com {
namespace {

constexpr WORD kWrites = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

/// The arguments of a call in the order of the parameters; null where one was left out.
class Passed {
public:
    /// DISP_E_PARAMNOTFOUND for a name that is no parameter's or whose argument was given already.
    HRESULT Take(const DISPPARAMS& call, std::size_t parameters, UINT* wrong) {
        const UINT named = call.cNamedArgs;
        for (UINT i = call.cArgs; i > named; --i) arguments_.push_back(&call.rgvarg[i - 1]);
        for (UINT i = 0; i < named; ++i) {
            if (call.rgdispidNamedArgs[i] == DISPID_PROPERTYPUT) continue;
            const auto at = static_cast<std::size_t>(call.rgdispidNamedArgs[i]);
            if (at < parameters && arguments_.size() <= at) arguments_.resize(at + 1);
            if (at >= parameters || arguments_[at]) {
                if (wrong) *wrong = i;
                return DISP_E_PARAMNOTFOUND;
            }
            arguments_[at] = &call.rgvarg[i];
        }
        if (named > 0 && call.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT) arguments_.push_back(&call.rgvarg[0]);
        return S_OK;
    }
    /// Arguments that stand in order.
    void TakeInOrder(const VARIANT* arguments, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) arguments_.push_back(&arguments[i]);
    }
    std::size_t Count() const { return arguments_.size(); }
    const VARIANT* At(std::size_t i) const { return arguments_[i]; }

private:
    std::vector<const VARIANT*> arguments_;
};

bool TakesObject(ValueType type) {
    return type == ValueType::Object || type == ValueType::Recordset || type == ValueType::Connection;
}

Variant TakeArgument(const VARIANT* argument, const Row& row, std::size_t position) {
    if (!argument) return Variant::Missing();
    if (position >= row.parameters.size()) return FromVariant(*argument);
    const ValueType type = row.parameters[position].type;
    if (TakesObject(type)) return FromVariant(*argument);
    if (type != ValueType::Variant) return PlainFromVariant(*argument);
    // An object counts by its default property. One without is refused where its value is used.
    try {
        return PlainFromVariant(*argument);
    } catch (const Error&) {
        return FromVariant(*argument);
    }
}

void CheckCount(const Row& row, std::size_t given, const Passed& passed) {
    if (given > row.parameters.size()) Raise(ErrorNumber::WrongArgumentCount, std::string(row.name));
    for (std::size_t i = 0; i < row.parameters.size(); ++i)
        if ((i >= given || !passed.At(i)) && !row.parameters[i].optional)
            Raise(ErrorNumber::ArgumentNotOptional, row.parameters[i].name);
}

void WriteBackAll(const Row& row, const Passed& passed, const std::vector<Variant>& arguments) {
    for (std::size_t i = 0; i < passed.Count() && i < row.parameters.size(); ++i)
        if (passed.At(i) && row.parameters[i].inOut) WriteBack(*passed.At(i), arguments[i]);
}

Variant CallWith(Scriptable& self, const Row& row, const Passed& passed) {
    CheckCount(row, passed.Count(), passed);
    std::vector<Variant> arguments(row.parameters.size(), Variant::Missing());
    for (std::size_t i = 0; i < passed.Count(); ++i) arguments[i] = TakeArgument(passed.At(i), row, i);
    Variant result;
    try {
        result = row.call(self, row, arguments);
    } catch (...) {
        // What a method wrote to its caller's variables before it failed stays there.
        WriteBackAll(row, passed, arguments);
        throw;
    }
    WriteBackAll(row, passed, arguments);
    return result;
}

/// Calls the default member of what a property without parameters answers: rs.Fields("x"), rs("x") = 5.
HRESULT CallDefault(Scriptable& self, const Row& getter, WORD flags, DISPPARAMS& call, VARIANT* result, EXCEPINFO* info,
                    UINT* wrong) {
    const std::size_t written = (flags & kWrites) != 0 ? 1 : 0;
    const std::size_t indices = call.cArgs - written;
    std::vector<Variant> own(getter.parameters.size(), Variant::Missing());
    const std::size_t taken = std::min(own.size(), indices);
    for (std::size_t i = 0; i < taken; ++i) own[i] = PlainFromVariant(call.rgvarg[call.cArgs - 1 - i]);
    const Variant answer = getter.call(self, getter, own);
    const auto* const object = answer.If<ObjectPtr>();
    if (!object) Raise(ErrorNumber::WrongArgumentCount, std::string(getter.name));
    const auto dispatch = DispatchOf(*object);
    if (!dispatch) Raise(ErrorNumber::ObjectNotSet, std::string(getter.name));
    DISPPARAMS rest = call;
    rest.cArgs -= static_cast<UINT>(taken);
    return dispatch->Invoke(DISPID_VALUE, IID_NULL, GetUserDefaultLCID(), flags, &rest, result, info, wrong);
}

}  // namespace

HRESULT Scriptable::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == members_->Iid())
        return Answer(static_cast<IDispatch*>(this), object);
    if (iid == IID_ISupportErrorInfo) return Answer(static_cast<ISupportErrorInfo*>(this), object);
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT Scriptable::GetTypeInfoCount(UINT* count) {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT Scriptable::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info) *info = nullptr;
    return DISP_E_BADINDEX;
}

HRESULT Scriptable::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!names || !ids) return E_POINTER;
    return Returned([&] { return members_->GetIds(names, count, ids); });
}

HRESULT Scriptable::Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                           EXCEPINFO* info, UINT* wrong) {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!parameters) return E_POINTER;
    if (result) VariantInit(result);
    // The object lives until the call ends, whatever the call does to the caller's references.
    const Pointer<IDispatch> kept(this);
    try {
        const bool writes = (flags & kWrites) != 0;
        const Row* const row = members_->Find(id, writes ? Access::Write : Access::Read);
        const Row* const getter = members_->Find(id, Access::Read);
        if (!row && !(writes && getter && getter->kind == MemberKind::PropertyGet)) return DISP_E_MEMBERNOTFOUND;
        if (!row) return CallDefault(*this, *getter, flags, *parameters, result, info, wrong);
        if (row->kind == MemberKind::PropertyGet && parameters->cArgs > row->parameters.size())
            return CallDefault(*this, *row, flags, *parameters, result, info, wrong);
        Passed passed;
        const HRESULT taken = passed.Take(*parameters, row->parameters.size(), wrong);
        if (FAILED(taken)) return taken;
        Value value(CallWith(*this, *row, passed));
        if (result) value.MoveTo(result);
        return S_OK;
    } catch (...) {
        return ReportFailure(info);
    }
}

HRESULT Scriptable::CallRow(std::size_t row, VARIANT* arguments, std::size_t count, VARIANT* answer) noexcept {
    const Pointer<IDispatch> kept(this);
    return Returned([&] {
        Passed passed;
        passed.TakeInOrder(arguments, count);
        Value value(CallWith(*this, members_->Rows()[row], passed));
        if (answer) value.MoveTo(answer);
        return S_OK;
    });
}

HRESULT Scriptable::InterfaceSupportsErrorInfo(REFIID iid) { return iid == members_->Iid() ? S_OK : S_FALSE; }

}  // namespace kpTables::com
