// CSV as RFC 4180 has it, read as a stream.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kpTables::kpbook::input {

/// Reads records separated by LF or CRLF (a byte order mark before the first is skipped), fields separated by commas,
/// fields between double quotes with quotes doubled inside and line breaks allowed. Lines without any character between
/// records are skipped.
class CsvReader {
public:
    /// Gives the next bytes, at most size, 0 at the end.
    using Source = std::function<std::size_t(char* buffer, std::size_t size)>;

    explicit CsvReader(Source source);

    /// Goes to the next record; false at the end.
    bool Next();

    /// Line on which the record begins, counted from 1.
    std::int64_t Line() const noexcept { return line_; }
    std::size_t FieldCount() const noexcept { return starts_.size(); }
    /// Valid until Next.
    std::string_view Field(std::size_t index) const noexcept;
    /// What is wrong with the record's form, with the field (counted from 1) where it is; empty when nothing is.
    const std::string& Problem() const noexcept { return problem_; }

private:
    static constexpr int kEnd = -1;

    int Peek();
    int Take();
    void StartField();
    /// The rest of a field that began without a quote, up to the separator.
    void ReadPlain();
    /// A field from after its opening quote on, up to the separator.
    void ReadQuoted();
    void AppendPlainRun();
    /// Whether a line end stands here; takes nothing.
    bool AtLineEnd();
    void TakeLineEnd();
    void Report(const std::string& problem);

    Source source_;
    std::vector<char> buffer_;
    std::size_t position_ = 0;
    std::size_t filled_ = 0;
    bool ended_ = false;
    std::string text_;                 ///< the record's fields, one after the other
    std::vector<std::size_t> starts_;  ///< where each begins in text_
    std::string problem_;
    std::int64_t line_ = 0;
    std::int64_t nextLine_ = 1;
};

}  // namespace kpTables::kpbook::input
