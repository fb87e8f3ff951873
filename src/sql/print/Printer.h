// Prints bound statements for an engine.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "sql/Translation.h"
#include "sql/bind/Query.h"
#include "sql/print/Engine.h"
#include "sql/print/Piece.h"

namespace kpTables::sql::print {

/// Raises SqlError Unsupported for what the engine does not support.
Translation Print(const bind::BoundStatement& statement, const Engine& engine);

class Printer {
public:
    /// parameters: the numbers of the statement's parameters by their sequences.
    Printer(const Engine& engine, const std::map<int, int>& parameters) : engine_(engine), parameters_(parameters) {}

    std::string Statement(const bind::BoundStatement& statement);
    /// What follows the statement's own text; see Translation.
    std::vector<std::string> Further(const bind::BoundStatement& statement);
    std::optional<sql::ColumnChange> ColumnChange(const bind::BoundStatement& statement);

private:
    // Expressions
    Piece Term(const bind::Term& term);
    std::size_t LongChain(const std::vector<const bind::Term*>& spine) const;
    Piece Joined(const std::vector<const bind::Term*>& spine, std::size_t links, Piece first);
    Piece Compose(const bind::Term& term, std::vector<Piece> parts);
    Piece Condition(const bind::Term& term);
    Piece Case(const bind::CaseTerm& term, std::vector<Piece> parts) const;
    Piece Column(const bind::ColumnTerm& column);
    Piece Comparison(const bind::Comparison& term, std::vector<Piece> parts) const;
    Piece RowComparison(const bind::RowComparison& term, const std::vector<Piece>& parts) const;
    Piece Logic(const bind::Logic& term, std::vector<Piece> parts) const;
    /// over: the text of the window, "" for none.
    Piece Aggregate(const bind::Aggregate& term, std::vector<Piece> parts, const std::string& over = {}) const;
    Piece Window(const bind::WindowTerm& term, std::vector<Piece> parts);
    std::string WindowText(const bind::WindowTerm& term, std::vector<Piece> parts) const;
    Piece Membership(Piece operand, bool negated, Piece list) const;
    Piece CollatedTerm(const bind::Term& term);
    Piece Collated(const bind::Term& term, Piece piece) const;
    std::string SourceName(const bind::Source& source);

    // Queries
    std::string Query(const bind::Query& query);
    std::string QueryInParentheses(const bind::Query& query) { return "(" + Query(query) + ")"; }
    std::string Select(const bind::Select& select, bool labelled);
    std::string From(const std::vector<bind::TablePtr>& from);
    std::string Table(const bind::Table& table);
    std::string SourceText(const bind::Source& source);
    std::string Clause(std::string_view words, const bind::TermPtr& condition);
    std::string Groups(const bind::Select& select);
    std::string Items(const bind::Select& select, bool labelled);
    std::string Orders(const bind::Select& select);
    std::string Position(const bind::OrderKey& key) const;
    std::string Limit(const std::optional<bind::RowLimit>& limit, const std::string& unordered) const;

    // Statements
    std::string Insert(const bind::Insert& insert);
    std::string Update(const bind::Update& update);
    std::string Delete(const bind::Delete& erase);
    std::string SchemaChange(const bind::SchemaChange& change);
    std::string CreateTable(const CreateTableStatement& statement, const bind::SchemaChange& change);
    std::string CreateIndex(const CreateIndexStatement& statement, const bind::SchemaChange& change) const;
    std::vector<std::string> Defaults(const bind::SchemaChange& change);

    const Engine& engine_;
    const std::map<int, int>& parameters_;
    std::map<const bind::Source*, std::string> names_;
    int unnamed_ = 0;
};

}  // namespace kpTables::sql::print
