#include "kpbook/Terminal.h"

#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "kpTables/Convert.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"

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

std::optional<std::string> ReadReply(const std::string& question, std::FILE* input, std::FILE* output) {
    std::fputs(question.c_str(), output);
    std::fflush(output);
    return ReadLine(input);
}

std::optional<MessageAnswer> ReadAnswer(const std::string& question, std::FILE* input, std::FILE* output) {
    for (;;) {
        const auto line = ReadReply(question + " [y/n] ", input, output);
        if (!line) return std::nullopt;
        if (*line == "y" || *line == "Y" || *line == "yes" || *line == "是") return MessageAnswer::Yes;
        if (*line == "n" || *line == "N" || *line == "no" || *line == "否") return MessageAnswer::No;
    }
}

/// By the convention of no-color.org, any text in NO_COLOR says no.
bool WantsColours() noexcept {
    const char* const refused = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return !(refused && *refused) && terminal && *terminal && std::string_view(terminal) != "dumb";
}

}  // namespace

bool ErrorIsTerminal() noexcept { return ::isatty(STDERR_FILENO) == 1; }

bool ErrorHasColours() noexcept { return ErrorIsTerminal() && WantsColours(); }

bool OutputHasColours() noexcept { return ::isatty(STDOUT_FILENO) == 1 && WantsColours(); }

const char* FailureMark() noexcept { return ErrorHasColours() ? "\033[1;31mkpbook:\033[0m" : "kpbook:"; }

void TellLine(const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); }

bool InputIsTerminal() noexcept { return ::isatty(STDIN_FILENO) == 1; }

namespace {

/// What read(question, input, output) gets from the user. Standard error may be redirected to a file; the question must
/// reach the user.
template <class Read>
auto FromTerminal(const std::string& question, Read read) -> decltype(read(question, stdin, stderr)) {
    if (!InputIsTerminal()) return std::nullopt;
    const std::unique_ptr<std::FILE, CloseFile> terminal(std::fopen("/dev/tty", "r+"));
    if (!terminal) return read(question, stdin, stderr);
    std::setbuf(terminal.get(), nullptr);
    return read(question, terminal.get(), terminal.get());
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

/// While it lives, a terminal does not show what is typed.
class HiddenInput {
public:
    explicit HiddenInput(std::FILE* terminal) : descriptor_(::fileno(terminal)) {
        if (::tcgetattr(descriptor_, &shown_) != 0) throw CommandError(Message("the terminal cannot hide a password"));
        termios hidden = shown_;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        if (::tcsetattr(descriptor_, TCSAFLUSH, &hidden) != 0) {
            throw CommandError(Message("the terminal cannot hide a password"));
        }
    }
    ~HiddenInput() { ::tcsetattr(descriptor_, TCSAFLUSH, &shown_); }
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;

private:
    int descriptor_;
    termios shown_{};
};

std::string ReadHidden(const char* question, std::FILE* terminal) {
    std::fputs(question, terminal);
    std::fflush(terminal);
    const auto line = ReadLine(terminal);
    std::fputc('\n', terminal);
    ThrowIfInterrupted();
    return line.value_or("");
}

}  // namespace

std::string AskPassword() {
    std::string password;
    if (::isatty(STDIN_FILENO) == 1) {
        const std::unique_ptr<std::FILE, CloseFile> terminal(std::fopen("/dev/tty", "r+"));
        if (!terminal) throw CommandError(Message("there is no terminal to ask for the password"));
        std::setbuf(terminal.get(), nullptr);
        const HiddenInput hidden(terminal.get());
        password = ReadHidden(Translated("New password: "), terminal.get());
        if (ReadHidden(Translated("Again: "), terminal.get()) != password)
            throw CommandError(Message("the two passwords differ"));
    } else {
        password = ReadLine(stdin).value_or("");
    }
    if (password.empty())
        throw CommandError(Message("no password was given; operators BOOK clear-password NAME empties one"));
    return password;
}

namespace {

/// The first line of a file; nothing when it cannot be read.
std::optional<std::string> PasswordIn(const char* path) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path, "r"));
    const auto line = file ? ReadLine(file.get()) : std::nullopt;
    if (!file || std::ferror(file.get())) return std::nullopt;
    std::string password = line.value_or("");
    if (password.ends_with('\r')) password.pop_back();
    return password;
}

/// Raises a CommandError with the complaint when there is no terminal.
std::string TypedPassword(const std::string& question, const std::string& complaint) {
    const std::unique_ptr<std::FILE, CloseFile> terminal(std::fopen("/dev/tty", "r+"));
    if (!terminal) throw CommandError(complaint);
    std::setbuf(terminal.get(), nullptr);
    const HiddenInput hidden(terminal.get());
    return ReadHidden(question.c_str(), terminal.get());
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
