#include "kpbook/input/Workbook.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <map>
#include <string_view>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Names.h"
#include "kpbook/Utf8.h"
#include "kpbook/input/XmlParser.h"

namespace kpTables::kpbook::input {

namespace {

int NumberOf(std::string_view text) {
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

XmlParser::Source SourceOf(ZipArchive& archive) {
    return [&archive](char* buffer, std::size_t size) { return archive.Read(buffer, size); };
}

struct SheetEntry {
    std::string name;
    std::string relation;
};

std::vector<SheetEntry> ReadSheets(ZipArchive& archive, Workbook& workbook) {
    std::vector<SheetEntry> sheets;
    if (!archive.Open("xl/workbook.xml")) throw CommandError(Message("is no workbook: it has no xl/workbook.xml"));
    XmlParser parser(SourceOf(archive));
    parser.onStart = [&](std::string_view name, const XmlAttributes& attributes) {
        if (name == "workbookPr") workbook.from1904 = attributes["date1904"] == "1" || attributes["date1904"] == "true";
        if (name == "sheet") sheets.push_back({std::string(attributes["name"]), std::string(attributes["id"])});
    };
    parser.Run();
    return sheets;
}

/// The path in the archive that a relation of the workbook leads to.
std::string PathOf(ZipArchive& archive, const std::string& relation) {
    std::string path;
    if (archive.Open("xl/_rels/workbook.xml.rels")) {
        XmlParser parser(SourceOf(archive));
        parser.onStart = [&](std::string_view name, const XmlAttributes& attributes) {
            if (name != "Relationship" || attributes["Id"] != relation) return;
            const std::string target(attributes["Target"]);
            path = target.starts_with('/') ? target.substr(1) : "xl/" + target;
        };
        parser.Run();
    }
    if (path.empty()) throw CommandError(Message("is damaged: a sheet is missing"));
    return path;
}

std::string FindSheet(ZipArchive& archive, const std::vector<SheetEntry>& sheets, const std::string& name) {
    if (sheets.empty()) throw CommandError(Message("has no sheet"));
    if (name.empty()) return PathOf(archive, sheets.front().relation);
    std::string names;
    for (const SheetEntry& sheet : sheets) {
        if (SameName(sheet.name, name)) return PathOf(archive, sheet.relation);
        names += (names.empty() ? "" : ", ") + Printable(sheet.name);
    }
    throw CommandError(Message("has no sheet {1}; it has {2}", name, names));
}

/// Texts in the order of their numbers; how they are to be pronounced is left out.
std::vector<std::string> ReadTexts(ZipArchive& archive) {
    std::vector<std::string> texts;
    if (!archive.Open("xl/sharedStrings.xml")) return texts;
    bool inText = false;
    int inPhonetic = 0;
    XmlParser parser(SourceOf(archive));
    parser.onStart = [&](std::string_view name, const XmlAttributes&) {
        if (name == "si") texts.emplace_back();
        if (name == "rPh") ++inPhonetic;
        inText = name == "t" && inPhonetic == 0 && !texts.empty();
    };
    parser.onEnd = [&](std::string_view name) {
        if (name == "rPh") --inPhonetic;
        inText = false;
    };
    parser.onText = [&](std::string_view text) {
        if (inText) texts.back() += text;
    };
    parser.Run();
    return texts;
}

/// Formats that every workbook has, among them those of Chinese dates.
bool IsDateNumber(int format) noexcept {
    const auto isIn = [format](int from, int to) { return format >= from && format <= to; };
    return isIn(14, 22) || isIn(27, 36) || isIn(45, 47) || isIn(50, 58);
}

std::vector<bool> ReadDateStyles(ZipArchive& archive) {
    std::vector<bool> styles;
    std::map<int, bool> formats;
    bool inCells = false;
    if (!archive.Open("xl/styles.xml")) return styles;
    XmlParser parser(SourceOf(archive));
    parser.onStart = [&](std::string_view name, const XmlAttributes& attributes) {
        if (name == "cellXfs") inCells = true;
        const int number = NumberOf(attributes["numFmtId"]);
        if (name == "numFmt") formats[number] = IsDateFormat(std::string(attributes["formatCode"]));
        if (name != "xf" || !inCells) return;
        const auto found = formats.find(number);
        styles.push_back(found == formats.end() ? IsDateNumber(number) : found->second);
    };
    parser.onEnd = [&](std::string_view name) { inCells = inCells && name != "cellXfs"; };
    parser.Run();
    return styles;
}

}  // namespace

bool IsDateFormat(const std::string& code) {
    for (std::size_t at = 0; at < code.size() && code[at] != ';'; ++at) {
        switch (code[at]) {
            case '"':
                at = std::min(code.find('"', at + 1), code.size());
                break;
            case '[':  // a color or a language, but hours in [h]
                if (std::strchr("hHmMsS", code[std::min(at + 1, code.size() - 1)]) && code.find(']', at) <= at + 3) {
                    return true;
                }
                at = std::min(code.find(']', at), code.size());
                break;
            case '\\':
            case '_':
            case '*':
                ++at;
                break;
            case 'G':  // General
                if (code.compare(at, 7, "General") == 0) at += 6;
                break;
            default:
                if (std::strchr("yYmMdDhHsS", code[at])) return true;
        }
    }
    return false;
}

Workbook ReadWorkbook(ZipArchive& archive, const std::string& sheet) {
    Workbook workbook;
    const auto sheets = ReadSheets(archive, workbook);
    workbook.sheet = FindSheet(archive, sheets, sheet);
    workbook.texts = ReadTexts(archive);
    workbook.dateStyles = ReadDateStyles(archive);
    return workbook;
}

}  // namespace kpTables::kpbook::input
