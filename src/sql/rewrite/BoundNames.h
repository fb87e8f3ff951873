// The bound tree's names, which hide the parse tree's from the rules.
#pragma once

#include "sql/bind/Context.h"
#include "sql/bind/Dependencies.h"
#include "sql/bind/Query.h"
#include "sql/bind/Scope.h"
#include "sql/bind/Term.h"
#include "sql/bind/Walk.h"

namespace kpTables::sql::rewrite {

using bind::Aggregate;
using bind::AggregateFunction;
using bind::AnyTerm;
using bind::As;
using bind::BetweenTerm;
using bind::BoundStatement;
using bind::Call;
using bind::CallTerm;
using bind::CaseTerm;
using bind::Changed;
using bind::ChangeExpressions;
using bind::ColumnOf;
using bind::ColumnTerm;
using bind::Compare;
using bind::Comparison;
using bind::ComparisonOperator;
using bind::Concatenation;
using bind::ConstantKind;
using bind::ConstantTerm;
using bind::DateOfParts;
using bind::Dependencies;
using bind::ExistsTerm;
using bind::FixLiteral;
using bind::ForEachExpression;
using bind::ForEachQuery;
using bind::ForEachTerm;
using bind::IdOf;
using bind::If;
using bind::IsWhole;
using bind::Joined;
using bind::JoinMethod;
using bind::LabelItems;
using bind::Likely;
using bind::Logic;
using bind::LogicOperator;
using bind::Mirrored;
using bind::NotTerm;
using bind::NumberConstant;
using bind::OrderKey;
using bind::Output;
using bind::ParameterTerm;
using bind::Query;
using bind::QueryOf;
using bind::QueryUse;
using bind::RowComparison;
using bind::RowIdTerm;
using bind::SameTerm;
using bind::Select;
using bind::SelectFrom;
using bind::Source;
using bind::SourceOf;
using bind::SourceOfTable;
using bind::SourcePtr;
using bind::SourcesOf;
using bind::Table;
using bind::TableOf;
using bind::TablePtr;
using bind::Term;
using bind::TermKind;
using bind::TermPtr;
using bind::Terms;
using bind::Update;
using bind::WithOperands;

}  // namespace kpTables::sql::rewrite
