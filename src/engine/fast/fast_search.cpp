#include "engine/fast/fast_search.hpp"

#include <algorithm>

namespace TAVO {
namespace {

constexpr std::size_t kReach = DicIndex::kMostCharacters;  // of a word, in places
/// Sums are counted anew from here on. From there a chunk and the places that its words reach fit into 16 bits.
constexpr int kRebase = 0x4000;
/// A bounded word of a larger sum could come to more than 16 bits within the next chunk.
constexpr int kMostSum = 0x8000;

}  // namespace

FastSearch::FastSearch(PathStore& paths, SearchState& state, Options const& options)
    : paths_(paths), state_(state), options_(options), ties_(state), check_(state), pieces_(state, ties_, check_) {
    if (options_.relax == nullptr) options_.relax = relaxKernel().relax;
}

void FastSearch::search(std::span<std::string_view const> texts, ConnTable const& table, DicSet const& dics,
                        std::span<LazyPath> results) {
    table_ = &table;
    dics_ = &dics;
    for (std::size_t i = 0; i != texts.size();) {
        if (isLong(texts[i])) {
            results[i] = searchLong(texts[i]);
            ++i;
            continue;
        }
        std::size_t const first = i;
        batch_.clear();
        state_.text.clear();
        for (; i != texts.size() && !isLong(texts[i]) && state_.text.size() < options_.blockPlaces; ++i) {
            std::size_t const place = state_.text.add(texts[i], state_.indexes);
            batch_.push_back({texts[i], place, state_.text.size() - 1});
        }
        findCandidates();
        if (!state_.layout.lay(state_.text, state_.indexes, state_.chosen, 0, state_.text.size(), {})) {
            for (std::size_t k = first; k != i; ++k) results[k] = searchLong(texts[k]);
            continue;
        }
        for (std::size_t k = first; k != i; ++k) results[k] = searchShort(batch_[k - first]);
    }
}

void FastSearch::findCandidates() {
    state_.text.findLists(state_.indexes);
    state_.chosen.start(state_.text.size());
    check_.findLooks();
}

/// Searches a sentence of the block.
LazyPath FastSearch::searchShort(Sentence const& sentence) {
    beginSentence(sentence);
    if (relaxPlaces(sentence, sentence.first - 1, sentence.end) != Outcome::kFound) return {};
    return writePath(sentence);
}

/// Searches a sentence alone, a block after the other.
LazyPath FastSearch::searchLong(std::string_view text) {
    state_.text.clear();
    state_.text.add(text, state_.indexes);
    Sentence const sentence{text, 1, state_.text.size() - 1};
    findCandidates();
    beginSentence(sentence);
    head_ = {};
    std::size_t blockPlaces = options_.blockPlaces;
    for (std::size_t to = sentence.end + 1; to != 0;) {
        // The beginning of the text is never a block alone: nothing is left to do there behind an exact piece of it
        // all.
        std::size_t const from = to > blockPlaces + 1 ? to - blockPlaces : 0;
        std::size_t const words = state_.chosen.next.size();
        if (!state_.layout.lay(state_.text, state_.indexes, state_.chosen, from, to, head_)) {
            if (blockPlaces == 1) return {};
            blockPlaces /= 2;
            continue;
        }
        std::size_t const known = known_;
        std::size_t const pieces = state_.pieces.size();
        Outcome const outcome = relaxPlaces(sentence, from, std::min(to, sentence.end));
        if (outcome == Outcome::kEarlierBegin && from != 0 && blockPlaces < kMostBlockPlaces) {
            // The same block with more before it.
            state_.chosen.next.truncate(words);
            state_.pieces.resize(pieces);
            known_ = known;
            blockPlaces *= 2;
            continue;
        }
        if (outcome != Outcome::kFound) return {};
        if (from != 0) state_.layout.copyHead(from, std::min(from + kReach, sentence.end) + 1, head_);
        blockPlaces = options_.blockPlaces;
        to = from;
    }
    return writePath(sentence);
}

void FastSearch::beginSentence(Sentence const& sentence) {
    known_ = sentence.end;
    ties_.restart();
    check_.begin(sentence.text, *table_, *dics_);
    pieces_.begin(sentence.text, sentence.first, sentence.end, *table_, *dics_);
}

/// Gives the words of the places [@p from, @p to) their best next candidates.
FastSearch::Outcome FastSearch::relaxPlaces(Sentence const& sentence, std::size_t from, std::size_t to) {
    while (to > from) {
        std::size_t const begin = std::max(from, to - std::min(to, options_.chunkPlaces));
        relax(begin, to);
        std::size_t const last = std::min(to + kReach, known_);
        std::size_t const failing = firstFailing(std::max(begin, sentence.first), to, last);
        if (ties_.failed()) return Outcome::kGivenUp;
        if (failing != kNowhere) {
            switch (pieces_.search(failing, last)) {
                case ExactPieces::Result::kPiece:
                    to = known_ = pieces_.piece().begin;
                    continue;
                case ExactPieces::Result::kWhole:
                    return Outcome::kFound;
                case ExactPieces::Result::kNoSeam:
                    return Outcome::kEarlierBegin;
                case ExactPieces::Result::kImpossible:
                    return Outcome::kGivenUp;
            }
        }
        if (begin >= sentence.first && !rebase(begin)) return Outcome::kGivenUp;
        to = begin;
    }
    return Outcome::kFound;
}

void FastSearch::relax(std::size_t from, std::size_t to) {
    CandidateLayout& layout = state_.layout;
    ConnIndex const& conn = state_.indexes.conn();
    Relaxation const block{conn.matrix(),
                           conn.stride(),
                           layout.columns(),
                           layout.sums(),
                           layout.rows(),
                           layout.ends(),
                           layout.slots(),
                           layout.firstSlots(),
                           layout.counts(),
                           state_.chosen.next.begin() + state_.chosen.firstWord[layout.begin()],
                           &ties_};
    options_.relax(block, layout.wordsBefore(from, state_.chosen), layout.wordsBefore(to, state_.chosen));
}

/// The last of the places [@p from, @p to) that does not pass; kNowhere when all do.
std::size_t FastSearch::firstFailing(std::size_t from, std::size_t to, std::size_t last) const {
    std::size_t failing = kNowhere;
    for (std::uint32_t const place : state_.layout.beyond()) {
        if (place >= from && place < to) {
            failing = place;
            break;
        }
    }
    RawBuffer<std::uint32_t> const& looks = check_.looks();
    std::uint32_t const* look = std::lower_bound(looks.begin(), looks.end(), static_cast<std::uint32_t>(to));
    while (look != looks.begin() && *--look >= from) {
        if (failing != kNowhere && *look <= failing) break;
        if (!check_.passes(*look, last)) return *look;
    }
    return failing;
}

/// Counts the sums of the places that words before @p from may reach from the least of them. False when they lie too
/// far apart.
bool FastSearch::rebase(std::size_t from) {
    if (check_.bound(from) < kRebase) return true;
    CandidateLayout& layout = state_.layout;
    std::size_t const last = std::min(from + kReach, known_);
    unsigned least = CandidateLayout::kNoSum;
    for (std::size_t place = from; place <= last; ++place) least = std::min(least, layout.leastSum(place));
    if (least >= kRebase && least != CandidateLayout::kNoSum) {
        std::uint16_t* const end = layout.sums() + layout.firstSlot(last) + layout.count(last);
        for (std::uint16_t* sum = layout.sums() + layout.firstSlot(from); sum != end; ++sum)
            if (*sum != CandidateLayout::kNoSum) *sum = static_cast<std::uint16_t>(*sum - least);
    }
    return check_.bound(from) <= kMostSum;
}

LazyPath FastSearch::writePath(Sentence const& sentence) {
    std::size_t const begin = paths_.size();
    SearchState const& state = state_;
    bool const isWhole = !state.pieces.empty() && state.pieces.back().begin == sentence.first;
    if (!isWhole && state.layout.leastSum(sentence.first - 1) == CandidateLayout::kNoSum) return {};
    PlacedCandidate at{sentence.first, state.chosen.next[state.chosen.firstWord[sentence.first - 1]]};
    paths_.reserve(sentence.end - sentence.first);
    bool const isPlain = state.pieces.empty() && state.indexes.count() == 1 && state.layout.begin() == 0 &&
                         state.layout.covers(sentence.end);
    while (!state.text.isEnd(at.place)) {
        if (isPlain && (at = writePlainWords(at)).place == sentence.end) break;
        ExactPiece const* const piece = state.pieces.empty() ? nullptr : state.pieceAt(at.place);
        if (piece != nullptr) {
            LatticeNode const* node = piece->starts[at.place == sentence.first ? 0 : at.number];
            for (; node != nullptr && node->record != nullptr; node = node->next) paths_.addExact(*node);
            at = {piece->end, node != nullptr ? node->length : 0};
            continue;
        }
        Candidate const word = state.candidate(at);
        std::uint32_t const length = state.text.offset(at.place + word.length) - state.text.offset(at.place);
        paths_.add({word.list << 8 | word.index, word.column, static_cast<std::uint8_t>(length), word.dic});
        at = state.following(at, word);
    }
    return {paths_, begin, paths_.size(), sentence.text};
}

/// Writes words of the only dictionary, up to the first place that has an unknown word or to the end. What they are
/// stands in the arrays of the block; their lists are far away by now.
PlacedCandidate FastSearch::writePlainWords(PlacedCandidate at) {
    TextPlaces const& text = state_.text;
    CandidateLayout const& layout = state_.layout;
    std::uint32_t const* const firstWord = state_.chosen.firstWord.begin();
    std::uint8_t const* const next = state_.chosen.next.begin();
    std::uint32_t offset = text.offset(at.place);
    while ((text.flags(at.place) & (CharacterFlag::kUnknown | CharacterFlag::kEnd)) == 0) {
        std::size_t const word = firstWord[at.place] + at.number;
        std::size_t const end = layout.ends()[word];
        std::uint32_t const behind = text.offset(end);
        paths_.add({text.list(0, at.place) << 8 | at.number, layout.columns()[layout.firstSlot(at.place) + at.number],
                    static_cast<std::uint8_t>(behind - offset), 0});
        at = {end, next[word]};
        offset = behind;
    }
    return at;
}

}  // namespace TAVO
