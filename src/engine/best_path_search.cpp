// The first half of the search: from the first position to the last.
#include "engine/best_path_search.hpp"

#include "base/bytes.hpp"
#include "base/sjis.hpp"
#include "dic/dic_set.hpp"

#include <algorithm>
#include <bit>
#include <limits>
#include <new>

namespace TAVO {
// Collecting. Words are made in the order that decides complete ties: the
// two-byte unknown word, the one-byte one, then dictionary by dictionary, by
// increasing length, in chain order.

void BestPathSearch::collect(Extent extent) {
    overhangs_.clear();
    segments_.clear();
    segments_.push({0, 0});
    nextSegment_ = extent == Extent::kAll ? length_ : parts_.segment;
    wordCount_ = 0;
    longest_ = 0;
    farthest_ = 0;
    tooMany_ = false;
    places_.resizeForOverwrite(length_ + 1);
    reach_.resizeForOverwrite(rest_ + 1);  // should a word go beyond the block
    std::fill(reach_.begin(), reach_.begin() + length_ + 1, SearchTable::kAlways);
    reach_[0] |= startsText() ? table_.id(ConnTable::kBeginId).enters : std::uint8_t{0xFF};
    collectSegment(0, length_, extent);
    segments_.push({static_cast<std::uint32_t>(length_), firstWord()});
    places_[length_] = end_.place;
    places_[length_].firstWord = firstWord();
}

/// Collects the words that start in [@p p, @p end).
void BestPathSearch::collectSegment(std::size_t p, std::size_t end, Extent extent) {
    std::size_t const before = static_cast<std::size_t>(text_ - memory_);
    if (extent == Extent::kAll) lookedUpTo_ = 0;  // other positions are looked up
    while (p < end) {
        if (before + p >= lookedUpTo_) findForms(p, end, extent);
        std::size_t const stop = std::min(end, lookedUpTo_ - before);
        for (; nextStart_ != startCount_ && starts_[nextStart_] < before + stop; ++nextStart_) {
            std::size_t const start = starts_[nextStart_] - before;
            if (p != start) setRuns(p, start);
            p = start;
            std::size_t const width = widths_[nextStart_];
            setPlace(p, width, bundles_[nextStart_], extent);
            if (width == 2) {
                places_[p + 1] = {firstWord(), 0, 0, 0, 0};
                scanInside(p + 1);
            }
            p += width;
        }
        setRuns(p, stop);
        p = stop;
    }
    // A place's words, as many as 16 bits tell, stand behind those of a segment.
    if (wordCount_ > std::numeric_limits<std::uint32_t>::max() - 0xFFFF) throw std::bad_alloc();
}

/// Lets a segment start at @p p when no word stands across it.
[[gnu::cold, gnu::noinline]] void BestPathSearch::startSegment(std::size_t p) {
    // Before it a character ends whose second byte, if it has one, no unknown word of two bytes starts with.
    if (farthest_ > p || text_[p - 1] >= 128 || places_[p - 1].pair()) return;
    segments_.push({static_cast<std::uint32_t>(p), firstWord()});
    nextSegment_ = p + parts_.segment;
}

/// Searches the dictionaries from @p p on, up to @p end and in the texts that follow.
void BestPathSearch::findForms(std::size_t p, std::size_t end, Extent extent) {
    startCount_ = 0;
    nextStart_ = 0;
    addStarts(text_, rest_, p, end, extent);
    for (std::size_t number = found_.size() + 1; number < texts_.size() && extent == Extent::kNeeded; ++number) {
        if (startCount_ == parts_.window) break;
        std::string_view const text = texts_[number];
        addStarts(asBytes(text.data()), text.size(), 0, text.size(), extent);
    }
    std::size_t const count = startCount_;
    FormFinder::Starts const starts{memory_, {starts_.data(), count}, {ends_.data(), count}};
    for (std::uint32_t i = 0; i < finders_.size(); ++i) {
        DicTrie const* const trie = dics_->entries()[i].dic->trie();
        if (trie != nullptr) finders_[i].search(*trie, i, starts, {bundles_.data(), count}, cache_);
    }
    for (std::size_t i = 0; i < count; ++i) {
        unsigned char const byte = memory_[starts_[i]];
        if (plain_.numberOf(byte) == PlainRuns::kUntold) plain_.learn(byte, bundles_[i], cache_, table_, *dics_);
        cache_.prefetch(bundles_[i]);
    }
}

/// Adds the positions in [@p p, @p end) of the @p length bytes at @p text but for plain characters, as many as there is
/// room for.
void BestPathSearch::addStarts(unsigned char const* text, std::size_t length, std::size_t p, std::size_t end,
                               Extent extent) {
    std::size_t const before = static_cast<std::size_t>(text - memory_);
    bool const all = extent == Extent::kAll;
    while (p < end) {
        if (PlainRuns::isPlain(plain_.numberOf(text[p])) && !all) {
            ++p;
            continue;
        }
        if (startCount_ == parts_.window) break;
        std::size_t const width = all ? 1 : charWidth({asChars(text), length}, p);
        bundles_[startCount_] = BundleCache::kEmpty;
        starts_[startCount_] = static_cast<std::uint32_t>(before + p);
        ends_[startCount_] = static_cast<std::uint32_t>(before + length);
        widths_[startCount_++] = static_cast<std::uint8_t>(width);
        p += width;
    }
    lookedUpTo_ = before + p;
}

/// Lets the words of @p bundle start at @p p; unknown words only where no word may stand behind any other.
inline void BestPathSearch::setPlace(std::size_t p, std::size_t width, std::uint32_t bundle, Extent extent) {
    if (p >= nextSegment_) [[unlikely]]
        startSegment(p);
    bool const all = extent == Extent::kAll;
    bundle = cache_.complete(bundle, text_ + p);
    BundleCell const* cells = cache_.cells() + bundle;
    unsigned const classes =
        all ? cells[BundleCell::kReach].reach.enteredBy : cells[BundleCell::kReach].reach.enteredBy & reach_[p];
    unsigned unknown = 0;
    if (all)
        unknown = BundleCache::kOneByte | (text_[p] >= 128 && p + 2 <= length_ ? BundleCache::kTwoBytes : 0);
    else if (!cells[BundleCell::kReach].reach.hasBounded())
        unknown = width == 2 ? BundleCache::kTwoBytes : BundleCache::kOneByte;
    if ((unknown | classes) != 0) {
        bundle = cache_.variant(bundle, unknown, classes, text_ + p);
        cells = cache_.cells() + bundle;
    }
    BundleCell::Head const head = cells[0].head;
    __builtin_prefetch(cells + BundleCell::kHeadCells + head.arcCount + head.wordCount - 1);  // the choice reads it
    if (parts_.wide) __builtin_prefetch(cells - BundleCell::kPlaces);                         // so are its CostLines
    BundleCell::Reach const reach = cells[BundleCell::kReach].reach;
    places_[p] = {
        firstWord(),
        bundle + BundleCell::kHeadCells + head.arcCount,
        head.arcCount,
        head.wordCount,
        static_cast<std::uint8_t>(width | (unknown != 0 ? Place::kUnknown : 0U) | reach.lines() << Place::kLinesShift),
        0,
        reach.leastColumn};
    wordCount_ += numbersOf(head.wordCount);
    longest_ = std::max(longest_, reach.longest);
    farthest_ = std::max(farthest_, p + reach.longest);
    tooMany_ |= reach.tooMany();
    if (reach.enters == 0) return;
    for (std::uint32_t i = 0; i < head.arcCount; ++i) {
        BundleCell::Arc const arc = cells[BundleCell::kHeadCells + i].arc;
        reach_[p + arc.length()] |= arc.enters();
    }
}

/// Lays out the plain characters [@p p, @p end).
void BestPathSearch::setRuns(std::size_t p, std::size_t end) {
    while (p < end) {
        RunCosts costs;
        std::size_t q = p + 1;
        if (farthest_ <= p) {  // else a word may end inside
            std::size_t const most = std::min(end, p + PlainRuns::kLongest);
            for (; q < most; ++q) {
                PlainRuns::Inner const& inner = plain_.innerOf(text_[q - 1], text_[q]);
                if (!inner.follows || costs.conn + inner.cost > PlainRuns::kMostCost) break;
                costs.conn = static_cast<std::uint16_t>(costs.conn + inner.cost);
                costs.word = static_cast<std::uint16_t>(costs.word + inner.wordCost);
            }
        }
        setRun(p, q, costs);
        p = q;
    }
}

/// Lays out the run [@p p, @p end), whose words behind the first one cost @p costs.
void BestPathSearch::setRun(std::size_t p, std::size_t end, RunCosts costs) {
    setPlace(p, 1, plain_.bundleOf(text_[p]), Extent::kNeeded);
    auto const run = static_cast<std::uint8_t>(end - p);
    places_[p].run = run;
    if (run == 1) return;
    for (std::size_t i = p + 1; i < end; ++i) places_[i] = {firstWord(), 0, 0, 0, 0};
    places_[end - 1].run = run;
    places_[end - 1].words = std::bit_cast<std::uint32_t>(costs);
    reach_[end] |= plain_.kindOf(text_[end - 1]).enters;
    farthest_ = end;
    longest_ = std::max<std::uint32_t>(longest_, run);
}

/// Notes what words may start at the second byte @p p of a character.
inline void BestPathSearch::scanInside(std::size_t p) {
    SearchTable::ShortForm const& single = table_.byteForm(text_[p], *dics_);
    reach_[p + 1] |= single.enters;
    if (p + 1 == length_) return;
    // Most second bytes begin nothing longer, but which ones do a branch would often foretell wrong. No form begins
    // with NUL.
    unsigned const longer = single.longer ? 0xFF : 0;
    SearchTable::ShortForm const& pair = table_.pairForm(static_cast<unsigned char>(text_[p] & longer),
                                                         static_cast<unsigned char>(text_[p + 1] & longer), *dics_);
    places_[p].marks |= static_cast<std::uint8_t>(pair.words ? Place::kPair : 0);
    reach_[p + 2] |= pair.enters;
    if (pair.longer) scanOverhangs(p);
}

void BestPathSearch::scanOverhangs(std::size_t p) {
    for (DicEntry const& entry : dics_->entries()) {
        DicTrie const* const trie = entry.dic->trie();
        if (trie == nullptr) continue;
        trie->possibleLengths(text_ + p, rest_ - p, [&](std::size_t length) {
            if (length <= 2) return;
            overhangs_.push({static_cast<std::uint32_t>(p), static_cast<std::uint32_t>(p + length)});
            places_[p].marks |= Place::kUnknown;
            reach_[p + length] = 0xFF;
            farthest_ = std::max(farthest_, p + length);
        });
    }
}

}  // namespace TAVO
