#include "kpTables/bookkeeping/NewBook.h"

#include "bookkeeping/Refusal.h"
#include "bookkeeping/Setup.h"
#include "kpTables/Convert.h"
#include "kpTables/Quoted.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/ClosedMonths.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

void NameAndPay(Setup& setup) {
    setup.Check(setup.Tables().Create_NewBook());
    setup.Check(setup.Tables().SetDefaultSFK());
}

void AddWarehouse(Setup& setup, const std::string& given) {
    const std::string name(Trim(given));
    if (name.empty()) RefuseWith(Message("a warehouse has no name"));
    const std::int32_t known = setup.Tables().Get仓库ID(Quoted(name));
    if (known == 0) RefuseWith(Message("'{1}' stands for all warehouses; give the warehouse another name", name));
    if (known > 0) RefuseWith(Message("the warehouse '{1}' is given twice", name));
    setup.Book().Execute("Insert Into 仓库设置 (仓库名称) Values ('" + Quoted(name) + "')");
}

void CheckPeriod(const Beginning& beginning) {
    if (beginning.year < kFirstYear || beginning.year > kLastYear) {
        RefuseWith(Message("the year must be from {1} to {2}", kFirstYear, kLastYear));
    }
    if (beginning.month < 1 || beginning.month > kLastMonth) RefuseWith(Message("the month must be from 1 to 12"));
}

}  // namespace

void PrepareBook(const ConnectionPtr& book, std::optional<Date> today) {
    Transaction transaction(*book);
    Setup setup(book, today);
    NameAndPay(setup);
    transaction.Commit();
}

void BeginBook(const ConnectionPtr& book, const Beginning& beginning) {
    CheckPeriod(beginning);
    const std::string company(Trim(beginning.company));
    if (company.empty()) RefuseWith(Message("the company has no name"));
    Transaction transaction(*book);
    Setup setup(book);
    NameAndPay(setup);
    // Create_NewBook stores settings alone; AccInfo has the same items.
    setup.Store("帐簿名称", setup.Tables().Get_AccInfo("帐簿名称"));
    setup.Store("单位名称", company);
    setup.StoreDates(beginning.year, beginning.month);
    for (const std::string& warehouse : beginning.warehouses) AddWarehouse(setup, warehouse);
    transaction.Commit();
}

}  // namespace kpTables::bookkeeping
