#include "com/BookkeepingObject.h"

#include <utility>
#include <vector>

#include "com/SystemHost.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/BillSheet.h"
#include "kpTables/bookkeeping/Check.h"
#include "kpTables/bookkeeping/Closing.h"
#include "kpTables/bookkeeping/MasterEntry.h"
#include "kpTables/bookkeeping/NewBook.h"
#include "kpTables/bookkeeping/Opening.h"

namespace kpTables::com {
namespace {

using bookkeeping::ClosingOutcome;
using bookkeeping::ClosingResult;
using bookkeeping::EntryKind;

/// The elements of an array; any other value is its own only element.
std::vector<Variant> ElementsOf(const Variant& value) {
    if (value.IsMissing()) return {};
    if (const auto* array = value.If<std::shared_ptr<VariantArray>>()) return (*array)->items;
    return {value};
}

/// "商品编号=01001" in two.
std::pair<std::string, std::string> ColumnAndValue(const Variant& element) {
    const std::string text = CStr(element);
    const auto equals = text.find('=');
    if (equals == text.npos || equals == 0)
        Raise(ErrorNumber::InvalidCall, "expected COLUMN=VALUE, as in \"商品编号=01001\", instead of \"" + text + "\"");
    return {text.substr(0, equals), text.substr(equals + 1)};
}

EntryKind EntryKindOf(const std::string& word) {
    constexpr std::pair<std::string_view, EntryKind> kWords[] = {
        {"in", EntryKind::Inbound},        {"入库", EntryKind::Inbound}, {"out", EntryKind::Outbound},
        {"出库", EntryKind::Outbound},     {"cost", EntryKind::Cost},    {"成本", EntryKind::Cost},
        {"transfer", EntryKind::Transfer}, {"调拨", EntryKind::Transfer}};
    for (const auto& [known, kind] : kWords)
        if (word == known) return kind;
    Raise(ErrorNumber::InvalidCall,
          "a bill is in (入库), out (出库), cost (成本) or transfer (调拨), not \"" + word + "\"");
}

std::string ReasonOf(const ClosingResult& result) {
    const std::string month = std::to_string(result.month);
    switch (result.outcome) {
        case ClosingOutcome::ClosedAlready:
            return "month " + month + " is closed already";
        case ClosingOutcome::EarlierMonthOpen:
            return "month " + month + " is open; close that first";
        case ClosingOutcome::LaterMonthsClosed:
            return "it is closed through month " + month + ", and the later months would become stale";
        case ClosingOutcome::LeftAsItWas:
            return "left as it was";
        case ClosingOutcome::NothingToDo:
            return "there is nothing to do";
        default:
            return result.reason;
    }
}

/// How many warehouses are done; error 5 with the reasons of those that are not.
std::int32_t CountDone(const std::vector<ClosingResult>& results, bool nothingIsDone) {
    std::int32_t done = 0;
    std::string refused;
    for (const ClosingResult& each : results) {
        const bool nothing = each.outcome == ClosingOutcome::NothingToDo && nothingIsDone;
        if (each.outcome == ClosingOutcome::Done) {
            ++done;
        } else if (!nothing) {
            refused += (refused.empty() ? "" : "; ") + each.name + ": " + ReasonOf(each);
        }
    }
    if (!refused.empty()) Raise(ErrorNumber::InvalidCall, refused);
    return done;
}

std::int16_t MonthOf(const Variant& argument) {
    const std::int16_t month = CInt(argument);
    if (month < 1 || month > 12) Raise(ErrorNumber::InvalidCall, "a month is 1 to 12");
    return month;
}

bool Flag(const Variant& argument) { return !argument.IsMissing() && CBool(argument); }

RecordsetPtr RowsOf(const std::vector<bookkeeping::Finding>& findings) {
    auto rows = std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{{"dpID", VarType::Long},
                                                                         {"年份", VarType::Long},
                                                                         {"月份", VarType::Long},
                                                                         {"pdID", VarType::Long},
                                                                         {"what", VarType::String},
                                                                         {"expected", VarType::String},
                                                                         {"found", VarType::String}});
    const auto known = [](std::int32_t number) { return number == 0 ? Variant::Null() : Variant(number); };
    const auto text = [](const Variant& value) { return value.IsNull() ? value : Variant(Text(value)); };
    for (const auto& each : findings) {
        const Variant values[] = {known(each.warehouse.value_or(0)),
                                  known(each.year),
                                  known(each.month),
                                  known(each.product.value_or(0)),
                                  each.what,
                                  text(each.expected),
                                  text(each.found)};
        rows->AddNew();
        for (std::size_t i = 0; i < std::size(values); ++i) rows->SetValue(static_cast<int>(i), values[i]);
        rows->Update();
    }
    if (rows->RecordCount() > 0) rows->MoveFirst();
    return rows;
}

const Interface& BookkeepingInterface() {
    using B = BookkeepingObject;
    static const Interface members(
        kLateBoundOnly, "Bookkeeping",
        {
            Method<&B::NewBook>("NewBook", 1, {"Path", "Company", "Year", "Month", "Warehouses"}),
            Method<&B::Open>("Open", 2, {"Path"}),
            Method<&B::Close>("Close", 3),
            Get<&B::Cnn>("Cnn", 4),
            Method<&B::LogIn>("LogIn", 5, {"Name", "Password?"}),
            Get<&B::Answer>("Answer", 6),
            Let<&B::SetAnswer>("Answer", 6),
            Method<&B::AddMaster>("AddMaster", 7, {"Kind", "Values"}),
            Method<&B::EnterOpening>("EnterOpening", 8, {"Rows"}),
            Method<&B::EnterBill>("EnterBill", 9, {"Kind", "Bill", "Lines"}),
            Method<&B::CloseMonth>("CloseMonth", 10,
                                   {"Month", "CostUsed?", "Warehouse?", "Again?", "Through?", "Note?"}),
            Method<&B::ReopenMonth>("ReopenMonth", 11, {"Month", "Warehouse?"}),
            Method<&B::Check>("Check", 12),
        });
    return members;
}

}  // namespace

/// Answers questions as the script has said, else by the system's message box.
class BookkeepingObject::ScriptHost final : public SystemHost {
public:
    MessageAnswer MsgBox(const std::string& text, MessageButtons buttons, const std::string& title) override {
        if (buttons == MessageButtons::YesNo && answer == "yes") return MessageAnswer::Yes;
        if (buttons == MessageButtons::YesNo && answer == "no") return MessageAnswer::No;
        return SystemHost::MsgBox(text, buttons, title);
    }
    std::string answer;
};

BookkeepingObject::BookkeepingObject()
    : Scriptable(BookkeepingInterface()),
      connection_(Make<ConnectionObject>()),
      host_(std::make_shared<ScriptHost>()) {}

BookkeepingObject::~BookkeepingObject() = default;

const BookPtr& BookkeepingObject::Opened() const {
    if (!connection_->Shared()) Raise(ErrorNumber::ObjectNotSet, "no book is open");
    return connection_->Shared();
}

void BookkeepingObject::Require(const std::string& right) const {
    if (acting_) return acting_->Require(right);
    if (bookkeeping::OperatorRequired(Opened()))
        Raise(ErrorNumber::InvalidCall, "the book demands an operator for every change: LogIn");
}

void BookkeepingObject::Log(const std::string& what) const {
    if (acting_) acting_->Log(host_->Today(), what);
}

std::optional<std::int32_t> BookkeepingObject::WarehouseOf(const Variant& argument) const {
    if (argument.IsMissing()) return std::nullopt;
    return bookkeeping::MasterId(Opened(), bookkeeping::MasterKind::Warehouse, CStr(argument));
}

Variant BookkeepingObject::NewBook(Arguments arguments) {
    bookkeeping::Beginning beginning;
    beginning.company = CStr(arguments[1]);
    beginning.year = CInt(arguments[2]);
    beginning.month = CInt(arguments[3]);
    for (const Variant& warehouse : ElementsOf(arguments[4])) beginning.warehouses.push_back(CStr(warehouse));
    NewBookOptions options;
    options.prepare = [&](const BookPtr& book) { bookkeeping::BeginBook(book, beginning); };
    connection_ = Make<ConnectionObject>(CreateBook(CStr(arguments[0]), options));
    acting_.reset();
    return {};
}

Variant BookkeepingObject::Open(Arguments arguments) {
    connection_ = Make<ConnectionObject>(OpenBook(CStr(arguments[0])));
    acting_.reset();
    return {};
}

Variant BookkeepingObject::Close(Arguments) {
    acting_.reset();
    connection_ = Make<ConnectionObject>();
    return {};
}

Variant BookkeepingObject::Cnn(Arguments) { return Give(connection_); }

Variant BookkeepingObject::LogIn(Arguments arguments) {
    const std::string password = arguments[1].IsMissing() ? "" : CStr(arguments[1]);
    acting_.emplace(Opened(), CStr(arguments[0]), [&password] { return password; });
    return {};
}

Variant BookkeepingObject::Answer(Arguments) { return host_->answer; }

Variant BookkeepingObject::SetAnswer(Arguments arguments) {
    std::string answer = CStr(arguments[0]);
    if (!answer.empty() && answer != "yes" && answer != "no")
        Raise(ErrorNumber::InvalidCall, "Answer is \"yes\", \"no\", or \"\" to be asked");
    host_->answer = std::move(answer);
    return {};
}

Variant BookkeepingObject::AddMaster(Arguments arguments) {
    const std::string word = CStr(arguments[0]);
    const auto kind = bookkeeping::MasterKindOf(word);
    if (!kind) Raise(ErrorNumber::InvalidCall, "no kind of master rows is called \"" + word + "\"");
    bookkeeping::ColumnValues values;
    for (const Variant& element : ElementsOf(arguments[1])) {
        auto [column, value] = ColumnAndValue(element);
        values.push_back({std::move(column), std::move(value)});
    }
    Require(bookkeeping::RightToChange(*kind));
    Transaction transaction(*Opened());
    const std::int32_t id = bookkeeping::AddMaster(Opened(), *kind, values);
    Log("新增 " + word + " " + Text(id));
    transaction.Commit();
    return id;
}

Variant BookkeepingObject::EnterOpening(Arguments arguments) {
    constexpr std::size_t kCells = 4;
    std::vector<bookkeeping::OpeningRow> rows;
    for (const Variant& element : ElementsOf(arguments[0])) {
        const std::vector<Variant> cells = ElementsOf(element);
        if (cells.size() != kCells)
            Raise(ErrorNumber::InvalidCall, "a row of opening stock is Array(warehouse, product, quantity, amount)");
        rows.push_back({CStr(cells[0]), CStr(cells[1]), CDbl(cells[2]), CCur(cells[3])});
    }
    Require(bookkeeping::rights::kInbound);
    Transaction transaction(*Opened());
    const auto result = bookkeeping::EnterOpening(Opened(), rows);
    if (!result.faults.empty()) {
        const auto& fault = result.faults.front();
        Raise(ErrorNumber::InvalidCall,
              "row " + std::to_string(fault.row + 1) + ": " + fault.column + ": " + fault.reason);
    }
    Log("期初库存 " + std::to_string(result.added + result.changed));
    transaction.Commit();
    return result.added + result.changed;
}

Variant BookkeepingObject::EnterBill(Arguments arguments) {
    bookkeeping::SheetOptions sheet;
    sheet.kind = EntryKindOf(CStr(arguments[0]));
    sheet.today = host_->Today();
    if (acting_) sheet.clerk = acting_->Name();
    if (sheet.kind == EntryKind::Cost) Require(bookkeeping::rights::kCost);
    if (sheet.kind == EntryKind::Inbound || sheet.kind == EntryKind::Transfer) Require(bookkeeping::rights::kInbound);
    if (sheet.kind == EntryKind::Outbound || sheet.kind == EntryKind::Transfer) Require(bookkeeping::rights::kOutbound);
    for (const Variant& element : ElementsOf(arguments[1])) sheet.defaults.insert(ColumnAndValue(element));
    std::vector<bookkeeping::SheetRow> rows;
    for (const Variant& line : ElementsOf(arguments[2])) {
        auto& row = rows.emplace_back();
        row.row = static_cast<std::int64_t>(rows.size());
        for (const Variant& element : ElementsOf(line)) row.cells.insert(ColumnAndValue(element));
    }
    if (rows.empty()) Raise(ErrorNumber::InvalidCall, "a bill has at least one line");
    bookkeeping::EntryOptions options;
    options.today = sheet.today;
    Transaction transaction(*Opened());
    const auto entered = bookkeeping::EnterBillSheet(Opened(), rows, sheet, options);
    if (entered.size() != 1) Raise(ErrorNumber::InvalidCall, "the lines belong to more than one bill");
    Log("录入 " + entered.front().bill.number);
    transaction.Commit();
    return entered.front().id;
}

Variant BookkeepingObject::CloseMonth(Arguments arguments) {
    bookkeeping::ClosingOptions options;
    options.month = MonthOf(arguments[0]);
    options.costUsed = Flag(arguments[1]);
    options.warehouse = WarehouseOf(arguments[2]);
    options.again = Flag(arguments[3]);
    if (!arguments[4].IsMissing()) options.through = MonthOf(arguments[4]);
    options.note = arguments[5].IsMissing() ? Variant(host_->Today()) : arguments[5];
    Require(bookkeeping::rights::kClose);
    bookkeeping::ClosingWatch watch;
    watch.done = [this](const ClosingResult& result) {
        for (const auto& month : result.months)
            Log("结帐 " + result.name + " " + std::to_string(month.year) + "-" + std::to_string(month.month));
    };
    return CountDone(bookkeeping::CloseMonth(Opened(), host_, options, watch), true);
}

Variant BookkeepingObject::ReopenMonth(Arguments arguments) {
    bookkeeping::ReopeningOptions options;
    options.month = MonthOf(arguments[0]);
    options.warehouse = WarehouseOf(arguments[1]);
    Require(bookkeeping::rights::kClose);
    const auto results = bookkeeping::ReopenMonth(Opened(), options);
    for (const ClosingResult& result : results)
        for (const auto& month : result.months)
            Log("反结帐 " + result.name + " " + std::to_string(month.year) + "-" + std::to_string(month.month));
    return CountDone(results, false);
}

Variant BookkeepingObject::Check(Arguments) { return RowsOf(bookkeeping::CheckBook(*Opened())); }

}  // namespace kpTables::com
