// Turns shifted source costs into part-of-speech ids, a matrix of bytes and
// word-cost bytes.
#ifndef TAVO_LEXICON_IMPORT_TABLE_TABLE_HPP
#define TAVO_LEXICON_IMPORT_TABLE_TABLE_HPP

#include "lexicon/import/fit/fit.hpp"
#include "lexicon/import/fit/pairs.hpp"
#include "lexicon/import/fit/search.hpp"
#include "lexicon/import/source/source_lexicon.hpp"
#include "lexicon/words/word_classes.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace TAVO::importer {

struct TableOptions {
    double step = 130;              ///< source cost of one unit of a byte
    double levelTolerance = 10;     ///< how much weighted error merges two neighbouring cost levels
    double contextTolerance = 3e4;  ///< and two rows or columns that are alike
    double maxBytes = 46e6;         ///< of the matrix
};

/// What the connection table and the records hold. Ids run from 1; the vectors
/// over ids have their entry for id i at i - 1.
struct Tables {
    static constexpr std::uint8_t kForbidden = 255, kHighest = 254;

    std::vector<std::string> names;
    std::vector<std::uint16_t> rowOf, columnOf;
    std::uint32_t rows = 0, columns = 0;
    std::vector<std::uint8_t> matrix;  ///< empty when it would be larger than TableOptions say
    std::size_t bytes() const noexcept { return std::size_t{rows} * columns; }  ///< of the matrix

    std::vector<std::uint16_t> idOfWord;   ///< per word of the lexicon
    std::vector<std::uint8_t> costOfWord;  ///< word-cost byte
    words::WordClasses classes;            ///< of all ids, for words that are added later

    std::uint8_t byteOf(std::uint16_t left, std::uint16_t right) const noexcept {
        return matrix[std::size_t{rowOf[left - 1U]} * columns + columnOf[right - 1U]];
    }
};

/// @p usage weighs what is merged, @p pairs orders the matrix: rows that a search asks for
/// most stand first, columns that it asks for together stand together. Throws lexicon_error when the ids do not fit 16
/// bits.
Tables buildTables(Lexicon& lexicon, FormIndex const& index, Shifts const& shifts, Usage const& usage,
                   PairCounts const& pairs, TableOptions const& options);

/// Tavo's own cost of an edge, for the search: the connection byte first, the
/// word-cost byte among equal sums.
struct TableEdge {
    Tables const& tables;
    std::int64_t operator()(std::uint32_t left, std::uint32_t right) const noexcept {
        std::uint16_t const leftId = left == Lattice::kNone ? std::uint16_t{1} : tables.idOfWord[left];
        std::uint16_t const rightId = right == Lattice::kNone ? std::uint16_t{2} : tables.idOfWord[right];
        std::uint8_t const byte = tables.byteOf(leftId, rightId);
        if (byte == Tables::kForbidden) return Lattice::kNoPath;
        return std::int64_t{byte} << 32 | (right == Lattice::kNone ? 0 : tables.costOfWord[right]);
    }
};

}  // namespace TAVO::importer

#endif
