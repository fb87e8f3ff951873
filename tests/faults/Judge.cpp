#include "faults/Judge.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

namespace kpTables::faults {

namespace {

using Rows = std::vector<std::string>;

std::vector<BookState> ReadBooks(const Workload& workload) {
    std::vector<BookState> states;
    for (const auto& book : workload.books) states.push_back(ReadBook(book));
    return states;
}

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

Outcome RunLines(const Workload& workload, const std::string& input) {
    PutInPlace(*workload.before);
    return RunKpbook(workload.words, input);
}

bool IsBatch(const Workload& workload) {
    return workload.promise == Promise::EachLine || workload.promise == Promise::Transaction;
}

/// A statement of a batch, in contrast to the lines that begin and end a transaction.
bool IsStatement(const std::string& line) { return line.find("\"execute\"") != std::string::npos; }

/// What each statement of a batch adds, from runs of its statements alone, one more each time.
std::vector<Rows> AddedBy(const Workload& workload, const BookState& before) {
    std::vector<Rows> added;
    std::string input;
    Rows known = before.rows;
    for (const auto& line : LinesOf(workload.input)) {
        added.emplace_back();
        if (!IsStatement(line)) continue;
        input += line + "\n";
        RunLines(workload, input);
        const Rows now = ReadBook(workload.books[0]).rows;
        added.back() = Without(now, known);
        if (added.back().empty()) throw std::runtime_error(workload.name + ": a line adds nothing: " + line);
        known = now;
    }
    return added;
}

bool IsConfirmed(const std::string& answer) {
    const auto parsed = nlohmann::json::parse(answer, nullptr, false);
    return parsed.is_object() && !parsed.contains("error") && !parsed.contains("failed");
}

/// 0 none of the rows is there, 1 all are, -1 some.
int Presence(const Rows& rows, const Rows& book) {
    const std::size_t missing = Without(rows, book).size();
    return missing == 0 ? 1 : missing == rows.size() ? 0 : -1;
}

struct BatchView {
    std::vector<bool> confirmed;
    std::vector<int> presence;
};

std::string EachLineComplaint(const BatchView& view) {
    for (std::size_t i = 0; i < view.presence.size(); ++i) {
        if (view.presence[i] < 0) return "line " + std::to_string(i + 1) + " left half of its rows";
        if (view.confirmed[i] && view.presence[i] == 0)
            return "line " + std::to_string(i + 1) + " was confirmed and is lost";
    }
    return "";
}

std::string TransactionComplaint(const BatchView& view, const std::vector<Rows>& added) {
    const bool committed = view.confirmed.back();
    bool any = false, lost = false;
    for (std::size_t i = 0; i < view.presence.size(); ++i) {
        if (added[i].empty()) continue;
        any = any || view.presence[i] != 0;
        lost = lost || (view.confirmed[i] && view.presence[i] != 1);
    }
    if (committed && lost) return "the commit was confirmed and a confirmed line is lost";
    if (!committed && any && lost) return "a transaction that was not committed left a part of itself";
    if (!view.confirmed.front() && any) return "statements ran although the transaction had not begun";
    return "";
}

std::string BatchComplaint(const Reference& reference, const Outcome& outcome, const BookState& now) {
    const auto answers = LinesOf(outcome.out);
    const auto& added = reference.added;
    if (answers.size() > added.size()) return "more answers than lines";
    if (outcome.Succeeded() && answers.size() < added.size()) return "exit code 0 although lines have no answer";
    BatchView view;
    Rows possible = reference.before[0].rows;
    for (std::size_t i = 0; i < added.size(); ++i) {
        // The last answer of a process that was ended may be cut off.
        view.confirmed.push_back(i < answers.size() && IsConfirmed(answers[i]));
        view.presence.push_back(Presence(added[i], now.rows));
        possible.insert(possible.end(), added[i].begin(), added[i].end());
    }
    std::sort(possible.begin(), possible.end());
    if (const Rows lost = Without(reference.before[0].rows, now.rows); !lost.empty()) return "lost: " + lost[0];
    if (const Rows strange = Without(now.rows, possible); !strange.empty()) return "nobody wrote: " + strange[0];
    return reference.workload.promise == Promise::EachLine ? EachLineComplaint(view)
                                                           : TransactionComplaint(view, added);
}

std::string Difference(const std::vector<BookState>& now, const std::vector<BookState>& wanted) {
    for (std::size_t i = 0; i < now.size(); ++i) {
        if (now[i].exists != wanted[i].exists) return now[i].exists ? " (a book is there)" : " (a book is not there)";
        if (const Rows more = Without(now[i].rows, wanted[i].rows); !more.empty())
            return " (too much: " + more[0] + ")";
        if (const Rows less = Without(wanted[i].rows, now[i].rows); !less.empty()) return " (missing: " + less[0] + ")";
    }
    return "";
}

/// The command can be given again, and then does its work.
std::string AgainComplaint(const Reference& reference) {
    const Outcome again = RunKpbook(reference.workload.words, reference.workload.input);
    if (!again.Succeeded()) return "given again, the command fails: " + again.err;
    const auto now = ReadBooks(reference.workload);
    return now == reference.after ? ""
                                  : "given again, the command does something else" + Difference(now, reference.after);
}

/// The program tells of no failure: by its exit code, or for a line of a batch in its answer.
bool LooksLikeSuccess(const Workload& workload, const Outcome& outcome) {
    if (!outcome.Succeeded()) return false;
    if (workload.input.empty()) return true;
    const auto answers = LinesOf(outcome.out);
    return !answers.empty() && std::all_of(answers.begin(), answers.end(), IsConfirmed);
}

std::string CommandComplaint(const Reference& reference, const Outcome& outcome, const std::vector<BookState>& now,
                             bool untouched) {
    const bool done = now == reference.after;
    if (LooksLikeSuccess(reference.workload, outcome)) {
        if (!done) return "it looks like success, but the work is not done" + Difference(now, reference.after);
        return outcome.out == reference.outcome.out
                   ? ""
                   : "it looks like success, but the answer is another: " + outcome.out;
    }
    if (outcome.end == Outcome::End::Exited && !outcome.Succeeded() && outcome.err.empty())
        return "it failed without a word";
    // A folder that is the same to the byte answers the next command as it did before.
    if (reference.workload.promise == Promise::TrueAnswer || done || untouched) return "";
    if (now != reference.before)
        return "half done" + Difference(now, reference.before) + "; all done were" + Difference(now, reference.after);
    return AgainComplaint(reference);
}

}  // namespace

Reference MakeReference(const Workload& workload) {
    Reference reference{workload, {}, {}, {}, {}, {}};
    PutInPlace(*workload.before);
    reference.before = ReadBooks(workload);
    const Outcome first = RunLines(workload, workload.input);
    reference.after = ReadBooks(workload);
    reference.outcome = RunLines(workload, workload.input);
    reference.folderAfter = TakeFolder();
    if (!reference.outcome.Succeeded())
        throw std::runtime_error(workload.name + " fails without a fault: " + first.err);
    if (first.out != reference.outcome.out || ReadBooks(workload) != reference.after) {
        throw std::runtime_error(workload.name + ": two runs differ");
    }
    if (IsBatch(workload)) reference.added = AddedBy(workload, reference.before[0]);
    return reference;
}

Outcome RunWith(const Reference& reference, const Plan& plan) {
    PutInPlace(*reference.workload.before);
    return RunKpbook(reference.workload.words, reference.workload.input, plan);
}

std::string Complaint(const Reference& reference, const Outcome& outcome) {
    if (outcome.end == Outcome::End::Crashed) return "crashed, signal or sanitizer " + std::to_string(outcome.code);
    if (outcome.end == Outcome::End::Hung) return "does not end";
    const Folder folder = TakeFolder();
    const bool untouched = folder == *reference.workload.before;
    // Books that are known to the byte need not be read.
    const auto now = untouched                         ? reference.before
                     : folder == reference.folderAfter ? reference.after
                                                       : ReadBooks(reference.workload);
    for (const BookState& book : now) {
        if (!book.fault.empty()) return "the book is damaged: " + book.fault;
    }
    return IsBatch(reference.workload) ? BatchComplaint(reference, outcome, now[0])
                                       : CommandComplaint(reference, outcome, now, untouched);
}

}  // namespace kpTables::faults
