// The statements that the component sends, by area, each written out as it goes to the database.
#pragma once

#include <string>
#include <vector>

namespace kpTables::sql::parse {

std::vector<std::string> FrameTexts();
std::vector<std::string> MasterTexts();
std::vector<std::string> BillTexts();
std::vector<std::string> BillListTexts();
std::vector<std::string> BillQueryTexts();
std::vector<std::string> BalanceTexts();
std::vector<std::string> ClosingTexts();
std::vector<std::string> SummaryTexts();
std::vector<std::string> ProductListTexts();
std::vector<std::string> DailyTexts();
std::vector<std::string> ProjectTexts();
std::vector<std::string> HostTexts();
std::vector<std::string> HaulageTexts();

/// All of the above.
std::vector<std::string> AllTexts();

/// A statement that the component sends although no database can read it, with where and why it fails.
struct RejectedText {
    std::string text;
    std::string message;
};
std::vector<RejectedText> RejectedTexts();

}  // namespace kpTables::sql::parse
