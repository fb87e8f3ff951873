// The late-bound table: looking members up, and their text forms. A test of kpbook compares it with CTables.h.
#include <gtest/gtest.h>

#include <set>

#include "kpTables/CTables.h"
#include "kpTables/LateBound.h"

namespace kpTables::test {
namespace {

using Kind = _CTables::MemberKind;

TEST(LateBoundTable, ShowsSignatures) {
    const struct {
        const char* name;
        Kind kind;
        const char* signature;
    } cases[] = {
        {"Cnn", Kind::PropertyGet, "Cnn() As Connection"},
        {"Cnn", Kind::PropertySet, "Cnn(value As Connection)"},
        {"CheckBnProduct", Kind::Method, "CheckBnProduct(rMonth As Integer)"},
        {"rs余额记录", Kind::Method,
         "rs余额记录(rdpID As Long (optional), rMonth As Integer (in/out, optional)) As Recordset"},
        {"清理仓库余额表", Kind::Method, "清理仓库余额表(rMonth As Integer (in/out), rdpID As Long (optional))"},
    };
    for (const auto& each : cases) {
        const auto* member = _CTables::Find(each.name, each.kind);
        ASSERT_NE(member, nullptr) << each.name;
        EXPECT_EQ(_CTables::Signature(*member), each.signature);
    }
}

TEST(LateBoundTable, NoMemberTwice) {
    std::set<std::pair<std::string_view, Kind>> seen;
    for (const auto& member : _CTables::Members()) EXPECT_TRUE(seen.emplace(member.name, member.kind).second);
}

TEST(LateBoundTable, FindsByNameAndKind) {
    for (const auto& member : _CTables::Members()) EXPECT_EQ(_CTables::Find(member.name, member.kind), &member);

    const auto* closing = _CTables::Find("close_depotbalance");
    ASSERT_NE(closing, nullptr);
    EXPECT_EQ(closing->name, "Close_DepotBalance");
    EXPECT_EQ(_CTables::Find("GET单据金额"), _CTables::Find("Get单据金额"));
    EXPECT_EQ(_CTables::Find("ISSQL", Kind::PropertyLet)->kind, Kind::PropertyLet);

    EXPECT_EQ(_CTables::Find("isSQL"), nullptr) << "a property is no method";
    EXPECT_EQ(_CTables::Find("Version", Kind::PropertyGet), nullptr);
    EXPECT_EQ(_CTables::Find("Cnn", Kind::PropertyLet), nullptr);
    EXPECT_EQ(_CTables::Find(""), nullptr);
    EXPECT_EQ(_CTables::Find("Version "), nullptr);
    EXPECT_EQ(_CTables::Find("Get_DateSql"), nullptr) << "private to the class";
    EXPECT_EQ(_CTables::Find("Get_NoSql"), nullptr);
    EXPECT_EQ(_CTables::Find("vDbl"), nullptr);
    EXPECT_EQ(_CTables::Find("vCur"), nullptr);
    EXPECT_EQ(_CTables::Find("StockFigure"), nullptr);
}

TEST(LateBoundTable, NamesTypes) {
    using Type = _CTables::ValueType;
    const std::pair<Type, const char*> names[] = {
        {Type::None, ""},
        {Type::Integer, "Integer"},
        {Type::Long, "Long"},
        {Type::Double, "Double"},
        {Type::Currency, "Currency"},
        {Type::Date, "Date"},
        {Type::String, "String"},
        {Type::Boolean, "Boolean"},
        {Type::Variant, "Variant"},
        {Type::Object, "Object"},
        {Type::Recordset, "Recordset"},
        {Type::Connection, "Connection"},
        {Type::VariantArray, "Variant()"},
    };
    for (const auto& [type, name] : names) EXPECT_EQ(_CTables::TypeText(type), name);
}

}  // namespace
}  // namespace kpTables::test
