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
        auto const make = [&] { return makeMrph(text, node, context); };
        if (divideWords)
            deliverMrph(out, make(), joiner, divideWords);
        else
            joiner.addMade(MrphDic(node->record).pid(), make);
        text += node->length;
    }
    joiner.finish();
}

bool appendLengths(std::vector<unsigned int>& out, AnalyzerContext const& context, Sentence const& sentence) {
    if (sentence.marks || context.settings.mode(Mode::DivideWord) == 1) return false;
    LengthJoiner joiner(context.reduce, out);
    char const* text = sentence.text.data();
    for (LatticeNode const* node = sentence.bestStart; node != nullptr; node = node->next) {
        joiner.add(MrphDic(node->record).pid(), {text, node->length});
        text += node->length;
    }
    joiner.finish();
    return true;
}

}  // namespace TAVO
