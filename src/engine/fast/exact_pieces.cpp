#include "engine/fast/exact_pieces.hpp"

#include "base/bytes.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "dic/record_walk.hpp"
#include "engine/special_records.hpp"

#include <algorithm>

namespace TAVO {

using namespace CharacterFlag;

void ExactPieces::begin(std::string_view text, std::size_t first, std::size_t end, ConnTable const& table,
                        DicSet const& dics) {
    text_ = text;
    first_ = first;
    end_ = end;
    table_ = &table;
    dics_ = &dics;
    state_.pieces.clear();
    searchedBytes_ = 0;
    exact_.reset();
    pools_.clear();
}

ExactPieces::Result ExactPieces::search(std::size_t at, std::size_t last) {
    std::size_t begin = at;
    unsigned attempts = 0;
    std::size_t const blockBegin = std::max(first_, state_.layout.begin());
    for (std::size_t end = at + 1;; ++end) {
        if (end > last) end = end_;
        if (end != end_ && !mayEnd(end, last)) continue;
        for (;; --begin) {
            if (begin != first_ && !isSeam(begin)) {
                if (begin == blockBegin) return Result::kNoSeam;
                continue;
            }
            if (++attempts > kMostAttempts || !mayTake(offset(end) - offset(begin))) return Result::kImpossible;
            if (!build(begin, end)) {  // a word reaches over the end
                forget();
                break;
            }
            if (begin == first_) {
                state_.pieces.push_back({begin, end, {exact_->first(ConnTable::kBeginId)}, false});
                return piece().starts.front() != nullptr ? Result::kWhole : Result::kImpossible;
            }
            state_.pieces.push_back({begin, end, {}, false});
            if (setSums(begin)) return Result::kPiece;
            state_.pieces.pop_back();
            forget();
            if (begin == blockBegin) return Result::kNoSeam;
        }
    }
}

/// True when a piece may end at @p place, before the end of the sentence.
bool ExactPieces::mayEnd(std::size_t place, std::size_t last) const {
    if (!isSeam(place) || !isComplete(place)) return false;
    ExactPiece const* const behind = state_.pieceAt(place);
    return behind != nullptr ? behind->mayFollowUnknown : check_.passesForUnknown(place, last);
}

/// True when no word that begins before @p place, at a character or inside one, ends behind it; but for words that
/// begin inside one and go on with whole characters, which the exact search meets.
bool ExactPieces::isSeam(std::size_t place) const noexcept {
    unsigned const before = state_.text.flags(place - 1);
    if ((before & (kHighByte | kHighTrail)) != 0) return false;
    std::vector<std::uint32_t> const& beyond = state_.layout.beyond();
    if (std::find(beyond.begin(), beyond.end(), place) != beyond.end()) return false;
    std::size_t const reach = std::min<std::size_t>(place - first_, DicIndex::kMostCharacters);
    for (std::size_t from = place - reach; from != place; ++from)
        if (crosses(from, place)) return false;
    return true;
}

/// True when all words at @p place are laid out that a word may choose: one from inside a character may open classes,
/// too.
bool ExactPieces::isComplete(std::size_t place) const {
    constexpr unsigned kEveryClass = 0xFF;
    return state_.hasAllWords(place, kEveryClass) || state_.hasAllWords(place, openedFromInside(place));
}

/// The classes that words open which begin inside a character and end at @p place.
unsigned ExactPieces::openedFromInside(std::size_t place) const {
    ConnIndex const& conn = state_.indexes.conn();
    unsigned opened = 0;
    std::size_t const reach = std::min<std::size_t>(place - first_, DicIndex::kMostCharacters);
    for (std::size_t from = place - reach; from != place; ++from) {
        if ((state_.text.flags(from) & kDouble) == 0) continue;
        std::size_t const begin = state_.text.offset(from) + 1;
        std::size_t const most = offset(place) - begin;
        for (DicEntry const& entry : dics_->entries())
            entry.dic->trie()->prefixSearch(
                asBytes(text_.data()) + begin, most, [&](std::size_t length, RecordChain chain) {
                    if (length != most) return true;
                    eachNodeRecord(chain, table_->idCount(),
                                   [&](MrphDic record) { opened |= conn.rowClasses(table_->row(record.pid())); });
                    return true;
                });
    }
    return opened;
}

bool ExactPieces::crosses(std::size_t from, std::size_t place) const noexcept {
    if ((state_.text.flags(from) & kBroken) != 0) return true;
    for (std::size_t i = 0; i != state_.indexes.count(); ++i) {
        CandidateList const list = state_.indexes.dic(i).list(state_.text.list(i, from));
        if ((list.flags() & CandidateList::kBeyond) != 0) return true;
        for (unsigned word = 0; word != list.count(); ++word)
            if (from + list.lengths()[word] > place) return true;
    }
    return false;
}

/// Where pieces cannot end before the end of the sentence, each would go over the one behind it again: all of them
/// together take no more than a few searches of the whole sentence.
bool ExactPieces::mayTake(std::size_t bytes) noexcept {
    searchedBytes_ += bytes;
    return searchedBytes_ <= kMostSearches * text_.size() + kMostBytesOfShort;
}

/// Drops the nodes of an attempt.
void ExactPieces::forget() {
    exact_.reset();
    pools_.pop_back();
}

bool ExactPieces::build(std::size_t begin, std::size_t end) {
    pools_.push_back(std::make_unique<NodePool>(kPieceNodes));
    exact_ = std::make_unique<ExactSearch>(*pools_.back(), *table_, none_);
    std::vector<ExactSearch::Successor> successors;
    if (end != end_) {
        std::vector<std::uint32_t> wordSums;
        ties_.relativeWordSums(end, wordSums);
        std::size_t const slot = state_.layout.firstSlot(end);
        for (unsigned i = 0; i != wordSums.size(); ++i) {
            std::uint16_t const sum = state_.layout.sums()[slot + i];
            if (sum != CandidateLayout::kNoSum)
                successors.push_back({i, state_.layout.columns()[slot + i], pathKey(sum, wordSums[i])});
        }
        // Candidates stand in another order than that of making, which decides ties.
        auto const rank = [&](ExactSearch::Successor const& of) { return state_.candidate({end, of.number}).rank; };
        std::sort(successors.begin(), successors.end(),
                  [&](ExactSearch::Successor const& a, ExactSearch::Successor const& b) { return rank(a) < rank(b); });
    }
    return exact_->buildPiece(text_, {offset(begin), offset(end)}, successors, *dics_);
}

/// Takes the exact sums of the words at @p begin over. False when one that the fast search leaves out there could be
/// chosen by a word before it.
bool ExactPieces::setSums(std::size_t begin) {
    CandidateLayout& layout = state_.layout;
    ExactPiece& piece = state_.pieces.back();
    std::vector<LatticeNode const*> nodes;
    std::uint32_t least = 0xFFFFFFFF;
    for (unsigned i = 0; i != layout.count(begin); ++i) {
        nodes.push_back(nodeOf(begin, i));
        if (nodes.back() != nullptr) least = std::min(least, nodes.back()->connSum);
    }
    std::uint16_t* const sums = layout.sums() + layout.firstSlot(begin);
    for (std::size_t i = 0; i != nodes.size(); ++i)
        sums[i] = nodes[i] == nullptr ? CandidateLayout::kNoSum
                                      : static_cast<std::uint16_t>(std::min<std::uint32_t>(nodes[i]->connSum - least,
                                                                                           CandidateLayout::kNoSum));
    UnknownCheck::Sum const limit = check_.limit(begin);
    if (limit >= UnknownCheck::kNone) return false;
    std::int64_t leftOut = UnknownCheck::kNone;  // the least sum, counted as the others are
    for (LatticeNode const& node : exact_->starts(offset(begin)))
        if (node.record == kUnknownRecord.data() && std::find(nodes.begin(), nodes.end(), &node) == nodes.end())
            leftOut = std::min(leftOut, std::int64_t{node.connSum} - least);
    if (leftOut + state_.indexes.conn().unknownCost() <= limit) return false;
    piece.mayFollowUnknown = check_.lowOpen(begin) < leftOut;
    piece.starts = std::move(nodes);
    return true;
}

LatticeNode const* ExactPieces::nodeOf(std::size_t place, unsigned number) const {
    Candidate const candidate = state_.candidate({place, number});
    std::size_t const begin = offset(place);
    std::size_t const length = offset(place + candidate.length) - begin;
    unsigned char const* record = kUnknownRecord.data();
    if (candidate.dic != Candidate::kUnknown)
        record = state_.indexes.record(
            candidate.dic, asBytes(text_.data()) + begin, length,
            state_.indexes.dic(candidate.dic).list(candidate.list).rankInSurface(candidate.index));
    for (LatticeNode const& node : exact_->starts(begin))
        if (node.record == record && node.length == length) return &node;
    return nullptr;
}

}  // namespace TAVO
