#include "dic/index/dic_index_maker.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic.hpp"
#include "dic/index/conn_index.hpp"

#include <algorithm>
#include <numeric>

namespace TAVO {

using namespace CharacterFlag;

namespace {

/// The first byte of a character.
unsigned firstByte(CharacterCode code) noexcept { return code > 0xFF ? code >> 8 : code; }

std::uint64_t classBit(unsigned number) noexcept { return std::uint64_t{1} << (number % 64); }

}  // namespace

std::vector<std::uint64_t> DicIndex::make(Dic const& dic, ConnTable const& table, ConnIndex const& conn,
                                          IndexOrigin const& origin) {
    return DicIndexMaker(SurfaceTable(*dic.trie(), table), conn).write(origin);
}

DicIndexMaker::DicIndexMaker(SurfaceTable const& surfaces, ConnIndex const& conn)
    : surfaces_(surfaces),
      conn_(conn),
      lists_(conn),
      codes_(DicIndex::kCodes, 0),
      pairs_(DicIndex::kCodes / 64, 0),
      neighbours_(DicIndex::kCodes / 64, 0) {
    numberCharacters();
    noteCharacters();
    for (std::size_t first = 0; first < surfaces.size();) {
        CharacterCode const code = surfaces.characters(first).front();
        std::size_t last = first + 1;
        while (last < surfaces.size() && surfaces.characters(last).front() == code) ++last;
        std::vector<ListedWord> words;
        std::uint32_t const number = codes_[code] & 0xFFFF;
        addBranch(first, last, 1, 0, words, roots_[number], rootChains_[number]);
        roots_[number] |= std::uint64_t{number} << DicIndex::kLabelShift;
        first = last;
    }
    trie_.finish();
    lists_.finish();
    deriveCodes();
}

/// The most frequent ones have the smallest numbers, so that what a search reads of them lies together.
void DicIndexMaker::numberCharacters() {
    std::vector<std::uint32_t> frequencies(DicIndex::kCodes, 0);
    for (std::size_t i = 0; i < surfaces_.size(); ++i)
        for (CharacterCode const code : surfaces_.characters(i)) ++frequencies[code];
    std::vector<std::uint32_t> order(DicIndex::kCodes);
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return frequencies[a] > frequencies[b]; });
    auto const count = static_cast<std::uint32_t>(
        std::count_if(frequencies.begin(), frequencies.end(), [](std::uint32_t n) { return n != 0; }));
    std::fill(codes_.begin(), codes_.end(), count + 1);
    for (std::uint32_t i = 0; i < count; ++i) codes_[order[i]] = i + 1;
    roots_.assign(count + 2, 0);
    roots_[count + 1] = std::uint64_t{count + 1} << DicIndex::kLabelShift;
    rootChains_.assign(count + 2, 0);
    trie_.start(count);
}

void DicIndexMaker::noteCharacters() {
    for (std::size_t i = 0; i < surfaces_.size(); ++i) {
        std::span<CharacterCode const> const characters = surfaces_.characters(i);
        for (std::size_t at = 0; at < characters.size(); ++at) {
            CharacterCode const code = characters[at];
            if (code > 0xFF) {
                setBit(pairs_, code);
                continue;
            }
            if (at + 1 == characters.size()) {
                codes_[code] |= kEndsSurface << DicIndex::kFlagShift;
                continue;
            }
            codes_[code] |= kContinues << DicIndex::kFlagShift;
            setBit(neighbours_, DicIndex::neighbourHash(static_cast<unsigned char>(code), characters[at + 1]));
        }
    }
}

/// Makes the node behind the first @p depth characters that the surfaces [@p first, @p last) share. @p list holds
/// @p words, those of the surfaces on the way; @p chain is that of the node's own surface.
void DicIndexMaker::addBranch(std::size_t first, std::size_t last, std::size_t depth, std::uint32_t list,
                              std::vector<ListedWord>& words, std::uint64_t& node, std::uint32_t& chain) {
    std::size_t const given = words.size();
    if (surfaces_.characters(first).size() == depth) {
        for (IndexedWord const& word : surfaces_.words(first))
            words.push_back({word.column, word.row, word.cost, static_cast<std::uint8_t>(depth)});
        list = lists_.add(words, false);
        chain = surfaces_.chain(first) + 1;
        if (depth == 1)
            codes_[surfaces_.characters(first).front()] |= flagsOfSurface(surfaces_.words(first))
                                                           << DicIndex::kFlagShift;
        ++first;
    }
    std::uint32_t base = 0;
    if (first != last && depth == DicIndex::kMostCharacters) {
        list = lists_.add(words, true);
    } else if (first != last) {
        std::vector<std::pair<std::uint32_t, std::size_t>> children;  // number and first surface
        for (std::size_t i = first; i < last; ++i) {
            std::uint32_t const number = codes_[surfaces_.characters(i)[depth]] & 0xFFFF;
            if (children.empty() || children.back().first != number) children.emplace_back(number, i);
        }
        std::vector<std::uint32_t> numbers;
        numbers.reserve(children.size());
        for (auto const& child : children) numbers.push_back(child.first);
        std::sort(numbers.begin(), numbers.end());
        base = trie_.place(numbers);
        for (std::size_t i = 0; i < children.size(); ++i) {
            std::size_t const end = i + 1 < children.size() ? children[i + 1].second : last;
            std::uint64_t child = 0;
            std::uint32_t childChain = 0;
            addBranch(children[i].second, end, depth + 1, list, words, child, childChain);
            std::uint32_t const number = children[i].first;
            trie_.set(base + number, child | std::uint64_t{number} << DicIndex::kLabelShift, childChain);
        }
    }
    node = base | std::uint64_t{list} << DicIndex::kListShift;
    words.resize(given);
}

/// Of a surface of one character.
///
/// It is safe when one of its words costs little enough, whatever stands before and behind: with U for what an unknown
/// word costs on either side, (largest cost of the column) + (largest cost of the row) < 2U.
unsigned DicIndexMaker::flagsOfSurface(std::span<IndexedWord const> words) const {
    unsigned flags = 0;
    for (IndexedWord const& word : words) {
        unsigned const before = conn_.columnMost(word.column);
        unsigned const behind = conn_.rowMost(word.row);
        if (before == ConnIndex::kUnbounded) continue;
        flags |= kBounded;
        if (behind != ConnIndex::kUnbounded && before + behind < 2U * conn_.unknownCost()) flags |= kSafe;
    }
    return flags;
}

bool DicIndexMaker::hasTwin(std::span<IndexedWord const> words, IndexedWord const& word) const {
    return conn_.isOpenToUnknown(word.column) || std::any_of(words.begin(), words.end(), [&](IndexedWord const& other) {
               return other.row == word.row && conn_.isOpenToUnknown(other.column);
           });
}

std::uint64_t DicIndexMaker::untwinned() const {
    std::uint64_t classes = 0;
    for (std::size_t i = 0; i < surfaces_.size(); ++i) {
        std::span<IndexedWord const> const words = surfaces_.words(i);
        for (IndexedWord const& word : words) {
            if (hasTwin(words, word)) continue;
            unsigned const ofColumn = conn_.columnClass(word.column);
            classes |= ofColumn != 0 ? classBit(ofColumn) : DicIndex::kAnyClass;
        }
    }
    return classes;
}

std::uint64_t DicIndexMaker::exits() const {
    std::uint64_t classes = 0;
    for (std::size_t i = 0; i < surfaces_.size(); ++i)
        if (surfaces_.characters(i).back() <= 0xFF && mayBeTrail(firstByte(surfaces_.characters(i).front())))
            for (IndexedWord const& word : surfaces_.words(i))
                classes |= conn_.rowClass(word.row) != 0 ? classBit(conn_.rowClass(word.row)) : 0;
    return classes;
}

void DicIndexMaker::deriveCodes() {
    for (std::uint32_t code = 0; code < DicIndex::kCodes; ++code) {
        unsigned const own = codes_[code] >> DicIndex::kFlagShift & kOfDictionary;
        unsigned const ofTrail = codes_[code & 0xFF] >> DicIndex::kFlagShift & kOfDictionary;
        codes_[code] = (codes_[code] & 0xFFFF) | deriveFlags(code, own, ofTrail) << DicIndex::kFlagShift;
    }
}

std::vector<std::uint64_t> DicIndexMaker::write(IndexOrigin const& origin) const {
    std::vector<std::uint32_t> info(DicIndex::kInfoCount);
    info[DicIndex::kTraits] = surfaces_.isRegular() ? DicIndex::kRegular : 0U;
    auto const setClasses = [&](std::size_t at, std::uint64_t classes) {
        info[at] = static_cast<std::uint32_t>(classes);
        info[at + 1] = static_cast<std::uint32_t>(classes >> 32);
    };
    setClasses(DicIndex::kUntwinned, untwinned());
    setClasses(DicIndex::kExits, exits());
    IndexWriter writer(DicIndex::kMagic, origin);
    writer.add(info);
    writer.add(codes_);
    writer.add(roots_);
    writer.add(trie_.units());
    writer.add(lists_.bytes());
    writer.add(pairs_);
    writer.add(neighbours_);
    writer.add(rootChains_);
    writer.add(trie_.chains());
    return writer.write();
}

}  // namespace TAVO
