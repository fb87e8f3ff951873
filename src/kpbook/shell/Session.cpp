#include "kpbook/shell/Session.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"
#include "kpbook/Memory.h"
#include "kpbook/Names.h"
#include "kpbook/Suggestion.h"
#include "kpbook/Terminal.h"
#include "kpbook/commands/CallCommand.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/Headings.h"
#include "kpbook/output/ResultWriter.h"
#include "kpbook/shell/ShellSyntax.h"
#include "kpbook/shell/Words.h"
#include "platform/Terminal.h"

namespace kpTables::kpbook::shell {

namespace {

void AddColumns(MemoryRecordset& rows, const TableInfo& table) {
    for (const auto& column : table.columns) {
        rows.AddNew();
        rows.SetValue(0, table.name);
        rows.SetValue(1, column.name);
        rows.SetValue(2, output::TypeName(column.type));
        rows.SetValue(3, column.counter ? "counter" : column.required ? "required" : "");
        rows.SetValue(4, column.defaultValue.IsNull() ? Variant("") : Variant(Text(column.defaultValue)));
        rows.Update();
    }
}

}  // namespace

Session::Session(const std::string& book, const GlobalOptions& global)
    : global_(global),
      host_(std::make_shared<ConsoleHost>(global.today, global.answer)),
      workspace_(book, host_, global) {}

Session::~Session() { RollBackRest(); }

void Session::Tell(const std::string& failure) {
    hasFailed_ = true;
    TellLine(FailureMark() + (" " + global_.incidents->Shown(failure)));
}

void Session::Guarded(const std::function<void()>& action) {
    try {
        action();
        hasFailed_ = workspace_.LogIncidents() || hasFailed_;
    } catch (const Error& error) {
        auto incidents = workspace_.TakeIncidents();
        RemoveTold(incidents, error);
        global_.incidents->Add(incidents);
        Tell(error.Description());
    } catch (const std::bad_alloc&) {
        Tell(MemoryError().Description());
    } catch (const CommandError& error) {
        Tell(error.what());
    }
    platform::FlushText(platform::Stream::Output);
    global_.incidents->Tell();
}

void Session::Run(const std::string& text) {
    const auto rows = ExecuteScript(*workspace_.connection, text);
    if (rows) return output::WriteRecordset(*rows, global_);
    workspace_.LogChange(text);
}

void Session::RunStatement(const ScriptStatement& statement, bool inScript) {
    Guarded([&] {
        try {
            Run(statement.text);
        } catch (const DatabaseError& error) {
            workspace_.connection->ForgetFailures();
            const DatabaseError hinted = WithSuggestion(error, *workspace_.book);
            throw inScript ? InScript(statement, hinted) : hinted;
        }
    });
}

bool Session::RunCommand(const std::string& line) {
    bool quits = false;
    Guarded([&] {
        const auto words = SplitWords(line);
        quits = words.front() == ".quit" || words.front() == ".exit";
        if (!quits) Perform(words);
    });
    return !quits;
}

void Session::Perform(const std::vector<std::string>& words) {
    const std::string& name = words.front();
    const std::string word = words.size() > 1 ? words[1] : "";
    if (name == ".help") {
        for (const DotCommand& command : DotCommands()) {
            std::printf("%-36s %s\n", (std::string(command.name) + " " + std::string(command.words)).c_str(),
                        Translated(command.what));
        }
    } else if (name == ".tables") {
        ShowTables();
    } else if (name == ".schema") {
        ShowSchema(word);
    } else if (name == ".mode") {
        SetMode(word);
    } else if (name == ".dialect") {
        SetDialect(word);
    } else if (name == ".call") {
        Call(words);
    } else if (name == ".begin") {
        workspace_.connection->BeginTrans();
    } else if (name == ".commit") {
        workspace_.connection->CommitTrans();
    } else if (name == ".rollback") {
        workspace_.connection->RollbackTrans();
    } else {
        std::vector<std::string_view> names;
        for (const DotCommand& command : DotCommands()) names.push_back(command.name);
        throw CommandError(
            Message("there is no command {1}{2}; .help lists the commands", name, DidYouMean(name, names)));
    }
}

void Session::Call(const std::vector<std::string>& words) {
    if (words.size() < 2) throw CommandError(Message(".call takes a method and its arguments"));
    const commands::CallOptions options{"", words[1], {words.begin() + 2, words.end()}};
    commands::RunCall(workspace_, *host_, options, commands::ReadCallArguments(options, *global_.incidents), global_);
}

void Session::ShowTables() {
    MemoryRecordset rows({{output::Heading("table", global_.format), VarType::String},
                          {output::Heading("columns", global_.format), VarType::Long}});
    for (const TableInfo& table : workspace_.book->Tables()) {
        rows.AddNew();
        rows.SetValue(0, table.name);
        rows.SetValue(1, static_cast<std::int32_t>(table.columns.size()));
        rows.Update();
    }
    rows.MoveFirst();
    output::WriteRecordset(rows, global_);
}

void Session::ShowSchema(const std::string& name) {
    MemoryRecordset rows({{output::Heading("table", global_.format), VarType::String},
                          {output::Heading("column", global_.format), VarType::String},
                          {output::Heading("type", global_.format), VarType::String},
                          {output::Heading("key", global_.format), VarType::String},
                          {output::Heading("default", global_.format), VarType::String}});
    const auto tables = workspace_.book->Tables();
    std::vector<std::string_view> names;
    bool found = name.empty();
    for (const TableInfo& table : tables) {
        names.push_back(table.name);
        if (!name.empty() && !SameName(table.name, name)) continue;
        AddColumns(rows, table);
        found = true;
    }
    if (!found) throw CommandError(Message("there is no table {1}{2}", name, DidYouMean(name, names)));
    rows.MoveFirst();
    output::WriteRecordset(rows, global_);
}

void Session::SetMode(const std::string& mode) {
    const auto& choices = ChoicesOf(".mode");
    const auto found = std::ranges::find(choices, mode);
    constexpr OutputFormat kFormats[] = {OutputFormat::Table, OutputFormat::Csv, OutputFormat::Json,
                                         OutputFormat::Markdown};
    if (found == choices.end()) throw CommandError(Message(".mode takes table, csv, json or markdown"));
    global_.format = kFormats[found - choices.begin()];
}

void Session::SetDialect(const std::string& dialect) {
    if (dialect != "jet" && dialect != "sql") throw CommandError(Message(".dialect takes jet or sql"));
    workspace_.tables.isSQL(dialect == "sql");
    workspace_.connection->Dialect(DialectOf(dialect == "sql"));
}

std::vector<TableInfo> Session::Tables() {
    try {
        return workspace_.book->Tables();
    } catch (const Error&) {
        return {};
    }
}

bool Session::RollBackRest() {
    if (hasLostRest_ || workspace_.connection->Level() == 0) return false;
    TellLine("kpbook: " + Message("the shell ended inside a transaction, which is rolled back"));
    try {
        while (workspace_.connection->Level() > 0) workspace_.connection->RollbackTrans();
    } catch (const Error& error) {
        hasLostRest_ = true;
        Tell(error.Description());
    }
    return true;
}

}  // namespace kpTables::kpbook::shell
