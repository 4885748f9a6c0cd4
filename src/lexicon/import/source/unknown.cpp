#include "lexicon/import/source/unknown.hpp"

#include "lexicon/import/source/charset.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace TAVO::importer {
namespace {

constexpr unsigned kMaxLevels = 8;
// Where only "no word begins here" allows an unknown word, but words do begin with
// its first character: what the unknown word costs more.
constexpr std::int32_t kDoubt = 4000;
// A character that is a word and costs this much less than an unknown word is no
// part of one: punctuation and numerals would have two nodes more for nothing.
constexpr std::int32_t kFarCheaper = 12000;

struct Parser {
    std::filesystem::path const& file;
    CharMap& map;
    std::map<std::vector<std::string>, std::uint16_t> kindIndex;
    std::size_t line = 0;

    [[noreturn]] void fail(std::string const& cause) const { importer::fail(file, line, cause); }

    unsigned number(std::string_view text, int base) const {
        std::string_view const given = text;
        unsigned value = 0;
        if (base == 16 && text.substr(0, 2) == "0x") text.remove_prefix(2);
        auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
        if (error != std::errc{} || end != text.data() + text.size())
            fail("\"" + std::string(given) + "\" is not a number");
        return value;
    }

    void category(std::vector<std::string> const& words) {
        if (words.size() < 4) fail("a category needs INVOKE, GROUP and LENGTH");
        map.categories[words[0]] = {number(words[1], 10) != 0, number(words[2], 10) != 0, number(words[3], 10)};
    }

    void range(std::vector<std::string> const& words) {
        std::string_view const codes = words[0];
        std::size_t const dots = codes.find("..");
        unsigned const low = number(codes.substr(0, dots), 16);
        unsigned const high = dots == std::string_view::npos ? low : number(codes.substr(dots + 2), 16);
        if (low > high || high > 0xFFFF) fail("the range of characters is not within 0x0000..0xFFFF");
        std::vector<std::string> const kind(words.begin() + 1, words.end());
        if (kind.empty()) fail("a category is missing");
        for (std::string const& name : kind)
            if (map.categories.count(name) == 0) fail("category " + name + " is not defined above");
        auto const [place, fresh] = kindIndex.emplace(kind, static_cast<std::uint16_t>(map.kinds.size()));
        if (fresh) map.kinds.push_back(kind);
        std::fill(map.kindOf.begin() + low, map.kindOf.begin() + high + 1, place->second);
    }

    void parse(std::string_view text) {
        while (!text.empty()) {
            std::size_t const end = std::min(text.find('\n'), text.size());
            std::istringstream words(std::string(text.substr(0, std::min(end, text.find('#')))));
            text.remove_prefix(std::min(end + 1, text.size()));
            ++line;
            std::vector<std::string> list;
            for (std::string word; words >> word;) list.push_back(word);
            if (list.empty()) continue;
            list[0].compare(0, 2, "0x") == 0 ? range(list) : category(list);
        }
    }
};

/// One unknown word of unk.def with the rows and columns of its chain.
struct Chain {
    UnknownTemplate const* entry;
    bool group;
    /// Row and column per level; level 0 is "begin". A group has two levels.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> levels;
    std::vector<std::uint32_t> names;
};

class ChainBuilder {
public:
    ChainBuilder(Lexicon& lexicon, CharMap const& map) : lexicon_(lexicon) {
        // The others of a category hardly ever win, and each costs two nodes per character.
        std::map<std::string, UnknownTemplate const*> cheapest;
        for (UnknownTemplate const& entry : lexicon.templates) {
            if (map.categories.count(entry.category) == 0)
                throw lexicon_error((lexicon.folder / "unk.def").string(), 0,
                                    "category " + entry.category + " is not in char.def");
            UnknownTemplate const*& least = cheapest.emplace(entry.category, &entry).first->second;
            if (entry.cost < least->cost) least = &entry;
        }
        for (UnknownTemplate const& entry : lexicon.templates)
            if (cheapest.at(entry.category) == &entry) plan(entry, map.categories.at(entry.category));
        lexicon_.matrix.extend(rowsLike_, newColumns_, allowed_);
    }

    std::vector<Chain> const& chains() const noexcept { return chains_; }

private:
    void plan(UnknownTemplate const& entry, CharCategory const& category) {
        Chain chain{&entry, category.group, {{entry.row, entry.col}}, {}};
        std::string const mark = classWord(entry.category);
        std::string const name = entry.name + ":Undef" + (mark.empty() ? "" : ":" + mark);
        chain.names.push_back(lexicon_.names.add(name));
        lexicon_.nameFields(name, entry.fields, true);
        unsigned const levels = category.group ? 2 : std::clamp(category.length, 1U, kMaxLevels);
        if (levels > 1) chain.levels[0].first = newRow(entry.row);
        for (unsigned level = 1; level < levels; ++level) {
            bool const last = level + 1 == levels;
            std::uint32_t const row = !last ? newRow(entry.row) : category.group ? chain.levels[0].first : entry.row;
            chain.levels.emplace_back(row, newColumn());
            chain.names.push_back(lexicon_.names.add(name + ":Inside"));
            lexicon_.nameFields(name + ":Inside", entry.fields, true);
            allowed_.emplace_back(chain.levels[level - 1].first, chain.levels[level].second);
        }
        if (category.group) allowed_.emplace_back(chain.levels[1].first, chain.levels[1].second);
        chains_.push_back(std::move(chain));
    }

    std::uint32_t newRow(std::uint32_t like) {
        rowsLike_.push_back(like);
        lexicon_.rowBase.push_back(like);
        return lexicon_.sourceRows + static_cast<std::uint32_t>(rowsLike_.size()) - 1;
    }
    std::uint32_t newColumn() { return lexicon_.sourceCols + newColumns_++; }

    Lexicon& lexicon_;
    std::vector<Chain> chains_;
    std::vector<std::uint32_t> rowsLike_;
    std::uint32_t newColumns_ = 0;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> allowed_;
};

std::string bytesOf(std::uint16_t code) {
    std::string text;
    if (code >= 0x100) text += static_cast<char>(code >> 8);
    text += static_cast<char>(code & 0xFF);
    return text;
}

}  // namespace

char const* classWord(std::string const& category) noexcept {
    static constexpr std::array<std::pair<std::string_view, char const*>, 11> kWords{{{"KATAKANA", "Katakana"},
                                                                                      {"HIRAGANA", "Kana"},
                                                                                      {"KANJI", "Kanji"},
                                                                                      {"ALPHA", "Alphabet"},
                                                                                      {"GREEK", "Alphabet"},
                                                                                      {"CYRILLIC", "Alphabet"},
                                                                                      {"NUMERIC", "Number"},
                                                                                      {"KANJINUMERIC", "Number"},
                                                                                      {"SYMBOL", "Symbol"},
                                                                                      {"SPACE", "Symbol"},
                                                                                      {"DEFAULT", "Symbol"}}};
    for (auto const& [name, word] : kWords)
        if (name == category) return word;
    return "";
}

CharMap readCharMap(std::filesystem::path const& file) {
    CharMap map;
    map.kindOf.assign(0x10000, 0);
    map.kinds.push_back({"DEFAULT"});
    Parser parser{file, map, {{{"DEFAULT"}, std::uint16_t{0}}}};
    parser.parse(readFile(file));
    if (map.categories.count("DEFAULT") == 0) throw lexicon_error(file.string(), 0, "category DEFAULT is not defined");
    return map;
}

void addUnknownWords(Lexicon& lexicon, CharMap const& map) {
    std::unordered_set<std::string_view> firstOfWord;
    std::unordered_map<std::string_view, std::int32_t> wholeWord;  // its least cost
    for (Word const& word : lexicon.words) {
        std::string_view const first = word.form.substr(0, charWidth(word.form, 0));
        firstOfWord.insert(first);
        if (first.size() != word.form.size()) continue;
        std::int32_t& least = wholeWord.emplace(first, word.cost).first->second;
        least = std::min(least, word.cost);
    }
    ChainBuilder const builder(lexicon, map);
    for (auto const& [code, point] : Cp932::table().all()) {
        if (code == '\n' || code == '\r') continue;  // no line of dictionary source can hold them
        std::string_view const form = lexicon.keep(bytesOf(code));
        std::vector<std::string> const& kind = map.at(point);
        bool const always = map.categories.at(kind.front()).always;
        auto const whole = wholeWord.find(form);
        bool const begins = always || whole == wholeWord.end();
        std::int32_t const doubt = always || firstOfWord.count(form) == 0 ? 0 : kDoubt;
        for (Chain const& chain : builder.chains()) {
            std::string const& category = chain.entry->category;
            if (whole != wholeWord.end() && whole->second + kFarCheaper <= chain.entry->cost) continue;
            std::size_t const firstLevel = begins && category == kind.front() ? 0 : 1;
            bool const inside = std::find(kind.begin(), kind.end(), category) != kind.end();
            for (std::size_t level = firstLevel; level < (inside ? chain.levels.size() : 1); ++level) {
                Word word;
                word.form = form;
                word.row = chain.levels[level].first;
                word.col = chain.levels[level].second;
                word.cost = level == 0 ? chain.entry->cost + doubt : 0;
                word.name = chain.names[level];
                word.unknown = true;
                lexicon.words.push_back(word);
            }
        }
    }
}

}  // namespace TAVO::importer
