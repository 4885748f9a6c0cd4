#include "engine/path_store.hpp"

#include "base/bytes.hpp"
#include "engine/special_records.hpp"

namespace TAVO {
namespace {

constexpr std::size_t kKept = std::size_t{1} << 18;  // words that memory is kept for

}  // namespace

void PathStore::clear() noexcept {
    words_.clear();
    exact_.clear();
    words_.shrink(kKept);
    exact_.shrink(kKept);
}

void PathStore::addExact(LatticeNode const& node) {
    words_.push({static_cast<std::uint32_t>(exact_.size()), node.column, 0, PathWord::kExact});
    exact_.push({node.record, node.length});
}

unsigned char const* PathStore::record(PathWord const& word, char const* text) const noexcept {
    if (word.source == PathWord::kExact) return exact_[word.word].record;
    if (word.source == PathWord::kUnknown) return kUnknownRecord.data();
    unsigned const rank = indexes_.dic(word.source).list(word.word >> 8).rankInSurface(word.word & 0xFF);
    unsigned char const* const found = indexes_.record(word.source, asBytes(text), word.length, rank);
    // An index that is not of this dictionary may name a word that there is none of.
    return found != nullptr ? found : kUnknownRecord.data();
}

std::uint16_t PathStore::row(PathWord const& word) const noexcept {
    if (word.source == PathWord::kExact) return table_->row(MrphDic(exact_[word.word].record).pid());
    if (word.source == PathWord::kUnknown) return table_->row(ConnTable::kUnknownId);
    return static_cast<std::uint16_t>(indexes_.dic(word.source).list(word.word >> 8).row(word.word & 0xFF));
}

LatticeNode const* PathStore::makeNodes(std::size_t begin, std::size_t end, std::string_view text) {
    std::size_t at = text.size();
    LatticeNode const* next = nullptr;
    std::uint32_t connSum = 0;
    std::uint32_t wordSum = 0;
    for (std::size_t i = end; i-- != begin;) {
        PathWord const& word = words_[i];
        std::uint32_t const length = lengthBytes(word);
        at -= length;
        MrphDic const record(this->record(word, text.data() + at));
        bool const isUnknown = record.head() == kUnknownRecord.data();
        if (next != nullptr)
            connSum += table_->rowStart(table_->row(record.pid()))[next->column];
        else
            connSum = isUnknown ? ConnTable::kForbidden : table_->cost(record.pid(), ConnTable::kEndId);
        wordSum += record.cost();
        pool_.beginPosition();
        LatticeNode& node = pool_.make();
        node = {record.head(), next,   length, word.column, LatticeNode::kFirstAtPosition | LatticeNode::kAlone,
                wordSum,       connSum};
        next = &node;
    }
    return next;
}

}  // namespace TAVO
