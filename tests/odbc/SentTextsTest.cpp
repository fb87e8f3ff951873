// Every text that the methods send, in both dialects, reaches the driver as it is.
#include <gtest/gtest.h>
#include <iconv.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "Backend.h"
#include "corpus/Call.h"
#include "corpus/Corpus.h"
#include "kpTables/CTables.h"
#include "kpTables/Error.h"

namespace kpTables {
namespace {

/// UTF-16 by the C library, which shares nothing with what is tested.
std::string FromUtf16(std::string units) {
    const iconv_t converter = iconv_open("UTF-8", "UTF-16LE");
    std::string text(units.size() * 2, '\0');
    char* from = units.data();
    char* to = text.data();
    std::size_t left = units.size();
    std::size_t room = text.size();
    EXPECT_NE(iconv(converter, &from, &left, &to, &room), static_cast<std::size_t>(-1));
    iconv_close(converter);
    text.resize(text.size() - room);
    return text;
}

/// What kptest has written down since the last call.
class TextsOfDriver {
public:
    TextsOfDriver() : path_(directory_.File("texts")) { setenv("KPTABLES_TEST_TEXTS", path_.c_str(), 1); }
    ~TextsOfDriver() { unsetenv("KPTABLES_TEST_TEXTS"); }

    std::vector<std::string> Take() {
        std::vector<std::string> texts;
        std::ifstream file(path_, std::ios::binary);
        std::uint32_t units = 0;
        while (file.read(reinterpret_cast<char*>(&units), sizeof units)) {
            std::string bytes(units * sizeof(char16_t), '\0');
            file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
            texts.push_back(FromUtf16(std::move(bytes)));
        }
        std::ofstream(path_, std::ios::trunc);
        return texts;
    }

private:
    test::TemporaryDirectory directory_;
    std::string path_;
};

TEST(OdbcCorpus, EveryTextIsSentAsItIs) {
    TextsOfDriver driver;
    const BookPtr book = OpenBook("odbc:Driver=kptest;Name=recorder");
    driver.Take();
    std::size_t sent = 0;
    for (const corpus::SentText& each : corpus::Texts()) {
        SCOPED_TRACE(each.source->Name());
        const corpus::Statement& statement = *each.statement;
        if (statement.kind == "execute")
            book->Execute(statement.text);
        else
            book->Open(statement.text, SourceKind::Text);
        EXPECT_EQ(driver.Take(), std::vector<std::string>{statement.text});
        ++sent;
    }
    EXPECT_GT(sent, 600u);
}

TEST(OdbcCorpus, MethodsSendTheirDialect) {
    TextsOfDriver driver;
    CTables tables;
    tables.Cnn(OpenBook("odbc:Driver=kptest;Name=recorder"));
    for (const bool isSQL : {false, true}) {
        tables.isSQL(isSQL);
        driver.Take();
        tables.rs月份列表(true);
        tables.Del仓库余额表(3, 4);
        const auto expected = [&](const char* call) { return corpus::Text(call, 1, isSQL); };
        EXPECT_EQ(driver.Take(),
                  (std::vector<std::string>{expected("rs月份列表(True)"), expected("Del仓库余额表(3, 4)")}));
    }
}

TEST(OdbcCorpus, UnusualTextsToo) {
    TextsOfDriver driver;
    const BookPtr book = OpenBook("odbc:Driver=kptest;Name=recorder");
    driver.Take();
    for (const std::string text : {"Delete From 𠮷 Where a='{d ''2004-03-07''} ? 𝄞'", "Exec 存储过程 [甲]", " ;"}) {
        book->Execute(text);
        EXPECT_EQ(driver.Take(), std::vector<std::string>{text});
    }
}

}  // namespace
}  // namespace kpTables
