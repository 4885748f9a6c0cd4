// Results as tagged input, so that a person can correct and analyse them again.
#ifndef TAVO_RESULT_TAGGED_OUTPUT_HPP
#define TAVO_RESULT_TAGGED_OUTPUT_HPP

#include <tavo/mrph.hpp>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// Writes the pieces of a tagged sentence in order: mark-up and attribute values,
/// which are Shift_JIS, and the surfaces of morphemes.
class TaggedSink {
public:
    virtual ~TaggedSink() = default;
    virtual void markup(std::string_view text) = 0;
    /// The surface of @p morphemes[first .. last), entities included.
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
