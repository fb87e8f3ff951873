// What an engine has to provide.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Catalog.h"
#include "engines/common/Limits.h"
#include "engines/common/RowWriter.h"
#include "engines/common/Statement.h"
#include "engines/common/Transaction.h"
#include "kpTables/BookUser.h"
#include "kpTables/MemoryRecordset.h"
#include "sql/Translation.h"
#include "sql/print/Engine.h"

namespace kpTables::engines {

/// An open database. Every failure is a DatabaseError.
class Driver {
public:
    Driver() = default;
    virtual ~Driver() = default;
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    virtual Catalog& GetCatalog() noexcept = 0;
    virtual Transaction& GetTransaction() noexcept = 0;
    virtual const Limits& GetLimits() const noexcept = 0;
    /// The order of a book's texts, for Find and Sort in a recordset: kBookTexts unless a driver says otherwise.
    virtual const TextOrder& Texts() const noexcept;

    /// Prepares a translated text.
    virtual std::unique_ptr<Statement> Prepare(std::string_view text) = 0;
    virtual std::shared_ptr<RowWriter> MakeWriter(WrittenTable table) = 0;
    /// Gives a column another type; a transaction is open. An engine that cannot raises Unsupported.
    virtual void ChangeColumn(const sql::ColumnChange& change);
    /// See Book::BackUp; no transaction is open.
    virtual void BackUp(const std::string& path) = 0;
    /// See Book::IntegrityFaults.
    virtual std::vector<std::string> IntegrityFaults() = 0;

    // See Book; the table has a counter. An engine that cannot raises Unsupported.
    virtual std::int64_t LastCounter(const std::string& table, const std::string& counter);
    virtual void AdvanceCounter(const std::string& table, const std::string& counter, std::int64_t last);
    // See Book; an engine without users of its own refuses.
    virtual bool HasUser(const std::string& user);
    virtual void Grant(const BookUser& user);
    virtual bool Revoke(const std::string& user);

    /// Whether the schema is as it was when it was last noted as whole. An engine that cannot note it is asked to
    /// compare it each time.
    virtual bool IsSchemaNoted() { return false; }
    /// Notes the schema, if that is possible now.
    virtual void NoteSchema() noexcept {}

    /// How the front end prints statements for this engine.
    virtual const sql::print::Engine& Dialect() const noexcept = 0;
};

}  // namespace kpTables::engines
