#include "dic/index/dic_index.hpp"

#include "base/sjis.hpp"
#include "dic/index/conn_index.hpp"

#include <algorithm>
#include <utility>

namespace TAVO {
namespace {

constexpr std::size_t kListPadding = 64;  // a layout copies 16 bytes at a time
constexpr std::size_t kBitmapWords = DicIndex::kCodes / 64;

}  // namespace

unsigned CandidateList::rankInSurface(unsigned i) const noexcept {
    unsigned first = rank(i);
    for (unsigned other = 0; other != count(); ++other)
        if (lengths()[other] == lengths()[i]) first = std::min(first, rank(other));
    return rank(i) - first;
}

unsigned deriveFlags(unsigned code, unsigned own, unsigned ofTrail) noexcept {
    using namespace CharacterFlag;
    unsigned flags = own & (kBounded | kSafe | kEndsSurface | kContinues);
    if ((flags & kBounded) == 0) flags |= kUnknown;
    if (code > 0xFF) {
        flags |= kDouble;
        if (!mayBeTrail(code & 0xFF)) flags &= ~kSafe;
        if ((code & 0x80) != 0) flags |= kHighTrail;
        if ((ofTrail & kEndsSurface) != 0) flags |= kTrailEnds;
        if ((ofTrail & kContinues) != 0) flags |= kTrailContinues;
        if ((flags & kUnknown) != 0) flags |= kLook;
    } else if (code >= 0x80) {
        flags |= kHighByte | kLook;
    }
    bool const leavesOut = (flags & kUnknown) == 0;
    if ((leavesOut && (flags & kSafe) == 0) || (flags & (kHighTrail | kTrailContinues)) != 0) flags |= kLook;
    return flags;
}

DicIndex::DicIndex(IndexImage&& image, ConnIndex const& conn)
    : image_(std::move(image)),
      rows_(conn.rows()),
      columns_(conn.columns()),
      info_(image_.section<std::uint32_t>(kInfo)),
      codes_(image_.section<std::uint32_t>(kCodesAt)),
      roots_(image_.section<std::uint64_t>(kRoots)),
      units_(image_.section<std::uint64_t>(kUnits)),
      lists_(image_.section<std::uint8_t>(kLists)),
      pairs_(image_.section<std::uint64_t>(kPairs)),
      neighbours_(image_.section<std::uint64_t>(kNeighbours)),
      rootChains_(image_.section<std::uint32_t>(kRootChains)),
      chains_(image_.section<std::uint32_t>(kChains)),
      sound_(check()) {
    if (!sound_) return;
    checkedWords_ = (lists_.size() / 8 + 63) / 64;
    checked_ = std::make_unique<std::atomic<std::uint64_t>[]>(checkedWords_);
}

bool DicIndex::check() const noexcept {
    if (info_.size() != kInfoCount || codes_.size() != kCodes || roots_.size() < 2 || roots_.size() > kCodes ||
        lists_.size() < kListPadding || pairs_.size() != kBitmapWords || neighbours_.size() != kBitmapWords ||
        rootChains_.size() != roots_.size() || chains_.size() != units_.size() ||
        CandidateList(lists_.data()).count() != 0 || CandidateList(lists_.data()).unrestricted() != 0)
        return false;
    return std::all_of(codes_.begin(), codes_.end(),
                       [this](std::uint32_t code) { return (code & 0xFFFF) < roots_.size(); });
}

bool DicIndex::checkList(std::uint32_t number) const noexcept {
    std::size_t const at = std::size_t{number} * 8;
    std::size_t const room = lists_.size() - kListPadding;
    if (at > room || room - at < CandidateList::kHeadBytes) return false;
    CandidateList const list(lists_.data() + at);
    unsigned const count = list.count();
    if (list.unrestricted() > count || room - at < CandidateList::sizeBytes(count, list.unrestricted() != count))
        return false;
    for (unsigned i = 0; i < count; ++i) {
        unsigned const length = list.lengths()[i];
        if (list.column(i) >= columns_ || list.row(i) >= rows_ || length == 0 || length > list.longest()) return false;
    }
    checked_[number >> 6].fetch_or(std::uint64_t{1} << (number & 63), std::memory_order_relaxed);
    return true;
}

std::uint32_t DicIndex::chainOf(unsigned char const* bytes, std::size_t length) const noexcept {
    std::string_view const text(asChars(bytes), length);
    std::uint64_t node = 0;
    std::uint32_t chain = 0;
    for (std::size_t at = 0; at < length;) {
        std::size_t const width = isLeadByte(text[at]) && at + 1 < length ? 2 : 1;
        std::uint32_t const code = width == 2 ? bytes[at] * 256U + bytes[at + 1] : bytes[at];
        std::uint32_t const number = codes_[code] & 0xFFFF;
        if (at == 0) {
            node = roots_[number];
            chain = rootChains_[number];
        } else {
            std::size_t const unit = (node & kBaseMask) + number;
            if (unit >= units_.size() || units_[unit] >> kLabelShift != number) return kNoChain;
            node = units_[unit];
            chain = chains_[unit];
        }
        at += width;
    }
    return chain - 1;  // 0 wraps to kNoChain
}

}  // namespace TAVO
