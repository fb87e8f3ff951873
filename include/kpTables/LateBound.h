// CTables by name: the default interface _CTables as data.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Variant.h"

namespace kpTables {

class CTables;

/// The default dispatch interface as one table: the properties, then every method, subsystem by subsystem. Calls by
/// name, the COM server, the command line and the help texts read it. Its name is the system's own, although C++
/// reserves such names.
class _CTables {
public:
    enum class MemberKind { PropertyGet, PropertyLet, PropertySet, Method };
    enum class ValueType {
        None,
        Integer,
        Long,
        Double,
        Currency,
        Date,
        String,
        Boolean,
        Variant,
        VariantArray,
        Object,  ///< a grid or another object of the host
        Recordset,
        Connection,
    };
    struct Parameter {
        std::string name;
        ValueType type;
        bool inOut = false;
        bool optional = false;
        /// Its text (an array's: those of its elements) stands unchanged in a statement that the method sends: a quote
        /// in it must be doubled (Quoted.h), or it ends the text there and the rest is read as SQL.
        bool pasted = false;
        bool secret = false;  ///< a password: not for logs and messages
    };
    struct Member {
        std::string_view name;
        MemberKind kind;
        std::string_view subsystem;  ///< "Component frame", "Bills", ...
        std::string_view answers;    ///< one line: what it answers or does
        std::vector<Parameter> parameters;
        ValueType result;
        /// Takes one argument per parameter, Missing for an omitted one.
        Variant (*function)(CTables& tables, const Member& self, std::span<Variant> arguments);
    };

    static std::span<const Member> Members();
    /// The member of that name and kind, ignoring ASCII case; nullptr when there is none.
    static const Member* Find(std::string_view name, MemberKind kind = MemberKind::Method);
    /// Calls a method by name. Error 438 for an unknown name; otherwise as Invoke.
    static Variant Call(CTables& tables, std::string_view name, std::span<Variant> arguments);
    /// Calls a member, a property's accessor included. Arguments are converted to the parameters' types; in/out ones
    /// are written back in place, in the parameter's type, also when the method fails. Missing or omitted optional
    /// arguments become 0, "", False or Nothing. Error 450 for too many arguments, 449 for a missing one that is not
    /// optional, and what the conversion raises (6, 13, 94); the error names the parameter.
    static Variant Invoke(CTables& tables, const Member& member, std::span<Variant> arguments);
    /// "Close_DepotBalance(rdpID As Long, rMonth As Integer, rCostUsed As Boolean (in/out), ...) As Boolean".
    static std::string Signature(const Member& member);
    /// "Long", "Variant()", ...; "" for no value.
    static std::string_view TypeText(ValueType type);
};

}  // namespace kpTables
