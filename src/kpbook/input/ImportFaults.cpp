#include "kpbook/input/ImportFaults.h"

#include <cstdio>

namespace kpTables::kpbook::input {

void ImportFaults::Add(std::int64_t line, const std::string& column, const std::string& reason) {
    badRows_ += line != lastLine_;
    lastLine_ = line;
    if (++count_ > kShown) return;
    const std::string where = column.empty() ? "" : ", column " + column;
    std::fprintf(stderr, "%s: line %lld%s: %s\n", file_.c_str(), static_cast<long long>(line), where.c_str(),
                 reason.c_str());
}

void ImportFaults::Finish() const {
    if (count_ > kShown) {
        std::fprintf(stderr, "%s: and %lld more\n", file_.c_str(), static_cast<long long>(count_ - kShown));
    }
}

}  // namespace kpTables::kpbook::input
