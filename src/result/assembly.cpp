#include "result/assembly.hpp"

#include "dic/mrph_dic.hpp"
#include "result/converted_words.hpp"
#include "result/markup_assembly.hpp"
#include "result/mrph_access.hpp"
#include "result/mrph_delivery.hpp"

namespace TAVO {
namespace {

/// A morpheme that is made where it is to stay.
struct InPlace {
    char const* text;
    LatticeNode const* node;
    AnalyzerContext const& context;

    operator Mrph() const { return MrphAccess::fromNode(text, node, &context); }
};

void getPlainMrphArray(std::vector<Mrph>& out, std::span<LatticeNode const* const> path, AnalyzerContext const& context,
                       ReduceRules const& reduce, Sentence const& sentence) {
    bool const divideWords = context.settings.mode(Mode::DivideWord) == 1;
    out.clear();
    out.reserve(path.size());
    RunJoiner joiner(reduce, out);
    char const* text = sentence.text.data();
    if (sentence.conversion) {
        eachConvertedWord(path, context, sentence,
                          [&](Mrph&& m, std::size_t) { deliverMrph(out, std::move(m), joiner, divideWords); });
        path = {};
    }
    for (LatticeNode const* node : path) {
        if (divideWords)
            deliverMrph(out, MrphAccess::fromNode(text, node, &context), joiner, divideWords);
        else
            joiner.append(reduce.membershipOf(MrphDic(node->record).pid()), {text, node->length},
                          InPlace{text, node, context});
        text += node->length;
    }
    joiner.finish();
    if (!divideWords) reduce.phrases().join(out);
}

}  // namespace

void getMrphArray(std::vector<Mrph>& out, std::span<LatticeNode const* const> path, AnalyzerContext const& context,
                  ReduceRules const& reduce, Sentence const& sentence) {
    if (sentence.markup)
        getMarkedUpMrphArray(out, path, context, reduce, sentence);
    else
        getPlainMrphArray(out, path, context, reduce, sentence);
    if (!sentence.ownedText) return;
    auto const index = static_cast<std::size_t>(&sentence - context.sentences.data());
    for (Mrph& m : out) MrphAccess::setSentence(m, index);
}

bool appendLengths(std::vector<unsigned int>& out, AnalyzerContext const& context, ReduceRules const& reduce,
                   Sentence const& sentence) {
    if (sentence.markup || sentence.conversion || context.settings.mode(Mode::DivideWord) == 1 ||
        !reduce.phrases().empty())
        return false;
    LengthJoiner joiner(reduce, out);
    if (sentence.path.isPending()) {
        out.reserve(out.size() + sentence.path.pendingCount());
        sentence.path.visitPending([&](PendingWord const& word) {
            joiner.append(reduce.membershipOf(word), {word.text, word.length}, word.length);
        });
    } else {
        char const* text = sentence.text.data();
        for (LatticeNode const* node = sentence.path.first(); node != nullptr; node = node->next) {
            joiner.append(reduce.membershipOf(MrphDic(node->record).pid()), {text, node->length}, node->length);
            text += node->length;
        }
    }
    joiner.finish();
    return true;
}

}  // namespace TAVO
