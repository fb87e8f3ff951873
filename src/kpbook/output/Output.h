// Where results go: standard output or a file.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace kpTables::kpbook::output {

class Output {
public:
    /// An empty path is standard output. A CommandError says why a file cannot be written.
    explicit Output(const std::string& path);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void Write(std::string_view text);
    void Flush();
    /// Flushes and closes; without it a late failure (a full disk) would go unnoticed.
    void Close();

private:
    [[noreturn]] void Fail() const;

    std::string path_;
    std::FILE* file_;
};

}  // namespace kpTables::kpbook::output
