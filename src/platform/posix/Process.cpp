#include "platform/Process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <string_view>

namespace kpTables::platform {

std::string BrowserPath() {
    const char* const variable = std::getenv("PATH");
    const std::string_view folders = variable ? variable : "";
    for (const char* name : {"chromium", "chromium-browser", "google-chrome"}) {
        for (std::size_t at = 0; at <= folders.size();) {
            const std::size_t end = std::min(folders.find(':', at), folders.size());
            const std::string file = std::string(folders.substr(at, end - at)) + "/" + name;
            if (::access(file.c_str(), X_OK) == 0) return file;
            at = end + 1;
        }
    }
    return {};
}

std::vector<std::string> BrowserOptions() {
    // Chromium's sandbox does not work for root; the page is our own and loads nothing.
    if (::geteuid() == 0) return {"--no-sandbox"};
    return {};
}

std::string FileUrl(const std::filesystem::path& path) { return "file://" + path.string(); }

std::optional<bool> RunQuietly(const std::vector<std::string>& words) {
    std::vector<std::string> copies = words;
    std::vector<char*> arguments;
    for (std::string& word : copies) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child < 0) return std::nullopt;
    if (child == 0) {
        const int nowhere = ::open("/dev/null", O_RDWR);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(nowhere, stream);
        ::execv(arguments.front(), arguments.data());
        ::_exit(127);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::filesystem::path MakeTemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kpbook-XXXXXX").string();
    return ::mkdtemp(name.data()) ? std::filesystem::path(name) : std::filesystem::path();
}

TemporaryFile::TemporaryFile() : file_(std::tmpfile()) {}

TemporaryFile::~TemporaryFile() {
    if (file_) std::fclose(file_);
}

std::string TemporaryFile::Path() const { return "/proc/self/fd/" + std::to_string(::fileno(file_)); }

std::optional<std::size_t> AvailableMemory() {
    constexpr std::size_t kBytesOfKibibyte = 1024;
    std::ifstream system("/proc/meminfo");
    std::string name;
    std::size_t kibibytes = 0;
    for (std::string line; system >> name >> kibibytes; std::getline(system, line)) {
        if (name == "MemAvailable:") return kibibytes * kBytesOfKibibyte;
    }
    return std::nullopt;
}

}  // namespace kpTables::platform
