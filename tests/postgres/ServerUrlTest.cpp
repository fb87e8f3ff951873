// The URLs of books on a server, without one.
#include "engines/postgres/ServerUrl.h"

#include <gtest/gtest.h>

#include <string>

#include "kpTables/Book.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

using engines::postgres::ParseServerUrl;

TEST(ServerUrls, GiveTheBookAndLeaveTheRestToTheClientLibrary) {
    const auto plain = ParseServerUrl("//kp@host:5433/books?book=2026", "");
    EXPECT_EQ(plain.connection, "postgresql://kp@host:5433/books");
    EXPECT_EQ(plain.book, "2026");
    const auto others = ParseServerUrl("///books?host=/run&book=%E5%B8%90%E7%B0%BF&sslmode=require", "");
    EXPECT_EQ(others.connection, "postgresql:///books?host=/run&sslmode=require");
    EXPECT_EQ(others.book, "帐簿");
}

TEST(ServerUrls, NameAStandbyForReports) {
    EXPECT_EQ(ParseServerUrl("//kp@host/books?book=2026", "").reports, "");
    const auto parts = ParseServerUrl("//kp@host:5433/books?reports=second:5434&book=2026&sslmode=require", "");
    EXPECT_EQ(parts.connection, "postgresql://kp@host:5433/books?sslmode=require");
    EXPECT_EQ(parts.reports, parts.connection + "&host=second&port=5434&target_session_attrs=any");
    EXPECT_EQ(ParseServerUrl("//host/books?reports=/run/second&book=b", "").reports,
              "postgresql://host/books?host=/run/second&port=5432&target_session_attrs=any");
    for (const char* standby : {":5432", "second:", "second:x", "a:1,b:2"}) {
        EXPECT_TRUE(test::Refused([&] { ParseServerUrl(std::string("//h/b?book=b&reports=") + standby, "url"); }))
            << standby;
    }
}

TEST(ServerUrls, NeedABookThatIsNoneOfTheServersSchemas) {
    for (const char* address : {"//host/books", "//host/books?book=", "//host/books?book=pg_x", "//host/books?book=kp",
                                "//host/books?book=public"}) {
        EXPECT_TRUE(test::Refused([&] { ParseServerUrl(address, "url"); })) << address;
    }
    EXPECT_TRUE(test::Refused([] { ParseServerUrl("//host/b?book=" + std::string(64, 'a'), "url"); }));
}

TEST(ServerUrls, WithAPasswordAreRefusedAndNotShown) {
    for (const char* address : {"//kp:secret@host/books?book=b", "//host/books?book=b&password=secret"}) {
        const auto error = test::Refused([&] { ParseServerUrl(address, std::string("postgresql:") + address); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->Description().find("secret"), std::string::npos);
    }
}

TEST(ServerUrls, OfAServerThatDoesNotAnswerAreRefused) {
    const auto error = test::Refused([] { OpenBook("postgresql:///books?host=/nonexistent&book=b"); });
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("cannot be reached"), std::string::npos) << error->Description();
}

}  // namespace
}  // namespace kpTables
