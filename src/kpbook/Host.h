// The two hosts of the component: a user at the command line, and a program that sends a batch.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kpTables/Host.h"

namespace kpTables::kpbook {

/// Shows message boxes on standard error and asks at the terminal. An answer from the command line answers every
/// question.
class ConsoleHost : public Host {
public:
    ConsoleHost(std::optional<Date> today, std::optional<MessageAnswer> answer) : today_(today), answer_(answer) {}
    MessageAnswer MsgBox(const std::string& text, MessageButtons buttons, const std::string& title) override;
    Date Today() override;
    /// Whether a message was shown that asks nothing: the component reports errors so.
    bool HasReported() const noexcept { return hasReported_; }

private:
    std::optional<Date> today_;
    std::optional<MessageAnswer> answer_;
    bool hasReported_ = false;
};

struct ShownMessage {
    std::string text;
    std::string title;
    MessageButtons buttons = MessageButtons::OkOnly;
    std::optional<MessageAnswer> answer;  ///< nothing when there was no answer
};

/// Takes date and answer from the request and records the messages.
class BatchHost : public Host {
public:
    MessageAnswer MsgBox(const std::string& text, MessageButtons buttons, const std::string& title) override;
    Date Today() override;

    std::optional<Date> today;
    std::optional<MessageAnswer> answer;
    std::vector<ShownMessage> messages;
};

}  // namespace kpTables::kpbook
