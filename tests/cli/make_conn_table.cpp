// Writes a connection table from a text that people can read:
//   make_conn_table TEXT OUT
// TEXT (UTF-8) lists the names by id from 1 on, one a line, then an empty line,
// then costs "LEFT RIGHT COST" by name, "*" for any; the last match counts, 0
// without one.
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"

#include <exception>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace {

using namespace TAVO;

/// Ids that @p name stands for.
std::vector<unsigned> idsOf(std::string const& name, std::vector<std::string> const& names) {
    std::vector<unsigned> ids;
    for (unsigned id = 1; id <= names.size(); ++id)
        if (name == "*" || name == names[id - 1]) ids.push_back(id);
    if (ids.empty()) throw std::runtime_error("no such name: " + name);
    return ids;
}

ConnTableContent parse(std::string const& text) {
    std::istringstream in(text);
    std::vector<std::string> names;
    for (std::string line; std::getline(in, line) && !line.empty();) names.push_back(line);
    test::SmallWorld world;
    world.namesUtf8(names);
    std::string left, right;
    for (unsigned cost = 0; in >> left >> right >> cost;)
        for (unsigned const l : idsOf(left, names))
            for (unsigned const r : idsOf(right, names)) world.cost(l, r, static_cast<std::uint8_t>(cost));
    if (!in.eof()) throw std::runtime_error("bad cost line after " + left + " " + right);
    return world.connTable();
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
