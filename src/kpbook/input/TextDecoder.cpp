#include "kpbook/input/TextDecoder.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Names.h"
#include "kpbook/Utf8.h"

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
          handle_(encoding.find('/') == encoding.npos ? ::iconv_open(kUtf8Name, encoding.c_str()) : kNone) {
        if (handle_ != kNone) return;
        throw UsageError(
            Message("there is no encoding {1}; UTF-8, GB18030, BIG5 and UTF-16LE are some, and iconv --list shows all",
                    Printable(encoding)));
    }
    ~Converter() { ::iconv_close(handle_); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    /// Converts what is whole in raw and removes it from there; at the end of the file, all of it.
    void Convert(std::string& raw, bool isLast, std::string& text) {
        char* from = raw.data();
        std::size_t left = raw.size();
        while (left > 0) {
            char piece[1 << 14];
            char* to = piece;
            std::size_t room = sizeof piece;
            const bool stopped = ::iconv(handle_, &from, &left, &to, &room) == static_cast<std::size_t>(-1);
            const int reason = errno;
            text.append(piece, to);
            if (!stopped || reason == E2BIG) continue;
            if (reason == EINVAL && !isLast) break;
            text += kNoText;
            const auto skipped = reason == EINVAL ? left : std::min(left, unit_);
            from += skipped;
            left -= skipped;
        }
        raw.erase(0, raw.size() - left);
    }

private:
    static inline const ::iconv_t kNone = reinterpret_cast<::iconv_t>(-1);

    std::size_t unit_;  ///< bytes to pass over where no text begins
    ::iconv_t handle_;
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
