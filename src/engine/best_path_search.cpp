#include "engine/best_path_search.hpp"

#include "base/bytes.hpp"
#include "base/sjis.hpp"
#include "dic/dic_set.hpp"
#include "engine/special_records.hpp"

#include <algorithm>
#include <limits>
#include <new>

namespace TAVO {
namespace {

/// Values of an array that are kept for the next sentence.
constexpr std::size_t kKept = std::size_t{1} << 18;

}  // namespace

BestPathSearch::Result BestPathSearch::search(std::string_view text, ConnTable const& table, DicSet const& dics) {
    text_ = asBytes(text.data());
    length_ = text.size();
    dics_ = &dics;
    bool const changed = table_.attach(table, dics);
    if (changed) forms_.clear();
    if (forms_.trim() || changed)
        for (FormFinder& finder : finders_) finder.clear();
    finders_.resize(dics.entries().size());
    path_.shrink(kKept);
    Choice choice = Choice::kOmitted;
    if (table_.unknownIsFlat()) {
        collect(Extent::kNeeded);
        choice = choose(Extent::kNeeded);
    }
    if (choice == Choice::kOmitted) {
        collect(Extent::kAll);
        choice = choose(Extent::kAll);
    }
    giveBack();
    if (choice == Choice::kTooFar) return Result::kTooFar;
    return path_.empty() ? Result::kNothing : Result::kFound;
}

/// Gives back the memory that an exceptionally long sentence took, before its
/// morphemes need some.
void BestPathSearch::giveBack() noexcept {
    places_.shrink(kKept);
    reach_.shrink(kKept);
    bounds_.shrink(kKept);
    arcs_.shrink(kKept);
    next_.shrink(2 * kKept);
    packed_.shrink(kKept);
    columns_.shrink(kKept);
    overhangs_.shrink(kKept);
}

// Collecting. Words are made in the order that decides complete ties: the
// two-byte unknown word, the one-byte one, then dictionary by dictionary, by
// increasing length, in chain order.

void BestPathSearch::collect(Extent extent) {
    arcs_.clear();
    overhangs_.clear();
    wordCount_ = 0;
    longest_ = 0;
    places_.resizeForOverwrite(length_ + 2);
    reach_.resizeForOverwrite(length_ + 1);
    std::fill(reach_.begin(), reach_.end(), SearchTable::kAlways);
    reach_[0] |= table_.id(ConnTable::kBeginId).enters;
    for (std::size_t p = 0; p < length_;) {
        std::size_t const count = findForms(p, extent);
        for (std::size_t number = 0; number < count; ++number) {
            p = starts_[number];
            std::size_t const width = starts_[number + 1] - p;
            collectArcs(p, width, number, extent);
            places_[p + 1] = {static_cast<std::uint32_t>(arcs_.size()), wordCount_, 0};
            if (width == 2) scanInside(p + 1);
        }
        p = starts_[count];
    }
    places_[length_] = {static_cast<std::uint32_t>(arcs_.size()), wordCount_, 1};
}

/// Searches the dictionaries from position @p p on; the number of positions searched.
std::size_t BestPathSearch::findForms(std::size_t p, Extent extent) {
    std::string_view const text(asChars(text_), length_);
    std::size_t count = 0;
    while (count < kWindow && p < length_) {
        starts_[count++] = static_cast<std::uint32_t>(p);
        p += extent == Extent::kAll ? 1 : charWidth(text, p);
    }
    starts_[count] = static_cast<std::uint32_t>(p);
    std::span<std::uint32_t const> const starts(starts_.data(), count);
    for (std::size_t i = 0; i < finders_.size(); ++i) {
        DicTrie const* const trie = dics_->entries()[i].dic->trie();
        if (trie != nullptr) finders_[i].search(*trie, text_, length_, starts, forms_, table_);
    }
    return count;
}

/// Adds the arcs that start at @p p; unknown words only where no word may stand behind any other.
inline void BestPathSearch::collectArcs(std::size_t p, std::size_t width, std::size_t number, Extent extent) {
    auto const firstArc = static_cast<std::uint32_t>(arcs_.size());
    std::uint32_t const firstWord = wordCount_;
    bounded_ = false;
    bool unknown = extent == Extent::kAll;
    for (;; unknown = true) {
        if (unknown) addUnknowns(p, width, extent);
        for (std::size_t i = 0; i < finders_.size(); ++i)
            if (dics_->entries()[i].dic->trie() != nullptr)
                finders_[i].eachForm(
                    number, [&](std::uint32_t length, std::uint32_t form) { addArc(p, length, form, extent); });
        if (bounded_ || unknown) break;
        arcs_.truncate(firstArc);  // unknown words come first
        wordCount_ = firstWord;
    }
    wordCount_ += wordCount_ & 1;
    places_[p] = {firstArc, firstWord, static_cast<std::uint8_t>(width), unknown};
}

void BestPathSearch::addUnknowns(std::size_t p, std::size_t width, Extent extent) {
    std::uint32_t const form = forms_.unknown(table_);
    std::size_t const first = arcs_.size();
    bool const two = extent == Extent::kAll ? text_[p] >= 128 && p + 2 <= length_ : width == 2;
    if (two) addArc(p, 2, form, extent);
    if (extent == Extent::kAll || !two) addArc(p, 1, form, extent);
    for (std::size_t arc = first; arc < arcs_.size(); ++arc) arcs_[arc].unknown = true;
}

inline void BestPathSearch::addArc(std::size_t p, std::uint32_t length, std::uint32_t index, Extent extent) {
    Form const& form = forms_.form(index);
    bool const sparse = form.enteredBy != 0 && (extent == Extent::kAll || (form.enteredBy & reach_[p]) != 0);
    FormWords const& words = sparse ? form.all : form.plain;
    if (words.count == 0) return;
    forms_.prefetch(words);
    if (std::numeric_limits<std::uint32_t>::max() - wordCount_ <= words.count + 4) throw std::bad_alloc();
    Arc arc{words.first, length, static_cast<std::uint16_t>(words.count), words.leastColumn, words.allBounded, false};
    if (words.count > Arc::kMostWords) [[unlikely]]
        arc = splitArc(arc, words.count);
    arcs_.push(arc);
    longest_ = std::max(longest_, length);
    reach_[p + length] |= words.enters;
    wordCount_ += words.count;
    bounded_ = bounded_ || words.hasBounded;
}

/// Adds all but the last of the arcs that @p count words take; that one.
BestPathSearch::Arc BestPathSearch::splitArc(Arc arc, std::uint32_t count) {
    arc.count = Arc::kMostWords;
    for (; count > Arc::kMostWords; count -= Arc::kMostWords) {
        arcs_.push(arc);
        arc.words += Arc::kMostWords;
    }
    arc.count = static_cast<std::uint16_t>(count);
    return arc;
}

/// Notes what words may start at the second byte @p p of a character.
inline void BestPathSearch::scanInside(std::size_t p) {
    SearchTable::ShortForm const& single = table_.byteForm(text_[p], *dics_);
    places_[p].single = single.least;
    reach_[p + 1] |= single.enters;
    if (p + 1 == length_ || !single.longer) return;
    SearchTable::ShortForm const& pair = table_.pairForm(text_[p], text_[p + 1], *dics_);
    places_[p].pair = pair.least;
    reach_[p + 2] |= pair.enters;
    if (pair.longer) scanOverhangs(p);
}

void BestPathSearch::scanOverhangs(std::size_t p) {
    for (DicEntry const& entry : dics_->entries()) {
        DicTrie const* const trie = entry.dic->trie();
        if (trie == nullptr) continue;
        trie->possibleLengths(text_ + p, length_ - p, [&](std::size_t length) {
            if (length <= 2) return;
            overhangs_.push({static_cast<std::uint32_t>(p), static_cast<std::uint32_t>(p + length)});
            reach_[p + length] = 0xFF;
        });
    }
}

}  // namespace TAVO
