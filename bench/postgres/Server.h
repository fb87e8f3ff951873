// libpq, with nothing of this project: the rival of every comparison on a server.
#pragma once

#include <libpq-fe.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kpTables::bench {

/// Rows in binary or written form.
class ServerRows {
public:
    explicit ServerRows(PGresult* result) noexcept : result_(result) {}
    int Count() const { return PQntuples(Get()); }
    int Columns() const { return PQnfields(Get()); }
    bool IsNull(int row, int column) const { return PQgetisnull(Get(), row, column) != 0; }
    std::string_view Value(int row, int column) const {
        return {PQgetvalue(Get(), row, column), static_cast<std::size_t>(PQgetlength(Get(), row, column))};
    }
    std::string Text(int row, int column) const { return std::string(Value(row, column)); }
    PGresult* Get() const noexcept { return result_.get(); }

private:
    struct Clear {
        void operator()(PGresult* result) const noexcept { PQclear(result); }
    };
    std::unique_ptr<PGresult, Clear> result_;
};

/// A connection. Every failure is a std::runtime_error.
class Server {
public:
    /// book: the schema that names without one mean; "" for none.
    explicit Server(const std::string& url, const std::string& book = {});

    /// Statements separated by semicolons; the last one's rows, written.
    ServerRows Run(const std::string& text) const;
    void Prepare(const std::string& name, const std::string& text) const;
    /// A prepared statement with its parameters in written form.
    ServerRows Ask(const std::string& name, const std::vector<std::string>& parameters, bool binary = false) const;
    /// COPY ... FROM STDIN of a file's bytes.
    void CopyIn(const std::string& text, std::string_view bytes) const;
    int ProcessId() const { return PQbackendPID(connection_.get()); }

private:
    struct Finish {
        void operator()(PGconn* connection) const noexcept { PQfinish(connection); }
    };
    ServerRows Checked(PGresult* result) const;
    std::unique_ptr<PGconn, Finish> connection_;
};

/// Where the benchmark's books are; from the environment.
std::string ServerAddress();
/// The URL of a book there.
std::string BookAddress(const std::string& book);

/// What a piece of work has cost.
struct Cost {
    double seconds = 0;
    double client = 0;  ///< seconds of this process and its children on a processor
    double server = 0;  ///< of the server's processes
    double Processor() const noexcept { return client + server; }
};

/// Runs a piece of work and measures it. During it, the only other connections to the server are its own.
class CostMeter {
public:
    CostMeter();
    Cost Read() const;

private:
    double seconds_;
    double client_;
    double server_;
};

}  // namespace kpTables::bench
