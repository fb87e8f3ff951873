// Every statement that the component sends is read, and printed so that it reads as the same tree; places and numbers
// of literals in the tree; limits.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ReadableTexts.h"
#include "TreeDump.h"
#include "sql/SqlError.h"
#include "sql/parse/Parser.h"
#include "sql/parse/TextPrinter.h"

namespace kpTables::sql::parse {
namespace {

TEST(Statements, EveryTextReadsAndPrints) {
    const std::vector<std::string> texts = ReadableTexts();
    EXPECT_GT(texts.size(), 600u);
    for (const std::string& text : texts) {
        SCOPED_TRACE(text);
        StatementPtr tree;
        ASSERT_NO_THROW(tree = Parse(text));
        const std::string printed = Print(*tree);
        StatementPtr again;
        ASSERT_NO_THROW(again = Parse(printed)) << printed;
        EXPECT_EQ(Dump(*again), Dump(*tree));
        EXPECT_EQ(Print(*again), printed);
    }
}

TEST(Statements, KindByFirstWord) {
    struct Row {
        const char* text;
        StatementKind kind;
    };
    const Row rows[] = {
        {"(Select 1)", StatementKind::Select},
        {"Transform Sum(a) Select b From T Group By b Pivot c", StatementKind::Transform},
        {"Insert Into T Values (1)", StatementKind::Insert},
        {"Update T Set a=1", StatementKind::Update},
        {"Delete From T", StatementKind::Delete},
        {"Create Table T (a LONG)", StatementKind::CreateTable},
        {"Create Unique Index i On T (a)", StatementKind::CreateIndex},
        {"Drop Table T", StatementKind::DropTable},
        {"Drop Index i On T", StatementKind::DropIndex},
        {"Alter Table T Add a LONG", StatementKind::AddColumn},
        {"Alter Table T Alter Column a LONG", StatementKind::AlterColumn},
        {"Alter Table T Drop Column a", StatementKind::DropColumn},
        {"Select a Into U From T", StatementKind::SelectInto},
        {"With c As (Select 1) Select * From c", StatementKind::Select},
        {"Truncate Table T", StatementKind::Delete},
    };
    for (const Row& row : rows) EXPECT_EQ(Parse(row.text)->kind, row.kind) << row.text;
}

TEST(Statements, OffsetsAndOrdinalsOfAnUpdate) {
    const StatementPtr tree = Parse("Update 入库目录 Set 审核员='王芳',Lst.审核日期=#2004-3-7# Where BillID=-5");
    const auto& update = static_cast<const UpdateStatement&>(*tree);
    EXPECT_EQ(update.offset, 7u);
    ASSERT_EQ(update.assignments.size(), 2u);
    EXPECT_EQ(update.assignments[0].offset, 24u);
    EXPECT_EQ(update.assignments[1].offset, 43u);
    EXPECT_EQ(update.assignments[1].table, "Lst");
    EXPECT_EQ(As<Literal>(*update.assignments[0].value).ordinal, 0);
    EXPECT_EQ(As<Literal>(*update.assignments[1].value).ordinal, 1);
    const auto& equal = As<Binary>(*update.where);
    EXPECT_EQ(equal.offset, 83u);
    EXPECT_EQ(equal.left->offset, 77u);
    const auto& minus = As<Unary>(*equal.right);
    EXPECT_EQ(minus.offset, 84u);
    EXPECT_EQ(As<Literal>(*minus.operand).ordinal, 2);
    EXPECT_EQ(As<Literal>(*minus.operand).offset, 85u);
}

TEST(Statements, OffsetsOfAnInsert) {
    const StatementPtr tree = Parse("Insert Into T (a,[b c]) Values (1,2)");
    const auto& insert = static_cast<const InsertStatement&>(*tree);
    EXPECT_EQ(insert.offset, 12u);
    EXPECT_EQ(insert.columnOffsets, (std::vector<std::size_t>{15, 17}));
}

TEST(Statements, NamedConstantsHaveNoOrdinal) {
    const StatementPtr tree = Parse("Insert Into T Values (True,1,Null,2,False)");
    const auto& insert = static_cast<const InsertStatement&>(*tree);
    const int ordinals[] = {-1, 0, -1, 1, -1};
    ASSERT_EQ(insert.rows.front().size(), std::size(ordinals));
    for (std::size_t i = 0; i < std::size(ordinals); ++i)
        EXPECT_EQ(As<Literal>(*insert.rows.front()[i]).ordinal, ordinals[i]) << i;
}

TEST(Statements, LengthsOfTypesAreFixedLiterals) {
    EXPECT_EQ(Parse("Select 1,CAST(a AS char(4)),2,CAST(b AS char(2))")->fixedLiterals, (std::vector<int>{1, 3}));
    EXPECT_EQ(Parse("Create Table T (a COUNTER(1,1),b TEXT(50) DEFAULT 'x',c CHAR(3))")->fixedLiterals,
              (std::vector<int>{0, 1, 2, 4}));
    EXPECT_TRUE(Parse("Select Top 2 a From T Where b=1")->fixedLiterals.empty());
}

std::string Repeated(const std::string& text, int times) {
    std::string out;
    for (int i = 0; i < times; ++i) out += text;
    return out;
}

TEST(Limits, LongChainsAreRead) {
    const std::string text = "SELECT * FROM T WHERE a = 1" + Repeated(" OR a = 1", 9999);
    const StatementPtr tree = Parse(text);
    EXPECT_EQ(Print(*tree), text);
    const std::string pairs = "SELECT * FROM T WHERE a + 1 = 2 AND b = 1" + Repeated(" OR a = 1 AND b = 1", 9000);
    EXPECT_EQ(Print(*Parse(pairs)), pairs);
    const std::string sum = "SELECT 1" + Repeated(" + 1", 9999);
    EXPECT_EQ(Print(*Parse(sum)), sum);
    const std::string list = "SELECT a IN (1" + Repeated(", 1", 50000) + ")";
    EXPECT_EQ(Print(*Parse(list)), list);
    const std::string queries = "SELECT 1" + Repeated(" UNION ALL SELECT 1", 5000);
    EXPECT_EQ(Print(*Parse(queries)), queries);
}

TEST(Limits, NestingUpToALimit) {
    const struct {
        std::string open, middle, close;
    } rows[] = {
        {"(", "1", ")"},
        {"(Select ", "1", ")"},
        {"-(", "1", ")"},
        {"Not ", "a", ""},
        {"Abs(", "1", ")"},
        {"1+(", "1", ")"},
        {"- ", "1", ""},
        {"a In (", "1", ")"},
        {"Case When ", "1", " Then 1 End"},
        {"Exists (Select ", "1", ")"},
        {"Cast(", "1", " As int)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.open);
        const auto nested = [&row](int levels) {
            return "Select " + Repeated(row.open, levels) + row.middle + Repeated(row.close, levels);
        };
        const StatementPtr tree = Parse(nested(60));
        EXPECT_EQ(Dump(*Parse(Print(*tree))), Dump(*tree));
        EXPECT_THROW(Parse(nested(250)), SqlError);
        EXPECT_THROW(Parse(nested(20000)), SqlError);
        EXPECT_THROW(Parse("Select " + Repeated(row.open, 20000)), SqlError);
    }
}

TEST(Limits, SignsPrintNoDeeperThanTheyAre) {
    int levels = 60;
    for (; levels < 250; ++levels) {
        StatementPtr tree;
        try {
            tree = Parse("Select " + Repeated("- ", levels) + "a");
        } catch (const SqlError&) {
            break;
        }
        EXPECT_EQ(Dump(*Parse(Print(*tree))), Dump(*tree)) << levels;
    }
    EXPECT_GT(levels, 90);
    EXPECT_LT(levels, 250);
}

TEST(Limits, EveryLevelOfOperatorsAtTheDeepest) {
    const std::string open = "1 Imp 1 Eqv 1 Xor 1 Or 1 And 1 = 1 & 1 + 1 Mod 1 \\ 1 * 1 ^ (";
    const StatementPtr tree = Parse("Select " + Repeated(open, 190) + "1" + Repeated(")", 190));
    EXPECT_EQ(Dump(*Parse(Print(*tree))), Dump(*tree));
}

TEST(Limits, NestedTablesUpToALimit) {
    const auto nested = [](int levels) {
        return "Select * From " + Repeated("(", levels) + "A" + Repeated(" Inner Join A On 1=1)", levels);
    };
    const StatementPtr tree = Parse(nested(60));
    EXPECT_EQ(Dump(*Parse(Print(*tree))), Dump(*tree));
    EXPECT_THROW(Parse(nested(20000)), SqlError);
    EXPECT_THROW(Parse("Select * From A" + Repeated(" Inner Join A On 1=1", 20000)), SqlError);
    EXPECT_THROW(Parse("Select * From " + Repeated("(Select * From ", 20000)), SqlError);
    EXPECT_THROW(Parse("Select a" + Repeated(" Is Null", 20000)), SqlError);
}

TEST(Limits, TooManyOperators) {
    const std::string text = "Select 1" + Repeated("+1", 20002);
    try {
        Parse(text);
        FAIL() << "the statement was read";
    } catch (const SqlError& error) {
        EXPECT_STREQ(error.what(),
                     "Syntax error at line 1, column 40011 near \"+\": the statement has too many operators");
    }
}

TEST(Limits, TooDeep) {
    try {
        Parse("Select " + Repeated("(", 300));
        FAIL() << "the statement was read";
    } catch (const SqlError& error) {
        EXPECT_EQ(error.Kind(), ErrorKind::Syntax);
        EXPECT_STREQ(error.what(), "Syntax error at line 1, column 207 near \"(\": the statement is nested too deeply");
    }
}

}  // namespace
}  // namespace kpTables::sql::parse
