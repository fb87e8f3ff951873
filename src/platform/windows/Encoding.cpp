#include "platform/Encoding.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "platform/windows/Wide.h"

namespace kpTables::platform {

namespace {

using Result = EncodingReader::Result;

bool IsHighSurrogate(wchar_t unit) noexcept { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(wchar_t unit) noexcept { return unit >= 0xDC00 && unit < 0xE000; }

class Utf16Reader : public EncodingReader {
public:
    explicit Utf16Reader(bool bigEndian) : bigEndian_(bigEndian) {}

    Result Read(std::string_view bytes, std::string& text) override {
        std::wstring units;
        std::size_t at = 0;
        const auto end = [&](bool isCutOff) {
            text += Narrow(units);
            return Result{at, isCutOff};
        };
        while (at < bytes.size()) {
            if (bytes.size() - at < 2) return end(true);
            const wchar_t unit = UnitAt(bytes, at);
            if (IsLowSurrogate(unit)) return end(false);
            if (IsHighSurrogate(unit)) {
                if (bytes.size() - at < 4) return end(true);
                const wchar_t next = UnitAt(bytes, at + 2);
                if (!IsLowSurrogate(next)) return end(false);
                units += unit;
                units += next;
                at += 4;
                continue;
            }
            units += unit;
            at += 2;
        }
        return end(false);
    }

private:
    wchar_t UnitAt(std::string_view bytes, std::size_t at) const noexcept {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return static_cast<wchar_t>(bigEndian_ ? first << 8 | second : second << 8 | first);
    }

    bool bigEndian_;
};

constexpr UINT kGb18030 = 54936;

class CodePageReader : public EncodingReader {
public:
    explicit CodePageReader(UINT codePage) : codePage_(codePage) {}

    Result Read(std::string_view bytes, std::string& text) override {
        constexpr std::size_t kPiece = 1 << 14;
        std::size_t at = 0;
        while (at < bytes.size()) {
            std::size_t whole = at;
            while (whole < bytes.size() && whole - at < kPiece) {
                const std::size_t size = SizeOf(bytes.substr(whole));
                if (size == 0) break;
                whole += size;
            }
            if (whole == at) return {at, true};
            if (Append(bytes.substr(at, whole - at), text)) {
                at = whole;
                continue;
            }
            // Somewhere among them is no text.
            for (std::size_t size = 0; at < whole; at += size) {
                size = SizeOf(bytes.substr(at));
                if (!Append(bytes.substr(at, size), text)) return {at};
            }
        }
        return {at};
    }

private:
    /// How many bytes the first character has; 0 when its end is missing.
    std::size_t SizeOf(std::string_view bytes) const noexcept {
        const auto isLead = [this](char byte) {
            const auto code = static_cast<unsigned char>(byte);
            return codePage_ == kGb18030 ? code > 0x80 && code < 0xFF : IsDBCSLeadByteEx(codePage_, code) != 0;
        };
        if (!isLead(bytes[0])) return 1;
        if (bytes.size() < 2) return 0;
        if (codePage_ != kGb18030 || bytes[1] < '0' || bytes[1] > '9') return 2;
        return bytes.size() < 4 ? 0 : 4;
    }

    bool Append(std::string_view characters, std::string& text) const {
        const int size = static_cast<int>(characters.size());
        std::wstring units(characters.size(), L'\0');
        const int count = MultiByteToWideChar(codePage_, MB_ERR_INVALID_CHARS, characters.data(), size, units.data(),
                                              static_cast<int>(units.size()));
        if (count == 0) return false;
        text += Narrow(std::wstring_view(units).substr(0, static_cast<std::size_t>(count)));
        return true;
    }

    UINT codePage_;
};

struct NamedCodePage {
    std::string_view name;
    UINT codePage;
};
constexpr NamedCodePage kNamed[] = {{"GB18030", kGb18030}, {"GBK", 936},       {"GB2312", 936},    {"EUC-CN", 936},
                                    {"BIG5", 950},         {"SHIFT_JIS", 932}, {"SHIFT-JIS", 932}, {"SJIS", 932},
                                    {"EUC-JP", 20932},     {"EUC-KR", 949},    {"KOI8-R", 20866},  {"ASCII", 20127},
                                    {"US-ASCII", 20127},   {"LATIN1", 28591}};
/// What stands before a code page's number, and what is added to that.
constexpr NamedCodePage kNumbered[] = {{"WINDOWS-", 0}, {"CP", 0}, {"ISO-8859-", 28590}, {"ISO8859-", 28590}};

UINT CodePageOf(std::string_view name) {
    for (const NamedCodePage& known : kNamed) {
        if (name == known.name) return known.codePage;
    }
    for (const NamedCodePage& known : kNumbered) {
        if (!name.starts_with(known.name)) continue;
        UINT number = 0;
        const std::string_view digits = name.substr(known.name.size());
        const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
        if (read.ec == std::errc() && read.ptr == digits.data() + digits.size()) return known.codePage + number;
    }
    return 0;
}

}  // namespace

std::unique_ptr<EncodingReader> EncodingReader::Open(const std::string& encoding) {
    std::string name = encoding;
    std::ranges::transform(name, name.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    if (name == "UTF-16LE" || name == "UTF-16") return std::make_unique<Utf16Reader>(false);
    if (name == "UTF-16BE") return std::make_unique<Utf16Reader>(true);
    UINT codePage = CodePageOf(name);
    // What nearly all such texts use is a part of it.
    if (codePage == kGb18030 && !IsValidCodePage(codePage)) codePage = 936;
    CPINFO known{};
    if (codePage == 0 || !GetCPInfo(codePage, &known) || (known.MaxCharSize > 2 && codePage != kGb18030))
        return nullptr;
    return std::make_unique<CodePageReader>(codePage);
}

}  // namespace kpTables::platform
