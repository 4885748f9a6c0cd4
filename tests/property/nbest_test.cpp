// The N-best search against the literal queue and against all paths, on random
// small worlds.
#include "engine/nbest/nbest.hpp"

#include "engine/lattice.hpp"
#include "support/draw_lattice.hpp"
#include "support/random_world.hpp"
#include "support/reference_nbest.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

/// One text with the lattices of the library and of the reference. Nodes of the
/// library are told by the index of the reference's node: the reference makes
/// them in another order over the sentence, but in the same order at each start.
class Case {
public:
    Case(Attached const& attached, World const& world, std::string const& text, Lattice& lattice, AllPaths& allPaths)
        : cost_(world.costFunction()),
          reference_(referenceSearch(text, world.dictionaries, cost_)),
          lattice_(lattice),
          allPaths_(allPaths) {
        sentence_.given = sentence_.text = text;
        firstNode_ = static_cast<std::uint32_t>(allPaths_.nodeCount());
        allPaths_.build(sentence_, attached.table.get(), attached.dics, lattice_.nodes());
    }

    Sentence const& sentence() const { return sentence_; }
    ReferenceLattice const& reference() const { return reference_; }
    CostFunction const& cost() const { return cost_; }
    std::size_t nodeCount() const { return allPaths_.nodeCount() - firstNode_; }

    std::vector<ReferencePath> search(std::size_t n) const {
        std::vector<ReferencePath> paths;
        if (!sentence_.path.exists()) return paths;
        std::vector<int> const order = referenceOrder();
        NBest const nbest(allPaths_, sentence_, n);
        std::vector<std::uint32_t> nodes;
        for (std::size_t rank = 0; rank < nbest.size(); ++rank) {
            ReferencePath path{{connSumOf(nbest.key(rank)), wordSumOf(nbest.key(rank))}, {}};
            nbest.nodes(rank, nodes);
            for (std::uint32_t const node : nodes) path.nodes.push_back(order.at(node - firstNode_));
            paths.push_back(path);
        }
        return paths;
    }

    std::vector<int> bestPathOfLibrary() const {
        std::vector<int> const order = referenceOrder();
        std::vector<int> path;
        for (LatticeNode const* node : bestPath(sentence_))
            path.push_back(order.at(lattice_.nodes().indexOf(node) - firstNode_));
        return path;
    }
    std::vector<int> bestPathOfReference() const {
        std::vector<int> path;
        for (int i = reference_.best; i != -1; i = reference_.nodes[static_cast<std::size_t>(i)].next)
            path.push_back(i);
        return path;
    }

    PlainPath plain(ReferencePath const& path) const {
        PlainPath result{path.key, {}};
        for (int const i : path.nodes) result.second.push_back(word(reference_.nodes[static_cast<std::size_t>(i)]));
        return result;
    }

private:
    static PlainWord word(ReferenceNode const& node) {
        return {node.start, node.length, node.record.pid, node.record.cost, node.record.dictionary};
    }
    /// Reference nodes from the last start to the first, each start in the order of making.
    std::vector<int> referenceOrder() const {
        std::vector<int> order(reference_.nodes.size());
        for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
        std::stable_sort(order.begin(), order.end(), [this](int a, int b) {
            return reference_.nodes[static_cast<std::size_t>(a)].start >
                   reference_.nodes[static_cast<std::size_t>(b)].start;
        });
        return order;
    }
    CostFunction cost_;
    ReferenceLattice reference_;
    Lattice& lattice_;
    AllPaths& allPaths_;
    Sentence sentence_;
    std::uint32_t firstNode_ = 0;
};

/// Calls check(case, random) on texts of random worlds; several texts share an
/// input, as sentences do.
template <class Check>
void onRandomTexts(unsigned worlds, unsigned mostBytes, Check check) {
    for (unsigned seed = 1; seed <= worlds; ++seed) {
        Random random(seed);
        World const world = randomWorld(random);
        Attached const attached(world);
        Lattice lattice(1 + random.below(9));  // small blocks, so that lists cross them
        AllPaths allPaths;
        for (unsigned t = 0; t < 24; ++t) {
            if (random.below(3) == 0) {
                lattice.clear();
                allPaths.clear();
            }
            std::string const text = world.text(random, mostBytes, true);
            SCOPED_TRACE("seed " + std::to_string(seed) + ", text " + hexOf(text));
            check(Case(attached, world, text, lattice, allPaths), world, random);
            if (testing::Test::HasFatalFailure()) return;
        }
    }
}

TEST(AllPathsProperty, MakesTheSameChoicesAsTheReference) {
    onRandomTexts(200, 24, [](Case const& c, World const&, Random&) {
        ASSERT_EQ(c.nodeCount(), c.reference().nodes.size());
        ASSERT_EQ(c.bestPathOfLibrary(), c.bestPathOfReference());
    });
}

TEST(NBestProperty, GivesThePathsOfTheQueueInItsOrder) {
    std::size_t pathsSeen = 0;
    onRandomTexts(500, 10, [&](Case const& c, World const&, Random& random) {
        for (std::size_t const n : {1U, 2U, 1 + random.below(10), 1 + random.below(60), 300U}) {
            std::vector<ReferencePath> const expected = referenceNBest(c.reference(), c.cost(), n);
            ASSERT_EQ(c.search(n), expected) << "n " << n;
            pathsSeen += expected.size();
        }
    });
    EXPECT_GT(pathsSeen, 100'000U);
}

TEST(NBestProperty, GivesEveryPathOnceWithGrowingKeys) {
    std::size_t complete = 0;
    onRandomTexts(500, 7, [&](Case const& c, World const& world, Random&) {
        auto all = enumeratePaths(std::string(c.sentence().text), world.dictionaries, c.cost(), 5000);
        if (!all) return;
        std::vector<ReferencePath> const found = c.search(all->size() + 7);
        ASSERT_TRUE(std::is_sorted(found.begin(), found.end(),
                                   [](ReferencePath const& a, ReferencePath const& b) { return a.key < b.key; }));
        std::vector<PlainPath> plain;
        for (ReferencePath const& path : found) plain.push_back(c.plain(path));
        std::sort(plain.begin(), plain.end());
        std::sort(all->begin(), all->end());
        ASSERT_EQ(plain, *all);
        complete += all->empty() ? 0 : 1;
    });
    EXPECT_GT(complete, 5000U);
}

}  // namespace
}  // namespace TAVO::test
