#include "kpbook/input/TextDecoder.h"

#include <algorithm>
#include <cstring>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Names.h"
#include "kpbook/Utf8.h"
#include "platform/Encoding.h"

namespace kpTables::kpbook::input {

namespace {

constexpr const char* kUtf8Name = "UTF-8";
constexpr char kNoText = '\xFF';

/// Whether most of the lines that are not plain ASCII are no UTF-8. A line that the piece cuts off does not count.
bool LooksLikeAnotherEncoding(std::string_view piece, bool isLast) {
    std::size_t valid = 0;
    std::size_t invalid = 0;
    while (!piece.empty()) {
        const auto end = piece.find('\n');
        const auto line = piece.substr(0, end);
        const bool cutOff = end == piece.npos && !isLast && valid + invalid > 0;
        if (text::AsciiPrefix(line) < line.size() && !cutOff) ++(IsValidUtf8(line) ? valid : invalid);
        if (end == piece.npos) break;
        piece.remove_prefix(end + 1);
    }
    return invalid > valid;
}

}  // namespace

class TextDecoder::Converter {
public:
    explicit Converter(const std::string& encoding)
        : unit_(SameName(std::string_view(encoding).substr(0, 6), "UTF-16") ? 2 : 1),
          reader_(platform::EncodingReader::Open(encoding)) {
        if (reader_) return;
        throw UsageError(
            Message("there is no encoding {1}; UTF-8, GB18030, BIG5 and UTF-16LE are some, and iconv --list shows all",
                    Printable(encoding)));
    }

    /// Converts what is whole in raw and removes it from there; at the end of the file, all of it.
    void Convert(std::string& raw, bool isLast, std::string& text) {
        std::size_t at = 0;
        while (at < raw.size()) {
            const auto read = reader_->Read(std::string_view(raw).substr(at), text);
            at += read.taken;
            const std::size_t left = raw.size() - at;
            if (left == 0 || (read.isCutOff && !isLast)) break;
            text += kNoText;
            at += read.isCutOff ? left : std::min(left, unit_);
        }
        raw.erase(0, at);
    }

private:
    std::size_t unit_;  ///< bytes to pass over where no text begins
    std::unique_ptr<platform::EncodingReader> reader_;
};

TextDecoder::TextDecoder(Source source, const std::string& encoding)
    : source_(std::move(source)), encoding_(kUtf8Name) {
    if (!encoding.empty()) SetEncoding(encoding);
    ReadMark();
}

TextDecoder::~TextDecoder() = default;

void TextDecoder::SetEncoding(const std::string& encoding) {
    encoding_ = encoding;
    known_ = true;
    const bool isUtf8 = SameName(encoding, kUtf8Name) || SameName(encoding, "UTF8");
    converter_ = isUtf8 ? nullptr : std::make_unique<Converter>(encoding);
}

void TextDecoder::ReadMark() {
    struct Mark {
        std::string_view bytes;
        const char* encoding;
    };
    constexpr Mark kMarks[] = {{"\xEF\xBB\xBF", kUtf8Name}, {"\xFF\xFE", "UTF-16LE"}, {"\xFE\xFF", "UTF-16BE"}};
    Fill();
    for (const Mark& mark : kMarks) {
        if (!raw_.starts_with(mark.bytes)) continue;
        SetEncoding(mark.encoding);
        raw_.erase(0, mark.bytes.size());
    }
}

void TextDecoder::Fill() {
    constexpr std::size_t kPiece = 1 << 18;
    std::size_t size = raw_.size();
    raw_.resize(size + kPiece);
    while (!ended_ && size < raw_.size()) {
        const auto count = source_(raw_.data() + size, raw_.size() - size);
        size += count;
        ended_ = count == 0;
    }
    raw_.resize(size);
}

void TextDecoder::Recognise() {
    if (text::AsciiPrefix(raw_) == raw_.size()) return;
    SetEncoding(LooksLikeAnotherEncoding(raw_, ended_) ? "GB18030" : kUtf8Name);
}

std::size_t TextDecoder::Read(char* buffer, std::size_t size) {
    while (at_ == text_.size()) {
        if (raw_.empty() && ended_) return 0;
        text_.clear();
        at_ = 0;
        if (!known_) Recognise();
        if (converter_) {
            converter_->Convert(raw_, ended_, text_);
        } else {
            text_.swap(raw_);
        }
        if (!ended_) Fill();
    }
    const auto count = std::min(size, text_.size() - at_);
    std::memcpy(buffer, text_.data() + at_, count);
    at_ += count;
    return count;
}

}  // namespace kpTables::kpbook::input
