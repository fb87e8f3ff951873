// Texts for use between the quotes of a statement.
#pragma once

#include <string>
#include <string_view>

namespace kpTables {

/// The text with every quote (') doubled, for a parameter that is pasted between quotes ("O'Hara" becomes "O''Hara"),
/// and for statements that a host composes.
std::string Quoted(std::string_view text);
/// Whether a quote in the text would end the text in a statement: one that is not doubled.
bool HasLoneQuote(std::string_view text);

}  // namespace kpTables
