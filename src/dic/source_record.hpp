// One line of dictionary source text as a record.
#ifndef TAVO_DIC_SOURCE_RECORD_HPP
#define TAVO_DIC_SOURCE_RECORD_HPP

#include <array>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace TAVO {

struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>{}(text); }
};
/// Part-of-speech name to id.
using NameTable = std::unordered_map<std::string, std::uint16_t, StringHash, std::equal_to<>>;

/// The fields of a source line, separated by ",". A "\" makes the next character
/// literal. An unescaped "-" or "/" is a part separator, which stays in the
/// stored readPron and stdForm. Escapes are resolved everywhere but in partForm.
///
/// parse() and serialize() come in two shapes: one hands the error's text to the
/// caller, the other writes it as a line to the standard error stream.
struct SourceRecord {
    static constexpr unsigned kMaxParts = 255;
    static constexpr std::uint8_t kDefaultCost = 100;

    std::string form;
    std::string partForm;  ///< the form as written; empty for a simple word
    unsigned partCount = 1;
    std::string partOfSP;
    std::vector<std::string> partNames;  ///< the parts' part-of-speech names: none or partCount
    std::uint8_t cost = kDefaultCost;
    std::string readPron;
    std::string stdForm;
    std::string wordCooc;
    std::string groupCooc;
    std::string group;
    std::array<std::vector<std::uint16_t>, 3> categories;
    std::string prosodicInfo;
    std::vector<std::string> ext;
    bool leftMark = false;
    bool rightMark = false;
    bool moreFollows = false;

    /// Fills the record from @p line (not a comment line, no line end). False,
    /// with the first fault's text, when the line is refused; the record then
    /// holds the fields before the fault.
    bool parse(std::string_view line, std::string& error);
    bool parse(std::string_view line);

    /// Appends the compiled record (docs/format-dictionary.md) to @p out. False
    /// when a name is not in @p names or a size does not fit the format.
    bool serialize(std::string& out, NameTable const& names, std::string& error) const;
    bool serialize(std::string& out, NameTable const& names) const;

    /// Writes the record as labelled lines.
    void print(std::ostream& out) const;

private:
    struct Field;

    bool setField(unsigned index, Field const& field, std::string& error);
    bool setForm(Field const& field, std::string& error);
    bool setPartOfSP(Field const& field, std::string& error);
    bool setCost(Field const& field, std::string& error);
    bool setReadPron(Field const& field, std::string& error);
    bool setStdForm(Field const& field, std::string& error);
    void setCooc(Field const& field, std::string& text);
    bool setCategory(Field const& field, std::vector<std::uint16_t>& values, std::string& error);
    void appendBody(std::string& out, std::vector<std::uint16_t> const& partIds) const;
};

}  // namespace TAVO

#endif
