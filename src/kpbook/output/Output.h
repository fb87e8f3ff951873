// Where results go: standard output or a file.
#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "kpbook/output/ReplacementFile.h"

namespace kpTables::kpbook::output {

class Output {
public:
    /// An empty path is standard output. A file is replaced when Close is called, and stays as it was without it. A
    /// CommandError says why a file cannot be written.
    explicit Output(const std::string& path);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Throws Interrupted when the user has ended the program.
    void Write(std::string_view text);
    /// On a terminal that shows colours, what follows is bold, or no longer.
    void Emphasize(bool on);
    void Flush();
    /// Flushes and closes; without it a late failure (a full disk) would go unnoticed.
    void Close();
    // The two halves of Close, for several files that take their places together.
    void Finish();
    void Keep();

private:
    [[noreturn]] void Fail() const;

    std::string path_;
    std::optional<ReplacementFile> draft_;
    std::FILE* file_;
};

}  // namespace kpTables::kpbook::output
