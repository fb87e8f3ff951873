#include "platform/windows/Console.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/Signals.h"
#include "platform/Terminal.h"
#include "platform/windows/Wide.h"

namespace kpTables::platform {

namespace {

struct ConsoleLine {
    std::optional<std::string> text;
    bool isAborted = false;  ///< the console ended it without a character, as it does for Ctrl-C
};

ConsoleLine ReadWholeLine(HANDLE console) {
    constexpr wchar_t kEndOfInput = 0x1A;
    std::wstring line;
    while (line.empty() || line.back() != L'\n') {
        std::array<wchar_t, 1024> piece{};
        DWORD count = 0;
        const bool isRead = ReadConsoleW(console, piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) != 0;
        if (!isRead || count == 0) return {std::nullopt, true};
        line.append(piece.data(), count);
    }
    if (line.front() == kEndOfInput) return {};
    if (line.ends_with(L"\r\n")) line.replace(line.size() - 2, 2, L"\n");
    return {Narrow(line)};
}

/// Reads in a thread of its own, because not every console ends a read for Ctrl-C.
class LineReader {
public:
    /// The only one. It is never destroyed, since its thread may wait for a line when the program ends.
    static LineReader& Instance() {
        static LineReader& reader = *new LineReader;
        return reader;
    }

    std::optional<std::string> Read(HANDLE console) {
        std::unique_lock lock(mutex_);
        if (!isReading_) {
            isReading_ = true;
            std::thread([this, console] { Finish(ReadWholeLine(console)); }).detach();
        }
        const auto hasSignal = [] { return ArrivedSignal() != 0; };
        changed_.wait(lock, [&] { return line_ || hasSignal(); });
        if (!line_) return std::nullopt;
        isReading_ = false;
        const ConsoleLine line = *std::exchange(line_, std::nullopt);
        // The signal is noted in another thread, where the console sends one.
        if (line.isAborted && !changed_.wait_for(lock, std::chrono::milliseconds(500), hasSignal)) NoteInterruption();
        return line.text;
    }

    void Wake() {
        const std::lock_guard lock(mutex_);
        changed_.notify_all();
    }

private:
    void Finish(ConsoleLine line) {
        const std::lock_guard lock(mutex_);
        line_ = std::move(line);
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    bool isReading_ = false;
    std::optional<ConsoleLine> line_;
};

}  // namespace

std::optional<std::string> ReadConsoleText(HANDLE console) {
    FlushText(Stream::Output);
    return LineReader::Instance().Read(console);
}

void WakeConsoleReader() noexcept { LineReader::Instance().Wake(); }

}  // namespace kpTables::platform
