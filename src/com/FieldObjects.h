// The fields of a kpTables.Recordset, as ADO has them.
#pragma once

#include "com/RecordsetObject.h"

namespace kpTables::com {

/// The collection: Count, Item, For Each; its default member is Item. It keeps the recordset alive.
Variant FieldsOf(RecordsetObject& recordset);

}  // namespace kpTables::com
