// The trie against a linear scan over random small worlds.
#include "dic/dic.hpp"
#include "dic/dic_compiler.hpp"
#include "support/guarded_bytes.hpp"
#include "support/testing.hpp"

#include <iterator>
#include <map>
#include <random>

namespace TAVO::test {
namespace {

using Random = std::mt19937;

std::string pick(Random& random, std::string_view alphabet, std::size_t maxLength) {
    std::string text(random() % (maxLength + 1), ' ');
    for (char& c : text) c = alphabet[random() % alphabet.size()];
    return text;
}

/// Few bytes, so that forms share prefixes; lead bytes, second bytes that look
/// like marks, the lowest and the highest byte.
std::string_view alphabetOf(Random& random) {
    constexpr std::string_view kAlphabets[] = {"ab", "\x81\x82\x5C", "a\x83\x5C\x7C\x2D\xFF\x01", "\x01\x02",
                                               "\xFE\xFF\x80"};
    return kAlphabets[random() % std::size(kAlphabets)];
}

using Words = std::map<std::string, std::vector<std::string>>;  // records of each form

Words randomWords(Random& random, std::string_view alphabet) {
    Words words;
    std::size_t const count = random() % 40;
    for (std::size_t i = 0; i < count; ++i) {
        std::string const form = pick(random, alphabet, random() % 20 == 0 ? 600 : 6);
        if (form.empty()) continue;
        std::size_t const records = 1 + random() % 3;
        for (std::size_t r = 0; r < records; ++r) {
            std::string record("\x09\0\x01\0\0\0\0\0\0", 9);
            record[4] = static_cast<char>(random());
            words[form].push_back(record);
        }
    }
    return words;
}

std::string buildTrie(Words const& words, std::vector<std::string>& chains) {
    std::vector<TrieKey> keys;
    chains.clear();
    chains.reserve(words.size());
    for (auto const& [form, records] : words) {
        std::string& chain = chains.emplace_back();
        for (std::string const& record : records) {
            chain += record;
            if (&record != &records.back()) chain[chain.size() - 2] = 1;
        }
        keys.push_back({form, chain});
    }
    TrieBuilder builder;
    EXPECT_TRUE(builder.init(64, 16));
    EXPECT_TRUE(builder.build(keys, false)) << builder.error();
    std::string bytes;
    builder.write([&bytes](std::string_view part) {
        bytes += part;
        return true;
    });
    return bytes;
}

using Matches = std::vector<std::pair<std::size_t, std::vector<int>>>;  // length, costs of the chain

std::vector<int> costsOf(RecordChain chain) {
    std::vector<int> costs;
    for (; chain; chain = chain.next()) costs.push_back(chain.record().cost());
    return costs;
}

std::vector<int> costsOf(std::vector<std::string> const& records) {
    std::vector<int> costs;
    for (std::string const& record : records) costs.push_back(static_cast<unsigned char>(record[4]));
    return costs;
}

Matches scan(Words const& words, std::string const& text) {
    Matches found;
    for (std::size_t length = 1; length <= text.size(); ++length) {
        auto const word = words.find(text.substr(0, length));
        if (word != words.end()) found.emplace_back(length, costsOf(word->second));
    }
    return found;
}

TEST(TrieProperty, AgreesWithALinearScan) {
    constexpr unsigned kSeed = 31;
    Random random(kSeed);
    for (int world = 0; world < 600; ++world) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", world " + std::to_string(world));
        std::string_view const alphabet = alphabetOf(random);
        Words const words = randomWords(random, alphabet);
        std::vector<std::string> chains;
        std::string const bytes = buildTrie(words, chains);
        DicTrie const trie(asBytes(bytes.data()), bytes.size());

        std::vector<std::string> order;
        trie.visitAll([&](std::string const& key, RecordChain chain) {
            order.push_back(key);
            EXPECT_EQ(costsOf(chain), words.count(key) != 0 ? costsOf(words.at(key)) : std::vector<int>{-1}) << key;
        });
        EXPECT_EQ(order.size(), words.size());
        EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));

        for (int query = 0; query < 60; ++query) {
            std::string text = pick(random, alphabet, 8);
            if (query % 3 == 0 && !words.empty()) {
                text = std::next(words.begin(), static_cast<long>(random() % words.size()))->first + text;
            }
            if (query % 4 == 1) text.insert(random() % (text.size() + 1), 1, '\0');  // ends any match
            GuardedBytes const guarded(text);
            Matches found;
            trie.prefixSearch(guarded.data(), guarded.size(), [&](std::size_t length, RecordChain chain) {
                found.emplace_back(length, costsOf(chain));
                return true;
            });
            ASSERT_EQ(found, scan(words, text));
            auto const word = words.find(text);
            std::vector<std::string> begun, expected;
            for (auto from = words.lower_bound(text); from != words.end() && from->first.starts_with(text); ++from)
                expected.push_back(from->first);
            std::size_t const most = query % 5 == 2 ? 2 : expected.size();
            expected.resize(std::min(most, expected.size()));
            trie.visitFrom(guarded.data(), guarded.size(), [&](std::string const& key, RecordChain chain) {
                EXPECT_EQ(costsOf(chain), costsOf(words.at(key)));
                begun.push_back(key);
                return begun.size() != most;
            });
            EXPECT_EQ(begun, expected) << text;
            EXPECT_EQ(costsOf(trie.exactMatch(guarded.data(), guarded.size())),
                      word != words.end() ? costsOf(word->second) : std::vector<int>{});
        }
    }
}

}  // namespace
}  // namespace TAVO::test
