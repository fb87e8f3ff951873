// SQLite's C API, with nothing of this project but the order of texts.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace kpTables::bench {

class RawStatement {
public:
    RawStatement(sqlite3* database, const std::string& text);

    sqlite3_stmt* Get() const noexcept { return handle_.get(); }
    RawStatement& Bind(int parameter, std::int64_t value);
    RawStatement& Bind(int parameter, double value);
    /// The text must outlive the statement's next run.
    RawStatement& Bind(int parameter, std::string_view text);
    /// True when there is a row.
    bool Step();
    /// Runs to the end and resets the statement.
    void Run();

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    std::unique_ptr<sqlite3_stmt, Finalize> handle_;
};

class RawDatabase {
public:
    explicit RawDatabase(const std::string& path);

    sqlite3* Get() const noexcept { return handle_.get(); }
    RawStatement Prepare(const std::string& text) const { return RawStatement(handle_.get(), text); }
    void Run(const std::string& text) const;
    /// Sets the journal mode and the cache that an open book has.
    void SetLikeABook() const;

private:
    struct Closer {
        void operator()(sqlite3* database) const noexcept;
    };
    std::unique_ptr<sqlite3, Closer> handle_;
};

}  // namespace kpTables::bench
