// The order that the server leaves to the client: the embedded engine's, row by row.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Book.h"
#include "kpTables/Error.h"
#include "kpTables/Transaction.h"
#include "sqlite/TestBook.h"
#include "text/TextOrder.h"

namespace kpTables {
namespace {

using namespace test;

constexpr std::string_view kTexts[] = {"",   "水泥", "水泥 ", "砂", "a",  "A",  "Ａ",   "b",    "é",    "e", "10", "9",
                                       "０", "-",    "、",    "中", "㐀", "あ", "カ",   "ｶ",    "가",   "ß", "ss", "Ω",
                                       "½",  "①",    "㎡",    "〇", "龘", "𠀀", "重庆", "中国", "沈阳", "沈"};

class OrderOnServer : public testing::Test {
protected:
    static void SetUpTestSuite() {
        embedded = CreateBook("memory:");
        server = NewBook();
        for (Book* book : {embedded.get(), server.get()}) {
            book->Execute(
                "Create Table T (k COUNTER PRIMARY KEY, a TEXT(50), b TEXT(50), n LONG, c CURRENCY, d DATETIME, f YESNO)");
            book->Execute("Create Table U (a TEXT(50), n LONG)");
            Transaction transaction(*book);
            std::mt19937 random(11);
            const auto below = [&](std::size_t limit) { return random() % limit; };
            const auto text = [&] {
                const std::size_t which = below(std::size(kTexts) + 2);
                return which < std::size(kTexts) ? Variant(std::string(kTexts[which])) : Variant::Null();
            };
            const auto t = book->AppendTo("T", {"a", "b", "n", "c", "d", "f"});
            const auto u = book->AppendTo("U", {"a", "n"});
            for (int i = 0; i < 400; ++i) {
                std::vector<Variant> row = {text(), text()};
                row.push_back(below(9) == 0 ? Variant::Null() : Variant(static_cast<std::int32_t>(below(5)) - 2));
                row.push_back(Currency::FromScaled(static_cast<std::int64_t>(below(7)) - 3));
                row.push_back(Date::FromSerial(static_cast<double>(below(40)) * 0.25 - 5));
                row.push_back(below(2) == 0);
                t->Append(row);
                u->Append({row[1], row[2]});
            }
            transaction.Commit();
        }
    }
    static void TearDownTestSuite() {
        embedded.reset();
        server.reset();
    }

    static inline BookPtr embedded;
    static inline BookPtr server;
};

constexpr const char* kQueries[] = {
    "Select * From T Order by a",
    "Select * From T Order by a DESC, b",
    "Select k From T Order by b, n DESC",
    "Select k, a From T Order by n, b DESC, c, d DESC",
    "Select k From T Order by d, a, f, c DESC",
    "Select k, a As x From T Order by x DESC, 1 DESC",
    "Select k From T Order by a & '-' & b, Len(b)",
    "Select k From T Where n=1 And f Order by IIf(n>0,b,a)",
    "Select n, c From T Order by Left(b,1) DESC, k",
    "Select Distinct f, a From T",
    "Select Distinct n, a, f From T Order by f, a DESC, n",
    "Select a From T Union Select a From U",
    "Select a, n From T Union Select a, n From U Order by 2, 1 DESC",
    "Select a, Count(*) As q From T Group by a",
    "Select Sum(c) As s, Max(n) As m From T Group by a, b, f",
    "Select b, Sum(n) As s From T Group by b Having Count(*)>5 Order by 2 DESC, b",
    "Select Min(T.k) As k, T.a, Count(*) As q From T Inner Join U On T.a=U.a Group by T.a Order by T.a DESC",
    "Select T.k, U.n From T Left Join U On T.b=U.a And T.n=U.n Order by U.a, T.k, U.n",
    "Select k From T Where k In (Select Top 7 k From T Order by a, k) Order by b",
    "Select Top 5 k From (Select k, n From T) As Q Order by n, k",
    "Select Q.b, Q.k From (Select Top 9 b, k From T Order by n, k) As Q Order by b, Q.k",
    "Select k From T Where a='水泥' And k<3 Order by b",
    "Select k From T Where k=17 Order by a",
    "Select k From T Where k=0 Order by a",
    "TRANSFORM Sum(c) SELECT a FROM T GROUP BY a PIVOT n",
    "TRANSFORM Count(*) SELECT n FROM T WHERE a<'c' And b>'0' GROUP BY n PIVOT b",
    "TRANSFORM Sum(n) SELECT f,a FROM T GROUP BY f,a ORDER BY a DESC PIVOT c",
    "Select b, Row_Number() Over (Order by k) As r From T Order by b",
};

/// Of texts that are equal in the book's order a group shows any.
bool IsSameCell(const Variant& a, const Variant& b) {
    const auto* text = a.If<std::string>();
    const auto* other = b.If<std::string>();
    return text && other ? text::CompareTexts(*text, *other) == 0 : a.Is(b);
}

/// The first row that differs, from 1; 0 when all are alike.
int FirstDifference(Recordset& expected, Recordset& actual) {
    int row = 1;
    for (; !expected.Eof() && !actual.Eof(); expected.MoveNext(), actual.MoveNext(), ++row) {
        for (int i = 0; i < expected.FieldCount(); ++i)
            if (!IsSameCell(expected.GetValue(i), actual.GetValue(i))) return row;
    }
    return expected.Eof() && actual.Eof() ? 0 : row;
}

TEST_F(OrderOnServer, IsTheEmbeddedEngines) {
    for (const char* query : kQueries) {
        SCOPED_TRACE(query);
        const RecordsetPtr expected = embedded->Execute(query);
        const RecordsetPtr actual = server->Execute(query);
        ASSERT_TRUE(actual);
        ASSERT_EQ(expected->FieldCount(), actual->FieldCount());
        for (int i = 0; i < expected->FieldCount(); ++i) {
            EXPECT_EQ(expected->FieldAt(i).name, actual->FieldAt(i).name);
            EXPECT_EQ(expected->FieldAt(i).type, actual->FieldAt(i).type);
        }
        EXPECT_EQ(expected->RecordCount(), actual->RecordCount());
        EXPECT_EQ(FirstDifference(*expected, *actual), 0);
    }
}

/// The server's library reads 重庆 with its own pronunciation, and so on; the book compares characters.
TEST_F(OrderOnServer, IsTheBooksWhereTheServerHasAnother) {
    const std::string where = "From T Where a In ('重庆','中国','沈阳','沈')";
    const std::string first = ValueOf(*server, "Select Top 1 a " + where + " And a In ('重庆','中国') Order by a, k");
    EXPECT_EQ(first, "重庆");
    EXPECT_EQ(RowsOf(*server, "Select a " + where + " Group by a"), "沈 / 沈阳 / 中国 / 重庆");
    EXPECT_EQ(RowsOf(*server, "Select a, k " + where + " Order by a DESC, k"),
              RowsOf(*embedded, "Select a, k " + where + " Order by a DESC, k"));
}

TEST_F(OrderOnServer, OfEditableRowsIsKeptWhileTheyChange) {
    std::string changed[2];
    for (const BookPtr& book : {embedded, server}) {
        book->BeginTrans();
        const RecordsetPtr rows =
            book->Open("Select a, n From T Where f And k<200 Order by b DESC, d", SourceKind::Text);
        EXPECT_EQ(rows->FieldCount(), 2);
        for (std::int32_t i = 0; !rows->Eof(); rows->MoveNext(), ++i) {
            rows->SetValue(1, i);
            rows->Update();
        }
        rows->AddNew();
        rows->SetValue(0, "added");
        rows->Update();
        rows->Close();
        changed[book == server] = RowsOf(*book, "Select k, a, n From T Order by k");
        book->RollbackTrans();
    }
    EXPECT_EQ(changed[0], changed[1]);
    EXPECT_NE(changed[0].find("added"), std::string::npos);
}

TEST(OrderOnServersLimits, CountTheHiddenColumns) {
    NewBookOptions options;
    options.maxRows = 9;
    options.maxBytes = 1 << 20;
    const BookPtr book = NewBook(options);
    book->Execute("Create Table T (k LONG PRIMARY KEY, a MEMO)");
    const auto rows = book->AppendTo("T", {"k", "a"});
    for (std::int32_t k = 0; k < 10; ++k) rows->Append({k, std::to_string(k % 3) + std::string(200'000, 'x')});
    rows->Flush();
    const auto refusal = [&](const char* text) {
        const auto error = Refused([&] { book->Execute(text); });
        return error ? error->Description() : "";
    };
    EXPECT_EQ(RowsOf(*book, "Select k From T Where k<4 Order by a"), "0 / 3 / 1 / 2");
    EXPECT_EQ(refusal("Select k From T Where k<9 Order by a"), "The result needs more than 1 MB of memory");
    EXPECT_EQ(refusal("Select k From T Order by Left(a,1)"), "The result has more than 9 rows");
    EXPECT_EQ(RowsOf(*book, "Select k From T Where k<9 Order by Left(a,1) DESC"), "2 / 5 / 8 / 1 / 4 / 7 / 0 / 3 / 6");
}

}  // namespace
}  // namespace kpTables
