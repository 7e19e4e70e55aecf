// Tables in Markdown.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace lumalane::bench {

inline constexpr char empty_cell[] = "–";

// With so many decimals.
std::string fixed(double value, int decimals);

// The text of the first column is to the left, numbers are to the right.
void print_head(std::ostream &markdown, const std::string &first,
                const std::vector<std::string> &others);
void print_row(std::ostream &markdown, const std::string &first,
               const std::vector<std::string> &others);

} // namespace lumalane::bench
