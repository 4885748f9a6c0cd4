// Zero-terminated texts in one block, and which records have theirs in it.
#ifndef TAVO_API_STRING_BLOCK_HPP
#define TAVO_API_STRING_BLOCK_HPP

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::api {

/// Offset 0 is the empty text.
class StringBlock {
public:
    explicit StringBlock(std::size_t limitBytes = UINT32_MAX) : limitBytes_(limitBytes) { clear(); }

    void clear() { bytes_.assign(1, '\0'); }
    /// The offset of a new text; up to its first zero byte it reads as given.
    /// Throws length_error when the block would grow beyond its limit.
    std::uint32_t add(std::string_view text);

    char const* data() const noexcept { return bytes_.data(); }
    std::size_t size() const noexcept { return bytes_.size(); }

private:
    std::size_t limitBytes_;
    std::string bytes_;
};

/// Where the texts of dictionary records stand in a block, by the record's
/// address: @p width offsets a record.
class RecordTexts {
public:
    void clear(std::size_t width);
    /// The record's offsets; null when it has none yet.
    std::uint32_t const* find(unsigned char const* record) const noexcept;
    void add(unsigned char const* record, std::uint32_t const* offsets);

private:
    struct Slot {
        unsigned char const* record = nullptr;
        std::uint32_t index = 0;
    };
    std::size_t place(unsigned char const* record) const noexcept;
    void grow();

    std::size_t width_ = 0;
    std::size_t count_ = 0;
    std::vector<Slot> slots_;  // a power of two, never more than half full
    std::vector<std::uint32_t> offsets_;
};

}  // namespace TAVO::api

#endif
