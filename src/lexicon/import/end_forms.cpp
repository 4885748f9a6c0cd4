#include "lexicon/import/end_forms.hpp"

#include "base/sjis.hpp"
#include "base/utf8.hpp"
#include "result/end_form_rules.hpp"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <span>
#include <string_view>
#include <tuple>
#include <unordered_map>

namespace TAVO::importer {
namespace {

/// Characters of a text, last one first.
using Codes = std::u16string;

Codes codesOf(std::string_view text) {
    Codes codes;
    for (std::size_t pos = 0; pos < text.size(); pos += charWidth(text, pos)) {
        auto const first = static_cast<unsigned char>(text[pos]);
        bool const isWide = charWidth(text, pos) == 2;
        codes += static_cast<char16_t>(isWide ? first << 8 | static_cast<unsigned char>(text[pos + 1]) : first);
    }
    std::reverse(codes.begin(), codes.end());
    return codes;
}

std::string textOf(Codes const& codes) {
    std::string text;
    for (auto c = codes.rbegin(); c != codes.rend(); ++c) {
        if (*c > 0xFF) text += static_cast<char>(*c >> 8);
        text += static_cast<char>(*c & 0xFF);
    }
    return text;
}

/// A text and its end form without what they have in common at the front: the change.
struct Change {
    Codes strip, add;

    auto key() const { return std::tuple(strip.size(), strip, add); }
    friend bool operator<(Change const& a, Change const& b) { return a.key() < b.key(); }
};

struct Pair {
    Codes from, to;
    Change change;

    Pair(std::string_view text, std::string_view end) : from(codesOf(text)), to(codesOf(end)) {
        std::size_t const shorter = std::min(from.size(), to.size());
        std::size_t common = 0;
        while (common < shorter && from[from.size() - 1 - common] == to[to.size() - 1 - common]) ++common;
        change = {from.substr(0, from.size() - common), to.substr(0, to.size() - common)};
    }
};

bool isRight(Change const* rule, Pair const& pair) {
    if (rule == nullptr) return pair.from == pair.to;
    return pair.to == rule->add + pair.from.substr(rule->strip.size());
}

/// Gives the endings of pairs that have @p depth last characters in common, which @p rule has served so far.
void deriveFrom(std::span<Pair const> pairs, std::size_t depth, Change const* rule, std::vector<Ending>& endings) {
    auto const right =
        std::count_if(pairs.begin(), pairs.end(), [rule](Pair const& pair) { return isRight(rule, pair); });
    if (static_cast<std::size_t>(right) == pairs.size()) return;
    std::map<Change, std::ptrdiff_t> counts;
    for (Pair const& pair : pairs)
        if (pair.change.strip.size() <= depth) ++counts[pair.change];
    auto const best = std::max_element(counts.begin(), counts.end(),
                                       [](auto const& a, auto const& b) { return a.second < b.second; });
    Change made;
    if (best != counts.end() && best->second > right) {
        made.strip = pairs.front().from.substr(0, depth);
        made.add = best->first.add + made.strip.substr(best->first.strip.size());
        rule = &made;
        endings.push_back({textOf(made.strip), textOf(made.add)});
    }
    for (std::size_t begin = 0, end; begin < pairs.size(); begin = end) {
        end = begin + 1;
        if (pairs[begin].from.size() == depth) continue;
        while (end < pairs.size() && pairs[end].from[depth] == pairs[begin].from[depth]) ++end;
        deriveFrom(pairs.subspan(begin, end - begin), depth + 1, rule, endings);
    }
}

/// What a name's conjugation forms share: the name up to its last feature.
std::string_view conjugationOf(std::string_view name) {
    std::size_t const colon = name.rfind(':');
    return colon == std::string_view::npos ? std::string_view() : name.substr(0, colon);
}

/// Per name, whether words of it are conjugated: most words of the name have another base form, or of one that
/// differs from it in the last feature alone.
std::vector<bool> conjugatedNames(Lexicon const& lexicon) {
    struct Count {
        std::size_t words = 0, changed = 0;
    };
    std::vector<Count> counts(lexicon.names.size());
    for (Word const& word : lexicon.words) {
        if (word.unknown) continue;
        ++counts[word.name].words;
        counts[word.name].changed += word.base.empty() ? 0 : 1;
    }
    std::set<std::string_view> conjugations;
    for (std::uint32_t name = 0; name < counts.size(); ++name)
        if (2 * counts[name].changed > counts[name].words) conjugations.insert(conjugationOf(lexicon.names.at(name)));
    std::vector<bool> conjugated(counts.size());
    for (std::uint32_t name = 0; name < counts.size(); ++name)
        conjugated[name] = 2 * counts[name].changed > counts[name].words ||
                           (counts[name].changed > 0 && !conjugationOf(lexicon.names.at(name)).empty() &&
                            conjugations.contains(conjugationOf(lexicon.names.at(name))));
    return conjugated;
}

/// Bytes of the characters that both begin with.
std::size_t commonStart(std::string_view a, std::string_view b) noexcept {
    auto const same = static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
    return same - (isInsideCharacter(a, same) ? 1 : 0);
}

/// The entries that are base forms.
class BaseEntries {
public:
    explicit BaseEntries(Lexicon const& lexicon) : lexicon_(lexicon) {
        for (Word const& word : lexicon.words)
            if (!word.unknown && word.base.empty() && !word.reading.empty()) entries_.emplace(word.form, &word);
    }
    /// The entry of the base form of @p word, with the reading and then the name most like its own; null for none.
    Word const* of(Word const& word) const {
        if (word.base.empty()) return &word;
        std::string_view const name = lexicon_.names.at(word.name);
        auto const likeness = [&](Word const& entry) {
            return std::tuple(commonStart(entry.reading, word.reading),
                              commonStart(lexicon_.names.at(entry.name), name), commonStart(entry.pron, word.pron));
        };
        Word const* found = nullptr;
        auto const [first, last] = entries_.equal_range(word.base);
        for (auto entry = first; entry != last; ++entry) {
            Word const& one = *entry->second;
            if (found == nullptr || likeness(one) > likeness(*found) ||
                (likeness(one) == likeness(*found) &&
                 std::tie(one.reading, one.pron) < std::tie(found->reading, found->pron)))
                found = &one;
        }
        return found;
    }

private:
    Lexicon const& lexicon_;
    std::unordered_multimap<std::string_view, Word const*> entries_;
};

constexpr std::size_t kKinds = 3;  // forms, readings, pronunciations
using Texts = std::array<std::pair<std::string_view, std::string_view>, kKinds>;

/// Of each kind, the text of a word and that of its base form; empty where it has none.
Texts textsOf(Word const& word, BaseEntries const& entries) {
    Texts texts;
    texts[0] = {word.form, word.base.empty() ? word.form : word.base};
    if (Word const* const base = entries.of(word); base != nullptr && !word.reading.empty()) {
        texts[1] = {word.reading, base->reading};
        if (!word.pron.empty() && !base->pron.empty()) texts[2] = {word.pron, base->pron};
    }
    return texts;
}

/// False for what a line of the rule file cannot hold.
bool isWritable(Ending const& ending) {
    return (ending.strip + ending.add).find_first_of("\t\r\n") == std::string::npos;
}

class Deriver {
public:
    explicit Deriver(Lexicon& lexicon) : lexicon_(lexicon), conjugated_(conjugatedNames(lexicon)), entries_(lexicon) {}

    EndForms run() {
        collect();
        write();
        check();
        return std::move(made_);
    }

private:
    template <class Visit>
    void eachWord(Visit visit) {
        for (Word& word : lexicon_.words)
            if (!word.unknown && conjugated_[word.name]) visit(word, textsOf(word, entries_));
    }
    void collect() {
        eachWord([this](Word const& word, Texts const& texts) {
            auto& kinds = pairs_[lexicon_.names.at(word.name)];
            for (std::size_t kind = 0; kind < kKinds; ++kind)
                if (!texts[kind].first.empty()) kinds[kind].emplace_back(texts[kind]);
        });
    }
    void write() {
        made_.text =
            "; coding: utf-8\n"
            "; Parts of speech, the texts meant, what such a text ends with, and what stands there in the end form.\n";
        for (auto& [name, kinds] : pairs_) {
            std::map<std::pair<std::string, std::string>, std::string> lines;  // rules of several kinds are one line
            for (std::size_t kind = 0; kind < kKinds; ++kind) {
                for (Ending const& ending : deriveEndings(std::move(kinds[kind]))) {
                    if (!isWritable(ending)) continue;
                    std::string& names = lines[{ending.strip, ending.add}];
                    names.append(names.empty() ? "" : ",").append(EndFormRules::kKindNames[kind]);
                }
            }
            for (auto const& [ending, names] : lines)
                made_.text += sjisToUtf8(name + "\t" + names + "\t" + ending.first + "\t" + ending.second) + "\n";
            made_.rules += lines.size();
        }
    }
    /// With the rules as they are read.
    void check() {
        EndFormRules rules;
        std::string_view const text = made_.text;
        rules.load("end.rules", &text);
        eachWord([&](Word& word, Texts const& texts) {
            EndShare* const shares[] = {word.base.empty() ? &made_.own : &made_.forms, &made_.readings, &made_.prons};
            for (std::size_t kind = 0; kind < kKinds; ++kind) {
                auto const& [given, wanted] = texts[kind];
                if (given.empty()) continue;
                auto const end =
                    rules.apply(lexicon_.names.at(word.name), static_cast<EndFormRules::Kind>(kind), given);
                bool const isRight = (end ? std::string_view(*end) : given) == wanted;
                ++shares[kind]->all;
                shares[kind]->right += isRight ? 1 : 0;
                if (kind == 0 && !isRight && word.base.empty()) word.base = word.form;
            }
        });
    }

    Lexicon& lexicon_;
    std::vector<bool> conjugated_;
    BaseEntries entries_;
    std::map<std::string, std::array<EndPairs, kKinds>> pairs_;  // by name
    EndForms made_;
};

}  // namespace

std::vector<Ending> deriveEndings(EndPairs pairs) {
    std::sort(pairs.begin(), pairs.end());
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    std::vector<Pair> made;
    made.reserve(pairs.size());
    for (auto const& [text, end] : pairs) made.emplace_back(text, end);
    std::sort(made.begin(), made.end(), [](Pair const& a, Pair const& b) { return a.from < b.from; });
    std::vector<Ending> endings;
    deriveFrom(made, 0, nullptr, endings);
    std::sort(endings.begin(), endings.end(), [](Ending const& a, Ending const& b) { return a.strip < b.strip; });
    return endings;
}

EndForms deriveEndForms(Lexicon& lexicon) { return Deriver(lexicon).run(); }

}  // namespace TAVO::importer
