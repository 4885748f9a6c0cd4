#include "result/assembly.hpp"

#include "result/marked_sentence.hpp"

namespace TAVO {

void getMrphArray(std::vector<Mrph>& out, std::vector<LatticeNode const*> const& path, AnalyzerContext const& context,
                  Sentence const& sentence) {
    if (sentence.marks) {
        getMarkedMrphArray(out, path, context, sentence);
        return;
    }
    bool const divideWords = context.settings.mode(Mode::DivideWord) == 1;
    out.clear();
    out.reserve(path.size());
    RunJoiner joiner(context.reduce, out);
    char const* text = sentence.text.data();
    for (LatticeNode const* node : path) {
        Mrph m = makeMrph(text, node, context);
        text += node->length;
        deliverMrph(out, std::move(m), joiner, divideWords);
    }
    joiner.finish();
}

}  // namespace TAVO
