// Calls by name: named and left-out arguments, references, arrays, values, errors.
#include <gtest/gtest.h>
#include <oleauto.h>

#include "AdoDouble.h"
#include "Client.h"
#include "com/HostObject.h"
#include "com/Utf16.h"
#include "com/Value.h"
#include "kpTables/Error.h"
#include "support/ScriptedConnection.h"

namespace kpTables::test {
namespace {

Currency Amount(const char* text) { return Currency::FromDecimalText(text); }

struct Server {
    Server() {
        host = MakeConnectionDouble(connection);
        com::Value argument(com::Give(host));
        EXPECT_EQ(PutByName(tables.Get(), "Cnn", argument), S_OK);
    }
    CallOutcome Call(const std::string& name, std::vector<Variant> arguments = {}) const {
        return CallByName(tables.Get(), name, arguments);
    }
    std::string LastText() const {
        return connection->Statements().empty() ? "" : connection->Statements().back().text;
    }

    std::shared_ptr<ScriptedConnection> connection = std::make_shared<ScriptedConnection>();
    com::Pointer<IDispatch> host;
    com::Pointer<IDispatch> tables = Create(L"kpTables.CTables");
};

TEST(Dispatch, ThePropertiesAreReadAndSet) {
    const Server server;
    EXPECT_TRUE(server.Call("isSQL").value.Is(false));
    EXPECT_EQ(PutByName(server.tables.Get(), "issql", com::Value(Variant(true))), S_OK);
    EXPECT_TRUE(server.Call("isSQL").value.Is(true));
    EXPECT_TRUE(server.Call("Speciality").value.Is(""));
    EXPECT_EQ(PutByName(server.tables.Get(), "Speciality", com::Value(Variant("建材"))), S_OK);
    EXPECT_TRUE(server.Call("Speciality").value.Is("建材"));
    const Variant connection = server.Call("Cnn").value;
    ASSERT_EQ(connection.Type(), VarType::Object);
    EXPECT_EQ(std::dynamic_pointer_cast<Connection>(*connection.If<ObjectPtr>()), server.connection)
        << "the host's own object";
    EXPECT_TRUE(server.Call("Version").value.Is("10110"));
}

TEST(Dispatch, TextsPassUnchanged) {
    const Server server;
    const std::wstring texts[] = {L"",      std::wstring(1000000, L'库'), L"\xD83D\xDE00",
                                  {0xD83D}, {0xDE00, L'x', 0xD83D},       std::wstring(L"a\0b", 3)};
    for (const std::wstring& text : texts) {
        com::Value argument;
        argument.vt = VT_BSTR;
        argument.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        ASSERT_EQ(PutByName(server.tables.Get(), "Speciality", argument), S_OK);
        com::Value answer;
        DISPPARAMS none = {};
        ASSERT_EQ(server.tables->Invoke(IdOf(server.tables.Get(), "Speciality"), IID_NULL, LOCALE_USER_DEFAULT,
                                        DISPATCH_PROPERTYGET, &none, &answer, nullptr, nullptr),
                  S_OK);
        ASSERT_EQ(answer.vt, VT_BSTR);
        EXPECT_EQ(std::wstring(answer.bstrVal, SysStringLen(answer.bstrVal)), text);
    }
}

TEST(Dispatch, ArgumentsHaveNames) {
    const Server server;
    std::wstring words[] = {L"Get单据数量", L"M_WHICH", L"rBillID"};
    LPOLESTR names[] = {words[0].data(), words[1].data(), words[2].data()};
    DISPID ids[3] = {};
    ASSERT_EQ(server.tables->GetIDsOfNames(IID_NULL, names, 3, LOCALE_USER_DEFAULT, ids), S_OK);
    com::Value values[] = {com::Value(Variant("入库")), com::Value(Variant(5))};
    DISPPARAMS parameters = {values, &ids[1], 2, 2};
    EXPECT_EQ(server.tables->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                                    nullptr, nullptr),
              S_OK);
    const std::string named = server.LastText();
    server.Call("Get单据数量", {5, "入库"});
    EXPECT_EQ(named, server.LastText());
    EXPECT_NE(named, "");

    words[1] = L"nothing";
    names[1] = words[1].data();
    EXPECT_EQ(server.tables->GetIDsOfNames(IID_NULL, names, 3, LOCALE_USER_DEFAULT, ids), DISP_E_UNKNOWNNAME);
    EXPECT_NE(ids[0], DISPID_UNKNOWN);
    EXPECT_EQ(ids[1], DISPID_UNKNOWN);
    EXPECT_EQ(ids[2], 0);
}

TEST(Dispatch, WhatAMethodWritesReachesTheCallersVariables) {
    const Server server;
    server.connection->Answer(MakeRows({{"月份", VarType::Integer}}, {{std::int16_t{3}}}));
    std::vector<Variant> variables = {2, 0};
    ASSERT_EQ(CallByName(server.tables.Get(), "rs余额记录", variables).result, S_OK);
    EXPECT_TRUE(variables[0].Is(2)) << "passed by value";
    EXPECT_TRUE(variables[1].Is(std::int16_t{3})) << "in the parameter's type";

    // Typed references, as an early-bound Visual Basic passes them.
    server.connection->Answer(MakeRows({{"月份", VarType::Integer}}, {{std::int16_t{7}}}));
    LONG month = 0;
    VARIANT arguments[2] = {};
    arguments[0].vt = VT_I4 | VT_BYREF;
    arguments[0].plVal = &month;
    arguments[1].vt = VT_I2;
    arguments[1].iVal = 2;
    DISPPARAMS parameters = {arguments, nullptr, 2, 0};
    ASSERT_EQ(server.tables->Invoke(IdOf(server.tables.Get(), "rs余额记录"), IID_NULL, LOCALE_USER_DEFAULT,
                                    DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(month, 7);

    BSTR text = SysAllocString(L"");
    arguments[0].vt = VT_BSTR | VT_BYREF;
    arguments[0].pbstrVal = &text;
    arguments[1].vt = VT_ERROR;
    arguments[1].scode = DISP_E_PARAMNOTFOUND;
    parameters.cArgs = 1;
    ASSERT_EQ(server.tables->Invoke(IdOf(server.tables.Get(), "rs项目汇总表"), IID_NULL, LOCALE_USER_DEFAULT,
                                    DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(std::wstring(text), L"数量");
    SysFreeString(text);
}

TEST(Dispatch, AnArrayMayBeginAnywhereAndHaveAnyType) {
    const Server server;
    const std::vector<Variant> items(12, Variant(""));
    server.Call("rsSql查询记录", {"出库", "", 0, 0, 0, std::make_shared<VariantArray>(items)});
    const std::string expected = server.LastText();
    ASSERT_NE(expected, "");

    SAFEARRAYBOUND bound = {12, 1};
    SAFEARRAY* texts = SafeArrayCreate(VT_BSTR, 1, &bound);
    for (LONG i = 1; i <= 12; ++i) {
        const BSTR text = SysAllocString(L"");
        SafeArrayPutElement(texts, &i, text);
        SysFreeString(text);
    }
    com::Value direction(Variant("出库")), kind(Variant("")), zero(Variant(0));
    VARIANT arguments[6] = {};
    arguments[0].vt = VT_ARRAY | VT_BSTR | VT_BYREF;
    arguments[0].pparray = &texts;
    for (int i = 1; i <= 3; ++i) arguments[i] = zero;
    arguments[4] = kind;
    arguments[5] = direction;
    DISPPARAMS parameters = {arguments, nullptr, 6, 0};
    EXPECT_EQ(server.tables->Invoke(IdOf(server.tables.Get(), "rsSql查询记录"), IID_NULL, LOCALE_USER_DEFAULT,
                                    DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(server.LastText(), expected);
    SafeArrayDestroy(texts);
}

TEST(Dispatch, AnswersHaveTheResultsType) {
    const Server server;
    server.connection->Answer(MakeRows({{"金额", VarType::Currency}}, {{Amount("12.5")}}));
    EXPECT_TRUE(server.Call("Get单据金额", {1, "入库"}).value.Is(Amount("12.5")));
    EXPECT_TRUE(server.Call("CalcPrice", {10, 4}).value.Is(2.5));
    EXPECT_TRUE(server.Call("Del_单据", {5, "成本"}).value.Is(false));
    EXPECT_TRUE(server.Call("Del仓库余额表").value.IsEmpty());
    EXPECT_TRUE(server.Call("rs余额记录", {0, -1}).value.Is(nullptr)) << "Nothing";
    EXPECT_TRUE(server.Call("AllTrim", {"ab-CD 12号"}).value.Is("-CD号"));
}

TEST(Dispatch, TheHostsRecordsetComesBackUnchanged) {
    const Server server;
    const auto rows = MakeRows({{"pdID", VarType::Long}}, {{1}});
    server.connection->Answer(rows);
    const Variant answer = server.Call("rs期初记录", {0, 1}).value;
    ASSERT_EQ(answer.Type(), VarType::Object);
    // Only the host's own code knows what its recordset stands for.
    EXPECT_EQ(std::dynamic_pointer_cast<Recordset>(*answer.If<ObjectPtr>()), rows);
    EXPECT_EQ(rows->CacheSize(), 200);
}

TEST(Dispatch, AnObjectCountsByItsDefaultProperty) {
    const Server server;
    const auto rows = com::Give(com::DispatchOf(MakeRows({{"BillID", VarType::Long}}, {{41}})));
    const com::Pointer<IDispatch> recordset(com::DispatchOf(*rows.If<ObjectPtr>()));
    std::vector<Variant> name = {"BillID"};
    const Variant field = CallByName(recordset.Get(), "Fields", name).value;
    ASSERT_EQ(field.Type(), VarType::Object);
    std::vector<Variant> arguments = {field, "入库"};
    ASSERT_EQ(CallByName(server.tables.Get(), "Get单据数量", arguments).result, S_OK);
    EXPECT_NE(server.LastText().find("BillID=41"), std::string::npos) << server.LastText();
    EXPECT_EQ(arguments[0].Type(), VarType::Object) << "a variable that holds an object keeps it";
}

TEST(Dispatch, ARowMayAnswerItsFieldsByItsDefaultMember) {
    const Server server;
    const auto row = com::Give(com::DispatchOf(
        MakeRows({{"月份", VarType::Integer}, {"日子", VarType::Integer}}, {{std::int16_t{3}, std::int16_t{7}}})));
    EXPECT_TRUE(server.Call("Get单据中文日期", {row}).value.Is("03月07日"));
    const com::Pointer<IDispatch> recordset(com::DispatchOf(*row.If<ObjectPtr>()));
    const Variant fields = CallByName(recordset.Get(), "Fields").value;
    EXPECT_TRUE(server.Call("Get单据中文日期", {fields}).value.Is("03月07日"));
}

TEST(Dispatch, ErrorsHaveNumberDescriptionAndSource) {
    const AdoRecordsetClass recordsets;
    struct Case {
        const char* member;
        std::vector<Variant> arguments;
        std::int32_t number;
        const char* end;
    };
    const Case cases[] = {
        {"Version", {1}, 450, "Version"},
        {"Get单据金额", {}, 449, "rBillID"},
        {"Get单据金额", {Variant::Missing(), "入库"}, 449, "rBillID"},
        {"Get单据金额", {"abc", "入库"}, 13, "rBillID"},
        {"Get单据金额", {2147483648.0, "入库"}, 6, "rBillID"},
        {"Get单据金额", {Variant::Null(), "入库"}, 94, "rBillID"},
        {"Get单据金额", {nullptr, "入库"}, 13, "rBillID"},
        {"Header", {com::Give(MakeBarDouble(nullptr)), "L", "F", true}, 438, "cols"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.member) + ", " + each.end);
        const Server server;
        const CallOutcome outcome = server.Call(each.member, each.arguments);
        EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
        EXPECT_EQ(static_cast<std::uint32_t>(outcome.code), 0x800A0000u + static_cast<std::uint32_t>(each.number));
        EXPECT_TRUE(outcome.description.ends_with(std::string(": ") + each.end)) << outcome.description;
        EXPECT_EQ(outcome.source, "kpTables");
    }
    const auto tables = Create(L"kpTables.CTables");
    EXPECT_EQ(IdOf(tables.Get(), "NoSuchMember"), DISPID_UNKNOWN);
    const CallOutcome unset = CallByName(tables.Get(), "rs期初记录");
    EXPECT_EQ(static_cast<std::uint32_t>(unset.code), 0x800A0000u + 449);
    std::vector<Variant> arguments = {0, 1};
    EXPECT_EQ(static_cast<std::uint32_t>(CallByName(tables.Get(), "rs期初记录", arguments).code), 0x800A0000u + 91);
}

TEST(Dispatch, TheDatabasesErrorPassesUnchanged) {
    const Server server;
    server.connection->FailAt(1, "syntax error (missing operator)");
    const CallOutcome outcome = server.Call("rs期初记录", {0, 1});
    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(static_cast<std::uint32_t>(outcome.code), 0x80004005u);
    EXPECT_EQ(outcome.description, "syntax error (missing operator)");
}

TEST(Dispatch, AnEditableRecordsetThatCannotBeCreatedIsError429) {
    const Server server;
    // Without the double's class there is nothing behind its name.
    const CallOutcome outcome = server.Call("操作员_Append", {"张三"});
    EXPECT_EQ(static_cast<std::uint32_t>(outcome.code), 0x800A0000u + 429) << outcome.description;
}

}  // namespace
}  // namespace kpTables::test
