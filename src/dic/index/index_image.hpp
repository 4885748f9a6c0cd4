// The container of both search indexes: a file of sections, mapped, or the same bytes in memory.
#ifndef TAVO_DIC_INDEX_INDEX_IMAGE_HPP
#define TAVO_DIC_INDEX_INDEX_IMAGE_HPP

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace TAVO {

/// What an index was made from: the sizes in bytes and the content stamps of the two files.
struct IndexOrigin {
    std::uint64_t dicBytes = 0, dicStamp = 0;  ///< 0 in the index of a connection table
    std::uint64_t tableBytes = 0, tableStamp = 0;

    bool operator==(IndexOrigin const&) const = default;
};

/// docs/format-search-index.md tells the layout. Sections are arrays of little-endian integers that are used in place,
/// so that a machine of another byte order takes no file and makes its indexes in memory.
class IndexImage {
public:
    static constexpr std::size_t kMagicBytes = 8;
    static constexpr std::size_t kAlignment = 64;
    static constexpr std::size_t kMostSections = 10;

    IndexImage() = default;
    IndexImage(IndexImage&& other) noexcept { swap(other); }
    IndexImage& operator=(IndexImage&& other) noexcept {
        swap(other);
        return *this;
    }
    ~IndexImage();

    /// Maps the file; empty when it cannot be read, or when header or section table are not sound.
    static IndexImage map(std::string const& path, std::string_view magic);
    /// The bytes that IndexWriter made.
    static IndexImage own(std::vector<std::uint64_t>&& bytes, std::string_view magic);

    /// The same bytes of the caller's, which must stay; copied where they are not aligned to 8 bytes.
    static IndexImage view(std::span<unsigned char const> bytes, std::string_view magic);

    explicit operator bool() const noexcept { return bytes_ != nullptr; }
    IndexOrigin const& origin() const noexcept { return origin_; }
    std::span<unsigned char const> bytes() const noexcept { return {bytes_, sizeBytes_}; }
    /// True when the bytes are those of a file.
    bool isMapped() const noexcept { return mapped_; }
    /// Section @p number as values; empty when it is absent or holds no whole number of them.
    template <class T>
    std::span<T const> section(std::size_t number) const noexcept {
        static_assert(std::is_unsigned_v<T>);
        std::span<unsigned char const> const found = sections_[number];
        if (found.size() % sizeof(T) != 0) return {};
        return {reinterpret_cast<T const*>(found.data()), found.size() / sizeof(T)};
    }

private:
    void swap(IndexImage& other) noexcept;
    bool read(std::string_view magic);

    unsigned char const* bytes_ = nullptr;
    std::size_t sizeBytes_ = 0;
    bool mapped_ = false;
    std::vector<std::uint64_t> owned_;
    IndexOrigin origin_;
    std::array<std::span<unsigned char const>, kMostSections> sections_{};
};

/// Lays the sections of an index out.
class IndexWriter {
public:
    IndexWriter(std::string_view magic, IndexOrigin const& origin) : magic_(magic), origin_(origin) {}

    /// Adds the next section.
    template <class T>
    void add(std::vector<T> const& values) {
        static_assert(std::is_unsigned_v<T>);
        sections_.emplace_back(reinterpret_cast<char const*>(values.data()), values.size() * sizeof(T));
    }
    /// The bytes of the whole index, the sections' being copied.
    std::vector<std::uint64_t> write() const;

private:
    std::string_view magic_;
    IndexOrigin origin_;
    std::vector<std::string_view> sections_;
};

}  // namespace TAVO

#endif
