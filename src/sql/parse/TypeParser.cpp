// The names of column types in both dialects.
#include <array>

#include "sql/parse/Keywords.h"
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

/// What a type's name means; a text type says whether a length may follow.
struct TypeRow {
    std::string_view name;
    Type type;
    bool counter = false;
    bool memo = false;
    bool fixed = false;
    int precision = 0;  ///< of a DECIMAL that gives none
};

constexpr bool kCounter = true;
constexpr bool kMemo = true;
constexpr bool kFixed = true;
constexpr int kDecimal = 18;
constexpr int kBigInt = 19;

constexpr std::array kTypes = {
    TypeRow{"COUNTER", Type::Long, kCounter},
    TypeRow{"AUTOINCREMENT", Type::Long, kCounter},
    TypeRow{"IDENTITY", Type::Long, kCounter},
    TypeRow{"LONG", Type::Long},
    TypeRow{"INTEGER", Type::Long},
    TypeRow{"INT", Type::Long},
    TypeRow{"INTEGER4", Type::Long},
    TypeRow{"SHORT", Type::Short},
    TypeRow{"SMALLINT", Type::Short},
    TypeRow{"INTEGER2", Type::Short},
    TypeRow{"BYTE", Type::Short},
    TypeRow{"TINYINT", Type::Short},
    TypeRow{"DOUBLE", Type::Double},
    TypeRow{"FLOAT", Type::Double},
    TypeRow{"FLOAT8", Type::Double},
    TypeRow{"NUMBER", Type::Double},
    TypeRow{"REAL", Type::Double},
    TypeRow{"SINGLE", Type::Double},
    TypeRow{"BIGINT", Type::Currency, false, false, false, kBigInt},
    TypeRow{"DECIMAL", Type::Currency, false, false, false, kDecimal},
    TypeRow{"DEC", Type::Currency, false, false, false, kDecimal},
    TypeRow{"NUMERIC", Type::Currency, false, false, false, kDecimal},
    TypeRow{"CURRENCY", Type::Currency},
    TypeRow{"MONEY", Type::Currency},
    TypeRow{"SMALLMONEY", Type::Currency},
    TypeRow{"DATETIME", Type::Date},
    TypeRow{"DATE", Type::Date},
    TypeRow{"TIME", Type::Date},
    TypeRow{"SMALLDATETIME", Type::Date},
    TypeRow{"DATETIME2", Type::Date},
    TypeRow{"YESNO", Type::Boolean},
    TypeRow{"LOGICAL", Type::Boolean},
    TypeRow{"BIT", Type::Boolean},
    TypeRow{"BOOLEAN", Type::Boolean},
    TypeRow{"TEXT", Type::Text},
    TypeRow{"VARCHAR", Type::Text},
    TypeRow{"NVARCHAR", Type::Text},
    TypeRow{"STRING", Type::Text},
    TypeRow{"CHAR", Type::Text, false, false, kFixed},
    TypeRow{"NCHAR", Type::Text, false, false, kFixed},
    TypeRow{"MEMO", Type::Text, false, kMemo},
    TypeRow{"LONGTEXT", Type::Text, false, kMemo},
    TypeRow{"NTEXT", Type::Text, false, kMemo},
};

constexpr int kDefaultLength = 255;  ///< of a text column that gives none
constexpr int kLongestText = 8000;

const TypeRow* FindType(const Token& token) {
    if (token.kind != TokenKind::Word) return nullptr;
    for (const TypeRow& row : kTypes)
        if (SameWord(row.name, token.text)) return &row;
    return nullptr;
}

/// "(1,1)", the only numbering that an engine gives.
void ParseNumbering(TokenCursor& cursor) {
    if (!cursor.AcceptOperator("(")) return;
    cursor.TakeNumber("1, the first number", 1, 1);
    cursor.ExpectOperator(",");
    cursor.TakeNumber("1, the step", 1, 1);
    cursor.ExpectOperator(")");
}

/// "(p)", "(p,s)", or nothing for (18,0).
void ParseDecimal(TokenCursor& cursor, TypeName& type) {
    constexpr int kMostDigits = 38;
    constexpr int kMostDecimals = 4;
    if (!cursor.AcceptOperator("(")) return;
    type.precision = cursor.TakeNumber("a number of digits from 1 to 38", 1, kMostDigits);
    if (cursor.AcceptOperator(",")) {
        const int most = type.precision < kMostDecimals ? type.precision : kMostDecimals;
        type.scale = cursor.TakeNumber("a number of decimals from 0 to 4, and no more than the digits", 0, most);
    }
    cursor.ExpectOperator(")");
}

void ParseLength(TokenCursor& cursor, TypeUse use, TypeName& type) {
    if (cursor.AtOperator("(") && cursor.At("MAX", 1)) {
        for (int i = 0; i < 2; ++i) cursor.Take();
        cursor.ExpectOperator(")");
        type.memo = true;
        type.fixed = false;
        return;
    }
    if (cursor.AcceptOperator("(")) {
        type.length = cursor.TakeNumber("a length from 1 to 8000", 1, kLongestText);
        cursor.ExpectOperator(")");
        return;
    }
    type.fixed = false;
    if (use == TypeUse::Column) type.length = kDefaultLength;
}

/// "FLOAT(53)", "DATETIME2(7)": a precision that the book's types have anyway.
void SkipPrecision(TokenCursor& cursor) {
    constexpr int kMostBits = 53;
    if (!cursor.AcceptOperator("(")) return;
    cursor.TakeNumber("a precision", 0, kMostBits);
    cursor.ExpectOperator(")");
}

}  // namespace

TypeName ParseTypeName(TokenCursor& cursor, TypeUse use) {
    const TypeRow* row = FindType(cursor.Peek());
    if (!row || (row->counter && use == TypeUse::Cast)) cursor.Fail("a type");
    cursor.Take();
    TypeName type;
    type.type = row->type;
    type.counter = row->counter;
    type.memo = row->memo;
    type.fixed = row->fixed;
    type.precision = row->precision;
    type.cuts = row->precision == kBigInt;
    if (use == TypeUse::Cast) {
        type.dayOnly = SameWord(row->name, "DATE");
        type.timeOnly = SameWord(row->name, "TIME");
    }
    if (row->precision == kDecimal) ParseDecimal(cursor, type);
    if (type.counter) ParseNumbering(cursor);
    if (type.type == Type::Text && !type.memo) ParseLength(cursor, use, type);
    if (SameWord(row->name, "FLOAT") || SameWord(row->name, "DATETIME2")) SkipPrecision(cursor);
    return type;
}

}  // namespace kpTables::sql::parse
