#include "kpbook/PastedValues.h"

#include <algorithm>
#include <memory>

#include "kpTables/Convert.h"
#include "kpTables/Quoted.h"
#include "kpTables/text/Message.h"

namespace kpTables::kpbook {

namespace {

bool EndsItsText(const Variant& value) {
    if (const auto* text = value.If<std::string>()) return HasLoneQuote(*text);
    const auto* array = value.If<std::shared_ptr<VariantArray>>();
    return array && *array && std::ranges::any_of((*array)->items, EndsItsText);
}

}  // namespace

std::string QuoteFault(const _CTables::Member& member, std::span<const Variant> arguments) {
    for (std::size_t i = 0; i < std::min(member.parameters.size(), arguments.size()); ++i) {
        const auto& parameter = member.parameters[i];
        if (!parameter.pasted || !EndsItsText(arguments[i])) continue;
        return Message("{1}: {2} puts this value into a statement as it is, so a quote in it must be doubled: ''",
                       parameter.name, member.name);
    }
    return {};
}

void HideSecrets(const _CTables::Member& member, std::span<const Variant> arguments, IncidentLog& log) {
    for (std::size_t i = 0; i < std::min(member.parameters.size(), arguments.size()); ++i) {
        if (member.parameters[i].secret) log.Hide(Text(arguments[i]));
    }
}

}  // namespace kpTables::kpbook
