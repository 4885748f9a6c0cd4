// The search for the best path of a sentence.
#ifndef TAVO_ENGINE_BEST_PATH_SEARCH_HPP
#define TAVO_ENGINE_BEST_PATH_SEARCH_HPP

#include "base/raw_buffer.hpp"
#include "dic/prefix_batch.hpp"
#include "engine/form_cache.hpp"
#include "engine/path_key.hpp"
#include "engine/search_table.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace TAVO {

class ConnTable;
class DicSet;

/// Finds the path that the exhaustive search of all candidates chooses, from
/// fewer of them. One object serves any number of sentences one after another
/// and keeps its memory.
///
/// First all surface forms are collected, from the first position to the last, and
/// listed by the position they end at: an Arc stands for all words of a form at one
/// place. Then, from the last position to the first, every word of the arcs that end
/// there is given its best continuation among the words that start there: these
/// are laid out once, and each word costs one pass over them.
///
/// Candidates that are left out, since no path from the beginning of the text
/// chooses them (Extent::kNeeded):
/// - Words of a column that only few rows may stand before, where no word of such
///   a row ends.
/// - Unknown words, and all words that start at the second byte of a character,
///   unless an unknown word can be needed there. What the least sums of such
///   words could be is kept for every position (Place::low), so that each
///   omission is checked; when a check fails, all candidates are searched.
class BestPathSearch {
public:
    /// A word of the best path; sums are those from here to the end of the text.
    struct PathWord {
        unsigned char const* record;
        PathKey key;
        std::uint32_t length;  ///< in bytes
        std::uint16_t column;
    };

    /// Searches @p text, which is not empty and at most kMaxSentenceBytes long.
    /// False when there is no path.
    bool search(std::string_view text, ConnTable const& table, DicSet const& dics);
    /// Calls visit(PathWord const&) for the words of the path found last.
    template <class Visit>
    void eachPathWord(Visit&& visit) const {
        std::uint32_t word = first_;
        for (std::size_t p = 0; p != length_;) {
            Arc const* arc = &arcs_[places_[p].firstArc];
            while (word - arc->firstWord >= arc->count) ++arc;
            std::uint32_t const number = word - arc->firstWord;
            Link const link = linkOf(word, p + arc->length);
            visit(PathWord{forms_.record(arc->form, arc->words + number), link.key, arc->length,
                           forms_.words()[arc->words + number].column});
            word = link.next;
            p += arc->length;
        }
    }
    /// True while @p table and @p dics are those of the last search.
    bool isAttached(ConnTable const& table, DicSet const& dics) const { return table_.isAttached(table, dics); }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    static constexpr std::uint32_t kMaxSum = 0xFFFF0000;  ///< no connection sum reaches it
    static constexpr std::uint32_t kNoSum = 0xFFFFFFFF;   ///< of a word that is not packed
    /// Searched at once in the dictionaries; few enough for their matches to stay in the cache.
    static constexpr std::size_t kWindow = 64;
    enum class Extent { kNeeded, kAll };

    /// The words of a form at a place.
    struct Arc {
        std::uint32_t form;
        std::uint32_t words;       ///< first of the form's words in the cache
        std::uint32_t count;       ///< of the words
        std::uint32_t firstWord;   ///< of the sentence
        std::uint32_t nextEnding;  ///< another arc that ends at the same position; kNone
        std::uint32_t length;      ///< in bytes
        std::uint8_t leastColumn;  ///< smallest cost of the columns
        bool allBounded;
        bool sparse;  ///< some words are of sparse columns
    };
    /// What is known of a byte position.
    struct Place {
        PathKey low;               ///< no word that starts here has a smaller key
        std::uint32_t lowBefore;   ///< a word that ends here has no smaller connection sum
        std::uint32_t lowBounded;  ///< smallest connection sum of arcs of bounded words
        std::uint32_t high;        ///< no word of the arcs that start here has a larger connection sum
        std::uint32_t baseSum;     ///< what packed words of the arcs that end here are counted from
        std::uint32_t firstArc;    ///< of those that start here
        std::uint32_t ends;        ///< an arc that ends here; kNone
        std::uint8_t width;        ///< of the character that starts here; 0: none does
        std::uint8_t reach;        ///< SearchTable's classes of the words that end here
        std::uint8_t pair;         ///< inside a character: ShortForm::least of the two bytes from here on
        bool unknown;              ///< unknown words stand among the words that start here
    };
    /// The best continuation of a word.
    struct Link {
        PathKey key;         ///< sums from the word to the end of the text; kNoPath
        std::uint32_t next;  ///< the following word; kNone at the end of the text
    };
    /// A word that starts at the second byte of a character may be this long.
    struct Overhang {
        std::uint32_t place;
        std::uint32_t end;
    };

    void giveBack() noexcept;
    bool collect(Extent extent);
    std::size_t findMatches(std::size_t p, Extent extent);
    void collectArcs(std::size_t p, std::size_t number, Extent extent);
    void addUnknowns(std::size_t p, Extent extent);
    void addArc(std::size_t p, std::uint32_t length, std::uint32_t form, Extent extent);
    void dropArcs(std::size_t p);
    void scanInside(std::size_t p);

    bool choose(Extent extent);
    void endText();
    void gather(std::size_t p, std::uint32_t endArc);
    void hideSparse(std::uint32_t firstArc, std::uint32_t endArc);
    void layOut(std::size_t p, std::uint32_t endArc);
    void connect(std::size_t p);
    template <bool kSparse>
    void connectArc(std::uint32_t baseSum, Place& start, Arc const& arc);
    std::uint32_t connectSlowly(std::uint32_t baseSum, std::uint64_t* packed, FormWord const& form);
    std::uint32_t setLink(std::uint32_t word, Link link);
    Link linkOf(std::uint32_t word, std::size_t end) const noexcept;
    static void note(Place& start, Arc const& arc, PathKey low, std::uint32_t high) noexcept;
    Link bestOfAll(std::uint32_t baseSum, unsigned char const* costs) const noexcept;
    void boundInside(std::size_t p);
    bool unknownsAreNeedless(std::size_t p, std::uint32_t endArc);

    SearchTable table_;
    FormCache forms_;

    // The sentence at work.
    unsigned char const* text_ = nullptr;
    std::size_t length_ = 0;
    DicSet const* dics_ = nullptr;
    RawBuffer<Place> places_;
    RawBuffer<Arc> arcs_;
    std::uint32_t wordCount_ = 0;
    RawBuffer<std::uint64_t> packed_;  // by word, see best_path_choice.cpp
    RawBuffer<Link> links_;            // of the words that do not fit there
    std::uint32_t first_ = kNone;      // word of the best path

    // The positions at work, when arcs are collected.
    std::array<std::uint32_t, kWindow> starts_{};
    PrefixBatch matches_;
    std::vector<Overhang> overhangs_;  // by place
    bool bounded_ = false;             // some word of the position may stand behind any word

    // The position at work, when continuations are chosen. Followers are the words
    // that start there; see gather().
    std::uint32_t firstFollower_ = 0;
    std::uint32_t followerCount_ = 0;
    bool packs_ = true;
    bool hasSparse_ = false;
    RawBuffer<std::uint64_t> followers_;
    RawBuffer<std::uint64_t> plainFollowers_;
    RawBuffer<std::uint16_t> columns_;
    RawBuffer<PathKey> keys_;
};

}  // namespace TAVO

#endif
