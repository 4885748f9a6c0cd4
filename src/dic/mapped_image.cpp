#include "dic/mapped_image.hpp"

#include <tavo/error.hpp>

#include "base/bad_allocation.hpp"
#include "dic/file_access.hpp"

#include <limits>
#include <stdexcept>
#include <utility>

namespace TAVO {
namespace {

constexpr std::int64_t kMostBytes = std::numeric_limits<std::uint32_t>::max();

}  // namespace

MappedImage::MappedImage(bool memoryMapped, char const* path)
    : path_(path != nullptr ? path : throw std::invalid_argument("INVALID_ARGUMENT: Dic::Dic()")),
      memoryMapped_(memoryMapped) {
    measure(path_);
    if (memoryMapped_) {
        map(path_);
    } else {
        read();
    }
}

MappedImage::MappedImage(std::span<unsigned char const> bytes, std::string name)
    : image_(bytes.data()), path_(std::move(name)), length_(bytes.size()), memoryMapped_(false) {
    if (bytes.empty() || bytes.size() > static_cast<std::size_t>(kMostBytes)) throw illegal_format(path_);
}

MappedImage::~MappedImage() { release(); }

void MappedImage::release() noexcept {
    if (!memoryMapped_ || image_ == nullptr) return;
    Munmap(image_);
    MmapClose(descriptor_);
    image_ = nullptr;
    descriptor_ = -1;
}

void MappedImage::takeBack() {
    if (!memoryMapped_ || image_ != nullptr) return;
    std::string const notFoundText = "FILE_NOT_OPEN:" + path_;
    measure(notFoundText);
    map(notFoundText);
}

void MappedImage::measure(std::string const& notFoundText) {
    std::int64_t const length = FileLength(path_.c_str());
    if (length < 0) throw file_not_found(notFoundText);
    if (length == 0 || length > kMostBytes) throw illegal_format(path_);
    length_ = static_cast<std::size_t>(length);
}

void MappedImage::map(std::string const& notFoundText) {
    descriptor_ = MmapOpen(path_.c_str(), 0, 0);
    if (descriptor_ == -1) throw file_not_found(notFoundText);
    if (descriptor_ == -2) throw std::runtime_error("OVERFLOW_MMAP_DESCRIPTOR:");
    if (descriptor_ < 0) throw std::runtime_error("ILLEGAL_FILE_DESCRIPTOR:" + std::to_string(descriptor_));
    void* const view = Mmap(nullptr, length_, kMapRead, 1, descriptor_);
    if (view == mmapFailed()) {
        FileClose(descriptor_);
        descriptor_ = -1;
        throw BadAllocation();
    }
    image_ = static_cast<unsigned char const*>(view);
    // Of the file that was mapped: the path may have got another since it was measured.
    length_ = MmapLength(view);
    if (length_ > static_cast<std::size_t>(kMostBytes)) {
        release();
        throw illegal_format(path_);
    }
}

void MappedImage::read() {
    int const handle = FileOpenExclusive(path_.c_str());
    if (handle < 0) throw file_not_found(path_);
    std::int64_t got = -1;
    unsigned char more;
    try {
        block_.reset(new unsigned char[length_]);
        got = FileRead(handle, block_.get(), length_);
        // Longer than measured: another file got the path meanwhile.
        if (FileRead(handle, &more, 1) != 0) got = -1;
    } catch (std::bad_alloc const&) {
        FileClose(handle);
        throw BadAllocation();
    }
    FileClose(handle);
    if (got != static_cast<std::int64_t>(length_)) throw illegal_format(path_);
    image_ = block_.get();
}

}  // namespace TAVO
