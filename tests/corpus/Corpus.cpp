#include "corpus/Corpus.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <utility>

namespace kpTables::corpus {

namespace {

constexpr std::string_view kJet = "jet: ";
constexpr std::string_view kServer = "sql: ";
constexpr std::string_view kNothing = "nothing";
constexpr std::string_view kBox = "box ";
constexpr std::string_view kReturns = "returns ";
constexpr std::string_view kRows = "rows ";
constexpr std::string_view kRefused = "refused ";

bool Take(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

class FileReader {
public:
    explicit FileReader(const std::filesystem::path& path) : path_(path) {}

    std::vector<Case> Read() {
        std::ifstream in(path_);
        if (!in) Fail("cannot be opened");
        for (std::string line; std::getline(in, line);) {
            ++line_;
            if (line.empty() || line.front() == '#') continue;
            if (line.starts_with("    "))
                ReadAnswer(std::string_view(line).substr(4));
            else if (line.starts_with("  "))
                ReadDetail(std::string_view(line).substr(2));
            else
                ReadCall(line);
        }
        EndCase();
        if (cases_.empty()) Fail("no call");
        return std::move(cases_);
    }

private:
    [[noreturn]] void Fail(const std::string& complaint) const {
        throw std::runtime_error(path_.string() + ":" + std::to_string(line_) + ": " + complaint);
    }

    void ReadCall(std::string_view line) {
        EndCase();
        const std::size_t length = CallLength(line);
        if (length == 0) Fail("expected a call");
        Case& each = cases_.emplace_back();
        each.file = path_.stem().string();
        each.line = line_;
        each.call = line.substr(0, length);
        std::string_view rest = line.substr(length);
        if (!rest.empty() && (!Take(rest, "  ' ") || rest.empty()))
            Fail("expected two blanks, an apostrophe and a title");
        each.title = rest;
        jetDone_ = serverDone_ = false;
    }

    void ReadDetail(std::string_view line) {
        if (cases_.empty()) Fail("expected a call first");
        if (Take(line, kBox)) {
            cases_.back().boxes.emplace_back(line);
        } else if (Take(line, kReturns)) {
            cases_.back().result = line;
        } else {
            const bool jetAlone = Take(line, kJet);
            const bool serverAlone = !jetAlone && Take(line, kServer);
            last_.clear();
            if (!serverAlone) ReadStatement(line, cases_.back().jet, jetDone_);
            if (!jetAlone) ReadStatement(line, cases_.back().server, serverDone_);
        }
    }

    void ReadStatement(std::string_view line, std::vector<Statement>& statements, bool& done) {
        if (line == kNothing) {
            if (done) Fail("nothing besides a statement");
            done = true;
            return;
        }
        if (done && statements.empty()) Fail("a statement besides nothing");
        const std::size_t begin = line.find(" |");
        if (begin == line.npos || line.back() != '|' || begin + 2 >= line.size()) Fail("expected a text between bars");
        const std::string kind(line.substr(0, begin));
        if (kind != "execute" && kind != "open" && kind != "open table") Fail("expected a kind of statement");
        statements.push_back({kind, std::string(line.substr(begin + 2, line.size() - begin - 3)), "", ""});
        last_.push_back(&statements);
        done = true;
    }

    void ReadAnswer(std::string_view line) {
        if (last_.empty()) Fail("expected a statement first");
        for (auto* statements : last_) {
            if (std::string_view rest = line; Take(rest, kRows))
                statements->back().answer = rest;
            else if (Take(rest, kRefused))
                statements->back().refusal = rest;
            else
                Fail("expected the rows that answer a statement, or its refusal");
        }
    }

    void EndCase() {
        if (!cases_.empty() && (!jetDone_ || !serverDone_)) Fail("the call above sends nothing in one dialect");
    }

    std::filesystem::path path_;
    int line_ = 0;
    std::vector<Case> cases_;
    bool jetDone_ = false;
    bool serverDone_ = false;
    std::vector<std::vector<Statement>*> last_;  // their last statements get the next rows
};

std::vector<Case> ReadAll() {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(KPTABLES_CORPUS))
        if (entry.path().extension() == ".calls") paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    std::vector<Case> all;
    std::set<std::pair<std::string, std::string>> seen;
    for (const auto& path : paths) {
        for (Case& each : FileReader(path).Read()) {
            if (!seen.emplace(each.call, each.title).second) throw std::runtime_error(each.Name() + " stands twice");
            all.push_back(std::move(each));
        }
    }
    return all;
}

}  // namespace

std::string Case::Name() const {
    return file + ".calls:" + std::to_string(line) + ": " + call + (title.empty() ? "" : "  ' " + title);
}

const std::vector<Case>& Cases() {
    static const std::vector<Case> cases = ReadAll();
    return cases;
}

const Case& Find(std::string_view call, std::string_view title) {
    for (const Case& each : Cases())
        if (each.call == call && (title.empty() || each.title == title)) return each;
    throw std::runtime_error("the corpus has no call " + std::string(call) + "  ' " + std::string(title));
}

const std::string& Text(std::string_view call, std::size_t number, bool isSQL) {
    return Find(call).Statements(isSQL).at(number - 1).text;
}

std::vector<SentText> Texts() {
    std::vector<SentText> texts;
    std::set<std::string_view> seen;
    for (const Case& each : Cases())
        for (const bool isSQL : {false, true})
            for (const Statement& statement : each.Statements(isSQL))
                if (statement.kind != "open table" && seen.insert(statement.text).second)
                    texts.push_back({&each, &statement});
    return texts;
}

std::size_t CallLength(std::string_view line) {
    bool quoted = false;
    int depth = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"') quoted = !quoted;
        if (quoted) continue;
        if (line[i] == '(') ++depth;
        if (line[i] == ')' && --depth == 0) return i + 1;
    }
    return 0;
}

}  // namespace kpTables::corpus
