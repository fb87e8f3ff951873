#include "kpbook/Terminal.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>

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

std::optional<MessageAnswer> ReadAnswer(const std::string& question, std::FILE* input, std::FILE* output) {
    for (;;) {
        std::fputs((question + " [y/n] ").c_str(), output);
        std::fflush(output);
        const auto line = ReadLine(input);
        if (!line) return std::nullopt;
        if (*line == "y" || *line == "Y" || *line == "yes" || *line == "是") return MessageAnswer::Yes;
        if (*line == "n" || *line == "N" || *line == "no" || *line == "否") return MessageAnswer::No;
    }
}

}  // namespace

bool ErrorIsTerminal() noexcept { return ::isatty(STDERR_FILENO) == 1; }

std::optional<MessageAnswer> AskYesNo(const std::string& question) {
    if (::isatty(STDIN_FILENO) != 1) return std::nullopt;
    // Standard error may be redirected to a file; the question must reach the user.
    const std::unique_ptr<std::FILE, CloseFile> terminal(std::fopen("/dev/tty", "r+"));
    if (!terminal) return ReadAnswer(question, stdin, stderr);
    std::setbuf(terminal.get(), nullptr);
    return ReadAnswer(question, terminal.get(), terminal.get());
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
