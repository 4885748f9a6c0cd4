#include "engine/bundle_cache.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/backward_walk.hpp"
#include "engine/special_records.hpp"

#include <algorithm>
#include <bit>

namespace TAVO {
namespace {

/// More cannot be numbered by the search.
constexpr std::size_t kMostWords = 0xFFF0;
constexpr unsigned kAllClasses = 0xFF;

}  // namespace

bool BundleCache::trim() noexcept {
    constexpr std::size_t kCellsKept = 1 << 19;
    if (cells_.size() <= kCellsKept) return false;
    clear();
    return true;
}

void BundleCache::clear() noexcept {
    slots_.clear();
    sources_.clear();
    cells_.clear();
    records_.clear();
}

void BundleCache::start(SearchTable const& table, DicSet const& dics, bool lines) {
    table_ = &table;
    dics_ = &dics;
    lines_ = lines;
    if (!cells_.empty()) return;
    clear();
    startWords();
    addBundle({kNone, 0, 0, 0});
}

std::uint32_t BundleCache::make(Key const& key, unsigned char const* text) {
    startWords();
    if (key.parent == kEmpty) {
        addForms(*dics_->entries()[key.dictionary].dic->trie(), text, key.length, 0);
        return addBundle(key);
    }
    std::uint32_t const bundle = addBundle(key);
    cells_[bundle].head.arcCount = BundleCell::Head::kIncomplete;
    cells_[bundle + BundleCell::kReach].complete = kNone;
    return bundle;
}

std::uint32_t BundleCache::completeSlowly(std::uint32_t bundle, unsigned char const* text) {
    if (std::uint32_t const known = cells_[bundle + BundleCell::kReach].complete; known != kNone) return known;
    startWords();
    addAllForms(bundle, text, 0);
    std::uint32_t const complete = addCells(cells_[bundle].head.source);
    return cells_[bundle + BundleCell::kReach].complete = complete;
}

std::uint32_t BundleCache::findVariant(std::uint32_t bundle, unsigned unknown, unsigned classes,
                                       unsigned char const* text) {
    Key const key{bundle, kVariantCell, unknown << 8 | classes, 0};
    std::uint32_t const source = lookUp(key);
    std::uint32_t const found = source != kNone ? sources_[source].bundle : makeVariant(key, unknown, classes, text);
    cells_[bundle + BundleCell::kVariant].variant = {key.length, found};
    return found;
}

std::uint32_t BundleCache::makeVariant(Key const& key, unsigned unknown, unsigned classes, unsigned char const* text) {
    startWords();
    RecordChain const record(kUnknownRecord.data(), kUnknownRecord.data() + kUnknownRecord.size());
    for (std::uint32_t const length : {2U, 1U})
        if ((unknown & length) != 0) addArc(length, record, kAllClasses, BundleCell::Arc::kUnknown);
    addAllForms(key.parent, text, classes);
    return addBundle(key);
}

std::uint32_t BundleCache::textEnd() {
    Key const key{kEmpty, kTextEndCell, 0, 0};
    if (std::uint32_t const found = lookUp(key); found != kNone) return sources_[found].bundle;
    startWords();
    addWord({0, table_->id(ConnTable::kEndId).column, 0, 0}, nullptr);
    return addBundle(key);
}

/// Adds the forms of all dictionaries that @p text begins with, which are those of @p bundle.
void BundleCache::addAllForms(std::uint32_t bundle, unsigned char const* text, unsigned classes) {
    std::uint32_t longest = 0;
    while (bundle != kEmpty) {
        Key const& key = sources_[cells_[bundle].head.source].key;
        longest = std::max(longest, key.length);
        bundle = key.parent;
    }
    for (DicEntry const& entry : dics_->entries())
        if (DicTrie const* const trie = entry.dic->trie(); trie != nullptr) addForms(*trie, text, longest, classes);
}

/// Adds the forms of @p trie that the @p n bytes at @p text begin with.
void BundleCache::addForms(DicTrie const& trie, unsigned char const* text, std::size_t n, unsigned classes) {
    trie.prefixSearch(text, n, [&](std::size_t length, RecordChain chain) {
        addArc(static_cast<std::uint32_t>(length), chain, classes, 0);
        return true;
    });
}

/// Adds the words of @p chain, those of sparse columns only when one of them can be entered by one of @p classes.
void BundleCache::addArc(std::uint32_t length, RecordChain chain, unsigned classes, std::uint8_t marks) {
    std::uint8_t enteredBy = 0;
    eachNodeRecord(chain, table_->idCount(), [&](MrphDic record) {
        SearchTable::Id const& id = table_->id(record.pid());
        if (SearchTable::isSparse(id)) enteredBy = static_cast<std::uint8_t>(enteredBy | id.enteredBy);
    });
    reach_.enteredBy = static_cast<std::uint8_t>(reach_.enteredBy | enteredBy);
    std::size_t const first = words_.size();
    unsigned const shortLength = length <= BundleCell::Word::kMostLength ? length << BundleCell::Word::kLengthShift : 0;
    BundleCell::Arc arc{length & BundleCell::Arc::kLengthMask, 0,
                        static_cast<std::uint16_t>(marks | BundleCell::Arc::kAllBounded)};
    eachNodeRecord(chain, table_->idCount(), [&](MrphDic record) {
        SearchTable::Id const& id = table_->id(record.pid());
        if (SearchTable::isSparse(id) && (enteredBy & classes) == 0) return;
        if (words_.size() >= kMostWords) {
            reach_.marks |= BundleCell::Reach::kTooMany;
            return;
        }
        bool const bounded = id.enteredBy == 0;
        addWord({id.rowOffset, id.column, record.cost(), static_cast<std::uint8_t>(bounded | shortLength)},
                record.head());
        arc.reach |= std::uint32_t{id.enters} << 24;
        reach_.leastColumn = std::min(reach_.leastColumn, table_->columnMinimum(id.column));
        if (bounded)
            reach_.marks |= BundleCell::Reach::kBounded;
        else
            arc.marks &= static_cast<std::uint16_t>(~BundleCell::Arc::kAllBounded);
    });
    if (words_.size() == first) return;
    arc.count = static_cast<std::uint16_t>(words_.size() - first);
    if (words_[first].word.bounded()) arc.marks |= BundleCell::Arc::kFirstBounded;
    arcs_.push({.arc = arc});
    reach_.longest = std::max(reach_.longest, length);
    reach_.enters = static_cast<std::uint8_t>(reach_.enters | arc.enters());
}

void BundleCache::startWords() noexcept {
    arcs_.clear();
    words_.clear();
    wordRecords_.clear();
    reach_ = {0, 0, 0, 0, 255};
}

void BundleCache::addWord(BundleCell::Word word, unsigned char const* record) {
    words_.push({.word = word});
    wordRecords_.push(record);
}

/// Notes the bundle of arcs_ and words_.
std::uint32_t BundleCache::addBundle(Key const& key) {
    if (slots_.size() < sources_.size() * 2 + 2) rehash();
    sources_.reserve(sources_.size() + 1);
    auto const number = static_cast<std::uint32_t>(sources_.size());
    std::uint32_t const bundle = addCells(number);
    sources_.push({key, bundle});  // nothing fails from here on
    note(number);
    return bundle;
}

std::uint32_t BundleCache::addCells(std::uint32_t source) {
    // Its cost lies where the last word's does.
    if ((words_.size() & 1) != 0) addWord({0, words_.end()[-1].word.column, 0, 0}, nullptr);
    if (lines_ && !words_.empty()) addLines();
    auto const bundle = static_cast<std::uint32_t>(cells_.size());
    std::size_t const size = bundle + BundleCell::kHeadCells + arcs_.size() + words_.size();
    cells_.reserve(size + 8);  // whose words may be loaded eight at a time
    records_.reserve(size);
    BundleCell::Head const head{source, static_cast<std::uint16_t>(arcs_.size()),
                                static_cast<std::uint16_t>(words_.size())};
    cells_.push({.head = head});
    cells_.push({.reach = reach_});
    cells_.push({.variant = {0, 0}});
    for (BundleCell const& arc : arcs_) cells_.push(arc);
    records_.resizeForOverwrite(cells_.size());
    for (BundleCell const& word : words_) cells_.push(word);
    for (unsigned char const* const record : wordRecords_) records_.push(record);
    return bundle;
}

void BundleCache::addLines() {
    CostLines lines;
    for (BundleCell const& word : words_) lines.add(word.word.column);
    reach_.marks |= static_cast<std::uint8_t>(static_cast<unsigned>(lines.kind()) << BundleCell::Reach::kLinesShift);
    CostLines::Kind const kind = lines.kind();
    if (kind == CostLines::Kind::kMany) return;
    if (kind == CostLines::Kind::kScattered) cells_.push({.lines = lines.numbers(1)});
    if (kind != CostLines::Kind::kNarrow) {
        cells_.push({.places = lines.places(1)});
        cells_.push({.members = lines.members()});
    }
    cells_.push({.places = lines.places(0)});
    cells_.push({.lines = lines.numbers(0)});
}

void BundleCache::note(std::uint32_t source) noexcept {
    std::size_t i = slot(sources_[source].key);
    while (slots_[i] != kNone) i = (i + 1) & (slots_.size() - 1);
    slots_[i] = source;
}

void BundleCache::rehash() {
    constexpr std::size_t kFirst = 4096;
    std::size_t const size = std::max(kFirst, slots_.size() * 4);
    slots_.resizeForOverwrite(size);
    std::fill(slots_.begin(), slots_.end(), kNone);
    shift_ = 64 - static_cast<unsigned>(std::countr_zero(size));
    for (std::uint32_t source = 0; source < sources_.size(); ++source) note(source);
}

}  // namespace TAVO
