// The lines of a file, each as soon as it has arrived.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kpTables::kpbook::input {

class InputFile;

class LineReader {
public:
    explicit LineReader(InputFile& file) : file_(file) {}

    /// The next line without its end; nothing after the last.
    std::optional<std::string> Next();
    /// Number of the line that Next returned, counted from 1.
    std::int64_t Number() const noexcept { return number_; }

private:
    InputFile& file_;
    std::string pending_;
    std::size_t start_ = 0;  ///< where the text not yet returned begins
    bool ended_ = false;
    std::int64_t number_ = 0;
};

}  // namespace kpTables::kpbook::input
