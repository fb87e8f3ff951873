// Damaged statements: whatever is read must print and read again as the same tree; everything else must be an SqlError.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "ReadableTexts.h"
#include "TreeDump.h"
#include "sql/Shape.h"
#include "sql/SqlError.h"
#include "sql/parse/Lexer.h"
#include "sql/parse/Parser.h"
#include "sql/parse/TextPrinter.h"

namespace kpTables::sql::parse {
namespace {

constexpr int kMutationsPerText = 30;

class Mutator {
public:
    explicit Mutator(const std::vector<std::string>& texts) : texts_(texts) {}

    /// The text after one to three random damages.
    std::string Damage(std::string text) {
        for (std::size_t times = 1 + Below(3); times > 0 && !text.empty(); --times) DamageOnce(text);
        return text;
    }

private:
    std::size_t Below(std::size_t bound) { return random_() % bound; }

    void DamageOnce(std::string& text) {
        static const std::string kBytes = "()'#[].,;*+-/\\^&=<>@|0159 EeAnd\xE5\xB9\xB4\xEF\xBC\x9D\x01";
        static const std::vector<std::string> kWords = {" Select ", " And ",      " Not ",     " In (",
                                                        " Union ",  " Order By ", " Between ", " Is Null ",
                                                        "--",       "''",         "[x y]",     " As "};
        const std::size_t at = Below(text.size());
        const std::size_t length = 1 + Below(std::min<std::size_t>(text.size() - at, 12));
        switch (Below(7)) {
            case 0:
                text.erase(at, length);
                break;
            case 1:
                text.insert(at, text.substr(at, length));
                break;
            case 2:
                text[at] = kBytes[Below(kBytes.size())];
                break;
            case 3:
                text.insert(at, kWords[Below(kWords.size())]);
                break;
            case 4:
                text[at] = static_cast<char>(Below(256));
                break;
            case 5: {
                const std::size_t digit = text.find_first_of("0123456789", at);
                if (digit != std::string::npos) text[digit] = static_cast<char>('0' + Below(10));
                break;
            }
            default: {
                const std::string& other = texts_[Below(texts_.size())];
                text = text.substr(0, at) + other.substr(Below(other.size()));
            }
        }
    }

    const std::vector<std::string>& texts_;
    std::mt19937 random_{20040307};
};

/// Whether the text was read; if so, its canonical text has been checked.
bool ReadsAndPrints(const std::string& text) {
    StatementPtr tree;
    try {
        tree = Parse(text);
    } catch (const SqlError& error) {
        EXPECT_LE(error.Offset(), text.size());
        EXPECT_STRNE(error.what(), "");
        return false;
    }
    const std::string printed = Print(*tree);
    const StatementPtr again = Parse(printed);
    EXPECT_EQ(Dump(*again), Dump(*tree));
    EXPECT_EQ(Print(*again), printed);
    return true;
}

TEST(Mutation, ReadsOrRaises) {
    const std::vector<std::string> texts = ReadableTexts();
    Mutator mutator(texts);
    int read = 0;
    int refused = 0;
    for (const std::string& text : texts) {
        for (int i = 0; i < kMutationsPerText; ++i) {
            const std::string damaged = mutator.Damage(text);
            SCOPED_TRACE(damaged);
            ASSERT_NO_THROW(++(ReadsAndPrints(damaged) ? read : refused));
        }
    }
    // Neither kind may dry up, or the test would say nothing.
    EXPECT_GT(read, 1000);
    EXPECT_GT(refused, 1000);
}

/// The kinds of the tokens, one letter each.
std::string KindsOf(const TokenStream& stream) {
    std::string kinds;
    for (const Token& token : stream.tokens)
        kinds += static_cast<char>('a' + static_cast<int>(token.kind) * 8 + static_cast<int>(token.literal));
    return kinds;
}

TEST(Mutation, ShapeAgreesWithTokenize) {
    const std::vector<std::string> texts = ReadableTexts();
    Mutator mutator(texts);
    std::map<std::string, std::string> kindsByShape;
    int repeated = 0;
    for (const std::string& text : texts) {
        for (int i = 0; i < kMutationsPerText; ++i) {
            const std::string damaged = mutator.Damage(text);
            SCOPED_TRACE(damaged);
            TokenStream stream;
            std::vector<LiteralValue> values;
            try {
                stream = Tokenize(damaged);
            } catch (const SqlError&) {
                EXPECT_THROW(Shape(damaged, values), SqlError);
                continue;
            }
            const auto [row, isNew] = kindsByShape.emplace(Shape(damaged, values), KindsOf(stream));
            if (!isNew) ++repeated;
            EXPECT_EQ(row->second, KindsOf(stream));
            ASSERT_EQ(values.size(), stream.literals.size());
            for (std::size_t k = 0; k < values.size(); ++k) EXPECT_EQ(values[k].text, stream.literals[k].text);
        }
    }
    EXPECT_GT(repeated, 100);
}

}  // namespace
}  // namespace kpTables::sql::parse
