#include "query/Printer.h"

#include <cmath>
#include <string_view>

namespace kpTables::fuzz::query {

namespace {

std::string Bracketed(const std::string& text) { return '(' + text + ')'; }

/// The grammar that both texts share; what they say differently is virtual.
class Printer {
public:
    virtual ~Printer() = default;

    std::string Text(const Select& select) const {
        std::string text = select.distinct ? "SELECT DISTINCT " : "SELECT ";
        for (std::size_t i = 0; i < select.items.size(); ++i) {
            text += i > 0 ? ", " : "";
            text += Key(select.items[i].value) + " AS " + Name(select.items[i].alias);
        }
        text += " FROM " + Text(select.from);
        if (select.where) text += " WHERE " + Text(*select.where);
        for (std::size_t i = 0; i < select.groups.size(); ++i)
            text += (i > 0 ? ", " : " GROUP BY ") + Key(select.groups[i]);
        if (select.having) text += " HAVING " + Text(*select.having);
        if (select.united) return text + " " + select.joins + " " + Text(*select.united);
        const char* separator = " ORDER BY ";
        for (const auto& [item, descending] : select.order) {
            text += separator + Key(select.items[item].value) + (descending ? " DESC" : "");
            separator = ", ";
        }
        return text;
    }

protected:
    virtual std::string Name(const std::string& name) const = 0;
    virtual std::string Constant(const Expression& e) const = 0;
    virtual std::string BillDay(const std::string& alias) const = 0;
    virtual std::string Joined(const std::string& left, const std::string& right) const = 0;
    virtual std::string Choice(const std::string& condition, const std::string& yes, const std::string& no) const = 0;
    /// A value to be compared, grouped by or listed.
    virtual std::string Key(const Expression& e) const = 0;
    virtual std::string Between(const std::string& value, const std::string& one, const std::string& other) const {
        return value + " BETWEEN " + one + " AND " + other;
    }

    std::string Text(const Expression& e) const {
        const auto part = [&](std::size_t i) { return Text(e.parts[i]); };
        switch (e.node) {
            case Node::Column:
                return Name(e.table) + '.' + Name(e.text);
            case Node::Constant:
                return Constant(e);
            case Node::BillDay:
                return BillDay(e.table);
            case Node::Add:
                return Bracketed(part(0) + " + " + part(1));
            case Node::Subtract:
                return Bracketed(part(0) + " - " + part(1));
            case Node::Join:
                return Joined(part(0), part(1));
            case Node::Choice:
                return Choice(part(0), part(1), part(2));
            case Node::Sum:
                return "SUM(" + part(0) + ')';
            case Node::Count:
                return "COUNT(" + part(0) + ')';
            case Node::CountRows:
                return "COUNT(*)";
            case Node::Least:
                return "MIN(" + Key(e.parts[0]) + ')';
            case Node::Greatest:
                return "MAX(" + Key(e.parts[0]) + ')';
            default:
                return Bracketed(Condition(e));
        }
    }

private:
    std::string Condition(const Expression& e) const {
        const auto key = [&](std::size_t i) { return Key(e.parts[i]); };
        switch (e.node) {
            case Node::Compare:
                return key(0) + ' ' + e.text + ' ' + key(1);
            case Node::Between:
                return Between(key(0), key(1), key(2));
            case Node::InList:
                return key(0) + " IN (" + key(1) + ", " + key(2) + ", " + key(3) + ')';
            case Node::InQuery:
                return key(0) + " IN (" + Text(*e.query) + ')';
            case Node::IsNull:
                return Text(e.parts[0]) + " IS NULL";
            case Node::Exists:
                return "EXISTS (" + Text(*e.query) + ')';
            case Node::And:
                return Text(e.parts[0]) + " AND " + Text(e.parts[1]);
            case Node::Or:
                return Text(e.parts[0]) + " OR " + Text(e.parts[1]);
            default:
                return "NOT " + Text(e.parts[0]);
        }
    }

    std::string Text(const Source& source) const {
        if (source.query) return Bracketed(Text(*source.query)) + " AS " + Name(source.alias);
        if (source.join.empty()) return Name(source.table) + " AS " + Name(source.alias);
        const auto side = [&](const Source& each) { return each.join.empty() ? Text(each) : Bracketed(Text(each)); };
        return side(*source.left) + ' ' + source.join + " JOIN " + side(*source.right) + " ON " + Text(source.on);
    }
};

class HostPrinter final : public Printer {
    std::string Name(const std::string& name) const override { return name; }
    std::string Constant(const Expression& e) const override {
        if (e.kind == Kind::Text) return '\'' + e.text + '\'';
        return e.kind == Kind::Day ? '#' + e.text + '#' : e.text;
    }
    std::string BillDay(const std::string& alias) const override {
        return "CDATE(" + alias + ".年份 & '-' & " + alias + ".月份 & '-' & " + alias + ".日子)";
    }
    std::string Joined(const std::string& left, const std::string& right) const override {
        return Bracketed(left + " & " + right);
    }
    std::string Choice(const std::string& condition, const std::string& yes, const std::string& no) const override {
        return "IIf(" + condition + ", " + yes + ", " + no + ')';
    }
    std::string Key(const Expression& e) const override { return Text(e); }
};

class NaivePrinter final : public Printer {
    std::string Name(const std::string& name) const override { return '"' + name + '"'; }
    std::string Constant(const Expression& e) const override {
        constexpr double kTenThousandths = 10000;
        if (e.kind == Kind::Text || e.kind == Kind::Day) return '\'' + e.text + '\'';
        return e.kind == Kind::Money ? std::to_string(std::llround(std::stod(e.text) * kTenThousandths)) : e.text;
    }
    std::string BillDay(const std::string& alias) const override {
        const auto column = [&](const char* name) { return Name(alias) + '.' + Name(name); };
        const std::string parts = column("年份") + ", " + column("月份") + ", " + column("日子");
        return "CASE WHEN " + column("年份") + " + " + column("月份") + " + " + column("日子") +
               " IS NULL THEN NULL ELSE printf('%04d-%02d-%02d', " + parts + ") END";
    }
    std::string Joined(const std::string& left, const std::string& right) const override {
        return "CASE WHEN " + left + " IS NULL AND " + right + " IS NULL THEN NULL ELSE COALESCE(" + left +
               ", '') || COALESCE(" + right + ", '') END";
    }
    std::string Choice(const std::string& condition, const std::string& yes, const std::string& no) const override {
        return "CASE WHEN " + condition + " THEN " + yes + " ELSE " + no + " END";
    }
    std::string Key(const Expression& e) const override {
        return e.kind == Kind::Text ? Bracketed(Bracketed(Text(e)) + " COLLATE KPTEXT") : Bracketed(Text(e));
    }
    // Jet's bounds may stand the other way round.
    std::string Between(const std::string& value, const std::string& one, const std::string& other) const override {
        return Bracketed(Printer::Between(value, one, other)) + " OR " + Bracketed(Printer::Between(value, other, one));
    }
};

}  // namespace

std::string HostText(const Select& select) { return static_cast<const Printer&>(HostPrinter()).Text(select); }

std::string NaiveText(const Select& select) { return static_cast<const Printer&>(NaivePrinter()).Text(select); }

}  // namespace kpTables::fuzz::query
