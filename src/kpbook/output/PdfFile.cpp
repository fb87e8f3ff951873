#include "kpbook/output/PdfFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/output/Output.h"
#include "platform/Process.h"

namespace kpTables::kpbook::output {

namespace {

namespace fs = std::filesystem;

/// A folder of its own for the page, the browser's profile and its file; removed at the end.
class WorkFolder {
public:
    WorkFolder() : path(platform::MakeTemporaryFolder()) {
        if (path.empty()) throw CommandError(Message("no folder for temporary files can be made"));
    }
    ~WorkFolder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    fs::path path;
};

std::string InstalledBrowser() {
    std::string path = platform::BrowserPath();
    if (!path.empty()) return path;
    throw CommandError(Message(
        "a PDF needs Chromium, which is not installed (Debian: apt install chromium); or print the page that -o FILE.html writes"));
}

}  // namespace

void WritePdf(const std::string& html, const std::string& path) {
    const std::string browser = InstalledBrowser();
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
    for (std::string& option : platform::BrowserOptions()) words.push_back(std::move(option));
    words.push_back(platform::FileUrl(page));
    const auto succeeded = platform::RunQuietly(words);
    if (!succeeded) throw CommandError(Message("the browser cannot be started"));
    std::ifstream made(pdf, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(made), std::istreambuf_iterator<char>()};
    if (!*succeeded || !content.starts_with("%PDF-")) throw CommandError(Message("{1} did not make the PDF", browser));
    Output output(path);
    output.Write(content);
    output.Close();
}

}  // namespace kpTables::kpbook::output
