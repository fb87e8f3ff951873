#include "platform/Encoding.h"

#include <iconv.h>

#include <cerrno>

namespace kpTables::platform {

namespace {

class IconvReader : public EncodingReader {
public:
    explicit IconvReader(::iconv_t handle) : handle_(handle) {}
    ~IconvReader() override { ::iconv_close(handle_); }
    IconvReader(const IconvReader&) = delete;
    IconvReader& operator=(const IconvReader&) = delete;

    Result Read(std::string_view bytes, std::string& text) override {
        // The library's interface is from before there was const.
        std::string input(bytes);
        char* from = input.data();
        std::size_t left = input.size();
        while (left > 0) {
            char piece[1 << 14];
            char* to = piece;
            std::size_t room = sizeof piece;
            const bool stopped = ::iconv(handle_, &from, &left, &to, &room) == static_cast<std::size_t>(-1);
            const int reason = errno;
            text.append(piece, to);
            if (stopped && reason != E2BIG) return {bytes.size() - left, reason == EINVAL};
        }
        return {bytes.size()};
    }

private:
    ::iconv_t handle_;
};

}  // namespace

std::unique_ptr<EncodingReader> EncodingReader::Open(const std::string& encoding) {
    static const auto kNone = reinterpret_cast<::iconv_t>(-1);
    // What follows a slash are orders to iconv.
    const ::iconv_t handle = encoding.find('/') == encoding.npos ? ::iconv_open("UTF-8", encoding.c_str()) : kNone;
    return handle == kNone ? nullptr : std::make_unique<IconvReader>(handle);
}

}  // namespace kpTables::platform
