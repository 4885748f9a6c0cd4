#include "output/line_writer.hpp"

namespace tool {

void LineWriter::beginLine(std::string_view, OutBuffer&) {}
void LineWriter::endLine(OutBuffer& out) {
    if (ranked_) out.append('\n');
}

std::unique_ptr<LineWriter> makeLineWriter(OutputOptions const& options, TAVO::Tavo const& analyser) {
    switch (options.kind) {
        case OutputKind::Wakati:
            return makeWakatiWriter(options);
        case OutputKind::Mecab:
            return makeMecabWriter(options, analyser);
        case OutputKind::Json:
            return makeJsonWriter(options);
        case OutputKind::Tagged:
            return makeTaggedWriter(options);
        case OutputKind::Tavo:
            break;
    }
    return makeFormatWriter(options, analyser);
}

}  // namespace tool
