// The bytes of a whole file in memory: read into a heap block or mapped.
#ifndef TAVO_DIC_MAPPED_IMAGE_HPP
#define TAVO_DIC_MAPPED_IMAGE_HPP

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace TAVO {

/// Owns its block, or its view and descriptor. Loading, releasing and taking
/// back happen under the process-wide lock.
class MappedImage {
public:
    /// Loads @p path. Throws invalid_argument for null ("INVALID_ARGUMENT:
    /// Dic::Dic()"), file_not_found, illegal_format (short read, empty file),
    /// runtime_error ("OVERFLOW_MMAP_DESCRIPTOR:", "ILLEGAL_FILE_DESCRIPTOR:"),
    /// bad_alloc.
    MappedImage(bool memoryMapped, char const* path);
    /// The caller's @p bytes, which stay as long as this object; @p name stands for the path.
    MappedImage(std::span<unsigned char const> bytes, std::string name);
    ~MappedImage();
    MappedImage(MappedImage const&) = delete;
    MappedImage& operator=(MappedImage const&) = delete;

    /// Null while released.
    unsigned char const* data() const noexcept { return image_; }
    std::size_t sizeBytes() const noexcept { return length_; }
    std::string const& path() const noexcept { return path_; }
    bool memoryMapped() const noexcept { return memoryMapped_; }

    /// Gives a mapping up; a heap block is not touched.
    void release() noexcept;
    /// Maps the path again (its length is measured anew).
    void takeBack();

private:
    void measure(std::string const& notFoundText);
    void map(std::string const& notFoundText);
    void read();

    unsigned char const* image_ = nullptr;
    std::string path_;
    std::size_t length_ = 0;
    bool memoryMapped_;
    std::int32_t descriptor_ = -1;
    std::unique_ptr<unsigned char[]> block_;
};

}  // namespace TAVO

#endif
