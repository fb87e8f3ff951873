// Reads CSV (RFC 4180) as a stream.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kpTables::kpbook::input {

/// Records end with LF or CRLF, fields are separated by commas; a field in double quotes may contain line breaks and
/// doubled quotes. A byte order mark at the beginning and empty lines between records are skipped.
class CsvReader {
public:
    /// Reads the next bytes, at most size; returns their number, 0 at the end.
    using Source = std::function<std::size_t(char* buffer, std::size_t size)>;

    explicit CsvReader(Source source);

    /// Goes to the next record; false at the end.
    bool Next();

    /// Line on which the record begins, counted from 1.
    std::int64_t Line() const noexcept { return line_; }
    std::size_t FieldCount() const noexcept { return starts_.size(); }
    /// Valid until Next.
    std::string_view Field(std::size_t index) const noexcept;
    /// What is malformed in the record, with the number of the field, counted from 1; empty when nothing is.
    const std::string& Problem() const noexcept { return problem_; }

private:
    static constexpr int kEnd = -1;

    int Peek();
    int Take();
    void StartField();
    /// The rest of a field that began without a quote, up to the separator.
    void ReadPlain();
    /// The rest of a field after its opening quote, up to the separator.
    void ReadQuoted();
    void AppendPlainRun();
    /// Whether the record ends here; reads nothing.
    bool AtLineEnd();
    void TakeLineEnd();
    void Report(const std::string& problem);

    Source source_;
    std::vector<char> buffer_;
    std::size_t position_ = 0;
    std::size_t filled_ = 0;
    bool ended_ = false;
    std::string text_;                 ///< the record's fields, concatenated
    std::vector<std::size_t> starts_;  ///< where each begins in text_
    std::string problem_;
    std::int64_t line_ = 0;
    std::int64_t nextLine_ = 1;
};

}  // namespace kpTables::kpbook::input
