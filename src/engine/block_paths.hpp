// The paths through the blocks of a long text, until it is known which of them are taken.
#ifndef TAVO_ENGINE_BLOCK_PATHS_HPP
#define TAVO_ENGINE_BLOCK_PATHS_HPP

#include "base/raw_buffer.hpp"

#include <cstddef>
#include <cstdint>

namespace TAVO {

/// Blocks are added from the last to the first, for each the paths from all words that start it. Most paths
/// of a block soon come to a word of its first one, and are kept up to there.
class BlockPaths {
public:
    struct Word {
        std::uint32_t cell;  ///< of the BundleCache
        std::uint32_t length;
        std::uint32_t connSum;
    };

    void clear() noexcept;
    /// Gives the memory of many words back.
    void forget() noexcept;

    void startBlock();
    /// Starts the path of the block's next word, in the order of their numbers.
    void startPath();
    /// Adds a word of the path, which starts at byte @p p of the block; false when the rest of the path is known.
    bool add(std::size_t p, Word const& word);
    /// @p number of the word behind the block that the path comes to.
    void endPath(std::uint32_t number) noexcept;

    /// Calls give(word) for the words from word @p number of the block added last to the end of the text.
    template <class Give>
    void read(std::uint32_t number, Give&& give) const {
        for (std::size_t block = blocks_.size(); block-- > 0;) {
            Path const& path = paths_[blocks_[block] + number];
            for (std::uint32_t i = path.begin; i != path.end; ++i) give(words_[i]);
            for (std::uint32_t i = path.rest; i != path.restEnd; ++i) give(words_[i]);
            number = path.behind;
        }
    }

private:
    struct Path {
        std::uint32_t begin, end;     // its own words
        std::uint32_t rest, restEnd;  // those of the block's first path
        std::uint32_t behind;
    };

    RawBuffer<Word> words_;
    RawBuffer<Path> paths_;
    RawBuffer<std::uint32_t> blocks_;  // the first path of each
    // Of the block at work: its first path with words, where these start, and which of them is compared next.
    std::size_t first_ = 0;
    RawBuffer<std::uint32_t> starts_;
    std::uint32_t next_ = 0;
};

}  // namespace TAVO

#endif
