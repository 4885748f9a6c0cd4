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

/// Number of the word that a path takes behind the row of all.
std::size_t bestInside(Words words, SearchTable const& table) {
    unsigned char const* const costs = table.costs(words.front().word.rowOffset);
    auto const key = [&](BundleCell const& cell) { return costs[cell.word.column] << 8 | cell.word.cost; };
    auto const best = std::min_element(words.begin(), words.end(),
                                       [&](BundleCell const& a, BundleCell const& b) { return key(a) < key(b); });
    return static_cast<std::size_t>(best - words.begin());
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
    Words const words(cache.cells() + first, cells[BundleCell::kHeadCells].arc.count);
    if (!areOfOneRow(words)) return;
    std::size_t const inside = bestInside(words, table);
    BundleCell::Word const word = words[inside].word;
    unsigned const cost = table.costs(word.rowOffset)[word.column];
    unsigned const largest = largestBounded(words, table);
    if (cost > table.unknownCost() || cost + largest >= 2U * table.unknownCost()) return;
    std::uint8_t const number =
        numberOf({word.rowOffset, static_cast<std::uint8_t>(cost), word.cost, static_cast<std::uint8_t>(largest)});
    bundles_[byte] = bundle;
    innerWords_[byte] = first + static_cast<std::uint32_t>(inside);
    numbers_[byte] = number;
}

std::uint8_t PlainRuns::numberOf(Kind const& kind) {
    auto const found = std::find(kinds_.begin(), kinds_.end(), kind);
    auto const number = static_cast<std::uint8_t>(found - kinds_.begin() + kFirstKind);
    if (found == kinds_.end()) kinds_.push_back(kind);
    return number;
}

}  // namespace TAVO
