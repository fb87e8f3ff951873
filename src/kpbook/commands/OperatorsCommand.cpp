#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/Quoted.h"
#include "kpTables/bookkeeping/Masters.h"
#include "kpTables/bookkeeping/Operators.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/Names.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

/// All other columns are rights.
constexpr const char* kOtherColumns[] = {"ID", "姓名", "密码", "dpID"};

bool IsRight(const std::string& column) {
    return std::ranges::none_of(kOtherColumns, [&](const char* other) { return SameName(column, other); });
}

std::string RightsOf(const Recordset& row) {
    std::string rights;
    for (int i = 0; i < row.FieldCount(); ++i) {
        const auto& column = row.FieldAt(i).name;
        const auto value = row.GetValue(i);
        if (!IsRight(column) || value.IsNull() || !CBool(value)) continue;
        if (!rights.empty()) rights += "、";
        rights += column;
    }
    return rights;
}

void AddOperator(MemoryRecordset& list, Recordset& row, CTables& tables) {
    const auto warehouse = row.Fields("dpID").Value();
    list.AddNew();
    list.SetValue(0, row.Fields("ID").Value());
    list.SetValue(1, row.Fields("姓名").Value());
    list.SetValue(2, Text(row.Fields("密码").Value()).empty() ? Message("not set") : Message("set"));
    list.SetValue(3, warehouse);
    list.SetValue(4, warehouse.IsNull() ? std::string() : tables.Get仓库名称(CLng(warehouse)));
    list.SetValue(5, RightsOf(row));
    list.Update();
}

/// What the words of an action say.
struct OperatorWords {
    std::optional<std::string> name;
    std::optional<std::string> warehouse;
    std::vector<bookkeeping::RightChange> rights;
    bool all = false;   ///< give all rights
    bool none = false;  ///< take all rights
};

bool ReadSwitch(const std::string& right, const std::string& word) {
    for (const char* yes : {"yes", "on", "1", "是"}) {
        if (word == yes) return true;
    }
    for (const char* no : {"no", "off", "0", "否"}) {
        if (word == no) return false;
    }
    throw UsageError(Message("{1}= takes yes or no, not '{2}'", right, word));
}

OperatorWords ReadWords(const OperatorsOptions& options) {
    OperatorWords read;
    const bool isEdit = options.action == "edit";
    const bool takesRights = options.action == "add" || options.action == "rights";
    for (const std::string& word : options.words) {
        const auto sign = word.find('=');
        const std::string column = word.substr(0, sign);
        const std::string value = sign == word.npos ? "" : word.substr(sign + 1);
        if (sign != word.npos && isEdit && column == "姓名") {
            read.name = value;
        } else if (sign != word.npos && options.action != "rights" && (column == "仓库" || SameName(column, "dpID"))) {
            read.warehouse = value;
        } else if (!takesRights || column.empty()) {
            throw UsageError(Message("'{1}' is not taken here; see kpbook operators --help", word));
        } else if (word == "all" || word == "none") {
            (word == "all" ? read.all : read.none) = true;
        } else {
            read.rights.push_back({column, sign == word.npos || ReadSwitch(column, value)});
        }
    }
    if (isEdit && !read.name && !read.warehouse)
        throw UsageError(Message("say what to change: 姓名=NAME or 仓库=WAREHOUSE"));
    return read;
}

/// The line of the log.
std::string LogLine(const OperatorsOptions& options) {
    std::string line = "操作员 " + options.action + " " + options.name;
    for (const auto& word : options.words) line += " " + word;
    return line;
}

void ApplyWords(const Workspace& workspace, std::int32_t id, const OperatorWords& words) {
    const ConnectionPtr book = workspace.connection;
    if (words.name) bookkeeping::RenameOperator(book, id, *words.name);
    if (words.warehouse) {
        const bool isNone = words.warehouse->empty() || *words.warehouse == "0";
        bookkeeping::SetManagedWarehouse(
            book, id, isNone ? 0 : bookkeeping::MasterId(book, bookkeeping::MasterKind::Warehouse, *words.warehouse));
    }
    if (words.none) bookkeeping::ClearRights(book, id);
    std::vector<bookkeeping::RightChange> rights;
    if (words.all) {
        for (auto& right : bookkeeping::AllRights(book)) rights.push_back({std::move(right), true});
    }
    rights.insert(rights.end(), words.rights.begin(), words.rights.end());
    if (!rights.empty()) bookkeeping::ChangeRights(book, id, rights);
}

/// The rights of one operator, a row a right.
int ListRights(const OperatorsOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    const auto id = bookkeeping::OperatorId(workspace.connection, options.name);
    MemoryRecordset list({{"权限", VarType::String}, {"有", VarType::Boolean}});
    for (const auto& right : bookkeeping::AllRights(workspace.connection)) {
        list.AddNew();
        list.SetValue(0, right);
        list.SetValue(1, workspace.tables.Get操作权限(id, right));
        list.Update();
    }
    if (list.RecordCount() > 0) list.MoveFirst();
    output::WriteRecordset(list, global);
    return kSucceeded;
}

int AddNamed(Workspace& workspace, const OperatorsOptions& options, const GlobalOptions& global) {
    std::int32_t id = 0;
    workspace.Change([&] {
        id = bookkeeping::AddOperator(workspace.connection, options.name);
        ApplyWords(workspace, id, ReadWords(options));
        return LogLine(options);
    });
    output::WriteResult("ID", id, global);
    return kSucceeded;
}

/// Does what an action says to an operator of the book; answers the word for it.
std::string DoAction(Workspace& workspace, const OperatorsOptions& options, std::int32_t id,
                     const std::string& password) {
    const ConnectionPtr book = workspace.connection;
    if (options.action == "remove") {
        bookkeeping::RemoveOperator(book, id);
        return Message("removed");
    }
    if (options.action == "set-password") {
        bookkeeping::SetPassword(book, id, password);
        return Message("password set");
    }
    if (options.action == "clear-password") {
        bookkeeping::ClearPassword(book, id);
        return Message("password emptied");
    }
    ApplyWords(workspace, id, ReadWords(options));
    return Message("changed");
}

int ChangeOperator(Workspace& workspace, const OperatorsOptions& options, const GlobalOptions& global) {
    const auto id = bookkeeping::OperatorId(workspace.connection, options.name);
    const bool isOwnPassword = options.action == "set-password" && workspace.acting && workspace.acting->Id() == id;
    if (!isOwnPassword) workspace.Require(bookkeeping::rights::kSettings);
    std::string password;
    if (options.action == "set-password") {
        password = AskPassword(Message("no password was given; operators BOOK clear-password NAME empties one"));
        global.incidents->Hide(Quoted(password));
    }
    std::string done;
    workspace.Change([&] {
        done = DoAction(workspace, options, id, password);
        return LogLine(options);
    });
    TellLine(options.name + ": " + done);
    return kSucceeded;
}

int SetDemand(Workspace& workspace, const OperatorsOptions& options) {
    const std::string& word = options.name;
    if (word != "on" && word != "off") throw UsageError(Message("require takes on or off, not '{1}'", word));
    workspace.Change([&] {
        bookkeeping::RequireOperator(workspace.connection, word == "on");
        return LogLine(options);
    });
    TellLine(word == "on" ? Message("from now on, every change needs --operator")
                          : Message("changes need no operator"));
    return kSucceeded;
}

int ChangeOperators(const OperatorsOptions& options, const GlobalOptions& global) {
    ReadWords(options);
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    if (options.action != "add" && options.action != "require") return ChangeOperator(workspace, options, global);
    workspace.Require(bookkeeping::rights::kSettings);
    return options.action == "add" ? AddNamed(workspace, options, global) : SetDemand(workspace, options);
}

}  // namespace

int Operators(const OperatorsOptions& options, const GlobalOptions& global) {
    if (options.action == "rights" && options.words.empty()) return ListRights(options, global);
    if (!options.action.empty()) return ChangeOperators(options, global);
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    // rs操作员 would add an operator to an empty table, but listing must not change the book.
    const auto rows = workspace.connection->Execute("Select * From 操作员 Order By ID");
    MemoryRecordset list({{"ID", VarType::Long},
                          {"姓名", VarType::String},
                          {"密码", VarType::String},
                          {"dpID", VarType::Long},
                          {"仓库名称", VarType::String},
                          {"权限", VarType::String}});
    for (; !rows->Eof(); rows->MoveNext()) AddOperator(list, *rows, workspace.tables);
    if (list.RecordCount() > 0) list.MoveFirst();
    output::WriteRecordset(list, global);
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
