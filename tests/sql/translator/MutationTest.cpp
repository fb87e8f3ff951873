#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "SqliteBook.h"
#include "sql/SqlError.h"

namespace kpTables::sql::test {

namespace {

const char* const kTexts[] = {
    "Select Distinct Top 2 s , l From T Order By s , l DESC",
    "Select IIf ( d > 0 , c / d , 0 ) + Nz ( c , 0 ) * 2 - c2 , Left ( t , 2 ) & c & #2004-1-1# From T Order By 1",
    "Select * From T Where t Like 'a%' And c Between 1 And 2.5 Or d In ( 1 , 2 , -3 ) And Not b Xor b2",
    "Select l , Sum ( c ) As x , Max ( t ) , Avg ( d ) From T Group By l Having Sum ( c ) > 1 Order By x , l",
    "Select A.l , B.* From T As A Right Join ( T As B Left Join Header On B.l = Index ) On A.t = B.t2 Where A.d < 1",
    "Select l From T Where CDATE ( y & '-' & m & '-' & n ) >= #2004-3-7# And at - at2 > d Order By at",
    "Select c As k , t From T Union Select l , Null From T Union All ( Select 1 , t2 From T ) Order By k",
    "Select Q.t From ( Select Top 3 t , c As u From T Order By d ) As Q Where Q.u > 1.5 And t In ( Select t2 From T )",
    "TRANSFORM Sum ( c ) AS k SELECT l , Count ( * ) AS n FROM T WHERE b GROUP BY l PIVOT m",
    "Insert Into T ( l , c , d , t , at , b ) Values ( 1 , -2.5 , 3 , 'x' , #2004-1-1# , True )",
    "Insert Into T ( l , c , t ) Select l , d , c From T Where Exists ( Select * From Header Where Index = l )",
    "Update T Set c = d * 2 , l = s + 1 , t = c & 'x' , at = at + 1 , b = l > 2 Where Not ( l = -1 Or t Is Null )",
    "Select Top 2 With Ties l , Rnd ( l ) From T Where c >= All ( Select c2 From T ) And d < Any ( Select d From T ) Order By l",
    "Select A.l , B.x From T As A Full Join ( Values ( 1 , 'a' ) , ( 2 , Null ) ) As B ( n , x ) On A.l = B.n Order By 1",
    "Select DCount ( '*' , 'T' , 'l=' & A.l ) , TRY_CAST ( t As Long ) , TypeName ( c ) & CByte ( s ) , 5 Xor l From T As A",
    "Update Top ( 2 ) T Set l = 1 Where OBJECT_ID ( 'T' ) In ( Select object_id From sys.tables Where name = t )",
    "Delete From T Where CCur ( d ) = c And DateAdd ( 'd' , 1 , at ) < Date ( ) And Case s When 1 Then b Else b2 End",
};

std::vector<std::string> Words(const std::string& text) {
    std::vector<std::string> words;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = std::min(text.find(' ', begin), text.size());
        words.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return words;
}

enum class Kind { Constant, Operator, Name, Other };

Kind KindOf(const std::string& word) {
    const char first = word.front();
    if (first == '\'' || first == '#' || (first >= '0' && first <= '9')) return Kind::Constant;
    if (std::string_view("+-*/&=<>").find(first) != std::string_view::npos || word == "And" || word == "Or")
        return Kind::Operator;
    return first >= 'a' && first <= 'z' ? Kind::Name : Kind::Other;
}

}  // namespace

// Whatever is translated, SQLite reads, and whatever is not is refused with an error of the front end.
TEST(Mutation, SqliteReadsEveryTranslation) {
    SqliteBook book;
    std::vector<std::string> pool;
    for (const char* text : kTexts) {
        EXPECT_NO_THROW(book.Prepare(text)) << text;
        for (auto& word : Words(text)) pool.push_back(std::move(word));
    }
    std::mt19937 random(20040307);
    const auto pick = [&](std::size_t size) { return static_cast<std::size_t>(random() % size); };
    int translated = 0;
    constexpr int kRounds = 5000;
    for (int round = 0; round < kRounds; ++round) {
        auto words = Words(kTexts[pick(std::size(kTexts))]);
        for (int changes = 1 + static_cast<int>(pick(3)); changes > 0; --changes) {
            auto& word = words[pick(words.size())];
            const auto& other = pool[pick(pool.size())];
            const Kind kind = KindOf(word);
            const bool alike = kind == KindOf(other) || (kind == Kind::Constant && KindOf(other) == Kind::Name);
            if (alike && kind != Kind::Other) word = other;
        }
        std::string text;
        for (const auto& word : words) text += word + " ";
        try {
            book.Prepare(text, {{LiteralKind::Null, ""}, {LiteralKind::Integer, "1"}});
            ++translated;
        } catch (const SqlError&) {
        } catch (const std::exception& error) {
            ADD_FAILURE() << text << "\n" << error.what();
        }
    }
    EXPECT_GT(translated, kRounds / 4);
}

}  // namespace kpTables::sql::test
