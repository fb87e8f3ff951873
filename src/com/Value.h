// Values at the border: VARIANTs outside, Variants within.
#pragma once

#include <oaidl.h>

#include "kpTables/Variant.h"

namespace kpTables::com {

/// An owned VARIANT.
class Value : public VARIANT {
public:
    Value() noexcept { VariantInit(this); }
    /// An array of Variants is a SAFEARRAY of them, an object its dispatch interface.
    explicit Value(const Variant& value);
    Value(Value&& other) noexcept : Value() { swap(other); }
    Value& operator=(Value&& other) noexcept {
        Value taken(std::move(other));
        swap(taken);
        return *this;
    }
    ~Value() { VariantClear(this); }

    /// Gives the value away; *to is not freed before.
    void MoveTo(VARIANT* to) noexcept;

private:
    void swap(Value& other) noexcept;
};

/// The value, copied: through every reference, of arrays of any type. Error 13 for what a Variant cannot hold.
Variant FromVariant(const VARIANT& value);
/// The same as an argument for a parameter that takes a plain value: of an object its default property.
Variant PlainFromVariant(const VARIANT& value);
/// Whether it is or refers to an object or Nothing.
bool HoldsObject(const VARIANT& value) noexcept;

/// Writes a value to the variable that an argument refers to, converted to the variable's type (error 6 or 13); does
/// nothing for an argument that refers to none. A variable that holds an object or an array keeps it.
void WriteBack(const VARIANT& argument, const Variant& value);

}  // namespace kpTables::com
