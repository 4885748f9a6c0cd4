#include "engine/plain_runs.hpp"

#include "dic/conn_table.hpp"

#include <algorithm>
#include <cstddef>
#include <span>

namespace TAVO {
namespace {

using Words = std::span<BundleCell const>;

/// True when all @p words have the row of the first.
bool areOfOneRow(Words words) {
    return std::all_of(words.begin(), words.end(),
                       [&](BundleCell const& cell) { return cell.word.rowOffset == words.front().word.rowOffset; });
}

std::uint8_t largestBounded(Words words, SearchTable const& table) {
    std::uint8_t largest = ConnTable::kForbidden;
    for (BundleCell const& cell : words)
        if (cell.word.bounded()) largest = std::min(largest, table.columnMaximum(cell.word.column));
    return largest;
}

}  // namespace

void PlainRuns::clear() noexcept {
    numbers_.fill(kNotPlain);
    std::fill_n(numbers_.begin() + 1, kBytes - 1, kUntold);  // a NUL ends forms
    kinds_.clear();
    inners_.clear();
}

void PlainRuns::learn(unsigned char byte, std::uint32_t bundle, BundleCache& cache, SearchTable& table,
                      DicSet const& dics) {
    numbers_[byte] = kNotPlain;
    if (table.byteForm(byte, dics).longer) return;
    bundle = cache.complete(bundle, &byte);
    BundleCell const* cells = cache.cells() + bundle;
    if (cells[0].head.arcCount != 1 || !cells[BundleCell::kReach].reach.hasBounded()) return;
    unsigned const classes = cells[BundleCell::kReach].reach.enteredBy;
    std::uint32_t const all = classes != 0 ? cache.variant(bundle, 0, classes, &byte) : bundle;
    cells = cache.cells() + all;
    if (cells[0].head.arcCount != 1 || cells[BundleCell::kReach].reach.tooMany()) return;
    std::uint32_t const first = all + BundleCell::kHeadCells + 1;
    BundleCell::Arc const arc = cells[BundleCell::kHeadCells].arc;
    Words const words(cache.cells() + first, arc.count);
    if (!areOfOneRow(words)) return;
    plain_[byte] = {bundle, first, arc.count};
    Kind const kind{words.front().word.rowOffset, arc.enters(), largestBounded(words, table)};
    if (!innerOf(kind, byte, cache, table).follows) return;
    numbers_[byte] = numberOf(kind);
    learnInners(byte, cache, table);
}

/// What a path takes for @p byte behind a character of the kind @p before.
PlainRuns::Inner PlainRuns::innerOf(Kind const& before, unsigned char byte, BundleCache const& cache,
                                    SearchTable const& table) const {
    Words const words(cache.cells() + plain_[byte].firstWord, plain_[byte].wordCount);
    unsigned char const* const costs = table.costs(before.rowOffset);
    auto const key = [&](BundleCell const& cell) { return costs[cell.word.column] << 8 | cell.word.cost; };
    auto const best = std::min_element(words.begin(), words.end(),
                                       [&](BundleCell const& a, BundleCell const& b) { return key(a) < key(b); });
    std::uint8_t const cost = costs[best->word.column];
    bool const follows = cost + before.largest < 2 * table.unknownCost();
    return {plain_[byte].firstWord + static_cast<std::uint32_t>(best - words.begin()), cost, best->word.cost, follows};
}

/// Notes what is taken for @p byte, and what behind it.
void PlainRuns::learnInners(unsigned char byte, BundleCache const& cache, SearchTable const& table) {
    inners_.resize((kFirstKind + kinds_.size()) * kBytes);
    for (std::size_t number = kFirstKind; number != kFirstKind + kinds_.size(); ++number)
        inners_[number * kBytes + byte] = innerOf(kinds_[number - kFirstKind], byte, cache, table);
    for (unsigned other = 1; other != kBytes; ++other) {
        auto const behind = static_cast<unsigned char>(other);
        if (isPlain(numbers_[behind]))
            inners_[std::size_t{numbers_[byte]} * kBytes + behind] = innerOf(kindOf(byte), behind, cache, table);
    }
}

std::uint8_t PlainRuns::numberOf(Kind const& kind) {
    auto const found = std::find(kinds_.begin(), kinds_.end(), kind);
    auto const number = static_cast<std::uint8_t>(found - kinds_.begin() + kFirstKind);
    if (found == kinds_.end()) kinds_.push_back(kind);
    return number;
}

}  // namespace TAVO
