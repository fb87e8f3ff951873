#include "com/TypeLibrary.h"

#include <oleauto.h>

#include <deque>
#include <vector>

#include "com/Failure.h"
#include "com/Ids.h"
#include "com/TablesObject.h"
#include "com/Utf16.h"
#include "com/Value.h"

namespace kpTables::com {
namespace {

void CheckResult(HRESULT result, const char* what) {
    if (FAILED(result)) RaiseResult(result, what);
}

VARTYPE VariantTypeOf(ValueType type) {
    switch (type) {
        case ValueType::Integer:
            return VT_I2;
        case ValueType::Long:
            return VT_I4;
        case ValueType::Double:
            return VT_R8;
        case ValueType::Currency:
            return VT_CY;
        case ValueType::Date:
            return VT_DATE;
        case ValueType::String:
            return VT_BSTR;
        case ValueType::Boolean:
            return VT_BOOL;
        case ValueType::VariantArray:
            return VT_SAFEARRAY;
        case ValueType::Object:
        case ValueType::Recordset:
        case ValueType::Connection:
            return VT_DISPATCH;
        default:
            return VT_VARIANT;
    }
}

/// What an omitted argument counts as, for a caller who passes it all the same.
Variant DefaultOf(ValueType type) {
    switch (type) {
        case ValueType::Integer:
            return std::int16_t{0};
        case ValueType::Long:
            return std::int32_t{0};
        case ValueType::Double:
            return 0.0;
        case ValueType::String:
            return "";
        case ValueType::Boolean:
            return false;
        default:
            return {};
    }
}

/// The description of one function; what it points to lives as long as it does.
class FunctionDescription {
public:
    explicit FunctionDescription(const Row& row) {
        for (const Parameter& parameter : row.parameters) AddParameter(parameter);
        if (row.result != ValueType::None) {
            ELEMDESC& answer = parameters_.emplace_back();
            answer.tdesc = *PointerTo(row.result);
            answer.paramdesc.wParamFlags = PARAMFLAG_FOUT | PARAMFLAG_FRETVAL;
        }
        function_.memid = row.id;
        function_.lprgelemdescParam = parameters_.data();
        function_.funckind = FUNC_PUREVIRTUAL;
        function_.invkind = KindOf(row.kind);
        function_.callconv = CC_STDCALL;
        function_.cParams = static_cast<SHORT>(parameters_.size());
        function_.elemdescFunc.tdesc.vt = VT_HRESULT;
    }
    FUNCDESC* Get() { return &function_; }

private:
    static INVOKEKIND KindOf(MemberKind kind) {
        switch (kind) {
            case MemberKind::PropertyGet:
                return INVOKE_PROPERTYGET;
            case MemberKind::PropertyLet:
                return INVOKE_PROPERTYPUT;
            case MemberKind::PropertySet:
                return INVOKE_PROPERTYPUTREF;
            default:
                return INVOKE_FUNC;
        }
    }

    TYPEDESC* Plain(ValueType type) {
        TYPEDESC& made = types_.emplace_back();
        made.vt = VariantTypeOf(type);
        if (made.vt == VT_SAFEARRAY) {
            TYPEDESC& element = types_.emplace_back();
            element.vt = VT_VARIANT;
            made.lptdesc = &element;
        }
        return &made;
    }
    TYPEDESC* PointerTo(ValueType type) {
        TYPEDESC* const pointed = Plain(type);
        TYPEDESC& made = types_.emplace_back();
        made.vt = VT_PTR;
        made.lptdesc = pointed;
        return &made;
    }
    void AddParameter(const Parameter& parameter) {
        ELEMDESC& element = parameters_.emplace_back();
        element.tdesc = parameter.inOut ? *PointerTo(parameter.type) : *Plain(parameter.type);
        USHORT flags = PARAMFLAG_FIN;
        if (parameter.inOut) flags |= PARAMFLAG_FOUT;
        if (parameter.optional) {
            flags |= PARAMFLAG_FOPT;
            const Variant value = DefaultOf(parameter.type);
            if (!value.IsEmpty()) {
                flags |= PARAMFLAG_FHASDEFAULT;
                PARAMDESCEX& held = defaults_.emplace_back();
                held.cBytes = sizeof held;
                held.varDefaultValue = values_.emplace_back(value);
                element.paramdesc.pparamdescex = &held;
            }
        }
        element.paramdesc.wParamFlags = flags;
    }

    // Pointers to elements of a deque stay valid while it grows.
    std::deque<TYPEDESC> types_;
    std::deque<Value> values_;
    std::deque<PARAMDESCEX> defaults_;
    std::vector<ELEMDESC> parameters_;
    FUNCDESC function_ = {};
};

std::vector<std::wstring> NamesOf(const Row& row) {
    std::vector<std::wstring> names = {ToUtf16(row.name)};
    // The value of a property has no name.
    if (row.kind == MemberKind::Method || row.kind == MemberKind::PropertyGet)
        for (const Parameter& parameter : row.parameters) names.push_back(ToUtf16(parameter.name));
    return names;
}

void SetNames(ICreateTypeInfo& info, UINT index, std::vector<std::wstring> names) {
    std::vector<LPOLESTR> pointers;
    for (std::wstring& name : names) pointers.push_back(name.data());
    CheckResult(info.SetFuncAndParamNames(index, pointers.data(), static_cast<UINT>(pointers.size())),
                "SetFuncAndParamNames");
}

class LibraryWriter {
public:
    LibraryWriter(const std::wstring& path, SYSKIND system) {
        CheckResult(CreateTypeLib2(system, path.data(), library_.Receive()), "CreateTypeLib2");
        library_->SetGuid(kTypeLibrary);
        library_->SetVersion(kLibraryMajor, kLibraryMinor);
        library_->SetName(const_cast<LPOLESTR>(L"kpTables"));
        library_->SetLcid(LOCALE_NEUTRAL);
        library_->SetDocString(const_cast<LPOLESTR>(L"kpTables: inventory accounting"));
        Pointer<ITypeLib> standard;
        // Without the flag it would be registered once more.
        CheckResult(LoadTypeLibEx(L"stdole2.tlb", REGKIND_NONE, standard.Receive()), "stdole2.tlb");
        CheckResult(standard->GetTypeInfoOfGuid(IID_IDispatch, dispatch_.Receive()), "IDispatch");
    }

    void Write() {
        const auto members = WriteMembers();
        const auto events = WriteEvents();
        WriteClass(*members, *events);
        CheckResult(library_->SaveAllChanges(), "SaveAllChanges");
    }

private:
    Pointer<ICreateTypeInfo> Create(const wchar_t* name, TYPEKIND kind, REFGUID id, UINT flags) {
        Pointer<ICreateTypeInfo> info;
        CheckResult(library_->CreateTypeInfo(const_cast<LPOLESTR>(name), kind, info.Receive()), "CreateTypeInfo");
        CheckResult(info->SetGuid(id), "SetGuid");
        CheckResult(info->SetVersion(kLibraryMajor, kLibraryMinor), "SetVersion");
        CheckResult(info->SetTypeFlags(flags), "SetTypeFlags");
        return info;
    }
    static void Implement(ICreateTypeInfo& info, UINT index, ITypeInfo& implemented) {
        HREFTYPE reference = 0;
        CheckResult(info.AddRefTypeInfo(&implemented, &reference), "AddRefTypeInfo");
        CheckResult(info.AddImplType(index, reference), "AddImplType");
    }
    static void ImplementMade(ICreateTypeInfo& info, UINT index, ICreateTypeInfo& implemented, INT flags) {
        const auto made = Query<ITypeInfo>(&implemented, IID_ITypeInfo);
        Implement(info, index, *made);
        CheckResult(info.SetImplTypeFlags(index, flags), "SetImplTypeFlags");
    }

    Pointer<ICreateTypeInfo> WriteMembers() {
        auto info = Create(L"_CTables", TKIND_INTERFACE, kTablesInterface,
                           TYPEFLAG_FDUAL | TYPEFLAG_FDISPATCHABLE | TYPEFLAG_FOLEAUTOMATION | TYPEFLAG_FHIDDEN);
        Implement(*info, 0, *dispatch_);
        UINT index = 0;
        for (const Row& row : TablesInterface().Rows()) {
            FunctionDescription description(row);
            CheckResult(info->AddFuncDesc(index, description.Get()), "AddFuncDesc");
            SetNames(*info, index, NamesOf(row));
            std::wstring help = ToUtf16(_CTables::Members()[row.index].answers);
            info->SetFuncDocString(index, help.data());
            ++index;
        }
        CheckResult(info->LayOut(), "LayOut");
        return info;
    }
    Pointer<ICreateTypeInfo> WriteEvents() {
        auto info = Create(L"__CTables", TKIND_DISPATCH, kTablesEvents, TYPEFLAG_FDISPATCHABLE | TYPEFLAG_FHIDDEN);
        Implement(*info, 0, *dispatch_);
        ELEMDESC parameters[3] = {};
        for (ELEMDESC& each : parameters) {
            each.tdesc.vt = VT_BSTR;
            each.paramdesc.wParamFlags = PARAMFLAG_FIN;
        }
        parameters[2].tdesc.vt = VT_I4;
        FUNCDESC raised = {};
        raised.memid = 1;
        raised.lprgelemdescParam = parameters;
        raised.funckind = FUNC_DISPATCH;
        raised.invkind = INVOKE_FUNC;
        raised.callconv = CC_STDCALL;
        raised.cParams = 3;
        raised.elemdescFunc.tdesc.vt = VT_VOID;
        CheckResult(info->AddFuncDesc(0, &raised), "AddFuncDesc");
        SetNames(*info, 0, {L"TableChanged", L"ProcName", L"TableName", L"ID"});
        CheckResult(info->LayOut(), "LayOut");
        return info;
    }
    void WriteClass(ICreateTypeInfo& members, ICreateTypeInfo& events) {
        auto info = Create(L"CTables", TKIND_COCLASS, kTablesClass, TYPEFLAG_FCANCREATE);
        ImplementMade(*info, 0, members, IMPLTYPEFLAG_FDEFAULT);
        ImplementMade(*info, 1, events, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE);
        CheckResult(info->LayOut(), "LayOut");
    }

    Pointer<ICreateTypeLib2> library_;
    Pointer<ITypeInfo> dispatch_;
};

}  // namespace

HRESULT WriteTypeLibrary(const std::wstring& path, SYSKIND system) {
    return Returned([&] {
        LibraryWriter(path, system).Write();
        return S_OK;
    });
}

Pointer<ITypeInfo> TypeInfoOf(REFGUID id) noexcept {
    Pointer<ITypeLib> library;
    Pointer<ITypeInfo> info;
    if (SUCCEEDED(LoadRegTypeLib(kTypeLibrary, kLibraryMajor, kLibraryMinor, LOCALE_NEUTRAL, library.Receive())))
        library->GetTypeInfoOfGuid(id, info.Receive());
    return info;
}

}  // namespace kpTables::com
