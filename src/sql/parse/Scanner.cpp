#include "sql/parse/Scanner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <initializer_list>
#include <list>
#include <optional>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/Position.h"
#include "sql/parse/Keywords.h"

namespace kpTables::sql::parse {

namespace {

constexpr std::uint32_t kWideBlank = 0x3000;
constexpr std::uint32_t kWideEqual = 0xFF1D;
constexpr std::string_view kWideBlankText = "\u3000";
constexpr std::string_view kLargestInteger = "2147483648";

struct Character {
    std::uint32_t code = 0;
    std::size_t length = 0;  ///< in bytes; 0 when the bytes are not valid UTF-8
};

unsigned char Byte(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

bool Continues(std::string_view text, std::size_t at) { return (Byte(text, at) & 0xC0) == 0x80; }

Character Decode(std::string_view text, std::size_t at) {
    const unsigned char lead = Byte(text, at);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || at + length > text.size()) return {};
    std::uint32_t code = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!Continues(text, at + i)) return {};
        code = code << 6 | (Byte(text, at + i) & 0x3Fu);
    }
    constexpr std::array<std::uint32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
    if (code < kSmallest[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return {};
    return {code, length};
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// What an ASCII character can be part of.
enum class Role : unsigned char { None, Blank, Name, Digit, Quote, DateSign, Bracket, VariableSign, Operator };

constexpr std::array<Role, 128> Roles() {
    std::array<Role, 128> roles{};
    const auto set = [&](std::string_view characters, Role role) {
        for (const char c : characters) roles[static_cast<unsigned char>(c)] = role;
    };
    set(" \t\n\v\f\r", Role::Blank);
    set("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_", Role::Name);
    set("0123456789", Role::Digit);
    set("'\"", Role::Quote);
    set("#", Role::DateSign);
    set("[`", Role::Bracket);
    set("@", Role::VariableSign);
    // Each is an operator of one character, with which no longer one begins.
    set("(),;*/\\^+&=%", Role::Operator);
    return roles;
}
constexpr auto kRoles = Roles();

/// None for what is not ASCII.
Role RoleAt(std::string_view text, std::size_t at) {
    const unsigned char byte = Byte(text, at);
    return byte < 0x80 ? kRoles[byte] : Role::None;
}

bool IsInName(Role role) { return role == Role::Name || role == Role::Digit; }

/// Every character from U+4000 to U+9FFF, most Chinese ones included, is part of a name.
bool IsIdeograph(std::string_view text, std::size_t at) {
    const unsigned char lead = Byte(text, at);
    return lead >= 0xE4 && lead <= 0xE9 && text.size() - at > 2 && Continues(text, at + 1) && Continues(text, at + 2);
}

/// Controls, the no-break space and the byte order mark are invisible and no part of a name.
bool IsInvisible(std::uint32_t code) { return code <= 0xA0 || code == 0xFEFF; }

bool FitsInteger(std::string_view digits) {
    const std::size_t first = digits.find_first_not_of('0');
    if (first == std::string_view::npos) return true;
    digits.remove_prefix(first);
    return digits.size() < kLargestInteger.size() ||
           (digits.size() == kLargestInteger.size() && digits <= kLargestInteger);
}

/// The length of the name character at this position, 0 when there is none.
std::size_t NameCharacterLength(std::string_view text, std::size_t at) {
    if (at >= text.size()) return 0;
    if (Byte(text, at) < 0x80) return IsInName(RoleAt(text, at)) ? 1 : 0;
    if (IsIdeograph(text, at)) return 3;
    const Character next = Decode(text, at);
    const bool other = IsInvisible(next.code) || next.code == kWideBlank || next.code == kWideEqual;
    return other ? 0 : next.length;
}

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::any_of(words.begin(), words.end(), [&](std::string_view each) { return SameWord(each, word); });
}

/// A value that is given as a text, as the declared type has it; nothing when it cannot be.
std::optional<LiteralValue> ValueOfType(LiteralValue value, std::string_view type) {
    const bool isText = value.kind == LiteralKind::Text;
    if (IsOneOf(type, {"DATETIME", "DATE", "TIME"})) {
        if (isText) value.kind = LiteralKind::Date;
    } else if (IsOneOf(type, {"TEXT", "CHAR", "VARCHAR", "STRING", "MEMO", "LONGTEXT"})) {
        if (value.kind == LiteralKind::Integer || value.kind == LiteralKind::Decimal) value.kind = LiteralKind::Text;
    } else if (isText) {
        double number = 0;
        const char* end = value.text.data() + value.text.size();
        const auto read = std::from_chars(value.text.data(), end, number);
        if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
        const bool whole = std::all_of(value.text.begin(), value.text.end(), IsDigit) && FitsInteger(value.text);
        value.kind = whole ? LiteralKind::Integer : LiteralKind::Decimal;
    }
    return value;
}

}  // namespace

bool IsBareName(std::string_view text) {
    if (text.empty() || IsDigit(text.front())) return false;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = NameCharacterLength(text, at);
        if (length == 0) return false;
        at += length;
    }
    return true;
}

void Scanner::Fail(std::size_t at, std::size_t length, const char* complaint) const {
    throw SyntaxError(text_, at, text_.substr(at, length), Translated(complaint));
}

bool Scanner::SkipBlanks() {
    const std::size_t start = at_;
    for (;;) {
        while (at_ < text_.size() && RoleAt(text_, at_) == Role::Blank) ++at_;
        if (at_ == text_.size()) return at_ > start;
        const char next = text_[at_];
        if (next == kWideBlankText.front() && text_.substr(at_).starts_with(kWideBlankText))
            at_ += kWideBlankText.size();
        else if ((next != '-' && next != '/') || !SkipComment())
            return at_ > start;
    }
}

bool Scanner::SkipComment() {
    const std::string_view rest = text_.substr(at_);
    if (rest.starts_with("/*")) {
        const std::size_t close = rest.find("*/", 2);
        if (close == std::string_view::npos) Fail(at_, 2, "the comment has no end");
        at_ += close + 2;
        return true;
    }
    if (!rest.starts_with("--")) return false;
    // 5--3 would turn the rest of the statement into a comment.
    if (DigitAt(at_ + 2)) Fail(at_, 2, "a comment does not begin with a digit; put a blank between two signs");
    at_ += std::min(rest.find('\n'), rest.size());
    return true;
}

std::size_t Scanner::NameCharacter(std::size_t at) const {
    const std::size_t length = NameCharacterLength(text_, at);
    if (length == 0 && at < text_.size() && Decode(text_, at).length == 0) Fail(at, 0, "the text is not valid UTF-8");
    return length;
}

std::size_t Scanner::EndOfName(std::size_t at) const {
    while (at < text_.size()) {
        const Role role = RoleAt(text_, at);
        if (IsInName(role)) {
            ++at;
        } else if (role != Role::None) {
            break;
        } else if (IsIdeograph(text_, at)) {
            at += 3;
        } else {
            const std::size_t length = NameCharacter(at);
            if (length == 0) break;
            at += length;
        }
    }
    return at;
}

Lexeme Scanner::Next() {
    Lexeme piece;
    const bool begins = at_ == 0;
    piece.blankBefore = SkipBlanks();
    if (begins && at_ < text_.size() && (text_[at_] | 0x20) == 'p') ScanDeclarations();
    piece.begin = piece.end = at_;
    if (at_ >= text_.size()) return piece;
    const bool touchesName = afterName_ && !piece.blankBefore;
    switch (RoleAt(text_, at_)) {
        case Role::Name:
            ScanName(piece);
            break;
        case Role::Digit:
            ScanNumber(piece);
            break;
        case Role::Quote:
            if (text_[at_] == '"' && dialect_ == Dialect::SqlServer)
                ScanQuotedName(piece);
            else
                ScanText(piece);
            break;
        case Role::DateSign:
            ScanDate(piece);
            break;
        case Role::Bracket:
            ScanQuotedName(piece);
            break;
        case Role::VariableSign:
            ScanVariable(piece);
            break;
        case Role::Operator:
            piece.kind = TokenKind::Operator;
            ++piece.end;
            break;
        default:
            if (text_[at_] == '.' && DigitAt(at_ + 1) && !touchesName)
                ScanNumber(piece);
            else if (NameCharacter(at_) > 0)
                ScanName(piece);
            else
                ScanOperator(piece);
    }
    at_ = piece.end;
    if (!declared_.empty()) ReplaceDeclared(piece);
    afterName_ = piece.kind == TokenKind::Word || piece.kind == TokenKind::QuotedName;
    return piece;
}

void Scanner::ScanName(Lexeme& piece) {
    const bool mayBeNational = (text_[piece.begin] | 0x20) == 'n' && piece.begin + 1 < text_.size();
    if (mayBeNational && text_[piece.begin + 1] == '\'') {
        ++piece.end;
        return ScanText(piece);
    }
    piece.kind = TokenKind::Word;
    piece.end = EndOfName(piece.end);
}

void Scanner::ScanQuotedName(Lexeme& piece) {
    const char sign = text_[piece.begin] == '[' ? ']' : text_[piece.begin];
    const std::array<char, 3> ends = {sign, '\r', '\n'};
    const std::size_t close = text_.find_first_of(std::string_view(ends.data(), ends.size()), piece.begin + 1);
    if (close == std::string_view::npos || text_[close] != sign)
        Fail(piece.begin, text_.size() - piece.begin,
             sign == ']' ? Translatable("the name has no closing bracket")
                         : Translatable("the name has no closing quote"));
    if (close == piece.begin + 1)
        Fail(piece.begin, 2,
             sign == ']' ? Translatable("expected a name in the brackets")
                         : Translatable("expected a name in the quotes"));
    for (std::size_t i = piece.begin + 1; i < close;) {
        const Character next = Decode(text_, i);
        if (next.length == 0) Fail(i, 0, "the text is not valid UTF-8");
        if (next.code < 0x20) Fail(piece.begin, close + 1 - piece.begin, "a name holds no control characters");
        i += next.length;
    }
    piece.kind = TokenKind::QuotedName;
    piece.end = close + 1;
}

void Scanner::ScanVariable(Lexeme& piece) {
    if (text_.substr(piece.begin, 2) != "@@") return ScanParameter(piece);
    piece.kind = TokenKind::Variable;
    piece.end += 2;
    if (NameCharacter(piece.end) == 0) Fail(piece.begin, 1, "expected a name such as @@IDENTITY");
    piece.end = EndOfName(piece.end);
    TakeGiven(piece);
}

void Scanner::ScanParameter(Lexeme& piece) {
    ++piece.end;
    if (!NameBeginsAt(piece.end)) Fail(piece.begin, 1, "expected a parameter's name after the sign");
    piece.end = EndOfName(piece.end);
    TakeGiven(piece);
    if (piece.given) return;
    if (!anyName_) Fail(piece.begin, piece.end - piece.begin, "no value is given for this parameter");
    piece.kind = TokenKind::Variable;
}

/// The value of the name, if there is one.
void Scanner::TakeGiven(Lexeme& piece) const {
    const std::string_view name = TextOf(piece).substr(1);
    for (const NamedLiteral& each : named_) {
        if (!piece.given && SameName(each.name, name)) piece.given = &each.value;
    }
    if (!piece.given) return;
    const bool word = piece.given->kind == LiteralKind::Null || piece.given->kind == LiteralKind::Boolean;
    piece.kind = word ? TokenKind::Word : TokenKind::Literal;
    piece.literal = piece.given->kind;
}

bool Scanner::NameBeginsAt(std::size_t at) const { return !DigitAt(at) && NameCharacter(at) > 0; }

std::string_view Scanner::TextOf(const Lexeme& piece) const {
    if (piece.given && piece.literal == LiteralKind::Null) return "NULL";
    if (piece.given && piece.literal == LiteralKind::Boolean) return piece.given->text;
    return text_.substr(piece.begin, piece.end - piece.begin);
}

/// "PARAMETERS name type, ...;" before a statement; its pieces are no part of it.
void Scanner::ScanDeclarations() {
    constexpr std::string_view kWord = "PARAMETERS";
    const std::size_t end = EndOfName(at_);
    if (!SameWord(text_.substr(at_, end - at_), kWord)) return;
    at_ = end;
    std::list<NamedLiteral> declared;
    for (bool goesOn = true; goesOn;) {
        const Lexeme name = Next();
        const bool quoted = name.kind == TokenKind::QuotedName;
        if (!quoted && name.kind != TokenKind::Word)
            Fail(name.begin, name.end - name.begin, "expected a parameter's name");
        std::string_view word = TextOf(name);
        if (quoted) word = word.substr(1, word.size() - 2);
        const Lexeme type = Next();
        const auto given = std::find_if(named_.begin(), named_.end(),
                                        [&](const NamedLiteral& each) { return SameName(each.name, word); });
        if (given == named_.end()) Fail(name.begin, name.end - name.begin, "no value is given for this parameter");
        auto value = ValueOfType(given->value, TextOf(type));
        if (!value) Fail(name.begin, name.end - name.begin, "the parameter's value is not of its type");
        declared.push_back({std::string(word), std::move(*value)});
        Lexeme next = Next();
        while (next.kind != TokenKind::End && TextOf(next) != "," && TextOf(next) != ";") {
            const bool length = TextOf(next) == "(";
            next = Next();
            for (; length && next.kind != TokenKind::End && TextOf(next) != ")";) next = Next();
            if (length && next.kind != TokenKind::End) next = Next();
        }
        goesOn = TextOf(next) == ",";
        if (next.kind == TokenKind::End) Fail(next.begin, 0, "expected ';' behind the parameters");
    }
    declared_ = std::move(declared);
    afterName_ = false;
    SkipBlanks();
}

/// A declared parameter's name, unless it is part of a longer name or calls a function.
void Scanner::ReplaceDeclared(Lexeme& piece) const {
    if (piece.kind != TokenKind::Word && piece.kind != TokenKind::QuotedName) return;
    const char next = piece.end < text_.size() ? text_[piece.end] : ' ';
    const char before = piece.begin > 0 ? text_[piece.begin - 1] : ' ';
    if (next == '.' || before == '.' || (next == '(' && piece.kind == TokenKind::Word)) return;
    std::string_view word = text_.substr(piece.begin, piece.end - piece.begin);
    if (piece.kind == TokenKind::QuotedName) word = word.substr(1, word.size() - 2);
    for (const NamedLiteral& each : declared_) {
        if (!SameName(each.name, word)) continue;
        piece.given = &each.value;
        const bool isWord = each.value.kind == LiteralKind::Null || each.value.kind == LiteralKind::Boolean;
        piece.kind = isWord ? TokenKind::Word : TokenKind::Literal;
        piece.literal = each.value.kind;
    }
}

void Scanner::ScanNumber(Lexeme& piece) {
    piece.kind = TokenKind::Literal;
    while (DigitAt(piece.end)) ++piece.end;
    bool whole = piece.end > piece.begin;
    if (piece.end < text_.size() && text_[piece.end] == '.' && DigitAt(piece.end + 1)) {
        whole = false;
        ++piece.end;
        while (DigitAt(piece.end)) ++piece.end;
    }
    if (piece.end < text_.size() && (text_[piece.end] == 'E' || text_[piece.end] == 'e')) {
        std::size_t exponent = piece.end + 1;
        if (exponent < text_.size() && (text_[exponent] == '+' || text_[exponent] == '-')) ++exponent;
        if (DigitAt(exponent)) {
            whole = false;
            while (DigitAt(exponent)) ++exponent;
            piece.end = exponent;
        }
    }
    piece.literal = whole && FitsInteger(TextOf(piece)) ? LiteralKind::Integer : LiteralKind::Decimal;
}

void Scanner::ScanText(Lexeme& piece) {
    piece.kind = TokenKind::Literal;
    piece.literal = LiteralKind::Text;
    std::size_t close = piece.end;
    const char quote = text_[close];
    do {
        close = text_.find(quote, close + 1);
        if (close == std::string_view::npos)
            Fail(piece.begin, text_.size() - piece.begin, "the text has no closing quote");
        piece.end = close + 1;
        close = piece.end;
    } while (close < text_.size() && text_[close] == quote);
}

void Scanner::ScanDate(Lexeme& piece) {
    piece.kind = TokenKind::Literal;
    piece.literal = LiteralKind::Date;
    const std::size_t close = text_.find_first_of("#'\r\n", piece.begin + 1);
    if (close == std::string_view::npos || text_[close] != '#')
        Fail(piece.begin, text_.size() - piece.begin, "the date has no closing #");
    piece.end = close + 1;
    bool blank = true;
    for (std::size_t i = piece.begin + 1; i < close;) {
        const Character next = Decode(text_, i);
        if (next.length == 0) Fail(i, 0, "the text is not valid UTF-8");
        blank = blank && next.code == ' ';
        i += next.length;
    }
    if (blank) Fail(piece.begin, piece.end - piece.begin, "expected a date between the # signs");
}

void Scanner::ScanOperator(Lexeme& piece) {
    constexpr std::array<std::string_view, 9> kLong = {"<>", "<=",      ">=",      "!=",    "!<",
                                                       "!>", "<\uFF1D", ">\uFF1D", "\uFF1D"};
    constexpr std::string_view kShort = ".-<>";
    piece.kind = TokenKind::Operator;
    const std::string_view rest = text_.substr(piece.begin);
    if (rest.front() == ':' && NameBeginsAt(piece.begin + 1)) return ScanParameter(piece);
    for (std::string_view spelling : kLong) {
        if (rest.substr(0, spelling.size()) != spelling) continue;
        piece.end += spelling.size();
        return;
    }
    // Access writes a column as [table]![column].
    const bool bang = rest.front() == '!' && afterName_ && !piece.blankBefore &&
                      (NameBeginsAt(piece.begin + 1) || rest.substr(1).starts_with('['));
    if (kShort.find(rest.front()) == std::string_view::npos && !bang) {
        const std::size_t length = Decode(text_, piece.begin).length;
        const bool visible = length > 1 || Byte(text_, piece.begin) > 0x20;
        Fail(piece.begin, visible ? length : 0, "a character that has no meaning in a statement");
    }
    ++piece.end;
}

std::string Scanner::ValueOf(const Lexeme& piece) const {
    if (piece.given) return piece.given->text;
    std::string_view text = TextOf(piece);
    if (piece.literal == LiteralKind::Integer || piece.literal == LiteralKind::Decimal) return std::string(text);
    const bool national = piece.literal == LiteralKind::Text && (text.front() | 0x20) == 'n';
    if (national) text.remove_prefix(1);
    const char quote = text.front();
    const std::string_view inner = text.substr(1, text.size() - 2);
    if (piece.literal == LiteralKind::Date) return std::string(inner);
    std::string value;
    value.reserve(inner.size());
    for (std::size_t i = 0; i < inner.size(); ++i) {
        value += inner[i];
        if (inner[i] == quote) ++i;
    }
    return value;
}

}  // namespace kpTables::sql::parse
