// A file or standard input, read in pieces.
#pragma once

#include <cstddef>
#include <string>

namespace kpTables::kpbook::input {

class InputFile {
public:
    /// "-" is standard input. A CommandError says why a file cannot be opened.
    explicit InputFile(const std::string& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// Reads what is available, at most size bytes; returns 0 at the end.
    std::size_t Read(char* buffer, std::size_t size);

private:
    std::string name_;
    int descriptor_;
};

}  // namespace kpTables::kpbook::input
