// Calls by name: conversions, in/out arguments, errors.
#include <gtest/gtest.h>

#include "ClosingScript.h"
#include "TableScript.h"
#include "kpTables/LateBound.h"
#include "kpTables/LateBoundMember.h"
#include "kpTables/MemoryGrid.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

using Arguments = std::vector<Variant>;
using Kind = _CTables::MemberKind;

struct Book {
    Book() { tables.Cnn(cnn); }
    Variant Call(const char* name, Arguments arguments = {}) { return _CTables::Call(tables, name, arguments); }

    std::shared_ptr<ScriptedConnection> cnn = std::make_shared<ScriptedConnection>();
    CTables tables;
};

TEST(LateBoundCall, AnswersWithTheResultsType) {
    Book book;
    EXPECT_TRUE(book.Call("Version").Is("10110"));
    EXPECT_TRUE(book.Call("VERSION").Is("10110"));
    EXPECT_TRUE(book.Call("CalcPrice", {10, 4}).Is(2.5));
    EXPECT_TRUE(book.Call("AllTrim", {"ab-CD 12号"}).Is("-CD号"));
    EXPECT_TRUE(book.Call("Update", {"x", "y", 5}).IsEmpty());
    EXPECT_TRUE(book.Call("Del_单据", {5, "成本"}).Is(false));
    EXPECT_TRUE(book.Call("Del仓库余额表").IsEmpty()) << "no result";
    book.cnn->Answer(MakeRows({{"金额", VarType::Currency}}, {{Money(125000)}}));
    EXPECT_TRUE(book.Call("Get单据金额", {1, "入库"}).Is(Money(125000)));
    const auto rows = MakeRows({{"pdID", VarType::Long}}, {{1}});
    book.cnn->Answer(rows);
    const Variant answer = book.Call("rs月份列表");
    ASSERT_EQ(answer.Type(), VarType::Object);
    EXPECT_EQ(std::dynamic_pointer_cast<Recordset>(*answer.If<ObjectPtr>()), rows);
    EXPECT_TRUE(book.Call("rs余额记录", {0, -1}).Is(Variant(nullptr))) << "no recordset is Nothing";
}

TEST(LateBoundCall, WritesInOutArgumentsBackInTheParametersType) {
    Book book;
    book.cnn->Answer(MakeRows({{"月份", VarType::Integer}}, {{std::int16_t{3}}}));
    Arguments arguments = {"2", 0};
    _CTables::Call(book.tables, "rs余额记录", arguments);
    EXPECT_TRUE(arguments[0].Is("2")) << "not in/out: as it was";
    EXPECT_TRUE(arguments[1].Is(std::int16_t{3}));

    arguments = {"5", "7.4"};
    _CTables::Call(book.tables, "rs入库记录", arguments);
    EXPECT_TRUE(arguments[0].Is(5));
    EXPECT_TRUE(arguments[1].Is(7));

    arguments = {"出库", "5", 12, "2004-3-7"};
    _CTables::Call(book.tables, "BillAdulting", arguments);
    EXPECT_TRUE(arguments[0].Is("出库"));
    EXPECT_TRUE(arguments[1].Is(5));
    EXPECT_TRUE(arguments[2].Is("12"));
    EXPECT_TRUE(arguments[3].Is("2004-3-7")) << "a Variant keeps its type";
}

TEST(LateBoundCall, WritesBackWhenLaterArgumentsAreLeftOut) {
    Book book;
    Arguments arguments = {"12"};
    _CTables::Call(book.tables, "清理仓库余额表", arguments);
    ASSERT_EQ(arguments.size(), 1u);
    EXPECT_TRUE(arguments[0].Is(std::int16_t{12}));
}

TEST(LateBoundCall, AMissingInOutArgumentStaysMissing) {
    Book book;
    book.cnn->Answer(MakeRows({{"月份", VarType::Integer}}, {{std::int16_t{3}}}));
    Arguments arguments = {0, Variant::Missing()};
    _CTables::Call(book.tables, "rs余额记录", arguments);
    EXPECT_TRUE(arguments[1].IsMissing());
}

TEST(LateBoundCall, ErrorsAreNumberedAndNameThePart) {
    struct Case {
        const char* method;
        Arguments arguments;
        std::int32_t number;
        const char* named;
    };
    const Variant null = Variant::Null(), missing = Variant::Missing(), nothing = nullptr;
    const auto array = std::make_shared<VariantArray>();
    const Variant rows = MakeRows({}, {});
    const Variant grid = std::make_shared<MemoryGrid>();
    const Case cases[] = {
        {"NoSuchMethod", {}, 438, "NoSuchMethod"},
        {"Get_DateSql", {"", ""}, 438, "Get_DateSql"},
        {"isSQL", {}, 438, "isSQL"},
        {"", {}, 438, ""},
        {"Version", {1}, 450, "Version"},
        {"Get单据金额", {1, "入库", 3}, 450, "Get单据金额"},
        {"Get单据金额", {}, 449, "rBillID"},
        {"Get单据金额", {1}, 449, "m_Which"},
        {"Get单据金额", {missing, "入库"}, 449, "rBillID"},
        {"Get单据金额", {1, missing}, 449, "m_Which"},
        {"BillAdulting", {"入库", 5, "张三"}, 449, "rAdultDate"},
        {"Get单据金额", {"abc", "入库"}, 13, "rBillID"},
        {"Get单据金额", {"", "入库"}, 13, "rBillID"},
        {"Get单据金额", {2147483648.0, "入库"}, 6, "rBillID"},
        {"Get单据金额", {-2147483649.0, "入库"}, 6, "rBillID"},
        {"Get单据金额", {null, "入库"}, 94, "rBillID"},
        {"Get单据金额", {1, null}, 94, "m_Which"},
        {"Get单据金额", {nothing, "入库"}, 13, "rBillID"},
        {"Get单据金额", {array, "入库"}, 13, "rBillID"},
        {"Get单据金额", {1, rows}, 13, "m_Which"},
        {"CheckBnProduct", {32768}, 6, "rMonth"},
        {"CheckBnProduct", {-32769}, 6, "rMonth"},
        {"CheckBnProduct", {null}, 94, "rMonth"},
        {"Del仓库余额表", {0, "x"}, 13, "rMonth"},
        {"Del仓库余额表", {null}, 94, "rdpID"},
        {"rs余额记录", {0, null}, 94, "rMonth"},
        {"rs月份列表", {"yes"}, 13, "rDESC"},
        {"UpdateDepotClosedFlag", {1, "no date", true}, 13, "rDate"},
        {"UpdateDepotClosedFlag", {1, null, true}, 94, "rDate"},
        {"Get单据中文日期", {5}, 13, "rs"},
        {"Get单据中文日期", {Variant()}, 13, "rs"},
        {"Close_DepotBalance", {1, 1, false, "", "bar"}, 13, "rpgBar"},
        {"Get单据中文日期", {null}, 13, "rs"},
        {"Header", {}, 449, "rfg"},
        {"Header", {missing, "L"}, 449, "rfg"},
        {"Header", {Variant(), "L"}, 13, "rfg"},
        {"Header", {5, "L"}, 13, "rfg"},
        {"Header", {grid}, 449, "rTableName"},
        {"Header", {grid, "L", "F", "x"}, 13, "rSetting"},
        {"Update工资表", {2004, 3, null}, 13, "rfg"},
        {"Update工资表", {32768, 3, grid}, 6, "rYear"},
        {"rs工资表", {}, 449, "rMonth1"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.method) + ", " + each.named);
        Book book;
        try {
            book.Call(each.method, each.arguments);
            ADD_FAILURE() << "no error";
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), each.number);
            const std::string end = std::string(": ") + each.named;
            const std::string description = error.Description();
            if (*each.named) {
                EXPECT_TRUE(description.ends_with(end)) << description;
            }
            const std::string standard = ErrorText(static_cast<ErrorNumber>(each.number));
            EXPECT_TRUE(description.starts_with(standard)) << description;
        }
        EXPECT_TRUE(book.cnn->Statements().empty()) << "nothing is sent";
    }
}

TEST(LateBoundCall, AConversionThatFailsLeavesTheArgumentsAlone) {
    Book book;
    Arguments arguments = {"5", "x"};
    EXPECT_EQ(FailureOf([&] { _CTables::Call(book.tables, "rs入库记录", arguments); }), 13);
    EXPECT_TRUE(arguments[0].Is("5"));
    EXPECT_TRUE(arguments[1].Is("x"));
}

TEST(LateBoundCall, AMethodThatFailsHasWrittenBackWhatItWroteBefore) {
    struct Case {
        const char* method;
        Arguments arguments;
        std::size_t written;
        Variant value;
    };
    const Case cases[] = {
        {"rs项目汇总表", {"重量"}, 0, "数量"},
        {"Header", {std::make_shared<MemoryGrid>(), "进货", ""}, 2, "Default"},
        {"Header", {std::make_shared<MemoryGrid>(), "进货", "", true, false}, 2, "Default"},
    };
    for (const Case& each : cases) {
        Book book;
        book.cnn->FailAt(1, "no such table");
        Arguments arguments = each.arguments;
        EXPECT_NE(FailureOf([&] { _CTables::Call(book.tables, each.method, arguments); }), 0) << each.method;
        ASSERT_EQ(arguments.size(), each.arguments.size());
        EXPECT_TRUE(arguments[each.written].Is(each.value)) << each.method;
    }
}

TEST(LateBoundCall, PassesTheMethodsErrorsOn) {
    Book book;
    book.cnn->FailAt(1, "no such table");
    try {
        book.Call("rs月份列表");
        ADD_FAILURE() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.Description(), "no such table");
    }
    book.tables.Cnn(nullptr);
    EXPECT_EQ(FailureOf([&] { book.Call("rs月份列表"); }), 91);
    EXPECT_EQ(FailureOf([&] { book.Call("Get单据中文日期", {nullptr}); }), 91);
}

TEST(LateBoundCall, TakesObjects) {
    Book book;
    const Variant row =
        MakeRows({{"月份", VarType::Integer}, {"日子", VarType::Integer}}, {{std::int16_t{3}, std::int16_t{7}}});
    EXPECT_TRUE(book.Call("Get单据中文日期", {row}).Is("03月07日"));

    ClosingScript script;
    script.Prepare(false);
    const auto bar = std::make_shared<ScriptedBar>(script.cnn->Log());
    Arguments arguments = {2, 3, 0, "2004-3-31", bar};
    EXPECT_TRUE(_CTables::Call(script.tables, "Close_DepotBalance", arguments).Is(true));
    EXPECT_EQ(script.cnn->Log()->back(), "Visible=False");
    EXPECT_TRUE(arguments[2].Is(false));
    EXPECT_TRUE(arguments[3].Is("2004-3-31"));

    for (const Variant& noBar : {Variant(nullptr), Variant(), Variant::Missing(), Variant::Null()}) {
        ClosingScript withoutBar;
        withoutBar.Prepare(false);
        Arguments others = {2, 3, false, "2004-3-31", noBar};
        EXPECT_TRUE(_CTables::Call(withoutBar.tables, "Close_DepotBalance", others).Is(true));
        EXPECT_EQ(withoutBar.cnn->Log()->back(), "Close");
    }
}

TEST(LateBoundCall, AnObjectThatIsNoBarFailsWhereItIsFirstTouched) {
    const auto other = std::make_shared<MemoryGrid>();
    ClosingScript script;
    script.Prepare(false);
    Arguments arguments = {2, 3, 0, "2004-3-31", other};
    EXPECT_TRUE(_CTables::Call(script.tables, "Close_DepotBalance", arguments).Is(false));
    EXPECT_EQ(script.cnn->Statements().size(), 1U);

    Book nothingToClose;
    EXPECT_TRUE(nothingToClose.Call("Close_DepotBalance", {2, 3, false, "2004-3-31", other}).Is(true));
    EXPECT_EQ(nothingToClose.cnn->Statements().size(), 1U);
}

TEST(LateBoundCall, AnObjectThatIsNoGridFailsWhereItIsFirstTouched) {
    const auto other = std::make_shared<ScriptedBar>(std::make_shared<Journal>());
    Book saving;
    saving.cnn->Answer(nullptr);
    Arguments arguments = {other, "单据", "x", true};
    EXPECT_EQ(FailureOf([&] { (void)_CTables::Call(saving.tables, "Header", arguments); }), 438);
    ASSERT_EQ(saving.cnn->Statements().size(), 2U);
    EXPECT_EQ(saving.cnn->Statements().front().text, "Delete From Header Where Table='单据' And Flag='x'");
    EXPECT_TRUE(arguments[0].Is(other));

    Book withoutRows;
    EXPECT_TRUE(withoutRows.Call("Header", {other, "单据"}).Is(false));
    EXPECT_TRUE(Book().Call("Header", {nullptr, "单据"}).Is(false));
    Book applying;
    applying.cnn->Answer(MakeRows({{"colkey", VarType::String}, {"Width", VarType::Double}}, {{"a", 0.0}}));
    EXPECT_EQ(FailureOf([&] { applying.Call("Header", {other, "单据"}); }), 438);
    EXPECT_EQ(applying.cnn->Statements().size(), 1U);
    EXPECT_EQ(FailureOf([&] { Book().Call("Update工资表", {2004, 3, other}); }), 438);
}

TEST(LateBoundCall, TakesAGridAndWritesTheFlagBack) {
    Book book;
    book.cnn->Answer(nullptr);
    const auto grid = std::make_shared<MemoryGrid>();
    Arguments arguments = {grid, 12, Variant(), -1, true};
    EXPECT_TRUE(_CTables::Call(book.tables, "Header", arguments).Is(false));
    EXPECT_EQ(book.cnn->Statements().front().text, "Delete From Header Where TableName='12' And Flag='Default'");
    EXPECT_TRUE(arguments[0].Is(grid));
    EXPECT_TRUE(arguments[1].Is("12"));
    EXPECT_TRUE(arguments[2].Is("Default"));
    EXPECT_TRUE(book.Call("Update工资表", {2004, "3", grid}).Is(true));
}

TEST(LateBoundCall, WritesANewReportsIdBack) {
    Book book;
    book.cnn->Answer(Reports());
    Arguments arguments = {0, "月报", "x", "2004-3-7"};
    EXPECT_TRUE(_CTables::Call(book.tables, "History_Update", arguments).Is(-1));
    EXPECT_TRUE(arguments[0].Is(7));
    EXPECT_TRUE(arguments[3].Is(Day("2004-03-07")));
}

TEST(LateBoundCall, MastersAnswerWithTheResultsType) {
    struct Case {
        const char* method;
        Arguments arguments;
        RecordsetPtr rows;
        Variant answer;
    };
    const std::vector<FieldInfo> sums = {{"数量", VarType::Double}, {"金额", VarType::Currency}};
    const auto product = MakeRows({{"pdID", VarType::Long}, {"默认单价", VarType::Currency}}, {{5, Money(12500)}});
    const auto price = MakeRows({{"单价", VarType::Double}}, {{3.25}});
    const auto warehouses = MakeRows({{"dpID", VarType::Long}}, {{1}, {2}});
    const Case cases[] = {
        {"get_option", {"A"}, Setting("1 "), "1"},
        {"Get_AccInfo", {"建帐月份"}, Setting("2004年03月07日 "), std::int16_t{3}},
        {"Get_AccInfo", {"unknown"}, nullptr, ""},
        {"Get_BuiltDate", {}, Setting("2004年03月07日 "), Day("2004-03-07")},
        {"Update_AccInfo", {"", 1}, nullptr, false},
        {"SetDefaultSFK", {}, product, true},
        {"SetBnCurrentDate", {"2005", 3.0}, nullptr, true},
        {"rs厂商分类", {}, product, product},
        {"Get仓库名称", {"0"}, nullptr, "全部仓库"},
        {"Get仓库ID", {"全部"}, nullptr, 0},
        {"Get仓库数量", {}, warehouses, std::int16_t{2}},
        {"Get商品资料", {5, "默认单价"}, product, Money(12500)},
        {"Get商品资料", {5, "ID"}, product, 5},
        {"商品已被使用", {5}, product, true},
        {"Get商品ID", {690123}, product, 5},
        {"Get客户单价", {12, 5, "2004-3-7"}, price, 3.25},
        {"Get上期库存", {2, 7, 3, "数量"}, MakeRows(sums, {{2.5, Money(1)}}), 2.5},
        {"Get商品入库", {2, 7, 3, "金额", Variant::Missing(), true}, MakeRows(sums, {{2.5, Money(1)}}), Money(1)},
        {"Get商品成本", {2, 7, 3, "金额"}, MakeRows(sums, {{2.5, Money(1)}}), Money(1)},
        {"Get本期库存", {2, 7, 0, "金额", true}, nullptr, 0.0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.method);
        Book book;
        book.cnn->Answer(each.rows);
        const Variant answer = book.Call(each.method, each.arguments);
        EXPECT_TRUE(answer.Is(each.answer)) << Shown(answer);
    }
}

TEST(LateBoundCall, FailuresOfMasters) {
    Book book;
    EXPECT_EQ(FailureOf([&] { book.Call("Get商品库存", {2, 7, 3, "单价"}); }), 11);
    EXPECT_EQ(FailureOf([&] { book.Call("SetBnCurrentDate", {32768, 3}); }), 6);
    EXPECT_EQ(FailureOf([&] { book.Call("Get客户单价", {1, 2, "no date"}); }), 13);
}

TEST(LateBoundCall, AnOptionMayBeOfAnyType) {
    for (const Variant& value : {Variant("x"), Variant(7), Variant::Null(), Variant(Day("2004-03-07"))}) {
        Book book;
        const auto options = OptionRows({});
        book.cnn->Answer(options);
        Arguments arguments = {"A", value};
        EXPECT_TRUE(_CTables::Call(book.tables, "Update_Option", arguments).IsEmpty());
        EXPECT_TRUE(arguments[1].Is(value)) << "its type stays";
        ASSERT_EQ(options->Contents().size(), 1u);
        EXPECT_TRUE(options->Contents()[0][1].Is(Text(value) + " "));
    }
}

TEST(LateBoundProperties, GetLetAndSet) {
    Book book;
    const auto invoke = [&](const char* name, Kind kind, Arguments arguments = {}) {
        return _CTables::Invoke(book.tables, *_CTables::Find(name, kind), arguments);
    };
    EXPECT_TRUE(invoke("isSQL", Kind::PropertyGet).Is(false));
    EXPECT_TRUE(invoke("isSQL", Kind::PropertyLet, {1}).IsEmpty());
    EXPECT_TRUE(invoke("isSQL", Kind::PropertyGet).Is(true));
    EXPECT_TRUE(book.tables.isSQL());

    EXPECT_TRUE(invoke("Speciality", Kind::PropertyGet).Is(""));
    invoke("Speciality", Kind::PropertyLet, {12.5});
    EXPECT_TRUE(invoke("Speciality", Kind::PropertyGet).Is("12.5"));

    EXPECT_EQ(*invoke("Cnn", Kind::PropertyGet).If<ObjectPtr>(), book.cnn);
    const auto other = std::make_shared<ScriptedConnection>();
    invoke("Cnn", Kind::PropertySet, {other});
    EXPECT_EQ(book.tables.Cnn(), other);
    invoke("Cnn", Kind::PropertySet, {nullptr});
    EXPECT_EQ(book.tables.Cnn(), nullptr);

    EXPECT_EQ(FailureOf([&] { invoke("Cnn", Kind::PropertySet, {MakeRows({}, {})}); }), 13);
    EXPECT_EQ(FailureOf([&] { invoke("Cnn", Kind::PropertySet, {5}); }), 13);
    EXPECT_EQ(FailureOf([&] { invoke("isSQL", Kind::PropertyLet); }), 449);
    EXPECT_EQ(FailureOf([&] { invoke("isSQL", Kind::PropertyLet, {Variant::Null()}); }), 94);
    EXPECT_EQ(FailureOf([&] { invoke("isSQL", Kind::PropertyGet, {1}); }), 450);
}

TEST(LateBoundArguments, Arrays) {
    using latebound::Marshal;
    using ArrayPtr = std::shared_ptr<VariantArray>;
    const auto array = std::make_shared<VariantArray>(std::vector<Variant>{1, "x"});
    EXPECT_EQ(Marshal<ArrayPtr>::kType, _CTables::ValueType::VariantArray);
    EXPECT_EQ(Marshal<ArrayPtr>::Take(array), array);
    EXPECT_EQ(FailureOf([] { Marshal<ArrayPtr>::Take("x"); }), 13);
    EXPECT_EQ(FailureOf([] { Marshal<ArrayPtr>::Take(Variant::Null()); }), 13);
}

}  // namespace
}  // namespace kpTables::test
