// The choice of continuations with registers of 512 bits, where the processor has them.
#include "engine/best_path_search.hpp"

#ifdef __x86_64__
#include "engine/best_path_steps.hpp"

#include <algorithm>
#include <array>
#include <bit>

// GCC 12 warns falsely about its own header (GCC bug 105593).
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif
#include <immintrin.h>

// Of every function here: a caller with other registers could not take it in.
#define TAVO_WIDE gnu::target("avx512f,avx512bw,avx512dq,avx512vl,avx512vbmi,bmi2")

namespace TAVO {
namespace {

// Eight packed sums are a register. A word's connection costs are added to those of its followers at once: the cache
// lines of its row that hold them are loaded whole (CostLines), and one instruction picks eight bytes out of two lines
// and puts each where a packed sum has its connection sum.

using Sums = __m512i;
/// Where a packed sum has the lower byte of its connection sum, in all of a register.
constexpr __mmask64 kCostBytes = 0x4040404040404040;
static_assert(kSumShift == 48);

[[TAVO_WIDE, gnu::always_inline]] inline Sums broadcast(std::uint64_t value) {
    return _mm512_set1_epi64(static_cast<long long>(value));
}

/// CostLines' places of eight words, each where the byte goes.
[[TAVO_WIDE, gnu::always_inline]] inline Sums placesOf(CostLines::Places const& places) {
    return _mm512_slli_epi64(_mm512_cvtepu8_epi64(_mm_loadl_epi64(reinterpret_cast<__m128i const*>(places.data()))),
                             kSumShift);
}

/// The sums behind a row, for up to 8 * kEights followers whose costs lie in up to 2 * kPairs lines; of those eight
/// words apart the lesser ones. @p head is their bundle's.
template <std::size_t kPairs, std::size_t kEights>
struct Behind {
    [[TAVO_WIDE, gnu::always_inline]] Behind(BundleCell const* head, std::uint64_t const* packed, std::size_t count,
                                             unsigned char const* matrix, Sums dead) {
        for (std::size_t i = 0; i != 2 * kPairs; ++i) {
            BundleCell const* const numbers = head - (i < 4 ? BundleCell::kLines : BundleCell::kSecondLines);
            lines[i] = matrix + std::size_t{numbers->lines[i % 4]} * ConnTable::kLineBytes;
        }
        for (std::size_t eight = 0; eight != kEights; ++eight) {
            places[eight] = placesOf((head - (eight == 0 ? BundleCell::kPlaces : BundleCell::kSecondPlaces))->places);
            sums[eight] = eight == 0 || count > 8 ? _mm512_load_si512(packed + 8 * eight) : dead;
        }
        for (std::size_t pair = 0; pair != kPairs; ++pair)
            for (std::size_t eight = 0; eight != kEights; ++eight)
                members[pair][eight] =
                    kPairs == 1 ? kCostBytes
                                : _pdep_u64((head - BundleCell::kMembers)->members[2 * pair + eight], kCostBytes);
    }

    [[TAVO_WIDE, gnu::always_inline]] Sums operator()(std::uint32_t row) const {
        Sums costs[kEights];
        for (std::size_t pair = 0; pair != kPairs; ++pair) {
            Sums const first = _mm512_load_si512(lines[2 * pair] + row);
            Sums const second = _mm512_load_si512(lines[2 * pair + 1] + row);
            for (std::size_t eight = 0; eight != kEights; ++eight) {
                Sums const some = _mm512_maskz_permutex2var_epi8(members[pair][eight], first, places[eight], second);
                costs[eight] = pair == 0 ? some : _mm512_or_si512(costs[eight], some);
            }
        }
        Sums least = _mm512_add_epi64(sums[0], costs[0]);
        for (std::size_t eight = 1; eight != kEights; ++eight)
            least = _mm512_min_epu64(least, _mm512_add_epi64(sums[eight], costs[eight]));
        return least;
    }

    unsigned char const* lines[2 * kPairs];
    Sums places[kEights];
    Sums sums[kEights];
    __mmask64 members[kPairs][kEights];
};
using NarrowFollowers = Behind<1, 1>;
using WideFollowers = Behind<2, 2>;
using ScatteredFollowers = Behind<4, 2>;

/// The least of @p sums, eight times.
[[TAVO_WIDE, gnu::always_inline]] inline Sums leastOf(Sums sums) {
    sums = _mm512_min_epu64(sums, _mm512_shuffle_i64x2(sums, sums, 0x4E));
    sums = _mm512_min_epu64(sums, _mm512_shuffle_i64x2(sums, sums, 0xB1));
    return _mm512_min_epu64(sums, _mm512_shuffle_epi32(sums, static_cast<_MM_PERM_ENUM>(0x4E)));
}

}  // namespace

/// Values that a loop keeps in registers; the compiler would rather make them anew each time.
struct BestPathSearch::WideConstants {
    Sums dead = _mm512_set1_epi64(static_cast<long long>(kDeadEnd));
    Sums numberMask = _mm512_set1_epi64(kNumberMask);
    Sums wordCostMask = _mm512_set1_epi64(0xFF << kWordShift);
    Sums boundedBit = _mm512_set1_epi64(1LL << 56);
    Sums numbers = _mm512_setr_epi64(0, 1, 2, 3, 4, 5, 6, 7);

    [[TAVO_WIDE]] WideConstants() {
        asm("" : "+v"(dead), "+v"(numberMask), "+v"(wordCostMask), "+v"(boundedBit), "+v"(numbers));
    }
};

/// What is chosen at one place, eight words at a time.
struct BestPathSearch::WideChoice {
    BestPathSearch& search;
    std::size_t p;
    WideConstants const& constants;
    std::uint64_t* packed;
    Next* next;
    BundleCell const* words;
    Sums best;          ///< the best continuations of the words at work
    Sums sure;          ///< Bound::sure where they end
    Sums lowest;        ///< of the words chosen so far
    Sums needlessFrom;  ///< of a bounded word, BestPathSearch::needlessFrom()
    unsigned needless = 0;
    std::size_t first = 0;  ///< number of the first word at work
    unsigned lane = 1;      ///< of the words at work

    [[TAVO_WIDE]] void take(std::size_t number, Sums one, Sums sureBelow);
    template <class Some>
    [[TAVO_WIDE]] void takeAll(Some const& behind, std::size_t number, std::size_t after, Sums sureBelow);
    [[TAVO_WIDE]] bool takeBefore(Place const& end, std::size_t number, std::size_t after, Sums sureBelow);
    [[TAVO_WIDE]] void note();
};

bool BestPathSearch::isWide() noexcept {
    static bool const wide = __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512bw") != 0 &&
                             __builtin_cpu_supports("avx512dq") != 0 && __builtin_cpu_supports("avx512vl") != 0 &&
                             __builtin_cpu_supports("avx512vbmi") != 0 && __builtin_cpu_supports("bmi2") != 0;
    return wide;
}

/// Chooses again for the words of @p place, which is at @p p, of whose best continuations some may be forbidden.
[[gnu::cold, gnu::noinline]] void BestPathSearch::chooseUnsure(std::size_t p, std::size_t first, unsigned unsure,
                                                               std::uint64_t* best) {
    Place const& place = places_[p];
    BundleCell const* const words = cache_.cells() + place.words;
    for (; unsure != 0; unsure &= unsure - 1) {
        auto const i = static_cast<std::size_t>(std::countr_zero(unsure));
        best[i] = chooseSlowly(p + arcOf(place, first + i).length(), words[first + i].word.rowOffset);
    }
}

/// Notes the words at work and begins with the next ones.
[[TAVO_WIDE, gnu::always_inline]] inline void BestPathSearch::WideChoice::note() {
    auto const valid = static_cast<__mmask8>(lane - 1);
    Sums const cells = _mm512_loadu_si512(words + first);
    if (__mmask8 const unsure = _mm512_mask_cmpge_epu64_mask(valid, best, sure); unsure != 0) [[unlikely]] {
        alignas(64) std::array<std::uint64_t, 8> all;
        _mm512_store_si512(all.data(), best);
        search.chooseUnsure(p, first, unsure, all.data());
        best = _mm512_load_si512(all.data());
    }
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(next + first),
                        _mm512_cvtepi64_epi32(_mm512_rol_epi64(best, 64 - kSumShift)));
    Sums const sums = _mm512_mask_andnot_epi64(constants.dead, valid, constants.numberMask, best);
    Sums const wordCosts = _mm512_and_si512(_mm512_srli_epi64(cells, 48 - kWordShift), constants.wordCostMask);
    Sums const numbers = _mm512_add_epi64(broadcast(first), constants.numbers);
    Sums const chosen = _mm512_add_epi64(sums, _mm512_add_epi64(wordCosts, numbers));
    _mm512_store_si512(packed + first, chosen);
    lowest = _mm512_min_epu64(lowest, chosen);
    __mmask8 const bounded = _mm512_mask_test_epi64_mask(valid, cells, constants.boundedBit);
    needless |= _mm512_mask_cmplt_epu64_mask(bounded, chosen, needlessFrom);
    first += 8;
    lane = 1;
}

/// Takes the best continuation of word @p number, which all of @p one are; Bound::sure of its followers.
[[TAVO_WIDE, gnu::always_inline]] inline void BestPathSearch::WideChoice::take(std::size_t number, Sums one,
                                                                               Sums sureBelow) {
    best = _mm512_mask_mov_epi64(best, static_cast<__mmask8>(lane), one);
    sure = _mm512_mask_mov_epi64(sure, static_cast<__mmask8>(lane), sureBelow);
    lane <<= 1;
    if (number % 8 == 7) [[unlikely]]
        note();
}

/// Takes those of words [@p number, @p after), whose followers are @p behind.
template <class Some>
[[TAVO_WIDE, gnu::always_inline]] inline void BestPathSearch::WideChoice::takeAll(Some const& behind,
                                                                                  std::size_t number, std::size_t after,
                                                                                  Sums sureBelow) {
    for (; number != after; ++number) take(number, leastOf(behind(words[number].word.rowOffset)), sureBelow);
}

/// Takes those of words [@p number, @p after), which end at @p end. False where it has too many followers.
[[TAVO_WIDE, gnu::always_inline]] inline bool BestPathSearch::WideChoice::takeBefore(Place const& end,
                                                                                     std::size_t number,
                                                                                     std::size_t after,
                                                                                     Sums sureBelow) {
    auto const [sums, cells, count] = search.followersOf(end);
    BundleCell const* const head = cells - end.arcCount - BundleCell::kHeadCells;
    unsigned char const* const matrix = search.table_.costs(0);
    switch (end.lines()) {
        case CostLines::Kind::kNarrow:
            takeAll(NarrowFollowers(head, sums, count, matrix, constants.dead), number, after, sureBelow);
            return true;
        case CostLines::Kind::kWide:
            takeAll(WideFollowers(head, sums, count, matrix, constants.dead), number, after, sureBelow);
            return true;
        case CostLines::Kind::kScattered:
            takeAll(ScatteredFollowers(head, sums, count, matrix, constants.dead), number, after, sureBelow);
            return true;
        case CostLines::Kind::kMany:
            break;
    }
    return false;
}

/// Gives each word that starts at @p p its best continuation, as chooseAt() does.
[[TAVO_WIDE, gnu::always_inline]] inline bool BestPathSearch::chooseWideAt(std::size_t p, Extent extent,
                                                                           WideConstants const& constants) {
    Place const& place = places_[p];
    std::uint32_t const unknown = lowUnknown(p, extent);
    std::uint32_t const from = needlessFrom(place, unknown);
    std::uint32_t const base = baseSum_;
    WideChoice choice{
        .search = *this,
        .p = p,
        .constants = constants,
        .packed = sums() + (place.firstWord - origin_),
        .next = next_.begin() + place.firstWord,
        .words = cache_.cells() + place.words,
        .best = constants.dead,
        .sure = constants.dead,
        .lowest = constants.dead,
        .needlessFrom = broadcast(std::uint64_t{std::min(std::max(from, base) - base, kDeadSum)} << kSumShift)};
    std::size_t number = 0;
    for (BundleCell const* cell = choice.words - place.arcCount; cell != choice.words; ++cell) {
        std::size_t const length = cell->arc.length();
        Place const& end = places_[p + length];
        if (end.width() == 0) return false;
        Sums const sure = broadcast(bounds_[p + length].sure);
        std::size_t const after = number + cell->arc.count;
        if (!choice.takeBefore(end, number, after, sure)) return chooseAnywhere(p, extent);
        number = after;
    }
    if (choice.lane != 1) choice.note();
    std::uint64_t const lowest = _mm512_reduce_min_epu64(choice.lowest);
    Bound bound{kMaxSum, kMaxSum};
    if (lowest < kDeadEnd) bound = {base + sumOf(lowest), base + sumOf(lowest) + place.leastColumn};
    return setBound(p, bound, unknown, extent == Extent::kAll || choice.needless != 0);
}

/// Does what chooseWords() does.
[[TAVO_WIDE]] bool BestPathSearch::chooseWordsWide(std::size_t begin, Extent extent) {
    WideConstants const constants;
    for (std::size_t p = segmentEnd_; p-- > begin;) {
        p = enterPlace(p);
        bool chosen = false;
        if (places_[p].run != 0)
            chosen = chooseRun(p);
        else if (isBeforeEnd(p)) [[likely]]
            chosen = chooseWideAt(p, extent, constants);
        else
            chosen = chooseAnywhere(p, extent);
        if (!chosen) return false;
    }
    return true;
}

}  // namespace TAVO

#else

namespace TAVO {
bool BestPathSearch::isWide() noexcept { return false; }
bool BestPathSearch::chooseWordsWide(std::size_t, Extent) { return false; }
}  // namespace TAVO

#endif
