// A page of HTML that needs nothing beside itself: its style and its script are in it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kpbook/output/View.h"

namespace kpTables::kpbook::output {

class Output;

/// A link to another page of a set.
struct PageLink {
    std::string file;
    std::string text;
    std::string what = {};  ///< what the page shows; for an index
};

/// Writes a page with a section for each view: heading, notes, charts, and the table, whose columns sort by a click.
/// home: a link back, above the headings; none when its file is empty. Answers the number of rows.
std::int64_t WriteHtml(const std::vector<View>& views, Output& output, const PageLink& home = {});

/// Writes a page that lists others.
void WriteHtmlIndex(const std::string& title, const std::vector<std::string>& notes, const std::vector<PageLink>& pages,
                    Output& output);

}  // namespace kpTables::kpbook::output
