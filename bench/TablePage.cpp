#include "TablePage.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace kpTables::bench {

void WriteTable(const std::filesystem::path& page, const std::string& text) {
    const std::string begin = "<!-- table -->\n";
    const std::string end = "<!-- end -->";
    std::string whole = begin + end + "\n";
    if (std::ifstream file(page); file) {
        std::ostringstream content;
        content << file.rdbuf();
        whole = content.str();
    }
    const std::size_t from = whole.find(begin);
    const std::size_t to = from == std::string::npos ? from : whole.find(end, from);
    if (to == std::string::npos) {
        throw std::runtime_error(page.string() + " has no marks for the table");
    }
    whole.replace(from + begin.size(), to - from - begin.size(), "\n" + text + "\n");
    std::ofstream file(page, std::ios::trunc);
    if (!(file << whole).flush()) {
        throw std::runtime_error("cannot write " + page.string());
    }
}

}  // namespace kpTables::bench
