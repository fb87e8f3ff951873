#include "kpTables/bookkeeping/Check.h"

#include <algorithm>
#include <tuple>

#include "bookkeeping/BalanceCheck.h"
#include "bookkeeping/ReferenceCheck.h"
#include "kpTables/Transaction.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

std::vector<Finding> Look(Book& book) {
    std::vector<Finding> findings;
    for (const auto& fault : book.IntegrityFaults()) {
        Finding finding;
        finding.what = Message("the file is damaged");
        finding.found = fault;
        finding.damaged = true;
        findings.push_back(finding);
    }
    // A damaged file gives no figures to rely on.
    if (!findings.empty()) return findings;
    CheckDoubledRows(book, findings);
    CheckClosedMonths(book, findings);
    CheckBillParts(book, findings);
    CheckMasterIds(book, findings);
    std::ranges::stable_sort(findings, {}, [](const Finding& finding) {
        return std::tuple(finding.warehouse, finding.year, finding.month, finding.product);
    });
    return findings;
}

}  // namespace

std::vector<Finding> CheckBook(Book& book) {
    if (auto findings = Look(book); findings.empty()) return findings;
    const Transaction standstill(book);
    return Look(book);
}

}  // namespace kpTables::bookkeeping
