#include "result/assembly.hpp"

#include "result/mrph_access.hpp"

#include <span>

namespace TAVO {

void getMrphArray(std::vector<Mrph>& out, std::vector<LatticeNode const*> const& path, AnalyzerContext const& context,
                  Sentence const& sentence) {
    bool const divideWords = context.settings.mode(Mode::DivideWord) == 1;
    NodePool const& nodes = context.lattice.nodes();
    out.clear();
    out.reserve(path.size());
    RunJoiner joiner(context.reduce, out);
    char const* text = sentence.text.data();
    for (LatticeNode const* node : path) {
        std::span<LatticeNode const> const candidates = nodes.candidates(node);
        Mrph m = MrphAccess::fromNode(text, node, nodes.indexOf(candidates.data()),
                                      static_cast<unsigned int>(candidates.size()), &context);
        text += node->length;
        if (divideWords && m.getPartCount() > 1) {
            joiner.finish();
            MrphAccess::divideAndPush(m, out);
        } else {
            joiner.add(std::move(m));
        }
    }
    joiner.finish();
}

}  // namespace TAVO
