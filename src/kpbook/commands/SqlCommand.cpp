#include "kpbook/commands/SqlCommand.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>

#include "kpTables/Script.h"
#include "kpTables/Transaction.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/Interruption.h"
#include "kpbook/Suggestion.h"
#include "kpbook/Terminal.h"
#include "kpbook/Utf8.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/input/ArgumentText.h"
#include "kpbook/input/InputFile.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// A whole number is bound as one, so that it can be the number of a TOP.
Variant WholeIfItIs(const Variant& value) {
    const double* number = value.If<double>();
    const bool fits = number && std::fabs(*number) <= std::numeric_limits<std::int32_t>::max();
    return fits && *number == std::nearbyint(*number) ? Variant(static_cast<std::int32_t>(*number)) : value;
}

NamedValues ReadParameters(const std::vector<std::string>& words) {
    NamedValues values;
    for (const std::string& word : words) {
        const auto sign = word.find('=');
        if (sign == 0 || sign == word.npos) throw UsageError(Message("--param takes NAME=VALUE, not '{1}'", word));
        values.push_back({word.substr(0, sign), WholeIfItIs(input::ReadArgument(word.substr(sign + 1)))});
    }
    return values;
}

std::string ReadScript(const std::string& path) {
    constexpr std::size_t kPiece = 1 << 16;
    input::InputFile file(path);
    std::string text;
    for (std::size_t count = kPiece; count > 0;) {
        const std::size_t size = text.size();
        text.resize(size + kPiece);
        count = file.Read(text.data() + size, kPiece);
        text.resize(size + count);
    }
    if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
    if (!IsValidUtf8(text)) throw CommandError(Message("{1}: the text is not valid UTF-8", path));
    return text;
}

/// Runs the statements of a script, one after the other, until one fails.
class ScriptRun {
public:
    ScriptRun(Workspace& workspace, const SqlOptions& options, const GlobalOptions& global)
        : workspace_(workspace),
          global_(global),
          values_(ReadParameters(options.parameters)),
          name_(options.file.empty() || options.file == "-" ? Message("standard input") : options.file),
          keepsAll_(options.transaction) {}

    void Run(const std::vector<ScriptStatement>& statements) {
        for (const ScriptStatement& statement : statements) {
            ThrowIfInterrupted();
            RunOne(statement);
            ++done_;
        }
    }

    /// Writes the rows that wait for the file of -o.
    void WriteKept() {
        if (kept_.size() == 1) return output::WriteRecordset(*kept_.front().rows, global_);
        if (!kept_.empty()) output::WriteSections(kept_, global_);
    }

private:
    void RunOne(const ScriptStatement& statement) {
        RecordsetPtr rows;
        try {
            rows = ExecuteScript(*workspace_.connection, statement.text, values_);
        } catch (const DatabaseError& error) {
            // It is told once, with its place in the script.
            workspace_.connection->ForgetFailures();
            if (done_ > 0 && !keepsAll_ && workspace_.connection->Level() == 0) {
                TellLine("kpbook: " + Message("what the statements before line {1} did is kept", statement.line));
            }
            const DatabaseError placed = InScript(statement, WithSuggestion(error, *workspace_.book));
            throw DatabaseError(placed.Number(), name_ + ": " + placed.Description(), placed.Statement());
        }
        if (!rows) return workspace_.LogChange(statement.text);
        if (global_.outputPath.empty()) return output::WriteRecordset(*rows, global_);
        kept_.push_back({Message("line {1}", statement.line), rows});
    }

    Workspace& workspace_;
    const GlobalOptions& global_;
    NamedValues values_;
    std::string name_;
    bool keepsAll_;
    std::size_t done_ = 0;
    std::vector<output::Section> kept_;
};

/// Lets the texts end no transaction but their own, and begin none that they do not end.
template <class Action>
void RunInside(Workspace& workspace, int level, Action action) {
    struct Kept {
        bookkeeping::WatchedConnection& connection;
        ~Kept() { connection.KeepLevels(0); }
    };
    bookkeeping::WatchedConnection& connection = *workspace.connection;
    const Kept kept{connection};
    connection.KeepLevels(level);
    action();
    if (connection.Level() == level) return;
    while (connection.Level() > level) connection.RollbackTrans();
    throw CommandError(Message("the text ended inside a transaction that it began, which is rolled back"));
}

void RunText(Workspace& workspace, const SqlOptions& options, const GlobalOptions& global) {
    RecordsetPtr recordset;
    try {
        recordset = ExecuteScript(*workspace.connection, options.text, ReadParameters(options.parameters));
    } catch (const DatabaseError& error) {
        workspace.connection->ForgetFailures();
        throw WithSuggestion(error, *workspace.book);
    }
    if (!recordset) return workspace.LogChange(options.text);
    output::WriteRecordset(*recordset, global);
}

}  // namespace

void AddSql(CLI::App& app, SqlOptions& options) {
    auto* command = AddCommand(
        app, "sql", "Run statements of either dialect",
        "Statements as TEXT, of which the first result is shown and all or none are kept; or a script: a file (--file)\n"
        "or standard input (-), whose results are all shown. Semicolons end statements, comments are -- and /* */. A\n"
        "script ends at the first statement that fails; the error says its line. TEXT may have variables and conditions\n"
        "(DECLARE @n INT = 5; IF @n > 3 ...), and both BEGIN TRANSACTION, COMMIT and ROLLBACK.\n"
        "In statements, @NAME or :NAME stands for the value of --param NAME=VALUE, which is bound and never pasted\n"
        "into the text. VALUE is a text, or in a form of kpbook call: null: number:2.5 date:2004-03-07 currency:12.5\n"
        "bool:true.\n\n"
        "Examples:\n"
        "  kpbook sql shop.kpbook \"Select * From 仓库设置 Order by dpID\" -O csv\n"
        "  kpbook sql shop.kpbook \"Select * From 商品设置 Where 商品名称=@name\" --param name=水泥\n"
        "  kpbook sql shop.kpbook -f changes.sql --transaction");
    AddBook(*command, options.book);
    command->add_option("TEXT", options.text, "The statements, - for a script on standard input")
        ->check(kUtf8)
        ->type_name("");
    command->add_option("-f,--file", options.file, "Run the statements of a file")->type_name("FILE");
    command
        ->add_option("--param", options.parameters, "The value of @NAME and :NAME in the statements; may be repeated")
        ->check(kUtf8)
        ->allow_extra_args(false)
        ->type_name("NAME=VALUE");
    command->add_flag("--transaction", options.transaction,
                      "Keep the changes of all statements, or none when one of them failed");
}

void CheckSql(const CLI::App& command) {
    if (command.count("TEXT") + command.count("--file") != 1) {
        throw CLI::ValidationError(Message("sql takes either TEXT or --file FILE"));
    }
}

int Sql(const SqlOptions& options, const GlobalOptions& global) {
    const bool isScript = !options.file.empty() || options.text == "-";
    const auto script =
        isScript ? SplitScript(ReadScript(options.file.empty() ? "-" : options.file)) : std::vector<ScriptStatement>();
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    ScriptRun run(workspace, options, global);
    std::optional<Transaction> transaction;
    if (options.transaction) transaction.emplace(*workspace.connection);
    RunInside(workspace, transaction.has_value() ? 1 : 0, [&] {
        if (isScript) {
            run.Run(script);
        } else {
            RunText(workspace, options, global);
        }
    });
    if (transaction) transaction->Commit();
    run.WriteKept();
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
