// Where the bytes of a text stand in the text it was made from.
#ifndef TAVO_SPLIT_TEXT_ORIGINS_HPP
#define TAVO_SPLIT_TEXT_ORIGINS_HPP

#include <cstddef>
#include <vector>

namespace TAVO {

/// From @p position on, up to the next origin, a text is the source from @p source on. The text before @p position ends
/// in the source at @p endBefore: where something was taken out that is before @p source, and behind an entity.
struct TextOrigin {
    std::size_t position;
    std::size_t source;
    std::size_t endBefore;
};

/// The first origin is that of position 0; no origins: the text is its source.
class TextOrigins {
public:
    /// Positions ascend; of several at one position the last tells what stands there.
    void add(TextOrigin origin) { origins_.push_back(origin); }
    /// Where the byte at @p position stands in the source.
    std::size_t begin(std::size_t position) const noexcept;
    /// Behind the byte in front of @p position; 0 at 0.
    std::size_t end(std::size_t position) const noexcept;
    /// Origins in what the source was made from, as @p before tells.
    TextOrigins through(TextOrigins const& before) const;

    std::vector<TextOrigin> const& list() const noexcept { return origins_; }

private:
    std::vector<TextOrigin> origins_;
};

}  // namespace TAVO

#endif
