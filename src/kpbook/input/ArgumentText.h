// Arguments as typed on the command line.
#pragma once

#include <string_view>

#include "kpTables/Variant.h"
#include "kpTables/text/Message.h"

namespace kpTables::kpbook::input {

/// The forms of arguments, for the help text.
inline constexpr const char* kArgumentForms = Translatable(
    "  TEXT                 a text; numbers, dates and flags convert to the parameter's type\n"
    "  null:  empty:        Null, Empty\n"
    "  missing:  nothing:   an omitted optional argument, no object\n"
    "  date:2004-03-07      a Date, also date:2004-03-07T12:30:00\n"
    "  currency:12.5        a Currency\n"
    "  number:0.25          a Double\n"
    "  bool:true            a Boolean\n"
    "  text:null:           the text after the first colon, unchanged\n"
    "  progress:            a progress bar, drawn on a terminal\n"
    "  json:VALUE           any value in the form used in a batch, for example "
    "json:{\"row\":{\"月份\":3,\"日子\":7}}");

/// Reads an argument; error 5 when the text after a prefix is not such a value.
Variant ReadArgument(std::string_view text);

}  // namespace kpTables::kpbook::input
