#include "platform/Terminal.h"

#include <fcntl.h>
#include <io.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/windows/Console.h"
#include "platform/windows/ConsoleWriter.h"
#include "platform/windows/Wide.h"

namespace kpTables::platform {

namespace {

HANDLE HandleOf(Stream stream) noexcept {
    const DWORD names[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
    return GetStdHandle(names[static_cast<int>(stream)]);
}

/// What shows a stream on the console; null when it leads elsewhere.
ConsoleWriter* WriterOf(Stream stream) noexcept {
    const auto make = [](Stream each) -> std::optional<ConsoleWriter> {
        if (!IsTerminal(each)) return std::nullopt;
        return std::optional<ConsoleWriter>(std::in_place, HandleOf(each));
    };
    static std::optional<ConsoleWriter> output = make(Stream::Output);
    static std::optional<ConsoleWriter> error = make(Stream::Error);
    auto& writer = stream == Stream::Error ? error : output;
    return writer ? &*writer : nullptr;
}

bool FailWith(int reason) noexcept {
    errno = reason;
    return false;
}

std::FILE* FileOf(Stream stream) noexcept { return stream == Stream::Error ? stderr : stdout; }

using OwnedHandle = std::unique_ptr<void, CloseHandleOf>;

OwnedHandle OpenConsole(const wchar_t* name) {
    const HANDLE handle = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, 0, nullptr);
    return OwnedHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

class ConsoleTerminal : public UserTerminal {
public:
    ConsoleTerminal(OwnedHandle input, OwnedHandle output)
        : input_(std::move(input)), output_(std::move(output)), writer_(output_.get()) {}
    ~ConsoleTerminal() override {
        if (hides_) SetConsoleMode(input_.get(), shown_);
    }
    ConsoleTerminal(const ConsoleTerminal&) = delete;
    ConsoleTerminal& operator=(const ConsoleTerminal&) = delete;

    void Write(const std::string& text) override {
        FlushText(Stream::Output);
        writer_.Write(text);
        writer_.Flush();
    }

    std::optional<std::string> ReadLine() override {
        auto line = ReadConsoleText(input_.get());
        if (line && line->ends_with('\n')) line->pop_back();
        return line;
    }

    bool HideInput() override {
        hides_ = GetConsoleMode(input_.get(), &shown_) != 0 &&
                 SetConsoleMode(input_.get(), shown_ & ~static_cast<DWORD>(ENABLE_ECHO_INPUT)) != 0;
        return hides_;
    }

private:
    OwnedHandle input_;
    OwnedHandle output_;
    ConsoleWriter writer_;
    DWORD shown_ = 0;
    bool hides_ = false;
};

}  // namespace

void PrepareStreams() noexcept {
    for (std::FILE* const stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
    constexpr std::size_t kPiece = 1 << 15;
    std::setvbuf(stdout, nullptr, _IOFBF, kPiece);
}

bool WriteText(Stream stream, std::string_view text) noexcept {
    ConsoleWriter* const console = WriterOf(stream);
    if (!console) return std::fwrite(text.data(), 1, text.size(), FileOf(stream)) == text.size();
    if (stream == Stream::Output) return console->Write(text) || FailWith(EIO);
    // On the console both streams appear in the order in which they were written.
    FlushText(Stream::Output);
    return (console->Write(text) && console->Flush()) || FailWith(EIO);
}

bool FlushText(Stream stream) noexcept {
    ConsoleWriter* const console = WriterOf(stream);
    if (!console) return std::fflush(FileOf(stream)) == 0;
    return console->Flush() || FailWith(EIO);
}

bool IsTerminal(Stream stream) noexcept {
    DWORD mode = 0;
    return GetConsoleMode(HandleOf(stream), &mode) != 0;
}

bool ShowsColours(Stream stream) noexcept {
    constexpr DWORD kUnderstandsColours = 0x0004;  // ENABLE_VIRTUAL_TERMINAL_PROCESSING
    const HANDLE handle = HandleOf(stream);
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0 && SetConsoleMode(handle, mode | kUnderstandsColours) != 0;
}

std::unique_ptr<UserTerminal> UserTerminal::Open() {
    OwnedHandle input = OpenConsole(L"CONIN$");
    OwnedHandle output = OpenConsole(L"CONOUT$");
    if (!input || !output) return nullptr;
    return std::make_unique<ConsoleTerminal>(std::move(input), std::move(output));
}

}  // namespace kpTables::platform
