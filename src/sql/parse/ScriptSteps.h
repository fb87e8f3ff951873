// The steps of a text with several statements: its statements, variables and conditions.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "sql/Dialect.h"

namespace kpTables::sql::parse {

/// A part of the whole text, in bytes.
struct Slice {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool IsEmpty() const noexcept { return begin == end; }
};

enum class StepKind {
    Statement,  ///< to be run as it stands
    Session,    ///< BEGIN TRANSACTION, COMMIT, ROLLBACK or SET of an option
    Declare,    ///< DECLARE @name type [= value], ...
    Set,        ///< SET @name = value
    Assign,     ///< SELECT [TOP n] @name = value, ... [FROM ...]
    If,         ///< IF condition step [ELSE step]
    Block,      ///< BEGIN ... END
};

struct ScriptStep {
    /// Of Declare, Set and Assign.
    struct Variable {
        std::string name;    ///< without the sign
        std::size_t offset;  ///< of the sign
        Slice type = {};     ///< of Declare
        Slice value = {};    ///< empty where a declaration gives none
    };
    StepKind kind = StepKind::Statement;
    Slice text;  ///< of a Statement or a Session
    std::vector<Variable> variables = {};
    Slice lead = {};                    ///< of Assign: "TOP n" before the select list
    Slice rest = {};                    ///< of Assign: what follows the select list
    Slice condition = {};               ///< of If
    std::vector<ScriptStep> then = {};  ///< of If: one; of Block: any number
    std::vector<ScriptStep> otherwise = {};
};

/// Semicolons end the steps; DECLARE, SET, IF and BEGIN end by themselves. SqlError for an IF or a block without its
/// end, and for an ELSE or an END without its beginning; what is wrong inside a statement shows when it is run.
std::vector<ScriptStep> ParseScript(std::string_view text, Dialect dialect);

/// False where a look at the text tells that it is one statement to be run as it stands.
bool MayHaveSteps(std::string_view text);

}  // namespace kpTables::sql::parse
