#include "kpbook/Terminal.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"
#include "platform/Input.h"
#include "platform/Terminal.h"

namespace kpTables::kpbook {

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

/// A line without its end; nothing at the end of the input.
std::optional<std::string> ReadLine(std::FILE* input) {
    std::string line;
    int character = 0;
    while ((character = std::fgetc(input)) != EOF && character != '\n') line += static_cast<char>(character);
    if (character == EOF && line.empty()) return std::nullopt;
    return line;
}

/// Standard input and standard error, when there is a terminal that cannot be opened.
class StreamTerminal : public platform::UserTerminal {
public:
    void Write(const std::string& text) override {
        std::fputs(text.c_str(), stderr);
        std::fflush(stderr);
    }
    std::optional<std::string> ReadLine() override { return kpbook::ReadLine(stdin); }
    bool HideInput() override { return false; }
};

std::optional<std::string> ReadReply(const std::string& question, platform::UserTerminal& user) {
    user.Write(question);
    return user.ReadLine();
}

std::optional<MessageAnswer> ReadAnswer(const std::string& question, platform::UserTerminal& user) {
    for (;;) {
        const auto line = ReadReply(question + " [y/n] ", user);
        if (!line) return std::nullopt;
        if (*line == "y" || *line == "Y" || *line == "yes" || *line == "是") return MessageAnswer::Yes;
        if (*line == "n" || *line == "N" || *line == "no" || *line == "否") return MessageAnswer::No;
    }
}

/// By the convention of no-color.org, any text in NO_COLOR says no.
bool RefusesColours() noexcept {
    const char* const refused = std::getenv("NO_COLOR");
    return refused && *refused;
}

}  // namespace

bool ErrorIsTerminal() noexcept { return platform::IsTerminal(platform::Stream::Error); }

bool ErrorHasColours() noexcept { return !RefusesColours() && platform::ShowsColours(platform::Stream::Error); }

bool OutputHasColours() noexcept { return !RefusesColours() && platform::ShowsColours(platform::Stream::Output); }

const char* FailureMark() noexcept { return ErrorHasColours() ? "\033[1;31mkpbook:\033[0m" : "kpbook:"; }

void TellLine(const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); }

bool InputIsTerminal() noexcept { return platform::IsTerminal(platform::Stream::Input); }

namespace {

/// What read(question, user) gets from the user. Standard error may be redirected to a file; the question must reach
/// the user.
template <class Read>
auto FromTerminal(const std::string& question, Read read) -> decltype(read(question, std::declval<StreamTerminal&>())) {
    if (!InputIsTerminal()) return std::nullopt;
    if (const auto terminal = platform::UserTerminal::Open()) return read(question, *terminal);
    StreamTerminal streams;
    return read(question, streams);
}

}  // namespace

std::optional<MessageAnswer> AskYesNo(const std::string& question) { return FromTerminal(question, ReadAnswer); }

std::optional<std::string> AskLine(const std::string& question) {
    const auto line = FromTerminal(question, ReadReply);
    ThrowIfInterrupted();
    if (!line) return std::nullopt;
    return std::string(Trim(*line));
}

namespace {

std::string ReadHidden(const std::string& question, platform::UserTerminal& terminal) {
    terminal.Write(question);
    const auto line = terminal.ReadLine();
    terminal.Write("\n");
    ThrowIfInterrupted();
    return line.value_or("");
}

/// The terminal, which does not show what is typed; complaint says what is missing when there is none.
std::unique_ptr<platform::UserTerminal> HidingTerminal(const std::string& complaint) {
    auto terminal = platform::UserTerminal::Open();
    if (!terminal) throw CommandError(complaint);
    if (!terminal->HideInput()) throw CommandError(Message("the terminal cannot hide a password"));
    return terminal;
}

}  // namespace

std::string AskPassword(const std::string& complaint) {
    std::string password;
    if (InputIsTerminal()) {
        const auto terminal = HidingTerminal(Message("there is no terminal to ask for the password"));
        password = ReadHidden(Translated("New password: "), *terminal);
        if (ReadHidden(Translated("Again: "), *terminal) != password)
            throw CommandError(Message("the two passwords differ"));
    } else {
        password = ReadLine(stdin).value_or("");
        if (password.ends_with('\r')) password.pop_back();
    }
    if (password.empty()) throw CommandError(complaint);
    return password;
}

namespace {

/// The first line of a file; nothing when it cannot be read.
std::optional<std::string> PasswordIn(const char* path) {
    const std::unique_ptr<std::FILE, CloseFile> file(platform::OpenFile(path, "r"));
    const auto line = file ? ReadLine(file.get()) : std::nullopt;
    if (!file || std::ferror(file.get())) return std::nullopt;
    std::string password = line.value_or("");
    if (password.ends_with('\r')) password.pop_back();
    return password;
}

/// Raises a CommandError with the complaint when there is no terminal.
std::string TypedPassword(const std::string& question, const std::string& complaint) {
    const auto terminal = HidingTerminal(complaint);
    return ReadHidden(question, *terminal);
}

}  // namespace

std::string LoginPassword(const std::string& name) {
    if (const char* path = std::getenv("KPBOOK_PASSWORD_FILE"); path && *path) {
        if (auto password = PasswordIn(path)) return *password;
        throw CommandError(Message("the file of KPBOOK_PASSWORD_FILE cannot be read: {1}", path));
    }
    return TypedPassword(
        Message("Password of {1}: ", name),
        Message(
            "there is no terminal to ask for the operator's password; KPBOOK_PASSWORD_FILE may name a file with it"));
}

std::string ServerPassword(const std::string& file) {
    if (!file.empty()) {
        if (auto password = PasswordIn(file.c_str())) return *password;
        throw CommandError(Message("the file of --password-file cannot be read: {1}", file));
    }
    return TypedPassword(
        Message("Password for the server: "),
        Message(
            "the server wants a password, and there is no terminal to ask for it: --password-file FILE, or a line of "
            "~/.pgpass"));
}

TerminalProgressBar::TerminalProgressBar(std::string label) : label_(std::move(label)) {}

TerminalProgressBar::~TerminalProgressBar() {
    // A closing that failed leaves the bar visible; the next output goes below it.
    if (visible_) std::fputc('\n', stderr);
}

void TerminalProgressBar::SetVisible(bool visible) {
    if (visible_ == visible) return;
    visible_ = visible;
    if (visible) {
        Draw();
    } else {
        std::fputc('\n', stderr);
    }
}

void TerminalProgressBar::SetValue(double value) {
    const int percent = static_cast<int>(std::clamp(value, 0.0, 100.0));
    if (percent == percent_) return;
    percent_ = percent;
    if (visible_) Draw();
}

void TerminalProgressBar::Draw() const {
    constexpr int kWidth = 40;
    const auto filled = static_cast<std::size_t>(percent_ * kWidth / 100);
    std::fprintf(stderr, "\r%s [%s%s] %3d%%", label_.c_str(), std::string(filled, '#').c_str(),
                 std::string(kWidth - filled, '-').c_str(), percent_);
    std::fflush(stderr);
}

}  // namespace kpTables::kpbook
