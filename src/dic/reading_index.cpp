#include "dic/reading_index.hpp"

#include "dic/read_pron.hpp"

#include <algorithm>

namespace TAVO {

ReadingIndex::ReadingIndex(Dic const& dic) {
    auto const keep = [this](std::string const& text) {
        auto const at = static_cast<std::uint32_t>(texts_.size());
        texts_.append(text.c_str(), text.size() + 1);
        return at;
    };
    if (dic.trie() == nullptr) return;
    dic.trie()->visitAll([&](std::string const& form, RecordChain chain) {
        std::uint32_t const kept = keep(form);
        for (; chain; chain = chain.next())
            entries_.push_back({keep(extractRead(chain.record().readPron(), true)), kept, chain.head()});
    });
    std::stable_sort(entries_.begin(), entries_.end(),
                     [this](Entry const& a, Entry const& b) { return text(a.reading) < text(b.reading); });
}

std::vector<ReadingWord> ReadingIndex::find(std::string_view reading) const {
    std::vector<ReadingWord> found;
    auto entry = std::lower_bound(
        entries_.begin(), entries_.end(), reading,
        [this](Entry const& before, std::string_view sought) { return text(before.reading) < sought; });
    for (; entry != entries_.end() && text(entry->reading) == reading; ++entry)
        found.push_back({text(entry->form), entry->record});
    return found;
}

}  // namespace TAVO
