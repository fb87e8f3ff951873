// A catalogue of translated messages: a .mo file, as msgfmt makes it.
//
// The file is read here rather than by the C library's gettext: that looks a text up only while setlocale has set a
// locale, and a system without zh_CN.UTF-8 generated (any small container) has none to set.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kpTables::kpbook {

/// The texts of one language. What it answers lives as long as the catalogue.
class Catalogue {
public:
    /// From the bytes of a .mo file; nothing when they are not one.
    static std::optional<Catalogue> Parse(std::string bytes);

    Catalogue(Catalogue&&) = default;
    Catalogue& operator=(Catalogue&&) = default;
    Catalogue(const Catalogue&) = delete;
    Catalogue& operator=(const Catalogue&) = delete;
    ~Catalogue() = default;

    /// The text in the catalogue's language; null when it has none. many, if not null: the form for a count other than
    /// 1. Languages with one form, or with two by the same rule as English, are known.
    const char* Find(const char* one, const char* many, std::uint64_t count) const noexcept;

private:
    explicit Catalogue(std::string bytes) : bytes_(std::move(bytes)) {}
    bool ReadTables();
    bool ReadTable(std::size_t at, std::vector<std::string_view>& texts) const;
    std::optional<std::uint32_t> Word(std::size_t at) const noexcept;

    std::string bytes_;
    std::vector<std::string_view> texts_;         ///< in order; a counted text is "one\0many"
    std::vector<std::string_view> translations_;  ///< of each text; the forms of a counted one have NULs between
    bool swapped_ = false;                        ///< the file was made on a machine with the other order of bytes
};

/// The languages that the environment asks for, the best first: by LANGUAGE, LC_ALL, LC_MESSAGES and LANG, as gettext
/// reads them; without them, the system's. Empty: English.
std::vector<std::string> AskedLanguages();

/// Lets all messages be in the first of the asked languages that kpbook has a catalogue of, beside the program
/// (../share/locale, as it is installed, or locale, as it is built). Without one they stay English.
void SpeakAskedLanguage();

}  // namespace kpTables::kpbook
