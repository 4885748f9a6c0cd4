#include "dic/index/index_image.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include "base/bytes.hpp"
#include "dic/file_access.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace TAVO {
namespace {

// Magic, number of sections, four bytes of 0, size of all, origin; then offset and size of each section.
constexpr std::size_t kCountAt = IndexImage::kMagicBytes;
constexpr std::size_t kSizeAt = kCountAt + 8;
constexpr std::size_t kOriginAt = kSizeAt + 8;
constexpr std::size_t kTableAt = kOriginAt + 32;
constexpr std::size_t kEntryBytes = 16;

std::size_t aligned(std::size_t position) noexcept {
    return (position + IndexImage::kAlignment - 1) / IndexImage::kAlignment * IndexImage::kAlignment;
}

}  // namespace

IndexImage::~IndexImage() {
    if (mapped_) ::munmap(const_cast<unsigned char*>(bytes_), sizeBytes_);
}

void IndexImage::swap(IndexImage& other) noexcept {
    std::swap(bytes_, other.bytes_);
    std::swap(sizeBytes_, other.sizeBytes_);
    std::swap(mapped_, other.mapped_);
    std::swap(owned_, other.owned_);
    std::swap(origin_, other.origin_);
    std::swap(sections_, other.sections_);
}

IndexImage IndexImage::map(std::string const& path, std::string_view magic) {
    IndexImage image;
    if (std::endian::native != std::endian::little) return image;
    int const handle = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (handle < 0) return image;
    struct stat status {};
    if (::fstat(handle, &status) == 0 && S_ISREG(status.st_mode) && status.st_size >= static_cast<off_t>(kTableAt)) {
        image.sizeBytes_ = static_cast<std::size_t>(status.st_size);
        void* const view = ::mmap(nullptr, image.sizeBytes_, PROT_READ, MAP_SHARED, handle, 0);
        if (view != MAP_FAILED) {
            image.bytes_ = static_cast<unsigned char const*>(view);
            image.mapped_ = true;
        }
    }
    FileClose(handle);
    return image.mapped_ && image.read(magic) ? std::move(image) : IndexImage();
}

IndexImage IndexImage::own(std::vector<std::uint64_t>&& bytes, std::string_view magic) {
    IndexImage image;
    image.owned_ = std::move(bytes);
    image.bytes_ = reinterpret_cast<unsigned char const*>(image.owned_.data());
    image.sizeBytes_ = image.owned_.size() * sizeof(std::uint64_t);
    return image.read(magic) ? std::move(image) : IndexImage();
}

IndexImage IndexImage::view(std::span<unsigned char const> bytes, std::string_view magic) {
    if (std::endian::native != std::endian::little) return {};
    if (reinterpret_cast<std::uintptr_t>(bytes.data()) % sizeof(std::uint64_t) != 0) {
        if (bytes.size() % sizeof(std::uint64_t) != 0) return {};
        std::vector<std::uint64_t> copy(bytes.size() / sizeof(std::uint64_t));
        std::memcpy(copy.data(), bytes.data(), bytes.size());
        return own(std::move(copy), magic);
    }
    IndexImage image;
    image.bytes_ = bytes.data();
    image.sizeBytes_ = bytes.size();
    return image.read(magic) ? std::move(image) : IndexImage();
}

bool IndexImage::read(std::string_view magic) {
    if (sizeBytes_ < kTableAt || std::memcmp(bytes_, magic.data(), kMagicBytes) != 0) return false;
    std::size_t const count = loadU32(bytes_ + kCountAt);
    if (loadU64(bytes_ + kSizeAt) != sizeBytes_ || count > kMostSections || kTableAt + count * kEntryBytes > sizeBytes_)
        return false;
    origin_ = {loadU64(bytes_ + kOriginAt), loadU64(bytes_ + kOriginAt + 8), loadU64(bytes_ + kOriginAt + 16),
               loadU64(bytes_ + kOriginAt + 24)};
    for (std::size_t i = 0; i < count; ++i) {
        std::uint64_t const offset = loadU64(bytes_ + kTableAt + i * kEntryBytes);
        std::uint64_t const size = loadU64(bytes_ + kTableAt + i * kEntryBytes + 8);
        if (offset % kAlignment != 0 || offset > sizeBytes_ || size > sizeBytes_ - offset) return false;
        sections_[i] = {bytes_ + offset, static_cast<std::size_t>(size)};
    }
    return true;
}

std::vector<std::uint64_t> IndexWriter::write() const {
    std::vector<std::size_t> offsets;
    std::size_t end = aligned(kTableAt + sections_.size() * kEntryBytes);
    for (std::string_view const section : sections_) {
        offsets.push_back(end);
        end = aligned(end + section.size());
    }
    std::string head(magic_);
    appendU32(head, static_cast<std::uint32_t>(sections_.size()));
    appendU32(head, 0);
    for (std::uint64_t const value :
         {std::uint64_t{end}, origin_.dicBytes, origin_.dicStamp, origin_.tableBytes, origin_.tableStamp})
        appendU64(head, value);
    for (std::size_t i = 0; i < sections_.size(); ++i) {
        appendU64(head, offsets[i]);
        appendU64(head, sections_[i].size());
    }
    std::vector<std::uint64_t> bytes(end / sizeof(std::uint64_t));
    auto* const to = reinterpret_cast<char*>(bytes.data());
    std::copy(head.begin(), head.end(), to);
    for (std::size_t i = 0; i < sections_.size(); ++i)
        if (!sections_[i].empty()) std::memcpy(to + offsets[i], sections_[i].data(), sections_[i].size());
    return bytes;
}

}  // namespace TAVO
