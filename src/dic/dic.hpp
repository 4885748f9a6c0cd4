// A loaded compiled dictionary.
#ifndef TAVO_DIC_DIC_HPP
#define TAVO_DIC_DIC_HPP

#include "base/serial.hpp"
#include "dic/dic_trie.hpp"
#include "dic/mapped_image.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace TAVO {

/// Immutable once built and shared by analysers; lookups may run from any
/// number of threads. Creation and destruction happen under the process-wide
/// lock. Only a rebuild disturbs it, through release() and takeBack().
class Dic {
public:
    static constexpr std::size_t kHeaderBytes = 16;  // behind it the flags of the names
    static constexpr unsigned kVersion = 2;
    static constexpr unsigned kShiftJis = 1;  // char type

    /// Loads @p path; a file that is too short or has inconsistent offsets gives
    /// a dictionary without header or trie that finds nothing. Throws
    /// invalid_argument "INVALID_ARGUMENT: Dic::Dic()" for null, file_not_found,
    /// illegal_format, invalid_dictionary_version, invalid_dictionary_char_type.
    Dic(bool memoryMapped, char const* path);
    /// The same from a file's @p bytes, which must stay; @p name stands for the path.
    Dic(std::span<unsigned char const> bytes, std::string name);

    /// Differs from that of every other table and dictionary, and changes with release() and takeBack().
    std::uint64_t serial() const noexcept { return serial_; }
    bool hasHeader() const noexcept { return header_ != nullptr; }
    /// Null without header.
    DicTrie const* trie() const noexcept { return trie_.get(); }
    std::string const& path() const noexcept { return image_.path(); }
    bool memoryMapped() const noexcept { return image_.memoryMapped(); }
    /// The whole file; empty while released.
    std::span<unsigned char const> bytes() const noexcept {
        return {image_.data(), image_.data() != nullptr ? image_.sizeBytes() : 0};
    }
    unsigned charType() const noexcept;
    std::uint32_t nameStamp() const noexcept;
    std::uint16_t nameCount() const noexcept;
    /// Name of part-of-speech id; "" for 0, above nameCount(), or a name that is
    /// not terminated inside the pool.
    char const* getPartOfSPName(std::uint32_t id) const noexcept;
    /// True when a word looks for others that it occurs with. The first call reads all words.
    bool hasCoocMarks() const;
    /// True when @p record lies inside the image.
    bool contains(unsigned char const* record) const noexcept;

    /// Gives the mapping up so that the file can be moved; has no trie until
    /// takeBack(), which maps the path again and derives everything anew. What was
    /// read before is gone: caches of it tell that by the serial.
    void release();
    void takeBack();

private:
    enum class Marks : unsigned char { Unread, None, Some };

    void derive();

    std::uint64_t serial_ = 0;
    // Null without header, else inside the image.
    unsigned char const* header_ = nullptr;
    unsigned char const* nameOffsets_ = nullptr;
    unsigned char const* namePool_ = nullptr;
    std::size_t namePoolBytes_ = 0;
    std::unique_ptr<DicTrie> trie_;
    MappedImage image_;
    mutable std::atomic<Marks> marks_ = Marks::Unread;
};

}  // namespace TAVO

#endif
