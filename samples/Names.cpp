#include "Names.h"

namespace kpTables::sample {

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (;;) {
        const std::size_t at = text.find(separator);
        parts.emplace_back(text.substr(0, at));
        if (at == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(at + 1);
    }
}

std::vector<NameLine> ReadNames(std::string_view text) {
    std::vector<NameLine> lines;
    for (const std::string& line : Split(text, '\n')) {
        if (line.empty() || line.front() == '#') {
            continue;
        }
        std::string_view rest = line;
        NameLine read;
        if (rest.front() == '[' || rest.front() == '-' || rest.front() == '+') {
            read.mark = rest.front();
            rest.remove_prefix(read.mark == '[' ? 1 : 2);
        }
        read.fields = Split(rest, '|');
        lines.push_back(std::move(read));
    }
    return lines;
}

}  // namespace kpTables::sample
