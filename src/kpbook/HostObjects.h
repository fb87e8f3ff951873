// The objects that arguments stand for.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "kpTables/Host.h"
#include "kpTables/MemoryRecordset.h"

namespace kpTables::kpbook {

/// {"row":{...}}: a recordset of one row, positioned on it.
class RowArgument : public MemoryRecordset {
public:
    /// Each column has its value's type.
    explicit RowArgument(const std::vector<std::pair<std::string, Variant>>& row);
};

/// {"progress":true}: records every change, in order.
class RecordingProgressBar : public ProgressBar {
public:
    struct Change {
        std::string property;
        Variant value;
    };
    void SetVisible(bool visible) override { changes.push_back({"Visible", visible}); }
    void SetValue(double value) override { changes.push_back({"Value", value}); }

    std::vector<Change> changes;
};

}  // namespace kpTables::kpbook
