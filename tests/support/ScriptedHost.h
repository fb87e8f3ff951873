// The host's side, scripted: message box, clock and progress bar.
#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Host.h"
#include "support/Journal.h"

namespace kpTables::test {

/// Records every message box; answers from the script, then raises error 5 as a host with nobody to ask does.
class ScriptedHost : public Host {
public:
    struct Message {
        std::string text;
        std::string title;
        MessageButtons buttons;
    };

    explicit ScriptedHost(std::deque<MessageAnswer> answers = {}) : answers_(std::move(answers)) {}

    MessageAnswer MsgBox(const std::string& text, MessageButtons buttons, const std::string& title) override {
        messages_.push_back({text, title, buttons});
        if (answers_.empty()) return Host::MsgBox(text, buttons, title);
        const auto answer = answers_.front();
        answers_.pop_front();
        return answer;
    }

    const std::vector<Message>& Messages() const { return messages_; }

private:
    std::deque<MessageAnswer> answers_;
    std::vector<Message> messages_;
};

/// Its day is 2006-08-19.
class DatedHost : public ScriptedHost {
public:
    using ScriptedHost::ScriptedHost;
    Date Today() override { return *Date::ParseIso("2006-08-19"); }
};

/// Journal entries: "Visible=True", "Value=12.5". The n-th call (from 1) can be made to fail.
class ScriptedBar : public ProgressBar {
public:
    explicit ScriptedBar(JournalPtr journal, int failAt = 0) : journal_(std::move(journal)), callsToFailure_(failAt) {}

    void SetVisible(bool visible) override {
        Call("Visible=" + Text(visible));
        visible_ = visible;
    }
    void SetValue(double value) override { Call("Value=" + Text(value)); }

    bool Visible() const { return visible_; }

private:
    void Call(const std::string& entry) {
        if (--callsToFailure_ == 0) Raise(ErrorNumber::UnknownMember, entry);
        journal_->push_back(entry);
    }

    JournalPtr journal_;
    int callsToFailure_;
    bool visible_ = false;
};

}  // namespace kpTables::test
