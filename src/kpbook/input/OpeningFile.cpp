#include "kpbook/input/OpeningFile.h"

#include <algorithm>
#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Names.h"
#include "kpbook/Utf8.h"
#include "kpbook/input/FieldReader.h"

namespace kpTables::kpbook::input {

OpeningFile::OpeningFile(const std::string& path) : file_(path), csv_(file_.Rows()) {
    ReadHeader();
    while (csv_.Next()) ReadRow();
}

void OpeningFile::ReadHeader() {
    if (!csv_.Next()) throw CommandError(Message("{1}: no header line with the names of the columns", Name()));
    if (!csv_.Problem().empty()) throw CommandError(Message("{1}: line 1: {2}", Name(), csv_.Problem()));
    fields_ = csv_.FieldCount();
    std::array<int, kColumns.size()> given{};
    std::string problems;
    for (std::size_t field = 0; field < fields_; ++field) {
        const auto name = Trim(csv_.Field(field));
        const auto known = std::ranges::find_if(kColumns, [name](const char* each) { return SameName(each, name); });
        if (known == kColumns.end()) {
            problems += Message("; there is no column {1}", Printable(name));
            continue;
        }
        const auto column = static_cast<std::size_t>(known - kColumns.begin());
        place_[column] = field;
        if (++given[column] == 2) problems += Message("; given more than once: {1}", *known);
    }
    for (std::size_t column = 0; column < kColumns.size(); ++column) {
        if (given[column] == 0) problems += Message("; missing: {1}", kColumns[column]);
    }
    if (!problems.empty()) throw CommandError(Message("{1}: line 1: wrong header{2}", Name(), problems));
}

void OpeningFile::ReadRow() {
    if (!csv_.Problem().empty()) return AddFault("", csv_.Problem());
    if (csv_.FieldCount() != fields_) {
        return AddFault("", csv_.FieldCount() < fields_
                                ? Message("too few fields: {1} instead of {2}", csv_.FieldCount(), fields_)
                                : Message("too many fields: {1} instead of {2}", csv_.FieldCount(), fields_));
    }
    bookkeeping::OpeningRow row;
    row.warehouse = Text(kWarehouse);
    row.product = Text(kProduct);
    const bool isNamed = faults_.empty() || faults_.back().line != csv_.Line();
    // A quantity that cannot be read must not make the amount one without a quantity.
    row.quantity = CDbl(Figure(kQuantity, VarType::Double, 1.0));
    row.amount = CCur(Figure(kAmount, VarType::Currency, Currency()));
    if (!isNamed) return;
    rows_.push_back(std::move(row));
    lines_.push_back(csv_.Line());
}

Variant OpeningFile::Figure(Column column, VarType type, const Variant& other) {
    const auto text = Trim(csv_.Field(place_[column]));
    auto read = text.empty() ? FieldValue{{}, Message("is empty")} : ReadField(text, type, csv_.Encoding());
    if (read.problem.empty()) return std::move(read.value);
    AddFault(kColumns[column], read.problem);
    return other;
}

std::string OpeningFile::Text(Column column) {
    const auto read = ReadField(csv_.Field(place_[column]), VarType::String, csv_.Encoding());
    if (read.problem.empty()) return CStr(read.value);
    AddFault(kColumns[column], read.problem);
    return "";
}

}  // namespace kpTables::kpbook::input
