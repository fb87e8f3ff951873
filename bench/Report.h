// Figures of several runs and the tables that show them.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace kpTables::bench {

double Minimum(const std::vector<double>& values);
double Median(std::vector<double> values);
double Maximum(const std::vector<double>& values);

/// "12.34".
std::string Fixed(double value, int decimals);

/// Prints rows with aligned cells; the first row is the heading, the first columns are texts.
void PrintTable(std::FILE* file, const std::vector<std::vector<std::string>>& rows, std::size_t textColumns = 1);

}  // namespace kpTables::bench
