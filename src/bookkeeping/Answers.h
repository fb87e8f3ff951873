// The answers to questions that come up inside a transaction.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "kpTables/Host.h"

namespace kpTables::bookkeeping {

struct Question {
    std::string title;
    std::string text;
    friend auto operator<=>(const Question&, const Question&) = default;
};

/// A question has no answer yet. No user is waited for while other programs wait for the book: whoever catches it rolls
/// back, asks, and begins again.
struct Unanswered {
    Question question;
};

/// Gives the answers that were given outside of the transaction.
class Answers : public Host {
public:
    explicit Answers(std::shared_ptr<Host> user) : user_(std::move(user)) {}

    /// The answer given to this very question; without one an Unanswered is thrown.
    MessageAnswer MsgBox(const std::string& text, MessageButtons buttons, const std::string& title) override {
        if (buttons == MessageButtons::OkOnly) return user_->MsgBox(text, buttons, title);
        const auto given = given_.find({title, text});
        if (given == given_.end()) throw Unanswered{{title, text}};
        used_[title] = given->second;
        return given->second;
    }
    Date Today() override { return user_->Today(); }

    /// Asks the user; call it outside of the transaction.
    void Ask(const Question& question) {
        given_[question] = user_->MsgBox(question.text, MessageButtons::YesNo, question.title);
    }
    /// The last answer used under a title; null when none was.
    const MessageAnswer* Under(const std::string& title) const {
        const auto used = used_.find(title);
        return used == used_.end() ? nullptr : &used->second;
    }

private:
    std::shared_ptr<Host> user_;
    std::map<Question, MessageAnswer> given_;
    std::map<std::string, MessageAnswer> used_;
};

}  // namespace kpTables::bookkeeping
