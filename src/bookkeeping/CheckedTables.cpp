#include "bookkeeping/CheckedTables.h"

#include "bookkeeping/Refusal.h"
#include "kpTables/Host.h"
#include "kpTables/TrappedError.h"

namespace kpTables::bookkeeping {

namespace {

/// A value that does not fit, an unknown column: the method's answer stands for these errors. Not so a lack of memory.
void RaiseUnlessMeant(const std::exception_ptr& trapped) {
    try {
        std::rethrow_exception(trapped);
    } catch (const Error&) {
        return;
    }
}

}  // namespace

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
    const auto trapped = TakeTrappedError();
    if (const auto* error = watched_->LastError()) throw DatabaseError(*error);
    if (trapped) RaiseUnlessMeant(trapped);
    if (!host_->told.empty()) RefuseWith(host_->told);
}

void CheckedTables::Forget() {
    TakeTrappedError();
    watched_->ForgetFailures();
    host_->told.clear();
}

}  // namespace kpTables::bookkeeping
