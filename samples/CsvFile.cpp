#include "CsvFile.h"

#include <stdexcept>

namespace kpTables::sample {

CsvFile::CsvFile(const std::filesystem::path& folder, std::string_view table,
                 std::initializer_list<std::string_view> columns)
    : path_(folder / (std::string(table) + ".csv")), file_(path_, std::ios::binary) {
    for (const std::string_view column : columns) {
        *this << column;
    }
    EndRow();
    rows_ = 0;
}

CsvFile& CsvFile::operator<<(std::string_view text) {
    if (!first_) {
        file_ << ',';
    }
    first_ = false;
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        file_ << text;
        return *this;
    }
    file_ << '"';
    for (const char c : text) {
        file_ << c;
        if (c == '"') {
            file_ << c;
        }
    }
    file_ << '"';
    return *this;
}

void CsvFile::EndRow() {
    file_ << '\n';
    first_ = true;
    ++rows_;
}

void CsvFile::Close() {
    file_.close();
    if (!file_) {
        throw std::runtime_error("cannot write " + path_.string());
    }
}

}  // namespace kpTables::sample
