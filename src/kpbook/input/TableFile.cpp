#include "kpbook/input/TableFile.h"

#include <algorithm>
#include <cstring>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/input/CsvReader.h"
#include "kpbook/input/TextDecoder.h"
#include "kpbook/input/WholeFile.h"
#include "kpbook/input/XlsxReader.h"

namespace kpTables::kpbook::input {

namespace {

/// CSV in any encoding.
class DecodedCsv : public CsvReader {
public:
    DecodedCsv(std::unique_ptr<TextDecoder> text, std::optional<char> separator)
        : CsvReader([text = text.get()](char* buffer, std::size_t size) { return text->Read(buffer, size); },
                    separator),
          text_(std::move(text)) {}

    std::string_view Encoding() const override { return text_->Encoding(); }

private:
    std::unique_ptr<TextDecoder> text_;
};

/// The first bytes of a file, by which its format is known.
std::string BeginningOf(InputFile& file) {
    char bytes[4];
    std::size_t size = 0;
    while (size < sizeof bytes) {
        const auto count = file.Read(bytes + size, sizeof bytes - size);
        if (count == 0) break;
        size += count;
    }
    return {bytes, size};
}

}  // namespace

TableFile::TableFile(const std::string& path, const TableFileOptions& options)
    : name_(path == "-" ? Message("standard input") : path), file_(path), beginning_(BeginningOf(file_)) {
    const auto source = [this](char* buffer, std::size_t size) { return Read(buffer, size); };
    if (beginning_ == "\xD0\xCF\x11\xE0") {
        throw CommandError(
            Message("{1}: is a workbook of an old format; save it as xlsx or CSV and import that file", name_));
    }
    if (beginning_ == "PK\x03\x04") {
        rows_ = std::make_unique<XlsxReader>(WholeOf(source), name_, options.sheet);
    } else {
        if (!options.sheet.empty())
            throw UsageError(Message("{1}: is no workbook; --sheet does not go with it", name_));
        rows_ =
            std::make_unique<DecodedCsv>(std::make_unique<TextDecoder>(source, options.encoding), options.separator);
    }
}

std::size_t TableFile::Read(char* buffer, std::size_t size) {
    if (beginning_.empty()) return file_.Read(buffer, size);
    const auto count = std::min(size, beginning_.size());
    std::memcpy(buffer, beginning_.data(), count);
    beginning_.erase(0, count);
    return count;
}

}  // namespace kpTables::kpbook::input
