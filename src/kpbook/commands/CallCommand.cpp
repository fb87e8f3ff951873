#include "kpbook/commands/CallCommand.h"

#include <functional>
#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/LateBound.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/PastedValues.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/input/ArgumentText.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

using Parameter = _CTables::Parameter;
using ValueType = _CTables::ValueType;

/// The value converted to the parameter's type.
Variant Converted(const Variant& value, ValueType type) {
    switch (type) {
        case ValueType::Integer:
            return CInt(value);
        case ValueType::Long:
            return CLng(value);
        case ValueType::Double:
            return CDbl(value);
        case ValueType::Currency:
            return CCur(value);
        case ValueType::Date:
            return CDate(value);
        case ValueType::String:
            return CStr(value);
        case ValueType::Boolean:
            return CBool(value);
        default:
            return value;
    }
}

/// Omitted arguments that may be written back are passed as Empty, so that their new values can be shown.
void AddWrittenBack(const std::vector<Parameter>& parameters, std::vector<Variant>& arguments) {
    for (std::size_t i = arguments.size(); i < parameters.size(); ++i) {
        if (!parameters[i].optional) return;
        arguments.push_back(parameters[i].inOut ? Variant() : Variant::Missing());
    }
}

void ShowWrittenBack(const std::vector<Parameter>& parameters, const std::vector<Variant>& before,
                     const std::vector<Variant>& after) {
    for (std::size_t i = 0; i < parameters.size() && i < after.size(); ++i) {
        if (!parameters[i].inOut || after[i].Is(Converted(before[i], parameters[i].type))) continue;
        TellLine(std::string(parameters[i].name) + " = " + output::CellText(after[i]));
    }
}

/// Makes the call in a transaction, which is kept when nothing in the call failed. False when it was rolled back.
bool CallAllOrNothing(Workspace& workspace, const ConsoleHost& host, const std::function<void()>& call) {
    workspace.connection->BeginTrans();
    const auto rollBack = [&] {
        workspace.connection->RollbackTrans();
        TellLine("kpbook: " + Message("the changes of the call were rolled back"));
    };
    try {
        call();
    } catch (...) {
        rollBack();
        throw;
    }
    if (!workspace.LogIncidents() && !host.HasReported()) {
        workspace.connection->CommitTrans();
        return true;
    }
    rollBack();
    return false;
}

}  // namespace

std::vector<Variant> ReadCallArguments(const CallOptions& options, IncidentLog& log) {
    std::vector<Variant> arguments;
    for (const auto& text : options.arguments) arguments.push_back(input::ReadArgument(text));
    const auto* method = _CTables::Find(options.method);
    if (const auto fault = method && !options.raw ? QuoteFault(*method, arguments) : ""; !fault.empty()) {
        throw UsageError(Message("{1} (--raw passes it on unchanged)", fault));
    }
    if (method) HideSecrets(*method, arguments, log);
    return arguments;
}

int RunCall(Workspace& workspace, const ConsoleHost& host, const CallOptions& options, std::vector<Variant> arguments,
            const GlobalOptions& global) {
    const auto* method = _CTables::Find(options.method);
    if (method) AddWrittenBack(method->parameters, arguments);
    const auto before = arguments;
    Variant result;
    const auto call = [&] {
        result = CallMember(workspace.tables, options.method, arguments);
        workspace.LogCall(options.method);
    };
    bool kept = true;
    if (options.transaction) {
        kept = CallAllOrNothing(workspace, host, call);
    } else {
        call();
    }
    if (method) ShowWrittenBack(method->parameters, before, arguments);
    output::WriteResult(options.method, result, global);
    return host.HasReported() || !kept ? kFailed : kSucceeded;
}

int Call(const CallOptions& options, const GlobalOptions& global) {
    auto arguments = ReadCallArguments(options, *global.incidents);
    const auto host = std::make_shared<ConsoleHost>(global.today, global.answer);
    Workspace workspace(options.book, host, global);
    return RunCall(workspace, *host, options, std::move(arguments), global);
}

}  // namespace kpTables::kpbook::commands
