#include "platform/windows/ConsoleWriter.h"

#include <algorithm>

namespace kpTables::platform {

namespace {

/// The longest beginning of a text that has at most so many bytes and ends with a whole character.
std::string_view WholePiece(std::string_view text, std::size_t most) noexcept {
    if (text.size() <= most) return text;
    constexpr std::size_t kLongestCharacter = 4;
    std::size_t size = most;
    const auto isContinuation = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80; };
    while (size > most - kLongestCharacter && isContinuation(size)) --size;
    return text.substr(0, size);
}

}  // namespace

bool ConsoleWriter::Write(std::string_view text) noexcept {
    if (text.size() > pending_.size() - size_ && !Flush()) return false;
    if (text.size() > pending_.size()) return Show(text);
    std::ranges::copy(text, pending_.begin() + static_cast<std::ptrdiff_t>(size_));
    size_ += text.size();
    return true;
}

bool ConsoleWriter::Flush() noexcept {
    const std::string_view text(pending_.data(), size_);
    size_ = 0;
    return Show(text);
}

bool ConsoleWriter::Show(std::string_view text) noexcept {
    constexpr std::size_t kPiece = 1 << 12;
    std::array<wchar_t, kPiece> wide;
    while (!text.empty()) {
        const std::string_view piece = WholePiece(text, kPiece);
        const int count = MultiByteToWideChar(CP_UTF8, 0, piece.data(), static_cast<int>(piece.size()), wide.data(),
                                              static_cast<int>(wide.size()));
        DWORD written = 0;
        if (!write_(console_, wide.data(), static_cast<DWORD>(count), &written, nullptr)) return false;
        text.remove_prefix(piece.size());
    }
    return true;
}

}  // namespace kpTables::platform
