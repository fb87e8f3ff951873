#include "kpbook/input/CsvReader.h"

#include "kpTables/text/Message.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace kpTables::kpbook::input {

namespace {

constexpr std::size_t kBufferSize = 1 << 18;

}  // namespace

CsvReader::CsvReader(Source source, std::optional<char> separator) : source_(std::move(source)), buffer_(kBufferSize) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    while (filled_ < kByteOrderMark.size() && ReadMore()) continue;
    if (std::string_view(buffer_.data(), filled_).starts_with(kByteOrderMark)) position_ = kByteOrderMark.size();
    separator_ = separator ? *separator : RecognisedSeparator();
    for (const char character : {separator_, '"', '\n', '\r'}) special_[static_cast<unsigned char>(character)] = true;
}

bool CsvReader::ReadMore() {
    if (ended_ || filled_ == buffer_.size()) return false;
    const auto count = source_(buffer_.data() + filled_, buffer_.size() - filled_);
    filled_ += count;
    ended_ = count == 0;
    return !ended_;
}

char CsvReader::RecognisedSeparator() {
    constexpr std::string_view kSeparators = ",\t;";
    std::array<std::size_t, kSeparators.size()> counts{};
    bool quoted = false;
    bool begun = false;  // empty lines before the first are skipped
    for (auto at = position_; at < filled_ || ReadMore(); ++at) {
        const char character = buffer_[at];
        if (character == '"') quoted = !quoted;
        if (quoted) continue;
        const bool isLineEnd = character == '\n' || character == '\r';
        if (isLineEnd && begun) break;
        begun = begun || !isLineEnd;
        if (const auto found = kSeparators.find(character); found != kSeparators.npos) ++counts[found];
    }
    return kSeparators[static_cast<std::size_t>(std::ranges::max_element(counts) - counts.begin())];
}

int CsvReader::Peek() {
    if (position_ == filled_) {
        if (!ended_) {
            position_ = 0;
            filled_ = source_(buffer_.data(), buffer_.size());
            ended_ = filled_ == 0;
        }
        if (ended_) return kEnd;
    }
    return static_cast<unsigned char>(buffer_[position_]);
}

int CsvReader::Take() {
    const int character = Peek();
    if (character != kEnd) ++position_;
    if (character == '\n') ++nextLine_;
    return character;
}

bool CsvReader::Next() {
    while (Peek() == '\n' || Peek() == '\r') TakeLineEnd();
    if (Peek() == kEnd) return false;
    text_.clear();
    starts_.clear();
    quoted_.clear();
    problem_.clear();
    line_ = nextLine_;
    for (;;) {
        StartField();
        quoted_.push_back(Peek() == '"');
        if (quoted_.back()) {
            Take();
            ReadQuoted();
        } else {
            ReadPlain();
        }
        if (Peek() != static_cast<unsigned char>(separator_)) break;
        Take();
    }
    TakeLineEnd();
    return true;
}

std::string_view CsvReader::Field(std::size_t index) const noexcept {
    const auto start = starts_[index];
    const auto end = index + 1 < starts_.size() ? starts_[index + 1] : text_.size();
    return std::string_view(text_).substr(start, end - start);
}

void CsvReader::StartField() { starts_.push_back(text_.size()); }

void CsvReader::AppendPlainRun() {
    const auto start = position_;
    const char* const buffer = buffer_.data();
    auto end = start;
    while (end < filled_ && !special_[static_cast<unsigned char>(buffer[end])]) ++end;
    text_.append(buffer + start, end - start);
    position_ = end;
}

void CsvReader::ReadPlain() {
    for (;;) {
        const int next = Peek();
        if (next == kEnd || next == static_cast<unsigned char>(separator_) || next == '\n') return;
        if (next == '"') {
            Report(Message("a quote in the middle of a field without quotes"));
            text_ += static_cast<char>(Take());
        } else if (next == '\r') {
            Take();
            if (AtLineEnd()) return;
            Report(Message("a carriage return that no line feed follows"));
            text_ += '\r';
        } else {
            AppendPlainRun();
        }
    }
}

void CsvReader::ReadQuoted() {
    const auto beganAt = nextLine_;
    for (;;) {
        if (Peek() == kEnd) {
            Report(Message("the quote that opens on line {1} is never closed", beganAt));
            return;
        }
        if (Peek() != '"') {
            const auto* start = buffer_.data() + position_;
            const auto* quote = static_cast<const char*>(std::memchr(start, '"', filled_ - position_));
            const auto* end = quote ? quote : buffer_.data() + filled_;
            for (const auto* at = start; at != end; ++at) nextLine_ += *at == '\n';
            text_.append(start, end);
            position_ += static_cast<std::size_t>(end - start);
            continue;
        }
        Take();
        if (Peek() != '"') break;
        text_ += static_cast<char>(Take());
    }
    if (Peek() == static_cast<unsigned char>(separator_) || AtLineEnd()) return;
    if (Peek() != '\r') Report(Message("text after a closing quote"));
    ReadPlain();
}

bool CsvReader::AtLineEnd() { return Peek() == '\n' || Peek() == kEnd; }

void CsvReader::TakeLineEnd() {
    if (Peek() == '\r') Take();
    if (Peek() == '\n') Take();
}

void CsvReader::Report(const std::string& problem) {
    if (problem_.empty()) problem_ = Message("field {1}: {2}", starts_.size(), problem);
}

}  // namespace kpTables::kpbook::input
