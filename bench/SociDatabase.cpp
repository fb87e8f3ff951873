#include "SociDatabase.h"

// Debian's SOCI includes Boost's headers, which it does not depend on and which nothing here uses.
#include <soci/soci-config.h>
#undef SOCI_HAVE_BOOST
#undef SOCI_HAVE_BOOST_DATE_TIME

#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include "engines/sqlite/Collation.h"

namespace kpTables::bench {

SociDatabase::SociDatabase(const std::string& path)
    : session_(std::make_unique<soci::session>(soci::sqlite3, "db=" + path)) {
    // The backend names SQLite's types in a namespace of its own.
    auto& backend = static_cast<soci::sqlite3_session_backend&>(*session_->get_backend());
    engines::sqlite::RegisterCollation(reinterpret_cast<::sqlite3*>(backend.conn_));
}

SociDatabase::~SociDatabase() = default;

void SociDatabase::Run(const std::string& text) { *session_ << text; }

Cell SociDatabase::First(const std::string& text, const char* column) {
    soci::row row;
    *session_ << text, soci::into(row);
    if (!session_->got_data()) return NoRow();
    if (row.get_indicator(column) == soci::i_null) return NullCell();
    switch (row.get_properties(column).get_data_type()) {
        case soci::dt_integer:
            return std::int64_t{row.get<int>(column)};
        case soci::dt_long_long:
            return std::int64_t{row.get<long long>(column)};
        case soci::dt_double:
            return row.get<double>(column);
        default:
            return row.get<std::string>(column);
    }
}

}  // namespace kpTables::bench
