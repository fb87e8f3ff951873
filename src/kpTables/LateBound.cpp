// Calls by name and the members' text forms.
#include "kpTables/LateBound.h"

#include <algorithm>

#include "kpTables/Error.h"
#include "text/Ascii.h"

namespace kpTables {

const _CTables::Member* _CTables::Find(std::string_view name, MemberKind kind) {
    const auto members = Members();
    const auto found = std::find_if(members.begin(), members.end(), [name, kind](const Member& member) {
        return member.kind == kind && text::EqualsIgnoringCase(member.name, name);
    });
    return found == members.end() ? nullptr : &*found;
}

Variant _CTables::Call(CTables& tables, std::string_view name, std::span<Variant> arguments) {
    const Member* member = Find(name);
    if (!member) Raise(ErrorNumber::UnknownMember, std::string(name));
    return Invoke(tables, *member, arguments);
}

Variant _CTables::Invoke(CTables& tables, const Member& member, std::span<Variant> arguments) {
    const auto& parameters = member.parameters;
    if (arguments.size() > parameters.size()) Raise(ErrorNumber::WrongArgumentCount, std::string(member.name));
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const bool missing = i >= arguments.size() || arguments[i].IsMissing();
        if (missing && !parameters[i].optional) Raise(ErrorNumber::ArgumentNotOptional, parameters[i].name);
    }
    if (arguments.size() == parameters.size()) return member.function(tables, member, arguments);

    std::vector<Variant> all(parameters.size(), Variant::Missing());
    std::copy(arguments.begin(), arguments.end(), all.begin());
    const auto handBack = [&] { std::copy_n(all.begin(), arguments.size(), arguments.begin()); };
    try {
        const Variant result = member.function(tables, member, all);
        handBack();
        return result;
    } catch (...) {
        handBack();
        throw;
    }
}

std::string _CTables::Signature(const Member& member) {
    std::string text(member.name);
    std::string_view separator = "(";
    for (const Parameter& each : member.parameters) {
        text += separator;
        text += each.name;
        text += " As ";
        text += TypeText(each.type);
        if (each.inOut && each.optional)
            text += " (in/out, optional)";
        else if (each.inOut)
            text += " (in/out)";
        else if (each.optional)
            text += " (optional)";
        separator = ", ";
    }
    text += member.parameters.empty() ? "()" : ")";
    if (member.result != ValueType::None) {
        text += " As ";
        text += TypeText(member.result);
    }
    return text;
}

std::string_view _CTables::TypeText(ValueType type) {
    switch (type) {
        case ValueType::None:
            return "";
        case ValueType::Integer:
            return "Integer";
        case ValueType::Long:
            return "Long";
        case ValueType::Double:
            return "Double";
        case ValueType::Currency:
            return "Currency";
        case ValueType::Date:
            return "Date";
        case ValueType::String:
            return "String";
        case ValueType::Boolean:
            return "Boolean";
        case ValueType::Variant:
            return "Variant";
        case ValueType::VariantArray:
            return "Variant()";
        case ValueType::Object:
            return "Object";
        case ValueType::Recordset:
            return "Recordset";
        case ValueType::Connection:
            return "Connection";
    }
    return "";
}

}  // namespace kpTables
