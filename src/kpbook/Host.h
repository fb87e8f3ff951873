// The two hosts that the component meets here: a person at the command line, and a program that sends lines.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kpTables/Host.h"

namespace kpTables::kpbook {

/// Shows message boxes on standard error and asks at the terminal. An answer given beforehand answers every question.
class ConsoleHost : public Host {
public:
    ConsoleHost(std::optional<Date> today, std::optional<MessageAnswer> answer) : today_(today), answer_(answer) {}
    MessageAnswer MsgBox(const std::string& text, MessageButtons buttons, const std::string& title) override;
    Date Today() override;

private:
    std::optional<Date> today_;
    std::optional<MessageAnswer> answer_;
};

struct ShownMessage {
    std::string text;
    std::string title;
    MessageButtons buttons = MessageButtons::OkOnly;
    std::optional<MessageAnswer> answer;  ///< nothing when nobody answered
};

/// Answers with what the line says and keeps what was shown.
class BatchHost : public Host {
public:
    MessageAnswer MsgBox(const std::string& text, MessageButtons buttons, const std::string& title) override;
    Date Today() override;

    std::optional<Date> today;
    std::optional<MessageAnswer> answer;
    std::vector<ShownMessage> messages;
};

}  // namespace kpTables::kpbook
