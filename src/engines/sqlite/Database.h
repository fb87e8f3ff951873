// One RAII handle for each of SQLite's objects.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "kpTables/Currency.h"
#include "kpTables/Date.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kpTables::engines::sqlite {

/// A prepared statement. A failure raises a DatabaseError with the text given to Prepare.
class PreparedStatement {
public:
    PreparedStatement() = default;
    PreparedStatement(sqlite3* database, std::string_view text);

    explicit operator bool() const noexcept { return handle_ != nullptr; }
    sqlite3_stmt* Get() const noexcept { return handle_.get(); }

    void BindNull(int parameter);
    void BindInteger(int parameter, std::int64_t value);
    void BindReal(int parameter, double value);
    // As a book stores them: -1 and 0, counts of ten-thousandths, ISO text.
    void BindBoolean(int parameter, bool value) { BindInteger(parameter, value ? -1 : 0); }
    void BindCurrency(int parameter, Currency value) { BindInteger(parameter, value.Scaled()); }
    void BindCurrencyBound(int parameter, double tenThousandths) { BindReal(parameter, tenThousandths); }
    void BindDate(int parameter, Date value) { BindTextCopy(parameter, value.ToIso()); }
    /// The text must live until the next Step has returned.
    void BindText(int parameter, std::string_view text);
    void BindTextCopy(int parameter, std::string_view text);

    /// True when there is a row. On failure it resets the statement and raises an error that carries shown, the
    /// caller's text.
    bool Step(std::string_view shown);
    bool Step() { return Step(Text()); }
    /// Runs a statement to its end.
    void Run() {
        while (Step()) {
        }
        Reset();
    }
    void Reset() noexcept;
    /// Counts the steps until the host is asked for an interruption from the beginning, so that it is not asked during
    /// a short statement.
    void CountStepsAnew() noexcept;

    std::int64_t Integer(int column) const noexcept;
    /// Valid until the next Step or Reset; empty for Null.
    std::string_view Text(int column) const;
    bool IsNull(int column) const noexcept;
    /// The text as prepared.
    std::string_view Text() const noexcept;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    void CheckCall(int code);

    std::unique_ptr<sqlite3_stmt, Finalize> handle_;
};

/// Resets a statement at the end of a block, also after an exception.
class ResetAtEnd {
public:
    explicit ResetAtEnd(PreparedStatement& statement) noexcept : statement_(statement) {}
    ~ResetAtEnd() { statement_.Reset(); }
    ResetAtEnd(const ResetAtEnd&) = delete;
    ResetAtEnd& operator=(const ResetAtEnd&) = delete;

private:
    PreparedStatement& statement_;
};

/// An open database.
class Database {
public:
    /// name: a path, a URI when flags say so, or ":memory:".
    Database(const std::string& name, int flags);

    sqlite3* Get() const noexcept { return handle_.get(); }
    PreparedStatement Prepare(std::string_view text) const { return PreparedStatement(handle_.get(), text); }
    /// Prepares and runs one statement of the engine's own.
    void Run(std::string_view text) const;
    /// First column of the first row of a statement of the engine's own; 0 when there is none.
    std::int64_t IntegerOf(std::string_view text) const;

    bool InTransaction() const noexcept;
    bool IsReadOnly() const noexcept;
    /// Makes every change an error, also where the file could be written.
    void RefuseChanges();
    std::int64_t Changes() const noexcept;
    std::int64_t LastInsertRow() const noexcept;

private:
    struct Closer {
        void operator()(sqlite3* database) const noexcept;
    };
    std::unique_ptr<sqlite3, Closer> handle_;
    bool refusesChanges_ = false;
};

}  // namespace kpTables::engines::sqlite
