#include "bench/table.h"

#include <iomanip>
#include <sstream>

namespace lumalane::bench {

std::string fixed(double value, int decimals) {
    std::ostringstream stream;
    stream << std::fixed << std::setprecision(decimals) << value;
    return stream.str();
}

void print_head(std::ostream &markdown, const std::string &first,
                const std::vector<std::string> &others) {
    print_row(markdown, first, others);
    markdown << "|---";
    for (std::size_t i = 0; i < others.size(); ++i)
        markdown << "|---:";
    markdown << "|\n";
}

void print_row(std::ostream &markdown, const std::string &first,
               const std::vector<std::string> &others) {
    markdown << "| " << first;
    for (const std::string &cell : others)
        markdown << " | " << cell;
    markdown << " |" << std::endl;
}

} // namespace lumalane::bench
