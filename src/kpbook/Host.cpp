#include "kpbook/Host.h"

#include <cmath>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "kpbook/Terminal.h"

namespace kpTables::kpbook {

namespace {

/// The date given as today, without its time.
Date DayOf(Date said) { return Date::FromSerial(std::trunc(said.Serial())); }

}  // namespace

Date ConsoleHost::Today() { return today_ ? DayOf(*today_) : Host::Today(); }
Date BatchHost::Today() { return today ? DayOf(*today) : Host::Today(); }

MessageAnswer ConsoleHost::MsgBox(const std::string& text, MessageButtons buttons, const std::string& title) {
    const std::string question = title + ": " + text;
    if (buttons == MessageButtons::OkOnly) {
        hasReported_ = true;
        TellLine(question);
        return MessageAnswer::Ok;
    }
    const auto answer = answer_ ? answer_ : AskYesNo(question);
    if (!answer) {
        TellLine(question);
        Raise(ErrorNumber::InvalidCall, Message("nobody can answer this question; give --answer yes or --answer no"));
    }
    if (answer_) TellLine(question + " " + (*answer == MessageAnswer::Yes ? Translated("yes") : Translated("no")));
    return *answer;
}

MessageAnswer BatchHost::MsgBox(const std::string& text, MessageButtons buttons, const std::string& title) {
    const auto given = buttons == MessageButtons::OkOnly ? MessageAnswer::Ok : answer;
    messages.push_back({text, title, buttons, given});
    if (!given) Raise(ErrorNumber::InvalidCall, Message("the line has no answer to the question: {1}", text));
    return *given;
}

}  // namespace kpTables::kpbook
