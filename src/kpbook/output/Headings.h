// The headings of kpbook's own tables.
#pragma once

#include <string>

#include "kpTables/text/Message.h"
#include "kpbook/GlobalOptions.h"

namespace kpTables::kpbook::output {

/// A heading in the user's language, where a person reads it; programs that read CSV or JSON find the same name always.
inline std::string Heading(const char* name, OutputFormat format) {
    return format == OutputFormat::Csv || format == OutputFormat::Json ? name : Translated(name);
}

}  // namespace kpTables::kpbook::output
