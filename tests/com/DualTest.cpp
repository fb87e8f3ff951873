// The dual interface and the type library: what early-bound hosts rely on.
#include <gtest/gtest.h>
#include <ocidl.h>
#include <oleauto.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "AdoDouble.h"
#include "Client.h"
#include "Hooks.h"
#include "com/Ids.h"
#include "com/TablesObject.h"
#include "com/Utf16.h"
#include "com/Value.h"
#include "kpTables/LateBound.h"
#include "support/ScriptedConnection.h"

namespace kpTables::test {
namespace {

constexpr int kDispatchFunctions = 7;

const char* KindText(_CTables::MemberKind kind) {
    using Kind = _CTables::MemberKind;
    switch (kind) {
        case Kind::PropertyGet:
            return "get";
        case Kind::PropertyLet:
            return "let";
        case Kind::PropertySet:
            return "set";
        default:
            return "method";
    }
}

/// Place in the virtual table, dispatch id, kind and signature of every member, a line each.
std::string CurrentAbi() {
    std::ostringstream lines;
    for (const com::Row& row : com::TablesInterface().Rows())
        lines << kDispatchFunctions + row.index << ' ' << row.id << ' ' << KindText(row.kind) << ' '
              << _CTables::Signature(_CTables::Members()[row.index]) << '\n';
    return lines.str();
}

TEST(Dual, TheInterfaceIsWhatHostsWereCompiledFor) {
    std::ifstream file(KPTABLES_ABI);
    ASSERT_TRUE(file) << KPTABLES_ABI;
    std::istringstream current(CurrentAbi());
    for (std::string expected, line; std::getline(file, expected);) {
        ASSERT_TRUE(std::getline(current, line)) << expected;
        EXPECT_EQ(line, expected);
    }
    EXPECT_EQ(current.peek(), std::istringstream::traits_type::eof());
}

struct Face {
    Face() {
        EXPECT_EQ(object->QueryInterface(com::kTablesInterface, face.ReceiveAny()), S_OK);
        const com::Value host(com::Give(MakeConnectionDouble(connection)));
        PutByName(object.Get(), "Cnn", host);
    }
    /// The function of a member in the virtual table.
    template <class... P, class... A>
    HRESULT Call(const char* member, A... arguments) {
        for (const com::Row& row : com::TablesInterface().Rows()) {
            if (row.name != member || row.kind != com::MemberKind::Method) continue;
            void* const* const functions = *reinterpret_cast<void* const* const*>(face.Get());
            using Function = HRESULT(STDMETHODCALLTYPE*)(IDispatch*, P...);
            return reinterpret_cast<Function>(functions[kDispatchFunctions + row.index])(face.Get(), arguments...);
        }
        return E_NOTIMPL;
    }

    std::shared_ptr<ScriptedConnection> connection = std::make_shared<ScriptedConnection>();
    com::Pointer<IDispatch> object = Create(L"kpTables.CTables");
    com::Pointer<IDispatch> face;
};

TEST(Dual, TheFacesIdentityIsTheObjects) {
    const Face tables;
    const auto one = com::Query<IUnknown>(tables.object.Get(), IID_IUnknown);
    const auto other = com::Query<IUnknown>(tables.face.Get(), IID_IUnknown);
    EXPECT_EQ(one.Get(), other.Get());
    EXPECT_NE(tables.face.Get(), tables.object.Get());
    EXPECT_TRUE(CallByName(tables.face.Get(), "Version").value.Is("10110"));
}

TEST(Dual, FunctionsTakeAndGiveNativeTypes) {
    Face tables;
    com::Value text;
    EXPECT_EQ((tables.Call<BSTR*>("Version", &text.bstrVal)), S_OK);
    text.vt = VT_BSTR;
    EXPECT_TRUE(com::FromVariant(text).Is("10110"));

    const com::Value direction(Variant("入库"));
    tables.connection->Answer(MakeRows({{"金额", VarType::Currency}}, {{Currency::FromScaled(125000)}}));
    CY amount = {};
    EXPECT_EQ((tables.Call<LONG, BSTR, CY*>("Get单据金额", LONG{5}, direction.bstrVal, &amount)), S_OK);
    EXPECT_EQ(amount.int64, 125000);
    EXPECT_EQ(tables.connection->Statements().back().text, "Select Sum(除税金额) As 金额 From 入库记录 Where BillID=5");

    tables.connection->Answer(MakeRows({{"月份", VarType::Integer}}, {{std::int16_t{3}}}));
    SHORT month = 0;
    IDispatch* rows = nullptr;
    EXPECT_EQ((tables.Call<LONG, SHORT*, IDispatch**>("rs余额记录", LONG{2}, &month, &rows)), S_OK);
    EXPECT_EQ(month, 3);
    ASSERT_TRUE(rows);
    rows->Release();

    VARIANT account = {}, number = {};
    account.vt = number.vt = VT_R8;
    account.dblVal = 10;
    number.dblVal = 4;
    double price = 0;
    EXPECT_EQ((tables.Call<VARIANT*, VARIANT*, double*>("CalcPrice", &account, &number, &price)), S_OK);
    EXPECT_EQ(price, 2.5);
}

TEST(Dual, ErrorsLeaveAnErrorObject) {
    Face tables;
    tables.connection->FailAt(1, "syntax error");
    IDispatch* rows = nullptr;
    EXPECT_EQ(static_cast<std::uint32_t>(tables.Call<IDispatch**>("rs生产厂家", &rows)), 0x80004005u);
    EXPECT_FALSE(rows);
    const auto support = com::Query<ISupportErrorInfo>(tables.face.Get(), IID_ISupportErrorInfo);
    ASSERT_TRUE(support);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(com::kTablesInterface), S_OK);
    com::Pointer<IErrorInfo> error;
    ASSERT_EQ(GetErrorInfo(0, error.Receive()), S_OK);
    com::Value text;
    text.vt = VT_BSTR;
    EXPECT_EQ(error->GetDescription(&text.bstrVal), S_OK);
    EXPECT_TRUE(com::FromVariant(text).Is("syntax error"));
}

com::Pointer<ITypeInfo> InfoOf(IDispatch* object) {
    UINT count = 0;
    EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1u);
    com::Pointer<ITypeInfo> info;
    EXPECT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Receive()), S_OK);
    return info;
}

/// An argument of a parameter's type.
Variant Sample(const _CTables::Parameter& parameter) {
    using Type = _CTables::ValueType;
    switch (parameter.type) {
        case Type::Integer:
            return std::int16_t{2};
        case Type::Long:
            return 3;
        case Type::Double:
            return 1.5;
        case Type::Currency:
            return Currency::FromScaled(25000);
        case Type::Date:
            return Date::FromYearMonthDay(2004, 3, 7);
        case Type::Boolean:
            return true;
        case Type::VariantArray:
            return std::make_shared<VariantArray>(std::vector<Variant>(12, Variant("")));
        case Type::Object:
            return nullptr;
        default:
            return "入库";
    }
}

/// A call by the type library's description of the virtual table, with a variable for each in/out parameter.
HRESULT CallByDescription(ITypeInfo& info, IDispatch* face, const com::Row& row) {
    std::vector<com::Value> values;
    for (const auto& parameter : row.parameters) values.emplace_back(Sample(parameter));
    std::vector<VARIANT> arguments(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        VARIANT& argument = arguments[values.size() - 1 - i];
        argument = values[i];
        if (!row.parameters[i].inOut) continue;
        const bool any = row.parameters[i].type == _CTables::ValueType::Variant;
        argument.vt = static_cast<VARTYPE>(VT_BYREF | (any ? static_cast<VARTYPE>(VT_VARIANT) : values[i].vt));
        argument.byref = any ? static_cast<void*>(&values[i]) : &values[i].llVal;
    }
    DISPPARAMS parameters = {arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    com::Value result;
    return info.Invoke(face, row.id, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr);
}

TEST(Dual, TheTypeLibraryDescribesEveryFunction) {
    const Face tables;
    const auto info = InfoOf(tables.object.Get());
    ASSERT_TRUE(info);
    for (const com::Row& row : com::TablesInterface().Rows()) {
        SCOPED_TRACE(std::string(row.name));
        std::wstring name = com::ToUtf16(row.name);
        LPOLESTR names = name.data();
        MEMBERID id = MEMBERID_NIL;
        EXPECT_EQ(info->GetIDsOfNames(&names, 1, &id), S_OK) << "names are written in code page 936";
        EXPECT_EQ(id, row.id);
    }
}

/// The description of a member; it is released with ReleaseFuncDesc.
FUNCDESC* DescriptionOf(ITypeInfo& info, const com::Row& row) {
    FUNCDESC* found = nullptr;
    for (UINT i = 0; SUCCEEDED(info.GetFuncDesc(i, &found)); ++i) {
        if (found->memid == row.id && found->invkind == INVOKE_FUNC) return found;
        info.ReleaseFuncDesc(found);
    }
    return nullptr;
}

TEST(Dual, TheTypeLibraryMarksParametersAndTellsWhatMethodsAnswer) {
    const Face tables;
    const auto info = InfoOf(tables.object.Get());
    int optional = 0, written = 0;
    for (const com::Row& row : com::TablesInterface().Rows()) {
        if (row.kind != com::MemberKind::Method) continue;
        SCOPED_TRACE(std::string(row.name));
        FUNCDESC* const function = DescriptionOf(*info, row);
        ASSERT_TRUE(function);
        ASSERT_GE(static_cast<std::size_t>(function->cParams), row.parameters.size());
        for (std::size_t i = 0; i < row.parameters.size(); ++i) {
            const USHORT flags = function->lprgelemdescParam[i].paramdesc.wParamFlags;
            EXPECT_TRUE(flags & PARAMFLAG_FIN);
            EXPECT_EQ((flags & PARAMFLAG_FOUT) != 0, row.parameters[i].inOut) << i;
            EXPECT_EQ((flags & PARAMFLAG_FOPT) != 0, row.parameters[i].optional) << i;
            optional += row.parameters[i].optional;
            written += row.parameters[i].inOut;
        }
        info->ReleaseFuncDesc(function);
        com::Value help;
        help.vt = VT_BSTR;
        EXPECT_EQ(info->GetDocumentation(row.id, nullptr, &help.bstrVal, nullptr, nullptr), S_OK);
        EXPECT_TRUE(com::FromVariant(help).Is(std::string(_CTables::Members()[row.index].answers)));
    }
    EXPECT_GT(optional, 0);
    EXPECT_GT(written, 0);
}

TEST(Dual, EveryMethodCanBeCalledAsTheTypeLibraryDescribesIt) {
    const AdoRecordsetClass recordsets;
    int sending = 0;
    for (const com::Row& row : com::TablesInterface().Rows()) {
        if (row.kind != com::MemberKind::Method || row.name == "CheckBnProduct") continue;
        SCOPED_TRACE(std::string(row.name));
        const Face described, called;
        // Update_Option shows what failed.
        const ScriptedSystem system(GetModuleHandleW(L"kpTables.dll"), std::deque<int>(20, IDOK));
        const auto info = InfoOf(described.object.Get());
        CallByDescription(*info, described.face.Get(), row);
        std::vector<Variant> arguments;
        for (const auto& parameter : row.parameters) arguments.push_back(Sample(parameter));
        CallByName(called.object.Get(), std::string(row.name), arguments);
        EXPECT_EQ(described.connection->Statements(), called.connection->Statements());
        if (!called.connection->Statements().empty()) ++sending;
    }
    EXPECT_GT(sending, 100) << "nearly all of them send something";
}

TEST(Dual, TheClassNamesItsInterfaces) {
    const Face tables;
    const auto provider = com::Query<IProvideClassInfo2>(tables.object.Get(), IID_IProvideClassInfo2);
    ASSERT_TRUE(provider);
    GUID events = {};
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
    EXPECT_EQ(events, com::kTablesEvents);
    com::Pointer<ITypeInfo> info;
    ASSERT_EQ(provider->GetClassInfo(info.Receive()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    EXPECT_EQ(attributes->guid, com::kTablesClass);
    EXPECT_EQ(attributes->cImplTypes, 2);
    info->ReleaseTypeAttr(attributes);
}

}  // namespace
}  // namespace kpTables::test
