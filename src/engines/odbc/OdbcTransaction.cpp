#include "engines/odbc/OdbcTransaction.h"

#include <cstdint>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::odbc {

void OdbcTransaction::Start(Use use) {
    if (use == Use::Write && session_.IsReadOnly()) {
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::NotPermitted),
                            Message("The book is open for reading only and cannot be changed"));
    }
    session_.Begin();
    levels_ = 0;
}

void OdbcTransaction::RunForLevel(const char* text) {
    const GapValue level[] = {levels_};
    if (*text) session_.Run(FillGaps(text, level));
}

void OdbcTransaction::StartLevel() {
    ++levels_;
    try {
        RunForLevel(session_.Traits().beginLevel);
    } catch (...) {
        --levels_;
        throw;
    }
}

void OdbcTransaction::MergeLevel() {
    RunForLevel(session_.Traits().mergeLevel);
    --levels_;
}

void OdbcTransaction::UndoLevel() {
    if (*session_.Traits().undoLevel) {
        RunForLevel(session_.Traits().undoLevel);
    } else {
        // Nothing less can be undone; whoever began the transaction is told when it goes on.
        session_.Rollback();
    }
    --levels_;
}

void OdbcTransaction::Abandon() noexcept {
    try {
        session_.Rollback();
    } catch (const std::exception&) {
        return;  // The connection is lost, and with it the transaction.
    }
}

}  // namespace kpTables::engines::odbc
