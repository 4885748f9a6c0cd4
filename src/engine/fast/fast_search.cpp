#include "engine/fast/fast_search.hpp"

#include <algorithm>
#include <array>

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
    if (options_.kernel == nullptr) options_.kernel = &relaxKernel();
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
        if (!layOut(0, state_.text.size(), {})) {
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

/// False when the places have too many candidates for one block.
bool FastSearch::layOut(std::size_t from, std::size_t to, CandidateLayout::Head const& head) {
    if (!state_.layout.lay(state_.text, state_.indexes, state_.chosen, from, to, head)) return false;
    block_ = state_.layout.block(state_.indexes.conn(), state_.chosen, ties_);
    return true;
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
    std::size_t mostPlaces = kMostBlockPlaces;  // of the block at work
    for (std::size_t to = sentence.end + 1; to != 0;) {
        // The beginning of the text is never a block alone: nothing is left to do there behind an exact piece of it
        // all.
        std::size_t const from = to > blockPlaces + 1 ? to - blockPlaces : 0;
        std::size_t const words = state_.chosen.next.size();
        if (!layOut(from, to, head_)) {
            if (blockPlaces == 1) return {};
            mostPlaces = blockPlaces /= 2;
            continue;
        }
        std::size_t const known = known_;
        std::size_t const pieces = state_.pieces.size();
        Outcome const outcome = relaxPlaces(sentence, from, std::min(to, sentence.end));
        if (outcome == Outcome::kEarlierBegin && from != 0 && blockPlaces < mostPlaces) {
            // The same block with more before it.
            state_.chosen.next.truncate(words);
            state_.pieces.resize(pieces);
            known_ = known;
            blockPlaces = std::min(2 * blockPlaces, mostPlaces);
            continue;
        }
        if (outcome != Outcome::kFound) return {};
        if (from != 0) state_.layout.copyHead(from, std::min(from + kReach, sentence.end) + 1, head_);
        blockPlaces = options_.blockPlaces;
        mostPlaces = kMostBlockPlaces;
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
        CandidateLayout const& layout = state_.layout;
        options_.kernel->relax(block_, layout.wordsBefore(begin, state_.chosen), layout.wordsBefore(to, state_.chosen));
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

/// The last of the places [@p from, @p to), just relaxed, that does not pass; kNowhere when all do. Sums are known up
/// to place @p last. Where an exact piece begins there, what the kernel reads behind it proves nothing, but spoils no
/// proof: over a seam nothing leads that is not deep.
std::size_t FastSearch::firstFailing(std::size_t from, std::size_t to, std::size_t last) const {
    std::size_t failing = kNowhere;
    for (std::uint32_t const place : state_.layout.beyond()) {
        if (place >= from && place < to) {
            failing = place;
            break;
        }
    }
    auto const isFailing = [&](Look look) {
        return (failing == kNowhere || look.place > failing) && !check_.passes(look.place, last);
    };
    std::array<Look, Options::kMostChunkPlaces> left;
    for (std::size_t i = options_.kernel->pass(block_, looksIn(from, to), state_.layout.begin(), left.data());
         i-- != 0;)
        if (isFailing(left[i])) return left[i].place;
    return failing;
}

/// The check's looks in [@p from, @p to).
std::span<Look const> FastSearch::looksIn(std::size_t from, std::size_t to) const {
    std::span<Look const> const looks = check_.looks();
    auto const isBefore = [](Look const& look, std::size_t place) { return look.place < place; };
    auto const first = std::lower_bound(looks.begin(), looks.end(), from, isBefore);
    return {first, std::lower_bound(first, looks.end(), to, isBefore)};
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
    std::uint16_t const* const flags = text.flags();
    std::uint32_t const* const offsets = text.offsets();
    std::uint32_t const* const lists = text.lists(0);
    std::uint32_t const* const firstWord = state_.chosen.firstWord.begin();
    Relaxation const block = block_;
    PathWord* const first = paths_.room();
    PathWord* to = first;
    std::uint32_t offset = offsets[at.place];
    for (; (flags[at.place] & (CharacterFlag::kUnknown | CharacterFlag::kEnd)) == 0; ++to) {
        std::size_t const word = firstWord[at.place] + at.number;
        std::size_t const end = block.ends[word];
        std::uint32_t const behind = offsets[end];
        *to = {lists[at.place] << 8 | at.number, block.columns[block.firstSlots[at.place] + at.number],
               static_cast<std::uint8_t>(behind - offset), 0};
        at = {end, block.next[word]};
        offset = behind;
    }
    paths_.take(static_cast<std::size_t>(to - first));
    return at;
}

}  // namespace TAVO
