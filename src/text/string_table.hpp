// Distinct texts by number.
#ifndef TAVO_TEXT_STRING_TABLE_HPP
#define TAVO_TEXT_STRING_TABLE_HPP

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace TAVO {

/// Equal texts have equal numbers; 0 is the empty text. Views that it gives live until clear().
class StringTable {
public:
    StringTable() { clear(); }

    void clear();
    /// The number of @p text. Throws bad_alloc.
    std::uint32_t add(std::string_view text);
    std::string_view text(std::uint32_t number) const noexcept { return texts_[number]; }
    std::size_t size() const noexcept { return texts_.size(); }
    std::size_t bytes() const noexcept { return bytes_; }

    /// All texts one behind the other, and where each begins, with the end of the last. They live until the next
    /// call and take the time of the texts that are new since the last one.
    struct Flat {
        char const* bytes;
        std::uint32_t const* offsets;
    };
    Flat flat();

private:
    static constexpr std::size_t kChunkBytes = 65536;

    void grow();

    std::vector<std::string_view> texts_;
    std::vector<std::uint32_t> hashes_;  // by number
    std::vector<std::uint32_t> slots_;   // number + 1; a power of two of them, never more than half full
    std::vector<std::unique_ptr<char[]>> chunks_;
    char* free_ = nullptr;
    std::size_t freeBytes_ = 0;
    std::size_t bytes_ = 0;
    std::vector<char> flatBytes_;
    std::vector<std::uint32_t> flatOffsets_;
};

}  // namespace TAVO

#endif
