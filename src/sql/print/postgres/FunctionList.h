// The functions that a translated text may call and that the server gets from us.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace kpTables::sql::print::postgres {

/// A function in the schema kp. Texts come and go as bpchar, which keeps trailing blanks; amounts are bigint, flags
/// smallint. Null in, Null out, unless the definition says otherwise.
struct ServerFunction {
    std::string_view name;        ///< the neutral name; a helper's begins with an underscore
    std::string_view parameters;  ///< "bpchar, integer"
    std::string_view result;
    std::string_view body;                     ///< one expression over $1, $2, ...
    std::string_view qualities = "IMMUTABLE";  ///< volatility
};

/// In the order in which they can be created. Functions of one name differ in their parameters.
std::span<const ServerFunction> ServerFunctions() noexcept;

/// A function that a server has with the extension alone, which brings its body. There it takes precedence over one of
/// the schema kp that answers less.
struct ExtensionFunction {
    std::string_view name;  ///< the neutral name
    std::string_view parameters;
    std::string_view result;
};

/// Functions of one name differ in their parameters.
std::span<const ExtensionFunction> ExtensionFunctions() noexcept;

/// How many "bpchar, integer" are.
std::size_t CountArguments(std::string_view parameters) noexcept;

/// The extension, and the schema of its functions.
inline constexpr std::string_view kExtension = "kptables";
/// Rises with every change of its functions. A later version has those of an earlier one.
inline constexpr int kExtensionVersion = 1;

/// The schema of the functions, of the domains and of the collation; one for all books of a database.
inline constexpr std::string_view kSharedSchema = "kp";
/// The domain of texts of any length; one with a limit is "text(20)".
inline constexpr std::string_view kTextDomain = "kp.text";
/// The domain of amounts, whole ten-thousandths, and that of flags, -1 and 0. DECIMAL(10,2) is an amount too, of the
/// domain "decimal(10,2)".
inline constexpr std::string_view kCurrencyDomain = "kp.currency";
inline constexpr std::string_view kFlagDomain = "kp.flag";
inline constexpr std::string_view kDateDomain = "kp.date";

/// Rises with every change of what is in the schema.
inline constexpr int kSharedSchemaVersion = 4;

/// The statements that make the schema kp anew or bring it up to date.
std::string_view SharedSchemaText();

}  // namespace kpTables::sql::print::postgres
