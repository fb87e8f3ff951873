// A book over SOCI, used as its users do.
#pragma once

#include <memory>
#include <string>

#include "Cell.h"

namespace soci {
class session;
}

namespace kpTables::bench {

class SociDatabase {
public:
    explicit SociDatabase(const std::string& path);
    ~SociDatabase();

    void Run(const std::string& text);
    /// Prepares and runs a text and looks up the column by name.
    Cell First(const std::string& text, const char* column);

private:
    std::unique_ptr<soci::session> session_;
};

}  // namespace kpTables::bench
