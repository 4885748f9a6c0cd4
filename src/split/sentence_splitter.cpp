#include "split/sentence_splitter.hpp"

#include "base/sjis.hpp"

#include <algorithm>

namespace TAVO {
namespace {

/// Length of the delimiter that stands at @p pos, 0 when none does; the first
/// one of the list that fits wins.
std::size_t delimiterAt(std::string_view text, std::size_t pos, std::vector<std::string> const& delimiters) {
    for (std::string const& delimiter : delimiters)
        if (!delimiter.empty() && text.substr(pos).starts_with(delimiter)) return delimiter.size();
    return 0;
}

/// The line breaks of a text, one after the other.
class LineBreaks {
public:
    explicit LineBreaks(std::string_view text) : text_(text), cr_(find('\r', 0)), lf_(find('\n', 0)) {}

    /// Position of the first CR or LF from @p pos on, which never decreases; npos when there is none.
    std::size_t next(std::size_t pos) {
        if (cr_ < pos) cr_ = find('\r', pos);
        if (lf_ < pos) lf_ = find('\n', pos);
        return std::min(cr_, lf_);
    }

private:
    std::size_t find(char mark, std::size_t pos) const {
        pos = text_.find(mark, pos);
        while (pos != npos && isInsideCharacter(text_, pos)) pos = text_.find(mark, pos + 1);
        return pos;
    }

    std::string_view text_;
    std::size_t cr_, lf_;
};

using PieceSink = std::function<void(std::string_view)>;

class Splitter {
public:
    Splitter(std::vector<std::string> const& delimiters, PieceSink const& piece, SpanFinder const& spans)
        : delimiters_(delimiters), piece_(piece), findSpans_(spans) {}

    void operator()(std::string_view line) const {
        std::vector<TextSpan> const spans =
            findSpans_ && !delimiters_.empty() ? findSpans_(line) : std::vector<TextSpan>();
        auto span = spans.begin();
        std::size_t start = 0;
        for (std::size_t pos = 0; pos < line.size() && !delimiters_.empty();) {
            std::size_t const limit = span == spans.end() ? line.size() : span->begin;
            if (pos >= limit) {
                pos = std::max(pos, span->end);
                ++span;
                continue;
            }
            std::size_t const matched = delimiterAt(line.substr(0, limit), pos, delimiters_);
            if (matched == 0) {
                pos += charWidth(line, pos);
                continue;
            }
            pos += matched;
            piece_(line.substr(start, pos - start));
            start = pos;
        }
        if (start < line.size()) piece_(line.substr(start));
    }

private:
    std::vector<std::string> const& delimiters_;
    PieceSink const& piece_;
    SpanFinder const& findSpans_;
};

}  // namespace

void splitText(std::string_view text, Settings const& settings, PieceSink const& piece, SpanFinder const& spans) {
    Splitter const split(settings.delimiters, piece, spans);
    std::size_t start = 0;
    if (settings.mode(Mode::DelimitCRLF) == 1) {
        bool const drop = settings.mode(Mode::DeleteCRLF) == 1;
        LineBreaks breaks(text);
        for (std::size_t pos = breaks.next(0); pos != npos; pos = breaks.next(start)) {
            std::size_t const end = pos + (text.substr(pos).starts_with("\r\n") ? 2 : 1);
            split(text.substr(start, (drop ? pos : end) - start));
            start = end;
        }
    }
    split(text.substr(start));
}

std::string deleteLineBreaks(std::string_view text, TextOrigins& origins) {
    std::string result;
    result.reserve(text.size());
    std::size_t keptEnd = 0;  // of the last character that stays
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t const width = charWidth(text, pos);
        if (text[pos] != '\r' && text[pos] != '\n') {
            if (pos != keptEnd || pos == 0) origins.add({result.size(), pos, keptEnd});
            result.append(text, pos, width);
            keptEnd = pos + width;
        }
        pos += width;
    }
    return result;
}

}  // namespace TAVO
