// Cost classes of an imported lexicon: which part-of-speech id stands for which
// cost, so that words can be added at costs of their own.
#ifndef TAVO_LEXICON_WORDS_WORD_CLASSES_HPP
#define TAVO_LEXICON_WORDS_WORD_CLASSES_HPP

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::words {

/// Id and word-cost byte of a word.
struct Placement {
    std::uint16_t id = 0;
    std::uint8_t cost = 128;
};

/// Read from the file that an import leaves beside the connection table
/// (docs/import.md). Costs count in units of a connection cost.
///
/// A class is an id by the row and column of the matrix that it has, before
/// equal ones merged, and its level: the part of an edge's cost that the word
/// behind decides. Classes of one name, row and column differ in level alone.
class WordClasses {
public:
    struct Class {
        std::uint32_t row = 0, column = 0;
        double level = 0;
        bool known = false;  ///< false for ids that are no words: ends, parts of unknown words
    };
    /// What a source id stands for: the line that it shares, and a cost.
    struct Line {
        std::uint32_t leader = 0;
        double offset = 0;
    };

    double step = 1;     ///< source cost per unit
    double perByte = 0;  ///< source cost that a word's level has per byte of its form
    std::map<std::uint32_t, Line> left, right;
    std::vector<Class> classes;  ///< per id, id 0 unused

    /// Throws lexicon_error.
    static WordClasses read(std::string const& path);
    std::string text() const;

    /// The id for a word of @p bytes bytes among those of @p names (per id, id 0
    /// unused) that are @p name with or without a class number; id 0 when none is.
    /// Of the source: left and right id and word cost.
    Placement bySource(std::vector<std::string> const& names, std::string_view name, std::uint32_t leftId,
                       std::uint32_t rightId, double cost, std::size_t bytes) const;
    /// As dear as the word of @p likeBytes bytes at @p like, for the same length of text.
    Placement byWord(std::vector<std::string> const& names, std::string_view name, Placement like,
                     std::size_t likeBytes, std::size_t bytes) const;

private:
    struct Place {
        std::uint32_t row, column;
        double level;
    };
    Placement nearest(std::vector<std::string> const& names, std::string_view name, Place const& wanted) const;
};

/// File name beside the connection table.
inline constexpr char kWordClassesName[] = "word.classes";

}  // namespace TAVO::words

#endif
