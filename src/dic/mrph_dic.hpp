// One morpheme record inside a dictionary image.
#ifndef TAVO_DIC_MRPH_DIC_HPP
#define TAVO_DIC_MRPH_DIC_HPP

#include "base/bytes.hpp"

#include <cstdint>
#include <string_view>
#include <vector>

namespace TAVO {

/// A view of a record by the address of its 8-byte head (docs/format-dictionary.md).
///
/// Precondition: the sizeBytes() bytes from head() on are readable; whoever finds
/// a record in an image has checked that (DicTrie's chain walk does). Inside the
/// record every accessor is bounded by sizeBytes(), so a corrupt body yields
/// empty values and never a read outside.
/// Text accessors return C strings that stand in the image, "" when absent.
class MrphDic {
public:
    static constexpr std::uint32_t kHeadBytes = 8;
    static constexpr std::uint32_t kMaxBytes = 65535;
    // Flags A.
    static constexpr unsigned kLeftMark = 0x01, kRightMark = 0x02, kGroup = 0x04, kGroupCooc = 0x08, kWordCooc = 0x10,
                              kCompound = 0x20, kStdForm = 0x40, kReadPron = 0x80;
    // Flags B.
    static constexpr unsigned kAnotherFollows = 0x01, kCat1 = 0x02, kCat2 = 0x04, kCat3 = 0x08, kProsodicInfo = 0x10;

    explicit MrphDic(unsigned char const* head) noexcept : head_(head) {}

    unsigned char const* head() const noexcept { return head_; }
    std::uint32_t sizeBytes() const noexcept { return loadU16(head_); }
    std::uint16_t pid() const noexcept { return loadU16(head_ + 2); }
    std::uint8_t cost() const noexcept { return head_[4]; }
    unsigned flagsA() const noexcept { return head_[6]; }
    unsigned flagsB() const noexcept { return head_[7]; }
    /// True when the record holds nothing but its head and is no compound.
    bool isBare() const noexcept { return sizeBytes() <= kHeadBytes; }
    bool anotherFollows() const noexcept { return (head_[7] & kAnotherFollows) != 0; }
    /// True when the word looks for others that it occurs with.
    bool hasCoocMarks() const noexcept { return (flagsA() & (kLeftMark | kRightMark)) != 0; }

    /// Number of parts, at least 1.
    unsigned partCount() const noexcept;
    /// Part-of-speech id of part @p index (< partCount()).
    std::uint16_t partPid(unsigned index) const noexcept;
    /// The parts' forms as the source wrote them: separated by "-" or "/",
    /// escapes kept. "" for a simple word.
    char const* partForm() const noexcept;
    char const* readPron() const noexcept;
    char const* stdForm() const noexcept;
    char const* wordCooc() const noexcept;
    char const* groupCooc() const noexcept;
    char const* group() const noexcept;
    /// Category list @p list (1..3).
    std::vector<unsigned short> category(unsigned list) const;
    char const* prosodicInfo() const noexcept;
    /// The extension fields, in order.
    std::vector<char const*> ext() const;

private:
    unsigned char const* head_;
};

}  // namespace TAVO

#endif
