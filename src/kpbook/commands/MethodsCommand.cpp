#include "kpTables/Error.h"
#include "kpTables/LateBound.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/text/Message.h"
#include "kpbook/Names.h"
#include "kpbook/Suggestion.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

using Member = _CTables::Member;
using MemberKind = _CTables::MemberKind;

std::string_view KindText(MemberKind kind) {
    switch (kind) {
        case MemberKind::PropertyGet:
            return "Property Get";
        case MemberKind::PropertyLet:
            return "Property Let";
        case MemberKind::PropertySet:
            return "Property Set";
        default:
            return "Method";
    }
}

std::string Details(const Member& member) {
    std::string text = _CTables::Signature(member) + "\n";
    text += "  " + std::string(KindText(member.kind)) + ", " + std::string(member.subsystem) + "\n";
    text += "  " + std::string(member.answers) + "\n";
    for (const auto& parameter : member.parameters) {
        text += "    " + parameter.name + "  " + std::string(_CTables::TypeText(parameter.type));
        if (parameter.optional) text += Message(", optional");
        if (parameter.inOut) text += Message(", written back");
        if (parameter.pasted) text += Message(", pasted into a statement");
        text += '\n';
    }
    return text;
}

std::string Overview() {
    std::string text;
    std::string_view subsystem;
    for (const auto& member : _CTables::Members()) {
        if (member.subsystem != subsystem) {
            if (!text.empty()) text += '\n';
            subsystem = member.subsystem;
            text += std::string(subsystem) + "\n";
        }
        if (member.kind == MemberKind::PropertyLet || member.kind == MemberKind::PropertySet) continue;
        text += "  " + _CTables::Signature(member) + "\n      " + std::string(member.answers) + "\n";
    }
    return text;
}

/// The names of the parameters that are pasted into statements.
std::string PastedNames(const Member& member) {
    std::string names;
    for (const auto& parameter : member.parameters) {
        if (!parameter.pasted) continue;
        if (!names.empty()) names += ", ";
        names += parameter.name;
    }
    return names;
}

MemoryRecordset& Fill(MemoryRecordset& recordset, const std::vector<const Member*>& members) {
    for (const Member* member : members) {
        recordset.AddNew();
        recordset.SetValue(0, member->subsystem);
        recordset.SetValue(1, member->name);
        recordset.SetValue(2, KindText(member->kind));
        recordset.SetValue(3, _CTables::Signature(*member));
        recordset.SetValue(4, member->answers);
        recordset.SetValue(5, PastedNames(*member));
        recordset.Update();
    }
    recordset.MoveFirst();
    return recordset;
}

}  // namespace

int Methods(const MethodsOptions& options, const GlobalOptions& global) {
    std::vector<const Member*> members;
    for (const auto& member : _CTables::Members()) {
        if (options.name.empty() || SameName(member.name, options.name)) members.push_back(&member);
    }
    if (members.empty())
        throw CommandError(Message("there is no method {1}{2}", options.name, MethodMeant(options.name)));
    if (global.format != OutputFormat::Table) {
        MemoryRecordset recordset({{"subsystem", VarType::String},
                                   {"name", VarType::String},
                                   {"kind", VarType::String},
                                   {"signature", VarType::String},
                                   {"answers", VarType::String},
                                   {"pasted", VarType::String}});
        output::WriteRecordset(Fill(recordset, members), global);
        return kSucceeded;
    }
    output::Output output(global.outputPath);
    if (options.name.empty()) {
        output.Write(Overview());
    } else {
        for (const Member* member : members) output.Write(Details(*member));
    }
    output.Close();
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
