// A query that hands out the connection's recordset.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "corpus/Call.h"
#include "kpTables/CTables.h"
#include "support/ScriptedConnection.h"

namespace kpTables::test {

/// Runs query on a connection that answers rows, and expects those very rows with a CacheSize of 200.
inline void ExpectHandsOut(const char* name, const std::function<RecordsetPtr(CTables&)>& query) {
    SCOPED_TRACE(name);
    const auto cnn = std::make_shared<ScriptedConnection>();
    const auto rows = MakeRows({{"pdID", VarType::Long}}, {{1}, {2}});
    cnn->Answer(rows);
    CTables tables;
    tables.Cnn(cnn);
    const auto answer = query(tables);
    EXPECT_EQ(answer, rows);
    EXPECT_EQ(rows->CacheSize(), 200);
    EXPECT_EQ(rows->AbsolutePosition(), 1);
}

}  // namespace kpTables::test
