#include <iterator>

#include "texts/Texts.h"

namespace kpTables::sql::parse {

std::vector<std::string> AllTexts() {
    std::vector<std::string> all;
    for (const auto texts :
         {FrameTexts, MasterTexts, BillTexts, BillListTexts, BillQueryTexts, BalanceTexts, ClosingTexts, SummaryTexts,
          ProductListTexts, DailyTexts, ProjectTexts, HostTexts, HaulageTexts}) {
        std::vector<std::string> some = texts();
        std::move(some.begin(), some.end(), std::back_inserter(all));
    }
    return all;
}

}  // namespace kpTables::sql::parse
