// The words of a dictionary by their reading.
#ifndef TAVO_DIC_READING_INDEX_HPP
#define TAVO_DIC_READING_INDEX_HPP

#include "dic/dic.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// A word of the index; the surface stands in the index, the record in the image.
struct ReadingWord {
    std::string_view form;
    unsigned char const* record;
};

/// Reads the dictionary once, whole; the dictionary must stay as it is. Immutable.
class ReadingIndex {
public:
    explicit ReadingIndex(Dic const& dic);

    /// The words whose reading is exactly @p reading, in the order of the trie.
    std::vector<ReadingWord> find(std::string_view reading) const;

private:
    /// Offsets in texts_, of texts that end with a zero byte.
    struct Entry {
        std::uint32_t reading, form;
        unsigned char const* record;
    };
    std::string_view text(std::uint32_t offset) const noexcept { return texts_.data() + offset; }

    std::string texts_;
    std::vector<Entry> entries_;  // by reading
};

}  // namespace TAVO

#endif
