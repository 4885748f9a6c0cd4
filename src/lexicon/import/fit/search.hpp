// A word lattice over text with the source's exact costs or any other edge
// costs: for fitting the shifts and for measuring what rounding changes.
#ifndef TAVO_LEXICON_IMPORT_FIT_SEARCH_HPP
#define TAVO_LEXICON_IMPORT_FIT_SEARCH_HPP

#include "lexicon/import/source/source_lexicon.hpp"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::importer {

/// Prefix lookup over the forms of a lexicon, and which words a lattice needs.
class FormIndex {
public:
    explicit FormIndex(Lexicon const& lexicon);

    /// Calls visit(length, first, last) for every form that is a prefix of
    /// @p text, shortest first; the words are wordsOf()[first..last).
    template <class Visit>
    void prefixes(std::string_view text, Visit&& visit) const;

    /// Indices of words, form by form in byte order. Of the words of a form with
    /// equal row and column only the cheapest is listed: the others can't win.
    std::vector<std::uint32_t> const& wordsOf() const noexcept { return words_; }
    /// Those of the form of word @p word.
    std::span<std::uint32_t const> sameForm(std::uint32_t word) const {
        std::uint32_t const form = formOf_[word];
        return std::span(words_).subspan(starts_[form], starts_[form + 1] - starts_[form]);
    }

private:
    /// The first two bytes of @p text as a number that sorts as they do.
    static std::size_t firstBytes(std::string_view text) noexcept {
        auto const byteAt = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
        return static_cast<std::size_t>(byteAt(0)) << 8 | (text.size() > 1 ? byteAt(1) : 0);
    }

    std::vector<std::string_view> forms_;  // sorted, unique, none empty
    std::vector<std::uint32_t> firstOf_;   // by first two bytes: the first form that begins so, or later ones
    std::vector<std::uint32_t> starts_;    // into words_, one more than forms_
    std::vector<std::uint32_t> words_;
    std::vector<std::uint32_t> formOf_;  // per word of the lexicon, into forms_
};

struct Node {
    std::uint32_t word;   ///< index into Lexicon::words
    std::uint32_t start;  ///< in bytes
    std::uint32_t end;
    std::uint32_t previous;  ///< node index, kNone at the text's beginning
    std::int64_t best;       ///< cheapest way from the beginning to this node, itself included
    std::int64_t rest = 0;   ///< cheapest way from behind this node to the end
};

struct Lattice {
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    static constexpr std::int64_t kNoPath = INT64_MAX / 4;

    std::vector<Node> nodes;             ///< ordered by start
    std::vector<std::uint32_t> firstAt;  ///< per position: first node that starts there; size + 2 entries
    std::vector<std::vector<std::uint32_t>> endingAt;
    std::int64_t best = kNoPath;  ///< of the whole text
    std::uint32_t last = kNone;   ///< last node of the best path

    /// The best path's nodes from first to last; empty without one.
    std::vector<std::uint32_t> path() const;
};

/// Fills nodes, firstAt and endingAt with every word at every character of @p text
/// (code page 932) that can be reached.
void fillLattice(Lattice& lattice, FormIndex const& index, Lexicon const& lexicon, std::string_view text);

/// Forward search: edge(left, right) is the cost of word right behind word left,
/// kNoPath when forbidden; left or right is kNone at the text's ends.
/// Of equal ways the one through the node made first wins.
template <class Edge>
void searchForward(Lattice& lattice, std::size_t textBytes, Edge&& edge);

/// Sets rest of every node.
template <class Edge>
void searchBackward(Lattice& lattice, std::size_t textBytes, Edge&& edge);

/// The source's own cost of word @p right behind @p left.
struct ExactEdge {
    Lexicon const& lexicon;
    std::int64_t operator()(std::uint32_t left, std::uint32_t right) const noexcept {
        std::uint32_t const row = left == Lattice::kNone ? 0 : lexicon.words[left].row;
        std::uint32_t const col = right == Lattice::kNone ? 0 : lexicon.words[right].col;
        std::int16_t const cost = lexicon.matrix.at(row, col);
        if (cost == Matrix::kForbidden) return Lattice::kNoPath;
        return cost + (right == Lattice::kNone ? 0 : lexicon.words[right].cost);
    }
};

// ---- templates ----

template <class Visit>
void FormIndex::prefixes(std::string_view text, Visit&& visit) const {
    if (text.empty()) return;
    auto const formAt = [&](std::size_t bytes) { return forms_.begin() + firstOf_[bytes]; };
    auto const give = [&](auto form, std::size_t length) {
        auto const at = static_cast<std::size_t>(form - forms_.begin());
        visit(length, starts_[at], starts_[at + 1]);
    };
    if (auto const one = formAt(firstBytes(text.substr(0, 1))); one != forms_.end() && *one == text.substr(0, 1))
        give(one, 1);
    auto low = formAt(firstBytes(text)), high = formAt(firstBytes(text) + 1);
    if (low != high && low->size() == 1) ++low;
    for (std::size_t depth = 1; depth < text.size() && low != high; ++depth) {
        auto const byteAt = [depth](std::string_view form) { return static_cast<unsigned char>(form[depth]); };
        auto const wanted = static_cast<unsigned char>(text[depth]);
        auto const bisect = [&](auto from, auto to, unsigned limit) {
            while (from < to) {
                auto const mid = from + (to - from) / 2;
                if (byteAt(*mid) < limit)
                    from = mid + 1;
                else
                    to = mid;
            }
            return from;
        };
        if (depth > 1) {
            low = bisect(low, high, wanted);
            high = bisect(low, high, wanted + 1U);
        }
        if (low != high && low->size() == depth + 1) give(low++, depth + 1);
    }
}

template <class Edge>
void searchForward(Lattice& lattice, std::size_t textBytes, Edge&& edge) {
    auto const relax = [&](std::uint32_t right, std::uint32_t position, std::uint32_t& previous) {
        std::int64_t best = Lattice::kNoPath;
        if (position == 0) return edge(Lattice::kNone, right);
        for (std::uint32_t const left : lattice.endingAt[position]) {
            if (lattice.nodes[left].best >= Lattice::kNoPath) continue;
            std::int64_t const step = edge(lattice.nodes[left].word, right);
            if (step >= Lattice::kNoPath || lattice.nodes[left].best + step >= best) continue;
            best = lattice.nodes[left].best + step;
            previous = left;
        }
        return best;
    };
    for (Node& node : lattice.nodes) {
        node.previous = Lattice::kNone;
        node.best = relax(node.word, node.start, node.previous);
    }
    lattice.last = Lattice::kNone;
    lattice.best = relax(Lattice::kNone, static_cast<std::uint32_t>(textBytes), lattice.last);
}

template <class Edge>
void searchBackward(Lattice& lattice, std::size_t textBytes, Edge&& edge) {
    for (std::size_t i = lattice.nodes.size(); i-- > 0;) {
        Node& node = lattice.nodes[i];
        node.rest = Lattice::kNoPath;
        if (node.end == textBytes) {
            node.rest = edge(node.word, Lattice::kNone);
            continue;
        }
        for (std::uint32_t right = lattice.firstAt[node.end]; right < lattice.firstAt[node.end + 1]; ++right) {
            Node const& next = lattice.nodes[right];
            std::int64_t const step = edge(node.word, next.word);
            if (step < Lattice::kNoPath && next.rest < Lattice::kNoPath)
                node.rest = std::min(node.rest, step + next.rest);
        }
    }
}

}  // namespace TAVO::importer

#endif
