// The arrays of one bulk call, while they are filled and afterwards.
#ifndef TAVO_API_BULK_ARRAYS_HPP
#define TAVO_API_BULK_ARRAYS_HPP

#include "api/string_block.hpp"

#include <tavo/tavo_bulk.h>
#include <tavo/tavo.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::api {

/// Positions of one text in the unit asked for; quick while they ascend.
class PositionCounter {
public:
    PositionCounter(std::string_view text, bool inCharacters) : text_(text), inCharacters_(inCharacters) {}
    std::uint32_t at(std::size_t byte);
    std::uint32_t end() { return at(text_.size()); }

private:
    std::string_view text_;
    bool inCharacters_;
    std::size_t byte_ = 0;
    std::uint32_t characters_ = 0;
};

/// One analysis of one text.
struct BulkRow {
    std::string_view given;
    /// The texts of its sentences, joined; used with TAVO_BULK_ANALYZED alone.
    std::string_view analyzed;
    std::uint32_t failed;
    /// Sentence by sentence; a failed one has no morphemes.
    std::vector<std::vector<Mrph> const*> morphemes;
    /// Where the sentences begin in analyzed.
    std::vector<std::size_t> analyzedBegin;
    PathCost cost{};
};

class BulkArrays {
public:
    /// Empties the arrays; @p what as in the public header.
    void start(unsigned what);
    /// Throws logic_error when the row's text has no place for its morphemes;
    /// the row does not count then.
    void addRow(BulkRow const& row);
    /// Points @p out at the rows.
    void describe(tavo_bulk_t& out);

    bool inAnalyzedText() const noexcept { return asked(TAVO_BULK_ANALYZED); }

private:
    bool asked(unsigned bit) const noexcept { return (what_ & bit) != 0; }
    void addSentence(BulkRow const& row, std::size_t sentence, PositionCounter& positions);
    void addMorpheme(Mrph const& mrph, std::uint32_t start, std::uint32_t length);
    void addTexts(Mrph const& mrph);
    std::uint32_t textOf(Mrph const& mrph, unsigned field);

    unsigned what_ = 0;
    std::vector<unsigned> textFields_;  // bits, ascending
    std::vector<std::uint32_t> rowEnd_, rowLength_, rowFailed_, rowText_, rowConnectionCost_, rowWordCost_;
    std::vector<std::uint32_t> start_, length_;
    std::vector<std::int32_t> cost_;
    std::vector<std::uint16_t> pid_;
    std::vector<std::uint8_t> flags_;
    std::vector<std::uint32_t> texts_;   // morpheme by morpheme
    std::vector<std::uint32_t> fields_;  // the same field by field, made by describe()
    StringBlock strings_;
    RecordTexts records_;
};

}  // namespace TAVO::api

#endif
