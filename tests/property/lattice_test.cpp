// The lattice against the slow reference search, on random small worlds.
#include "engine/lattice.hpp"

#include "engine/all_paths.hpp"
#include "engine/lattice_constraints.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "dic/pools.hpp"
#include "engine/special_records.hpp"
#include "support/reference_search.hpp"
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace TAVO {
namespace {

using test::Record;
using test::ReferenceLattice;
using test::ReferenceNode;

constexpr unsigned kIds = 6;

/// Few bytes, so that texts and forms meet at first and second bytes alike:
/// lead bytes, second bytes that are letters, a one-byte character above 127.
constexpr char kAlphabet[] = {'\x81', '\x82', '\x41', '\x42', '\xA0'};

struct World {
    std::vector<test::WordTable> dictionaries;
    std::vector<std::uint8_t> costs;  // kIds x kIds
};

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}
    unsigned below(unsigned limit) { return std::uniform_int_distribution<unsigned>(0, limit - 1)(engine_); }
    std::string bytes(unsigned most, bool withNul) {
        std::string text;
        for (unsigned n = 1 + below(most); n > 0; --n)
            text.push_back(withNul && below(20) == 0 ? '\0' : kAlphabet[below(sizeof kAlphabet)]);
        return text;
    }

private:
    std::mt19937 engine_;
};

/// A form that a source line can carry: its last byte is not a lone lead byte.
std::string randomForm(Random& random) {
    for (;;) {
        std::string const form = random.bytes(5, false);
        std::size_t pos = 0;
        while (pos + 1 < form.size()) pos += form[pos] == '\x81' || form[pos] == '\x82' ? 2 : 1;
        if (pos == form.size() || (form[pos] != '\x81' && form[pos] != '\x82')) return form;
    }
}

World randomWorld(Random& random) {
    World world;
    world.dictionaries.resize(1 + random.below(2));
    int number = 0;
    for (test::WordTable& words : world.dictionaries) {
        for (unsigned n = random.below(12); n > 0; --n) {
            std::vector<Record>& records = words[randomForm(random)];
            for (unsigned k = 1 + random.below(3); k > 0; --k)
                records.push_back({4 + random.below(kIds - 3), random.below(3), number});
        }
        ++number;
    }
    // Few distinct costs and many 255s, so that ties and dead ends are everywhere;
    // some worlds have one cost for the unknown word on either side.
    unsigned const forbidden = random.below(4);
    for (unsigned i = 0; i < kIds * kIds; ++i)
        world.costs.push_back(random.below(8) < forbidden ? 255 : static_cast<std::uint8_t>(random.below(3)));
    auto const flat = static_cast<std::uint8_t>(random.below(2) == 0 ? 254 : random.below(4));
    bool const flatRow = random.below(2) == 0;
    bool const flatColumn = random.below(2) == 0;
    for (unsigned id = 0; id < kIds; ++id) {
        if (flatRow) world.costs[2 * kIds + id] = flat;
        if (flatColumn) world.costs[id * kIds + 2] = flat;
    }
    return world;
}

/// The world as files, attached.
struct Attached {
    explicit Attached(World const& world) {
        int number = 0;
        for (test::WordTable const& words : world.dictionaries) {
            test::SmallWorld small;
            small.names({"BOS", "EOS", "UNK", "A", "B", "C"});
            small.cost([&](unsigned left, unsigned right) { return world.costs[(left - 1) * kIds + right - 1]; });
            for (auto const& [form, records] : words)
                for (Record const& record : records)
                    small.line(form + "," + small.names()[record.pid - 1] + "," + std::to_string(record.cost));
            std::string const name = std::to_string(number++);
            dir.write(name, small.dictionary());
            dir.write("ConnTable", serializeConnTable(small.connTable()));
        }
        table = std::make_unique<ConnTable>(false, dir.file("ConnTable").c_str());
        for (int i = 0; i < number; ++i) dics.addDicPath(dir.file(std::to_string(i)).c_str(), i % 2 == 0, table.get());
    }

    /// Declared first, so that the pools go when nothing uses them any more.
    struct PoolGuard {
        ~PoolGuard() { sharedPools().dispose(); }
    } guard;
    test::TempDir dir;
    std::unique_ptr<ConnTable> table;
    DicSet dics;
};

int dictionaryOf(DicSet const& dics, unsigned char const* record) {
    for (int i = 0; i < dics.getDicCount(); ++i)
        if (dics.entries()[static_cast<std::size_t>(i)].dic->contains(record)) return i;
    return -1;
}

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
        World const world = randomWorld(random);
        Attached const attached(world);
        Lattice lattice(1 + random.below(9));  // small blocks, so that lists cross them
        auto const cost = [&](unsigned left, unsigned right) -> unsigned {
            return world.costs[(left - 1) * kIds + right - 1];
        };
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
        World const world = randomWorld(random);
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
