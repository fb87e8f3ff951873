#include "bookkeeping/CheckedTables.h"

#include "bookkeeping/Refusal.h"
#include "kpTables/Host.h"

namespace kpTables::bookkeeping {

/// Keeps what the component tells its user.
class CheckedTables::QuietHost : public Host {
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

CheckedTables::CheckedTables(const ConnectionPtr& book, std::optional<Date> today)
    : watched_(std::make_shared<WatchedConnection>(book, [] { return std::int64_t{0}; })),
      host_(std::make_shared<QuietHost>(today)),
      tables_(host_) {
    tables_.Cnn(watched_);
}

void CheckedTables::Check() const {
    if (const auto* error = watched_->LastError()) throw DatabaseError(*error);
    if (!host_->told.empty()) RefuseWith(host_->told);
}

void CheckedTables::Forget() {
    watched_->ForgetFailures();
    host_->told.clear();
}

}  // namespace kpTables::bookkeeping
