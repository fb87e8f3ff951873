// What the recordsets of one connection share with it.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "engines/common/Limits.h"
#include "engines/odbc/OdbcTransaction.h"
#include "engines/odbc/ServerTables.h"
#include "engines/odbc/Session.h"

namespace kpTables::engines::odbc {

/// A session with its transaction and tables; recordsets keep it alive.
struct OpenConnection {
    OpenConnection(const std::string& connection, SessionOptions options, engines::Limits theLimits)
        : session(connection, std::move(options)),
          transaction(session),
          tables(session),
          limits(std::move(theLimits)) {}

    Session session;
    OdbcTransaction transaction;
    ServerTables tables;
    engines::Limits limits;
};
using OpenConnectionPtr = std::shared_ptr<OpenConnection>;

}  // namespace kpTables::engines::odbc
