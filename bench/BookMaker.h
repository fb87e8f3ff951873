// Fills a book to full size.
#pragma once

#include <cstdint>
#include <string>

namespace kpTables::bench {

struct BookSize {
    std::int64_t lines = 1'000'000;   ///< of each direction, ten a bill
    std::int64_t products = 100'000;  ///< each with a balance row in every warehouse
    int depots = 1;                   ///< that the bills are spread over
    int months = 11;                  ///< that the bills are spread over; the last one has the balance rows
};

constexpr int kBookYear = 2003;

/// Makes a new book at path.
void MakeBook(const std::string& path, const BookSize& size);

}  // namespace kpTables::bench
