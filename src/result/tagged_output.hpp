// Results as tagged input, so that a person can correct and analyse them again.
#ifndef TAVO_RESULT_TAGGED_OUTPUT_HPP
#define TAVO_RESULT_TAGGED_OUTPUT_HPP

#include <tavo/mrph.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// Takes the pieces of a tagged sentence in order.
class TaggedSink {
public:
    virtual ~TaggedSink() = default;
    /// ASCII, to be written as it stands.
    virtual void markup(std::string_view text) = 0;
    /// The value of an attribute of @p m, without entities.
    virtual void value(Mrph const& m, std::string_view text) = 0;
    /// The surface of @p morphemes [first, last), without entities.
    virtual void surface(std::vector<Mrph> const& morphemes, std::size_t first, std::size_t last) = 0;
};

/// Writes a sentence's morphemes as tagged input: each as a word with part of
/// speech, reading and standard form; annotations as annotations. Analysing the
/// text again gives equal morphemes. Morphemes that split a character stand
/// together without a tag, since a tag inside a character is none.
void writeTagged(TaggedSink& sink, std::vector<Mrph> const& morphemes);

/// The same as Shift_JIS text.
std::string taggedText(std::vector<Mrph> const& morphemes);

}  // namespace TAVO

#endif
