// One JSON object per input line.
#include "cli/utf8.hpp"
#include "output/line_writer.hpp"
#include "output/word_layouts.hpp"

#include <charconv>
#include <cstring>
#include <iterator>
#include <limits>

namespace tool {

namespace {

void appendNumber(OutBuffer& out, std::size_t value) {
    constexpr std::size_t kDigits = 20;
    char* const to = out.reserve(kDigits);
    out.finish(std::to_chars(to, to + kDigits, value).ptr);
}

void appendEscape(OutBuffer& out, char c) {
    constexpr char kHex[] = "0123456789abcdef";
    switch (c) {
        case '\n':
            return out.append("\\n");
        case '\r':
            return out.append("\\r");
        case '\t':
            return out.append("\\t");
        case '"':
            return out.append("\\\"");
        case '\\':
            return out.append("\\\\");
        default:
            break;
    }
    out.append("\\u00");
    out.append(kHex[static_cast<unsigned char>(c) >> 4]);
    out.append(kHex[c & 0xF]);
}

/// True for three bytes that are a character of U+1000 to U+CFFF.
bool isPlainTriple(char const* bytes) noexcept {
    auto const byte = [bytes](int i) { return static_cast<unsigned char>(bytes[i]); };
    return byte(0) >= 0xE1 && byte(0) <= 0xEC && (byte(1) & 0xC0U) == 0x80 && (byte(2) & 0xC0U) == 0x80;
}

/// Appends UTF-8 as a JSON string. JSON cannot hold bytes that are not UTF-8:
/// each becomes U+FFFD.
void appendJsonString(OutBuffer& out, std::string_view text) {
    out.append('"');
    std::size_t plain = 0;  // start of what needs no change
    for (std::size_t at = 0; at < text.size();) {
        // Kana, most Chinese characters and what else is as plain.
        if (at + 3 <= text.size() && isPlainTriple(text.data() + at)) {
            at += 3;
            continue;
        }
        Utf8Char const c = decodeUtf8(text.substr(at));
        bool const change = !c.valid || c.character < 0x20 || c.character == '"' || c.character == '\\';
        if (change) {
            out.append(text.substr(plain, at - plain));
            if (c.valid) {
                appendEscape(out, text[at]);
            } else {
                out.append("\xEF\xBF\xBD");
            }
            plain = at + 1;
        }
        at += c.bytes;
    }
    out.append(text.substr(plain));
    out.append('"');
}

class JsonWriter final : public LineWriter {
public:
    explicit JsonWriter(OutputOptions const& options)
        : LineWriter(options), encoding_(options.encoding), showClasses_(options.showClasses) {}

    TAVO::TokenTableOptions asksFor() const override {
        TAVO::TokenTableOptions options;
        options.values.push_back(showClasses_ ? TAVO::WordValue::of('h')
                                              : TAVO::WordValue{TAVO::WordValue::Kind::Pos, {}});
        for (char const letter : {'s', 'k', 'p'}) options.values.push_back(TAVO::WordValue::of(letter));
        return options;
    }

    void beginLine(std::string_view line, OutBuffer& out) override {
        out.append("{\"text\":");
        appendText(out, line);
        if (isRanked()) out.append(",\"analyses\":[");
    }

    void writeAnalysis(Words const& words, Rank const& rank, bool, OutBuffer& out) override {
        if (isRanked()) {
            out.append(rank.number == 1 ? "{\"rank\":" : ",{\"rank\":");
            appendNumber(out, rank.number);
            cost(out, ",\"connection_cost\":", rank, &TAVO::PathCost::connection);
            cost(out, ",\"word_cost\":", rank, &TAVO::PathCost::word);
        }
        out.append(",\"morphemes\":[");
        layouts_.begin(words);
        character_ = 0;
        for (std::size_t i = words.begin(); i != words.end(); ++i) {
            if (i != words.begin()) out.append(',');
            writeWord(words, i, out);
        }
        out.append(isRanked() ? "]}" : "]");
    }

    void endLine(OutBuffer& out) override { out.append(isRanked() ? "]}\n" : "}\n"); }

private:
    void writeWord(Words const& words, std::size_t i, OutBuffer& out) {
        std::string_view const shown = words.table.shownText(i, words.text);
        auto const write = [&](OutBuffer& to) { return writeValues(words, i, shown, to); };
        auto const [text, extra] = layouts_.of(words.number(i), shown, write);
        constexpr std::size_t kDigits = 20, kKeys = 64;
        char* to = out.reserve(text.size() + 4 * kDigits + kKeys);
        to = put(to, text);
        to = put(to, words.table.begin()[i]);
        to = put(to, ",\"end\":");
        to = put(to, words.table.end()[i]);
        to = put(to, ",\"char_start\":");
        to = put(to, character_);
        to = put(to, ",\"char_end\":");
        // An annotation stands beside the text, so it takes no room there.
        if ((extra & kAnnotation) == 0) character_ += extra >> kCountShift;
        to = put(to, character_);
        out.finish(put(to, (extra & kUnknown) != 0 ? ",\"unknown\":true}" : ",\"unknown\":false}"));
    }

    static char* put(char* to, std::string_view text) noexcept {
        std::memcpy(to, text.data(), text.size());
        return to + text.size();
    }
    static char* put(char* to, std::uint32_t number) noexcept {
        return std::to_chars(to, to + std::numeric_limits<std::uint32_t>::digits10 + 1, number).ptr;
    }

    /// All before the position; what tells the rest.
    std::uint32_t writeValues(Words const& words, std::size_t i, std::string_view shown, OutBuffer& out) {
        constexpr std::string_view kKeys[] = {",\"pos\":", ",\"base_form\":", ",\"reading\":", ",\"pronunciation\":"};
        bool const isAnalysed = words.isAnalysed(i);
        out.append("{\"surface\":");
        appendText(out, shown);
        for (std::size_t value = 0; value != std::size(kKeys); ++value) {
            out.append(kKeys[value]);
            std::string_view const text = words.table.value(i, shown, value);
            // A part of speech has a name, and may have an empty one.
            isAnalysed && (value == 0 || !text.empty()) ? appendText(out, text) : out.append("null");
        }
        out.append(",\"cost\":");
        if (isAnalysed)
            appendNumber(out, static_cast<std::size_t>(words.of(i).cost));
        else
            out.append("null");
        out.append(",\"start\":");
        // In Shift_JIS, characters are counted after conversion.
        std::size_t const characters =
            countCharacters(encoding_ == Encoding::Utf8 ? shown : std::string_view(sjisToUtf8(shown)));
        return static_cast<std::uint32_t>(characters) << kCountShift | (words.of(i).isAnnotation ? kAnnotation : 0) |
               (words.of(i).isUnknown ? kUnknown : 0);
    }

    static void cost(OutBuffer& out, std::string_view key, Rank const& rank, unsigned int TAVO::PathCost::*sum) {
        out.append(key);
        if (rank.cost == nullptr) return out.append("null");
        appendNumber(out, rank.cost->*sum);
    }

    /// Text in the user's encoding; JSON is always UTF-8.
    void appendText(OutBuffer& out, std::string_view text) const {
        if (encoding_ == Encoding::Utf8) return appendJsonString(out, text);
        appendJsonString(out, sjisToUtf8(text));
    }

    // What stands behind the number of characters.
    static constexpr std::uint32_t kUnknown = 1, kAnnotation = 2;
    static constexpr unsigned kCountShift = 2;

    Encoding encoding_;
    bool showClasses_;
    std::uint32_t character_ = 0;  // where in the line the next word starts
    WordLayouts layouts_;
};

}  // namespace

std::unique_ptr<LineWriter> makeJsonWriter(OutputOptions const& options) {
    return std::make_unique<JsonWriter>(options);
}

}  // namespace tool
