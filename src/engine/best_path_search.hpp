// The search for the best path of a sentence.
#ifndef TAVO_ENGINE_BEST_PATH_SEARCH_HPP
#define TAVO_ENGINE_BEST_PATH_SEARCH_HPP

#include "base/raw_buffer.hpp"
#include "engine/block_paths.hpp"
#include "engine/bundle_cache.hpp"
#include "engine/form_finder.hpp"
#include "engine/plain_runs.hpp"
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
/// and keeps its memory. Sentences that stand side by side are searched as a group: their forms are looked up together,
/// and their paths wait for their readers.
///
/// First the words of every position are collected, from the first position to the
/// last: a bundle of the BundleCache for each. Then, from the last position to the
/// first, every word that starts there is given its best continuation among the words
/// that start where it ends. Of these only their packed sums and their columns are read;
/// each word costs one pass over them, or one step where the processor has wide registers. A run of ASCII
/// characters whose words are known before, a run of PlainRuns, is one place with the words of its first character.
///
/// Candidates that are left out, since no path from the beginning of the text
/// chooses them (Extent::kNeeded):
/// - Words of a column that only few rows may stand before, where no word of such
///   a row ends.
/// - Unknown words, and all words that start at the second byte of a character,
///   unless an unknown word can be needed there. What the least sums of such
///   words could be is kept for every position (Bound), so that each omission is
///   checked; when a check fails, all candidates of the segment are searched.
///
/// A long text is searched a block after the other, from the last to the first, so that only the path takes memory for
/// all of it. A block has segments; what is left out of one does not matter to another. No word stands across
/// the positions where blocks and segments begin.
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
        std::uint32_t length;  ///< in bytes
        std::uint16_t column;
        std::uint32_t wordSum;
        std::uint32_t connSum;
    };

    /// Searched at once in the dictionaries; few enough for what they find to stay in the cache.
    static constexpr std::size_t kWindow = 512;
    /// How texts are searched: a long one in parts of at least so many bytes, 1 or more.
    struct Parts {
        std::size_t segment = 256;
        std::size_t block = 16384;
        bool wide = isWide();          ///< with registers of 512 bits
        std::size_t window = kWindow;  ///< positions looked up at once, from 1 to kWindow
    };
    /// True when the processor has such registers and the instructions for them.
    static bool isWide() noexcept;

    BestPathSearch() = default;
    explicit BestPathSearch(Parts const& parts) : parts_(parts) {}

    /// Searches a group, whose paths take the place of the last one's, and notes the results. No text is empty or
    /// longer than kMaxSentenceBytes. They stand one behind the other, with whatever between them, in one piece of
    /// memory of less than 4 GB; one that has to be searched in blocks is a group of its own.
    void search(std::span<std::string_view const> texts, ConnTable const& table, DicSet const& dics,
                std::span<Result> results);
    /// True when a text of so many bytes may be searched in blocks.
    bool isLong(std::size_t length) const noexcept { return length >= 2 * parts_.block; }

    // Of text @p number of the group, for which a path was found.
    /// Calls visit(PathWord) for each word of the path.
    template <class Visit>
    void readPath(std::size_t number, Visit&& visit) const;
    /// Calls visit(column, length, record) for each word of the path; record() is slow.
    template <class Visit>
    void visitPath(std::size_t number, Visit&& visit) const;
    std::uint16_t firstColumn(std::size_t number) const noexcept { return pathWords_[found_[number].begin].column; }
    /// Gives the memory of exceptionally long paths back, when none will be read any more.
    void forgetPaths() noexcept;
    /// True while @p table and @p dics are those of the last search.
    bool isAttached(ConnTable const& table, DicSet const& dics) const { return table_.isAttached(table, dics); }

private:
    /// Values of an array that are kept for the next sentence.
    static constexpr std::size_t kKept = std::size_t{1} << 18;
    static constexpr std::uint32_t kMaxSum = 0xFFFF0000;  ///< no connection sum reaches it
    enum class Extent { kNeeded, kAll };
    enum class Choice { kMade, kNone, kOmitted, kTooFar };

    /// What starts at a byte position.
    struct Place {
        std::uint32_t firstWord;       ///< of the words of the block, in the order of positions
        std::uint32_t words;           ///< the first one's cell
        std::uint16_t arcCount;        ///< whose cells are before the words'
        std::uint16_t wordCount;       ///< even
        std::uint8_t marks;            ///< width(), unknown(), pair() and lines()
        std::uint8_t run = 0;          ///< characters of the run that starts here, or whose last one this is
        std::uint8_t leastColumn = 0;  ///< smallest cost of the words' columns

        static constexpr std::uint8_t kWidth = 3;
        static constexpr std::uint8_t kUnknown = 4;
        static constexpr std::uint8_t kPair = 8;
        static constexpr unsigned kLinesShift = 4;
        /// Of the character that starts here; 0: none does, or one that is not the first of its run.
        unsigned width() const noexcept { return marks & kWidth; }
        /// Unknown words stand among the words; inside a character: it has overhangs.
        bool unknown() const noexcept { return (marks & kUnknown) != 0; }
        /// Inside a character: a word of two bytes may start here.
        bool pair() const noexcept { return (marks & kPair) != 0; }
        /// Of the words' costs.
        CostLines::Kind lines() const noexcept { return static_cast<CostLines::Kind>(marks >> kLinesShift); }
    };
    /// Sums over all words of a run but the first, kept as Place::words of its last character if that is another one.
    struct RunCosts {
        std::uint16_t conn = 0;
        std::uint16_t word = 0;
    };
    static_assert(PlainRuns::kLongest * 255 <= 0xFFFF);
    /// The best continuation of a word: its number among the words that start there, and below it, in 16
    /// bits, the lower part of the connection sum above the base sum.
    using Next = std::uint32_t;
    /// Sums of places before @p place are counted from @p sum.
    struct Base {
        std::uint32_t place;
        std::uint32_t sum;
    };
    /// What connection sums words of a position have at least.
    struct Bound {
        std::uint32_t low;        ///< a word that starts here
        std::uint32_t lowBefore;  ///< a word that ends here
        /// Of a place: at 255 a connection is forbidden; below this, none of those is that lead to its words.
        std::uint64_t sure = 0;
    };
    /// What a choice needs of the words that start where a word ends.
    struct Followers {
        std::uint64_t const* packed;
        BundleCell const* words;
        std::size_t count;  ///< even, at least 2

        std::uint64_t best(unsigned char const* costs) const noexcept;
    };
    /// A word that starts at the second byte of a character may be this long.
    struct Overhang {
        std::uint32_t place;
        std::uint32_t end;
    };

    /// Where a segment starts; one more stands at the end of the block.
    struct Segment {
        std::uint32_t place;
        std::uint32_t firstWord;  ///< when only needed words were collected
    };
    /// What stands behind the block at work: the words that start there, and what sums are counted from.
    struct BlockEnd {
        Place place{};
        std::array<Bound, 2> bounds{};
        RawBuffer<std::uint64_t> packed;
        std::uint32_t baseSum = 0;
        std::uint32_t rebaseAt = 0;
    };
    /// The words behind the segment at work, and what else a choice changes.
    struct Behind {
        RawBuffer<std::uint64_t> packed;
        std::size_t bases = 0;
        std::uint32_t baseSum = 0;
        std::uint32_t rebaseAt = 0;
        bool tooFar = false;
    };

    /// A word of a path, and its column.
    struct Chosen {
        BlockPaths::Word word;
        std::uint16_t column;
    };
    /// A text that was searched.
    struct Found {
        std::uint32_t begin, end;  // words of the path, those of its first block if it has several
        std::uint32_t behind;      // number of the word behind them
        std::uint32_t wordSum;     // of all word costs of the path
    };

    /// Packed sums that share a cache line.
    struct alignas(64) SumLine {
        std::array<std::uint64_t, 8> sums;
    };
    static constexpr std::uint32_t kLineWords = 8;

    static_assert(sizeof(Place) == 16);
    std::uint64_t* sums() noexcept { return reinterpret_cast<std::uint64_t*>(packed_.begin()); }
    std::uint64_t const* sums() const noexcept { return reinterpret_cast<std::uint64_t const*>(packed_.begin()); }
    /// Words that packed_ has room for.
    std::uint32_t room() const noexcept { return static_cast<std::uint32_t>(packed_.size() * kLineWords); }
    /// Of word @p number of @p place.
    BundleCell::Arc arcOf(Place const& place, std::size_t number) const noexcept {
        BundleCell const* cell = cache_.cells() + place.words - place.arcCount;
        for (; number >= cell->arc.count; ++cell) number -= cell->arc.count;
        return cell->arc;
    }
    /// The block at work is the first one.
    bool startsText() const noexcept { return rest_ == sentence_.size(); }
    std::uint32_t firstWord() const noexcept { return static_cast<std::uint32_t>(wordCount_); }
    /// False where an unknown word may reach the end of the text; one is two bytes long at most.
    bool isBeforeEnd(std::size_t p) const noexcept { return p + 2 < rest_ || !places_[p].unknown(); }
    /// Numbers that @p words words of a place take. With wide registers each place starts with a cache line.
    std::uint32_t numbersOf(std::uint32_t words) const noexcept {
        std::uint32_t const more = parts_.wide ? kLineWords - 1 : 0;
        return (words + more) & ~more;
    }
    std::uint32_t endOf(Place const& place) const noexcept { return place.firstWord + numbersOf(place.wordCount); }

    void start(ConnTable const& table, DicSet const& dics);
    Result searchText(std::string_view text);
    void findBlocks();
    bool isBlockEnd(std::size_t p) const;
    Choice searchBlocks();
    Choice searchBlock();
    void startAtTextEnd();
    void startBehindBlock();
    void addPaths();
    void addFound(bool hasPath);
    std::uint16_t columnOf(BlockPaths::Word const& word) const noexcept {
        return cache_.cells()[word.cell].word.column;
    }
    template <class Give>
    std::uint32_t walk(std::uint32_t number, Give&& give) const;
    template <class Give>
    void giveWords(Found const& found, Give&& give) const;
    void forgetSums() noexcept;
    void collect(Extent extent);
    void collectSegment(std::size_t p, std::size_t end, Extent extent);
    void startSegment(std::size_t p);
    void findForms(std::size_t p, std::size_t end, Extent extent);
    void addStarts(unsigned char const* text, std::size_t length, std::size_t p, std::size_t end, Extent extent);
    void setPlace(std::size_t p, std::size_t width, std::uint32_t bundle, Extent extent);
    void setRuns(std::size_t p, std::size_t end);
    void setRun(std::size_t p, std::size_t end, RunCosts costs);
    void scanInside(std::size_t p);
    void scanOverhangs(std::size_t p);

    Choice choose(Extent extent);
    void startChoice();
    bool chooseSegment(std::size_t begin, std::uint32_t wordsEnd, Extent extent);
    bool chooseWords(std::size_t begin, Extent extent);
    std::size_t enterPlace(std::size_t p);
    void fillNumbers(Place const& place) noexcept;
    // With registers of 512 bits; see best_path_choice_wide.cpp.
    struct WideConstants;
    struct WideChoice;
    bool chooseWordsWide(std::size_t begin, Extent extent);
    bool chooseWideAt(std::size_t p, Extent extent, WideConstants const& constants);
    void chooseUnsure(std::size_t p, std::size_t first, unsigned unsure, std::uint64_t* best);
    bool searchAgain(std::size_t begin);
    void endSegment(std::size_t begin);
    void slide(std::size_t p);
    void rebase(std::size_t p);
    Followers followersOf(Place const& place) const noexcept;
    std::uint64_t sureBelow(std::uint32_t low) const noexcept;
    template <bool kAtEnd>
    bool chooseAt(std::size_t p, Extent extent);
    bool chooseAnywhere(std::size_t p, Extent extent);
    bool chooseRun(std::size_t p);
    std::uint32_t lowUnknown(std::size_t p, Extent extent) const noexcept;
    std::uint32_t needlessFrom(Place const& place, std::uint32_t lowUnknown) const noexcept;
    bool setBound(std::size_t p, Bound bound, std::uint32_t lowUnknown, bool needless);
    std::uint64_t endWithUnknown(Place const& place, std::size_t first, BundleCell::Arc arc);
    std::uint64_t chooseSlowly(std::size_t p, std::uint32_t rowOffset);
    void boundInside(std::size_t p);
    bool unknownsAreNeedless(std::size_t p, std::uint32_t least);

    SearchTable table_;
    BundleCache cache_;
    std::vector<FormFinder> finders_;  // by dictionary
    PlainRuns plain_;

    Parts parts_;
    DicSet const* dics_ = nullptr;

    // The group at work.
    std::span<std::string_view const> texts_;
    unsigned char const* memory_ = nullptr;  // where it starts
    RawBuffer<Found> found_;                 // by text, those before the one at work
    RawBuffer<Chosen> pathWords_;

    // The sentence at work, and where its blocks begin.
    std::string_view sentence_;
    RawBuffer<std::uint32_t> blocks_;
    BlockPaths paths_;  // of all blocks but the first
    BlockEnd end_;
    bool endsText_ = false;  // end_ is the end of a text

    // The block at work.
    unsigned char const* text_ = nullptr;
    std::size_t length_ = 0;
    std::size_t rest_ = 0;  // of the sentence from text_ on, in bytes
    RawBuffer<Place> places_;
    RawBuffer<std::uint8_t> reach_;  // by position: SearchTable's classes of the words that end there
    std::uint64_t wordCount_ = 0;
    std::uint32_t longest_ = 0;  // of the words and runs, in bytes
    std::size_t farthest_ = 0;   // end of the words so far
    bool tooMany_ = false;       // more words start at some place than a bundle has
    RawBuffer<Next> next_;       // by word
    // Of the best path: the number of the first word, and the sum of all word costs.
    std::uint32_t firstNumber_ = 0;
    std::uint32_t pathWordSum_ = 0;

    // The positions whose forms were looked up, when arcs are collected; they count from memory_. Runs are between
    // them.
    std::array<std::uint32_t, kWindow> starts_{};
    std::array<std::uint32_t, kWindow> ends_{};  // of their texts
    std::array<std::uint8_t, kWindow> widths_{};
    std::array<std::uint32_t, kWindow> bundles_{};  // without variants
    std::size_t startCount_ = 0;
    std::size_t nextStart_ = 0;      // number of the next one to be collected
    std::size_t lookedUpTo_ = 0;     // all before are looked up
    RawBuffer<Overhang> overhangs_;  // by place
    RawBuffer<Segment> segments_;
    std::size_t nextSegment_ = 0;  // the next one starts here or later

    // The words at work, when continuations are chosen: those that start not farther
    // away than words are long. See best_path_choice.cpp.
    RawBuffer<Bound> bounds_;
    RawBuffer<SumLine> packed_;  // by word from origin_ on
    std::uint32_t origin_ = 0;
    std::uint32_t baseSum_ = 0;   // what packed sums are counted from
    RawBuffer<Base> bases_;       // all base sums of the block but the first, end_.baseSum
    std::uint32_t rebaseAt_ = 0;  // the least sum of a position that asks for another one
    bool tooFar_ = false;
    std::size_t segmentEnd_ = 0;
    Behind behind_;
};

/// Calls give(p, word) for the words of the path that word @p number of the block begins, as long as it returns true;
/// the number of the word behind the block, 0 when it has returned false.
template <class Give>
std::uint32_t BestPathSearch::walk(std::uint32_t number, Give&& give) const {
    std::size_t base = bases_.size();
    for (std::size_t p = 0; p != length_;) {
        Place const& place = places_[p];
        while (base != 0 && bases_[base - 1].place <= p) --base;
        Next const next = next_[place.firstWord + number];
        std::uint32_t connSum = (next & 0xFFFF) + (base != 0 ? bases_[base - 1].sum : end_.baseSum);
        std::uint32_t length = cache_.cells()[place.words + number].word.shortLength();
        if (length == 0) [[unlikely]]
            length = arcOf(place, number).length();
        if (!give(p, BlockPaths::Word{place.words + number, length, connSum})) return 0;
        p += length;
        for (std::uint32_t left = place.run; left > 1; --left) {
            PlainRuns::Inner const& inner = plain_.innerOf(text_[p - 1], text_[p]);
            connSum -= inner.cost;
            if (!give(p, BlockPaths::Word{inner.cell, 1, connSum})) return 0;
            ++p;
        }
        number = next >> 16;
    }
    return number;
}

/// Calls give(word) for the words of the path of @p found, each with its column.
template <class Give>
void BestPathSearch::giveWords(Found const& found, Give&& give) const {
    for (std::uint32_t i = found.begin; i != found.end; ++i) give(pathWords_[i]);
    paths_.read(found.behind, [&](BlockPaths::Word const& word) { give(Chosen{word, columnOf(word)}); });
}

template <class Visit>
void BestPathSearch::visitPath(std::size_t number, Visit&& visit) const {
    giveWords(found_[number], [&](Chosen const& chosen) {
        visit(chosen.column, chosen.word.length, [&] { return cache_.record(chosen.word.cell); });
    });
}

template <class Visit>
void BestPathSearch::readPath(std::size_t number, Visit&& visit) const {
    // Words wait for their records' addresses, which lie all over the memory.
    std::array<BlockPaths::Word, 16> waiting;
    std::size_t count = 0;
    std::uint32_t wordSum = found_[number].wordSum;
    auto const giveAll = [&] {
        for (std::size_t i = 0; i != count; ++i) {
            BlockPaths::Word const& next = waiting[i];
            BundleCell::Word const word = cache_.cells()[next.cell].word;
            unsigned char const* const record = cache_.record(next.cell);
            __builtin_prefetch(record);  // the morpheme's values come from there
            visit(PathWord{record, next.length, word.column, wordSum, next.connSum});
            wordSum -= word.cost;
        }
        count = 0;
    };
    giveWords(found_[number], [&](Chosen const& chosen) {
        cache_.prefetchRecord(chosen.word.cell);
        waiting[count++] = chosen.word;
        if (count == waiting.size()) giveAll();
    });
    giveAll();
}

}  // namespace TAVO

#endif
