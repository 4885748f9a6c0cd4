// Writes a connection table from a text that people can read:
//   make_conn_table TEXT OUT
// TEXT (UTF-8) lists the names by id from 1 on, one a line, then an empty line,
// then costs "LEFT RIGHT COST" by name, "*" for any; the last match counts, 0
// without one.
#include "dic/conn_table_writer.hpp"
#include "support/encoding.hpp"
#include "support/temp_dir.hpp"

#include <algorithm>
#include <exception>
#include <iostream>
#include <numeric>
#include <sstream>
#include <stdexcept>

namespace {

using namespace TAVO;

/// Ids that @p name stands for, from 0 on.
std::vector<std::size_t> idsOf(std::string const& name, std::vector<std::string> const& names) {
    std::vector<std::size_t> ids;
    for (std::size_t i = 0; i < names.size(); ++i)
        if (name == "*" || name == names[i]) ids.push_back(i);
    if (ids.empty()) throw std::runtime_error("no such name: " + name);
    return ids;
}

ConnTableContent parse(std::string const& text) {
    std::istringstream in(text);
    std::vector<std::string> names;
    for (std::string line; std::getline(in, line) && !line.empty();) names.push_back(line);

    ConnTableContent content;
    std::size_t const n = names.size();
    for (std::string const& name : names) content.names.push_back(test::toSjis(name));
    content.rowIndex.resize(n);
    std::iota(content.rowIndex.begin(), content.rowIndex.end(), std::uint16_t{0});
    content.columnIndex = content.rowIndex;
    content.rows = content.cols = static_cast<std::uint16_t>(n);
    content.matrix.assign(n * n, 0);
    std::string left, right;
    for (unsigned cost = 0; in >> left >> right >> cost;)
        for (std::size_t const l : idsOf(left, names))
            for (std::size_t const r : idsOf(right, names)) content.matrix[l * n + r] = static_cast<std::uint8_t>(cost);
    if (!in.eof()) throw std::runtime_error("bad cost line after " + left + " " + right);
    return content;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc != 3) throw std::runtime_error("usage: make_conn_table TEXT OUT");
        test::writeFile(argv[2], serializeConnTable(parse(test::readFile(argv[1]))));
        return 0;
    } catch (std::exception const& error) {
        std::cerr << "make_conn_table: " << error.what() << '\n';
        return 1;
    }
}
