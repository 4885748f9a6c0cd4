// Values drawn from the bytes of a fuzz input.
#ifndef TAVO_TESTS_FUZZ_INPUT_HPP
#define TAVO_TESTS_FUZZ_INPUT_HPP

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace TAVO::test {

class FuzzInput {
public:
    FuzzInput(std::uint8_t const* data, std::size_t size) : bytes_(reinterpret_cast<char const*>(data), size) {}

    bool empty() const noexcept { return bytes_.empty(); }
    /// 0 when the input is used up.
    unsigned byte() {
        if (empty()) return 0;
        auto const value = static_cast<unsigned char>(bytes_.front());
        bytes_.remove_prefix(1);
        return value;
    }
    /// 0 to count - 1.
    std::size_t choice(std::size_t count) { return byte() % count; }
    /// Mostly small, now and then at the ends of the range.
    int number() {
        unsigned const value = byte();
        if (value == 255) return INT32_MAX;
        if (value == 254) return INT32_MIN;
        return static_cast<int>(value % 12) - 2;
    }
    /// Up to 63 bytes of the input itself.
    std::string bytes() {
        std::string const text(bytes_.substr(0, byte() % 64));
        bytes_.remove_prefix(text.size() < bytes_.size() ? text.size() : bytes_.size());
        return text;
    }
    /// What is left, all of it.
    std::string rest() {
        std::string text(bytes_);
        bytes_ = {};
        return text;
    }

private:
    std::string_view bytes_;
};

}  // namespace TAVO::test

#endif
