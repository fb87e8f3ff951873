// The book's order of texts for recordsets, the same on every engine.
#pragma once

#include "kpTables/MemoryRecordset.h"

namespace kpTables::engines {

extern const TextOrder kBookTexts;

}  // namespace kpTables::engines
