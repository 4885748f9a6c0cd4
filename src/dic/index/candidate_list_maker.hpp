// Lays candidate lists out, each once.
#ifndef TAVO_DIC_INDEX_CANDIDATE_LIST_MAKER_HPP
#define TAVO_DIC_INDEX_CANDIDATE_LIST_MAKER_HPP

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace TAVO {

class ConnIndex;

/// A word of a list with the length of its surface in characters.
struct ListedWord {
    std::uint16_t column, row;
    std::uint8_t cost, length;
};

class CandidateListMaker {
public:
    explicit CandidateListMaker(ConnIndex const& conn);

    /// Number of the list of @p words, which stand in the order of making; @p beyond: words are missing that the index
    /// has no room for.
    std::uint32_t add(std::vector<ListedWord> const& words, bool beyond);
    /// Ends the section; nothing may be added any more.
    void finish();
    std::vector<std::uint8_t> const& bytes() const noexcept { return bytes_; }

private:
    std::string layOut(std::vector<ListedWord> const& words, bool beyond) const;

    ConnIndex const& conn_;
    std::vector<std::uint8_t> bytes_;
    std::unordered_map<std::string, std::uint32_t> numbers_;
};

}  // namespace TAVO

#endif
