#include "result/tagged_output.hpp"

#include "base/sjis.hpp"
#include "result/tag_attributes.hpp"

namespace TAVO {
namespace {

std::string_view formOf(Mrph const& m) {
    unsigned int length = 0;
    char const* const form = m.getFormWithoutNullEnd(length);
    return {form, length};
}

/// True when a mark behind @p text would become part of a character of it.
bool endsInsideCharacter(std::string_view text) {
    std::size_t pos = 0;
    while (pos + 1 < text.size()) pos += charWidth(text, pos);
    return pos < text.size() && isLeadByte(text[pos]);
}

void writeAttribute(TaggedSink& sink, Mrph const& m, char const* key, std::string_view value) {
    if (value.empty() || endsInsideCharacter(value)) return;
    sink.markup(std::string(" ") + key + "=\"");
    sink.value(m, value);
    sink.markup("\"");
}

void writeElement(TaggedSink& sink, std::vector<Mrph> const& morphemes, std::size_t index) {
    Mrph const& m = morphemes[index];
    bool const annotation = m.isAnnotation();
    sink.markup(annotation ? "<annotation" : "<word");
    writeAttribute(sink, m, "PartOfSP", m.getPartOfSP());
    writeAttribute(sink, m, "Read", m.getRead(false));
    writeAttribute(sink, m, "StdForm", m.getStdForm(false));
    sink.markup(">");
    sink.surface(morphemes, index, index + 1);
    sink.markup(annotation ? "</annotation>" : "</word>");
}

class TextSink : public TaggedSink {
public:
    void markup(std::string_view text) override { result += text; }
    void value(Mrph const&, std::string_view text) override { result += encodeEntities(text); }
    void surface(std::vector<Mrph> const& morphemes, std::size_t first, std::size_t last) override {
        std::string text;
        for (std::size_t i = first; i < last; ++i) text += formOf(morphemes[i]);
        result += encodeEntities(text);
    }

    std::string result;
};

}  // namespace

void writeTagged(TaggedSink& sink, std::vector<Mrph> const& morphemes) {
    for (std::size_t first = 0; first < morphemes.size();) {
        std::string text(formOf(morphemes[first]));
        std::size_t last = first + 1;
        while (last < morphemes.size() && endsInsideCharacter(text)) text += formOf(morphemes[last++]);
        if (last == first + 1 && !endsInsideCharacter(text))
            writeElement(sink, morphemes, first);
        else
            sink.surface(morphemes, first, last);
        first = last;
    }
}

std::string taggedText(std::vector<Mrph> const& morphemes) {
    TextSink sink;
    writeTagged(sink, morphemes);
    return std::move(sink.result);
}

}  // namespace TAVO
