#include "engine/fast/text_places.hpp"

#include "base/bytes.hpp"
#include "base/sjis.hpp"

#include <algorithm>

namespace TAVO {
namespace {

constexpr std::uint32_t kNoNumber = 0x10000;  // above every label
constexpr std::size_t kAhead = 8;             // places

}  // namespace

void TextPlaces::clear() {
    codes_.clear();
    flags_.clear();
    numbers_.clear();
    offsets_.clear();
    looks_.clear();
    ends_.clear();
    pushEnd(0);
}

void TextPlaces::pushEnd(std::uint32_t offset) {
    ends_.push(static_cast<std::uint32_t>(size()));
    codes_.push(0);
    flags_.push(CharacterFlag::kEnd);
    numbers_.push(kNoNumber);
    offsets_.push(offset);
}

std::size_t TextPlaces::add(std::string_view text, SearchIndexes const& indexes) {
    std::size_t const first = size();
    std::size_t const most = first + text.size();  // each byte a place, and two behind them
    codes_.resizeForOverwrite(most + 1);
    flags_.resizeForOverwrite(most + 1);
    numbers_.resizeForOverwrite(most + 1);
    offsets_.resizeForOverwrite(most + 1);
    std::size_t lookCount = looks_.size();
    looks_.resizeForOverwrite(lookCount + text.size() + 1);
    std::uint32_t const* const table = indexes.codes();
    unsigned char const* const bytes = asBytes(text.data());
    auto const length = static_cast<std::uint32_t>(text.size());
    std::size_t p = first;
    unsigned before = 0;  // flags
    for (std::uint32_t at = 0; at < length; ++p) {
        unsigned code = bytes[at];
        offsets_[p] = at;
        bool const isDouble = isLeadByte(text[at]) && at + 1 < length;
        if (isDouble) code = code << 8 | bytes[at + 1];
        at += isDouble ? 2 : 1;
        std::uint32_t const entry = table[code];
        codes_[p] = static_cast<CharacterCode>(code);
        numbers_[p] = entry & 0xFFFF;
        unsigned const flags = entry >> DicIndex::kFlagShift;
        flags_[p] = static_cast<std::uint16_t>(flags);
        looks_[lookCount] = static_cast<std::uint32_t>(p);
        lookCount += ((flags & CharacterFlag::kLook) | (before & CharacterFlag::kUnknown)) != 0 ? 1 : 0;
        before = flags;
    }
    codes_.truncate(p);
    flags_.truncate(p);
    numbers_.truncate(p);
    offsets_.truncate(p);
    looks_.truncate(lookCount);
    pushEnd(length);
    return first;
}

void TextPlaces::findLists(SearchIndexes const& indexes) {
    numbers_.resizeForOverwrite(size() + kPadding);
    std::fill(numbers_.begin() + size(), numbers_.end(), kNoNumber);
    if (walks_.size() < indexes.count()) walks_.resize(indexes.count());
    for (std::size_t i = 0; i < indexes.count(); ++i) {
        if (i != 0) findNumbers(indexes.dic(i));
        walk(indexes.dic(i), numbers_.begin(), walks_[i]);
    }
}

/// The numbers of the characters in another dictionary.
void TextPlaces::findNumbers(DicIndex const& dic) {
    std::uint32_t const* const table = dic.codes();
    for (std::size_t p = 0; p != size(); ++p) numbers_[p] = isEnd(p) ? kNoNumber : table[codes_[p]] & 0xFFFF;
}

/// One step a character, until a label differs; the last node tells the list of all surfaces on the way.
void TextPlaces::walk(DicIndex const& dic, std::uint32_t const* numbers, Walk& found) {
    found.lists.resizeForOverwrite(size());
    found.depths.resizeForOverwrite(size());
    std::uint64_t const* const roots = dic.roots();
    std::uint64_t const* const units = dic.units();
    std::size_t const unitCount = dic.unitCount();
    std::uint32_t const rootCount = dic.characterCount() + 2;
    unsigned char const* const bytes = dic.lists();
    std::size_t const places = size();
    for (std::size_t p = 0; p != places; ++p) {
        // Where the second character leads is far away in most cases, and nothing else can be done before it is there.
        std::uint64_t const ahead = numbers[p + kAhead] < rootCount ? roots[numbers[p + kAhead]] : 0;
        __builtin_prefetch(units + (ahead & DicIndex::kBaseMask) + numbers[p + kAhead + 1]);
        std::uint64_t node = numbers[p] < rootCount ? roots[numbers[p]] : 0;
        std::size_t at = p + 1;
        for (; at != p + DicIndex::kMostCharacters; ++at) {
            std::uint64_t const number = numbers[at];
            std::size_t const unit = (node & DicIndex::kBaseMask) + number;
            if (unit >= unitCount || units[unit] >> DicIndex::kLabelShift != number) break;
            node = units[unit];
        }
        std::uint32_t list = DicIndex::listOf(node);
        if (!dic.isList(list)) [[unlikely]] {
            list = 0;
            flags_[p] |= CharacterFlag::kBroken;
        }
        found.lists[p] = list;
        found.depths[p] = static_cast<std::uint16_t>(at - p);
        __builtin_prefetch(bytes + std::size_t{list} * 8);
    }
}

}  // namespace TAVO
