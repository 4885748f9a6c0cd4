#include "engine/fast/candidate_layout.hpp"

#include "engine/special_records.hpp"

#include <algorithm>

namespace TAVO {
namespace {

constexpr std::size_t kSlack = 64;        // behind what is used: vectors are stored whole
constexpr std::size_t kPlacesBehind = 3;  // that a look reads

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
          columns_(layout.columns_.begin()),
          sums_(layout.sums_.begin()),
          rows_(layout.rows_.begin()),
          ends_(layout.ends_.begin()),
          slots_(layout.slots_.begin()),
          firstSlot_(layout.firstSlot_.begin()),
          counts_(layout.counts_.begin()),
          wordBase_(static_cast<std::uint32_t>(chosen.next.size())) {}

    /// Lays @p places places out. False when they are too many.
    [[gnu::always_inline]] bool run(std::size_t places) {
        std::uint32_t const* nextEnd =
            std::lower_bound(text_.ends().begin(), text_.ends().end(), static_cast<std::uint32_t>(layout_.begin_));
        std::size_t const behind = layout_.begin_ + places;
        for (place_ = 0; place_ != places;) {
            std::size_t const end =
                nextEnd != text_.ends().end() && *nextEnd < behind ? *nextEnd - layout_.begin_ : places;
            if (!(indexes_.count() == 1 ? layPlaces<true>(end) : layPlaces<false>(end))) return false;
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
    /// Lays the places before @p end out, in which no end stands.
    template <bool kOneDictionary>
    [[gnu::always_inline]] bool layPlaces(std::size_t end) {
        unsigned const alwaysOpen = indexes_.alwaysOpen();
        DicIndex const& dic = indexes_.dic(0);
        for (; place_ != end; ++place_) {
            std::size_t const p = layout_.begin_ + place_;
            firstSlot_[place_] = static_cast<std::uint16_t>(slot_);
            chosen_.firstWord[p] = wordBase_ + static_cast<std::uint32_t>(word_);
            open_ |= alwaysOpen;
            if (place_ < laterUntil_) [[unlikely]]
                open_ |= openedLater_;
            chosen_.open[p] = static_cast<std::uint16_t>(open_);
            unsigned opens = 0;
            count_ = 0;
            unsigned const flags = text_.flags(p);
            if ((flags & (CharacterFlag::kUnknown | CharacterFlag::kBroken)) != 0) [[unlikely]]
                addRare(flags);
            if constexpr (kOneDictionary) {
                addList(dic.list(text_.list(0, p)), text_.depth(0, p), opens);
            } else {
                for (std::size_t i = 0; i != indexes_.count(); ++i)
                    if (!addList(indexes_.dic(i).list(text_.list(i, p)), text_.depth(i, p), opens)) break;
            }
            storeLanes(columns_ + slot_ + count_, allLanes(count_ != 0 ? columns_[slot_] : 0));
            storeLanes(sums_ + slot_ + count_, allLanes(kNoSum));
            counts_[place_] = static_cast<std::uint16_t>(count_);
            slot_ += (count_ + kLanes - 1 + (count_ == 0 ? 1 : 0)) / kLanes * kLanes;
            if (slot_ > kMostSlots) return false;
            open_ = opens;
        }
        return true;
    }

    /// @p depth: words of more characters are none of this text. Adds the classes that the words open to @p opens.
    /// False when there is no room for all words: then none of a later dictionary may stand here either, as candidates
    /// are known by their numbers.
    [[gnu::always_inline]] bool addList(CandidateList list, std::size_t depth, unsigned& opens) {
        unsigned const unrestricted = list.unrestricted();
        unsigned const all = (list.enteredBy() & open_) != 0 ? ~0U : 0;
        std::size_t const count = unrestricted + ((list.count() - unrestricted) & all);
        opens |= list.opens() | (list.restrictedOpens() & all);
        if ((list.flags() & (CandidateList::kOpensLater | CandidateList::kBeyond)) != 0) [[unlikely]]
            noteRare(list);
        if (count_ + count > kMostAtPlace || list.longest() > depth) [[unlikely]] {
            noteBeyond();
            return false;
        }
        addWords(list, 0);
        for (std::size_t i = kLanes; i < count; i += kLanes) [[unlikely]] addWords(list, i);
        count_ += count;
        word_ += count;
        return true;
    }

    /// Eight words of @p list from word @p i on.
    [[gnu::always_inline]] void addWords(CandidateList list, std::size_t i) {
        constexpr Lanes kOrder{0, 1, 2, 3, 4, 5, 6, 7};
        std::size_t const slot = slot_ + count_ + i;
        std::size_t const word = word_ + i;
        storeLanes(columns_ + slot, loadLanes(list.columns() + 2 * i));
        storeLanes(sums_ + slot, allLanes(kNoSum));
        storeLanes(rows_ + word, loadLanes(list.rows() + 2 * i));
        storeLanes(ends_ + word, allLanes(static_cast<unsigned>(place_)) + widenBytes(list.lengths() + i));
        storeLanes(slots_ + word, allLanes(static_cast<unsigned>(slot)) + kOrder);
    }

    [[gnu::always_inline]] void noteBeyond() {
        layout_.beyond_.push_back(static_cast<std::uint32_t>(layout_.begin_ + place_));
    }

    [[gnu::always_inline]] void noteRare(CandidateList list) {
        if ((list.flags() & CandidateList::kBeyond) != 0) noteBeyond();
        if ((list.flags() & CandidateList::kOpensLater) == 0) return;
        openedLater_ = (place_ < laterUntil_ ? openedLater_ : 0) | list.opens() | list.restrictedOpens();
        laterUntil_ = place_ + DicIndex::kMostCharacters + 1;
    }

    [[gnu::always_inline]] void addRare(unsigned flags) {
        if ((flags & CharacterFlag::kBroken) != 0) noteBeyond();
        if ((flags & CharacterFlag::kUnknown) != 0)
            addWord(indexes_.conn().unknownColumn(), indexes_.conn().unknownRow());
    }

    [[gnu::always_inline]] void addWord(std::uint16_t column, std::uint16_t row) {
        columns_[slot_ + count_] = column;
        sums_[slot_ + count_] = kNoSum;
        rows_[word_] = row;
        ends_[word_] = static_cast<std::uint16_t>(place_ + 1);
        slots_[word_] = static_cast<std::uint16_t>(slot_ + count_);
        ++count_;
        ++word_;
    }

    [[gnu::always_inline]] void layEnd() {
        ConnIndex const& conn = indexes_.conn();
        firstSlot_[place_] = static_cast<std::uint16_t>(slot_);
        chosen_.firstWord[layout_.begin_ + place_] = wordBase_ + static_cast<std::uint32_t>(word_);
        count_ = 0;
        addWord(conn.endColumn(), conn.beginRow());
        storeLanes(columns_ + slot_, allLanes(conn.endColumn()));
        columns_[slot_ + 1] = conn.endAfterUnknownColumn();
        storeLanes(sums_ + slot_, allLanes(kNoSum));
        sums_[slot_] = 0;
        sums_[slot_ + 1] = ConnTable::kForbidden;
        counts_[place_] = 2;
        slot_ += kLanes;
        open_ = conn.rowClasses(conn.beginRow());
        laterUntil_ = 0;
    }

    CandidateLayout& layout_;
    TextPlaces const& text_;
    SearchIndexes const& indexes_;
    ChosenPlaces& chosen_;
    std::uint16_t *columns_, *sums_, *rows_, *ends_, *slots_, *firstSlot_, *counts_;
    std::uint32_t wordBase_;
    std::size_t place_ = 0;
    std::size_t slot_ = 0, count_ = 0, word_ = 0;  // of the place's first candidate; its candidates; of the next word
    unsigned open_ = 0;
    // At places before laterUntil_. What stands before the block may open any class, as far as words reach.
    unsigned openedLater_ = 0xFF;
    std::size_t laterUntil_ = DicIndex::kMostCharacters;
};

bool CandidateLayout::lay(TextPlaces const& text, SearchIndexes const& indexes, ChosenPlaces& chosen, std::size_t begin,
                          std::size_t end, Head const& head) {
    begin_ = begin;
    laidEnd_ = end;
    beyond_.clear();
    std::size_t const places = end - begin;
    reserve(places + head.counts.size() + kPlacesBehind, kMostSlots + 2 * kMostAtPlace + head.columns.size() + kSlack);
    Pass pass(*this, text, indexes, chosen);
    if (!pass.run(places)) return false;
    std::reverse(beyond_.begin(), beyond_.end());
    appendHead(head, places, pass.slot());
    return true;
}

void CandidateLayout::reserve(std::size_t places, std::size_t slots) {
    firstSlot_.resizeForOverwrite(places);
    counts_.resizeForOverwrite(places);
    for (RawBuffer<std::uint16_t>* const array : {&columns_, &sums_, &rows_, &ends_, &slots_})
        if (array->size() < slots) array->resizeForOverwrite(slots);
}

void CandidateLayout::appendHead(Head const& head, std::size_t places, std::size_t slot) {
    std::size_t at = slot;
    for (std::size_t i = 0; i != head.counts.size(); ++i) {
        firstSlot_[places + i] = static_cast<std::uint16_t>(at);
        counts_[places + i] = head.counts[i];
        at += std::max<std::size_t>(kLanes, (head.counts[i] + std::size_t{kLanes} - 1) / kLanes * kLanes);
    }
    std::copy(head.columns.begin(), head.columns.end(), columns_.begin() + slot);
    std::copy(head.sums.begin(), head.sums.end(), sums_.begin() + slot);
    for (std::size_t behind = places + head.counts.size(); behind != firstSlot_.size(); ++behind) {
        firstSlot_[behind] = static_cast<std::uint16_t>(at);
        counts_[behind] = 0;
    }
    storeLanes(columns_.begin() + at, allLanes(0));
    storeLanes(sums_.begin() + at, allLanes(kNoSum));
}

void CandidateLayout::copyHead(std::size_t begin, std::size_t end, Head& head) const {
    head.counts.assign(counts_.begin() + (begin - begin_), counts_.begin() + (end - begin_));
    std::size_t const first = firstSlot(begin), last = firstSlot(end);
    head.columns.assign(columns_.begin() + first, columns_.begin() + last);
    head.sums.assign(sums_.begin() + first, sums_.begin() + last);
}

Relaxation CandidateLayout::block(ConnIndex const& conn, ChosenPlaces& chosen, TieBreaker& ties) noexcept {
    return {.matrix = conn.matrix(),
            .stride = conn.stride(),
            .columns = columns_.begin(),
            .sums = sums_.begin(),
            .rows = rows_.begin(),
            .ends = ends_.begin(),
            .slots = slots_.begin(),
            .firstSlots = firstSlot_.begin(),
            .counts = counts_.begin(),
            .next = chosen.next.begin() + chosen.firstWord[begin_],
            .ties = &ties,
            .columnMosts = conn.columnMosts(),
            .unknownCost = conn.unknownCost()};
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
