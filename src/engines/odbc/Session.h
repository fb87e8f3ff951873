// A connection to a server through its ODBC driver.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "engines/odbc/Failure.h"
#include "engines/odbc/Library.h"
#include "engines/odbc/ServerTraits.h"

namespace kpTables::engines::odbc {

/// The owner of one of the driver manager's handles.
class Handle {
public:
    /// Error OutOfMemory when there is none.
    Handle(SQLSMALLINT type, SQLHANDLE parent);
    ~Handle();
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    SQLHANDLE Get() const noexcept { return handle_; }

private:
    SQLSMALLINT type_;
    SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

struct SessionOptions {
    bool readOnly = false;
    std::chrono::milliseconds busyTimeout{0};
    // See BookOptions.
    std::function<bool()> interrupted = {};
    std::function<std::string()> password = {};
};

/// An open connection and its transaction. Every failure is a DatabaseError.
class Session {
public:
    /// connection: the connection string.
    Session(const std::string& connection, SessionOptions options);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    SQLHDBC Get() const noexcept { return connection_.Get(); }
    const ServerTraits& Traits() const noexcept { return *traits_; }
    const std::string& ServerName() const noexcept { return server_; }
    bool IsReadOnly() const noexcept { return options_.readOnly; }
    bool IsInterrupted() const { return options_.interrupted && options_.interrupted(); }

    /// A name in the server's quotes.
    std::string Quoted(std::string_view name) const;
    /// An unquoted name as the server spells it in its catalog.
    std::string Spelled(std::string_view name) const;
    /// Before which character _ and % stand for themselves in a catalog's pattern; "" when there is none.
    const std::string& PatternEscape() const noexcept { return patternEscape_; }

    // The transaction. A failure that ends it, as a deadlock does, leaves none.
    bool InTransaction() const noexcept { return inTransaction_; }
    void Begin();
    void Commit();
    void Rollback();
    /// Runs a text without rows.
    void Run(std::string_view text);

    /// Called with what a driver says about a failed statement, before it is raised: whether the transaction is gone.
    void NoteFailure(const DriverError& error) noexcept;
    /// Called after a statement that ran.
    void NoteSuccess() noexcept { hasRun_ = true; }
    /// Makes the call, which waits for the server, and cancels it when the host says so.
    SQLRETURN Await(SQLHSTMT statement, const std::function<SQLRETURN()>& call) const;

private:
    void Connect(const std::string& connection);
    SQLRETURN ConnectWith(const std::string& connection);
    void Configure();
    void Check(SQLRETURN code) const;
    std::string TextInfo(SQLUSMALLINT what) const;
    std::uint32_t NumberInfo(SQLUSMALLINT what) const;
    void EndTransaction(SQLSMALLINT how);
    void AutoCommit(bool on) const;

    SessionOptions options_;
    Handle environment_;
    Handle connection_;
    bool connected_ = false;
    std::string server_;
    const ServerTraits* traits_ = nullptr;
    std::string quote_;
    std::string patternEscape_;
    SQLUSMALLINT identifierCase_ = SQL_IC_MIXED;
    bool inTransaction_ = false;
    bool hasRun_ = false;  ///< a statement since the transaction began
};

}  // namespace kpTables::engines::odbc
