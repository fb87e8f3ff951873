#include "sql/parse/ScriptSteps.h"

#include <algorithm>
#include <initializer_list>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/Position.h"
#include "sql/parse/Keywords.h"
#include "sql/parse/Scanner.h"

namespace kpTables::sql::parse {

namespace {

constexpr std::string_view kBlankSigns = " \t\n\v\f\r";
constexpr int kDeepestStep = 50;

bool IsAmong(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::any_of(words.begin(), words.end(), [&](std::string_view each) { return SameWord(each, word); });
}

bool BeginsStatement(std::string_view word) {
    return IsAmong(word,
                   {"SELECT",  "INSERT", "UPDATE",  "DELETE", "CREATE", "ALTER",  "DROP",     "TRUNCATE", "TRANSFORM",
                    "WITH",    "SET",    "DECLARE", "IF",     "BEGIN",  "COMMIT", "ROLLBACK", "PRINT",    "EXEC",
                    "EXECUTE", "WHILE",  "RETURN",  "MERGE",  "USE",    "GRANT",  "REVOKE"});
}

class StepParser {
public:
    StepParser(std::string_view text, Dialect dialect) : text_(text) {
        Scanner scanner(text, {}, dialect);
        scanner.AllowAnyName();
        do pieces_.push_back(scanner.Next());
        while (pieces_.back().kind != TokenKind::End);
    }

    std::vector<ScriptStep> ParseAll() {
        std::vector<ScriptStep> steps = ParseSteps();
        if (!AtEnd()) Fail(Message("expected {1}", Translated("the statement's end")));
        return steps;
    }

private:
    const Lexeme& Piece(std::size_t ahead = 0) const { return pieces_[std::min(at_ + ahead, pieces_.size() - 1)]; }
    std::string_view Word(std::size_t ahead = 0) const {
        const Lexeme& piece = Piece(ahead);
        return piece.kind == TokenKind::Word ? text_.substr(piece.begin, piece.end - piece.begin) : std::string_view();
    }
    bool At(std::string_view word, std::size_t ahead = 0) const { return SameWord(Word(ahead), word); }
    bool AtSign(std::string_view sign, std::size_t ahead = 0) const {
        const Lexeme& piece = Piece(ahead);
        return piece.kind == TokenKind::Operator && text_.substr(piece.begin, piece.end - piece.begin) == sign;
    }
    /// "@name"; "@@name" is none.
    bool AtVariable(std::size_t ahead = 0) const {
        const Lexeme& piece = Piece(ahead);
        return piece.kind == TokenKind::Variable && text_[piece.begin] == '@' && text_[piece.begin + 1] != '@';
    }
    bool AtEnd() const { return Piece().kind == TokenKind::End; }

    [[noreturn]] void Fail(const std::string& complaint) const {
        const Lexeme& piece = Piece();
        throw SyntaxError(text_, piece.begin, text_.substr(piece.begin, piece.end - piece.begin), complaint);
    }
    [[noreturn]] void FailExpecting(const char* what) const { Fail(Message("expected {1}", Translated(what))); }

    /// Where a step ends that has no end of its own.
    bool AtStepEnd() const {
        return AtEnd() || AtSign(";") || (conditions_ > 0 && At("ELSE")) || (blocks_ > 0 && At("END"));
    }

    /// Takes pieces up to the first outside parentheses and cases that stop accepts.
    template <class Stop>
    Slice TakeUpTo(Stop stop) {
        Slice slice{Piece().begin, Piece().begin};
        int depth = 0;
        int cases = 0;
        for (; !AtEnd(); ++at_) {
            if (depth == 0 && cases == 0 && stop()) break;
            if (AtSign("(")) ++depth;
            if (AtSign(")")) --depth;
            if (At("CASE")) ++cases;
            if (At("END")) --cases;
            slice.end = Piece().end;
        }
        return slice;
    }
    Slice TakeStatement() {
        return TakeUpTo([&] { return AtStepEnd(); });
    }
    Slice TakeValue() {
        return TakeUpTo([&] { return AtStepEnd() || AtSign(",") || BeginsStatement(Word()); });
    }

    std::vector<ScriptStep> ParseSteps() {
        std::vector<ScriptStep> steps;
        while (!AtEnd() && !(blocks_ > 0 && At("END"))) {
            if (AtSign(";")) {
                ++at_;
            } else {
                steps.push_back(ParseStep());
            }
        }
        return steps;
    }

    ScriptStep ParseStep() {
        if (At("DECLARE")) return ParseDeclare();
        if (At("SET")) return AtVariable(1) ? ParseSet() : ParseOption();
        if (At("IF")) return ParseIf();
        if (At("BEGIN") && !IsAmong(Word(1), {"TRAN", "TRANSACTION", "WORK"}) && !AtSign(";", 1) &&
            Piece(1).kind != TokenKind::End)
            return ParseBlock();
        if (AtAssign()) return ParseAssign();
        ScriptStep step;
        if (IsAmong(Word(), {"BEGIN", "COMMIT", "ROLLBACK"})) step.kind = StepKind::Session;
        step.text = TakeStatement();
        if (step.text.IsEmpty()) FailExpecting(Translatable("a statement"));
        return step;
    }

    std::string NameOf(const Lexeme& piece) const {
        return std::string(text_.substr(piece.begin + 1, piece.end - piece.begin - 1));
    }
    bool IsDeclared(std::string_view name) const {
        return std::any_of(declared_.begin(), declared_.end(),
                           [&](const std::string& each) { return SameName(each, name); });
    }

    ScriptStep::Variable TakeVariable() {
        if (!AtVariable()) FailExpecting(Translatable("a variable such as @n"));
        ScriptStep::Variable variable{NameOf(Piece()), Piece().begin};
        ++at_;
        return variable;
    }

    ScriptStep ParseDeclare() {
        ScriptStep step;
        step.kind = StepKind::Declare;
        do {
            ++at_;
            ScriptStep::Variable variable = TakeVariable();
            if (IsDeclared(variable.name)) {
                --at_;
                Fail(Message("the variable @{1} is declared twice", variable.name));
            }
            declared_.push_back(variable.name);
            if (At("AS")) ++at_;
            if (At("TABLE") || At("CURSOR")) Fail(Message("a variable holds one value"));
            variable.type =
                TakeUpTo([&] { return AtStepEnd() || AtSign(",") || AtSign("=") || BeginsStatement(Word()); });
            if (variable.type.IsEmpty()) FailExpecting(Translatable("a type"));
            if (AtSign("=")) {
                ++at_;
                variable.value = TakeValue();
                if (variable.value.IsEmpty()) FailExpecting(Translatable("an expression"));
            }
            step.variables.push_back(std::move(variable));
        } while (AtSign(","));
        return step;
    }

    ScriptStep::Variable TakeAssignment(bool mayEndAtFrom) {
        ScriptStep::Variable variable = TakeVariable();
        if (!AtSign("=")) FailExpecting("'='");
        ++at_;
        variable.value = mayEndAtFrom ? TakeUpTo([&] {
            return AtStepEnd() || AtSign(",") || IsAmong(Word(), {"FROM", "WHERE", "ORDER"});
        })
                                      : TakeValue();
        if (variable.value.IsEmpty()) FailExpecting(Translatable("an expression"));
        return variable;
    }

    ScriptStep ParseSet() {
        ScriptStep step;
        step.kind = StepKind::Set;
        ++at_;
        step.variables.push_back(TakeAssignment(false));
        return step;
    }

    /// "SET NOCOUNT ON", behind which another statement may follow.
    ScriptStep ParseOption() {
        ScriptStep step;
        step.kind = StepKind::Session;
        step.text = {Piece().begin, Piece().end};
        for (int words = 0; words < 3 && !AtStepEnd(); ++words, ++at_) step.text.end = Piece().end;
        return step;
    }

    /// Pieces of "TOP n" or "TOP (n)" behind SELECT.
    std::size_t TopLength() const { return !At("TOP", 1) ? 0 : AtSign("(", 2) ? 4 : 2; }
    bool AtAssign() const {
        if (!At("SELECT")) return false;
        const std::size_t first = 1 + TopLength();
        return AtVariable(first) && AtSign("=", first + 1) && IsDeclared(NameOf(Piece(first)));
    }

    ScriptStep ParseAssign() {
        ScriptStep step;
        step.kind = StepKind::Assign;
        const std::size_t top = TopLength();
        if (top > 0) step.lead = {Piece(1).begin, Piece(top).end};
        at_ += top;
        do {
            ++at_;
            step.variables.push_back(TakeAssignment(true));
        } while (AtSign(","));
        step.rest = TakeStatement();
        return step;
    }

    ScriptStep ParseIf() {
        Deepen();
        ScriptStep step;
        step.kind = StepKind::If;
        ++at_;
        step.condition = TakeUpTo([&] { return AtStepEnd() || BeginsStatement(Word()); });
        if (step.condition.IsEmpty()) FailExpecting(Translatable("a condition"));
        ++conditions_;
        if (AtStepEnd()) FailExpecting(Translatable("a statement"));
        step.then.push_back(ParseStep());
        if (AtSign(";") && At("ELSE", 1)) ++at_;
        --conditions_;
        if (At("ELSE")) {
            ++at_;
            if (AtEnd() || AtSign(";")) FailExpecting(Translatable("a statement"));
            step.otherwise.push_back(ParseStep());
        }
        --depth_;
        return step;
    }

    ScriptStep ParseBlock() {
        Deepen();
        ScriptStep step;
        step.kind = StepKind::Block;
        ++at_;
        const int conditions = std::exchange(conditions_, 0);
        ++blocks_;
        step.then = ParseSteps();
        if (!At("END")) FailExpecting("END");
        ++at_;
        --blocks_;
        conditions_ = conditions;
        --depth_;
        return step;
    }

    void Deepen() {
        if (++depth_ > kDeepestStep) Fail(Message("the statement is nested too deeply"));
    }

    std::string_view text_;
    std::vector<Lexeme> pieces_;
    std::size_t at_ = 0;
    int depth_ = 0;
    int conditions_ = 0;  ///< enclosing IFs, whose ELSE ends a step
    int blocks_ = 0;
    std::vector<std::string> declared_;
};

}  // namespace

std::vector<ScriptStep> ParseScript(std::string_view text, Dialect dialect) {
    return StepParser(text, dialect).ParseAll();
}

bool MayHaveSteps(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlankSigns);
    if (first == text.npos) return false;
    text.remove_prefix(first);
    const std::string_view word = text.substr(0, text.find_first_of(" \t\n\v\f\r;(@"));
    if (SameWord(word, "PARAMETERS")) return false;
    if (IsAmong(word, {"SET", "DECLARE", "IF", "BEGIN", "COMMIT", "ROLLBACK"})) return true;
    if (text.starts_with("--") || text.starts_with("/*")) return true;
    const std::size_t semicolon = text.find(';');
    return semicolon != text.npos && text.find_first_not_of(kBlankSigns, semicolon + 1) != text.npos;
}

}  // namespace kpTables::sql::parse
