// The lattice against the slow reference search, on random small worlds.
#include "engine/lattice.hpp"

#include "engine/all_paths.hpp"
#include "engine/lattice_constraints.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/special_records.hpp"
#include "support/random_world.hpp"
#include "support/reference_search.hpp"

#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <string>
#include <vector>

namespace TAVO {
namespace {

using test::Attached;
using test::dictionaryOf;
using test::kIds;
using test::Random;
using test::Record;
using test::ReferenceLattice;
using test::ReferenceNode;
using test::World;

void describe(std::ostream& os, std::size_t start, std::size_t length, Record record, std::uint64_t connSum,
              std::uint64_t wordSum) {
    os << start << "+" << length << " id" << record.pid << " cost" << record.cost << " dic" << record.dictionary << " ("
       << connSum << "," << wordSum << ")\n";
}

std::string describeReference(ReferenceLattice const& lattice) {
    std::ostringstream os;
    for (int i = lattice.best; i != -1;) {
        ReferenceNode const& node = lattice.nodes[static_cast<std::size_t>(i)];
        describe(os, node.start, node.length, node.record, node.connSum, node.wordSum);
        i = node.next;
    }
    return os.str();
}

std::string describePath(Sentence const& sentence, DicSet const& dics) {
    std::ostringstream os;
    std::size_t start = 0;
    for (LatticeNode const* node : bestPath(sentence)) {
        MrphDic const record(node->record);
        describe(os, start, node->length, {record.pid(), record.cost(), dictionaryOf(dics, node->record)},
                 node->connSum, node->wordSum);
        start += node->length;
    }
    return os.str();
}

/// The dictionary words that start where the path's words start, in the order of making.
std::string describeCandidates(Lattice const& lattice, Sentence const& sentence, DicSet const& dics) {
    std::ostringstream os;
    std::size_t start = 0;
    for (LatticeNode const* onPath : bestPath(sentence)) {
        for (LatticeNode const& node : lattice.nodes().candidates(onPath)) {
            MrphDic const record(node.record);
            if (record.pid() == ConnTable::kUnknownId) continue;
            describe(os, start, node.length, {record.pid(), record.cost(), dictionaryOf(dics, node.record)},
                     node.connSum, node.wordSum);
        }
        start += onPath->length;
    }
    return os.str();
}

std::string describeReferenceCandidates(ReferenceLattice const& lattice) {
    std::ostringstream os;
    for (int i = lattice.best; i != -1; i = lattice.nodes[static_cast<std::size_t>(i)].next) {
        std::size_t const start = lattice.nodes[static_cast<std::size_t>(i)].start;
        for (ReferenceNode const& node : lattice.nodes)
            if (node.start == start && node.record.pid != ConnTable::kUnknownId)
                describe(os, start, node.length, node.record, node.connSum, node.wordSum);
    }
    return os.str();
}

TEST(LatticeProperty, AgreesWithTheReferenceOnRandomWorlds) {
    constexpr unsigned kWorlds = 5000;
    constexpr unsigned kTexts = 8;
    for (unsigned seed = 1; seed <= kWorlds; ++seed) {
        Random random(seed);
        World const world = test::randomWorld(random);
        Attached const attached(world);
        Lattice lattice(1 + random.below(9));  // small blocks, so that lists cross them
        test::CostFunction const cost = world.costFunction();
        for (unsigned t = 0; t < kTexts; ++t) {
            std::string const text = random.bytes(24, true);
            ReferenceLattice const expected = test::referenceSearch(text, world.dictionaries, cost);
            Sentence sentence;
            sentence.given = sentence.text = text;
            if (random.below(2) == 0) lattice.clear();
            lattice.build(sentence, attached.table.get(), attached.dics);
            ASSERT_EQ(describePath(sentence, attached.dics), describeReference(expected))
                << "seed " << seed << ", text " << testing::PrintToString(text);
            ASSERT_EQ(describeCandidates(lattice, sentence, attached.dics), describeReferenceCandidates(expected))
                << "seed " << seed << ", text " << testing::PrintToString(text);
        }
    }
}

/// The same constraints for the library and for the reference.
struct Constraints {
    LatticeConstraints library;
    test::ReferenceConstraints reference;
    std::vector<std::array<unsigned char, 8>> records;  // of id 4 and up, each with a cost of its own
};

Constraints randomConstraints(Random& random, std::size_t length) {
    Constraints made;
    for (unsigned pid = 4; pid <= kIds; ++pid)
        made.records.push_back({8, 0, static_cast<unsigned char>(pid), 0, static_cast<unsigned char>(pid), 0, 0, 0});
    for (std::size_t p = 0; p < length;) {
        std::size_t const step = 1 + random.below(4);
        unsigned const what = random.below(4);
        if (what == 0) made.reference.borders.insert(p);
        if (what == 1 && p + step <= length) {
            std::size_t const first = made.library.records.size();
            test::ReferenceConstraints::Span span{p + step, {}};
            for (unsigned n = 1 + random.below(2); n > 0; --n) {
                unsigned const pid = 3 + random.below(kIds - 2);
                made.library.records.push_back(pid == 3 ? kUnknownRecord.data() : made.records[pid - 4].data());
                span.records.push_back({pid, pid == 3 ? 255 : pid});
            }
            made.library.spans.push_back({static_cast<std::uint32_t>(p), static_cast<std::uint32_t>(p + step), first,
                                          made.library.records.size() - first});
            made.reference.spans.emplace(p, span);
            made.reference.borders.insert({p, p + step});
        }
        p += step;
    }
    made.library.barriers.assign(made.reference.borders.begin(), made.reference.borders.end());
    return made;
}

TEST(LatticeProperty, AgreesWithTheReferenceUnderConstraints) {
    unsigned forced = 0;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        Random random(seed);
        World const world = test::randomWorld(random);
        Attached const attached(world);
        Lattice lattice(1 + random.below(9));
        AllPaths allPaths;
        auto const cost = [&](unsigned left, unsigned right) -> unsigned {
            return world.costs[(left - 1) * kIds + right - 1];
        };
        for (unsigned t = 0; t < 8; ++t) {
            std::string const text = random.bytes(24, true);
            Constraints constraints = randomConstraints(random, text.size());
            std::string const expected =
                describeReference(test::referenceSearch(text, world.dictionaries, cost, constraints.reference));
            Sentence sentence;
            sentence.given = sentence.text = text;
            lattice.clear();
            lattice.build(sentence, attached.table.get(), attached.dics, constraints.library);
            ASSERT_EQ(describePath(sentence, attached.dics), expected)
                << "seed " << seed << ", text " << testing::PrintToString(text);
            forced += constraints.library.forced && sentence.bestStart != nullptr ? 1 : 0;
            constraints.library.forced = false;
            lattice.clear();
            allPaths.clear();
            allPaths.build(sentence, attached.table.get(), attached.dics, lattice.nodes(), constraints.library);
            ASSERT_EQ(describePath(sentence, attached.dics), expected)
                << "all paths, seed " << seed << ", text " << testing::PrintToString(text);
        }
    }
    EXPECT_GT(forced, 100U);
}

}  // namespace
}  // namespace TAVO
