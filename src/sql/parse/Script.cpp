#include "sql/parse/Script.h"

#include <algorithm>

#include "sql/parse/Keywords.h"

namespace kpTables::sql::parse {

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

bool StartsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

class Splitter {
public:
    explicit Splitter(std::string_view text) : text_(text) {}

    std::vector<ScriptPart> Split() {
        while (at_ < text_.size()) {
            if (text_[at_] == ';' && !EndsDeclarations()) {
                EndPart(true);
            } else if (StartsWith("--")) {
                Blank(std::min(text_.find('\n', at_), text_.size()));
            } else if (StartsWith("/*")) {
                SkipBlockComment();
            } else {
                Keep(EndOfPiece());
            }
        }
        EndPart(false);
        return std::move(parts_);
    }

private:
    /// Whether the semicolon is the one between "PARAMETERS name type" and the statement.
    bool EndsDeclarations() const {
        constexpr std::string_view kWord = "PARAMETERS";
        const std::string_view part = part_.text;
        return SameWord(part.substr(0, kWord.size()), kWord) && part.size() > kWord.size() &&
               kBlanks.find(part[kWord.size()]) != kBlanks.npos && part.find(';') == part.npos;
    }
    bool StartsWith(std::string_view sign) const { return text_.substr(at_).starts_with(sign); }

    /// The place behind a quoted text, a name in brackets or a date, in which a semicolon is a character like any
    /// other; elsewhere the place behind one character.
    std::size_t EndOfPiece() const {
        switch (text_[at_]) {
            case '\'':
                return After(text_.find('\'', at_ + 1), text_.size());
            case '"':
                return OnThisLine("\"\r\n", '"');
            case '`':
                return OnThisLine("`\r\n", '`');
            case '[':
                return OnThisLine("]\r\n", ']');
            case '#':
                return OnThisLine("#'\r\n", '#');
            default:
                return at_ + 1;
        }
    }
    std::size_t OnThisLine(std::string_view signs, char closing) const {
        const std::size_t end = text_.find_first_of(signs, at_ + 1);
        return end != text_.npos && text_[end] == closing ? end + 1 : at_ + 1;
    }
    static std::size_t After(std::size_t found, std::size_t otherwise) {
        return found == std::string_view::npos ? otherwise : found + 1;
    }

    void SkipBlockComment() {
        const std::size_t close = text_.find("*/", at_ + 2);
        unclosed_ = close == text_.npos;
        Blank(unclosed_ ? text_.size() : close + 2);
    }

    /// Copies up to end into the part.
    void Keep(std::size_t end) {
        const std::string_view piece = text_.substr(at_, end - at_);
        const bool blank = piece.find_first_not_of(kBlanks) == piece.npos;
        if (part_.text.empty() && !blank) part_.begin = place_;
        if (!part_.text.empty() || !blank) part_.text += piece;
        PassOver(end);
    }

    /// Puts a blank for every character of a comment up to end, so that columns stay what they are.
    void Blank(std::size_t end) {
        if (!part_.text.empty()) {
            for (const char byte : text_.substr(at_, end - at_)) {
                if (byte == '\n' || StartsCharacter(byte)) part_.text += byte == '\n' ? '\n' : ' ';
            }
        }
        PassOver(end);
    }

    void PassOver(std::size_t end) {
        for (; at_ < end; ++at_) {
            if (text_[at_] == '\n') {
                ++place_.line;
                place_.column = 1;
            } else if (StartsCharacter(text_[at_])) {
                ++place_.column;
            }
        }
    }

    void EndPart(bool bySemicolon) {
        part_.text.erase(part_.text.find_last_not_of(kBlanks) + 1);
        part_.ended = bySemicolon;
        part_.end = at_ + (bySemicolon ? 1 : 0);
        // An unclosed comment at the end is a part, so that a reader of lines waits for its end.
        if (!part_.text.empty() || (!bySemicolon && unclosed_)) parts_.push_back(std::move(part_));
        part_ = {};
        PassOver(std::min(at_ + 1, text_.size()));
    }

    std::string_view text_;
    std::size_t at_ = 0;
    Position place_;  ///< of at_
    ScriptPart part_;
    bool unclosed_ = false;
    std::vector<ScriptPart> parts_;
};

}  // namespace

std::vector<ScriptPart> SplitScript(std::string_view text) { return Splitter(text).Split(); }

}  // namespace kpTables::sql::parse
