// A file of rows, read by what it contains.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "kpbook/input/InputFile.h"
#include "kpbook/input/RowReader.h"

namespace kpTables::kpbook::input {

struct TableFileOptions {
    std::string encoding;           ///< of a text, as TextDecoder takes it; empty: recognised
    std::optional<char> separator;  ///< of a text's fields; nothing: recognised
    std::string sheet;              ///< of a workbook; empty: the first
};

class TableFile {
public:
    /// CSV, or a workbook (xlsx). "-" is standard input. A CommandError says why the file cannot be read, a UsageError
    /// that an encoding is unknown.
    explicit TableFile(const std::string& path, const TableFileOptions& options = {});
    TableFile(const TableFile&) = delete;
    TableFile& operator=(const TableFile&) = delete;

    RowReader& Rows() noexcept { return *rows_; }
    /// As messages show it.
    const std::string& Name() const noexcept { return name_; }

private:
    std::size_t Read(char* buffer, std::size_t size);

    std::string name_;
    InputFile file_;
    std::string beginning_;  ///< the file's first bytes, until they are read again
    std::unique_ptr<RowReader> rows_;
};

}  // namespace kpTables::kpbook::input
