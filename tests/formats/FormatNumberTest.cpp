// The number of the schema rises when the schema changes.
#include <gtest/gtest.h>

#include "BookSchema.h"
#include "OldBook.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

/// FNV-1a over the statements with single blanks; comments do not count.
std::uint64_t Checksum() {
    std::uint64_t sum = 0xcbf29ce484222325;
    const auto add = [&](char c) { sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001b3; };
    for (const std::string_view statement : schema::BookSchema()) {
        char last = ' ';
        for (const char c : statement) {
            const char kept = c == '\n' || c == '\r' || c == '\t' ? ' ' : c;
            if (kept != ' ' || last != ' ') add(kept);
            last = kept;
        }
        add(';');
    }
    return sum;
}

TEST(FormatNumber, RisesWithEveryChangeOfTheSchema) {
    EXPECT_EQ(Checksum(), schema::kFormatChecksum)
        << "schema/book.sql has changed. In schema/BookSchema.h, raise kFormat and set kFormatChecksum to the first "
           "number above; put a book of the earlier format into tests/formats/books (its README says how).";
}

TEST(FormatNumber, OfABookIsThePresentOne) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.File("book");
    CreateBook(path);
    EXPECT_EQ(test::OpenRaw(path).IntegerOf("PRAGMA user_version"), schema::kFormat);
}

TEST(FormatNumber, EarlierOnesAreRefusedWithTheCommandThatHelps) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.File("book");
    for (const std::string& name : test::OldBooks()) {
        if (!name.starts_with("1-")) continue;
        SCOPED_TRACE(name);
        test::UnpackBook(name, path);
        for (const bool readOnly : {false, true}) {
            const auto error = test::Refused([&] { OpenBook(path, {.readOnly = readOnly}); });
            ASSERT_TRUE(error);
            EXPECT_EQ(error->Description(), "The book '" + path +
                                                "' cannot be opened: its format is 1, an earlier one than 2; kpbook "
                                                "upgrade brings it up to date");
        }
    }
}

TEST(FormatNumber, ALaterOneIsRefused) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.File("book");
    CreateBook(path);
    const std::string later = std::to_string(schema::kFormat + 1);
    test::OpenRaw(path).Run("PRAGMA user_version = " + later);
    const std::string complaint = "its format is " + later + ", and this version of the program knows formats up to " +
                                  std::to_string(schema::kFormat) + "; open it with a newer version";
    const auto opened = test::Refused([&] { OpenBook(path); });
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->Description(), "The book '" + path + "' cannot be opened: " + complaint);
    const auto upgraded = test::Refused([&] { UpgradeBook(path); });
    ASSERT_TRUE(upgraded);
    EXPECT_NE(upgraded->Description().find(complaint), std::string::npos) << upgraded->what();
}

}  // namespace
}  // namespace kpTables
