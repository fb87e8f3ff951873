#include "kpbook/output/PdfFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/output/Output.h"

namespace kpTables::kpbook::output {

namespace {

namespace fs = std::filesystem;

/// A folder of its own for the page, the browser's profile and its file; removed at the end.
class WorkFolder {
public:
    WorkFolder() {
        std::string name = (fs::temp_directory_path() / "kpbook-XXXXXX").string();
        if (!::mkdtemp(name.data())) throw CommandError(Message("no folder for temporary files can be made"));
        path = name;
    }
    ~WorkFolder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    fs::path path;
};

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
    throw CommandError(Message(
        "a PDF needs Chromium, which is not installed (Debian: apt install chromium); or print the page that -o FILE.html writes"));
}

/// Runs a program with its output thrown away; answers whether it succeeded.
bool RunQuietly(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child < 0) throw CommandError(Message("the browser cannot be started"));
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

}  // namespace

void WritePdf(const std::string& html, const std::string& path) {
    const std::string browser = BrowserPath();
    const WorkFolder folder;
    const fs::path page = folder.path / "bill.html";
    const fs::path pdf = folder.path / "bill.pdf";
    std::ofstream(page, std::ios::binary) << html;
    std::vector<std::string> words{browser,
                                   "--headless",
                                   "--disable-gpu",
                                   "--no-pdf-header-footer",
                                   "--user-data-dir=" + (folder.path / "profile").string(),
                                   "--print-to-pdf=" + pdf.string()};
    // Chromium's sandbox does not work for root; the page is our own and loads nothing.
    if (::geteuid() == 0) words.emplace_back("--no-sandbox");
    words.push_back("file://" + page.string());
    const bool succeeded = RunQuietly(words);
    std::ifstream made(pdf, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(made), std::istreambuf_iterator<char>()};
    if (!succeeded || !content.starts_with("%PDF-")) throw CommandError(Message("{1} did not make the PDF", browser));
    Output output(path);
    output.Write(content);
    output.Close();
}

}  // namespace kpTables::kpbook::output
