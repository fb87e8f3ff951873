// Where results go: standard output or a file.
#pragma once

#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

namespace kpTables::kpbook {

/// The reader of standard output has gone (head, less): the program ends quietly.
class ClosedPipe : public std::exception {
public:
    const char* what() const noexcept override { return "the reader of standard output has gone"; }
};

class Output {
public:
    /// An empty path is standard output. A CommandError says why a file cannot be written.
    explicit Output(const std::string& path);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void Write(std::string_view text);
    void Flush();
    /// Flushes and closes; without it a late failure (a full disk) would go unseen.
    void Close();

private:
    [[noreturn]] void Fail() const;

    std::string path_;
    std::FILE* file_;
};

}  // namespace kpTables::kpbook
