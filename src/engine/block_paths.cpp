#include "engine/block_paths.hpp"

namespace TAVO {
void BlockPaths::clear() noexcept {
    words_.clear();
    paths_.clear();
    blocks_.clear();
}

void BlockPaths::forget() noexcept {
    constexpr std::size_t kKept = std::size_t{1} << 16;
    words_.shrink(kKept);
    paths_.shrink(kKept);
    blocks_.shrink(kKept);
    starts_.shrink(kKept);
}

void BlockPaths::startBlock() {
    blocks_.push(static_cast<std::uint32_t>(paths_.size()));
    starts_.clear();
}

void BlockPaths::startPath() {
    if (starts_.empty()) first_ = paths_.size();
    auto const begin = static_cast<std::uint32_t>(words_.size());
    paths_.push({begin, begin, begin, begin, 0});
    next_ = 0;
}

bool BlockPaths::add(std::size_t p, Word const& word) {
    Path& path = paths_.end()[-1];
    if (paths_.size() - 1 == first_) {
        starts_.push(static_cast<std::uint32_t>(p));
    } else {
        Path const& first = paths_[first_];
        while (next_ < starts_.size() && starts_[next_] < p) ++next_;
        if (next_ < starts_.size() && starts_[next_] == p && words_[first.begin + next_].cell == word.cell) {
            path.rest = first.begin + next_;
            path.restEnd = first.end;
            return false;
        }
    }
    words_.push(word);
    ++path.end;
    return true;
}

void BlockPaths::endPath(std::uint32_t number) noexcept {
    Path& path = paths_.end()[-1];
    path.behind = path.rest == path.restEnd ? number : paths_[first_].behind;
}

}  // namespace TAVO
