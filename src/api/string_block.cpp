#include "api/string_block.hpp"

#include <stdexcept>

namespace TAVO::api {
namespace {

constexpr std::size_t kFirstSlots = 1024;

}  // namespace

std::uint32_t StringBlock::add(std::string_view text) {
    if (text.empty()) return 0;
    std::size_t const offset = bytes_.size();
    if (text.size() >= limitBytes_ - offset) throw std::length_error("LENGTH_ERROR: too much text for one bulk call");
    bytes_.append(text).push_back('\0');
    return static_cast<std::uint32_t>(offset);
}

void RecordTexts::clear(std::size_t width) {
    width_ = width;
    count_ = 0;
    slots_.assign(kFirstSlots, {});
    offsets_.clear();
}

std::size_t RecordTexts::place(unsigned char const* record) const noexcept {
    // Records stand closer together than their addresses' upper bits tell.
    auto const address = reinterpret_cast<std::uintptr_t>(record);
    std::size_t const mask = slots_.size() - 1;
    std::size_t at = (address * 0x9E3779B97F4A7C15U >> 32) & mask;
    while (slots_[at].record != nullptr && slots_[at].record != record) at = (at + 1) & mask;
    return at;
}

std::uint32_t const* RecordTexts::find(unsigned char const* record) const noexcept {
    Slot const& slot = slots_[place(record)];
    return slot.record == nullptr ? nullptr : offsets_.data() + slot.index;
}

void RecordTexts::add(unsigned char const* record, std::uint32_t const* offsets) {
    if (2 * (count_ + 1) > slots_.size()) grow();
    slots_[place(record)] = {record, static_cast<std::uint32_t>(offsets_.size())};
    ++count_;
    offsets_.insert(offsets_.end(), offsets, offsets + width_);
}

void RecordTexts::grow() {
    std::vector<Slot> const old = std::move(slots_);
    slots_.assign(2 * old.size(), {});
    for (Slot const& slot : old)
        if (slot.record != nullptr) slots_[place(slot.record)] = slot;
}

}  // namespace TAVO::api
