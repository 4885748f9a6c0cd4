// A line of tagged text without its markup.
#ifndef TAVO_TEXT_TAGGED_LINE_HPP
#define TAVO_TEXT_TAGGED_LINE_HPP

#include "text/line_text.hpp"

#include <tavo/tavo.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// What the analysis of a tagged line covers, in the order in which it comes
/// out: the texts of the sentences with their annotations, and sentences that
/// failed as they were read. Reused from line to line.
class TaggedLine {
public:
    /// @p analyser has analysed the whole of @p line as tagged text. The result
    /// lives until the next call.
    LineText const& strip(LineText const& line, Tavo& analyser);
    /// The same without annotations: what positions count in.
    std::string_view plainText() const noexcept { return plainText_; }

private:
    void addSentence(LineText const& line, Tavo& analyser, int index);
    void addText(LineText const& line, std::string_view text, std::size_t at);
    void addPlainText(LineText const& line, std::size_t firstPart);

    LineText stripped_;
    std::string plainText_;
    std::vector<LineText::Part> parts_;
    std::vector<Mrph> morphemes_;
};

}  // namespace TAVO

#endif
