// The values of a statement's parameters, as drivers take them.
#pragma once

#include <deque>
#include <string>

#include "engines/odbc/Library.h"
#include "kpTables/Variant.h"

namespace kpTables::engines::odbc {

/// The server's type of what a parameter is compared with or stored in; unknown where nobody knows.
struct ParameterType {
    SQLSMALLINT type = SQL_UNKNOWN_TYPE;
    SQLULEN size = 0;
    SQLSMALLINT digits = 0;
};

/// Values in the order of the markers in a statement. They must live until the statement has run.
class Parameters {
public:
    /// Null, a Boolean, a number, a Date or a String; error 13 for any other.
    void Add(const Variant& value, const ParameterType& column = {});

private:
    friend class Query;

    struct Bound {
        SQLSMALLINT valueType = SQL_C_CHAR;
        ParameterType type = {};
        SQLPOINTER data = nullptr;
        mutable SQLLEN length = 0;  ///< in bytes, or SQL_NULL_DATA; drivers get its address
        SQLLEN room = 0;
        // What data points to.
        std::u16string text = {};
        std::string decimals = {};
        SQLINTEGER whole = 0;
        double real = 0;
        unsigned char flag = 0;
        SQL_TIMESTAMP_STRUCT moment = {};
    };
    void Set(Bound& bound, const Variant& value);

    std::deque<Bound> bound_;
};

}  // namespace kpTables::engines::odbc
