// Words separated by one blank, an input line an output line.
#include "output/line_writer.hpp"
#include "output/token.hpp"

#include <cstring>

namespace tool {

namespace {

bool isBlank(std::string_view word) noexcept { return word.find_first_not_of(' ') == std::string_view::npos; }

class WakatiWriter final : public LineWriter {
public:
    using LineWriter::LineWriter;

    void beginAnalysis(Rank const& rank, OutBuffer&) override {
        first_ = true;
        best_ = rank.number == 1;
    }

    void writePiece(Analysis const& analysis, OutBuffer& out) override {
        LineText const& text = analysis.text;
        // At most one separator a byte, and whole blocks are copied.
        char* to = out.reserve(2 * text.original().size() + kCopyBytes);
        bool first = first_;
        auto const write = [&](Token const& token) {
            std::string_view const word = text.slice(token.begin, token.end);
            // A word of blanks is not written: the separators stand for it.
            if (word.front() == ' ' && isBlank(word)) return;
            if (!first) *to++ = ' ';
            first = false;
            if (text.isUtf8() && word.size() <= kCopyBytes) {
                std::memcpy(to, word.data(), kCopyBytes);  // padding behind the line keeps this inside the buffer
            } else {
                std::memcpy(to, word.data(), word.size());
            }
            to += word.size();
        };
        forEachPiece(analysis, scratch_, write);
        first_ = first;
        out.finish(to);
    }

    void endAnalysis(bool carriageReturn, OutBuffer& out) override {
        // An empty line behind the best analysis would end those of this input.
        if (best_ || !first_) out.append(carriageReturn ? "\r\n" : "\n");
    }

private:
    static constexpr std::size_t kCopyBytes = kPaddingBytes;

    bool first_ = true;  // no word was written yet
    bool best_ = true;
    TokenScratch scratch_;
};

}  // namespace

std::unique_ptr<LineWriter> makeWakatiWriter(OutputOptions const& options) {
    return std::make_unique<WakatiWriter>(options);
}

}  // namespace tool
