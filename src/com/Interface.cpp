#include "com/Interface.h"

#include <algorithm>
#include <utility>

#include "com/Utf16.h"
#include "text/Ascii.h"

namespace kpTables::com {
namespace {

std::string LowerName(std::string_view name) {
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(), text::Lower);
    return lower;
}

bool Allows(Access access, MemberKind kind) {
    const bool reads = kind == MemberKind::Method || kind == MemberKind::PropertyGet;
    return reads == (access == Access::Read);
}

}  // namespace

std::vector<Parameter> Parameters(std::initializer_list<std::string_view> names) {
    std::vector<Parameter> parameters;
    for (const std::string_view name : names) {
        const auto marks = std::min(name.find_first_of("?&!"), name.size());
        Parameter parameter{std::string(name.substr(0, marks)), ValueType::Variant};
        parameter.optional = name.find('?', marks) != name.npos;
        parameter.inOut = name.find('&', marks) != name.npos;
        if (name.find('!', marks) != name.npos) parameter.type = ValueType::Object;
        parameters.push_back(std::move(parameter));
    }
    return parameters;
}

Interface::Interface(const IID& iid, std::string_view name, std::vector<Row> rows)
    : iid_(iid), name_(name), rows_(std::move(rows)) {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        rows_[i].index = i;
        named_[LowerName(rows_[i].name)].push_back(i);
    }
}

const Row* Interface::Find(DISPID id, Access access) const noexcept {
    const auto found =
        std::ranges::find_if(rows_, [id, access](const Row& row) { return row.id == id && Allows(access, row.kind); });
    return found == rows_.end() ? nullptr : &*found;
}

HRESULT Interface::GetIds(LPOLESTR* names, UINT count, DISPID* ids) const {
    if (count == 0) return E_INVALIDARG;
    std::fill_n(ids, count, DISPID_UNKNOWN);
    const auto found = named_.find(LowerName(ToUtf8(names[0])));
    if (found == named_.end()) return DISP_E_UNKNOWNNAME;
    ids[0] = rows_[found->second.front()].id;
    HRESULT result = S_OK;
    for (UINT i = 1; i < count; ++i) {
        const std::string name = ToUtf8(names[i]);
        for (const std::size_t row : found->second) {
            const auto& parameters = rows_[row].parameters;
            const auto parameter = std::ranges::find_if(
                parameters, [&](const Parameter& each) { return text::EqualsIgnoringCase(each.name, name); });
            if (parameter != parameters.end()) ids[i] = static_cast<DISPID>(parameter - parameters.begin());
        }
        if (ids[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
    }
    return result;
}

}  // namespace kpTables::com
