// Every statement that is read must print, and read again as the same text; any other text must raise an SqlError.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "sql/SqlError.h"
#include "sql/parse/Parser.h"
#include "sql/parse/TextPrinter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string printed;
    try {
        printed =
            kpTables::sql::parse::Print(*kpTables::sql::parse::Parse({reinterpret_cast<const char*>(data), size}));
    } catch (const kpTables::sql::SqlError&) {
        return 0;
    }
    // What was printed must be read: an SqlError here ends the fuzzer, too.
    if (kpTables::sql::parse::Print(*kpTables::sql::parse::Parse(printed)) != printed) std::abort();
    return 0;
}
