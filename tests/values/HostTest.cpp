#include "kpTables/Host.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>

#include "Raised.h"

namespace kpTables {
namespace {

TEST(Host, TheDefaultMessageBoxIsAnError) {
    Host host;
    try {
        host.MsgBox("是否修正？", MessageButtons::YesNo, "检查入库记录");
        FAIL() << "answered";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), 5);
        EXPECT_NE(error.Description().find("是否修正？"), std::string::npos);
        EXPECT_NE(error.Description().find("检查入库记录"), std::string::npos);
    }
}

TEST(Host, TodayIsTheLocalDateWithoutTime) {
    char expected[16];
    Date today;
    // Again when midnight came between the two.
    for (int i = 0; i < 2; ++i) {
        const std::time_t before = std::time(nullptr);
        today = Host().Today();
        std::strftime(expected, sizeof expected, "%Y-%m-%d", std::localtime(&before));
        if (today.ToIso() == expected) break;
    }
    EXPECT_EQ(today.ToIso(), expected);
    EXPECT_FALSE(today.HasTime());
}

}  // namespace
}  // namespace kpTables
