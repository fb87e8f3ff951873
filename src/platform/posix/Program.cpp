#include "platform/Program.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace kpTables::platform {

std::vector<std::string> CommandLineWords(int count, char** words) { return {words, words + count}; }

std::filesystem::path ProgramPath(std::error_code& failure) {
    return std::filesystem::read_symlink("/proc/self/exe", failure);
}

std::string UserName() {
    const passwd* const user = ::getpwuid(::geteuid());
    return user ? user->pw_name : "";
}

std::string SystemLanguage() { return {}; }

std::filesystem::path StateFolder() {
    if (const char* const state = std::getenv("XDG_STATE_HOME"); state && *state == '/') return state;
    const char* const home = std::getenv("HOME");
    return home && *home ? std::filesystem::path(home) / ".local" / "state" : std::filesystem::path();
}

void WritePrivately(const std::string& path, const std::string& text, bool append) noexcept {
    const int flags = append ? O_APPEND : O_TRUNC;
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, S_IRUSR | S_IWUSR);
    if (file < 0) return;
    // A file that was made by other means may be open to others.
    if (::fchmod(file, S_IRUSR | S_IWUSR) == 0) {
        [[maybe_unused]] const auto written = ::write(file, text.data(), text.size());
    }
    ::close(file);
}

}  // namespace kpTables::platform
