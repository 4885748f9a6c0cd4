// From a text to its results.
#include "core/impl.hpp"
#include "result/assembly.hpp"
#include "result/markup_constraints.hpp"
#include "result/mrph_access.hpp"
#include "result/tagged_input.hpp"
#include "split/sentence_splitter.hpp"

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <utility>

namespace TAVO {

int Tavo::analyze(char const* text, int length) {
    if (length < 0 || (text == nullptr && length > 0)) throw std::invalid_argument("INVALID_ARGUMENT: Tavo::analyze()");
    return impl_->analyzeText({text, static_cast<std::size_t>(length)}, false);
}

int Tavo::analyze(std::string const& text) { return impl_->analyzeText(text, false); }
int Tavo::analyze(std::string&& text) { return impl_->analyzeOwn(std::move(text), false); }

int Tavo::Impl::analyzeOwn(std::string&& text, bool nBest) {
    dropInput();
    ownText = std::move(text);
    return analyzeText(ownText, nBest);
}

void Tavo::Impl::dropInput() noexcept {
    hasResult = false;
    context.alternatives.clear();
    context.sentences.clear();
    context.lattice.clear();
    context.allPaths.clear();
    context.lateNodes.reset();
    context.madeRecords.clear();
    context.input = {};
    cooccurrence.clear();
}

int Tavo::Impl::analyzeText(std::string_view text, bool nBest) {
    dropInput();
    errorSentences.clear();
    hasResult = true;
    context.input = text;
    converter.bind(context.settings, convertRules, context.dics);
    if (searchesAlone(nBest)) {
        splitText(
            text, context.settings, [this, nBest](std::string_view piece) { analyzeLine(piece, nBest); },
            uncutSpanFinder());
    } else {
        splitText(text, context.settings, [this](std::string_view piece) {
            Sentence& sentence = context.sentences.emplace_back();
            sentence.given = sentence.text = piece;
            convert(sentence);
        });
        analyzeTogether();
    }
    return static_cast<int>(errorSentences.size());
}

bool Tavo::Impl::deletesLineBreaks() const {
    return context.settings.mode(Mode::DeleteCRLF) == 1 && context.settings.mode(Mode::DelimitCRLF) == 0;
}

bool Tavo::Impl::searchesAlone(bool nBest) const { return nBest || mayHaveMarkup() || deletesLineBreaks(); }

void Tavo::Impl::analyzeTogether() {
    std::vector<Sentence>& sentences = context.sentences;
    if (sentences.empty()) return;
    try {
        requireReady();
        context.lattice.search(sentences, context.connTable, context.dics);
    } catch (...) {
        sentences.clear();
        throw;
    }
    for (std::size_t i = 0; i != sentences.size(); ++i) {
        setBeginCost(sentences[i], false);
        if (!sentences[i].path.exists()) setErrorSentence(i);
        reconsider(i);
    }
}

SpanFinder Tavo::Impl::uncutSpanFinder() const {
    if (!mayHaveMarkup()) return nullptr;
    if (context.settings.mode(Mode::TaggedInput) == 1)
        return [this](std::string_view line) { return taggedSpans(line, comments); };
    return [this](std::string_view line) { return commentSpans(line, comments); };
}

void Tavo::Impl::analyzeLine(std::string_view piece, bool nBest) {
    if (nBest && piece.size() > kMaxNBestBytes)
        throw too_long_string("Exceed nbest limit: length=" + std::to_string(piece.size()));
    Sentence sentence;
    sentence.given = piece;
    sentence.text = piece;
    if (deletesLineBreaks()) {
        sentence.ownedText = std::make_unique<OwnedText>();
        sentence.text = sentence.ownedText->text = deleteLineBreaks(piece, sentence.ownedText->origins);
    }
    bool complete = readMarkup(sentence);
    if (complete) {
        convert(sentence);
        buildLattice(sentence, nBest);
        complete = sentence.path.exists() || sentence.text.empty();
    }
    context.sentences.push_back(std::move(sentence));
    if (!complete) setErrorSentence(context.sentences.size() - 1);
    reconsider(context.sentences.size() - 1);
}

bool Tavo::Impl::mayHaveMarkup() const { return context.settings.mode(Mode::TaggedInput) == 1 || !comments.empty(); }

bool Tavo::Impl::readMarkup(Sentence& sentence) {
    if (!mayHaveMarkup()) return true;
    requireReady();
    comments.setCommentPartOfSP(context.pos);
    return takeMarkup(sentence, context, comments);
}

void Tavo::Impl::convert(Sentence& sentence) const {
    if (!converter.isOn()) return;
    if (!sentence.markup) {
        sentence.conversion = converter.convert(sentence.text);
        return;
    }
    // Nothing changes across what markup says of a place.
    std::vector<std::uint32_t> cuts = sentence.markup->barriers;
    for (TaggedWord const& word : sentence.markup->words) cuts.insert(cuts.end(), {word.begin, word.end});
    for (Multiword const& word : sentence.markup->multiwords) cuts.insert(cuts.end(), {word.begin, word.end});
    for (BoundaryInfo const& boundary : sentence.markup->boundaries) cuts.push_back(boundary.position);
    for (Annotation const& annotation : sentence.markup->annotations) cuts.push_back(annotation.position);
    std::sort(cuts.begin(), cuts.end());
    sentence.conversion = converter.convert(sentence.text, cuts);
}

void Tavo::Impl::buildLattice(Sentence& sentence, bool nBest) {
    requireReady();
    // The cooccurrence mode has its own lattice, and edges where they are asked for.
    nBest = nBest && context.settings.mode(Mode::Cooccurrence) != 1;
    LatticeConstraints constraints;
    if (sentence.markup) {
        constraints = constraintsOf(sentence, context);
        if (nBest)
            context.allPaths.build(sentence, context.connTable, context.dics, context.lattice.nodes(), constraints);
        else
            context.lattice.build(sentence, context.connTable, context.dics, constraints);
    } else if (nBest) {
        context.allPaths.build(sentence, context.connTable, context.dics, context.lattice.nodes());
    } else {
        context.lattice.build(sentence, context.connTable, context.dics);
    }
    setBeginCost(sentence, constraints.forced);
}

void Tavo::Impl::setBeginCost(Sentence& sentence, bool forced) const {
    if (!sentence.path.exists()) return;
    std::uint16_t const column = sentence.path.firstColumn();
    std::uint32_t const beginRow = context.connTable->row(ConnTable::kBeginId);
    sentence.beginCost = LatticeConstraints::connection(context.connTable->rowStart(beginRow)[column], forced);
}

void Tavo::Impl::setErrorSentence(std::size_t index) {
    Sentence& sentence = context.sentences[index];
    errorSentences.push_back(static_cast<unsigned int>(index));
    sentence.path = {};
    sentence.failed = true;
    sentence.text = sentence.given;
    sentence.ownedText.reset();
    sentence.markup.reset();
    sentence.conversion.reset();
}

void Tavo::Impl::requireReady() const {
    if (context.connTable == nullptr) throw tavo_not_ready("No ConnTable: Need to call setConnTablePath()");
    if (context.dics.entries().empty()) throw tavo_not_ready("No Dictionary: Need to call addDicPath()");
    for (DicEntry const& entry : context.dics.entries())
        if (entry.dic->trie() == nullptr)
            throw tavo_not_ready("Dictionary not loaded: " + entry.path + ": Need to call offDic() and addDicPath()");
}

Sentence const* Tavo::Impl::sentence(int index, char const* what) const {
    if (context.sentences.empty()) return nullptr;
    if (index < 0 || static_cast<std::size_t>(index) >= context.sentences.size()) throw std::range_error(what);
    return &context.sentences[static_cast<std::size_t>(index)];
}

Sentence const* Tavo::Impl::analysed(int index, char const* what) const {
    if (index < 0) throw std::range_error(what);
    if (!hasResult) throw tavo_not_ready("No Analyze: Need to call analyze()");
    requireReady();
    return sentence(index, what);
}

void Tavo::getResult(std::vector<Mrph>& out, int sentence) {
    if (sentence >= 0) out.clear();
    Sentence const* const found = impl_->analysed(sentence, "RANGE_ERROR: Tavo::getResult()");
    if (found == nullptr) return;
    impl_->assemble(out, bestPath(*found), *found);
}

void Tavo::getLengths(std::vector<unsigned int>& lengths, int sentence) {
    if (sentence >= 0) lengths.clear();
    Sentence const* const found = impl_->analysed(sentence, "RANGE_ERROR: Tavo::getLengths()");
    if (found == nullptr) return;
    AnalyzerContext& context = impl_->context;
    impl_->reduce.bind(context.pos, context.settings);
    if (!context.lattice.isAttached(*context.connTable, context.dics)) found->path.first();
    if (found->path.isPending()) impl_->reduce.bindColumns(*context.connTable);
    if (appendLengths(lengths, context, impl_->reduce, *found)) return;
    std::vector<Mrph> morphemes;
    impl_->assemble(morphemes, bestPath(*found), *found);
    for (Mrph const& morpheme : morphemes)
        lengths.push_back(morpheme.isAnnotation() ? 0
                                                  : static_cast<unsigned int>(MrphAccess::rawForm(morpheme).size()));
}

void Tavo::Impl::assemble(std::vector<Mrph>& out, std::vector<LatticeNode const*> const& path, Sentence const& found) {
    reduce.bind(context.pos, context.settings);
    getMrphArray(out, path, context, reduce, found);
}

std::ostream& Tavo::output(std::ostream& os, int sentence) {
    std::vector<Mrph> morphemes;
    getResult(morphemes, sentence);
    AnalyzerContext& context = impl_->context;
    context.outputFormat.set(context.settings.outputFormat);
    std::string text;
    for (Mrph const& morpheme : morphemes) context.outputFormat.write(text, morpheme, context.settings.nullString);
    return os << text << context.settings.eos;
}

unsigned int Tavo::getSentenceCount() const { return static_cast<unsigned int>(impl_->context.sentences.size()); }

std::string Tavo::getSentence(int sentence) const {
    Sentence const* const found = impl_->sentence(sentence, "RANGE_ERROR: Tavo::getSentence()");
    return found == nullptr ? std::string() : std::string(found->text);
}

unsigned int Tavo::getSentenceLength(int sentence) const {
    Sentence const* const found = impl_->sentence(sentence, "RANGE_ERROR: Tavo::getSentenceLength()");
    return found == nullptr ? 0 : static_cast<unsigned int>(found->text.size());
}

char const* Tavo::getSentencePtrWithoutNullEnd(int sentence) const {
    // Callers compare this text and the next, which have no colon after the error word.
    Sentence const* const found = impl_->sentence(sentence, "RANGE_ERROR Tavo::getSentencePtrWithoutNullEnd()");
    return found == nullptr ? "" : found->text.data();
}

std::string Tavo::Impl::joinedForms(Sentence const& found) {
    std::vector<Mrph> morphemes;
    assemble(morphemes, bestPath(found), found);
    std::string text;
    for (Mrph const& morpheme : morphemes)
        if (!morpheme.isAnnotation()) text += morpheme.getForm(false);
    return text;
}

std::string Tavo::getAnalyzedText(int sentence) const {
    Sentence const* const found = impl_->sentence(sentence, "RANGE_ERROR Tavo::getAnalyzedText()");
    if (found == nullptr) return {};
    switch (impl_->context.settings.mode(Mode::OutputConvert)) {
        case 0:
            return std::string(found->text);
        case 1:
        case 2:
            return found->conversion ? impl_->joinedForms(*found) : std::string(found->text);
        case 3:
            return std::string(found->given);
        // Callers compare this text, misspelt name included.
        default:
            throw std::logic_error("LOGIC_ERROR: Tavo::getAnalyedText(): Illegal Output Convert Mode");
    }
}

unsigned int Tavo::getAnalyzedTextLength(int sentence) const {
    return static_cast<unsigned int>(getAnalyzedText(sentence).size());
}

}  // namespace TAVO
