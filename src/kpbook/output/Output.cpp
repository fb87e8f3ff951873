#include "kpbook/output/Output.h"

#include <cerrno>
#include <cstring>

#include "kpbook/Exit.h"

namespace kpTables::kpbook::output {

Output::Output(const std::string& path) : path_(path), file_(path.empty() ? stdout : std::fopen(path.c_str(), "wb")) {
    if (!file_) Fail();
}

Output::~Output() {
    if (file_ && file_ != stdout) std::fclose(file_);
}

void Output::Write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) Fail();
}

void Output::Flush() {
    if (std::fflush(file_) != 0) Fail();
}

void Output::Close() {
    Flush();
    std::FILE* const file = file_;
    file_ = nullptr;
    if (file != stdout && std::fclose(file) != 0) Fail();
}

void Output::Fail() const {
    const int reason = errno;
    if (path_.empty() && reason == EPIPE) throw ClosedPipe();
    throw CommandError((path_.empty() ? "standard output" : path_) + ": cannot be written: " + std::strerror(reason));
}

}  // namespace kpTables::kpbook::output
