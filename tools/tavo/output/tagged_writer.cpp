// Tagged input again, for correcting by hand and analysing once more.
#include "base/sjis.hpp"
#include "output/line_writer.hpp"

#include "result/tag_attributes.hpp"

#include <algorithm>
#include <iterator>

namespace tool {

namespace {

constexpr struct {
    std::string_view key;
    char letter;
} kAttributes[] = {{" PartOfSP=\"", 'h'}, {" Read=\"", 'K'}, {" StdForm=\"", 'S'}};

class TaggedWriter final : public LineWriter {
public:
    explicit TaggedWriter(OutputOptions const& options) : LineWriter(options), encoding_(options.encoding) {}

    TAVO::TokenTableOptions asksFor() const override {
        TAVO::TokenTableOptions options;
        for (auto const& attribute : kAttributes) options.values.push_back(TAVO::WordValue::of(attribute.letter));
        return options;
    }

    void writeAnalysis(Words const& words, Rank const&, bool carriageReturn, OutBuffer& out) override {
        auto sentence = words.table.firstSentence()[words.text];
        std::string open;  // words that end inside a character, which no tag may cut
        auto const writeOpen = [&] {
            appendEncoded(out, open);
            open.clear();
        };
        for (std::size_t i = words.begin(); i != words.end(); ++i) {
            for (; words.table.sentenceEnds()[sentence] <= i; ++sentence) writeOpen();
            std::string_view const shown = words.table.shownText(i, words.text);
            if (!words.isAnalysed(i)) {
                // It comes out as it went in: malformed markup too, so that it can be mended.
                writeOpen();
                words.table.hasOwnText() ? out.append(shown) : appendEncoded(out, shown);
                continue;
            }
            if (open.empty() && !isCut(shown)) {
                writeElement(words, i, shown, out);
                continue;
            }
            open += shown;
            if (!isCut(open)) writeOpen();
        }
        writeOpen();
        out.append(carriageReturn ? "\r\n" : "\n");
    }

private:
    void writeElement(Words const& words, std::size_t i, std::string_view shown, OutBuffer& out) {
        bool const isAnnotation = words.of(i).isAnnotation;
        out.append(isAnnotation ? "<annotation" : "<word");
        for (std::size_t index = 0; index != std::size(kAttributes); ++index) {
            std::string_view const value = words.table.value(i, shown, index);
            bool const isBroken = encoding_ == Encoding::Utf8 && value.ends_with("\xEF\xBF\xBD") && value != shown;
            if (value.empty() || isBroken || isCut(value)) continue;
            out.append(kAttributes[index].key);
            appendEncoded(out, value);
            out.append('"');
        }
        out.append('>');
        appendEncoded(out, shown);
        out.append(isAnnotation ? "</annotation>" : "</word>");
    }

    /// True where a mark behind @p text would become part of it.
    bool isCut(std::string_view text) const noexcept {
        return encoding_ == Encoding::Sjis && TAVO::isInsideCharacter(text, text.size());
    }

    /// Text with entities. In UTF-8 no byte of a longer character is a mark.
    void appendEncoded(OutBuffer& out, std::string_view text) const {
        if (encoding_ == Encoding::Sjis) return out.append(TAVO::encodeEntities(text));
        for (std::size_t pos = 0; pos < text.size();) {
            std::size_t const mark = std::min(text.find_first_of("<>&'\"", pos), text.size());
            out.append(text.substr(pos, mark - pos));
            if (mark < text.size()) out.append(TAVO::encodeEntities(text.substr(mark, 1)));
            pos = mark + 1;
        }
    }

    Encoding encoding_;
};

}  // namespace

std::unique_ptr<LineWriter> makeTaggedWriter(OutputOptions const& options) {
    return std::make_unique<TaggedWriter>(options);
}

}  // namespace tool
