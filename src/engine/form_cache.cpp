#include "engine/form_cache.hpp"

#include "engine/backward_walk.hpp"
#include "engine/special_records.hpp"

#include <algorithm>
#include <bit>

namespace TAVO {

bool FormCache::trim() noexcept {
    constexpr std::size_t kWordsKept = 1 << 19;
    if (words_.size() <= kWordsKept) return false;
    clear();
    return true;
}

void FormCache::clear() noexcept {
    slots_.clear();
    forms_.clear();
    words_.clear();
    records_.clear();
}

std::uint32_t FormCache::unknown(SearchTable const& table) {
    return find(kUnknownRecord.data(), kUnknownRecord.data() + kUnknownRecord.size(), table);
}

std::uint32_t FormCache::make(unsigned char const* head, unsigned char const* leafEnd, SearchTable const& table) {
    Form form{head, {}, {}, 0};
    form.all.first = static_cast<std::uint32_t>(words_.size());
    eachNodeRecord(RecordChain(head, leafEnd), table.idCount(), [&](MrphDic record) {
        addWord(form.all, record, table);
        SearchTable::Id const& id = table.id(record.pid());
        if (SearchTable::isSparse(id)) form.enteredBy = static_cast<std::uint8_t>(form.enteredBy | id.enteredBy);
    });
    form.plain = form.all;
    if (form.enteredBy != 0) {
        form.plain = {};
        form.plain.first = static_cast<std::uint32_t>(words_.size());
        eachNodeRecord(RecordChain(head, leafEnd), table.idCount(), [&](MrphDic record) {
            if (!SearchTable::isSparse(table.id(record.pid()))) addWord(form.plain, record, table);
        });
    }
    forms_.push(form);
    return static_cast<std::uint32_t>(forms_.size() - 1);
}

void FormCache::addWord(FormWords& list, MrphDic record, SearchTable const& table) {
    SearchTable::Id const& id = table.id(record.pid());
    bool const bounded = id.enteredBy == 0;
    words_.push({id.rowOffset, id.column, record.cost(), bounded});
    records_.push(record.head());
    std::uint8_t const least = table.columnMinimum(id.column);
    list.leastColumn = list.count == 0 ? least : std::min(list.leastColumn, least);
    list.allBounded = bounded && (list.count == 0 || list.allBounded);
    list.hasBounded = list.hasBounded || bounded;
    list.enters = static_cast<std::uint8_t>(list.enters | id.enters);
    ++list.count;
}

void FormCache::rehash() {
    constexpr std::size_t kFirst = 4096;
    std::size_t const size = std::max(kFirst, slots_.size() * 4);
    slots_.resizeForOverwrite(size);
    std::fill(slots_.begin(), slots_.end(), kNone);
    shift_ = 64 - static_cast<unsigned>(std::countr_zero(size));
    for (std::uint32_t index = 0; index < forms_.size(); ++index) {
        std::size_t i = slot(forms_[index].head);
        while (slots_[i] != kNone) i = (i + 1) & (size - 1);
        slots_[i] = index;
    }
}

}  // namespace TAVO
