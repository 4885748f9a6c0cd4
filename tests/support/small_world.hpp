// A small dictionary and connection table from a table of words.
#ifndef TAVO_TESTS_SMALL_WORLD_HPP
#define TAVO_TESTS_SMALL_WORLD_HPP

#include "dic/conn_table_writer.hpp"

#include <tavo/tavo.hpp>

#include <functional>
#include <initializer_list>
#include <string_view>

namespace TAVO::test {

/// Names and source lines are Shift_JIS bytes; the members that end in Utf8 take
/// UTF-8 and convert it.
class SmallWorld {
public:
    struct Paths {
        std::string dic;
        std::string source;
        std::string connTable;
        /// What addDicPath takes: dic and source.
        std::string dicSpec() const { return dic + "," + source; }
        void attachTo(Tavo& tavo, bool memoryMapped = false) const;
    };

    /// Part-of-speech names by id from 1 on: begin, end, unknown word, then
    /// others. The cost function is reset.
    SmallWorld& names(std::vector<std::string> names);
    SmallWorld& namesUtf8(std::vector<std::string> const& names);
    /// Connection cost of ids left, right (from 1 on); 0 unless set.
    SmallWorld& cost(std::function<std::uint8_t(unsigned left, unsigned right)> function);
    SmallWorld& cost(unsigned left, unsigned right, std::uint8_t value);
    /// Lets ids of equal costs have one column in common, as a lexicon's table does.
    SmallWorld& shareColumns();
    /// One dictionary source line.
    SmallWorld& line(std::string line);
    SmallWorld& linesUtf8(std::initializer_list<std::string_view> lines);

    std::vector<std::string> const& names() const noexcept { return names_; }
    /// One row and one column per id, unless columns are shared.
    ConnTableContent connTable() const;
    /// The source text, each line ended by LF.
    std::string source() const;
    /// The compiled dictionary's bytes; throws runtime_error with the error's
    /// text when a line or the dictionary is refused.
    std::string dictionary() const;

    /// Writes "SysDic", "SysDic.txt" and "ConnTable" into @p dir.
    Paths writeTo(std::string const& dir) const;

private:
    std::vector<std::string> names_{"BOS", "EOS", "UNK"};
    std::vector<std::uint8_t> costs_ = std::vector<std::uint8_t>(9, 0);
    std::vector<std::string> lines_;
    bool sharesColumns_ = false;
};

}  // namespace TAVO::test

#endif
