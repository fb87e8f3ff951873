#include <algorithm>
#include <utility>

#include "sql/rewrite/BillLines.h"
#include "sql/rewrite/BoundNames.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

bool IsZero(const ParameterTerm& literal) {
    const bool number = literal.literal == LiteralKind::Integer || literal.literal == LiteralKind::Decimal;
    return number && literal.text.find_first_not_of("0.") == std::string::npos;
}

class EagerAggregation {
public:
    EagerAggregation(Select& select, std::vector<int>& fixedLiterals)
        : select_(select), lines_(select), fixedLiterals_(fixedLiterals) {}

    void Apply() {
        if (!lines_.AreJoined() || lines_.AreReadByOthers() || select_.groupBy.empty()) return;
        if (ReadsOnlySums()) Rewrite();
    }

private:
    // With the bills' counter among the keys, each group is a single bill, whose lines the query adds up itself.
    bool IsBillKey(const Term& key) const {
        const auto* column = lines_.Meaning(key);
        return column && column->source == lines_.Bills() && column->source->columns[column->column].counter;
    }

    bool ReadsOnlySums() {
        bool only = std::none_of(select_.groupBy.begin(), select_.groupBy.end(),
                                 [this](const TermPtr& key) { return IsBillKey(*key); });
        for (const TermPtr& key : select_.groupBy) only = only && Reads(*key);
        for (const Output& item : select_.items) only = only && Reads(*item.term);
        if (select_.having) only = only && Reads(*select_.having);
        for (const OrderKey& key : select_.orderBy) only = only && Reads(*key.term);
        return only;
    }

    // Notes what an expression of the query reads; false when it needs single lines.
    bool Reads(const Term& expression) {
        std::vector<const Term*> open{&expression};
        while (!open.empty()) {
            const Term& term = *open.back();
            open.pop_back();
            if (const auto* aggregate = If<Aggregate>(&term)) {
                if (aggregate->function != AggregateFunction::Sum || aggregate->distinct) return false;
                if (!IsSummable(*aggregate->Argument())) return false;
                if (aggregate->Filter() && !lines_.ReadsNoLines(*aggregate->Filter())) return false;
                continue;
            }
            if (term.operands.empty() && !lines_.ReadsNoLines(term)) return false;
            if (term.kind == TermKind::InQuery) return false;
            for (const TermPtr& operand : term.operands) open.push_back(operand.get());
        }
        return true;
    }

    // A line's figure, or a CASE that yields that figure or nothing: its sum over a bill's lines is the same expression
    // of the figure's sum.
    bool IsSummable(const Term& term) {
        if (const auto* constant = If<ConstantTerm>(&term)) return constant->constantKind == ConstantKind::Null;
        if (const auto* literal = If<ParameterTerm>(&term)) {
            zeros_.push_back(literal->ordinal);
            return IsZero(*literal);
        }
        if (If<ColumnTerm>(&term)) {
            const auto* column = lines_.Meaning(term);
            if (!column || column->source != lines_.Lines()) return false;
            if (column->type != Type::Double && column->type != Type::Currency) return false;
            if (std::find(summed_.begin(), summed_.end(), column->column) == summed_.end())
                summed_.push_back(column->column);
            return true;
        }
        const auto* choice = If<CaseTerm>(&term);
        return choice && IsSummableChoice(*choice);
    }

    bool IsSummableChoice(const CaseTerm& choice) {
        std::size_t i = 0;
        if (choice.hasOperand && !lines_.ReadsNoLines(*choice.operands[i++])) return false;
        for (; i + 1 < choice.operands.size(); i += 2)
            if (!lines_.ReadsNoLines(*choice.operands[i]) || !IsSummable(*choice.operands[i + 1])) return false;
        return !choice.hasElse || IsSummable(*choice.operands.back());
    }

    // The lines' columns that the sums replace: the key, and then the summed ones.
    std::vector<std::size_t> Columns() const {
        std::vector<std::size_t> columns{lines_.Key()};
        columns.insert(columns.end(), summed_.begin(), summed_.end());
        return columns;
    }

    SourcePtr Sums() const {
        const Source& lines = *lines_.Lines();
        const SourcePtr table = bind::SourceOfTable(*lines.table, lines.table->name, {});
        Select sums;
        sums.grouped = true;
        sums.from.push_back(TableOf(table));
        const TermPtr key = ColumnOf(table, lines_.Key());
        sums.groupBy.push_back(key);
        for (const std::size_t i : Columns()) {
            const TermPtr column = ColumnOf(table, i);
            const bool isKey = i == lines_.Key();
            sums.items.push_back(
                {isKey ? column : std::make_shared<Aggregate>(AggregateFunction::Sum, column, nullptr, column->type),
                 table->columns[i].name});
        }
        SourcePtr source = SourceOf(std::make_shared<Query>(QueryOf(std::move(sums), QueryUse::Table)));
        source->name = lines.name;
        source->alias = lines.name;
        return source;
    }

    static TablePtr Replaced(const TablePtr& table, const SourcePtr& old, const SourcePtr& fresh) {
        if (table->source) return table->source == old ? TableOf(fresh) : table;
        return Joined(table->method, Replaced(table->left, old, fresh), Replaced(table->right, old, fresh), table->on);
    }

    // The query between shows only those columns of the lines that are summed.
    void DropUnread(Select& inner) const {
        if (&inner == &select_) return;
        std::erase_if(inner.items, [this](const Output& item) {
            const auto* column = If<ColumnTerm>(item.term);
            return column && column->source == lines_.Lines() &&
                   std::find(summed_.begin(), summed_.end(), column->column) == summed_.end();
        });
    }

    void Rewrite() {
        const SourcePtr lines = lines_.Lines();
        const SourcePtr sums = Sums();
        const auto columns = Columns();
        Select& inner = lines_.Inner();
        DropUnread(inner);
        inner.from.front() = Replaced(inner.from.front(), lines, sums);
        ChangeExpressions(inner, [&](const TermPtr& expression) {
            return Changed(expression, [&](const TermPtr& term) {
                const auto* column = If<ColumnTerm>(term);
                if (!column || column->source != lines) return term;
                const auto found = std::find(columns.begin(), columns.end(), column->column);
                return ColumnOf(sums, static_cast<std::size_t>(found - columns.begin()), term->offset);
            });
        });
        for (const int ordinal : zeros_) FixLiteral(fixedLiterals_, ordinal);
    }

    Select& select_;
    BillLines lines_;
    std::vector<int>& fixedLiterals_;
    std::vector<std::size_t> summed_;
    std::vector<int> zeros_;
};

}  // namespace

void AggregateEagerly(BoundStatement& statement) {
    if (!statement.query || statement.query->members.size() != 1) return;
    EagerAggregation(statement.query->members.front().select, statement.fixedLiterals).Apply();
}

}  // namespace kpTables::sql::rewrite
