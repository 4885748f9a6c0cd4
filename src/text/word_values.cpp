#include "text/word_values.hpp"

#include "result/format.hpp"
#include "result/mrph_access.hpp"
#include "text/sjis_buffer.hpp"

#include <functional>

namespace TAVO {

std::string valueOf(WordValue const& value, Mrph const& m) {
    if (value.kind == WordValue::Kind::Formatted) {
        Directive unpadded = value.directive;
        unpadded.width = 0;
        std::string text;
        writeValue(text, unpadded, m, {});
        return text;
    }
    MrphCover const* const cover = MrphAccess::cover(m);
    bool const isPhrase = cover != nullptr && !cover->className.empty();
    std::string const name = isPhrase ? cover->className : m.getDisplayPartOfSP();
    return value.kind == WordValue::Kind::Pos ? name : name.substr(0, findMark(name, ":-/"));
}

std::vector<FormatPiece> formatPieces(std::string_view format, TextEncoding encoding) {
    format = format.substr(0, format.find('\0'));
    SjisBuffer buffer;
    buffer.add(format, 0, encoding);
    std::string_view const sjis = buffer.sjis();
    std::vector<FormatPiece> pieces;
    auto const last = [&pieces]() -> FormatPiece& {
        if (pieces.empty() || pieces.back().directive) pieces.emplace_back();
        return pieces.back();
    };
    auto const literal = [&](std::string_view bytes) {
        std::less<> const before;
        bool const inside = !before(bytes.data(), sjis.data()) && before(bytes.data(), sjis.data() + sjis.size());
        if (!inside) {  // the byte of an escape
            last().literal += bytes;
            return;
        }
        auto const at = static_cast<std::size_t>(bytes.data() - sjis.data());
        std::size_t const begin = buffer.offset(at);
        last().literal += format.substr(begin, buffer.offset(at + bytes.size()) - begin);
    };
    scanFormat(sjis, literal, [&](Directive const& directive) { last().directive = directive; });
    return pieces;
}

}  // namespace TAVO
