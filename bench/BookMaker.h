// Fills a book to full size.
#pragma once

#include <cstdint>
#include <string>

namespace kpTables::bench {

struct BookSize {
    std::int64_t lines = 1'000'000;   ///< of each direction, ten per bill
    std::int64_t products = 100'000;  ///< each with a balance row in every warehouse
    int depots = 1;                   ///< that the bills are spread over
    int months = 11;                  ///< that the bills are spread over
    int balanceMonth = 11;            ///< the one that has the balance rows
    bool grown = false;               ///< indexes as row-by-row entry leaves them, not packed
};

constexpr int kBookYear = 2003;
constexpr std::int64_t kOptions = 40;  ///< settings of a book

/// The texts that identify a product.
struct NamesOfProduct {
    std::string barCode;
    std::string shortCode;
    std::string code;
    std::string name;
};
NamesOfProduct NamesOf(std::int64_t product);
std::string NameOfOption(std::int64_t option);

/// Makes a new book at path, in a separate process.
void MakeBook(const std::string& path, const BookSize& size);

}  // namespace kpTables::bench
