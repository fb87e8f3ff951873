// A book on a scripted connection, with a host that knows what day it is.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kpTables/CTables.h"
#include "support/ScriptedConnection.h"
#include "support/ScriptedHost.h"

namespace kpTables::test {

inline Date Day(const char* iso) { return *Date::ParseIso(iso); }
inline Currency Money(std::int64_t tenThousandths) { return Currency::FromScaled(tenThousandths); }

/// Rows of the table of settings.
inline std::shared_ptr<ScriptedRecordset> OptionRows(const Rows& rows) {
    return MakeRows({{"Item", VarType::String}, {"Discription", VarType::String}}, rows);
}

/// The row of one setting; a null text for one that is not there.
inline std::shared_ptr<ScriptedRecordset> Setting(const char* text) {
    return text ? OptionRows({{"x", text}}) : OptionRows({});
}

struct BookScript {
    explicit BookScript(std::deque<MessageAnswer> answers = {})
        : host(std::make_shared<DatedHost>(std::move(answers))), tables(host) {
        tables.Cnn(cnn);
    }
    /// Answers the next statement with rows whose edits go into the journal.
    BookScript& AnswerRecorded(const std::shared_ptr<ScriptedRecordset>& rows) {
        rows->RecordTo(cnn->Log());
        cnn->Answer(rows);
        return *this;
    }
    /// The message boxes shown, each "title: text".
    std::vector<std::string> Messages() const {
        std::vector<std::string> shown;
        for (const auto& each : host->Messages()) shown.push_back(each.title + ": " + each.text);
        return shown;
    }

    std::shared_ptr<ScriptedConnection> cnn = std::make_shared<ScriptedConnection>();
    std::shared_ptr<DatedHost> host;
    CTables tables;
};

}  // namespace kpTables::test
