// The lattice against the slow reference search, on random small worlds.
#include "engine/lattice.hpp"

#include "engine/nbest/all_paths.hpp"
#include "engine/exact/lattice_constraints.hpp"

#include "base/sjis.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/special_records.hpp"
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

BestPathSearch::Parts randomParts(Random& random) {
    BestPathSearch::Parts parts{1 + random.below(12), 1 + random.below(24)};
    if (random.below(3) == 0) parts.wide = false;
    if (random.below(2) == 0) parts.window = 1 + random.below(12);
    return parts;
}

/// Calls check(world, attached, sentence, lattice, random) for eight texts, the
/// sentences of one input, of each random world.
template <class Check>
void onRandomTexts(unsigned worlds, Check check) {
    for (unsigned seed = 1; seed <= worlds; ++seed) {
        Random random(seed);
        World const world = randomWorld(random);
        Attached const attached(world);
        Lattice lattice(1 + random.below(9), randomParts(random));  // small ones, so that texts have many
        std::deque<std::string> texts;                              // stay where they are
        for (unsigned t = 0; t < 8; ++t) {
            Sentence sentence;
            bool const latin = world.plainLetters && t % 2 == 0;
            texts.push_back(latin ? random.latin(32) : random.bytes(24, true));
            sentence.given = sentence.text = texts.back();
            SCOPED_TRACE("seed " + std::to_string(seed) + ", text " + testing::PrintToString(texts.back()));
            check(world, attached, sentence, lattice, random);
            if (testing::Test::HasFatalFailure()) return;
        }
    }
}

TEST(LatticeProperty, AgreesWithTheReferenceOnRandomWorlds) {
    onRandomTexts(
        10000, [](World const& world, Attached const& attached, Sentence& sentence, Lattice& lattice, Random& random) {
            if (random.below(2) == 0) lattice.clear();
            lattice.build(sentence, attached.table.get(), attached.dics);
            ASSERT_EQ(resultOf(lattice, sentence, attached),
                      resultOf(referenceSearch(std::string(sentence.text), world.dictionaries, world.costFunction())));
        });
}

/// The paths alone; all candidates of a long text would be too many to compare.
std::vector<Word> pathOf(ReferenceLattice const& lattice) {
    std::vector<Word> path;
    for (int i = lattice.best; i != -1; i = lattice.nodes[static_cast<std::size_t>(i)].next)
        path.push_back(wordOf(lattice.nodes[static_cast<std::size_t>(i)]));
    return path;
}

std::vector<Word> pathOf(Sentence const& sentence, DicSet const& dics) {
    std::vector<Word> path;
    std::size_t start = 0;
    for (LatticeNode const* node : bestPath(sentence)) {
        path.push_back(wordOf(start, *node, dics));
        start += node->length;
    }
    return path;
}

/// A world of letters, each with a word; C begins a longer form, too. @p cost tells a connection's cost by left and
/// right id, but before and behind unknown words.
template <class Cost>
World worldOfLetters(unsigned unknown, Cost&& cost) {
    World world;
    world.dictionaries.resize(1);
    unsigned id = 4;
    for (char const* form : {"A", "B", "C", "\xA0", "\x81\x41"}) world.dictionaries[0][form] = {{id++, 0, 0}};
    world.dictionaries[0]["CCCCC"] = {{6, 0, 0}};
    for (unsigned left = 1; left <= kIds; ++left)
        for (unsigned right = 1; right <= kIds; ++right)
            world.costs.push_back(static_cast<std::uint8_t>(left == 3 || right == 3 ? unknown : cost(left, right)));
    for (unsigned column = 0; column < kIds; ++column) world.columns.push_back(static_cast<std::uint16_t>(column));
    return world;
}

void expectReferencePath(World const& world, Attached const& attached, Lattice& lattice, std::string const& text) {
    Sentence sentence;
    sentence.text = text;
    lattice.build(sentence, attached.table.get(), attached.dics);
    ASSERT_EQ(pathOf(sentence, attached.dics), pathOf(referenceSearch(text, world.dictionaries, world.costFunction())))
        << "text " << testing::PrintToString(text);
}

TEST(LatticeProperty, UnknownWordsAreTakenAmongLetters) {
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Random random(seed);
        unsigned const unknown = 1 + random.below(8);
        std::array<unsigned, kIds> most{};
        for (unsigned& of : most) of = 1 + random.below(2 * unknown);
        World const world =
            worldOfLetters(unknown, [&](unsigned, unsigned right) { return random.below(most[right - 1] + 1); });
        Attached const attached(world);
        Lattice lattice(0);
        for (unsigned t = 0; t < 8; ++t) {
            std::string text;
            for (unsigned n = 2 + random.below(8); n > 0; --n) text += "AAABBBCCC\xA0\x81"[random.below(11)];
            expectReferencePath(world, attached, lattice, text);
            if (testing::Test::HasFatalFailure()) return;
        }
    }
}

/// Lengths of the words of an unread path, of which the first one's column must be told.
std::vector<std::size_t> unreadLengths(Lattice const& lattice, Sentence const& sentence) {
    std::vector<std::size_t> lengths;
    lattice.visitUnread(sentence, [&](std::uint16_t column, std::uint32_t length, auto const&) {
        EXPECT_TRUE(!lengths.empty() || column == lattice.firstUnread(sentence));
        lengths.push_back(length);
    });
    return lengths;
}

// Sentences side by side, with and without something between them, are what each of them is alone.
TEST(LatticeProperty, GroupsAgreeWithTheReferenceOnRandomWorlds) {
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Random random(seed);
        World const world = randomWorld(random);
        Attached const attached(world);
        Lattice lattice(0, randomParts(random));
        for (unsigned groups = 0; groups < 2; ++groups) {
            std::string memory;
            std::vector<std::pair<std::size_t, std::size_t>> places;
            for (unsigned n = 1 + random.below(7); n > 0; --n) {
                std::string const text = world.plainLetters ? random.latin(20) : random.bytes(16, true);
                places.emplace_back(memory.size(), text.size());
                memory += text + random.bytes(2, true).substr(random.below(2));
            }
            std::vector<Sentence> sentences;
            for (auto const& [begin, size] : places) {
                Sentence& sentence = sentences.emplace_back();
                sentence.text = std::string_view(memory).substr(begin, size);
                if (!lattice.belongTogether(sentences.front().text, sentence.text)) {
                    sentences.pop_back();
                    break;
                }
            }
            lattice.search(sentences, attached.table.get(), attached.dics);
            while (!sentences.empty()) {
                std::size_t const at = random.below(static_cast<unsigned>(sentences.size()));
                Sentence& sentence = sentences[at];
                SCOPED_TRACE("text " + testing::PrintToString(std::string(sentence.text)));
                std::vector<std::size_t> const lengths =
                    sentence.unread ? unreadLengths(lattice, sentence) : std::vector<std::size_t>();
                bool const wasUnread = sentence.unread;
                lattice.read(sentence);
                ReferenceLattice const expected =
                    referenceSearch(std::string(sentence.text), world.dictionaries, world.costFunction());
                ASSERT_EQ(resultOf(lattice, sentence, attached), resultOf(expected));
                std::vector<std::size_t> pathLengths;
                for (LatticeNode const* node : bestPath(sentence)) pathLengths.push_back(node->length);
                ASSERT_TRUE(!wasUnread || lengths == pathLengths);
                sentences.erase(sentences.begin() + static_cast<std::ptrdiff_t>(at));
            }
        }
    }
}

// Sums of long texts outgrow what the search keeps of a word, and words as long as
// these bring together sums that lie far apart.
TEST(LatticeProperty, AgreesWithTheReferenceOnLongTextsAndWords) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Random random(seed);
        World world = randomWorld(random);
        for (std::uint8_t& cost : world.costs)
            if (cost < 9) cost = static_cast<std::uint8_t>(cost * (1 + random.below(28)));
        if (world.plainLetters) world.shareRow();
        std::string text;
        while (text.size() < 4000) text += random.bytes(24, false);
        for (unsigned n = random.below(3); n > 0; --n) {
            std::string form = text.substr(random.below(3200), 50 + random.below(700));
            for (std::size_t pos = 0; pos < form.size(); pos += charWidth(form, pos))
                if (charWidth(form, pos) == 1 && isLeadByte(form[pos])) form[pos] = 'A';
            world.dictionaries[0][form].push_back({4, 1, 0});
            text.replace(random.below(3200), form.size(), form);
        }
        if (random.below(2) == 0) text.replace(random.below(3200), 800, 800, 'A');
        Attached const attached(world);
        // The whole of it, and cut into sentences that may be searched together.
        for (std::size_t const length : {text.size(), std::size_t{1300}}) {
            std::vector<std::string_view> pieces;
            std::vector<std::vector<Word>> expected;
            for (std::size_t at = 0; at < text.size(); at += length) {
                pieces.push_back(std::string_view(text).substr(at, length));
                expected.push_back(
                    pathOf(referenceSearch(std::string(pieces.back()), world.dictionaries, world.costFunction())));
            }
            for (BestPathSearch::Parts const parts :
                 {BestPathSearch::Parts{}, {64, 700}, {64, 700, false}, randomParts(random)}) {
                Lattice lattice(0, parts);
                std::vector<std::vector<Word>> found;
                for (std::size_t first = 0; first < pieces.size();) {
                    std::vector<Sentence> sentences;
                    for (; first < pieces.size(); ++first) {
                        if (!sentences.empty() && !lattice.belongTogether(sentences.front().text, pieces[first])) break;
                        sentences.emplace_back().text = pieces[first];
                    }
                    lattice.search(sentences, attached.table.get(), attached.dics);
                    for (Sentence& sentence : sentences) {
                        lattice.read(sentence);
                        found.push_back(pathOf(sentence, attached.dics));
                    }
                }
                ASSERT_EQ(found, expected) << "seed " << seed << ", parts of " << parts.segment << " and "
                                           << parts.block << (parts.wide ? ", wide" : "");
            }
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
            forced += constraints.library.forced && sentence.bestStart != nullptr ? 1 : 0;
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
