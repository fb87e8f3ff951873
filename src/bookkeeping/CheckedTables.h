// The component where a trapped error must not pass for an answer.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "kpTables/CTables.h"
#include "kpTables/Error.h"
#include "kpTables/Host.h"
#include "kpTables/bookkeeping/WatchedConnection.h"

namespace kpTables::bookkeeping {

/// Lets a method that reports its error in a message box end; the error is raised instead.
class QuietHost : public Host {
public:
    MessageAnswer MsgBox(const std::string&, MessageButtons, const std::string&) override { return MessageAnswer::Ok; }
};

/// Calls methods of the component and raises the database errors that they trap.
class CheckedTables {
public:
    explicit CheckedTables(ConnectionPtr book)
        : watched_(std::make_shared<WatchedConnection>(std::move(book), [] { return std::int64_t{0}; })),
          tables_(std::make_shared<QuietHost>()) {
        tables_.Cnn(watched_);
    }

    /// What call(tables) answers, when nothing failed in it.
    template <class Call>
    auto Ask(Call call) {
        watched_->ForgetFailures();
        auto answer = call(tables_);
        if (const auto* error = watched_->LastError()) throw DatabaseError(*error);
        return answer;
    }
    /// For methods that answer whether they succeeded; what says which step.
    template <class Call>
    void Do(const char* what, Call call) {
        if (!Ask(call)) Raise(ErrorNumber::InvalidCall, what);
    }

private:
    std::shared_ptr<WatchedConnection> watched_;
    CTables tables_;
};

}  // namespace kpTables::bookkeeping
