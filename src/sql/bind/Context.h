// What the binding of one statement shares, and an expression's surroundings.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sql/Catalog.h"
#include "sql/Translation.h"
#include "sql/Tree.h"
#include "sql/bind/Query.h"
#include "sql/bind/Term.h"

namespace kpTables::sql::bind {

class Scope;

/// Notes that a statement's meaning depends on a literal's value.
void FixLiteral(std::vector<int>& fixedLiterals, int ordinal);

class Context {
public:
    Context(const Catalog& catalog, sql::Dialect dialect, std::vector<int>& fixedLiterals)
        : catalog_(catalog), dialect_(dialect), fixedLiterals_(fixedLiterals) {}
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    const Catalog& Tables() const noexcept { return catalog_; }
    bool IsJet() const noexcept { return dialect_ == sql::Dialect::Jet; }
    /// The table, or SqlError UnknownTable.
    const CatalogTable& Table(const std::string& name, std::size_t offset) const {
        return RequireTable(catalog_, name, offset);
    }

    /// A parameter bound to the literal's value.
    std::shared_ptr<ParameterTerm> Parameter(const Literal& literal, Binding binding, Type type);
    /// In Jet's dialect Yes, On, No and Off are flags, unless a column has that name.
    std::optional<bool> FlagOfWord(const Column& word) const;
    void Fix(const Literal& literal) { FixLiteral(fixedLiterals_, literal.ordinal); }
    /// The value of a whole-number literal that shapes the text (it is fixed), or SqlError Syntax.
    long long WholeNumber(const Expression& expression);

    /// Notes that the statement is not to be rewritten for speed; see BoundStatement.
    void KeepAsWritten() noexcept { staysAsWritten_ = true; }
    bool StaysAsWritten() const noexcept { return staysAsWritten_; }

    /// Lives while a comparison with ANY or ALL is bound. Each one binds its query twice, so only a few may be nested.
    class Doubling {
    public:
        Doubling(Context& context, std::size_t offset);
        ~Doubling() { --context_.doublings_; }
        Doubling(const Doubling&) = delete;
        Doubling& operator=(const Doubling&) = delete;

    private:
        Context& context_;
    };

    /// A query that WITH names.
    struct Common {
        std::string name;
        std::vector<std::string> columns;  ///< their names; empty: those of the query
        std::shared_ptr<Query> query;      ///< null while it is bound
        std::string label;                 ///< its name in the printed text
    };
    /// The list as a source; the statement gets it as one of its queries in WITH.
    SourcePtr ListOf(BookList list);
    std::vector<CommonQuery> TakeLists() { return std::move(lists_); }

    void AddCommon(Common table) { common_.push_back(std::move(table)); }
    std::vector<Common>& CommonTables() noexcept { return common_; }
    /// The query of that name, or nullptr.
    const Common* FindCommon(std::string_view name) const;

private:
    std::vector<Common> common_;
    std::vector<CommonQuery> lists_;
    const Catalog& catalog_;
    sql::Dialect dialect_;
    std::vector<int>& fixedLiterals_;
    int parameters_ = 0;
    bool staysAsWritten_ = false;
    int doublings_ = 0;
};

/// An expression's surroundings.
struct Place {
    Context& context;
    const Scope& scope;
    /// Why no aggregate is allowed here, nullptr when one is.
    const char* aggregateRefusal = nullptr;
    /// The condition of the rows that are aggregated, null for all.
    TermPtr aggregateFilter = nullptr;
    /// Notes a window function; nullptr where none is allowed.
    bool* windowed = nullptr;
    /// The window over which the aggregate to bind goes, or nullptr.
    const sql::Window* window = nullptr;
};

/// SqlError for an unknown name, an unknown function and incompatible operands. A literal is not yet a parameter: see
/// Settled.
TermPtr BindExpression(const Expression& expression, const Place& place);

/// A whole condition, for WHERE or an operand of AND.
TermPtr BindCondition(const Expression& expression, const Place& place);

}  // namespace kpTables::sql::bind
