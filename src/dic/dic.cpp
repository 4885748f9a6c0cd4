#include "dic/dic.hpp"

#include <tavo/error.hpp>

#include "base/bytes.hpp"

#include <cstring>
#include <utility>

namespace TAVO {

Dic::Dic(bool memoryMapped, char const* path) : image_(memoryMapped, path) { derive(); }

Dic::Dic(std::span<unsigned char const> bytes, std::string name) : image_(bytes, std::move(name)) { derive(); }

void Dic::derive() {
    unsigned char const* const bytes = image_.data();
    std::size_t const length = image_.sizeBytes();
    serial_ = nextSerial();
    marks_ = Marks::Unread;
    if (length <= kHeaderBytes) return;
    if (bytes[0] != kVersion) throw invalid_dictionary_version(std::to_string(bytes[0]));
    if (bytes[1] > 2) throw invalid_dictionary_char_type(std::to_string(bytes[1]));
    std::size_t const trieOffset = loadU32(bytes + 4);
    std::size_t const poolOffset = kHeaderBytes + std::size_t{5} * loadU16(bytes + 8);
    if (trieOffset > length || poolOffset > trieOffset) return;
    trie_ = std::make_unique<DicTrie>(bytes + trieOffset, length - trieOffset);
    header_ = bytes;
    nameOffsets_ = bytes + kHeaderBytes + nameCount();
    namePool_ = bytes + poolOffset;
    namePoolBytes_ = trieOffset - poolOffset;
}

unsigned Dic::charType() const noexcept { return header_ != nullptr ? header_[1] : 0; }
std::uint32_t Dic::nameStamp() const noexcept { return header_ != nullptr ? loadU32(header_ + 12) : 0; }
std::uint16_t Dic::nameCount() const noexcept { return header_ != nullptr ? loadU16(header_ + 8) : std::uint16_t{0}; }

char const* Dic::getPartOfSPName(std::uint32_t id) const noexcept {
    id &= 0xFFFF;
    if (id == 0 || id > nameCount()) return "";
    std::size_t const offset = loadU32(nameOffsets_ + std::size_t{4} * (id - 1));
    if (offset >= namePoolBytes_) return "";
    unsigned char const* const name = namePool_ + offset;
    return std::memchr(name, 0, namePoolBytes_ - offset) != nullptr ? asChars(name) : "";
}

bool Dic::hasCoocMarks() const {
    if (marks_ != Marks::Unread) return marks_ == Marks::Some;
    bool found = false;
    if (trie_ != nullptr)
        trie_->visitAll([&](std::string const&, RecordChain chain) {
            for (; chain; chain = chain.next()) found = found || chain.record().hasCoocMarks();
        });
    marks_ = found ? Marks::Some : Marks::None;
    return found;
}

bool Dic::contains(unsigned char const* record) const noexcept {
    return header_ != nullptr && record >= header_ && record < header_ + image_.sizeBytes();
}

void Dic::release() {
    if (!image_.memoryMapped()) return;
    header_ = nameOffsets_ = namePool_ = nullptr;
    namePoolBytes_ = 0;
    trie_.reset();
    serial_ = nextSerial();
    image_.release();
}

void Dic::takeBack() {
    if (!image_.memoryMapped()) return;
    image_.takeBack();
    derive();
}

}  // namespace TAVO
