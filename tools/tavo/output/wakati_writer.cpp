// Words separated by one blank, an input line an output line.
#include "output/line_writer.hpp"

#include <cstring>

namespace tool {

namespace {

bool isBlank(std::string_view word) noexcept { return word.find_first_not_of(' ') == std::string_view::npos; }

class WakatiWriter final : public LineWriter {
public:
    using LineWriter::LineWriter;

    TAVO::TokenTableOptions asksFor() const override { return {.surfacesOnly = true, .values = {}}; }

    void writeAnalysis(Words const& words, Rank const& rank, bool carriageReturn, OutBuffer& out) override {
        TAVO::TokenTable& table = words.table;
        std::string_view const text = table.text(words.text);
        char* to = out.reserve(2 * text.size() + kCopyBytes);  // at most one separator a byte, and whole blocks
        bool first = true;
        for (std::size_t i = words.begin(); i != words.end(); ++i) {
            std::string_view const word = table.surface(i, words.text);
            if (table.hasOwnText() && words.of(i).isAnnotation) {
                out.finish(to);
                if (!first) out.append(' ');
                std::string_view const annotation = table.shownText(i, words.text);
                out.append(annotation);
                to = out.reserve(2 * text.size() + kCopyBytes);
                first = false;
                continue;
            }
            // A word of blanks is not written: the separators stand for it.
            if (word.front() == ' ' && isBlank(word)) continue;
            if (!first) *to++ = ' ';
            first = false;
            if (word.size() <= kCopyBytes) {
                std::memcpy(to, word.data(), kCopyBytes);  // padding behind the line keeps this inside the buffer
            } else {
                std::memcpy(to, word.data(), word.size());
            }
            to += word.size();
        }
        out.finish(to);
        // An empty line behind the best analysis would end those of this input.
        if (rank.number == 1 || !first) out.append(carriageReturn ? "\r\n" : "\n");
    }

private:
    static constexpr std::size_t kCopyBytes = TAVO::kPaddingBytes;
};

}  // namespace

std::unique_ptr<LineWriter> makeWakatiWriter(OutputOptions const& options) {
    return std::make_unique<WakatiWriter>(options);
}

}  // namespace tool
