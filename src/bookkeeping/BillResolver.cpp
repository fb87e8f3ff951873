#include "bookkeeping/BillResolver.h"

#include <algorithm>
#include <cmath>

#include "bookkeeping/Query.h"
#include "bookkeeping/Refusal.h"
#include "kpTables/Convert.h"
#include "kpTables/bookkeeping/BookYear.h"
#include "kpTables/bookkeeping/StockOnHand.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

constexpr const char* kVatInvoice = "增值税发票";
constexpr std::size_t kLongestText = 255;

/// Whether a table has a row with an id; 0 is none and always fine.
bool HasMaster(Connection& book, const std::string& table, const std::string& key, std::int32_t id) {
    return id == 0 || HasRows(book, "Select " + key + " From " + table + " Where " + key + "=" + std::to_string(id));
}

std::string TypeOf(const NewBill& bill) {
    if (bill.kind == EntryKind::Transfer) return std::string(kTransferType);
    if (bill.kind == EntryKind::Cost) return "";
    if (!bill.type.empty()) return bill.type;
    return bill.kind == EntryKind::Inbound ? "入库单" : "出库单";
}

/// Whether bills of a kind are entered with this 单据类型.
bool IsTypeOf(const NewBill& bill, const std::string& type) {
    if (bill.kind == EntryKind::Transfer || bill.kind == EntryKind::Cost) return true;
    const BillType* known = IsEnteredType(type) ? FindBillType(type) : nullptr;
    const auto* prefix = !known ? "" : bill.kind == EntryKind::Inbound ? known->inboundPrefix : known->outboundPrefix;
    return *prefix != '\0';
}

std::size_t CharactersIn(const std::string& text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::int64_t RowOf(const NewBill& bill) { return bill.lines.empty() ? 0 : bill.lines.front().row; }

void CheckRate(double rate) {
    constexpr double kLeast = 0.5;
    if (!(rate >= 0 && rate < 100)) RefuseWith(Message("a tax rate of {1} % is impossible", Text(rate)));
    if (rate > 0 && rate < kLeast) {
        RefuseWith(
            Message("tax rates are percentages: {1} means {1} %; write {2} for {2} %", Text(rate), Text(rate * 100)));
    }
}

}  // namespace

BillResolver::BillResolver(const ConnectionPtr& book, const EntryOptions& options)
    : book_(book),
      tables_(book),
      returns_(options.returns),
      closed_(*book),
      year_(BookYear(*book)),
      firstMonth_(FirstMonth(*book)) {}

std::string BillResolver::RefusalOfMonth(std::int32_t warehouse, std::int32_t month) const {
    return closed_.IsClosed(warehouse, month) && month > 0 ? Message("month {1} is closed", month) : "";
}

std::string BillResolver::RefusalOfDay(std::int32_t warehouse, Date date) const {
    if (year_ != 0 && date.Year() != year_) {
        return Message("{1} is not in the book's year {2}", date.ToText(), year_);
    }
    if (date.Month() < firstMonth_) {
        return Message("{1} is before the book's first month, {2}", date.ToText(), firstMonth_);
    }
    return RefusalOfMonth(warehouse, date.Month());
}

std::string BillResolver::WarehouseName(std::int32_t id) {
    auto [found, isNew] = warehouses_.try_emplace(id);
    if (isNew) found->second = tables_.Ask([id](CTables& tables) { return tables.Get仓库名称(id); });
    return found->second.empty() ? Message("warehouse {1}", id) : found->second;
}

Variant BillResolver::ProductValue(std::int32_t id, const std::string& column) {
    return tables_.Ask([&](CTables& tables) { return tables.Get商品资料(id, column); });
}

const BillResolver::Product& BillResolver::ProductOf(std::int32_t id) {
    auto [found, isNew] = products_.try_emplace(id);
    Product& product = found->second;
    if (!isNew) return product;
    product.isKnown = ProductValue(id, "ID").Type() != VarType::String;
    const auto number = Text(ProductValue(id, "商品编号"));
    const auto name = Text(ProductValue(id, "商品名称"));
    product.name = number + (number.empty() || name.empty() ? "" : " ") + name;
    if (product.name.empty()) product.name = std::to_string(id);
    return product;
}

std::string BillResolver::ProductName(std::int32_t id) { return ProductOf(id).name; }

double BillResolver::ProductFigure(std::int32_t id, const std::string& column) {
    ProductOf(id);
    auto& figures = products_[id].figures;
    const auto [found, isNew] = figures.try_emplace(column, 0);
    if (isNew) found->second = CDbl(ProductValue(id, column));
    return found->second;
}

std::optional<StoredBill> BillResolver::Resolve(const NewBill& bill, std::vector<BillFault>& faults) {
    const std::size_t before = faults.size();
    StoredBill stored;
    stored.family = FamilyOf(bill.kind);
    stored.warehouse = bill.warehouse;
    stored.clerk = bill.clerk;
    if (bill.lines.empty()) faults.push_back({bill.key, 0, "", Message("a bill needs at least one line")});
    Change(stored, bill, faults);
    if (faults.size() > before) return std::nullopt;
    if (year_ == 0) year_ = bill.date.Year();
    return stored;
}

void BillResolver::Change(StoredBill& stored, const NewBill& bill, std::vector<BillFault>& faults) {
    const std::string type = TypeOf(bill);
    CheckHeader(bill, faults);
    // Bills that another host entered may have types of their own.
    if (type != stored.type && !IsTypeOf(bill, type)) {
        faults.push_back({bill.key, RowOf(bill), "单据类型", Message("a bill of this kind cannot be a {1}", type)});
    }
    stored.date = bill.date;
    stored.month = bill.date.Month();
    stored.partner = bill.partner;
    stored.project = bill.project;
    stored.type = type;
    stored.subtype = bill.subtype;
    stored.number = bill.number;
    stored.remarks = bill.remarks;
    if (!bill.lines.empty()) stored.lines = LinesOf(bill, type, faults);
}

void BillResolver::CheckWarehouse(const NewBill& bill, std::int32_t id, const std::string& column,
                                  std::vector<BillFault>& faults) {
    if (id == 0) {
        faults.push_back({bill.key, RowOf(bill), column, Message("no warehouse is given")});
    } else if (!HasMaster(*book_, "仓库设置", "dpID", id)) {
        faults.push_back({bill.key, RowOf(bill), column, Message("the book has no warehouse {1}", id)});
    } else if (const auto refusal = RefusalOfDay(id, bill.date); !refusal.empty()) {
        faults.push_back({bill.key, RowOf(bill), "日期", WarehouseName(id) + ": " + refusal});
    }
}

void BillResolver::CheckHeader(const NewBill& bill, std::vector<BillFault>& faults) {
    const auto fault = [&](const std::string& column, const std::string& reason) {
        faults.push_back({bill.key, RowOf(bill), column, reason});
    };
    const bool isTransfer = bill.kind == EntryKind::Transfer;
    if (bill.date.HasTime()) fault("日期", Message("a bill's date has no time"));
    CheckWarehouse(bill, bill.warehouse, isTransfer ? "调出仓库" : "仓库", faults);
    if (isTransfer && bill.warehouse == bill.toWarehouse && bill.warehouse != 0) {
        fault("调入仓库", Message("a transfer goes from one warehouse to another, not to the same"));
    } else if (isTransfer) {
        CheckWarehouse(bill, bill.toWarehouse, "调入仓库", faults);
    }
    const bool isInbound = bill.kind == EntryKind::Inbound;
    if (!HasMaster(*book_, isInbound ? "厂商资料" : "客户资料", "KSID", bill.partner)) {
        fault("单位", isInbound ? Message("the book has no supplier {1}", bill.partner)
                                : Message("the book has no customer {1}", bill.partner));
    }
    if (!HasMaster(*book_, "项目设置", "项目ID", bill.project)) {
        fault("项目", Message("the book has no project {1}", bill.project));
    }
    for (const auto* text : {&bill.number, &bill.remarks, &bill.subtype, &bill.clerk}) {
        if (CharactersIn(*text) > kLongestText) fault("", Message("a text has more than 255 characters"));
    }
}

std::vector<StoredBillLine> BillResolver::LinesOf(const NewBill& bill, const std::string& type,
                                                  std::vector<BillFault>& faults) {
    std::vector<StoredBillLine> lines;
    for (const NewBillLine& line : bill.lines) {
        try {
            lines.push_back(LineOf(bill, line, type));
        } catch (const DatabaseError&) {
            throw;
        } catch (const Error& error) {
            faults.push_back({bill.key, line.row, "", error.Description()});
        }
    }
    return lines;
}

StoredBillLine BillResolver::LineOf(const NewBill& bill, const NewBillLine& line, const std::string& type) {
    constexpr double kMost = 1e11;
    if (line.product == 0) RefuseWith(Message("the line has no product"));
    if (!ProductOf(line.product).isKnown) RefuseWith(Message("the book has no product {1}", line.product));
    if (!std::isfinite(line.quantity) || std::fabs(line.quantity) > kMost)
        RefuseWith(Message("the quantity is too large"));
    if (line.quantity == 0) RefuseWith(Message("the quantity is 0"));
    if (line.quantity < 0 && bill.kind == EntryKind::Transfer) {
        RefuseWith(Message("a transfer of a negative quantity: make it the other way round"));
    }
    if (line.quantity < 0 && !returns_) {
        RefuseWith(
            Message("the quantity {1} is negative, which only a red bill (returns) may have", Text(line.quantity)));
    }
    StoredBillLine stored;
    stored.product = line.product;
    stored.quantity = line.quantity;
    const GivenAmounts given = AmountsOf(bill, line);
    for (const auto& price : {given.netPrice, given.grossPrice}) {
        if (price && price->Scaled() < 0) RefuseWith(Message("the price {1} is negative", price->ToText()));
    }
    stored.amounts = WorkOutAmounts(given, line.quantity, RateOf(bill, line, type));
    if (bill.kind == EntryKind::Cost) stored.amounts = {stored.amounts.netPrice, {}, stored.amounts.net, {}, {}};
    stored.handler = line.handler;
    stored.counterpart = line.counterpart;
    stored.packing = line.packing;
    stored.slot = line.slot;
    stored.term = line.term;
    return stored;
}

GivenAmounts BillResolver::AmountsOf(const NewBill& bill, const NewBillLine& line) {
    GivenAmounts given = line.amounts;
    if (given.netPrice || given.grossPrice || given.net || given.gross) return given;
    if (bill.kind == EntryKind::Transfer || bill.kind == EntryKind::Cost) {
        given.netPrice = CurrentCost(*book_, bill.warehouse, line.product, bill.date);
        if (!given.netPrice) {
            RefuseWith(Message("{1} has no cost in {2} yet; give a 单价", ProductName(line.product),
                               WarehouseName(bill.warehouse)));
        }
        return given;
    }
    const char* column = bill.kind == EntryKind::Inbound ? "购进单价" : "默认单价";
    const double price = ProductFigure(line.product, column);
    if (price == 0) RefuseWith(Message("there is no 单价, and {1} has no {2}", ProductName(line.product), column));
    given.grossPrice = Currency::FromDouble(price);
    return given;
}

double BillResolver::RateOf(const NewBill& bill, const NewBillLine& line, const std::string& type) {
    if (bill.kind == EntryKind::Transfer || bill.kind == EntryKind::Cost) return 0;
    const bool inbound = bill.kind == EntryKind::Inbound;
    const char* ordinary = inbound ? "普购税率" : "普通税率";
    const char* vat = inbound ? "增购税率" : "增值税率";
    double rate = 0;
    if (line.taxRate) {
        rate = *line.taxRate;
    } else {
        const bool isVat = type == kVatInvoice;
        rate = ProductFigure(line.product, isVat ? vat : ordinary);
        if (rate == 0) rate = ProductFigure(line.product, isVat ? ordinary : vat);
    }
    CheckRate(rate);
    return rate;
}

}  // namespace kpTables::bookkeeping
