// One JSON object per input line.
#include "cli/utf8.hpp"
#include "output/line_writer.hpp"
#include "output/pos_names.hpp"
#include "output/token.hpp"
#include "output/value_text.hpp"

#include <charconv>

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

/// Appends UTF-8 as a JSON string. JSON cannot hold bytes that are not UTF-8:
/// each becomes U+FFFD.
void appendJsonString(OutBuffer& out, std::string_view text) {
    out.append('"');
    std::size_t plain = 0;  // start of what needs no change
    for (std::size_t at = 0; at < text.size();) {
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
    JsonWriter(OutputOptions const& options, TAVO::Tavo const& analyser)
        : LineWriter(options), encoding_(options.encoding), names_(analyser, Encoding::Utf8, options.showClasses) {}

    void beginLine(std::string_view line, OutBuffer& out) override {
        out.append("{\"text\":");
        appendRead(out, line);
        if (isRanked()) out.append(",\"analyses\":[");
    }

    void beginAnalysis(Rank const& rank, OutBuffer& out) override {
        byte_ = character_ = 0;
        first_ = true;
        if (!isRanked()) return out.append(",\"morphemes\":[");
        out.append(rank.number == 1 ? "{\"rank\":" : ",{\"rank\":");
        appendNumber(out, rank.number);
        cost(out, ",\"connection_cost\":", rank, &TAVO::PathCost::connection);
        cost(out, ",\"word_cost\":", rank, &TAVO::PathCost::word);
        out.append(",\"morphemes\":[");
    }

    void writePiece(Analysis const& analysis, OutBuffer& out) override {
        forEachToken(
            analysis, morphemes_, [&](Token const& token) { writeToken(analysis.text, token, out); }, [] {});
    }

    void endAnalysis(bool, OutBuffer& out) override { out.append(isRanked() ? "]}" : "]"); }

    void endLine(OutBuffer& out) override { out.append(isRanked() ? "]}\n" : "}\n"); }

private:
    void writeToken(LineText const& text, Token const& token, OutBuffer& out) {
        std::string_view const word = text.slice(token.begin, token.end);
        if (!first_) out.append(',');
        first_ = false;
        out.append("{\"surface\":");
        appendRead(out, word);
        writeValues(text, token, out);
        // An annotation stands beside the text, so it takes no room there.
        bool const beside = token.morpheme != nullptr && token.morpheme->isAnnotation();
        position(out, ",\"start\":", ",\"end\":", byte_, beside ? 0 : word.size());
        // In Shift_JIS, characters are counted after conversion.
        std::size_t const characters = countCharacters(text.isUtf8() ? word : std::string_view(sjisToUtf8(word)));
        position(out, ",\"char_start\":", ",\"char_end\":", character_, beside ? 0 : characters);
        bool const unknown = token.morpheme == nullptr || TAVO::MrphAccess::isUnknown(*token.morpheme);
        out.append(unknown ? ",\"unknown\":true}" : ",\"unknown\":false}");
    }

    void writeValues(LineText const& text, Token const& token, OutBuffer& out) {
        if (token.morpheme == nullptr) {
            return out.append(",\"pos\":null,\"base_form\":null,\"reading\":null,\"pronunciation\":null,\"cost\":null");
        }
        TAVO::Mrph const& m = *token.morpheme;
        out.append(",\"pos\":");
        appendJsonString(out, names_.name(m));
        value(out, ",\"base_form\":", m.getStdForm(true), text, token);
        value(out, ",\"reading\":", m.getRead(true), text, token);
        value(out, ",\"pronunciation\":", m.getPron(true), text, token);
        out.append(",\"cost\":");
        appendNumber(out, static_cast<std::size_t>(m.getCost()));
    }

    void value(OutBuffer& out, std::string_view key, std::string const& sjis, LineText const& text,
               Token const& token) {
        out.append(key);
        if (sjis.empty()) return out.append("null");
        if (sjis == TAVO::MrphAccess::form(*token.morpheme)) {
            appendRead(out, ownForm(token, text, scratch_));
        } else {
            appendJsonString(out, sjisToUtf8(sjis));
        }
    }

    static void cost(OutBuffer& out, std::string_view key, Rank const& rank, unsigned int TAVO::PathCost::*sum) {
        out.append(key);
        if (rank.cost == nullptr) return out.append("null");
        appendNumber(out, rank.cost->*sum);
    }

    /// Text as it was read; JSON is always UTF-8.
    void appendRead(OutBuffer& out, std::string_view text) const {
        if (encoding_ == Encoding::Utf8) return appendJsonString(out, text);
        appendJsonString(out, sjisToUtf8(text));
    }

    static void position(OutBuffer& out, std::string_view startKey, std::string_view endKey, std::size_t& at,
                         std::size_t length) {
        out.append(startKey);
        appendNumber(out, at);
        at += length;
        out.append(endKey);
        appendNumber(out, at);
    }

    Encoding encoding_;
    PosNames names_;
    std::size_t byte_ = 0, character_ = 0;  // where in the line the next word starts
    bool first_ = true;
    std::string scratch_;
    std::vector<TAVO::Mrph> morphemes_;
};

}  // namespace

std::unique_ptr<LineWriter> makeJsonWriter(OutputOptions const& options, TAVO::Tavo const& analyser) {
    return std::make_unique<JsonWriter>(options, analyser);
}

}  // namespace tool
