// A result with its heading, as people read it.
#pragma once

#include <string>
#include <vector>

#include "kpTables/Recordset.h"
#include "kpbook/GlobalOptions.h"
#include "kpbook/output/Chart.h"
#include "kpbook/output/Presentation.h"

namespace kpTables::kpbook::output {

struct View {
    std::string title;               ///< empty: no heading
    std::vector<std::string> notes;  ///< what to know before reading the figures
    RecordsetPtr rows;
    Presentation presentation;
    std::vector<Chart> charts;
};

enum class Charts { Hidden, Drawn };

/// Writes a view in the selected format, and the number of rows to standard error. Formats for programs contain the
/// rows alone; the notes are then written to standard error. A page has the charts, a table in a terminal those that
/// are asked for.
void WriteView(const View& view, const GlobalOptions& global, Charts charts = Charts::Hidden);

}  // namespace kpTables::kpbook::output
