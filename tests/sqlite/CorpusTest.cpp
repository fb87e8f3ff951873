// Every text that the component sends, run against an empty book.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "TestBook.h"
#include "TestDatabase.h"
#include "corpus/Corpus.h"
#include "engines/sqlite/BookFile.h"
#include "kpTables/Book.h"
#include "kpTables/Error.h"
#include "sql/SqlError.h"
#include "sql/Translate.h"
#include "sql/parse/Parser.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables {
namespace {

/// A call whose text names what the schema does not have, or compares what cannot be compared.
struct Refusal {
    std::string_view call;
    std::string_view title;
    const char* message;
};

constexpr Refusal kRefusals[] = {
    // The selector is a part of the table's name, whatever it is, and cost bills have no BillID.
    {R"(Get_BillNum(-1, -32767, "", "成本"))", "a negative warehouse and month",
     "unknown column 'BillID' (line 1, column 8)"},
    {R"(Get_BillNum(0, 0, " ", ""))", "a blank is a kind, a selector is any text",
     "unknown table '目录' (line 1, column 20)"},
    {R"(Get单据金额(7, "成本"))", "", "unknown column 'BillID' (line 1, column 40)"},
    {R"(Get单据金额(-2147483648, ""))", "", "unknown table '记录' (line 1, column 29)"},
    {R"(Get单据金额(Empty, Empty))", "", "unknown table '记录' (line 1, column 29)"},
    {R"(Get单据金额(-2147483648, True))", "", "unknown table 'True记录' (line 1, column 29)"},
    {R"(rs商品汇总("盘点", 0, 0, 0, 0, ""))", "an unknown selector", "unknown table '盘点目录' (line 1, column 245)"},
    // Likewise a group's column and an operator.
    {R"(rsSql单据记录("入库", "", 0, 0, 0, "项目名称 ", ["", "", "", "", "", "", "", "", "", "", "", ""]))", "",
     "unknown column 'rec.项目名称' (line 1, column 429)"},
    {R"(rsSql单据记录("入库", "", 0, 0, 0, "", ["", "", "", "", "", "", "", "", "x", " Is Null Or 1=", "", ""]))",
     "an operator is any text", "Type mismatch at line 1, column 423: 'x' is not a number"},
    {R"(rsSql查询记录("入库", "", 0, 0, 0, ["", "", "", "", "", "", "", "", "x", " Is Null Or 1=", "", ""]))",
     "an operator is any text", "Type mismatch at line 1, column 517: 'x' is not a number"},
    {R"(rs工作单列表(r收货款:=100))", "payment without an operator",
     "unknown column 'Lst.货款100' (line 1, column 478)"},
};

/// The message with which the book refuses a statement, "" when it runs.
std::string MessageOf(Connection& book, const corpus::Statement& statement) {
    try {
        if (statement.kind == "execute")
            book.Execute(statement.text);
        else
            (void)book.Open(statement.text, SourceKind::Text)->RecordCount();
    } catch (const DatabaseError& error) {
        return error.Description();
    }
    return "";
}

TEST(Corpus, EveryTextRunsButThoseNamed) {
    // The table Header has the names of one dialect.
    const BookPtr books[] = {CreateBook("memory:", {.header = HeaderDialect::Jet}),
                             CreateBook("memory:", {.header = HeaderDialect::SqlServer})};
    std::ptrdiff_t refused = 0;
    for (const corpus::SentText& text : corpus::Texts()) {
        if (!text.statement->refusal.empty()) continue;
        SCOPED_TRACE(text.source->Name());
        const auto* known = std::find_if(std::begin(kRefusals), std::end(kRefusals), [&](const Refusal& each) {
            return each.call == text.source->call && each.title == text.source->title;
        });
        const bool expected = known != std::end(kRefusals);
        const std::string first = MessageOf(*books[0], *text.statement);
        const std::string second = MessageOf(*books[1], *text.statement);
        if (expected) {
            ++refused;
            EXPECT_EQ(first, known->message);
            EXPECT_EQ(second, known->message);
        } else {
            EXPECT_TRUE(first.empty() || second.empty()) << first;
        }
    }
    EXPECT_EQ(refused, std::ssize(kRefusals));
}

/// The text that the engine gets, or the refusal. A pattern is the host's own, and the dialects differ about [!a] in
/// it.
std::string TranslationOf(const std::string& text, const sql::Catalog& catalog, sql::Dialect dialect) {
    try {
        std::string translated =
            sql::Translate(*sql::parse::Parse(text, {}, dialect), catalog, sql::print::sqlite::SqliteEngine()).text;
        constexpr std::string_view kPattern = "kp_like_server(";
        for (auto at = translated.find(kPattern); at != translated.npos; at = translated.find(kPattern))
            translated.replace(at, kPattern.size(), "kp_like(");
        return translated;
    } catch (const sql::SqlError& refusal) {
        return refusal.what();
    }
}

TEST(Corpus, EveryTextMeansTheSameInBothDialects) {
    const test::TemporaryDirectory directory;
    CreateBook(directory.File("book"));
    const test::TestDatabase database(engines::sqlite::OpenBookFile(directory.File("book"), {}));
    database.GetCatalog().Refresh();
    for (const corpus::SentText& text : corpus::Texts()) {
        SCOPED_TRACE(text.source->Name());
        EXPECT_EQ(TranslationOf(text.statement->text, database.GetCatalog(), sql::Dialect::Jet),
                  TranslationOf(text.statement->text, database.GetCatalog(), sql::Dialect::SqlServer));
    }
}

TEST(Corpus, EveryTableThatIsOpenedExists) {
    const auto book = CreateBook("memory:");
    int opened = 0;
    for (const corpus::Case& each : corpus::Cases()) {
        for (const corpus::Statement& statement : each.jet) {
            if (statement.kind != "open table") continue;
            SCOPED_TRACE(each.Name());
            EXPECT_EQ(book->Open(statement.text, SourceKind::Table)->RecordCount(), 0);
            ++opened;
        }
    }
    EXPECT_GT(opened, 0);
}

}  // namespace
}  // namespace kpTables
