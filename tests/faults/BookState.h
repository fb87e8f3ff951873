// What a book holds, to compare it with what it should hold.
#pragma once

#include <string>
#include <vector>

namespace kpTables::faults {

struct BookState {
    bool exists = false;
    std::string fault;              ///< why it does not open, or what its integrity check found; "" when all is well
    std::vector<std::string> rows;  ///< "table: value|value", sorted, without the ids that the engine gave

    bool operator==(const BookState&) const = default;
};

/// Opens the book as the next program would, and reads all of it.
BookState ReadBook(const std::string& path);

/// The rows of the first list that the second has not (both sorted).
std::vector<std::string> Without(const std::vector<std::string>& rows, const std::vector<std::string>& others);

}  // namespace kpTables::faults
