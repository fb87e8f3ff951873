#include "kpbook/input/ImportFaults.h"

#include "kpTables/text/Message.h"
#include "kpbook/Terminal.h"

#include <cstdio>

namespace kpTables::kpbook::input {

void ImportFaults::Add(std::int64_t line, const std::string& column, const std::string& reason) {
    badRows_ += line != lastLine_;
    lastLine_ = line;
    if (++count_ > kShown) return;
    TellLine(column.empty() ? Message("{1}: line {2}: {3}", file_, line, reason)
                            : Message("{1}: line {2}, column {3}: {4}", file_, line, column, reason));
}

void ImportFaults::Finish() const {
    if (count_ > kShown) TellLine(Message("{1}: and {2} more", file_, count_ - kShown));
}

}  // namespace kpTables::kpbook::input
