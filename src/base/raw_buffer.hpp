// A growing array of plain values that keeps its memory.
#ifndef TAVO_BASE_RAW_BUFFER_HPP
#define TAVO_BASE_RAW_BUFFER_HPP

#include "base/bad_allocation.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

namespace TAVO {

/// Like a vector of trivial values, but new values are not initialised, and large
/// arrays grow in place where the system can remap pages. Growing throws
/// bad_alloc and leaves the array as it was.
template <class T>
class RawBuffer {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    RawBuffer() = default;
    RawBuffer(RawBuffer const&) = delete;
    RawBuffer& operator=(RawBuffer const&) = delete;
    RawBuffer(RawBuffer&& other) noexcept { swap(other); }
    RawBuffer& operator=(RawBuffer&& other) noexcept {
        swap(other);
        return *this;
    }
    ~RawBuffer() { std::free(data_); }

    std::size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }
    T* begin() noexcept { return data_; }
    T* end() noexcept { return data_ + size_; }
    T const* begin() const noexcept { return data_; }
    T const* end() const noexcept { return data_ + size_; }
    T& operator[](std::size_t index) noexcept { return data_[index]; }
    T const& operator[](std::size_t index) const noexcept { return data_[index]; }

    void clear() noexcept { size_ = 0; }
    /// Cuts to @p size values, which is at most size().
    void truncate(std::size_t size) noexcept { size_ = size; }
    /// @p size values with whatever was in the memory.
    void resizeForOverwrite(std::size_t size) {
        reserve(size);
        size_ = size;
    }
    /// @p size values of zero bytes. Those never used take no memory.
    void resetToZeros(std::size_t size) {
        static_assert(alignof(T) <= alignof(std::max_align_t));
        shrink(0);
        data_ = static_cast<T*>(std::calloc(size, sizeof(T)));
        if (data_ == nullptr && size != 0) throw BadAllocation();
        size_ = capacity_ = size;
    }
    void reserve(std::size_t capacity) {
        if (capacity > capacity_) grow(capacity);
    }
    void push(T const& value) {
        if (size_ == capacity_) {
            T const copy = value;  // may stand in the array
            grow(size_ + 1);
            data_[size_++] = copy;
            return;
        }
        data_[size_++] = value;
    }
    /// Room for one value more, to be filled in.
    T& extend() {
        if (size_ == capacity_) grow(size_ + 1);
        return data_[size_++];
    }
    /// Gives memory beyond @p capacity values back; the array is cleared when it has more.
    void shrink(std::size_t capacity) noexcept {
        if (capacity_ <= capacity) return;
        std::free(data_);
        data_ = nullptr;
        size_ = capacity_ = 0;
    }

    void swap(RawBuffer& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

private:
    void grow(std::size_t least) {
        constexpr std::size_t kFirst = 64;
        constexpr std::size_t kMost = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(T);
        if (least > kMost) throw BadAllocation();
        std::size_t const capacity = std::min(kMost, std::max({least, capacity_ + capacity_ / 2, kFirst}));
        data_ = static_cast<T*>(moveTo(capacity * sizeof(T)));
        capacity_ = capacity;
    }
    /// All values in memory of @p sizeBytes, which is theirs then.
    void* moveTo(std::size_t sizeBytes) {
        constexpr bool kOrdinary = alignof(T) <= alignof(std::max_align_t);  // else realloc() would not align them
        void* const moved = kOrdinary ? std::realloc(data_, sizeBytes) : std::aligned_alloc(alignof(T), sizeBytes);
        if (moved == nullptr) throw BadAllocation();
        if (kOrdinary) return moved;
        if (size_ != 0) std::memcpy(moved, data_, size_ * sizeof(T));
        std::free(data_);
        return moved;
    }

    T* data_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace TAVO

#endif
