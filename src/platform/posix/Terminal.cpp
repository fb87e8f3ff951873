#include "platform/Terminal.h"

#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace kpTables::platform {

namespace {

struct CloseTerminal {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

class PosixTerminal : public UserTerminal {
public:
    explicit PosixTerminal(std::FILE* file) : file_(file) { std::setbuf(file, nullptr); }
    ~PosixTerminal() override {
        if (hides_) ::tcsetattr(::fileno(file_.get()), TCSAFLUSH, &shown_);
    }
    PosixTerminal(const PosixTerminal&) = delete;
    PosixTerminal& operator=(const PosixTerminal&) = delete;

    void Write(const std::string& text) override {
        std::fputs(text.c_str(), file_.get());
        std::fflush(file_.get());
    }

    std::optional<std::string> ReadLine() override {
        std::string line;
        int character = 0;
        while ((character = std::fgetc(file_.get())) != EOF && character != '\n') line += static_cast<char>(character);
        if (character == EOF && line.empty()) return std::nullopt;
        return line;
    }

    bool HideInput() override {
        const int descriptor = ::fileno(file_.get());
        if (::tcgetattr(descriptor, &shown_) != 0) return false;
        termios hidden = shown_;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        hides_ = ::tcsetattr(descriptor, TCSAFLUSH, &hidden) == 0;
        return hides_;
    }

private:
    std::unique_ptr<std::FILE, CloseTerminal> file_;
    termios shown_{};
    bool hides_ = false;
};

std::FILE* FileOf(Stream stream) noexcept { return stream == Stream::Error ? stderr : stdout; }

}  // namespace

void PrepareStreams() noexcept { std::signal(SIGPIPE, SIG_IGN); }

bool WriteText(Stream stream, std::string_view text) noexcept {
    return std::fwrite(text.data(), 1, text.size(), FileOf(stream)) == text.size();
}

bool FlushText(Stream stream) noexcept { return std::fflush(FileOf(stream)) == 0; }

bool IsTerminal(Stream stream) noexcept { return ::isatty(static_cast<int>(stream)) == 1; }

bool ShowsColours(Stream stream) noexcept {
    const char* const terminal = std::getenv("TERM");
    return IsTerminal(stream) && terminal && *terminal && std::string_view(terminal) != "dumb";
}

std::unique_ptr<UserTerminal> UserTerminal::Open() {
    std::FILE* const file = std::fopen("/dev/tty", "r+");
    return file ? std::make_unique<PosixTerminal>(file) : nullptr;
}

}  // namespace kpTables::platform
