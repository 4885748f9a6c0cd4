// The search for the best path of a sentence.
#ifndef TAVO_ENGINE_BEST_PATH_SEARCH_HPP
#define TAVO_ENGINE_BEST_PATH_SEARCH_HPP

#include "base/raw_buffer.hpp"
#include "engine/form_cache.hpp"
#include "engine/form_finder.hpp"
#include "engine/path_key.hpp"
#include "engine/search_table.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace TAVO {

class ConnTable;
class DicSet;

/// Finds the path that the exhaustive search of all candidates chooses, from
/// fewer of them. One object serves any number of sentences one after another
/// and keeps its memory.
///
/// First all surface forms are collected, from the first position to the last: an Arc
/// stands for all words of a form at one place. Then, from the last position to the
/// first, every word that starts there is given its best continuation among the words
/// that start where it ends. Of these only their packed sums and their columns are read,
/// which stand in two arrays; each word costs one pass over them.
///
/// Candidates that are left out, since no path from the beginning of the text
/// chooses them (Extent::kNeeded):
/// - Words of a column that only few rows may stand before, where no word of such
///   a row ends.
/// - Unknown words, and all words that start at the second byte of a character,
///   unless an unknown word can be needed there. What the least sums of such
///   words could be is kept for every position (Bound), so that each omission is
///   checked; when a check fails, all candidates are searched.
class BestPathSearch {
public:
    enum class Result {
        kFound,
        kNothing,  ///< no path exists
        kTooFar,   ///< sums lie too far apart for this search, or too many words start at one place
    };
    /// A word of the best path; sums are those from here to the end of the text.
    struct PathWord {
        unsigned char const* record;
        PathKey key;
        std::uint32_t length;  ///< in bytes
        std::uint16_t column;
    };

    /// Searches @p text, which is not empty and at most kMaxSentenceBytes long.
    Result search(std::string_view text, ConnTable const& table, DicSet const& dics);
    /// The words of the path found last, until the next search.
    std::span<PathWord const> path() const noexcept { return {path_.begin(), path_.end()}; }
    /// True while @p table and @p dics are those of the last search.
    bool isAttached(ConnTable const& table, DicSet const& dics) const { return table_.isAttached(table, dics); }

private:
    static constexpr std::uint32_t kMaxSum = 0xFFFF0000;  ///< no connection sum reaches it
    /// Searched at once in the dictionaries; few enough for what they find to stay in the cache.
    static constexpr std::size_t kWindow = 64;
    enum class Extent { kNeeded, kAll };
    enum class Choice { kMade, kOmitted, kTooFar };

    /// The words of a form at a place, or so many of them as one Arc can count. A text has
    /// up to three a byte, so they are small.
    struct Arc {
        static constexpr std::uint32_t kMostWords = 0xFFFF;

        std::uint32_t words;       ///< first of the form's words in the cache
        std::uint32_t length;      ///< in bytes
        std::uint16_t count;       ///< of the words
        std::uint8_t leastColumn;  ///< smallest cost of the columns
        bool allBounded : 1;
        bool unknown : 1;
    };
    static_assert(sizeof(Arc) == 12);
    /// What starts at a byte position. The words of a position are an even number, a
    /// word that leads nowhere behind the others where need be.
    struct Place {
        std::uint32_t firstArc;   ///< those up to that of the next byte
        std::uint32_t firstWord;  ///< likewise
        std::uint8_t width;       ///< of the character that starts here; 0: none does
        bool unknown = false;     ///< unknown words stand among the words
        // Inside a character: ShortForm::least of the byte here, and of the two from here on.
        std::uint8_t single = SearchTable::kNoWord;
        std::uint8_t pair = SearchTable::kNoWord;
    };
    /// What connection sums words of a position have at least.
    struct Bound {
        std::uint32_t low;        ///< a word that starts here
        std::uint32_t lowBefore;  ///< a word that ends here
    };
    /// What a choice needs of the words that start where a word ends.
    struct Followers {
        std::uint64_t const* packed;
        std::uint16_t const* columns;
        std::size_t count;
    };
    /// A word that starts at the second byte of a character may be this long.
    struct Overhang {
        std::uint32_t place;
        std::uint32_t end;
    };

    void giveBack() noexcept;
    void collect(Extent extent);
    std::size_t findForms(std::size_t p, Extent extent);
    void collectArcs(std::size_t p, std::size_t width, std::size_t number, Extent extent);
    void addUnknowns(std::size_t p, std::size_t width, Extent extent);
    void addArc(std::size_t p, std::uint32_t length, std::uint32_t form, Extent extent);
    Arc splitArc(Arc arc, std::uint32_t count);
    void scanInside(std::size_t p);
    void scanOverhangs(std::size_t p);

    Choice choose(Extent extent);
    void startChoice();
    void slide(std::size_t p);
    void rebase(std::size_t p);
    Followers followersAt(std::size_t p) const noexcept;
    bool chooseAt(std::size_t p);
    std::uint64_t chooseSlowly(Followers const& followers, unsigned char const* costs);
    void readPath(std::uint32_t number);
    void boundInside(std::size_t p);
    bool unknownsAreNeedless(std::size_t p);

    SearchTable table_;
    FormCache forms_;
    std::vector<FormFinder> finders_;  // by dictionary

    // The sentence at work.
    unsigned char const* text_ = nullptr;
    std::size_t length_ = 0;
    DicSet const* dics_ = nullptr;
    RawBuffer<Place> places_;
    RawBuffer<std::uint8_t> reach_;  // by position: SearchTable's classes of the words that end there
    RawBuffer<Arc> arcs_;
    std::uint32_t wordCount_ = 0;
    std::uint32_t longest_ = 0;      // of the arcs, in bytes
    RawBuffer<std::uint16_t> next_;  // by word: number of its best continuation where it ends
    RawBuffer<PathWord> path_;

    // The positions at work, when arcs are collected.
    std::array<std::uint32_t, kWindow + 1> starts_{};  // and where the next ones begin
    RawBuffer<Overhang> overhangs_;                    // by place
    bool bounded_ = false;                             // some word of the position may stand behind any word

    // The words at work, when continuations are chosen: those that start not farther
    // away than words are long. See best_path_choice.cpp.
    RawBuffer<Bound> bounds_;
    RawBuffer<std::uint64_t> packed_;   // by word from origin_ on
    RawBuffer<std::uint16_t> columns_;  // likewise
    std::uint32_t origin_ = 0;
    std::uint32_t baseSum_ = 0;     // what packed sums are counted from
    std::uint32_t rebaseAt_ = 0;    // the least sum of a position that asks for another one
    std::uint32_t lowBounded_ = 0;  // of the position: smallest sum of arcs of bounded words
    bool tooFar_ = false;
};

}  // namespace TAVO

#endif
