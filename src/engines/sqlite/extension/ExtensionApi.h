// Included before every source of the loadable extension: SQLite is then called through the table of the program that
// loads it, which may have another copy of SQLite than the one the extension was built with.
#pragma once

#include <sqlite3ext.h>

extern const sqlite3_api_routines* sqlite3_api;
