#include "kpbook/input/LineReader.h"

#include "kpbook/input/InputFile.h"

namespace kpTables::kpbook::input {

std::optional<std::string> LineReader::Next() {
    constexpr std::size_t kPiece = 1 << 16;
    std::size_t searched = start_;
    for (;;) {
        const auto end = pending_.find('\n', searched);
        if (end != pending_.npos) {
            std::string line = pending_.substr(start_, end - start_);
            start_ = end + 1;
            ++number_;
            return line;
        }
        if (ended_) break;
        pending_.erase(0, start_);
        start_ = 0;
        searched = pending_.size();
        pending_.resize(searched + kPiece);
        const auto count = file_.Read(pending_.data() + searched, kPiece);
        pending_.resize(searched + count);
        ended_ = count == 0;
    }
    if (start_ == pending_.size()) return std::nullopt;
    std::string line = pending_.substr(start_);
    start_ = pending_.size();
    ++number_;
    return line;
}

}  // namespace kpTables::kpbook::input
