// The lattice against the slow reference search, on random small worlds.
#include "engine/lattice.hpp"

#include "engine/exact/lattice_constraints.hpp"
#include "engine/nbest/all_paths.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/special_records.hpp"
#include "support/draw_lattice.hpp"
#include "support/fast_rig.hpp"
#include "support/process_usage.hpp"
#include "support/random_world.hpp"
#include "support/reference_search.hpp"
#include "support/testing.hpp"

#include <array>
#include <deque>

namespace TAVO::test {
namespace {

/// One word: start, length, id, word cost, dictionary, connection sum, word-cost sum.
using Word = std::array<std::int64_t, 7>;

Word wordOf(ReferenceNode const& node) {
    return {static_cast<std::int64_t>(node.start),
            static_cast<std::int64_t>(node.length),
            node.record.pid,
            node.record.cost,
            node.record.dictionary,
            static_cast<std::int64_t>(node.connSum),
            static_cast<std::int64_t>(node.wordSum)};
}

Word wordOf(std::size_t start, LatticeNode const& node, DicSet const& dics) {
    MrphDic const record(node.record);
    return {static_cast<std::int64_t>(start), node.length,  record.pid(), record.cost(),
            dictionaryOf(dics, node.record),  node.connSum, node.wordSum};
}

/// The words of a path, and the dictionary words that start where they start,
/// in the order of making.
struct Result {
    std::vector<Word> path, candidates;
    bool operator==(Result const&) const = default;
    friend void PrintTo(Result const& result, std::ostream* os) {
        *os << testing::PrintToString(result.path) << " of " << testing::PrintToString(result.candidates);
    }
};

Result resultOf(ReferenceLattice const& lattice) {
    Result result;
    for (int i = lattice.best; i != -1; i = lattice.nodes[static_cast<std::size_t>(i)].next) {
        ReferenceNode const& onPath = lattice.nodes[static_cast<std::size_t>(i)];
        result.path.push_back(wordOf(onPath));
        for (ReferenceNode const& node : lattice.nodes)
            if (node.start == onPath.start && node.record.pid != ConnTable::kUnknownId)
                result.candidates.push_back(wordOf(node));
    }
    return result;
}

Result resultOf(Lattice const& lattice, Sentence const& sentence, Attached const& attached) {
    Result result;
    std::size_t start = 0;
    DicSet const& dics = attached.dics;
    for (LatticeNode const* onPath : bestPath(sentence)) {
        result.path.push_back(wordOf(start, *onPath, dics));
        for (LatticeNode const& node :
             lattice.candidates(onPath, sentence.text, start, attached.table.get(), attached.dics))
            if (MrphDic(node.record).pid() != ConnTable::kUnknownId)
                result.candidates.push_back(wordOf(start, node, dics));
        start += onPath->length;
    }
    return result;
}

/// Calls check(world, attached, sentence, lattice, random) for eight texts, the
/// sentences of one input, of each random world.
template <class Check>
void onRandomTexts(unsigned worlds, Check check) {
    for (unsigned seed = 1; seed <= worlds; ++seed) {
        Random random(seed);
        World const world = randomWorld(random);
        Attached const attached(world);
        Lattice lattice(1 + random.below(9), randomOptions(random));
        std::deque<std::string> texts;  // stay where they are
        for (unsigned t = 0; t < 8; ++t) {
            Sentence sentence;
            texts.push_back(world.text(random, 24, true));
            sentence.given = sentence.text = texts.back();
            SCOPED_TRACE("seed " + std::to_string(seed) + ", text " + hexOf(texts.back()));
            check(world, attached, sentence, lattice, random);
            if (testing::Test::HasFatalFailure()) return;
        }
    }
}

TEST(LatticeProperty, AgreesWithTheReferenceOnRandomWorlds) {
    onRandomTexts(
        2000, [](World const& world, Attached const& attached, Sentence& sentence, Lattice& lattice, Random& random) {
            if (random.below(2) == 0) lattice.clear();
            lattice.build(sentence, attached.table.get(), attached.dics);
            ReferenceLattice const expected =
                referenceSearch(std::string(sentence.text), world.dictionaries, world.costFunction());
            ASSERT_EQ(resultOf(lattice, sentence, attached), resultOf(expected))
                << drawLattice(std::string(sentence.text), expected) << world.describe();
        });
}

/// The paths alone; all candidates of a long text would be too many to compare.
std::vector<Word> pathOf(ReferenceLattice const& lattice) {
    std::vector<Word> path;
    for (int i = lattice.best; i != -1; i = lattice.nodes[static_cast<std::size_t>(i)].next)
        path.push_back(wordOf(lattice.nodes[static_cast<std::size_t>(i)]));
    return path;
}

std::vector<Word> pathOf(LazyPath const& found, DicSet const& dics) {
    std::vector<Word> path;
    std::size_t start = 0;
    for (LatticeNode const* node = found.first(); node != nullptr; node = node->next) {
        path.push_back(wordOf(start, *node, dics));
        start += node->length;
    }
    return path;
}

/// How the fast search found the paths of texts.
struct Outcomes {
    unsigned fast = 0, byPieces = 0, byOnePiece = 0, givenUp = 0;

    void note(FastRig const& rig, std::size_t firstWord, LazyPath const& path) {
        std::size_t exact = 0;
        for (std::size_t i = firstWord; i != rig.paths.size(); ++i)
            exact += rig.paths.word(i).source == PathWord::kExact ? 1 : 0;
        bool const all = exact == rig.paths.size() - firstWord;
        ++(!path.exists() ? givenUp : exact == 0 ? fast : all ? byOnePiece : byPieces);
    }
};

/// Texts that the fast search goes through together and alone.
struct FastCase {
    World world;
    std::vector<std::string> texts;
    FastSearch::Options options;

    /// The place of a text whose path is not the reference's; -1 for none. What the fast search gives up is left to the
    /// exact one.
    int failing(Attached const& attached, Outcomes& outcomes) const {
        FastRig rig(attached, options);
        if (!rig.state.indexes.isUsable()) return -1;
        std::vector<std::string_view> const views(texts.begin(), texts.end());
        std::vector<LazyPath> const together = rig.search(views);
        for (std::size_t i = 0; i != texts.size(); ++i) {
            std::size_t const firstWord = rig.paths.size();
            LazyPath const alone = rig.search({&views[i], 1}).front();
            outcomes.note(rig, firstWord, alone);
            std::vector<Word> const expected =
                pathOf(referenceSearch(texts[i], world.dictionaries, world.costFunction()));
            for (LazyPath const* path : {&together[i], &alone})
                if (path->exists() && pathOf(*path, attached.dics) != expected) return static_cast<int>(i);
        }
        return -1;
    }
    int failing() const {
        Outcomes outcomes;
        return failing(Attached(world), outcomes);
    }

    /// Removes what the failure does not need.
    void shrink() {
        unsigned attempts = 3000;
        for (bool changed = true; changed;) {
            changed = false;
            auto const attempt = [&](auto&& change) {
                if (attempts == 0) return false;
                --attempts;
                FastCase smaller = *this;
                change(smaller);
                if (smaller.failing() == -1) return false;
                *this = std::move(smaller);
                return changed = true;
            };
            for (std::size_t i = texts.size(); texts.size() > 1 && i-- > 0;)
                attempt([&](FastCase& c) { c.texts.erase(c.texts.begin() + static_cast<std::ptrdiff_t>(i)); });
            for (std::size_t i = 0; i != texts.size(); ++i)
                for (std::size_t count = texts[i].size(); (count /= 2) != 0;)
                    for (std::size_t at = texts[i].size(); at-- > 0;)
                        if (texts[i].size() > count) attempt([&](FastCase& c) { c.texts[i].erase(at, count); });
            for (std::size_t i = 0; i != world.dictionaries.size(); ++i) {
                WordTable const words = world.dictionaries[i];
                for (auto const& [surface, records] : words)
                    if (!attempt([&](FastCase& c) { c.world.dictionaries[i].erase(surface); }))
                        for (std::size_t k = records.size(); records.size() > 1 && k-- > 0;)
                            if (world.dictionaries[i][surface].size() > 1)
                                attempt([&](FastCase& c) {
                                    std::vector<Record>& of = c.world.dictionaries[i][surface];
                                    of.erase(of.begin() + static_cast<std::ptrdiff_t>(k));
                                });
            }
        }
    }

    std::string describe() const {
        std::string all = "blocks of " + std::to_string(options.blockPlaces) + ", chunks of " +
                          std::to_string(options.chunkPlaces) + "\n" + world.describe();
        Attached const attached(world);
        FastRig rig(attached, options);
        std::vector<std::string_view> const views(texts.begin(), texts.end());
        std::vector<LazyPath> const found = rig.search(views);
        for (ExactPiece const& piece : rig.state.pieces)
            all += "exact from place " + std::to_string(piece.begin) + " to " + std::to_string(piece.end) + "\n";
        for (std::size_t i = 0; i != texts.size(); ++i)
            all += drawLattice(texts[i], referenceSearch(texts[i], world.dictionaries, world.costFunction())) +
                   "found (start, bytes, id, word cost, dictionary, sums): " +
                   testing::PrintToString(pathOf(found[i], attached.dics)) + "\n";
        return all;
    }
};

void expectReferencePaths(FastCase&& fastCase, Outcomes& outcomes) {
    if (fastCase.failing(Attached(fastCase.world), outcomes) == -1) return;
    fastCase.shrink();
    FAIL() << fastCase.describe();
}

TEST(FastSearchProperty, FindsThePathsOfTheReference) {
    Outcomes outcomes;
    for (unsigned seed = 1; seed <= 4000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Random random(seed);
        World world = randomFlatWorld(random);
        std::vector<std::string> texts;
        for (unsigned n = 1 + random.below(12); n > 0; --n)
            texts.push_back(world.text(random, random.oneIn(40) ? 400 : random.oneIn(3) ? 80 : 16, true));
        if (random.oneIn(30)) addManyWords(world, random);
        if (random.oneIn(10)) addLongSurface(world, random, texts.front(), 12);
        expectReferencePaths({world, texts, randomOptions(random)}, outcomes);
        if (testing::Test::HasFatalFailure()) return;
    }
    EXPECT_GT(outcomes.fast, 5'000U);
    EXPECT_GT(outcomes.byPieces, 5'000U);
    EXPECT_GT(outcomes.byOnePiece, 2'000U);
}

// Sums of long texts outgrow 16 bits, and words as long as these bring together sums that lie far apart.
TEST(FastSearchProperty, FindsThePathsOfLongTextsAndWords) {
    Outcomes outcomes;
    for (unsigned seed = 1; seed <= 50; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Random random(seed);
        World world = randomFlatWorld(random);
        std::string text;
        while (text.size() < 3000) text += world.text(random, 400, false);
        for (unsigned n = random.below(4); n > 0; --n) addLongSurface(world, random, text, random.oneIn(2) ? 700 : 90);
        if (random.oneIn(2)) text.replace(random.below(2000), 800, 800, random.of(world.alphabet));
        for (FastSearch::Options const& options : {FastSearch::Options{}, randomOptions(random)})
            expectReferencePaths({world, {text, text.substr(0, 700), text.substr(1500)}, options}, outcomes);
        if (testing::Test::HasFatalFailure()) return;
    }
    EXPECT_GT(outcomes.byPieces, 100U);
}

/// Lengths of the words of a pending path, of which the first one's column must be told.
std::vector<std::size_t> pendingLengths(LazyPath const& path) {
    std::vector<std::size_t> lengths;
    path.visitPending([&](PendingWord const& word) {
        EXPECT_TRUE(!lengths.empty() || word.column == path.firstColumn());
        lengths.push_back(word.length);
    });
    return lengths;
}

/// Where pieces of the exact search can end nowhere before the end of the sentence, each goes over the ones behind it:
/// what they hold must not grow with the square of the sentence.
TEST(FastSearchProperty, PiecesTakeNoMoreThanTheWholeSentence) {
    constexpr std::size_t kBytes = 4000, kMost = 4 << 20;
    std::size_t most = 0;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Random random(seed);
        World const world = randomFlatWorld(random);
        Attached const attached(world);
        std::string text;
        while (text.size() < kBytes) text += world.bytes(random, 8);
        FastRig rig(attached);
        if (!rig.state.indexes.isUsable()) continue;
        std::size_t const before = ProcessUsage::now().heapBytes;
        std::string_view const texts[] = {text};
        rig.search(texts);
        std::size_t const after = ProcessUsage::now().heapBytes;
        most = std::max(most, after - std::min(before, after));
        ASSERT_LT(most, kMost) << "seed " << seed;
    }
}

// Sentences of one call are what each of them is alone, whenever their paths are read.
TEST(LatticeProperty, SentencesTogetherAgreeWithTheReference) {
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Random random(seed);
        World const world = randomWorld(random);
        Attached const attached(world);
        Lattice lattice(0, randomOptions(random));
        std::deque<std::string> texts;
        std::vector<Sentence> sentences(1 + random.below(9));
        for (Sentence& sentence : sentences)
            if (!random.oneIn(9)) sentence.text = texts.emplace_back(world.text(random, 16, true));
        lattice.search(sentences, attached.table.get(), attached.dics);
        while (!sentences.empty()) {
            std::size_t const at = random.below(static_cast<unsigned>(sentences.size()));
            Sentence& sentence = sentences[at];
            bool const wasPending = sentence.path.isPending();
            std::vector<std::size_t> const lengths =
                wasPending ? pendingLengths(sentence.path) : std::vector<std::size_t>();
            ReferenceLattice const expected =
                referenceSearch(std::string(sentence.text), world.dictionaries, world.costFunction());
            ASSERT_EQ(resultOf(lattice, sentence, attached), resultOf(expected))
                << drawLattice(std::string(sentence.text), expected) << world.describe();
            std::vector<std::size_t> pathLengths;
            for (LatticeNode const* node : bestPath(sentence)) pathLengths.push_back(node->length);
            ASSERT_TRUE(!wasPending || lengths == pathLengths);
            sentences.erase(sentences.begin() + static_cast<std::ptrdiff_t>(at));
        }
    }
}

/// The same constraints for the library and for the reference.
struct Constraints {
    LatticeConstraints library;
    ReferenceConstraints reference;
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
            ReferenceConstraints::Span span{p + step, {}};
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
    onRandomTexts(
        2000, [&](World const& world, Attached const& attached, Sentence& sentence, Lattice& lattice, Random& random) {
            Constraints constraints = randomConstraints(random, sentence.text.size());
            std::vector<Word> const expected = resultOf(referenceSearch(std::string(sentence.text), world.dictionaries,
                                                                        world.costFunction(), constraints.reference))
                                                   .path;
            lattice.clear();
            lattice.build(sentence, attached.table.get(), attached.dics, constraints.library);
            ASSERT_EQ(resultOf(lattice, sentence, attached).path, expected);
            forced += constraints.library.forced && sentence.path.exists() ? 1 : 0;
            constraints.library.forced = false;
            lattice.clear();
            AllPaths allPaths;
            allPaths.build(sentence, attached.table.get(), attached.dics, lattice.nodes(), constraints.library);
            ASSERT_EQ(resultOf(lattice, sentence, attached).path, expected) << "all paths";
        });
    EXPECT_GT(forced, 100U);
}

}  // namespace
}  // namespace TAVO::test
