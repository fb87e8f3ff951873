// Text in any encoding, read as UTF-8.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kpTables::kpbook::input {

class TextDecoder {
public:
    /// Reads the next bytes, at most size; returns their number, 0 at the end.
    using Source = std::function<std::size_t(char* buffer, std::size_t size)>;

    /// encoding: a name that iconv knows, error UsageError for others; empty recognises it. A byte order mark tells
    /// UTF-8 and UTF-16, whatever name is given, and is left out. Without one, text is GB18030 (which contains GBK)
    /// where most of the lines with bytes beyond ASCII are no valid UTF-8, and else UTF-8.
    TextDecoder(Source source, const std::string& encoding);
    ~TextDecoder();
    TextDecoder(const TextDecoder&) = delete;
    TextDecoder& operator=(const TextDecoder&) = delete;

    /// As Source. Bytes that are no text in the encoding come as 0xFF, or as they are in UTF-8; both are no UTF-8.
    std::size_t Read(char* buffer, std::size_t size);
    /// Known when the first text beyond ASCII has been read; UTF-8 until then.
    const std::string& Encoding() const noexcept { return encoding_; }

private:
    class Converter;

    void ReadMark();
    /// Reads the next piece of raw bytes behind those that are left.
    void Fill();
    void Recognise();
    void SetEncoding(const std::string& encoding);

    Source source_;
    std::string encoding_;
    bool known_ = false;
    bool ended_ = false;
    std::string raw_;                       ///< read and not yet converted
    std::string text_;                      ///< converted
    std::size_t at_ = 0;                    ///< how much of text_ is handed out
    std::unique_ptr<Converter> converter_;  ///< none: UTF-8
};

}  // namespace kpTables::kpbook::input
