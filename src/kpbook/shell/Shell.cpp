#include "kpbook/shell/Shell.h"

#include <csignal>

#include "kpTables/Script.h"
#include "kpTables/text/Message.h"
#include "kpbook/Ending.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"
#include "kpbook/Terminal.h"
#include "kpbook/Utf8.h"
#include "kpbook/input/InputFile.h"
#include "kpbook/input/LineReader.h"
#include "kpbook/shell/History.h"
#include "kpbook/shell/LineEditor.h"
#include "kpbook/shell/Session.h"
#include "platform/Signals.h"
#include "platform/Terminal.h"

namespace kpTables::kpbook::shell {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string Trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(kBlanks);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// A statement on one line, as the history keeps it.
std::string OnOneLine(std::string text) {
    for (char& character : text) {
        if (character == '\n' || character == '\r') character = ' ';
    }
    return text;
}

/// The lines of a statement until its semicolon arrives.
class PendingLines {
public:
    bool Empty() const noexcept { return text_.empty(); }
    const std::string& Text() const noexcept { return text_; }
    void Clear() noexcept { text_.clear(); }

    /// The statements that end with this line; their lines count from the beginning of the input.
    std::vector<ScriptStatement> Add(const std::string& line, std::size_t number) {
        const bool isFirst = text_.empty();
        if (isFirst) firstLine_ = number;
        text_ += line + "\n";
        // Only a semicolon ends a statement; that a comment is none must be seen at once.
        if (!isFirst && line.find(';') == line.npos && line.find("*/") == line.npos) return {};
        return TakeEnded();
    }
    /// What is there, ended or not.
    std::vector<ScriptStatement> TakeRest() {
        auto statements = Placed(SplitScript(text_));
        text_.clear();
        return statements;
    }

private:
    std::vector<ScriptStatement> TakeEnded() {
        auto statements = SplitScript(text_);
        const bool hasRest = !statements.empty() && !statements.back().ended;
        if (hasRest) statements.pop_back();
        const std::size_t kept = statements.empty() ? 0 : statements.back().end;
        auto placed = Placed(std::move(statements));
        for (std::size_t i = 0; i < kept; ++i) firstLine_ += text_[i] == '\n' ? 1 : 0;
        text_.erase(0, kept);
        if (!hasRest) text_.clear();
        return placed;
    }
    std::vector<ScriptStatement> Placed(std::vector<ScriptStatement> statements) const {
        for (auto& statement : statements) statement.line += firstLine_ - 1;
        return statements;
    }

    std::string text_;
    std::size_t firstLine_ = 1;
};

/// Reads lines, gives them to the session, and keeps going after errors.
class ShellLoop {
public:
    ShellLoop(Session& session, bool atTerminal) : session_(session), atTerminal_(atTerminal) {}

    /// For the next line of input. False when the shell ends.
    bool Take(const std::string& line) {
        ++line_;
        if (pending_.Empty() && Trimmed(line).starts_with('.')) return TakeCommand(Trimmed(line));
        if (!IsValidUtf8(line)) {
            session_.Tell(Message("line {1}: the text is not valid UTF-8", line_));
            return true;
        }
        for (const auto& statement : pending_.Add(line, line_)) Run(statement);
        return true;
    }
    void TakeRest() {
        for (const auto& statement : pending_.TakeRest()) Run(statement);
    }
    void Interrupt() { pending_.Clear(); }

    const std::string& Pending() const noexcept { return pending_.Text(); }
    /// What is worth remembering since the last call.
    std::vector<std::string> TakeEntries() { return std::exchange(entries_, {}); }

private:
    bool TakeCommand(const std::string& command) {
        entries_.push_back(command);
        return session_.RunCommand(command);
    }
    void Run(const ScriptStatement& statement) {
        entries_.push_back(OnOneLine(statement.text) + ";");
        session_.RunStatement(statement, !atTerminal_);
    }

    Session& session_;
    bool atTerminal_;
    PendingLines pending_;
    std::size_t line_ = 0;
    std::vector<std::string> entries_;
};

void ReadTerminal(LineEditor& editor, ShellLoop& loop, History& history) {
    for (bool goesOn = true; goesOn;) {
        try {
            const auto line = editor.Read(loop.Pending().empty() ? "kpbook> " : "   ...> ");
            if (!line) {
                platform::WriteText(platform::Stream::Output, "\n");
                return;
            }
            goesOn = loop.Take(*line);
        } catch (const Interrupted&) {
            loop.Interrupt();
        }
        for (const auto& entry : loop.TakeEntries()) {
            if (history.Keep(entry)) editor.Remember(entry);
        }
        if (platform::ArrivedSignal() == SIGTERM) throw Interrupted();
        if (platform::ArrivedSignal() != 0) platform::ForgetSignal();
    }
}

void ReadLines(ShellLoop& loop) {
    input::InputFile file("-");
    input::LineReader lines(file);
    while (const auto line = lines.Next()) {
        ThrowIfInterrupted();
        if (!loop.Take(*line)) return;
        loop.TakeEntries();
    }
    loop.TakeRest();
}

std::unique_ptr<LineEditor> EditorFor(Session& session, const ShellLoop& loop, const History& history) {
    auto editor = LineEditor::Make([&session, &loop](const std::string& before) {
        return CompleteLine(before, loop.Pending(), session.Tables());
    });
    if (!editor) {
        TellLine("kpbook: " + Message("lines are not edited: Debian's libedit2 is not installed"));
        return nullptr;
    }
    for (const auto& line : history.Lines()) editor->Remember(line);
    return editor;
}

}  // namespace

void AddShell(CLI::App& app, ShellOptions& options) {
    auto* command = commands::AddCommand(
        app, "shell", "Work with a book statement by statement",
        "Statements of either dialect end with a semicolon and may have several lines. Commands begin with a point: .help\n"
        "lists them. The tab key completes commands, tables, columns and methods; the arrow keys bring back what was\n"
        "typed before, which kpbook/history in XDG_STATE_HOME keeps, but for passwords. Ctrl-C gives up a statement,\n"
        "Ctrl-D or .quit ends the shell. Without a terminal, lines are read from standard input.\n\n"
        "Examples:\n"
        "  kpbook shell shop.kpbook\n"
        "  echo .tables | kpbook shell shop.kpbook\n"
        "  kpbook shell shop.kpbook -O csv < questions.txt");
    commands::AddBook(*command, options.book);
}

int Shell(const ShellOptions& options, const GlobalOptions& global) {
    if (!global.outputPath.empty() || global.format == OutputFormat::Xlsx) {
        throw UsageError(Message("shell shows results as they come; -o and -O xlsx do not go with it"));
    }
    const bool atTerminal =
        platform::IsTerminal(platform::Stream::Input) && platform::IsTerminal(platform::Stream::Output);
    Session session(options.book, global);
    ShellLoop loop(session, atTerminal);
    History history;
    const auto editor = atTerminal ? EditorFor(session, loop, history) : nullptr;
    if (editor) {
        TellLine(Message(".help lists the commands; a semicolon ends a statement"));
        ReadTerminal(*editor, loop, history);
    } else {
        ReadLines(loop);
    }
    if (session.RollBackRest()) return kFailed;
    return session.HasFailed() && !atTerminal ? kFailed : kSucceeded;
}

}  // namespace kpTables::kpbook::shell
