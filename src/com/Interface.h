// A dispatch interface as data: one row a member.
#pragma once

#include <oaidl.h>

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kpTables/LateBound.h"

namespace kpTables::com {

class Scriptable;

/// The id of interfaces that are used late bound alone: nobody asks for them by an id of their own.
inline constexpr IID kLateBoundOnly = {};

using Arguments = std::span<Variant>;
using MemberKind = _CTables::MemberKind;
using ValueType = _CTables::ValueType;
using Parameter = _CTables::Parameter;

struct Row {
    std::string_view name;
    DISPID id;  ///< a property's accessors have the same
    MemberKind kind;
    std::vector<Parameter> parameters;
    ValueType result;
    /// Takes one argument per parameter, Missing for an omitted one, and writes in/out ones in place.
    Variant (*call)(Scriptable& self, const Row& row, Arguments arguments);
    std::size_t index = 0;  ///< its place among the rows
};

/// The kinds of members that a call may mean.
enum class Access { Read, Write };

class Interface {
public:
    Interface(const IID& iid, std::string_view name, std::vector<Row> rows);

    const IID& Iid() const noexcept { return iid_; }
    std::string_view Name() const noexcept { return name_; }
    std::span<const Row> Rows() const noexcept { return rows_; }
    const Row* Find(DISPID id, Access access) const noexcept;
    /// The ids of a member and its parameters (their positions), without regard to the case of A to Z;
    /// DISP_E_UNKNOWNNAME when one is not known.
    HRESULT GetIds(LPOLESTR* names, UINT count, DISPID* ids) const;

private:
    IID iid_;
    std::string_view name_;
    std::vector<Row> rows_;
    std::unordered_map<std::string, std::vector<std::size_t>> named_;  ///< rows by lower-case name
};

// Rows of an interface whose members are functions of T: Variant function(Arguments). Ids count from 1, by name.

/// Parameters from their names; "?" behind one marks it optional, "&" in/out, "!" an object, which otherwise counts by
/// its default property.
std::vector<Parameter> Parameters(std::initializer_list<std::string_view> names);

template <auto kFunction>
struct Caller;
template <class T, Variant (T::*kFunction)(Arguments)>
struct Caller<kFunction> {
    static Variant Call(Scriptable& self, const Row&, Arguments arguments) {
        return (static_cast<T&>(self).*kFunction)(arguments);
    }
};

template <auto kFunction>
Row Method(std::string_view name, DISPID id, std::initializer_list<std::string_view> parameters = {},
           ValueType result = ValueType::Variant) {
    return {name, id, MemberKind::Method, Parameters(parameters), result, &Caller<kFunction>::Call};
}
template <auto kFunction>
Row Get(std::string_view name, DISPID id, std::initializer_list<std::string_view> parameters = {},
        ValueType result = ValueType::Variant) {
    return {name, id, MemberKind::PropertyGet, Parameters(parameters), result, &Caller<kFunction>::Call};
}
template <auto kFunction>
Row Let(std::string_view name, DISPID id, std::initializer_list<std::string_view> parameters = {"value"}) {
    return {name, id, MemberKind::PropertyLet, Parameters(parameters), ValueType::None, &Caller<kFunction>::Call};
}

}  // namespace kpTables::com
