#include "engines/odbc/Session.h"

#include <algorithm>
#include <future>
#include <utility>

#include "engines/odbc/ConnectionText.h"
#include "engines/odbc/Query.h"
#include "engines/odbc/WideText.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::odbc {

namespace {

/// An attribute whose value is a number.
SQLPOINTER NumberArgument(std::uintptr_t number) noexcept { return reinterpret_cast<SQLPOINTER>(number); }

SQLHANDLE InOdbc3(SQLHANDLE environment) {
    LoadedLibrary().SetEnvironmentAttribute(environment, SQL_ATTR_ODBC_VERSION, NumberArgument(SQL_OV_ODBC3), 0);
    return environment;
}

}  // namespace

Handle::Handle(SQLSMALLINT type, SQLHANDLE parent) : type_(type) {
    if (SQL_SUCCEEDED(LoadedLibrary().AllocateHandle(type, parent, &handle_))) return;
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::OutOfMemory),
                        Message("The driver manager gives no handle; there may be not enough memory"));
}

Handle::~Handle() { LoadedLibrary().FreeHandle(type_, handle_); }

Session::Session(const std::string& connection, SessionOptions options)
    : options_(std::move(options)),
      environment_(SQL_HANDLE_ENV, SQL_NULL_HANDLE),
      connection_(SQL_HANDLE_DBC, InOdbc3(environment_.Get())) {
    Connect(connection);
    try {
        Configure();
    } catch (...) {
        LoadedLibrary().Disconnect(Get());
        throw;
    }
}

Session::~Session() {
    if (!connected_) return;
    if (inTransaction_) LoadedLibrary().EndTransaction(SQL_HANDLE_DBC, Get(), SQL_ROLLBACK);
    LoadedLibrary().Disconnect(Get());
}

SQLRETURN Session::ConnectWith(const std::string& connection) {
    std::u16string text = Wide(connection);
    return LoadedLibrary().DriverConnect(Get(), nullptr, Units(text), static_cast<SQLSMALLINT>(text.size()), nullptr, 0,
                                         nullptr, SQL_DRIVER_NOPROMPT);
}

void Session::Connect(const std::string& connection) {
    // A wish: not every driver keeps to it.
    if (options_.readOnly) {
        LoadedLibrary().SetConnectionAttribute(Get(), SQL_ATTR_ACCESS_MODE, NumberArgument(SQL_MODE_READ_ONLY), 0);
    }
    SQLRETURN code = ConnectWith(connection);
    if (!SQL_SUCCEEDED(code) && options_.password && ErrorOf(SQL_HANDLE_DBC, Get()).RefusesUser())
        code = ConnectWith(WithPassword(connection, options_.password()));
    if (!SQL_SUCCEEDED(code)) {
        const DriverError error = ErrorOf(SQL_HANDLE_DBC, Get());
        throw DatabaseError(
            static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
            Message("The server cannot be reached: {1}", error.message + " (SQLSTATE " + error.state + ")"));
    }
    connected_ = true;
}

void Session::Configure() {
    server_ = TextInfo(SQL_DBMS_NAME);
    traits_ = &TraitsOf(server_);
    quote_ = TextInfo(SQL_IDENTIFIER_QUOTE_CHAR);
    if (quote_ == " ") quote_.clear();
    patternEscape_ = TextInfo(SQL_SEARCH_PATTERN_ESCAPE);
    identifierCase_ = static_cast<SQLUSMALLINT>(NumberInfo(SQL_IDENTIFIER_CASE));
    // What a change has read stays true until it is saved.
    if ((NumberInfo(SQL_TXN_ISOLATION_OPTION) & SQL_TXN_SERIALIZABLE) != 0)
        LoadedLibrary().SetConnectionAttribute(Get(), SQL_ATTR_TXN_ISOLATION, NumberArgument(SQL_TXN_SERIALIZABLE), 0);
    const GapValue milliseconds[] = {options_.busyTimeout.count()};
    if (*traits_->lockTimeout) Run(FillGaps(traits_->lockTimeout, milliseconds));
    if (*traits_->settings) Run(traits_->settings);
}

void Session::Check(SQLRETURN code) const {
    if (!SQL_SUCCEEDED(code)) RaiseFailure(ErrorOf(SQL_HANDLE_DBC, Get()), "");
}

std::string Session::TextInfo(SQLUSMALLINT what) const {
    constexpr std::size_t kLongest = 128;
    SQLWCHAR text[kLongest] = {};
    SQLSMALLINT bytes = 0;
    if (!SQL_SUCCEEDED(LoadedLibrary().GetInfo(Get(), what, text, sizeof text, &bytes))) return "";
    return NarrowUntilZero(text);
}

std::uint32_t Session::NumberInfo(SQLUSMALLINT what) const {
    SQLUINTEGER number = 0;
    LoadedLibrary().GetInfo(Get(), what, &number, sizeof number, nullptr);
    return number;
}

std::string Session::Quoted(std::string_view name) const {
    if (quote_.empty()) return std::string(name);
    std::string quoted = quote_;
    for (const char c : name) quoted.append(quote_ == std::string_view(&c, 1) ? 2 : 1, c);
    return quoted + quote_;
}

std::string Session::Spelled(std::string_view name) const {
    std::string spelled(name);
    for (char& c : spelled) {
        if (identifierCase_ == SQL_IC_LOWER && c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (identifierCase_ == SQL_IC_UPPER && c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return spelled;
}

void Session::AutoCommit(bool on) const {
    Check(LoadedLibrary().SetConnectionAttribute(Get(), SQL_ATTR_AUTOCOMMIT,
                                                 NumberArgument(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF), 0));
}

void Session::Begin() {
    AutoCommit(false);
    inTransaction_ = true;
    hasRun_ = false;
}

void Session::Commit() { EndTransaction(SQL_COMMIT); }
void Session::Rollback() { EndTransaction(SQL_ROLLBACK); }

void Session::EndTransaction(SQLSMALLINT how) {
    if (!SQL_SUCCEEDED(LoadedLibrary().EndTransaction(SQL_HANDLE_DBC, Get(), how))) {
        const DriverError error = ErrorOf(SQL_HANDLE_DBC, Get());
        NoteFailure(error);
        RaiseFailure(error, "");
    }
    inTransaction_ = false;
    AutoCommit(true);
}

void Session::Run(std::string_view text) {
    Query query(*this);
    query.ExecuteDirect(text, {}, text);
}

void Session::NoteFailure(const DriverError& error) noexcept {
    if (!inTransaction_) return;
    bool ended = error.EndsTransaction();
    if (!ended && hasRun_ && *traits_->openTransactions) {
        inTransaction_ = false;  // the question below is none of it
        try {
            Query query(*this);
            query.ExecuteDirect(traits_->openTransactions, {}, traits_->openTransactions);
            ended = query.Fetch() && query.Whole(0) == 0;
        } catch (const std::exception&) {
            ended = true;  // a connection that does not answer
        }
        inTransaction_ = true;
    }
    if (!ended) return;
    const Library& library = LoadedLibrary();
    library.EndTransaction(SQL_HANDLE_DBC, Get(), SQL_ROLLBACK);
    library.SetConnectionAttribute(Get(), SQL_ATTR_AUTOCOMMIT, NumberArgument(SQL_AUTOCOMMIT_ON), 0);
    inTransaction_ = false;
}

SQLRETURN Session::Await(SQLHSTMT statement, const std::function<SQLRETURN()>& call) const {
    if (!options_.interrupted) return call();
    constexpr std::chrono::milliseconds kPatience{50};
    auto result = std::async(std::launch::async, call);
    while (result.wait_for(kPatience) != std::future_status::ready) {
        if (options_.interrupted()) LoadedLibrary().Cancel(statement);
    }
    return result.get();
}

}  // namespace kpTables::engines::odbc
