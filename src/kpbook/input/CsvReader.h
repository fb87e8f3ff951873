// Reads CSV (RFC 4180) as a stream.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kpbook/input/RowReader.h"

namespace kpTables::kpbook::input {

/// Records end with LF or CRLF, fields are separated by commas or another character; a field in double quotes may
/// contain line breaks and doubled quotes. A byte order mark at the beginning and empty lines between records are
/// skipped.
class CsvReader : public RowReader {
public:
    /// Reads the next bytes, at most size; returns their number, 0 at the end.
    using Source = std::function<std::size_t(char* buffer, std::size_t size)>;

    /// Without a separator, it is the one of comma, tab and semicolon that the first line has most often outside of
    /// quotes; a comma where it has none.
    explicit CsvReader(Source source, std::optional<char> separator = ',');

    bool Next() override;
    std::int64_t Line() const noexcept override { return line_; }
    std::size_t FieldCount() const noexcept override { return starts_.size(); }
    std::string_view Field(std::size_t index) const noexcept override;
    bool IsQuoted(std::size_t index) const noexcept override { return quoted_[index]; }
    const std::string& Problem() const noexcept override { return problem_; }

private:
    static constexpr int kEnd = -1;

    /// Reads more into the buffer behind what is there; false at the end.
    bool ReadMore();
    char RecognisedSeparator();
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
    char separator_ = ',';
    /// By the character: whether it ends a run of plain text in a field without quotes.
    std::array<bool, 256> special_{};
    std::vector<char> buffer_;
    std::size_t position_ = 0;
    std::size_t filled_ = 0;
    bool ended_ = false;
    std::string text_;                 ///< the record's fields, concatenated
    std::vector<std::size_t> starts_;  ///< where each begins in text_
    std::vector<bool> quoted_;         ///< whether each began with a quote
    std::string problem_;
    std::int64_t line_ = 0;
    std::int64_t nextLine_ = 1;
};

}  // namespace kpTables::kpbook::input
