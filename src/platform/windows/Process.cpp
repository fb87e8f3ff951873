#include "platform/Process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <memory>

#include "platform/Input.h"
#include "platform/windows/Wide.h"

namespace kpTables::platform {

namespace {

namespace fs = std::filesystem;

/// A word as programs take it from a command line, by the rules of CommandLineToArgvW.
std::wstring QuotedWord(const std::wstring& word) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : word) {
        if (character == L'"') quoted.append(backslashes + 1, L'\\');
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        quoted += character;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L'"';
}

/// A file below a folder that a variable of the environment names.
std::string FileIn(const wchar_t* variable, const wchar_t* below) {
    const wchar_t* const folder = _wgetenv(variable);
    std::error_code error;
    if (!folder || !fs::is_regular_file(fs::path(folder) / below, error)) return {};
    return (fs::path(folder) / below).string();
}

}  // namespace

std::string BrowserPath() {
    for (const wchar_t* browser :
         {L"Microsoft\\Edge\\Application\\msedge.exe", L"Google\\Chrome\\Application\\chrome.exe"}) {
        for (const wchar_t* folder : {L"ProgramFiles(x86)", L"ProgramFiles", L"ProgramW6432", L"LOCALAPPDATA"}) {
            if (std::string file = FileIn(folder, browser); !file.empty()) return file;
        }
    }
    return {};
}

std::vector<std::string> BrowserOptions() { return {}; }

std::string FileUrl(const fs::path& path) { return "file:///" + path.generic_string(); }

std::optional<bool> RunQuietly(const std::vector<std::string>& words) {
    std::wstring line;
    for (const std::string& word : words) line += (line.empty() ? L"" : L" ") + QuotedWord(Wide(word));
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const HANDLE nowhere = CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                       &inherited, OPEN_EXISTING, 0, nullptr);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = start.hStdOutput = start.hStdError = nowhere;
    PROCESS_INFORMATION process{};
    const bool started = CreateProcessW(Wide(words.front()).c_str(), line.data(), nullptr, nullptr, TRUE,
                                        CREATE_NO_WINDOW, nullptr, nullptr, &start, &process) != 0;
    if (nowhere != INVALID_HANDLE_VALUE) CloseHandle(nowhere);
    if (!started) return std::nullopt;
    CloseHandle(process.hThread);
    const std::unique_ptr<void, CloseHandleOf> running(process.hProcess);
    WaitForSingleObject(running.get(), INFINITE);
    DWORD code = 1;
    return GetExitCodeProcess(running.get(), &code) != 0 && code == 0;
}

fs::path MakeTemporaryFolder() {
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    if (error) return {};
    constexpr int kAttempts = 100;
    for (int i = 0; i < kAttempts; ++i) {
        const fs::path made = folder / ("kpbook-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(i));
        if (fs::create_directory(made, error)) return made;
    }
    return {};
}

TemporaryFile::TemporaryFile() {
    std::array<wchar_t, MAX_PATH + 1> folder{};
    std::array<wchar_t, MAX_PATH + 1> name{};
    if (GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()) == 0 ||
        GetTempFileNameW(folder.data(), L"kpb", 0, name.data()) == 0) {
        errno = ErrorNumberOf(GetLastError());
        return;
    }
    path_ = Narrow(name.data());
    file_ = OpenFile(path_, "w+b");
}

TemporaryFile::~TemporaryFile() {
    if (file_) std::fclose(file_);
    if (!path_.empty()) DeleteFileW(WidePath(path_).c_str());
}

std::string TemporaryFile::Path() const { return path_; }

std::optional<std::size_t> AvailableMemory() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    if (!GlobalMemoryStatusEx(&status)) return std::nullopt;
    // A 32-bit program cannot address all of it.
    const auto bytes = std::min<DWORDLONG>(std::min(status.ullAvailPhys, status.ullAvailVirtual),
                                           std::numeric_limits<std::size_t>::max());
    return static_cast<std::size_t>(bytes);
}

}  // namespace kpTables::platform
