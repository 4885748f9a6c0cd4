#include "dic/dic_check.hpp"

#include "base/bytes.hpp"
#include "dic/dic.hpp"
#include "dic/name_check.hpp"
#include "dic/record_check.hpp"

#include <algorithm>
#include <cstdint>

namespace TAVO {
namespace {

constexpr std::size_t kMaxNames = 65534;

class DicCheck {
public:
    explicit DicCheck(std::string_view file) : file_(file) {}

    std::vector<std::string> run() {
        if (checkHeader() && checkTrieHeader()) {
            walkNodes();
            checkOwners();
            checkLeafEntries();
        }
        return faults_.lines();
    }

private:
    struct LeafEntry {
        std::size_t begin;
        bool hasTail;
    };

    bool checkHeader();
    bool checkTrieHeader();
    void walkNodes();
    void enter(std::size_t reference, std::uint32_t base, std::string const& what);
    void checkNode(std::uint32_t base);
    void noteLeafEntry(std::uint32_t index, bool hasTail);
    void checkOwners();
    void checkLeafEntries();
    std::size_t checkTail(std::size_t begin);

    bool fail(std::size_t offset, std::string const& text) {
        faults_.add(offset, text);
        return false;
    }
    std::uint32_t word(std::size_t position) const { return loadU32(asBytes(file_.data()) + position); }
    std::size_t cellPosition(std::size_t index) const { return cellsPosition_ + 4 * index; }
    std::uint32_t cell(std::size_t index) const { return word(cellPosition(index)); }

    std::string_view file_;
    FaultList faults_;
    std::size_t nameCount_ = 0;
    std::size_t triePosition_ = 0;
    std::size_t cellsPosition_ = 0;
    std::size_t cellCount_ = 0;
    std::size_t leafPosition_ = 0;
    std::vector<bool> isNode_;
    std::vector<std::uint32_t> pending_;
    std::vector<LeafEntry> entries_;
};

bool DicCheck::checkHeader() {
    if (file_.size() <= Dic::kHeaderBytes) return fail(0, "the file is too short for a header");
    auto const version = static_cast<unsigned char>(file_[0]);
    auto const charType = static_cast<unsigned char>(file_[1]);
    if (version != Dic::kVersion) return fail(0, "the version is not 2: " + std::to_string(version));
    if (charType > 2) faults_.add(1, "unknown character type: " + std::to_string(charType));
    triePosition_ = word(4);
    nameCount_ = loadU16(asBytes(file_.data()) + 8);
    std::size_t const poolPosition = Dic::kHeaderBytes + 5 * nameCount_;
    if (nameCount_ > kMaxNames) faults_.add(8, "too many names: " + std::to_string(nameCount_));
    if (triePosition_ > file_.size()) return fail(4, "the trie lies outside the file");
    if (poolPosition > triePosition_) return fail(8, "the names reach into the trie");
    for (std::size_t i = 0; i < nameCount_; ++i) {
        if (file_[Dic::kHeaderBytes + i] != '\0') faults_.add(Dic::kHeaderBytes + i, "a name flag is not 0");
    }
    checkNames(file_, {nameCount_, Dic::kHeaderBytes + nameCount_, poolPosition, triePosition_ - poolPosition, 12},
               faults_);
    return true;
}

bool DicCheck::checkTrieHeader() {
    std::size_t const sectionBytes = file_.size() - triePosition_;
    if (sectionBytes < DicTrie::kHeaderBytes) return fail(triePosition_, "the trie is too short for its header");
    std::size_t const nodeOffset = word(triePosition_);
    std::size_t const leafOffset = word(triePosition_ + 4);
    if (nodeOffset < DicTrie::kHeaderBytes) return fail(triePosition_, "the cells reach into the trie's header");
    if (leafOffset <= nodeOffset || (leafOffset - nodeOffset) % 4 != 0) {
        return fail(triePosition_ + 4, "the leaf area does not start behind whole cells");
    }
    if (leafOffset > sectionBytes) return fail(triePosition_ + 4, "the leaf area starts outside the file");
    cellsPosition_ = triePosition_ + nodeOffset;
    cellCount_ = (leafOffset - nodeOffset) / 4;
    leafPosition_ = triePosition_ + leafOffset;
    isNode_.assign(cellCount_, false);
    return true;
}

void DicCheck::walkNodes() {
    for (std::size_t byte = 0; byte < 256; ++byte) {
        std::size_t const position = triePosition_ + 8 + 4 * byte;
        std::uint32_t const base = word(position);
        if (base == 0) continue;
        if (byte == 0) {
            faults_.add(position, "keys cannot begin with a NUL");
            continue;
        }
        enter(position, base, "root entry " + std::to_string(byte));
    }
    while (!pending_.empty()) {
        std::uint32_t const base = pending_.back();
        pending_.pop_back();
        checkNode(base);
    }
}

/// Notes the node @p base, which @p what at @p reference leads to.
void DicCheck::enter(std::size_t reference, std::uint32_t base, std::string const& what) {
    if (base == 0 || std::size_t{base} + 255 >= cellCount_) {
        faults_.add(reference, what + " leads outside the cells: base " + std::to_string(base));
    } else if (isNode_[base]) {
        faults_.add(reference, what + " leads to a node that has another parent: base " + std::to_string(base));
    } else {
        isNode_[base] = true;
        pending_.push_back(base);
    }
}

void DicCheck::checkNode(std::uint32_t base) {
    bool isEmpty = true;
    for (std::uint32_t label = 0; label <= 255; ++label) {
        std::uint32_t const index = base + label;
        std::uint32_t const value = cell(index);
        bool const isLeaf = (value & DicTrie::kLeafFlag) != 0;
        if (value >> 24 != label || (label == 0 && !isLeaf)) continue;
        isEmpty = false;
        if (isLeaf) {
            noteLeafEntry(index, label != 0);
        } else {
            enter(cellPosition(index), value & DicTrie::kValueMask, "cell " + std::to_string(index));
        }
    }
    if (isEmpty) faults_.add(cellPosition(base), "the node at base " + std::to_string(base) + " leads nowhere");
}

void DicCheck::noteLeafEntry(std::uint32_t index, bool hasTail) {
    std::size_t const begin = leafPosition_ + std::size_t{4} * (cell(index) & DicTrie::kValueMask);
    if (begin < file_.size()) {
        entries_.push_back({begin, hasTail});
    } else {
        faults_.add(cellPosition(index), "cell " + std::to_string(index) + " leads outside the leaf area");
    }
}

/// A cell's owner is its index minus its label; free cells carry neither label
/// nor leaf flag.
void DicCheck::checkOwners() {
    for (std::size_t index = 0; index < cellCount_; ++index) {
        std::uint32_t const value = cell(index);
        std::size_t const label = value >> 24;
        if (label == 0 && (value & DicTrie::kLeafFlag) == 0) continue;
        if (label > index || !isNode_[index - label]) {
            faults_.add(cellPosition(index), "cell " + std::to_string(index) + " belongs to no node");
        }
    }
}

/// In the order of their places, and none twice, so that the work is bounded by
/// the file's size whatever the cells say.
void DicCheck::checkLeafEntries() {
    std::sort(entries_.begin(), entries_.end(),
              [](LeafEntry const& a, LeafEntry const& b) { return a.begin < b.begin; });
    std::size_t covered = 0;
    for (LeafEntry const& entry : entries_) {
        if (entry.begin < covered) {
            faults_.add(entry.begin, "a leaf entry overlaps the one before it");
            continue;
        }
        std::size_t const chain = entry.hasTail ? checkTail(entry.begin) : entry.begin;
        covered = chain < file_.size() ? checkChain(file_, chain, nameCount_, faults_) : file_.size();
    }
}

/// The end of the tail at @p begin; the file's end when that is not inside.
std::size_t DicCheck::checkTail(std::size_t begin) {
    std::size_t const length = static_cast<unsigned char>(file_[begin]);
    if (begin + 1 + length >= file_.size()) {
        faults_.add(begin, "a tail leaves the leaf area");
        return file_.size();
    }
    if (file_.substr(begin + 1, length).find('\0') != std::string_view::npos) {
        faults_.add(begin + 1, "a tail holds a NUL");
    }
    return begin + 1 + length;
}

}  // namespace

std::vector<std::string> checkDic(std::string_view bytes) { return DicCheck(bytes).run(); }

}  // namespace TAVO
