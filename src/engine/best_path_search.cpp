#include "engine/best_path_search.hpp"

#include "base/bytes.hpp"
#include "base/sjis.hpp"
#include "dic/dic_set.hpp"
#include "engine/special_records.hpp"

#include <algorithm>
#include <limits>
#include <new>

namespace TAVO {

bool BestPathSearch::search(std::string_view text, ConnTable const& table, DicSet const& dics) {
    text_ = asBytes(text.data());
    length_ = text.size();
    dics_ = &dics;
    if (table_.attach(table, dics)) forms_.clear();
    forms_.trim();
    giveBack();
    if (table_.unknownIsFlat() && collect(Extent::kNeeded) && choose(Extent::kNeeded)) return first_ != kNone;
    collect(Extent::kAll);
    choose(Extent::kAll);
    return first_ != kNone;
}

/// Gives back the memory that an exceptionally long sentence took.
void BestPathSearch::giveBack() noexcept {
    constexpr std::size_t kKept = std::size_t{1} << 18;
    if (length_ >= kKept) return;
    places_.shrink(kKept);
    arcs_.shrink(kKept);
    packed_.shrink(2 * kKept);
}

// Collecting. Words are made in the order that decides complete ties: the
// two-byte unknown word, the one-byte one, then dictionary by dictionary, by
// increasing length, in chain order.

/// False when a word ends inside a character.
bool BestPathSearch::collect(Extent extent) {
    arcs_.clear();
    overhangs_.clear();
    wordCount_ = 0;
    places_.resizeForOverwrite(length_ + 1);
    std::fill(places_.begin(), places_.end(),
              Place{kNoPath, kMaxSum, kMaxSum, 0, 0, 0, kNone, 0, SearchTable::kAlways, 0, false});
    places_[0].reach |= table_.id(ConnTable::kBeginId).enters;
    for (std::size_t p = 0; p < length_;) {
        std::size_t const count = findMatches(p, extent);
        for (std::size_t number = 0; number < count; ++number) {
            p = starts_[number];
            collectArcs(p, number, extent);
            if (places_[p].width == 2) {
                if (places_[p + 1].ends != kNone) return false;
                scanInside(p + 1);
            }
        }
        p += places_[p].width;
    }
    packed_.resizeForOverwrite(wordCount_);
    links_.clear();
    return true;
}

/// Searches the dictionaries from position @p p on; the number of positions searched.
std::size_t BestPathSearch::findMatches(std::size_t p, Extent extent) {
    std::string_view const text(asChars(text_), length_);
    std::size_t count = 0;
    for (; count < kWindow && p < length_; p += places_[p].width) {
        places_[p].width = static_cast<std::uint8_t>(extent == Extent::kAll ? 1 : charWidth(text, p));
        starts_[count++] = static_cast<std::uint32_t>(p);
    }
    matches_.begin({starts_.data(), count});
    for (DicEntry const& entry : dics_->entries())
        if (DicTrie const* const trie = entry.dic->trie(); trie != nullptr) matches_.search(*trie, text_, length_);
    for (PrefixBatch::Match& match : matches_.matches()) {
        match.form = forms_.find(match.head, match.leafEnd, table_);
        forms_.prefetch(match.form);
    }
    return count;
}

void BestPathSearch::collectArcs(std::size_t p, std::size_t number, Extent extent) {
    places_[p].firstArc = static_cast<std::uint32_t>(arcs_.size());
    bounded_ = false;
    for (bool unknown = extent == Extent::kAll;; unknown = true) {
        places_[p].unknown = unknown;
        if (unknown) addUnknowns(p, extent);
        matches_.eachMatch(number,
                           [&](PrefixBatch::Match const& match) { addArc(p, match.length, match.form, extent); });
        if (bounded_ || unknown) return;
        dropArcs(p);  // unknown words come first
    }
}

void BestPathSearch::addUnknowns(std::size_t p, Extent extent) {
    std::uint32_t const form = forms_.unknown(table_);
    bool const two = extent == Extent::kAll ? text_[p] >= 128 && p + 2 <= length_ : places_[p].width == 2;
    if (two) addArc(p, 2, form, extent);
    if (extent == Extent::kAll || !two) addArc(p, 1, form, extent);
}

void BestPathSearch::addArc(std::size_t p, std::uint32_t length, std::uint32_t index, Extent extent) {
    Form const& form = forms_.form(index);
    bool const sparse = form.enteredBy != 0 && (extent == Extent::kAll || (form.enteredBy & places_[p].reach) != 0);
    FormWords const& words = sparse ? form.all : form.plain;
    if (words.count == 0) return;
    forms_.prefetch(words);
    if (std::numeric_limits<std::uint32_t>::max() - wordCount_ <= words.count) throw std::bad_alloc();
    Place& end = places_[p + length];
    Arc& arc = arcs_.extend();
    arc.form = index;
    arc.words = words.first;
    arc.count = words.count;
    arc.firstWord = wordCount_;
    arc.nextEnding = end.ends;
    arc.length = length;
    arc.leastColumn = words.leastColumn;
    arc.allBounded = words.allBounded;
    arc.sparse = sparse;
    end.ends = static_cast<std::uint32_t>(&arc - arcs_.begin());
    end.reach |= words.enters;
    wordCount_ += words.count;
    bounded_ = bounded_ || words.hasBounded;
}

/// Takes back the arcs that start at @p p, the last ones made.
void BestPathSearch::dropArcs(std::size_t p) {
    std::uint32_t const first = places_[p].firstArc;
    for (std::size_t index = arcs_.size(); index-- > first;) {
        places_[p + arcs_[index].length].ends = arcs_[index].nextEnding;
        wordCount_ = arcs_[index].firstWord;
    }
    arcs_.truncate(first);
}

/// Notes what words may start at the second byte @p p of a character.
void BestPathSearch::scanInside(std::size_t p) {
    Place& place = places_[p];
    place.pair = SearchTable::kNoWord;
    SearchTable::ShortForm const& single = table_.byteForm(text_[p], *dics_);
    places_[p + 1].reach |= single.enters;
    if (p + 1 == length_ || !single.longer) return;
    SearchTable::ShortForm const& pair = table_.pairForm(text_[p], text_[p + 1], *dics_);
    place.pair = pair.least;
    places_[p + 2].reach |= pair.enters;
    if (!pair.longer) return;
    for (DicEntry const& entry : dics_->entries()) {
        DicTrie const* const trie = entry.dic->trie();
        if (trie == nullptr) continue;
        trie->possibleLengths(text_ + p, length_ - p, [&](std::size_t length) {
            if (length <= 2) return;
            overhangs_.push_back({static_cast<std::uint32_t>(p), static_cast<std::uint32_t>(p + length)});
            places_[p + length].reach = 0xFF;
        });
    }
}

}  // namespace TAVO
