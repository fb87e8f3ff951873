#include "bookkeeping/Setup.h"

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Host.h"

namespace kpTables::bookkeeping {

/// Keeps what the component tells its user.
class Setup::QuietHost : public Host {
public:
    explicit QuietHost(std::optional<Date> today) : today_(today) {}
    MessageAnswer MsgBox(const std::string& text, MessageButtons, const std::string&) override {
        told = text;
        return MessageAnswer::Ok;
    }
    Date Today() override { return today_ ? *today_ : Host::Today(); }

    std::string told;

private:
    std::optional<Date> today_;
};

Setup::Setup(const ConnectionPtr& book, std::optional<Date> today)
    : book_(std::make_shared<WatchedConnection>(book, [] { return std::int64_t{0}; })),
      host_(std::make_shared<QuietHost>(today)),
      tables_(host_) {
    tables_.Cnn(book_);
}

void Setup::Store(const std::string& item, const Variant& value) {
    tables_.Update_AccInfo(item, Variant(value));
    Check();
    // Update_AccInfo skips what fails in AccInfo.
    const auto kept = book_->Execute("Select " + item + " From AccInfo");
    if (kept->Eof() || Text(kept->GetValue(0)) != Text(value)) RefuseSetup("AccInfo does not keep " + item);
}

void Setup::StoreDates(std::int32_t year, std::int32_t month) {
    const Date first = Date::FromYearMonthDay(year, month, 1);
    Store("建帐日期", Format(first, "yyyy年MM月dd日"));
    Store("当前日期", first.ToText());
}

void Setup::Check(bool answer) {
    if (const auto* error = book_->LastError()) throw *error;
    if (!host_->told.empty()) RefuseSetup(host_->told);
    if (!answer) RefuseSetup("the book cannot be set up");
}

void RefuseSetup(const std::string& text) { throw Error(static_cast<std::int32_t>(ErrorNumber::InvalidCall), text); }

}  // namespace kpTables::bookkeeping
