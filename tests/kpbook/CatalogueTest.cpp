#include "kpbook/Catalogue.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace kpTables::kpbook {
namespace {

void AppendWord(std::string& bytes, std::uint32_t word, bool bigEndian) {
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>(word >> 8 * (bigEndian ? 3 - i : i) & 0xFF);
}

/// A .mo file of texts, in order, and their translations.
std::string FileOf(const std::vector<std::pair<std::string, std::string>>& texts, bool bigEndian = false) {
    constexpr std::uint32_t kHeader = 28;
    const auto count = static_cast<std::uint32_t>(texts.size());
    std::string bytes;
    for (const std::uint32_t word : {0x950412deU, 0U, count, kHeader, kHeader + 8 * count, 0U, 0U}) {
        AppendWord(bytes, word, bigEndian);
    }
    std::uint32_t at = kHeader + 16 * count;
    std::string body;
    for (const bool isTranslation : {false, true}) {
        for (const auto& [text, translation] : texts) {
            const std::string& each = isTranslation ? translation : text;
            AppendWord(bytes, static_cast<std::uint32_t>(each.size()), bigEndian);
            AppendWord(bytes, at, bigEndian);
            body += each + '\0';
            at += static_cast<std::uint32_t>(each.size()) + 1;
        }
    }
    return bytes + body;
}

const std::vector<std::pair<std::string, std::string>> kTexts = {
    {"", "Content-Type: text/plain\n"},
    {"no", "否"},
    {std::string("{1} row\0{1} rows", 16), std::string("{1} Zeile\0{1} Zeilen", 20)},
    {"yes", "是"},
};
// In the order of their bytes.
std::vector<std::pair<std::string, std::string>> Sorted() { return {kTexts[0], kTexts[1], kTexts[3], kTexts[2]}; }

TEST(CatalogueTest, FindsTexts) {
    for (const bool bigEndian : {false, true}) {
        const auto catalogue = Catalogue::Parse(FileOf(Sorted(), bigEndian));
        ASSERT_TRUE(catalogue);
        EXPECT_STREQ(catalogue->Find("no", nullptr, 0), "否");
        EXPECT_STREQ(catalogue->Find("yes", nullptr, 0), "是");
        EXPECT_EQ(catalogue->Find("maybe", nullptr, 0), nullptr);
        EXPECT_EQ(catalogue->Find("", nullptr, 0), nullptr) << "the head of the file is no translation";
    }
}

TEST(CatalogueTest, FindsTheFormForACount) {
    const auto catalogue = Catalogue::Parse(FileOf(Sorted()));
    ASSERT_TRUE(catalogue);
    EXPECT_STREQ(catalogue->Find("{1} row", "{1} rows", 1), "{1} Zeile");
    EXPECT_STREQ(catalogue->Find("{1} row", "{1} rows", 0), "{1} Zeilen");
    EXPECT_STREQ(catalogue->Find("{1} row", "{1} rows", 2), "{1} Zeilen");
    const auto oneForm = Catalogue::Parse(FileOf({{std::string("{1} row\0{1} rows", 16), "{1} 行"}}));
    ASSERT_TRUE(oneForm);
    EXPECT_STREQ(oneForm->Find("{1} row", "{1} rows", 2), "{1} 行");
}

TEST(CatalogueTest, RefusesWhatIsNoCatalogue) {
    EXPECT_FALSE(Catalogue::Parse(""));
    EXPECT_FALSE(Catalogue::Parse(std::string(64, 'x')));
    EXPECT_FALSE(Catalogue::Parse(FileOf({{"b", "1"}, {"a", "2"}}))) << "out of order";
    const std::string whole = FileOf(Sorted());
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(Catalogue::Parse(whole.substr(0, size))) << size;
}

class AskedLanguagesTest : public testing::Test {
protected:
    AskedLanguagesTest() {
        for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) ::unsetenv(name);
    }
    ~AskedLanguagesTest() override {
        for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) ::unsetenv(name);
    }
    static void Set(const char* name, const char* value) { ::setenv(name, value, 1); }
};

using Languages = std::vector<std::string>;

TEST_F(AskedLanguagesTest, FollowsTheLocale) {
    EXPECT_EQ(AskedLanguages(), Languages());
    Set("LANG", "zh_CN.UTF-8");
    EXPECT_EQ(AskedLanguages(), (Languages{"zh_CN", "zh"}));
    Set("LC_MESSAGES", "de_DE@euro");
    EXPECT_EQ(AskedLanguages(), (Languages{"de_DE", "de"}));
    Set("LC_ALL", "C.UTF-8");
    EXPECT_EQ(AskedLanguages(), Languages());
}

TEST_F(AskedLanguagesTest, PrefersTheListUnlessTheLocaleIsC) {
    Set("LANGUAGE", "fr:zh_CN");
    EXPECT_EQ(AskedLanguages(), Languages()) << "without a locale the list says nothing";
    Set("LANG", "en_US.UTF-8");
    EXPECT_EQ(AskedLanguages(), (Languages{"fr", "zh_CN", "zh"}));
    Set("LANGUAGE", "en:zh_CN");
    EXPECT_EQ(AskedLanguages(), Languages()) << "the messages are English, which is preferred";
}

}  // namespace
}  // namespace kpTables::kpbook
