#include "kpbook/input/TableFile.h"

#include <array>
#include <string_view>

#include "kpbook/Exit.h"
#include "kpbook/input/CsvReader.h"
#include "kpbook/input/TextDecoder.h"

namespace kpTables::kpbook::input {

namespace {

/// CSV in any encoding.
class DecodedCsv : public CsvReader {
public:
    DecodedCsv(std::unique_ptr<TextDecoder> text, std::optional<char> separator)
        : CsvReader([text = text.get()](char* buffer, std::size_t size) { return text->Read(buffer, size); },
                    separator),
          text_(std::move(text)) {}

    std::string Encoding() const override { return text_->Encoding(); }

private:
    std::unique_ptr<TextDecoder> text_;
};

void RefuseWorkbooks(const std::string& name, std::string_view beginning) {
    constexpr std::array<std::string_view, 2> kWorkbooks = {"PK\x03\x04", "\xD0\xCF\x11\xE0"};
    for (const auto begin : kWorkbooks) {
        if (!beginning.starts_with(begin)) continue;
        throw CommandError(name + ": is a workbook; save its sheet as CSV (UTF-8) and import that file");
    }
}

}  // namespace

TableFile::TableFile(const std::string& path, const TableFileOptions& options)
    : name_(path == "-" ? "standard input" : path), file_(path) {
    auto text = std::make_unique<TextDecoder>(
        [this](char* buffer, std::size_t size) { return file_.Read(buffer, size); }, options.encoding);
    RefuseWorkbooks(name_, text->Beginning());
    rows_ = std::make_unique<DecodedCsv>(std::move(text), options.separator);
}

}  // namespace kpTables::kpbook::input
