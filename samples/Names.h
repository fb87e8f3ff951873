// The texts of samples/names, built into the program.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kpTables::sample {

std::string_view CatalogueText();
std::string_view SuppliersText();
std::string_view CustomersText();
std::string_view ProjectsText();
std::string_view PeopleText();

/// A line of such a text: its mark ('[', '-', '+' or 0) and its fields.
struct NameLine {
    char mark = 0;
    std::vector<std::string> fields;
};
/// All lines but comments and empty ones.
std::vector<NameLine> ReadNames(std::string_view text);
std::vector<std::string> Split(std::string_view text, char separator);

}  // namespace kpTables::sample
