// Part-of-speech tables of one analyser: names, ids and type masks.
#ifndef TAVO_CONFIG_POS_TABLES_HPP
#define TAVO_CONFIG_POS_TABLES_HPP

#include "config/pos_name.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

class ConnTable;

/// Bits of a part of speech's type mask.
enum PosType : std::uint8_t {
    kMajorPos = 0x80,
    kUndefPos = 0x40,
    kNumberPos = 0x20,
    kAlphabetPos = 0x10,
    kKatakanaPos = 0x08,
    kKanaPos = 0x04,
    kSymbolPos = 0x02,
    kRomanPos = 0x01,
};

/// Class words: a name that has one as head or feature carries its bit.
struct PosClassWord {
    std::string_view word;
    std::uint8_t bit;
};
inline constexpr PosClassWord kPosClassWords[] = {
    {"Undef", kUndefPos}, {"Alphabet", kAlphabetPos}, {"Katakana", kKatakanaPos},
    {"Kana", kKanaPos},   {"Symbol", kSymbolPos},     {"Roman", kRomanPos},
};

class PosTables {
public:
    /// Takes names and ids from @p table, which must outlive this object, and
    /// recomputes the type masks; null empties them.
    void setPartOfSP(ConnTable const* table);

    /// List files, or @p text with @p path as its name; null clears path and list, so that the defaults (number and
    /// major) come back at the next rebuild. Throws file_not_found, and
    /// illegal_format (path:line) for a public line without head.
    void setNumberPartOfSPPath(char const* path, std::string_view const* text = nullptr);
    void setMajorPartOfSPPath(char const* path);
    void setPublicPartOfSPPath(char const* path);
    std::string const& numberPath() const noexcept { return numberPath_; }
    std::string const& majorPath() const noexcept { return majorPath_; }
    std::string const& publicPath() const noexcept { return publicPath_; }
    PatternList const& publicList() const noexcept { return public_; }

    /// 0 when unknown.
    std::uint16_t getPid(std::string const& name) const;
    /// Name of @p pid, "" when beyond the table; lives as long as the connection table.
    char const* name(std::uint32_t pid) const noexcept;
    std::uint16_t getPidMax() const noexcept;
    /// All names from id 1 on, in id order.
    std::vector<std::string> listedNames() const;

    /// Changes with every change of names or type masks, in any table; never 0
    /// once a table was set.
    std::uint64_t revision() const noexcept { return revision_; }
    std::uint8_t type(std::uint32_t pid) const noexcept { return pid < types_.size() ? types_[pid] : std::uint8_t{0}; }
    bool isMajor(std::uint16_t pid) const noexcept { return (type(pid) & kMajorPos) != 0; }
    bool isUndef(std::uint16_t pid) const noexcept { return (type(pid) & kUndefPos) != 0; }
    bool isNumber(std::uint16_t pid) const noexcept { return (type(pid) & kNumberPos) != 0; }
    bool isAlphabet(std::uint16_t pid) const noexcept { return (type(pid) & kAlphabetPos) != 0; }
    bool isKatakana(std::uint16_t pid) const noexcept { return (type(pid) & kKatakanaPos) != 0; }
    bool isKana(std::uint16_t pid) const noexcept { return (type(pid) & kKanaPos) != 0; }
    bool isSymbol(std::uint16_t pid) const noexcept { return (type(pid) & kSymbolPos) != 0; }
    bool isRoman(std::uint16_t pid) const noexcept { return (type(pid) & kRomanPos) != 0; }
    bool isAlphabetUndef(std::uint16_t pid) const noexcept { return isUndef(pid) && isAlphabet(pid); }
    bool isKatakanaUndef(std::uint16_t pid) const noexcept { return isUndef(pid) && isKatakana(pid); }
    bool isKanaUndef(std::uint16_t pid) const noexcept { return isUndef(pid) && isKana(pid); }
    bool isRomanUndef(std::uint16_t pid) const noexcept { return isUndef(pid) && isRoman(pid); }
    bool isReducable(std::uint16_t pid) const noexcept { return (type(pid) & 0x7FU) != 0; }

private:
    void setList(PatternList& list, std::string& storedPath, char const* path, std::string_view const* text = nullptr);
    void setPartOfSPType();
    std::uint8_t typeOf(PosName const& name) const;

    // The table's own names serve both ways, so an analyser keeps no copy.
    ConnTable const* table_ = nullptr;
    std::vector<std::uint8_t> types_;
    std::vector<std::uint8_t> conjugation_;  // per id; 0 until conjugation classes exist
    std::uint64_t revision_ = 0;
    std::string numberPath_, majorPath_, publicPath_;
    PatternList number_, major_, public_;
};

}  // namespace TAVO

#endif
