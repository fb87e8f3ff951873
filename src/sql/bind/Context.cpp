#include "sql/bind/Context.h"

#include <algorithm>
#include <charconv>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"

namespace kpTables::sql::bind {

void FixLiteral(std::vector<int>& fixedLiterals, int ordinal) {
    if (ordinal >= 0 && std::find(fixedLiterals.begin(), fixedLiterals.end(), ordinal) == fixedLiterals.end())
        fixedLiterals.push_back(ordinal);
}

std::shared_ptr<ParameterTerm> Context::Parameter(const Literal& literal, Binding binding, Type type) {
    return std::make_shared<ParameterTerm>(literal, binding, type, kSequenceStep * ++parameters_);
}

std::optional<bool> Context::FlagOfWord(const Column& word) const {
    if (!IsJet() || !word.table.empty()) return std::nullopt;
    if (SameName(word.name, "Yes") || SameName(word.name, "On")) return true;
    if (SameName(word.name, "No") || SameName(word.name, "Off")) return false;
    return std::nullopt;
}

Context::Doubling::Doubling(Context& context, std::size_t offset) : context_(context) {
    constexpr int kMost = 4;
    if (context.doublings_ == kMost)
        throw SqlError(ErrorKind::Syntax, Message("the statement is nested too deeply"), offset);
    ++context.doublings_;
}

const Context::Common* Context::FindCommon(std::string_view name) const {
    for (const Common& table : common_)
        if (SameName(table.name, name)) return &table;
    return nullptr;
}

long long Context::WholeNumber(const Expression& expression) {
    const auto* literal = sql::If<Literal>(&expression);
    long long value = 0;
    if (literal && literal->literal == LiteralKind::Integer) {
        const char* end = literal->text.data() + literal->text.size();
        const auto read = std::from_chars(literal->text.data(), end, value);
        if (read.ec == std::errc() && read.ptr == end) {
            Fix(*literal);
            return value;
        }
    }
    throw SqlError(ErrorKind::Syntax, Message("a whole number is expected"), expression.offset);
}

}  // namespace kpTables::sql::bind
