// The component where a trapped error must not pass for an answer.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "kpTables/CTables.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/WatchedConnection.h"

namespace kpTables::bookkeeping {

/// Calls methods of the component and raises what they trap, or tell in a message box.
class CheckedTables {
public:
    /// today: what the methods take for it; empty: the system's date.
    explicit CheckedTables(const ConnectionPtr& book, std::optional<Date> today = {});

    /// What call(tables) answers, when nothing failed in it.
    template <class Call>
    auto Ask(Call call) {
        Forget();
        auto answer = call(tables_);
        Check();
        return answer;
    }
    /// For methods that answer whether they succeeded; what says which step.
    template <class Call>
    void Do(const char* what, Call call) {
        if (!Ask(call)) Raise(ErrorNumber::InvalidCall, what);
    }

    // For several calls that are checked together.
    CTables& Tables() noexcept { return tables_; }
    Connection& Book() noexcept { return *watched_; }
    /// Raises what has failed so far.
    void Check() const;

private:
    class QuietHost;

    void Forget();

    std::shared_ptr<WatchedConnection> watched_;
    std::shared_ptr<QuietHost> host_;
    CTables tables_;
};

}  // namespace kpTables::bookkeeping
