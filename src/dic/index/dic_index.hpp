// What the fast search reads of a dictionary: a trie over whole characters whose every node leads to a ready list of
// candidates.
#ifndef TAVO_DIC_INDEX_DIC_INDEX_HPP
#define TAVO_DIC_INDEX_DIC_INDEX_HPP

#include "base/bytes.hpp"
#include "dic/dic_trie.hpp"
#include "dic/index/index_image.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace TAVO {

class ConnIndex;
class ConnTable;
class Dic;

/// The code of a character is its byte, or its two bytes as lead * 256 + trail.
using CharacterCode = std::uint16_t;

/// What a character is to the search, a bit each. The first four are facts of a dictionary, and a character has those
/// of all dictionaries; deriveFlags() adds the others.
namespace CharacterFlag {
inline constexpr unsigned kBounded = 1;      ///< is a surface with a word of a bounded column
inline constexpr unsigned kSafe = 2;         ///< no path gains by an unknown word in its place
inline constexpr unsigned kEndsSurface = 4;  ///< of a byte: is a surface, or the last character of one
inline constexpr unsigned kContinues =
    8;  ///< of a byte: begins or goes on in a surface that another character follows in
inline constexpr unsigned kDouble = 16;     ///< two bytes
inline constexpr unsigned kHighTrail = 32;  ///< an unknown word of two bytes may start at its trail byte
inline constexpr unsigned kHighByte =
    64;  ///< one byte of 128 and more, as which an unknown word of two bytes may start
inline constexpr unsigned kUnknown = 128;         ///< needs the unknown word among its candidates
inline constexpr unsigned kTrailEnds = 256;       ///< its trail byte is kEndsSurface
inline constexpr unsigned kTrailContinues = 512;  ///< its trail byte is kContinues
inline constexpr unsigned kLook = 1024;           ///< the search checks what it leaves out here
inline constexpr unsigned kEnd = 2048;            ///< the end of a sentence, which is no character of a text
inline constexpr unsigned kBroken = 4096;         ///< a place whose candidate list is unsound
inline constexpr unsigned kOfDictionary = kBounded | kSafe | kEndsSurface | kContinues;
}  // namespace CharacterFlag

/// A candidate list: the words of all surfaces that are prefixes of one string of characters, shortest first, and of
/// each surface in chain order; but words of restricted columns stand behind the others.
class CandidateList {
public:
    static constexpr std::size_t kHeadBytes = 8;
    static constexpr unsigned kMostWords = 255;
    static constexpr unsigned kOpensLater = 1;  ///< a word of several characters opens a class
    static constexpr unsigned kBeyond = 2;      ///< there are words that the index lacks: the exact search is needed

    explicit CandidateList(unsigned char const* bytes) noexcept : bytes_(bytes) {}

    unsigned count() const noexcept { return bytes_[0]; }
    unsigned unrestricted() const noexcept { return bytes_[1]; }
    unsigned longest() const noexcept { return bytes_[2]; }  ///< in characters, of the words
    unsigned flags() const noexcept { return bytes_[3]; }
    unsigned enteredBy() const noexcept { return bytes_[4]; }  ///< classes of the restricted words' columns
    unsigned opens() const noexcept { return bytes_[5]; }      ///< classes that unrestricted words open behind them
    unsigned restrictedOpens() const noexcept { return bytes_[6]; }  ///< and restricted ones
    unsigned char const* columns() const noexcept { return bytes_ + kHeadBytes; }
    unsigned char const* rows() const noexcept { return columns() + std::size_t{2} * count(); }
    unsigned char const* lengths() const noexcept { return rows() + std::size_t{2} * count(); }  ///< in characters
    unsigned char const* costs() const noexcept { return lengths() + count(); }
    /// By word, its place in the order of making; only in lists with restricted words.
    unsigned char const* ranks() const noexcept { return costs() + count(); }
    unsigned column(unsigned i) const noexcept { return loadU16(columns() + std::size_t{2} * i); }
    unsigned row(unsigned i) const noexcept { return loadU16(rows() + std::size_t{2} * i); }
    unsigned rank(unsigned i) const noexcept { return unrestricted() == count() ? i : ranks()[i]; }
    /// The place of word @p i among those of its surface, in the order of making.
    unsigned rankInSurface(unsigned i) const noexcept;
    static std::size_t sizeBytes(std::size_t count, bool ranked) noexcept {
        return kHeadBytes + count * (ranked ? 7U : 6U);
    }
    /// The words that may stand where the classes @p open are open.
    unsigned usable(unsigned open) const noexcept { return (enteredBy() & open) != 0 ? count() : unrestricted(); }

private:
    unsigned char const* bytes_;
};

/// Immutable; the checks of lists that were used are remembered, for all threads.
class DicIndex {
public:
    static constexpr std::string_view kMagic{"TAVODIX1", IndexImage::kMagicBytes};
    static constexpr std::size_t kMostCharacters = 64;  ///< of an indexed surface
    static constexpr unsigned kLabelShift = 48, kListShift = 24;
    static constexpr std::uint64_t kBaseMask = 0xFFFFFF;
    static constexpr std::size_t kCodes = 65536;
    static constexpr unsigned kFlagShift = 16;

    /// The bytes of the index of @p dic with @p table, of which @p conn is the index; throws bad_alloc.
    static std::vector<std::uint64_t> make(Dic const& dic, ConnTable const& table, ConnIndex const& conn,
                                           IndexOrigin const& origin);
    DicIndex(IndexImage&& image, ConnIndex const& conn);

    bool isSound() const noexcept { return sound_; }
    IndexImage const& image() const noexcept { return image_; }

    /// False when a surface is not made of whole characters: the fast search knows nothing of it.
    bool isRegular() const noexcept { return (info_[kTraits] & kRegular) != 0; }
    /// A word of a column that no unknown word may stand before has a twin when there is one of the same surface and
    /// row and of a column that one may stand before. These are the classes of the words without a twin, a bit each (of
    /// class number % 64); kAnyClass when the column of one is not restricted.
    std::uint64_t untwinned() const noexcept { return classSet(kUntwinned); }
    static constexpr std::uint64_t kAnyClass = ~std::uint64_t{0};
    /// The classes that words open whose surface begins with a byte that mayBeTrail() and ends with a character of one
    /// byte: such a word may begin inside a character and end with it.
    std::uint64_t exits() const noexcept { return classSet(kExits); }

    /// By code: the character's number, 1 to characterCount(), or characterCount() + 1 when no surface holds it; from
    /// bit kFlagShift on CharacterFlag's bits.
    std::uint32_t const* codes() const noexcept { return codes_.data(); }
    std::uint32_t characterCount() const noexcept { return static_cast<std::uint32_t>(roots_.size() - 2); }
    /// By number: the node behind the character as the first one. A node is base 24 | list 24 | label 16 bits: its
    /// child by character number c is unit base + c when that one's label is c; list tells the candidates of the
    /// longest surface on the way, in units of 8 bytes, 0 for none.
    std::uint64_t root(std::uint32_t number) const noexcept { return roots_[number]; }
    std::uint64_t const* roots() const noexcept { return roots_.data(); }
    std::uint64_t const* units() const noexcept { return units_.data(); }
    std::size_t unitCount() const noexcept { return units_.size(); }
    static std::uint32_t listOf(std::uint64_t node) noexcept {
        return static_cast<std::uint32_t>(node >> kListShift & kBaseMask);
    }

    unsigned char const* lists() const noexcept { return lists_.data(); }
    /// True when list @p number (in units of 8 bytes) lies inside the section and its words inside the matrix. Each is
    /// looked at once.
    bool isList(std::uint32_t number) const noexcept {
        std::size_t const word = number >> 6;
        if (word >= checkedWords_) return false;
        if ((checked_[word].load(std::memory_order_relaxed) >> (number & 63) & 1) != 0) return true;
        return checkList(number);
    }
    CandidateList list(std::uint32_t number) const noexcept {
        return CandidateList(lists_.data() + std::size_t{number} * 8);
    }

    /// By code, a bit each: some surface holds the two-byte character.
    std::span<std::uint64_t const> pairs() const noexcept { return pairs_; }
    /// False when in no surface the byte @p first stands before the character @p next; may be true without one.
    bool mayStandBefore(unsigned char first, CharacterCode next) const noexcept {
        std::uint16_t const hash = neighbourHash(first, next);
        return (neighbours_[hash >> 6] >> (hash & 63) & 1) != 0;
    }

    /// Position of the record chain of the surface that @p bytes is, in the trie's leaf area; kNoChain when it is none.
    static constexpr std::uint32_t kNoChain = 0xFFFFFFFF;
    std::uint32_t chainOf(unsigned char const* bytes, std::size_t length) const noexcept;

private:
    friend class DicIndexMaker;
    friend class DicIndexCheck;
    enum Info : std::size_t { kTraits, kUntwinned, kExits = kUntwinned + 2, kInfoCount = kExits + 2 };
    enum Trait : std::uint32_t { kRegular = 1 };
    enum Section : std::size_t { kInfo, kCodesAt, kRoots, kUnits, kLists, kPairs, kNeighbours, kRootChains, kChains };

    static std::uint16_t neighbourHash(unsigned char first, CharacterCode next) noexcept {
        return static_cast<std::uint16_t>((next * 0x9E3BU) ^ (first * 0x3D4DU));
    }
    std::uint64_t classSet(std::size_t at) const noexcept {
        return info_[at] | static_cast<std::uint64_t>(info_[at + 1]) << 32;
    }
    bool check() const noexcept;
    bool checkList(std::uint32_t number) const noexcept;

    IndexImage image_;
    std::uint32_t rows_, columns_;  // of the matrix
    std::span<std::uint32_t const> info_, codes_;
    std::span<std::uint64_t const> roots_, units_;
    std::span<std::uint8_t const> lists_;
    std::span<std::uint64_t const> pairs_, neighbours_;
    std::span<std::uint32_t const> rootChains_,
        chains_;  // by number and by unit: position + 1 of the chain, 0 for none
    std::size_t checkedWords_ = 0;
    std::unique_ptr<std::atomic<std::uint64_t>[]> checked_;
    bool sound_;
};

/// True for the bytes that end a two-byte character of code page 932. Texts may hold others there.
constexpr bool mayBeTrail(unsigned byte) noexcept { return byte >= 0x40 && byte <= 0xFC && byte != 0x7F; }

/// CharacterFlag's bits of @p code from those of the dictionaries, of itself and of its trail byte.
unsigned deriveFlags(unsigned code, unsigned own, unsigned ofTrail) noexcept;

}  // namespace TAVO

#endif
