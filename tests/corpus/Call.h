// Calls of the component's methods as the corpus writes them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "corpus/Corpus.h"
#include "kpTables/Variant.h"
#include "support/ScriptedConnection.h"

namespace kpTables::corpus {

struct Call {
    std::string method;
    std::vector<Variant> arguments;
};
/// Reads rs仓库余额表(2, 3). Invalid text is a std::runtime_error.
Call ParseCall(std::string_view text);
/// Reads one value: 5, 2.5, 5%, 1.25@, "text", #2004-03-07#, True, Null, Empty, Missing, Nothing, [1, "x"],
/// Grid("key"), Bar.
Variant ParseValue(std::string_view text);
/// Reads a statement's result rows; null for "none". A row that is added gets the id 7 in its first column.
RecordsetPtr ParseRows(std::string_view text);

/// The statements of a case as a scripted connection has them.
std::vector<test::Sent> Expected(const Case& each, bool isSQL);
std::vector<test::Sent> Expected(std::string_view call, std::string_view title = "", bool isSQL = false);
/// The same as the journal's entries.
test::Journal Entries(std::string_view call, std::string_view title = "", bool isSQL = false);

struct Outcome {
    std::vector<test::Sent> sent;
    Variant result;
    std::size_t boxesLeft = 0;  ///< answers to message boxes that were not used
};
/// Makes the call by name on a connection scripted by the case.
Outcome Run(const Case& each, bool isSQL);
/// What the case sends with other arguments. An error ends it, for they may lead past the case's script.
std::vector<test::Sent> SentWith(const Case& each, const std::vector<Variant>& arguments, bool isSQL);
/// The texts that a call sends on a connection that returns only empty recordsets. An error ends them.
std::vector<std::string> SentBy(std::string_view call, bool isSQL = false);

}  // namespace kpTables::corpus
