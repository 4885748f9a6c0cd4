// The parts of a long text, and the search of each of them.
#include "engine/best_path_search.hpp"

#include "base/bytes.hpp"
#include "base/sjis.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/packed_sum.hpp"

#include <algorithm>

namespace TAVO {
void BestPathSearch::search(std::span<std::string_view const> texts, ConnTable const& table, DicSet const& dics,
                            std::span<Result> results) {
    found_.clear();
    pathWords_.clear();
    start(table, dics);
    texts_ = texts;
    memory_ = asBytes(texts.front().data());
    lookedUpTo_ = 0;
    for (std::size_t number = 0; number != texts.size(); ++number) results[number] = searchText(texts[number]);
    forgetSums();
}

/// Makes ready for a group.
void BestPathSearch::start(ConnTable const& table, DicSet const& dics) {
    dics_ = &dics;
    bool const changed = table_.attach(table, dics);
    if (changed) cache_.clear();
    if (cache_.trim() || changed) {
        for (FormFinder& finder : finders_) finder.clear();
        plain_.clear();
        endsText_ = false;
    }
    cache_.start(table_, dics, parts_.wide);
    finders_.resize(dics.entries().size());
}

BestPathSearch::Result BestPathSearch::searchText(std::string_view text) {
    sentence_ = text;
    findBlocks();
    Choice choice = searchBlocks();
    if (choice == Choice::kOmitted && blocks_.size() > 1) {  // a word stands across blocks
        blocks_.truncate(1);
        choice = searchBlocks();
    }
    addFound(choice == Choice::kMade);
    if (choice == Choice::kMade) return Result::kFound;
    return choice == Choice::kNone ? Result::kNothing : Result::kTooFar;
}

/// Keeps the path of the text at work, whose first block is at work.
void BestPathSearch::addFound(bool hasPath) {
    auto const begin = static_cast<std::uint32_t>(pathWords_.size());
    std::uint32_t behind = 0;
    if (hasPath)
        behind = walk(firstNumber_, [&](std::size_t, BlockPaths::Word const& word) {
            pathWords_.push({word, columnOf(word)});
            return true;
        });
    found_.push({begin, static_cast<std::uint32_t>(pathWords_.size()), behind, pathWordSum_});
}

/// Finds positions that no word stands across, which blocks begin at.
void BestPathSearch::findBlocks() {
    constexpr std::size_t kTries = 16;  // one after the other
    blocks_.clear();
    blocks_.push(0);
    if (!isLong(sentence_.size())) return;
    std::size_t tries = 0;
    std::size_t next = parts_.block;
    for (std::size_t p = 0; p + parts_.block <= sentence_.size(); p += charWidth(sentence_, p)) {
        if (p < next) continue;
        if (isBlockEnd(p)) {
            blocks_.push(static_cast<std::uint32_t>(p));
            next = p + parts_.block;
        } else if (++tries % kTries == 0) {
            next = p + parts_.block / 4;
        }
    }
}

/// False when a word may stand across @p p; longer words than kMost are not looked for.
bool BestPathSearch::isBlockEnd(std::size_t p) const {
    constexpr std::size_t kMost = 64;
    unsigned char const* const text = asBytes(sentence_.data());
    if (text[p - 1] >= 128) return false;  // an unknown word of two bytes
    std::size_t farthest = 0;
    for (std::size_t begin = p - std::min(p, kMost); begin < p && farthest <= p; ++begin)
        for (DicEntry const& entry : dics_->entries())
            if (DicTrie const* const trie = entry.dic->trie(); trie != nullptr)
                trie->possibleLengths(text + begin, sentence_.size() - begin,
                                      [&](std::size_t length) { farthest = std::max(farthest, begin + length); });
    return farthest <= p;
}

/// Searches the blocks from the last to the first. kOmitted when a word stands across two.
BestPathSearch::Choice BestPathSearch::searchBlocks() {
    paths_.clear();
    reach_.reserve(sentence_.size() + 1);
    if (!endsText_) startAtTextEnd();
    std::size_t end = sentence_.size();
    for (std::size_t number = blocks_.size() - 1;; --number) {
        std::size_t const begin = blocks_[number];
        text_ = asBytes(sentence_.data()) + begin;
        if (isLong(sentence_.size())) lookedUpTo_ = 0;  // what was looked up is of another block
        length_ = end - begin;
        rest_ = sentence_.size() - begin;
        Choice const choice = searchBlock();
        if (choice != Choice::kMade || number == 0) return choice;
        addPaths();
        startBehindBlock();
        end = begin;
    }
}

BestPathSearch::Choice BestPathSearch::searchBlock() {
    if (table_.unknownIsFlat()) {
        collect(Extent::kNeeded);
        if (Choice const choice = choose(Extent::kNeeded); choice != Choice::kOmitted) return choice;
    }
    collect(Extent::kAll);
    return choose(Extent::kAll);
}

/// Keeps the paths through the block, since it is not known yet which of its first words is taken.
void BestPathSearch::addPaths() {
    paths_.startBlock();
    for (std::uint32_t number = 0; number != places_[0].wordCount; ++number) {
        paths_.startPath();
        if (behind_.packed[number] >= kDeadEnd) continue;
        paths_.endPath(walk(number, [&](std::size_t p, BlockPaths::Word const& word) { return paths_.add(p, word); }));
    }
}

/// Lets the end of the text stand there like a word.
void BestPathSearch::startAtTextEnd() {
    std::uint32_t const bundle = cache_.textEnd();
    unsigned const lines = cache_.cells()[bundle + BundleCell::kReach].reach.lines();
    end_.place = {0, bundle + BundleCell::kHeadCells, 0, 2, static_cast<std::uint8_t>(1 | lines << Place::kLinesShift)};
    end_.bounds[0] = {0, table_.columnMinimum(table_.id(ConnTable::kEndId).column)};
    end_.bounds[1] = {kMaxSum, kMaxSum};
    end_.packed.clear();
    end_.packed.push(0);
    end_.packed.push(kDeadEnd | 1);
    end_.baseSum = 0;
    end_.rebaseAt = kRebase;
    endsText_ = true;
}

/// Lets the block before the one at work have its first words behind it.
void BestPathSearch::startBehindBlock() {
    endsText_ = false;
    end_.place = places_[0];
    end_.bounds = {bounds_[0], bounds_[1]};
    end_.packed.swap(behind_.packed);
    end_.baseSum = baseSum_;
    end_.rebaseAt = rebaseAt_;
}

// Memory that an exceptionally long sentence took is given back before its morphemes need some.

void BestPathSearch::forgetSums() noexcept {
    reach_.shrink(kKept);
    bounds_.shrink(kKept);
    packed_.shrink(kKept);
    overhangs_.shrink(kKept);
    places_.shrink(kKept);
    next_.shrink(2 * kKept);
}

void BestPathSearch::forgetPaths() noexcept {
    pathWords_.shrink(kKept);
    if (blocks_.size() > 1) paths_.forget();
}

}  // namespace TAVO
