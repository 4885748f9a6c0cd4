#include "lexicon/words/like_word.hpp"

#include "lexicon/user_text.hpp"

#include "base/text.hpp"
#include "config/pos_name.hpp"
#include "dic/pools.hpp"

#include <algorithm>
#include <set>
#include <vector>

namespace TAVO::words {

namespace {

/// Of a dictionary that an analyser uses, so that it stays pooled.
DicTrie const* trieOf(char const* path) {
    PoolLock const lock;
    return sharedPools().DIC_POOL.at(path)->trie();
}

std::vector<Placement> entriesOf(Tavo const& lexicon, std::string const& form, std::string const& part) {
    std::vector<Placement> entries;
    PosName name;
    for (int index = 0; index < lexicon.getDicCount(); ++index) {
        DicTrie const* const trie = trieOf(lexicon.getDicPath(index));
        if (trie == nullptr || form.empty()) continue;
        for (auto chain = trie->exactMatch(asBytes(form.data()), form.size()); chain; chain = chain.next()) {
            MrphDic const record(chain.head());
            std::string const pos = lexicon.getPartOfSP(record.pid());
            splitPosName(pos, name);
            // A character of an unknown word is no word.
            if (name.has("Undef") || !std::string_view(pos).starts_with(part)) continue;
            entries.push_back({record.pid(), record.cost()});
        }
    }
    return entries;
}

/// The id that @p form has when it stands alone, 0 when it is several words then.
std::uint16_t idAlone(Tavo& lexicon, std::string const& form) {
    std::vector<Mrph> words;
    lexicon.analyze(form);
    lexicon.getResult(words, 0);
    return words.size() == 1 ? words.front().getPid() : std::uint16_t{0};
}

}  // namespace

LikeWord findLike(Tavo& lexicon, std::string const& word, TextEncoding encoding) {
    std::string const sjis = asSjis(word, encoding, "--like");
    std::size_t const comma = std::min(sjis.find(','), sjis.size());
    std::string const form = sjis.substr(0, comma);
    std::string const part = comma < sjis.size() ? sjis.substr(comma + 1) : std::string();
    std::vector<Placement> const entries = entriesOf(lexicon, form, part);
    if (entries.empty()) throw lexicon_error("", 0, "--like " + word + ": the lexicon has no such word");
    std::set<std::string> names;
    for (Placement const& entry : entries) names.insert(std::string(withoutClass(lexicon.getPartOfSP(entry.id))));
    if (entries.size() == 1 || (names.size() == 1 && !part.empty())) return {entries.front(), form.size()};
    std::uint16_t const alone = idAlone(lexicon, form);
    auto const found =
        std::find_if(entries.begin(), entries.end(), [&](Placement const& entry) { return entry.id == alone; });
    if (found != entries.end()) return {*found, form.size()};
    std::string choice;
    for (std::string const& name : names) choice += "\n  --like " + fromSjis(form + "," + name, encoding);
    throw lexicon_error("", 0, "--like " + word + ": the lexicon has several; name one:" + choice);
}

}  // namespace TAVO::words
