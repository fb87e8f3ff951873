// Writing to the console, whose texts are UTF-16.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace kpTables::platform {

/// A console's output. Needs no memory but its own, so that it can tell of a shortage.
class ConsoleWriter {
public:
    using WriteFunction = BOOL(WINAPI*)(HANDLE console, const void* text, DWORD count, DWORD* written, void* reserved);

    /// write: WriteConsoleW, or what stands for it in a test.
    explicit ConsoleWriter(HANDLE console, WriteFunction write = WriteConsoleW) noexcept
        : console_(console), write_(write) {}

    /// Takes UTF-8, of whole characters, which appears at Flush at the latest. False when the console fails.
    bool Write(std::string_view text) noexcept;
    bool Flush() noexcept;

private:
    bool Show(std::string_view text) noexcept;

    HANDLE console_;
    WriteFunction write_;
    // Text by text the console is slow.
    std::array<char, 1 << 15> pending_{};
    std::size_t size_ = 0;
};

}  // namespace kpTables::platform
