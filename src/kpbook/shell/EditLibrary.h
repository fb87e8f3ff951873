// The library that edits lines, loaded when a shell starts at a terminal: no other command needs it.
#pragma once

#include <histedit.h>

namespace kpTables::kpbook::shell {

struct EditLibrary {
    decltype(&el_init) begin;
    decltype(&el_end) end;
    decltype(&el_wset) set;
    decltype(&el_wgets) readLine;
    decltype(&el_wline) line;
    decltype(&el_winsertstr) insert;
    decltype(&el_deletestr) erase;
    decltype(&el_resize) resize;
    decltype(&history_winit) beginHistory;
    decltype(&history_wend) endHistory;
    decltype(&history_w) history;
};

/// Null when it is not installed.
const EditLibrary* LoadEditLibrary();

}  // namespace kpTables::kpbook::shell
