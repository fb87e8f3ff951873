#include "platform/Program.h"

#include "platform/windows/Wide.h"
// After windows.h, on which they build.
#include <lmcons.h>
#include <shellapi.h>

#include <array>
#include <cstdio>
#include <memory>

#include "platform/Input.h"

namespace kpTables::platform {

std::vector<std::string> CommandLineWords(int /*count*/, char** /*words*/) {
    // What main is given was converted to the system's code page, which may lack some characters.
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> words;
    for (int i = 0; i < count; ++i) words.push_back(Narrow(wide[i]));
    LocalFree(wide);
    return words;
}

std::filesystem::path ProgramPath(std::error_code& failure) {
    constexpr DWORD kLongest = 32768;
    std::wstring path(kLongest, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), kLongest));
    if (path.empty()) failure = std::error_code(static_cast<int>(GetLastError()), std::system_category());
    return path;
}

std::string UserName() {
    std::array<wchar_t, UNLEN + 1> name{};
    DWORD size = static_cast<DWORD>(name.size());
    return GetUserNameW(name.data(), &size) ? Narrow(name.data()) : std::string();
}

std::string SystemLanguage() {
    std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> name{};
    if (GetUserDefaultLocaleName(name.data(), static_cast<int>(name.size())) == 0) return {};
    std::string language = Narrow(name.data());
    if (const auto hyphen = language.find('-'); hyphen != language.npos) language[hyphen] = '_';
    return language;
}

std::filesystem::path StateFolder() {
    const wchar_t* const folder = _wgetenv(L"LOCALAPPDATA");
    return folder ? std::filesystem::path(folder) : std::filesystem::path();
}

void WritePrivately(const std::string& path, const std::string& text, bool append) noexcept {
    // The folder of a user's own data is closed to others.
    std::FILE* const file = OpenFile(path, append ? "ab" : "wb");
    if (!file) return;
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

}  // namespace kpTables::platform
