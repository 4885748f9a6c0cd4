// The cooccurrence mode against an enumeration of all analyses, on random small worlds.
#include "support/random_world.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <tavo/tavo.hpp>

#include <algorithm>
#include <sstream>

namespace TAVO::test {
namespace {

constexpr unsigned kUnknown = 3, kFirstId = 4, kLastId = 7;

struct CoocWord {
    friend void PrintTo(CoocWord const& w, std::ostream* os) {
        *os << w.form << ':' << w.pid << ':' << w.cost << ':' << w.word << ':' << w.group;
    }
    std::string form;
    unsigned pid, cost;
    std::string word, group;  // cooccurrence ids
    auto operator<=>(CoocWord const&) const = default;
};
using CoocPath = std::vector<CoocWord>;
/// Connection sum and word-cost sum.
using CoocKey = std::pair<unsigned, unsigned>;

struct CoocCase {
    std::vector<CoocWord> words;
    std::vector<unsigned> costs;
    unsigned margin, sentences, window, wordWeight, groupWeight;

    unsigned cost(unsigned left, unsigned right) const { return costs[left * (kLastId + 1) + right]; }
};

/// All paths of @p text from @p at on, behind @p path.
void enumerate(CoocCase const& c, std::string const& text, std::size_t at, CoocPath& path, CoocKey key,
               std::vector<std::pair<CoocPath, CoocKey>>& found) {
    unsigned const left = path.empty() ? 1 : path.back().pid;
    if (at == text.size()) {
        unsigned const cost = left == kUnknown ? 255 : c.cost(left, 2);
        if (cost != 255 || left == kUnknown) found.push_back({path, {key.first + cost, key.second}});
        return;
    }
    std::vector<CoocWord> next = c.words;
    next.push_back({text.substr(at, 1), kUnknown, 255, "", ""});
    for (CoocWord const& word : next) {
        if (text.compare(at, word.form.size(), word.form) != 0 || c.cost(left, word.pid) == 255) continue;
        path.push_back(word);
        enumerate(c, text, at + word.form.size(), path, {key.first + c.cost(left, word.pid), key.second + word.cost},
                  found);
        path.pop_back();
    }
}

struct Seeker {
    std::string name;
    bool left, right;
};

std::vector<Seeker> seekers(std::string text) {
    std::vector<Seeker> all;
    bool const both = text.starts_with("@");
    std::istringstream in(both ? text.substr(1) : text);
    for (std::string id; in >> id;) {
        Seeker seeker{"", both, both};
        for (char const letter : id) {
            if (letter == 'L') seeker.left = true;
            if (letter == 'R') seeker.right = true;
            if (letter != 'L' && letter != 'R') seeker.name += letter;
        }
        all.push_back(seeker);
    }
    return all;
}

std::size_t matches(std::string const& a, std::string const& b) {
    std::size_t count = 0;
    for (Seeker const& left : seekers(a))
        for (Seeker const& right : seekers(b)) count += left.name == right.name && (left.right || right.left) ? 1 : 0;
    return count;
}

/// Of the pairs of words of @p path, and of those of @p before with them, which stand in front of it.
std::size_t scoreOf(CoocCase const& c, CoocPath const& before, CoocPath const& path) {
    CoocPath all = before;
    all.insert(all.end(), path.begin(), path.end());
    std::size_t score = 0;
    for (std::size_t b = before.size(); b < all.size(); ++b) {
        std::size_t distance = 0;
        for (std::size_t a = b; a-- != 0; distance += all[a].form.size()) {
            if (distance >= c.window) break;
            score += (matches(all[a].word, all[b].word) * c.wordWeight +
                      matches(all[a].group, all[b].group) * c.groupWeight) *
                     (c.window - distance);
        }
    }
    return score;
}

CoocPath wordsOf(std::vector<Mrph> const& morphemes) {
    CoocPath path;
    for (Mrph const& m : morphemes)
        path.push_back(
            {m.getForm(true), m.getPid(), static_cast<unsigned>(m.getCost()), m.getWordCooc(), m.getGroupCooc()});
    return path;
}

/// A world with two dictionaries: the first has some words of the second, with ids.
class CoocWorld {
public:
    explicit CoocWorld(Random& random) {
        std::vector<std::string> const names{"Begin", "End", "Undef", "A", "B", "C", "D"};
        c.costs.assign((kLastId + 1) * (kLastId + 1), 0);
        for (unsigned left = 1; left <= kLastId; ++left)
            for (unsigned right = 1; right <= kLastId; ++right)
                c.costs[left * (kLastId + 1) + right] = left == kUnknown || right == kUnknown ? 9
                                                        : random.oneIn(7)                     ? 255
                                                                                              : random.below(4);
        SmallWorld system, user;
        for (SmallWorld* world : {&system, &user})
            world->names(names).cost([&](unsigned l, unsigned r) { return static_cast<std::uint8_t>(c.cost(l, r)); });
        std::vector<CoocWord> others;
        for (unsigned i = 0; i < 10; ++i) {
            CoocWord word{"", kFirstId + random.below(kLastId - kFirstId + 1), random.below(3), "", ""};
            for (unsigned n = 1 + random.below(2); n != 0; --n) word.form += static_cast<char>('a' + random.below(3));
            bool const plain = random.oneIn(3);
            // Without ids they would be one word.
            if (std::find(others.begin(), others.end(), word) != others.end()) continue;
            others.push_back(word);
            system.line(lineOf(word));
            if (!plain) {
                word.word = random.of(kIdTexts);
                word.group = random.of(kIdTexts);
                user.line(lineOf(word));
            }
            c.words.push_back(word);
        }
        user.line("z,A,1");
        userPaths = user.writeTo(userDir.path());
        systemPaths = system.writeTo(systemDir.path());
        c.margin = random.below(7);
        c.sentences = random.below(3);
        c.window = 1 + random.below(8);
        c.wordWeight = random.below(3);
        c.groupWeight = random.below(3);
        rules = userDir.write(
            "rules", "; all\nMargin=" + std::to_string(c.margin) + "\nSentences = " + std::to_string(c.sentences) +
                         "\nWindow=" + std::to_string(c.window) + "\nWordWeight=" + std::to_string(c.wordWeight) +
                         "\n  GroupWeight=" + std::to_string(c.groupWeight) + "\n");
    }
    void attachTo(Tavo& tavo) const {
        tavo.setConnTablePath(systemPaths.connTable.c_str());
        tavo.addDicPath(userPaths.dic.c_str(), false);
        tavo.addDicPath(systemPaths.dic.c_str(), false);
        tavo.setDelimiterString({"b"});
        tavo.setDelimitCRLFMode(1);
        tavo.setDeleteCRLFMode(1);
    }

    /// True when @p text has a word that looks for others.
    bool looks(std::string const& text) const {
        return std::any_of(c.words.begin(), c.words.end(), [&](CoocWord const& word) {
            return (word.word + word.group).find_first_of("@LR") != std::string::npos &&
                   text.find(word.form) != std::string::npos;
        });
    }

    CoocCase c;
    TempDir userDir, systemDir;
    SmallWorld::Paths userPaths, systemPaths;
    std::string rules;

private:
    static constexpr char const* kIdTexts[] = {"", "", "x", "y", "x y", "@x", "xL", "yR", "xL y", "xyLR", "@x y"};
    static std::string lineOf(CoocWord const& word) {
        return word.form + "," + std::string(1, static_cast<char>('A' + word.pid - kFirstId)) + "," +
               std::to_string(word.cost) + ",,," + word.word + "," + word.group;
    }
};

using Scored = std::tuple<std::size_t, CoocKey, CoocPath>;  // score, key, words

/// All analyses of a sentence that cost at most what the margin lets them, and the others' keys.
class Expected {
public:
    Expected(CoocCase const& c, CoocPath const& before, std::string const& text) : c_(c), before_(before) {
        CoocPath path;
        enumerate(c, text, 0, path, {0, 0}, all_);
        for (auto const& [words, key] : all_) best_ = std::min(best_, key);
    }
    std::size_t size() const { return all_.size(); }
    bool isNear(CoocKey const& key) const {
        return c_.margin == 0 ? key == best_ : key.first <= best_.first + c_.margin;
    }
    Scored scored(CoocPath const& path) const {
        auto const found = std::find_if(all_.begin(), all_.end(), [&](auto const& one) { return one.first == path; });
        if (found == all_.end()) return {0, {}, {}};
        return {scoreOf(c_, before_, path), found->second, path};
    }
    /// Score and key of what is chosen in the place of @p plain.
    std::pair<std::size_t, CoocKey> choice(CoocPath const& plain) const {
        auto const [score, key, words] = scored(plain);
        std::pair<std::size_t, CoocKey> chosen{score, key};
        for (auto const& [path, cost] : all_) {
            std::size_t const own = scoreOf(c_, before_, path);
            bool const isBetter = own > chosen.first || (own == chosen.first && own > score && cost < chosen.second);
            if (isNear(cost) && isBetter) chosen = {own, cost};
        }
        return chosen;
    }
    /// Scores and keys of the analyses near the best one, best first, then keys of the others.
    std::vector<std::pair<std::size_t, CoocKey>> ranking(CoocPath const& first) const {
        std::vector<std::tuple<bool, std::size_t, CoocKey>> order;
        for (auto const& [path, key] : all_)
            if (path != first) order.emplace_back(!isNear(key), isNear(key) ? ~scoreOf(c_, before_, path) : 0, key);
        std::sort(order.begin(), order.end());
        std::vector<std::pair<std::size_t, CoocKey>> keys;
        for (auto const& [far, score, key] : order) keys.emplace_back(far ? 0 : ~score, key);
        return keys;
    }

private:
    CoocCase const& c_;
    CoocPath const& before_;
    std::vector<std::pair<CoocPath, CoocKey>> all_;
    CoocKey best_{~0U, ~0U};
};

/// The words before sentence @p index, as far as they count.
CoocPath contextOf(Tavo& tavo, std::string const& text, int index, unsigned sentences) {
    CoocPath before;
    for (int i = std::max(0, index - static_cast<int>(sentences)); i < index; ++i) {
        char const* const end = tavo.getSentencePtrWithoutNullEnd(i) + tavo.getSentenceLength(i);
        std::vector<Mrph> words;
        tavo.getResult(words, i);
        CoocPath const path = wordsOf(words);
        before.insert(before.end(), path.begin(), path.end());
        if (end != text.data() + text.size() && *end == '\n') before.clear();
    }
    return before;
}

TEST(CoocProperty, ChoosesAndRanksAsAnEnumerationDoes) {
    std::size_t changed = 0, ranked = 0;
    for (unsigned seed = 1; seed <= 80; ++seed) {
        Random random(seed);
        CoocWorld const world(random);
        Tavo plain, tavo;
        world.attachTo(plain);
        world.attachTo(tavo);
        tavo.setCooccurrenceMode(1);
        tavo.setCooccurrenceRulePath(world.rules.c_str());
        for (unsigned t = 0; t < 8; ++t) {
            std::string text;
            for (unsigned n = 1 + random.below(10); n != 0; --n) text += "abc\na"[random.below(5)];
            SCOPED_TRACE("seed " + std::to_string(seed) + ", text " + testing::PrintToString(text));
            plain.analyze(text);
            random.oneIn(2) ? tavo.analyze(text) : tavo.analyzeNBest(text);
            ASSERT_EQ(tavo.getSentenceCount(), plain.getSentenceCount());
            for (int s = 0; s < static_cast<int>(tavo.getSentenceCount()); ++s) {
                std::vector<Mrph> plainWords, words;
                plain.getResult(plainWords, s);
                tavo.getResult(words, s);
                CoocPath const before = contextOf(tavo, text, s, world.c.sentences);
                Expected const expected(world.c, before, tavo.getSentence(s));
                ASSERT_EQ(words.empty(), expected.size() == 0);
                if (words.empty()) continue;
                CoocPath const wasPlain = wordsOf(plainWords), is = wordsOf(words);
                auto const [score, key, path] = expected.scored(is);
                auto const wanted = expected.choice(wasPlain);
                ASSERT_EQ(std::pair(score, key), wanted);
                ASSERT_TRUE(is == wasPlain || score > std::get<0>(expected.scored(wasPlain)));
                changed += is != wasPlain ? 1 : 0;
                if (expected.size() > 200) continue;
                std::vector<std::vector<Mrph>> best;
                std::vector<PathCost> costs;
                tavo.getResultNBest(best, costs, s, 300);
                ASSERT_EQ(CoocKey(costs[0].connection, costs[0].word), key);
                // Without a word that looks for others the sums alone count, and homographs of one cost are one.
                if (!world.looks(tavo.getSentence(s))) continue;
                ASSERT_EQ(wordsOf(best[0]), is);
                ASSERT_EQ(best.size(), expected.size());
                std::vector<std::pair<std::size_t, CoocKey>> found;
                for (std::size_t i = 1; i < best.size(); ++i) {
                    auto const [own, sums, unused] = expected.scored(wordsOf(best[i]));
                    ASSERT_EQ(CoocKey(costs[i].connection, costs[i].word), sums);
                    found.emplace_back(expected.isNear(sums) ? own : 0, sums);
                }
                ASSERT_EQ(found, expected.ranking(is));
                ++ranked;
            }
        }
    }
    EXPECT_GT(changed, 100U);
    EXPECT_GT(ranked, 500U);
}

}  // namespace
}  // namespace TAVO::test
