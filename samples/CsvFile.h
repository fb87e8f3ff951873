// One table of the book as a CSV file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <string_view>

namespace kpTables::sample {

/// Writes UTF-8 with LF line ends; a field is quoted only where it must be.
class CsvFile {
public:
    /// Creates FOLDER/TABLE.csv with its header row.
    CsvFile(const std::filesystem::path& folder, std::string_view table,
            std::initializer_list<std::string_view> columns);
    /// Closes the file; throws std::runtime_error when it could not be written.
    void Close();

    CsvFile& operator<<(std::string_view text);
    CsvFile& operator<<(const std::string& text) { return *this << std::string_view(text); }
    CsvFile& operator<<(const char* text) { return *this << std::string_view(text); }
    CsvFile& operator<<(int value) { return *this << std::to_string(value); }
    void EndRow();
    std::int64_t Rows() const noexcept { return rows_; }

private:
    std::filesystem::path path_;
    std::ofstream file_;
    std::int64_t rows_ = 0;
    bool first_ = true;
};

}  // namespace kpTables::sample
