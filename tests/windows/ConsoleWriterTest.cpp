// What reaches the console: whole characters, in UTF-16, in the order in which they were written.
#include "platform/windows/ConsoleWriter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/windows/Wide.h"

namespace kpTables::platform {
namespace {

/// A console that writes down what it is given.
struct ConsoleDouble {
    static inline std::vector<std::wstring> shown;
    static inline bool fails = false;

    ConsoleDouble() {
        shown.clear();
        fails = false;
    }
    static BOOL WINAPI Write(HANDLE /*console*/, const void* text, DWORD count, DWORD* written, void* /*reserved*/) {
        if (fails) return FALSE;
        shown.emplace_back(static_cast<const wchar_t*>(text), count);
        *written = count;
        return TRUE;
    }
    static std::wstring All() {
        std::wstring all;
        for (const std::wstring& each : shown) all += each;
        return all;
    }
};

TEST(ConsoleWriter, ShowsATextInOneWriteWhenItIsFlushed) {
    const ConsoleDouble console;
    ConsoleWriter writer(nullptr, ConsoleDouble::Write);
    EXPECT_TRUE(writer.Write("已有"));
    EXPECT_TRUE(writer.Write("同名文件 \U0001F600\n"));
    EXPECT_TRUE(ConsoleDouble::shown.empty());
    EXPECT_TRUE(writer.Flush());
    EXPECT_EQ(ConsoleDouble::shown, std::vector<std::wstring>{L"已有同名文件 \U0001F600\n"});
    EXPECT_TRUE(writer.Flush());
    EXPECT_EQ(ConsoleDouble::shown.size(), 1u);
}

TEST(ConsoleWriter, NeverDividesACharacter) {
    // Beginnings of one to four bytes let every character meet the ends of the pieces.
    for (const std::string beginning : {"", "a", "é", "库", "\U0001F600"}) {
        for (const char* character : {"é", "库", "\U0001F600"}) {
            const ConsoleDouble console;
            ConsoleWriter writer(nullptr, ConsoleDouble::Write);
            std::string text = beginning;
            while (text.size() < 100'000) text += character;
            // In one text, and character by character.
            EXPECT_TRUE(writer.Write(text));
            EXPECT_TRUE(writer.Write(beginning));
            for (std::size_t at = beginning.size(); at < text.size(); at += std::string_view(character).size())
                EXPECT_TRUE(writer.Write(character));
            EXPECT_TRUE(writer.Flush());
            EXPECT_EQ(ConsoleDouble::All(), Wide(text + text));
            for (const std::wstring& each : ConsoleDouble::shown) {
                EXPECT_FALSE(each.back() >= 0xD800 && each.back() < 0xDC00) << "half a character";
                EXPECT_EQ(each.find(L'\xFFFD'), each.npos);
            }
        }
    }
}

TEST(ConsoleWriter, TellsThatTheConsoleFailed) {
    const ConsoleDouble console;
    ConsoleWriter writer(nullptr, ConsoleDouble::Write);
    EXPECT_TRUE(writer.Write("库"));
    ConsoleDouble::fails = true;
    EXPECT_FALSE(writer.Flush());
    EXPECT_FALSE(writer.Write(std::string(1 << 20, 'x')));
    ConsoleDouble::fails = false;
    EXPECT_TRUE(writer.Flush()) << "what could not be shown is forgotten";
    EXPECT_TRUE(ConsoleDouble::shown.empty());
}

}  // namespace
}  // namespace kpTables::platform
