// A page as a PDF file, made by an installed browser.
#pragma once

#include <string>

namespace kpTables::kpbook::output {

/// Writes an HTML page as a PDF with a headless Chromium (chromium, chromium-browser or google-chrome on the PATH). The
/// file is replaced only when it is whole. A CommandError says what to install, or that the browser failed.
void WritePdf(const std::string& html, const std::string& path);

}  // namespace kpTables::kpbook::output
