#include "kpbook/shell/Completer.h"

#include <algorithm>
#include <array>

#include "kpTables/LateBound.h"
#include "kpbook/Names.h"
#include "kpbook/shell/ShellSyntax.h"

namespace kpTables::kpbook::shell {

namespace {

constexpr std::array<std::string_view, 41> kKeywords = {
    "And",  "As",     "Asc",  "Between", "By",     "Case",   "Count(", "Delete", "Desc",  "Distinct", "Else",
    "End",  "Exists", "From", "Group",   "Having", "In",     "Inner",  "Insert", "Into",  "Is",       "Join",
    "Left", "Like",   "Max(", "Min(",    "Not",    "Null",   "On",     "Or",     "Order", "Right",    "Select",
    "Set",  "Sum(",   "Then", "Top",     "Union",  "Update", "Values", "Where"};

bool IsNameByte(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return value >= 0x80 || byte == '_' || (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
           (byte >= 'A' && byte <= 'Z');
}

bool Begins(std::string_view text, std::string_view beginning) {
    return text.size() >= beginning.size() && SameName(text.substr(0, beginning.size()), beginning);
}

std::vector<std::string_view> NamesIn(std::string_view text) {
    std::vector<std::string_view> names;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && IsNameByte(text[end])) ++end;
        if (end > at) names.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return names;
}

bool IsKeyword(std::string_view name) {
    return std::ranges::any_of(kKeywords, [&](std::string_view keyword) { return SameName(keyword, name); });
}

/// The tables that a statement names, each with its alias or itself.
std::vector<std::pair<std::string_view, const TableInfo*>> TablesIn(std::string_view statement,
                                                                    const std::vector<TableInfo>& tables) {
    std::vector<std::pair<std::string_view, const TableInfo*>> found;
    const auto names = NamesIn(statement);
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (const TableInfo& table : tables) {
            if (!SameName(table.name, names[i])) continue;
            found.emplace_back(table.name, &table);
            const std::size_t next = i + 1 < names.size() && SameName(names[i + 1], "As") ? i + 2 : i + 1;
            if (next < names.size() && !IsKeyword(names[next])) found.emplace_back(names[next], &table);
        }
    }
    return found;
}

class Candidates {
public:
    explicit Candidates(std::string_view word) : word_(word) {}

    void Add(std::string_view text) {
        if (Begins(text, word_)) texts_.emplace_back(text);
    }
    void AddColumns(const TableInfo& table) {
        for (const auto& column : table.columns) Add(column.name);
    }
    std::vector<std::string> Sorted() {
        std::ranges::sort(texts_);
        texts_.erase(std::unique(texts_.begin(), texts_.end()), texts_.end());
        return std::move(texts_);
    }

private:
    std::string_view word_;
    std::vector<std::string> texts_;
};

void AddToCommand(Candidates& candidates, std::string_view command, const std::vector<TableInfo>& tables) {
    if (command == ".schema") {
        for (const auto& table : tables) candidates.Add(table.name);
    } else if (command == ".call") {
        for (const auto& member : _CTables::Members()) candidates.Add(member.name);
    } else {
        for (const std::string_view choice : ChoicesOf(command)) candidates.Add(choice);
    }
}

}  // namespace

std::string CommonBeginning(const std::vector<std::string>& texts) {
    std::string common = texts.front();
    for (const std::string& text : texts) {
        const auto [end, other] = std::mismatch(common.begin(), common.end(), text.begin(), text.end());
        common.erase(end, common.end());
    }
    // No half characters.
    const std::string& whole = texts.front();
    const auto isInside = [&] {
        return common.size() < whole.size() && (static_cast<unsigned char>(whole[common.size()]) & 0xC0) == 0x80;
    };
    while (!common.empty() && isInside()) common.pop_back();
    return common;
}

Completion CompleteLine(const std::string& before, const std::string& statement, const std::vector<TableInfo>& tables) {
    Completion completion;
    std::size_t begin = before.size();
    while (begin > 0 && IsNameByte(before[begin - 1])) --begin;
    const bool isCommand = statement.empty() && before.starts_with('.');
    completion.from = isCommand && begin == 1 ? 0 : begin;
    const std::string_view word = std::string_view(before).substr(completion.from);
    Candidates candidates(word);
    if (isCommand && completion.from == 0) {
        for (const DotCommand& command : DotCommands()) candidates.Add(command.name);
    } else if (isCommand) {
        const std::string_view line = std::string_view(before).substr(0, begin);
        const auto end = line.find(' ');
        // Only the first word behind the command is known.
        if (line.find_first_not_of(' ', end) == line.npos) AddToCommand(candidates, line.substr(0, end), tables);
    } else if (begin > 0 && before[begin - 1] == '.') {
        std::size_t from = begin - 1;
        while (from > 0 && IsNameByte(before[from - 1])) --from;
        const std::string_view qualifier = std::string_view(before).substr(from, begin - 1 - from);
        for (const auto& [name, table] : TablesIn(statement + before, tables)) {
            if (SameName(name, qualifier)) candidates.AddColumns(*table);
        }
    } else {
        for (const auto& table : tables) candidates.Add(table.name);
        for (const auto& named : TablesIn(statement + before, tables)) candidates.AddColumns(*named.second);
        if (!word.empty()) {
            for (const std::string_view keyword : kKeywords) candidates.Add(keyword);
        }
    }
    completion.texts = candidates.Sorted();
    return completion;
}

}  // namespace kpTables::kpbook::shell
