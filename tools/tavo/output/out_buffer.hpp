// A growing byte buffer that output is collected in.
#ifndef TAVO_TOOL_OUT_BUFFER_HPP
#define TAVO_TOOL_OUT_BUFFER_HPP

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace tool {

/// Cheaper than a string to append short pieces to: whoever knows how much is
/// coming reserves once and writes through a pointer.
class OutBuffer {
public:
    std::string_view view() const noexcept { return {data_.get(), size_}; }
    std::size_t size() const noexcept { return size_; }
    void clear() noexcept { size_ = 0; }

    /// Makes room for @p n bytes; returns where they go. finish() tells the end.
    char* reserve(std::size_t n) {
        if (capacity_ - size_ < n) grow(n);
        return data_.get() + size_;
    }
    void finish(char const* end) noexcept { size_ = static_cast<std::size_t>(end - data_.get()); }

    void append(std::string_view text) {
        char* const to = reserve(text.size());
        if (!text.empty()) std::memcpy(to, text.data(), text.size());
        size_ += text.size();
    }
    void append(char c) {
        *reserve(1) = c;
        ++size_;
    }
    void appendBlanks(std::size_t n) {
        std::memset(reserve(n), ' ', n);
        size_ += n;
    }

private:
    void grow(std::size_t n) {
        std::size_t const capacity = std::max(size_ + n, capacity_ * 2 + 4096);
        auto bigger = std::make_unique_for_overwrite<char[]>(capacity);
        if (size_ != 0) std::memcpy(bigger.get(), data_.get(), size_);
        data_ = std::move(bigger);
        capacity_ = capacity;
    }

    std::unique_ptr<char[]> data_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace tool

#endif
