#include "engine/bundle_cache.hpp"

#include "dic/conn_table.hpp"
#include "engine/backward_walk.hpp"
#include "engine/special_records.hpp"

#include <algorithm>
#include <bit>

namespace TAVO {
namespace {

/// More cannot be numbered by the search.
constexpr std::size_t kMostWords = 0xFFF0;

std::uint8_t classesOf(RecordChain chain, SearchTable const& table) {
    std::uint8_t classes = 0;
    eachNodeRecord(chain, table.idCount(), [&](MrphDic record) {
        SearchTable::Id const& id = table.id(record.pid());
        if (SearchTable::isSparse(id)) classes = static_cast<std::uint8_t>(classes | id.enteredBy);
    });
    return classes;
}

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
    forms_.clear();
    records_.clear();
}

void BundleCache::start() {
    if (!cells_.empty()) return;
    clear();
    startWords();
    addBundle({{kNone, 0, 0, 0}, 0, 0, 0}, {});
}

std::uint32_t BundleCache::make(Key const& key, DicTrie const& trie, unsigned char const* text,
                                SearchTable const& table) {
    Source source{key, 0, static_cast<std::uint32_t>(forms_.size()), 0};
    trie.prefixSearch(text, key.length, [&](std::size_t length, RecordChain chain) {
        forms_.push({chain.head(), trie.leafEnd(), static_cast<std::uint32_t>(length)});
        return true;
    });
    source.formCount = static_cast<std::uint32_t>(forms_.size()) - source.firstForm;
    startWords();
    BundleCell::Reach reach{};
    if (key.parent == kEmpty) addForms(reach, source, 0, table);
    std::uint32_t const bundle = addBundle(source, reach);
    if (key.parent != kEmpty) {
        cells_[bundle].head.arcCount = BundleCell::Head::kIncomplete;
        cells_[bundle + 1].complete = kNone;
    }
    return bundle;
}

std::uint32_t BundleCache::completeSlowly(std::uint32_t bundle, SearchTable const& table) {
    if (std::uint32_t const known = cells_[bundle + 1].complete; known != kNone) return known;
    startWords();
    BundleCell::Reach reach{};
    addAllForms(reach, bundle, 0, table);
    return cells_[bundle + 1].complete = addCells(cells_[bundle].head.source, reach);
}

std::uint32_t BundleCache::variant(std::uint32_t bundle, unsigned unknown, unsigned classes, SearchTable const& table) {
    Key const key{bundle, kVariant, unknown << 8 | classes, 0};
    if (std::uint32_t const found = lookUp(key); found != kNone) return sources_[found].bundle;
    startWords();
    BundleCell::Reach reach{};
    for (std::uint32_t const length : {2U, 1U}) {
        if ((unknown & length) == 0) continue;
        addArc(reach, {kUnknownRecord.data(), kUnknownRecord.data() + kUnknownRecord.size(), length}, true, table);
        if (!arcs_.empty()) arcs_.end()[-1].arc.marks |= BundleCell::Arc::kUnknown;
    }
    addAllForms(reach, bundle, classes, table);
    return addBundle({key, 0, 0, 0}, reach);
}

std::uint32_t BundleCache::textEnd(SearchTable const& table) {
    Key const key{kEmpty, kTextEnd, 0, 0};
    if (std::uint32_t const found = lookUp(key); found != kNone) return sources_[found].bundle;
    startWords();
    addWord({0, table.id(ConnTable::kEndId).column, 0, false}, nullptr);
    return addBundle({key, 0, 0, 0}, {});
}

/// Adds the forms of all dictionaries that @p bundle comes from.
void BundleCache::addAllForms(BundleCell::Reach& reach, std::uint32_t bundle, unsigned classes,
                              SearchTable const& table) {
    chain_.clear();
    while (bundle != kEmpty) {
        std::uint32_t const source = cells_[bundle].head.source;
        chain_.push(source);
        bundle = sources_[source].key.parent;
    }
    for (std::size_t i = chain_.size(); i-- > 0;) addForms(reach, sources_[chain_[i]], classes, table);
}

void BundleCache::addForms(BundleCell::Reach& reach, Source const& source, unsigned classes, SearchTable const& table) {
    for (std::uint32_t i = 0; i < source.formCount; ++i) {
        Form const& form = forms_[source.firstForm + i];
        std::uint8_t const enteredBy = classesOf(RecordChain(form.head, form.leafEnd), table);
        reach.enteredBy = static_cast<std::uint8_t>(reach.enteredBy | enteredBy);
        addArc(reach, form, (enteredBy & classes) != 0, table);
    }
}

void BundleCache::addArc(BundleCell::Reach& reach, Form const& form, bool withSparse, SearchTable const& table) {
    std::size_t const first = words_.size();
    std::uint8_t enters = 0;
    std::uint8_t leastColumn = 255;
    bool allBounded = true;
    eachNodeRecord(RecordChain(form.head, form.leafEnd), table.idCount(), [&](MrphDic record) {
        SearchTable::Id const& id = table.id(record.pid());
        if (!withSparse && SearchTable::isSparse(id)) return;
        if (words_.size() >= kMostWords) {
            reach.tooMany = true;
            return;
        }
        bool const bounded = id.enteredBy == 0;
        addWord({id.rowOffset, id.column, record.cost(), bounded}, record.head());
        enters = static_cast<std::uint8_t>(enters | id.enters);
        leastColumn = std::min(leastColumn, table.columnMinimum(id.column));
        allBounded = allBounded && bounded;
        reach.hasBounded = reach.hasBounded || bounded;
    });
    if (words_.size() == first) return;
    auto const count = static_cast<std::uint16_t>(words_.size() - first);
    std::uint32_t const length = form.length & BundleCell::Arc::kLengthMask;
    arcs_.push({.arc = {std::uint32_t{enters} << 24 | length, count, leastColumn,
                        allBounded ? BundleCell::Arc::kAllBounded : std::uint8_t{0}}});
    reach.longest = std::max(reach.longest, form.length);
    reach.enters = static_cast<std::uint8_t>(reach.enters | enters);
}

void BundleCache::startWords() noexcept {
    arcs_.clear();
    words_.clear();
    wordRecords_.clear();
}

void BundleCache::addWord(BundleCell::Word word, unsigned char const* record) {
    words_.push({.word = word});
    wordRecords_.push(record);
}

/// Notes the bundle of arcs_ and words_. Once it is noted nothing can fail.
std::uint32_t BundleCache::addBundle(Source source, BundleCell::Reach const& reach) {
    if (slots_.size() < sources_.size() * 2 + 2) rehash();
    sources_.reserve(sources_.size() + 1);
    auto const number = static_cast<std::uint32_t>(sources_.size());
    source.bundle = addCells(number, reach);
    sources_.push(source);
    note(number);
    return source.bundle;
}

std::uint32_t BundleCache::addCells(std::uint32_t source, BundleCell::Reach const& reach) {
    if ((words_.size() & 1) != 0) addWord({0, 0, 0, false}, nullptr);
    auto const bundle = static_cast<std::uint32_t>(cells_.size());
    std::size_t const size = bundle + BundleCell::kHeadCells + arcs_.size() + words_.size();
    cells_.reserve(size);
    records_.reserve(size);
    BundleCell::Head const head{source, static_cast<std::uint16_t>(arcs_.size()),
                                static_cast<std::uint16_t>(words_.size())};
    cells_.push({.head = head});
    cells_.push({.reach = reach});
    for (BundleCell const& arc : arcs_) cells_.push(arc);
    records_.resizeForOverwrite(cells_.size());
    for (BundleCell const& word : words_) cells_.push(word);
    for (unsigned char const* const record : wordRecords_) records_.push(record);
    return bundle;
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
