// The statements that the component's methods send, read from the files of this folder. README.md has the format.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kpTables::corpus {

struct Statement {
    std::string kind;  ///< "execute", "open" or "open table"
    std::string text;
    std::string answer;   ///< its result rows, as the file has them; "" for none
    std::string refusal;  ///< "" or the front end's error message for the text
};

/// A call and the statements that it sends in each dialect.
struct Case {
    std::string file;   ///< without its extension
    int line = 0;       ///< of the call
    std::string call;   ///< as the file has it: rs仓库余额表(2, 3)
    std::string title;  ///< "" or what the call shows
    std::vector<Statement> jet;
    std::vector<Statement> server;
    std::vector<std::string> boxes;  ///< answers to message boxes, in order
    std::string result;              ///< "" or the value that the call answers

    const std::vector<Statement>& Statements(bool isSQL) const { return isSQL ? server : jet; }
    /// "Balance.calls:12: rs仓库余额表(2, 3) ' both".
    std::string Name() const;
};

/// Every case of every file. Invalid text is a std::runtime_error with its position.
const std::vector<Case>& Cases();
/// The case of a call as the files write it; with a title, the one of that title. Unknown calls are a
/// std::runtime_error.
const Case& Find(std::string_view call, std::string_view title = "");
/// The n-th (from 1) text that a case sends.
const std::string& Text(std::string_view call, std::size_t number = 1, bool isSQL = false);

/// A statement's text and the first case that sends it.
struct SentText {
    const Case* source;
    const Statement* statement;
};
/// Every text once, in the order of the files, without the names of opened tables.
std::vector<SentText> Texts();

/// The length of the call at the start of a line, from its name to its closing parenthesis; 0 when there is none.
std::size_t CallLength(std::string_view line);

}  // namespace kpTables::corpus
