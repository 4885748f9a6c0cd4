// The words with cooccurrence ids on the paths of a sentence, and how well they fit together.
#ifndef TAVO_ENGINE_COOC_COOC_HISTORIES_HPP
#define TAVO_ENGINE_COOC_COOC_HISTORIES_HPP

#include "engine/cooc/cooc_words.hpp"

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace TAVO {

/// Number of the character that begins at each byte of @p text, and of the end.
std::vector<std::uint32_t> characterNumbers(std::string_view text);

/// Each history is a shorter one and a word behind it; equal ones have one number. Scores are the sums of
/// coocScore() over all pairs of a history's words, and of these with the words before the sentence.
class CoocHistories {
public:
    static constexpr std::uint32_t kEmpty = 0;

    /// @p context: the words with ids before @p text in their order; its first character is number 0.
    CoocHistories(CoocSettings const& settings, CoocWords& words, std::string_view text,
                  std::span<CoocPlace const> context)
        : settings_(settings), words_(words), characters_(characterNumbers(text)), context_(context) {}

    /// @p history with a word of @p length bytes behind it that begins at byte @p begin: itself when the word has no
    /// ids.
    std::uint32_t extended(std::uint32_t history, unsigned char const* record, std::size_t begin, std::size_t length);
    std::uint64_t score(std::uint32_t history) const noexcept { return links_[history].score; }
    /// The score of a whole path, given as records with their lengths.
    template <class Path>
    std::uint64_t scoreOf(Path const& path) {
        std::uint32_t history = kEmpty;
        std::size_t begin = 0;
        for (auto const& [record, length] : path) {
            history = extended(history, record, begin, length);
            begin += length;
        }
        return score(history);
    }

private:
    struct Link {
        std::uint32_t before;
        CoocPlace place;
        std::uint64_t score;
    };

    CoocSettings const& settings_;
    CoocWords& words_;
    std::vector<std::uint32_t> characters_;
    std::span<CoocPlace const> context_;
    std::vector<Link> links_{{kEmpty, {}, 0}};
    // By the history before, ids and beginning: what the score is made of.
    std::map<std::pair<std::uint32_t, std::pair<CoocIds const*, std::size_t>>, std::uint32_t> known_;
};

}  // namespace TAVO

#endif
