#include "kpbook/Catalogue.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <utility>

#include "kpTables/text/Message.h"
#include "platform/Input.h"
#include "platform/Program.h"

namespace kpTables::kpbook {

namespace {

constexpr std::size_t kWordSize = 4;

struct CloseCatalogueFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

std::optional<std::string> BytesOf(const std::string& path) {
    const std::unique_ptr<std::FILE, CloseCatalogueFile> file(platform::OpenFile(path, "rb"));
    if (!file) return std::nullopt;
    std::string bytes;
    std::array<char, 1 << 16> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
        bytes.append(buffer.data(), count);
    }
    if (std::ferror(file.get()) != 0) return std::nullopt;
    return bytes;
}

std::string_view Setting(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

/// "zh_CN" of "zh_CN.UTF-8@pinyin"; "" of the C locale.
std::string_view LanguageIn(std::string_view locale) {
    const std::string_view language = locale.substr(0, locale.find_first_of(".@"));
    return language == "C" || language == "POSIX" ? "" : language;
}

/// Adds a language, and after it the same without its country.
void AddLanguage(std::string_view language, std::vector<std::string>& languages) {
    languages.emplace_back(language);
    if (const auto country = language.find('_'); country != language.npos) {
        languages.emplace_back(language.substr(0, country));
    }
}

std::optional<Catalogue> LoadCatalogue(const std::string& language) {
    // What names a language names no path.
    if (language.find('/') != std::string::npos) return std::nullopt;
    std::error_code failure;
    const auto program = platform::ProgramPath(failure);
    if (failure) return std::nullopt;
    for (const char* folder : {"../share/locale", "locale"}) {
        const auto path = program.parent_path() / folder / language / "LC_MESSAGES" / "kpbook.mo";
        if (auto bytes = BytesOf(path.string())) return Catalogue::Parse(std::move(*bytes));
    }
    return std::nullopt;
}

/// Lives as long as the program, as messages may be made at its very end.
const Catalogue* spoken = nullptr;

const char* FindSpoken(const char* one, const char* many, std::uint64_t count) {
    if (const char* const found = spoken->Find(one, many, count)) return found;
    return many && count != 1 ? many : one;
}

}  // namespace

std::optional<std::uint32_t> Catalogue::Word(std::size_t at) const noexcept {
    if (at > bytes_.size() || bytes_.size() - at < kWordSize) return std::nullopt;
    std::uint32_t word = 0;
    std::memcpy(&word, bytes_.data() + at, kWordSize);
    return swapped_ ? __builtin_bswap32(word) : word;
}

bool Catalogue::ReadTable(std::size_t at, std::vector<std::string_view>& texts) const {
    for (std::string_view& text : texts) {
        const auto length = Word(at);
        const auto begin = Word(at + kWordSize);
        at += 2 * kWordSize;
        // A NUL follows every text.
        if (!length || !begin || *begin >= bytes_.size() || *length >= bytes_.size() - *begin) return false;
        if (bytes_[*begin + *length] != '\0') return false;
        text = std::string_view(bytes_).substr(*begin, *length);
    }
    return true;
}

bool Catalogue::ReadTables() {
    constexpr std::uint32_t kMagic = 0x950412de;
    constexpr std::uint32_t kSwappedMagic = 0xde120495;
    const auto magic = Word(0);
    swapped_ = magic == kSwappedMagic;
    if (magic != kMagic && !swapped_) return false;
    const auto count = Word(2 * kWordSize);
    const auto texts = Word(3 * kWordSize);
    const auto translations = Word(4 * kWordSize);
    if (!count || !texts || !translations || *count > bytes_.size() / (2 * kWordSize)) return false;
    texts_.resize(*count);
    translations_.resize(*count);
    return ReadTable(*texts, texts_) && ReadTable(*translations, translations_) && std::ranges::is_sorted(texts_);
}

std::optional<Catalogue> Catalogue::Parse(std::string bytes) {
    // The texts are views of the bytes, which a move leaves in their place only outside of the string itself.
    constexpr std::size_t kHeader = 28;
    if (bytes.size() < kHeader) return std::nullopt;
    Catalogue catalogue(std::move(bytes));
    if (!catalogue.ReadTables()) return std::nullopt;
    return catalogue;
}

const char* Catalogue::Find(const char* one, const char* many, std::uint64_t count) const noexcept {
    // Up to the NUL; a counted text goes on with its other form.
    const auto firstPart = [](std::string_view text) { return std::string_view(text.data()); };
    const std::string_view sought = one;
    const auto found = std::ranges::lower_bound(texts_, sought, {}, firstPart);
    // The empty text's translation is the head of the file.
    if (sought.empty() || found == texts_.end() || firstPart(*found) != sought) return nullptr;
    const std::string_view forms = translations_[static_cast<std::size_t>(found - texts_.begin())];
    const std::size_t second = forms.find('\0') + 1;
    const char* const text = many && count != 1 && second != 0 ? forms.data() + second : forms.data();
    return *text == '\0' ? nullptr : text;
}

std::vector<std::string> AskedLanguages() {
    std::string_view locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = Setting(name);
        if (!locale.empty()) break;
    }
    const std::string chosen = platform::SystemLanguage();
    if (locale.empty()) locale = chosen;
    const std::string_view language = LanguageIn(locale);
    if (language.empty()) return {};
    std::vector<std::string> languages;
    for (std::string_view list = Setting("LANGUAGE"); !list.empty();) {
        const std::string_view each = LanguageIn(list.substr(0, list.find(':')));
        list.remove_prefix(std::min(list.size(), list.find(':') == list.npos ? list.size() : list.find(':') + 1));
        // The messages themselves are English.
        if (each == "en" || each.starts_with("en_")) return languages;
        if (!each.empty()) AddLanguage(each, languages);
    }
    if (languages.empty()) AddLanguage(language, languages);
    return languages;
}

void SpeakAskedLanguage() {
    for (const std::string& language : AskedLanguages()) {
        if (auto catalogue = LoadCatalogue(language)) {
            static const Catalogue kept = std::move(*catalogue);
            spoken = &kept;
            SetTranslator(FindSpoken);
            return;
        }
    }
}

}  // namespace kpTables::kpbook
