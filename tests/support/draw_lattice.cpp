#include "support/draw_lattice.hpp"

#include <iomanip>
#include <set>
#include <sstream>

namespace TAVO::test {

std::string hexOf(std::string_view text) {
    std::ostringstream out;
    for (char const byte : text)
        out << std::hex << std::uppercase << std::setw(2) << std::setfill('0')
            << unsigned{static_cast<unsigned char>(byte)};
    return out.str();
}

std::string drawLattice(std::string const& text, ReferenceLattice const& lattice) {
    auto const node = [&](int i) -> ReferenceNode const& { return lattice.nodes[static_cast<std::size_t>(i)]; };
    std::set<int> best;
    for (int i = lattice.best; i != -1; i = node(i).next) best.insert(i);
    std::ostringstream out;
    out << "text " << hexOf(text) << (best.empty() ? ", no path\n" : "\n");
    for (std::size_t start = 0; start != text.size(); ++start) {
        for (int i = 0; i != static_cast<int>(lattice.nodes.size()); ++i) {
            ReferenceNode const& at = node(i);
            if (at.start != start) continue;
            out << (best.count(i) != 0 ? "  * " : "    ") << std::setw(4) << start << " " << std::left << std::setw(12)
                << hexOf(std::string_view(text).substr(start, at.length)) << std::right << " id " << std::setw(2)
                << at.record.pid << "  word " << std::setw(3) << at.record.cost << "  sums " << at.connSum << ", "
                << at.wordSum << "  then +";
            if (at.next == -1)
                out << at.connSum << " the end\n";
            else
                out << at.connSum - node(at.next).connSum << " id " << node(at.next).record.pid << " at "
                    << start + at.length << "\n";
        }
    }
    return out.str();
}

}  // namespace TAVO::test
