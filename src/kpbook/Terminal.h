// The user at the terminal, if there is one.
#pragma once

#include <optional>
#include <string>

#include "kpTables/Host.h"

namespace kpTables::kpbook {

/// Whether standard error is a terminal.
bool ErrorIsTerminal() noexcept;

/// Whether colours may be shown there: a terminal that is not dumb, and no NO_COLOR.
bool ErrorHasColours() noexcept;
bool OutputHasColours() noexcept;
/// "kpbook:", as messages of failures begin.
const char* FailureMark() noexcept;
/// Whether standard input is a terminal: somebody can be asked.
bool InputIsTerminal() noexcept;

/// Shows a line on standard error.
void TellLine(const std::string& line);

/// Asks for a line of text; without blanks at its ends. Returns nothing when standard input is not a terminal or ends.
std::optional<std::string> AskLine(const std::string& question);

/// Asks a question until y or n is typed. Returns nothing when standard input is not a terminal or ends.
std::optional<MessageAnswer> AskYesNo(const std::string& question);

/// Reads a password: at a terminal twice and without showing it, otherwise one line of standard input. A CommandError
/// when the two differ, and with the complaint when there is none.
std::string AskPassword(const std::string& complaint);

/// The password with which an operator logs in: the first line of the file that the environment variable
/// KPBOOK_PASSWORD_FILE names, else what is typed at the terminal without being shown. A CommandError when the file
/// cannot be read, and when there is neither.
std::string LoginPassword(const std::string& name);

/// The password with which a server is entered: the first line of a file, else what is typed at the terminal without
/// being shown. A CommandError as above.
std::string ServerPassword(const std::string& file);

/// A bar drawn on standard error: "label [#####-----]  50%".
class TerminalProgressBar : public ProgressBar {
public:
    explicit TerminalProgressBar(std::string label);
    ~TerminalProgressBar() override;
    void SetVisible(bool visible) override;
    void SetValue(double value) override;

private:
    void Draw() const;

    std::string label_;
    bool visible_ = false;
    int percent_ = 0;
};

}  // namespace kpTables::kpbook
