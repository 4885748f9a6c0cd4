// Bytes in front of a page that cannot be read: a read behind them ends the test.
#ifndef TAVO_TESTS_GUARDED_BYTES_HPP
#define TAVO_TESTS_GUARDED_BYTES_HPP

#include <cstddef>
#include <string_view>

namespace TAVO::test {

class GuardedBytes {
public:
    explicit GuardedBytes(std::string_view bytes);
    ~GuardedBytes();
    GuardedBytes(GuardedBytes const&) = delete;
    GuardedBytes& operator=(GuardedBytes const&) = delete;

    unsigned char* data() const noexcept { return end_ - size_; }
    std::size_t size() const noexcept { return size_; }
    std::string_view view() const noexcept { return {reinterpret_cast<char const*>(data()), size_}; }

private:
    std::size_t size_;
    std::size_t mapped_;
    unsigned char* pages_;
    unsigned char* end_;
};

}  // namespace TAVO::test

#endif
