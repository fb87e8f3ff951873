// add, edit, remove and list: the rows that bills refer to.
#include <algorithm>
#include <cstdio>

#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/bookkeeping/MasterEntry.h"
#include "kpTables/text/Message.h"
#include "kpbook/Host.h"
#include "kpbook/Names.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::ColumnValue;
using bookkeeping::ColumnValues;
using bookkeeping::MasterKind;

/// What a command is about.
struct AskedMaster {
    std::optional<MasterKind> kind;  ///< nothing for a class of a kind that was not given
    ColumnValues values;             ///< without 种类
};

bool SaysClassKind(const ColumnValue& value) {
    return std::ranges::any_of(std::initializer_list<const char*>{"种类", "类别", "kind"},
                               [&](const char* name) { return SameName(value.column, name); });
}

ColumnValues ReadValues(const std::vector<std::string>& words) {
    ColumnValues values;
    for (const auto& word : words) {
        const auto sign = word.find('=');
        if (sign == word.npos || sign == 0) throw UsageError(Message("'{1}' is not of the form COLUMN=VALUE", word));
        values.push_back({word.substr(0, sign), Variant(word.substr(sign + 1))});
    }
    return values;
}

AskedMaster ReadAsked(const MasterOptions& options) {
    AskedMaster asked{bookkeeping::MasterKindOf(options.kind), ReadValues(options.values)};
    if (asked.kind) return asked;
    if (options.kind != "class" && options.kind != "分类") {
        throw UsageError(Message(
            "no kind of master row is called {1}; the kinds are warehouse, supplier, customer, product, project, employee, payment and class",
            options.kind));
    }
    const auto said = std::ranges::find_if(asked.values, SaysClassKind);
    if (said == asked.values.end()) return asked;
    const std::string word = Text(said->value);
    asked.kind = bookkeeping::ClassKindOf(word);
    if (!asked.kind) {
        throw UsageError(
            Message("no kind of class is called {1}; the kinds are {2}", word, bookkeeping::ClassKindWords()));
    }
    asked.values.erase(said);
    return asked;
}

void RefuseValues(const AskedMaster& asked) {
    if (!asked.values.empty()) throw UsageError(Message("{1}= is not taken here", asked.values.front().column));
}

/// An open book, and the row that a command is about.
struct MasterTarget {
    Workspace workspace;
    MasterKind kind;

    MasterTarget(const MasterOptions& options, const GlobalOptions& global, const AskedMaster& asked)
        : workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global),
          kind(asked.kind ? *asked.kind : bookkeeping::ClassKindWith(workspace.connection, options.which)) {
        workspace.Require(bookkeeping::RightToChange(kind));
    }

    /// The log's line of a change.
    std::string Line(const std::string& verb, const std::string& row, const std::vector<std::string>& values) const {
        std::string line = verb + " " + bookkeeping::MasterTableName(kind) + " " + row;
        for (const auto& value : values) line += " " + value;
        return line;
    }
};

RecordsetPtr AllClasses(const ConnectionPtr& book) {
    auto all = std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{
        {"种类", VarType::String}, {"ClassCode", VarType::String}, {"ClassName", VarType::String}});
    for (const char* kind : {"厂商", "客户", "项目", "部门", "商品"}) {
        const auto rows = bookkeeping::ListMasters(book, *bookkeeping::ClassKindOf(kind));
        for (; !rows->Eof(); rows->MoveNext()) {
            all->AddNew();
            all->SetValue(0, kind);
            all->SetValue(1, rows->Fields("ClassCode").Value());
            all->SetValue(2, rows->Fields("ClassName").Value());
            all->Update();
        }
    }
    if (all->RecordCount() > 0) all->MoveFirst();
    return all;
}

}  // namespace

int AddMasterRow(const MasterOptions& options, const GlobalOptions& global) {
    const AskedMaster asked = ReadAsked(options);
    if (!asked.kind)
        throw UsageError(Message("say what the class is for: 种类=, one of {1}", bookkeeping::ClassKindWords()));
    MasterTarget target(options, global, asked);
    std::int32_t id = 0;
    target.workspace.Change([&] {
        id = bookkeeping::AddMaster(target.workspace.connection, target.kind, asked.values);
        return target.Line("增加", std::to_string(id), options.values);
    });
    output::WriteResult("id", id, global);
    return kSucceeded;
}

int EditMasterRow(const MasterOptions& options, const GlobalOptions& global) {
    const AskedMaster asked = ReadAsked(options);
    MasterTarget target(options, global, asked);
    const auto& book = target.workspace.connection;
    const auto row = bookkeeping::MasterText(book, target.kind, options.which);
    target.workspace.Change([&] {
        bookkeeping::EditMaster(book, target.kind, options.which, asked.values);
        return target.Line("修改", row, options.values);
    });
    TellLine(Message("{1} {2}: changed", options.kind, row));
    return kSucceeded;
}

int RemoveMasterRow(const MasterOptions& options, const GlobalOptions& global) {
    const AskedMaster asked = ReadAsked(options);
    RefuseValues(asked);
    MasterTarget target(options, global, asked);
    const auto& book = target.workspace.connection;
    const auto row = bookkeeping::MasterText(book, target.kind, options.which);
    target.workspace.Change([&] {
        bookkeeping::RemoveMaster(book, target.kind, options.which);
        return target.Line("删除", row, {});
    });
    TellLine(Message("{1} {2}: removed", options.kind, row));
    return kSucceeded;
}

int ListMasterRows(const MasterOptions& options, const GlobalOptions& global) {
    const AskedMaster asked = ReadAsked(options);
    RefuseValues(asked);
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    const auto rows =
        asked.kind ? bookkeeping::ListMasters(workspace.connection, *asked.kind) : AllClasses(workspace.connection);
    output::WriteRecordset(*rows, global);
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
