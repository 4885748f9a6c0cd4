// The N best paths of a sentence in their exact order.
#ifndef TAVO_ENGINE_NBEST_NBEST_HPP
#define TAVO_ENGINE_NBEST_NBEST_HPP

#include "engine/nbest/all_paths.hpp"
#include "engine/nbest/path_tree.hpp"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace TAVO {

/// The order is that of a queue of partial paths, keyed by the best sums they
/// can come to (PathKey); among equal keys first in is first out. The queue
/// starts with the words that may begin the sentence; the first path is taken
/// out and either is complete, and the next result, or goes back extended by
/// each word that may follow. Words enter in the order of their making.
///
/// What that means inside one key: the paths that had this key when the queue
/// came to it form a list, in the order in which their beginnings were taken
/// out. Extending them by words that keep the key (tight edges) proceeds in
/// rounds over the list, so that a path which completes in fewer rounds comes
/// first, and inside a round paths keep the order of their beginnings, then that
/// of the words. For the very best key all paths start in the first round: the
/// order is by number of words, then by the order of making.
///
/// The queue itself would hold 2^k paths for k ties in a row, and one entry for
/// every edge passed. Neither is needed, since every entry leads to at least one
/// complete path with its own key (a node's sums are exact):
/// - Entries are dropped once as many others as results are missing have smaller
///   keys.
/// - When the list of a round is at least as long as the number of missing
///   results, all of them have the current key, and TiedPaths finds them in
///   order without keeping the rounds in between.
/// So at most n paths are open below the largest key waiting, and at most n times
/// the words of a path are ever extended.
class NBest {
public:
    /// Searches the best @p count paths (at least 1) of @p sentence, which has a
    /// complete path in @p lattice; fewer when the sentence has fewer.
    NBest(AllPaths const& lattice, Sentence const& sentence, std::size_t count);

    std::size_t size() const noexcept { return found_.size(); }
    PathKey key(std::size_t rank) const noexcept { return found_[rank].key; }
    /// The nodes of path @p rank (0 is the best), in text order.
    void nodes(std::size_t rank, std::vector<std::uint32_t>& out) const { tree_.nodes(found_[rank].lastStep, out); }

private:
    struct Found {
        std::uint32_t lastStep;
        PathKey key;
    };
    /// What the edges of a list add to a path's key.
    struct Excess {
        PathKey smallest = 0;  // above 0 over the edges that are not tight; 0: not looked at yet
        std::uint32_t tight = 0;
    };
    using Round = std::vector<PathTree::Step>;
    using Waiting = std::map<PathKey, Round>;

    void search();
    void takeKey(PathKey key);
    void extend(std::uint32_t step, std::uint32_t list, PathKey key);
    void wait(PathKey key, PathTree::Step path);
    void leave(Waiting::iterator paths);
    void pruneWaiting();
    Excess const& excessOf(std::uint32_t list);
    std::size_t missing() const noexcept { return count_ - found_.size(); }

    AllPaths const& lattice_;
    std::size_t count_;
    std::uint32_t firstList_;
    std::uint32_t startList_;
    std::vector<Excess> excess_;  // by list of the sentence
    PathTree tree_;               // the paths taken out
    std::vector<Found> found_;
    Round round_, next_;                      // of the key at work
    Waiting waiting_;                         // by key, in the order of arrival
    std::vector<Waiting::node_type> unused_;  // memory of those that left
    std::size_t waitingCount_ = 0;
    std::size_t wanted_ = 0;   // results that may come from waiting paths
    PathKey limit_ = kNoPath;  // paths of this key or a larger one are not needed
};

}  // namespace TAVO

#endif
