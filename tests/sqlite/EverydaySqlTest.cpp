// A host's everyday SQL: every case of EverydaySql.txt, in order, a book for each group.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "TestBook.h"
#include "kpTables/Script.h"

namespace kpTables {
namespace {

using namespace test;

struct EverydayCase {
    std::string text;
    std::string answer;
    int line = 0;
    bool prepares = false;
};

struct EverydayGroup {
    std::string title;
    std::vector<EverydayCase> cases;
};

void PrintTo(const EverydayGroup& group, std::ostream* out) { *out << group.title; }

constexpr std::string_view kAnswer = "-> ";

/// A line that has no place where it stands becomes a case that cannot succeed.
std::vector<EverydayGroup> ReadGroups() {
    std::ifstream file(EVERYDAY_SQL);
    std::vector<EverydayGroup> groups;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        // A date literal begins with # too, but has no blank behind it.
        if (line.empty() || line == "#" || line.starts_with("# ")) continue;
        if (line.starts_with("= ")) {
            groups.push_back({line.substr(2), {}});
        } else if (groups.empty()) {
            groups.push_back({"line " + std::to_string(number) + " before the first group", {}});
        } else if (line.starts_with(kAnswer)) {
            if (!groups.back().cases.empty()) groups.back().cases.back().answer = line.substr(kAnswer.size());
        } else if (line.starts_with('[')) {
            groups.back().cases.push_back({line.substr(1, line.size() - 2), "done", number, true});
        } else {
            groups.back().cases.push_back({line, "(no answer in the file)", number, false});
        }
    }
    return groups;
}

/// An expression is what begins with no statement's word.
bool IsStatement(const std::string& text) {
    for (const char* word : {"Select ", "Insert ", "Update ", "Delete ", "Create ", "Alter ", "Drop ", "TRANSFORM ",
                             "With ", "Truncate "}) {
        if (text.starts_with(word)) return true;
    }
    return false;
}

class EverydaySql : public testing::TestWithParam<EverydayGroup> {};

TEST_P(EverydaySql, AnswersAsListed) {
    const auto book = NewBook();
    ASSERT_FALSE(GetParam().cases.empty());
    const bool server = GetParam().title.ends_with("SQL Server's dialect");
    const bool several = GetParam().title == "Several statements in one text";
    book->Dialect(server ? SqlDialect::SqlServer : SqlDialect::Jet);
    for (const auto& [text, answer, line, prepares] : GetParam().cases) {
        SCOPED_TRACE("line " + std::to_string(line) + ": " + text);
        try {
            const auto rows =
                several ? ExecuteScript(*book, text) : book->Execute(IsStatement(text) ? text : "Select " + text);
            EXPECT_EQ(rows ? RowsOf(*rows) : "done", answer);
        } catch (const Error& error) {
            ADD_FAILURE() << error.Description();
        }
    }
}

/// The title's letters.
std::string NameOf(const testing::TestParamInfo<EverydayGroup>& group) {
    std::string name;
    for (const char c : group.param.title) {
        if ((c | 0x20) >= 'a' && (c | 0x20) <= 'z') name += c;
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Group, EverydaySql, testing::ValuesIn(ReadGroups()), NameOf);

TEST(EverydaySqlFile, HasEveryGroup) { EXPECT_EQ(ReadGroups().size(), 20U); }

}  // namespace
}  // namespace kpTables
