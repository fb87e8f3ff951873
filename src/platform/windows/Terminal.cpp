#include "platform/Terminal.h"

#include <fcntl.h>
#include <io.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "platform/windows/Console.h"
#include "platform/windows/Wide.h"

namespace kpTables::platform {

namespace {

HANDLE HandleOf(Stream stream) noexcept {
    const DWORD names[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
    return GetStdHandle(names[static_cast<int>(stream)]);
}

UINT earlierCodePage = 0;

void RestoreCodePage() { SetConsoleOutputCP(earlierCodePage); }

using OwnedHandle = std::unique_ptr<void, CloseHandleOf>;

OwnedHandle OpenConsole(const wchar_t* name) {
    const HANDLE handle = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, 0, nullptr);
    return OwnedHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

class ConsoleTerminal : public UserTerminal {
public:
    ConsoleTerminal(OwnedHandle input, OwnedHandle output) : input_(std::move(input)), output_(std::move(output)) {}
    ~ConsoleTerminal() override {
        if (hides_) SetConsoleMode(input_.get(), shown_);
    }
    ConsoleTerminal(const ConsoleTerminal&) = delete;
    ConsoleTerminal& operator=(const ConsoleTerminal&) = delete;

    void Write(const std::string& text) override {
        const std::wstring wide = Wide(text);
        DWORD written = 0;
        WriteConsoleW(output_.get(), wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
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
    DWORD shown_ = 0;
    bool hides_ = false;
};

}  // namespace

std::optional<std::string> ReadConsoleText(HANDLE console) {
    constexpr wchar_t kEndOfInput = 0x1A;
    std::fflush(stdout);
    std::wstring line;
    while (line.empty() || line.back() != L'\n') {
        std::array<wchar_t, 1024> piece{};
        DWORD count = 0;
        const WakesForSignals waiting;
        SetLastError(0);
        const bool isRead = ReadConsoleW(console, piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) != 0;
        if (GetLastError() == ERROR_OPERATION_ABORTED) WakesForSignals::WaitForNote();
        if (!isRead || count == 0) return std::nullopt;
        line.append(piece.data(), count);
    }
    if (line.front() == kEndOfInput) return std::nullopt;
    if (line.ends_with(L"\r\n")) line.replace(line.size() - 2, 2, L"\n");
    return Narrow(line);
}

void PrepareStreams() noexcept {
    for (std::FILE* const stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
    // The console takes characters only whole, and text by text only slowly.
    constexpr std::size_t kPiece = 1 << 15;
    std::setvbuf(stdout, nullptr, _IOFBF, kPiece);
    // What the console shows is UTF-8 as long as the program runs.
    earlierCodePage = GetConsoleOutputCP();
    if (earlierCodePage != 0 && SetConsoleOutputCP(CP_UTF8)) std::atexit(RestoreCodePage);
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
