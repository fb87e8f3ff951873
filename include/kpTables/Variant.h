// Visual Basic's Variant: one value of any type that a host passes or a field holds.
#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "kpTables/Currency.h"
#include "kpTables/Date.h"

namespace kpTables {

/// Base of everything that a Variant can hold by reference: recordsets, grids, progress bars.
class Object {
public:
    virtual ~Object() = default;

protected:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
};
using ObjectPtr = std::shared_ptr<Object>;

/// Types of a Variant, with VarType's numbers.
enum class VarType : std::uint16_t {
    Empty = 0,
    Null = 1,
    Integer = 2,  ///< 16-bit
    Long = 3,     ///< 32-bit
    Double = 5,
    Currency = 6,
    Date = 7,
    String = 8,    ///< UTF-8
    Object = 9,    ///< Nothing when the pointer is null
    Missing = 10,  ///< an omitted optional argument (VB holds it as an Error value)
    Boolean = 11,
    Array = 8204,  ///< array of Variant
};

class Variant;

/// An array of Variants with its own lower bound in each dimension; elements row by row (last index fastest).
struct VariantArray {
    struct Bound {
        std::int32_t lower = 0;
        std::int32_t count = 0;
    };
    std::vector<Bound> bounds;  ///< one per dimension
    std::vector<Variant> items;

    VariantArray() = default;
    /// One dimension from lower on.
    explicit VariantArray(std::vector<Variant> elements, std::int32_t lower = 0);
};

struct NullType {
    friend bool operator==(NullType, NullType) = default;
};
struct MissingType {
    friend bool operator==(MissingType, MissingType) = default;
};

class Variant {
public:
    Variant() noexcept = default;  ///< Empty
    Variant(NullType) noexcept : value_(NullType{}) {}
    Variant(MissingType) noexcept : value_(MissingType{}) {}
    Variant(bool value) noexcept : value_(value) {}
    Variant(std::int16_t value) noexcept : value_(value) {}
    Variant(std::int32_t value) noexcept : value_(value) {}
    Variant(double value) noexcept : value_(value) {}
    Variant(Currency value) noexcept : value_(value) {}
    Variant(Date value) noexcept : value_(value) {}
    Variant(std::string value) noexcept : value_(std::move(value)) {}
    Variant(std::string_view value) : value_(std::string(value)) {}
    Variant(const char* value) : value_(std::string(value)) {}
    Variant(ObjectPtr value) noexcept : value_(std::move(value)) {}
    Variant(std::nullptr_t) noexcept : value_(ObjectPtr()) {}  ///< Nothing
    Variant(std::shared_ptr<VariantArray> value) noexcept : value_(std::move(value)) {}
    /// Keeps a pointer to any other type from converting to True.
    template <class T>
    Variant(T*) = delete;
    template <class T>
    requires std::derived_from<T, Object> Variant(std::shared_ptr<T> value)
    noexcept : value_(ObjectPtr(std::move(value))) {}

    Variant(const Variant& other) : value_(CopyOf(other.value_)) {}
    Variant(Variant&&) noexcept = default;
    Variant& operator=(const Variant& other) {
        auto* const text = If<std::string>();
        const auto* const others = other.If<std::string>();
        if (text && others) {
            *text = *others;
        } else {
            value_ = CopyOf(other.value_);
        }
        return *this;
    }
    Variant& operator=(Variant&&) noexcept = default;
    ~Variant() = default;

    static Variant Null() noexcept { return Variant(NullType{}); }
    static Variant Missing() noexcept { return Variant(MissingType{}); }

    VarType Type() const noexcept;
    bool IsEmpty() const noexcept { return Type() == VarType::Empty; }
    bool IsNull() const noexcept { return Type() == VarType::Null; }
    bool IsMissing() const noexcept { return Type() == VarType::Missing; }

    /// The value without conversion: nullptr when another type is held.
    template <class T>
    const T* If() const noexcept {
        return std::get_if<T>(&value_);
    }
    template <class T>
    T* If() noexcept {
        return std::get_if<T>(&value_);
    }
    /// Same type and same value (Null is Null, 1% is not 1&). For Visual Basic's comparison see Convert.h.
    bool Is(const Variant& other) const;

private:
    using Value = std::variant<std::monostate, NullType, MissingType, bool, std::int16_t, std::int32_t, double,
                               Currency, Date, std::string, ObjectPtr, std::shared_ptr<VariantArray>>;

    /// A text is copied outside the variant: GCC 12's destroys a text that was never made when there is no memory for
    /// it.
    static Value CopyOf(const Value& value) {
        if (const auto* text = std::get_if<std::string>(&value)) return Value(std::string(*text));
        return value;
    }

    Value value_;
};

}  // namespace kpTables
