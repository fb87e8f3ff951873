// The rows of a file, field by field, whatever its format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kpTables::kpbook::input {

/// The text of a field that is Null; in quotes it is a text like others.
inline constexpr std::string_view kNullField = "\\N";

class RowReader {
public:
    RowReader() = default;
    virtual ~RowReader() = default;
    RowReader(const RowReader&) = delete;
    RowReader& operator=(const RowReader&) = delete;

    /// Goes to the next row; false at the end.
    virtual bool Next() = 0;
    /// Line on which the row begins, counted from 1.
    virtual std::int64_t Line() const = 0;
    virtual std::size_t FieldCount() const = 0;
    /// Valid until Next.
    virtual std::string_view Field(std::size_t index) const = 0;
    /// Whether the field stood in quotes.
    virtual bool IsQuoted(std::size_t index) const = 0;
    /// What is malformed in the row, with the number of the field, counted from 1; empty when nothing is.
    virtual const std::string& Problem() const = 0;
    /// The encoding that the file is read in, for messages.
    virtual std::string_view Encoding() const { return "UTF-8"; }
};

}  // namespace kpTables::kpbook::input
