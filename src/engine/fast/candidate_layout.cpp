#include "engine/fast/candidate_layout.hpp"

#include "engine/special_records.hpp"

#include <algorithm>

namespace TAVO {
namespace {

constexpr std::size_t kSlack = 64;  // behind what is used: vectors are stored whole
constexpr std::size_t kReach = DicIndex::kMostCharacters;

}  // namespace

/// Goes through the places of a block from the first to the last. Places are counted from the block's first one. All of
/// it is inlined, so that what it counts stays in registers.
class CandidateLayout::Pass {
public:
    Pass(CandidateLayout& layout, TextPlaces const& text, SearchIndexes const& indexes, ChosenPlaces& chosen)
        : layout_(layout),
          text_(text),
          indexes_(indexes),
          chosen_(chosen),
          wordBase_(static_cast<std::uint32_t>(chosen.next.size())) {}

    /// Lays @p places places out. False when they are too many.
    [[gnu::always_inline]] bool run(std::size_t places) {
        std::uint32_t const* nextEnd =
            std::lower_bound(text_.ends().begin(), text_.ends().end(), static_cast<std::uint32_t>(layout_.begin_));
        std::size_t const behind = layout_.begin_ + places;
        for (place_ = 0; place_ != places;) {
            std::size_t const end =
                nextEnd != text_.ends().end() && *nextEnd < behind ? *nextEnd - layout_.begin_ : places;
            for (; place_ != end; ++place_) {
                layPlace();
                if (slot_ > kMostSlots) return false;
            }
            if (end == places) break;
            layEnd();
            ++place_;
            ++nextEnd;
        }
        layout_.words_ = word_;
        chosen_.next.resizeForOverwrite(wordBase_ + word_);
        return true;
    }
    std::size_t slot() const noexcept { return slot_; }

private:
    [[gnu::always_inline]] void begin() {
        layout_.firstSlot_[place_] = static_cast<std::uint16_t>(slot_);
        chosen_.firstWord[layout_.begin_ + place_] = wordBase_ + static_cast<std::uint32_t>(word_);
        count_ = 0;
    }

    [[gnu::always_inline]] void layPlace() {
        std::size_t const p = layout_.begin_ + place_;
        begin();
        open_ |= indexes_.alwaysOpen();
        if (place_ < laterUntil_) [[unlikely]]
            open_ |= openedLater_;
        chosen_.open[p] = static_cast<std::uint16_t>(open_);
        opens_ = 0;
        bounded_ = CandidateList::kBounded;
        unsigned const flags = text_.flags(p);
        if ((flags & CharacterFlag::kUnknown) != 0) [[unlikely]]
            addUnknown();
        if ((flags & CharacterFlag::kBroken) != 0) [[unlikely]]
            layout_.beyond_.push_back(static_cast<std::uint32_t>(p));
        for (std::size_t i = 0; i != indexes_.count(); ++i)
            if (!addList(indexes_.dic(i).list(text_.list(i, p)), text_.depth(i, p))) break;
        storeLanes(layout_.columns_.begin() + slot_ + count_, allLanes(count_ != 0 ? layout_.columns_[slot_] : 0));
        for (std::size_t lane = 0; lane <= count_; lane += kLanes)
            storeLanes(layout_.sums_.begin() + slot_ + lane, allLanes(kNoSum));
        layout_.counts_[place_] = static_cast<std::uint16_t>(count_);
        layout_.bounded_[place_] = static_cast<std::uint16_t>(bounded_);
        slot_ += (count_ + kLanes - 1 + (count_ == 0 ? 1 : 0)) / kLanes * kLanes;
        open_ = opens_;
    }

    /// @p depth: words of more characters are none of this text. False when there is no room for all words: then none
    /// of a later dictionary may stand here either, as candidates are known by their numbers.
    [[gnu::always_inline]] bool addList(CandidateList list, std::size_t depth) {
        unsigned const unrestricted = list.unrestricted();
        unsigned const count = list.usable(open_);
        opens_ |= list.opens();
        bounded_ &= list.flags();
        if (count != unrestricted) {
            opens_ |= list.restrictedOpens();
            bounded_ = 0;
        }
        if ((list.flags() & (CandidateList::kOpensLater | CandidateList::kBeyond)) != 0) [[unlikely]]
            noteRare(list);
        if (count_ + count > kMostAtPlace || list.longest() > depth) [[unlikely]] {
            layout_.beyond_.push_back(static_cast<std::uint32_t>(layout_.begin_ + place_));
            return false;
        }
        Lanes const from = allLanes(static_cast<unsigned>(place_));
        constexpr Lanes kOrder{0, 1, 2, 3, 4, 5, 6, 7};
        unsigned char const *columns = list.columns(), *rows = list.rows(), *lengths = list.lengths();
        std::size_t i = 0;
        do {
            std::size_t const slot = slot_ + count_ + i;
            std::size_t const word = word_ + i;
            storeLanes(layout_.columns_.begin() + slot, loadLanes(columns + 2 * i));
            storeLanes(layout_.rows_.begin() + word, loadLanes(rows + 2 * i));
            storeLanes(layout_.ends_.begin() + word, from + widenBytes(lengths + i));
            storeLanes(layout_.slots_.begin() + word, allLanes(static_cast<unsigned>(slot)) + kOrder);
            i += kLanes;
        } while (i < count);
        count_ += count;
        word_ += count;
        return true;
    }

    [[gnu::always_inline]] void noteRare(CandidateList list) {
        if ((list.flags() & CandidateList::kBeyond) != 0)
            layout_.beyond_.push_back(static_cast<std::uint32_t>(layout_.begin_ + place_));
        if ((list.flags() & CandidateList::kOpensLater) == 0) return;
        openedLater_ = (place_ < laterUntil_ ? openedLater_ : 0) | list.opens() | list.restrictedOpens();
        laterUntil_ = place_ + kReach + 1;
    }

    [[gnu::always_inline]] void addWord(std::uint16_t column, std::uint16_t row) {
        layout_.columns_[slot_ + count_] = column;
        layout_.rows_[word_] = row;
        layout_.ends_[word_] = static_cast<std::uint16_t>(place_ + 1);
        layout_.slots_[word_] = static_cast<std::uint16_t>(slot_ + count_);
        ++count_;
        ++word_;
    }

    [[gnu::always_inline]] void addUnknown() { addWord(indexes_.conn().unknownColumn(), indexes_.conn().unknownRow()); }

    [[gnu::always_inline]] void layEnd() {
        ConnIndex const& conn = indexes_.conn();
        begin();
        addWord(conn.endColumn(), conn.beginRow());
        storeLanes(layout_.columns_.begin() + slot_, allLanes(conn.endColumn()));
        layout_.columns_[slot_ + 1] = conn.endAfterUnknownColumn();
        storeLanes(layout_.sums_.begin() + slot_, allLanes(kNoSum));
        layout_.sums_[slot_] = 0;
        layout_.sums_[slot_ + 1] = ConnTable::kForbidden;
        layout_.counts_[place_] = 2;
        layout_.bounded_[place_] = 0;
        slot_ += kLanes;
        open_ = conn.rowClasses(conn.beginRow());
        laterUntil_ = 0;
    }

    CandidateLayout& layout_;
    TextPlaces const& text_;
    SearchIndexes const& indexes_;
    ChosenPlaces& chosen_;
    std::uint32_t wordBase_;
    std::size_t place_ = 0;
    std::size_t slot_ = 0, count_ = 0, word_ = 0;  // of the place's first candidate; its candidates; of the next word
    unsigned open_ = 0;
    unsigned opens_ = 0, bounded_ = 0;
    // At places before laterUntil_. What stands before the block may open any class, as far as words reach.
    unsigned openedLater_ = 0xFF;
    std::size_t laterUntil_ = kReach;
};

bool CandidateLayout::lay(TextPlaces const& text, SearchIndexes const& indexes, ChosenPlaces& chosen, std::size_t begin,
                          std::size_t end, Head const& head) {
    begin_ = begin;
    laidEnd_ = end;
    beyond_.clear();
    std::size_t const places = end - begin;
    reserve(places + head.counts.size() + 1, kMostSlots + 2 * kMostAtPlace + head.columns.size() + kSlack);
    Pass pass(*this, text, indexes, chosen);
    if (!pass.run(places)) return false;
    std::reverse(beyond_.begin(), beyond_.end());
    appendHead(head, places, pass.slot());
    return true;
}

void CandidateLayout::reserve(std::size_t places, std::size_t slots) {
    firstSlot_.resizeForOverwrite(places);
    counts_.resizeForOverwrite(places);
    bounded_.resizeForOverwrite(places);
    for (RawBuffer<std::uint16_t>* const array : {&columns_, &sums_, &rows_, &ends_, &slots_})
        if (array->size() < slots) array->resizeForOverwrite(slots);
}

/// Without a head there is a place that nothing starts at.
void CandidateLayout::appendHead(Head const& head, std::size_t places, std::size_t slot) {
    std::size_t at = slot;
    for (std::size_t i = 0; i != head.counts.size(); ++i) {
        firstSlot_[places + i] = static_cast<std::uint16_t>(at);
        counts_[places + i] = head.counts[i];
        bounded_[places + i] = 0;
        at += std::max<std::size_t>(kLanes, (head.counts[i] + kLanes - 1U) / kLanes * kLanes);
    }
    std::copy(head.columns.begin(), head.columns.end(), columns_.begin() + slot);
    std::copy(head.sums.begin(), head.sums.end(), sums_.begin() + slot);
    std::size_t const behind = places + head.counts.size();
    firstSlot_[behind] = static_cast<std::uint16_t>(at);
    counts_[behind] = 0;
    bounded_[behind] = 0;
    storeLanes(columns_.begin() + at, allLanes(0));
    storeLanes(sums_.begin() + at, allLanes(kNoSum));
}

void CandidateLayout::copyHead(std::size_t begin, std::size_t end, Head& head) const {
    head.counts.assign(counts_.begin() + (begin - begin_), counts_.begin() + (end - begin_));
    std::size_t const first = firstSlot(begin), last = firstSlot(end);
    head.columns.assign(columns_.begin() + first, columns_.begin() + last);
    head.sums.assign(sums_.begin() + first, sums_.begin() + last);
}

Candidate CandidateLayout::candidate(TextPlaces const& text, SearchIndexes const& indexes, ChosenPlaces const& chosen,
                                     std::size_t p, unsigned number) noexcept {
    unsigned rank = 0;
    if ((text.flags(p) & CharacterFlag::kUnknown) != 0) {
        if (number == 0) return {0, 0, Candidate::kUnknown, 1, kUnknownWordCost, indexes.conn().unknownColumn(), 0};
        --number;
        rank = 1;
    }
    std::size_t dic = 0;
    for (;; ++dic) {
        CandidateList const list = indexes.dic(dic).list(text.list(dic, p));
        unsigned const count = list.usable(chosen.open[p]);
        if (number < count || dic + 1 == indexes.count()) {
            auto const index = static_cast<std::uint8_t>(number);
            return {text.list(dic, p),
                    index,
                    static_cast<std::uint8_t>(dic),
                    list.lengths()[index],
                    list.costs()[index],
                    static_cast<std::uint16_t>(list.column(index)),
                    static_cast<std::uint16_t>(rank + list.rank(index))};
        }
        number -= count;
        rank += list.count();
    }
}

}  // namespace TAVO
