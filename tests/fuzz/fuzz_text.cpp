// Any text under any modes: the sentences join to the text, the forms to the
// sentences, and the sums of the N best analyses are those along their paths.
#include "fuzz/fuzz_input.hpp"
#include "fuzz/fuzz_world.hpp"

#include <utility>

namespace {

using namespace TAVO;
using namespace TAVO::test;

std::string withoutLineBreaks(std::string text) {
    std::erase_if(text, [](char c) { return c == '\r' || c == '\n'; });
    return text;
}

void checkSentences(Tavo const& tavo, std::string const& text) {
    std::string joined;
    for (int i = 0; i < static_cast<int>(tavo.getSentenceCount()); ++i) joined += tavo.getSentence(i);
    check(withoutLineBreaks(joined) == withoutLineBreaks(text));
}

/// The costs of one analysis, added along it.
PathCost sumsOf(std::vector<Mrph> const& path, ConnTable const& table) {
    PathCost sums{0, 0};
    if (path.empty()) return sums;  // of a sentence without text
    std::uint16_t left = ConnTable::kBeginId;
    for (Mrph const& m : path) {
        sums.connection += table.cost(left, m.getPid());
        sums.word += static_cast<unsigned>(m.getCost());
        left = m.getPid();
    }
    // An unknown word at the end costs 255, whatever the table says.
    sums.connection += left == ConnTable::kUnknownId ? 255U : table.cost(left, ConnTable::kEndId);
    return sums;
}

void checkSums(Tavo& tavo, std::string const& text, int n) {
    static ConnTable const table(false, fuzzWorld().paths.connTable.c_str());
    tavo.analyzeNBest(text);
    for (int i = 0; i < static_cast<int>(tavo.getSentenceCount()); ++i) {
        if (failed(tavo, i)) continue;
        std::vector<std::vector<Mrph>> paths;
        std::vector<PathCost> costs;
        tavo.getResultNBest(paths, costs, i, n);
        check(!paths.empty() && paths.size() == costs.size());
        for (std::size_t p = 0; p < paths.size(); ++p) {
            PathCost const sums = sumsOf(paths[p], table);
            check(sums.connection == costs[p].connection && sums.word == costs[p].word);
            check(p == 0 || std::pair(costs[p - 1].connection, costs[p - 1].word) <=
                                std::pair(costs[p].connection, costs[p].word));
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    FuzzInput in(data, size);
    unsigned const modes = in.byte();
    int const n = static_cast<int>(1 + in.choice(5));
    std::string const text = in.rest();
    static Tavo tavo;
    if (!tavo) attach(tavo);
    tavo.setDelimitCRLFMode(modes & 1);
    tavo.setDeleteCRLFMode(modes >> 1 & 1);
    tavo.setAlphabetCapitalizeMode(modes >> 2 & 1);
    tavo.setDelimiterString((modes & 8) != 0 ? std::vector<char const*>{"d", "\x81\x42"} : std::vector<char const*>{});
    int const reduce = modes >> 4 & 1;
    tavo.setReduceNumberMode(reduce);
    tavo.setReduceUndefMode(reduce);
    tavo.setReduceCharMode(reduce);
    tavo.setDivideWordMode(modes >> 5 & 1);
    analysed(tavo, text);
    checkSentences(tavo, text);
    // Joined and divided words have no cost of their own in a path.
    if ((modes & 0x30) == 0) checkSums(tavo, text, n);
    return 0;
}
