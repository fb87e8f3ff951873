// Makes rows of the late-bound table from member functions, so that a signature is written once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/LateBound.h"

namespace kpTables::latebound {

using Member = _CTables::Member;
using MemberKind = _CTables::MemberKind;
using ValueType = _CTables::ValueType;

// Marshal<T>: the type's name in the table, and how a value of it is made from an argument that is not Missing.

template <class T, ValueType kName, T (*kConvert)(const Variant&)>
struct MarshalValue {
    static constexpr ValueType kType = kName;
    static T Take(const Variant& argument) { return kConvert(argument); }
};
template <class T>
struct Marshal;
template <>
struct Marshal<std::int16_t> : MarshalValue<std::int16_t, ValueType::Integer, &CInt> {};
template <>
struct Marshal<std::int32_t> : MarshalValue<std::int32_t, ValueType::Long, &CLng> {};
template <>
struct Marshal<double> : MarshalValue<double, ValueType::Double, &CDbl> {};
template <>
struct Marshal<Currency> : MarshalValue<Currency, ValueType::Currency, &CCur> {};
template <>
struct Marshal<Date> : MarshalValue<Date, ValueType::Date, &CDate> {};
template <>
struct Marshal<std::string> : MarshalValue<std::string, ValueType::String, &CStr> {};
template <>
struct Marshal<bool> : MarshalValue<bool, ValueType::Boolean, &CBool> {};

template <>
struct Marshal<Variant> {
    static constexpr ValueType kType = ValueType::Variant;
    static Variant Take(const Variant& argument) { return argument; }
};

template <>
struct Marshal<std::shared_ptr<VariantArray>> {
    static constexpr ValueType kType = ValueType::VariantArray;
    static std::shared_ptr<VariantArray> Take(const Variant& argument) {
        const auto* array = argument.If<std::shared_ptr<VariantArray>>();
        if (!array) Raise(ErrorNumber::TypeMismatch);
        return *array;
    }
};

/// Stands for an object that is no T: whatever is asked of it is error 438. The same object each time.
template <class T>
std::shared_ptr<T> Memberless();
template <>
std::shared_ptr<Grid> Memberless<Grid>();
template <>
std::shared_ptr<ProgressBar> Memberless<ProgressBar>();

/// Nothing is a null pointer; an object of another kind is a type mismatch, or, of those that are driven late-bound,
/// one that lacks every member.
template <class T>
std::shared_ptr<T> TakeObject(const Variant& argument) {
    const auto* object = argument.If<ObjectPtr>();
    if (!object) Raise(ErrorNumber::TypeMismatch);
    auto result = std::dynamic_pointer_cast<T>(*object);
    if (result || !*object) return result;
    if constexpr (std::is_same_v<T, Grid> || std::is_same_v<T, ProgressBar>) return Memberless<T>();
    Raise(ErrorNumber::TypeMismatch);
}

template <class T>
struct Marshal<std::shared_ptr<T>> {
    static constexpr ValueType kType = std::is_same_v<T, Connection>  ? ValueType::Connection
                                       : std::is_same_v<T, Recordset> ? ValueType::Recordset
                                                                      : ValueType::Object;
    static std::shared_ptr<T> Take(const Variant& argument) { return TakeObject<T>(argument); }
};

/// An object of the host's; the argument keeps it alive during the call.
template <class T>
struct Marshal<T*> {
    static constexpr ValueType kType = ValueType::Object;
    static T* Take(const Variant& argument) { return TakeObject<T>(argument).get(); }
};

// ByParameter<P>: what a parameter of type P holds while the method runs, and how it is passed.

template <class P>
struct ByParameter {
    using Value = std::remove_cvref_t<P>;
    static constexpr bool kInOut = false;
};
template <class T>
struct ByParameter<InOut<T>> {
    using Value = T;
    static constexpr bool kInOut = true;
};

/// Makes a parameter's value from its argument; an error names the parameter.
template <class P>
typename ByParameter<P>::Value TakeArgument(const _CTables::Parameter& parameter, const Variant& argument) {
    using Value = typename ByParameter<P>::Value;
    // A host may have no spelling of Nothing but Null.
    const bool absentObject =
        std::is_pointer_v<Value> && parameter.optional && (argument.IsEmpty() || argument.IsNull());
    if (argument.IsMissing() || absentObject) return Value{};
    try {
        return Marshal<Value>::Take(argument);
    } catch (const Error& error) {
        throw Error(error.Number(), error.Description() + ": " + parameter.name, error.Source());
    }
}

template <class P>
P Pass(typename ByParameter<P>::Value& value) {
    return P(value);
}

template <class P>
void WriteBack(Variant& argument, typename ByParameter<P>::Value& value) {
    if constexpr (ByParameter<P>::kInOut) {
        if constexpr (std::is_same_v<typename ByParameter<P>::Value, GridPtr>) {
            // The caller's variable keeps an object that is no grid.
            if (value && value == Memberless<Grid>()) return;
        }
        if (!argument.IsMissing()) argument = Variant(std::move(value));
    }
}

template <class Result, class... P>
struct Shape {
    static constexpr std::size_t kParameters = sizeof...(P);

    static constexpr ValueType ResultType() {
        if constexpr (std::is_void_v<Result>)
            return ValueType::None;
        else
            return Marshal<std::remove_cvref_t<Result>>::kType;
    }

    /// Names end in marks: "?" where the parameter is optional, "'" where its text is pasted into statements, "*" where
    /// it is a secret.
    template <class... Name>
    static std::vector<_CTables::Parameter> Parameters(Name... names) {
        return {MakeParameter<P>(names)...};
    }

    template <auto kFunction>
    static Variant Invoke(CTables& tables, const Member& self, std::span<Variant> arguments) {
        return InvokeWith<kFunction>(tables, self, arguments, std::index_sequence_for<P...>());
    }

private:
    template <class Each>
    static _CTables::Parameter MakeParameter(std::string_view name) {
        const auto marks = name.find_first_of("?'*");
        const auto has = [&](char mark) { return marks != name.npos && name.find(mark, marks) != name.npos; };
        return {std::string(name.substr(0, marks)),
                Marshal<typename ByParameter<Each>::Value>::kType,
                ByParameter<Each>::kInOut,
                has('?'),
                has('\''),
                has('*')};
    }

    template <auto kFunction, std::size_t... kIndex>
    static Variant InvokeWith(CTables& tables, [[maybe_unused]] const Member& self,
                              [[maybe_unused]] std::span<Variant> arguments, std::index_sequence<kIndex...>) {
        std::tuple<typename ByParameter<P>::Value...> values{
            TakeArgument<P>(self.parameters[kIndex], arguments[kIndex])...};
        const auto writeBack = [&] { (WriteBack<P>(arguments[kIndex], std::get<kIndex>(values)), ...); };
        Variant result;
        try {
            if constexpr (std::is_void_v<Result>)
                (tables.*kFunction)(Pass<P>(std::get<kIndex>(values))...);
            else
                result = Variant((tables.*kFunction)(Pass<P>(std::get<kIndex>(values))...));
        } catch (...) {
            // What a method wrote to its caller's variables before it failed stays there.
            writeBack();
            throw;
        }
        writeBack();
        return result;
    }
};

template <class Result, class... P>
Shape<Result, P...> ShapeOf(Result (CTables::*)(P...));
template <class Result, class... P>
Shape<Result, P...> ShapeOf(Result (CTables::*)(P...) const);

/// A row of the table, without its subsystem.
template <auto kFunction, class... Name>
Member MakeMember(std::string_view name, MemberKind kind, std::string_view answers, Name... parameters) {
    using Made = decltype(ShapeOf(kFunction));
    static_assert(Made::kParameters == sizeof...(Name), "one name for each parameter");
    return {name,
            kind,
            {},
            answers,
            Made::Parameters(parameters...),
            Made::ResultType(),
            &Made::template Invoke<kFunction>};
}

}  // namespace kpTables::latebound
