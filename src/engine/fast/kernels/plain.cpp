// Plain C++, for every machine.
#include "engine/fast/kernels/kernels.hpp"
#include "engine/fast/kernels/relax_words.hpp"

namespace TAVO {
namespace {

struct PlainEight {
    std::array<std::uint16_t, 8> sums;

    static PlainEight after(unsigned char const* row, std::uint16_t const* columns,
                            std::uint16_t const* sums) noexcept {
        PlainEight eight;
        for (std::size_t i = 0; i != 8; ++i) {
            unsigned const cost = row[columns[i]];
            unsigned const sum = cost == 255 ? unsigned{Relaxation::kNoSum} : sums[i] + cost;
            eight.sums[i] = static_cast<std::uint16_t>(std::min<unsigned>(sum, Relaxation::kNoSum));
        }
        return eight;
    }
    static PlainEight of(std::uint16_t const* from) noexcept {
        PlainEight eight;
        std::copy_n(from, 8, eight.sums.begin());
        return eight;
    }
    static PlainEight least(PlainEight const& a, PlainEight const& b) noexcept {
        PlainEight eight;
        for (std::size_t i = 0; i != 8; ++i) eight.sums[i] = std::min(a.sums[i], b.sums[i]);
        return eight;
    }
    unsigned minimum() const noexcept { return *std::min_element(sums.begin(), sums.end()); }
    unsigned equal(unsigned value) const noexcept {
        unsigned bits = 0;
        for (unsigned i = 0; i != 8; ++i) bits |= unsigned{sums[i] == value} << i;
        return bits;
    }
    void store(std::uint16_t* to) const noexcept { std::copy(sums.begin(), sums.end(), to); }
};

}  // namespace

void relaxPlain(Relaxation const& block, std::size_t begin, std::size_t end) {
    relaxWords<PlainEight>(block, begin, end);
}
std::size_t passPlain(Relaxation const& block, std::span<Look const> looks, std::size_t first, Look* left) {
    return passLooks<PlainEight>(block, looks, first, left);
}

}  // namespace TAVO
