#include "result/markup_constraints.hpp"

#include "result/mrph_access.hpp"
#include "result/tagged_input.hpp"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace TAVO {
namespace {

/// Appends the records of one dictionary that match. Among neighbouring
/// homographs of one id only the first that matches is a candidate, as in the
/// search of plain text.
void addMatching(std::vector<unsigned char const*>& records, RecordChain chain, std::string_view form,
                 TagInfo const& info, AnalyzerContext const& context) {
    std::uint16_t handled = 0;
    for (; chain; chain = chain.next()) {
        std::uint16_t const pid = chain.record().pid();
        if (pid == handled || pid == 0 || pid > context.connTable->idCount()) continue;
        Mrph const m =
            MrphAccess::fromRecord(form.data(), static_cast<unsigned int>(form.size()), chain.head(), &context);
        bool const matches = MrphAccess::match(m, info);
        if (matches) records.push_back(chain.head());
        handled = matches ? pid : std::uint16_t{0};
    }
}

/// Makes the text without tags that of @p sentence.
void takeText(Sentence& sentence, TaggedText& tagged) {
    if (sentence.ownedText) {  // line breaks were taken out before
        TextOrigins const& before = sentence.ownedText->origins;
        for (Annotation& annotation : tagged.markup.annotations) {
            annotation.lineEnd = before.end(annotation.lineEnd);
            annotation.lineBegin = std::min(before.begin(annotation.lineBegin), annotation.lineEnd);
        }
        tagged.origins = tagged.origins.through(before);
    }
    sentence.ownedText = std::make_unique<OwnedText>(OwnedText{std::move(tagged.text), std::move(tagged.origins)});
    sentence.text = sentence.ownedText->text;
}

}  // namespace

bool takeMarkup(Sentence& sentence, AnalyzerContext const& context, CommentRules const& comments) {
    SentenceMarkup markup;
    if (context.settings.mode(Mode::TaggedInput) == 1) {
        std::optional<TaggedText> tagged = parseTaggedText(sentence.text, context.pos, comments);
        if (!tagged) return false;
        if (tagged->text != sentence.text) takeText(sentence, *tagged);
        markup = std::move(tagged->markup);
    } else {
        markup = commentMarkup(sentence.text, comments);
    }
    if (!markup.barriers.empty() || sentence.ownedText)
        sentence.markup = std::make_unique<SentenceMarkup>(std::move(markup));
    return true;
}

LatticeConstraints constraintsOf(Sentence const& sentence, AnalyzerContext& context) {
    LatticeConstraints constraints;
    auto const placeOf = [&](std::uint32_t place) {
        return sentence.conversion ? static_cast<std::uint32_t>(sentence.conversion->toConverted(place)) : place;
    };
    for (std::uint32_t const barrier : sentence.markup->barriers) constraints.barriers.push_back(placeOf(barrier));
    for (TaggedWord const& word : sentence.markup->words) {
        std::uint32_t const begin = placeOf(word.begin), end = placeOf(word.end);
        std::string_view const form = sentence.searchText().substr(begin, end - begin);
        std::size_t const first = constraints.records.size();
        for (DicEntry const& entry : context.dics.entries()) {
            DicTrie const* const trie = entry.dic->trie();
            if (trie == nullptr) continue;
            addMatching(constraints.records, trie->exactMatch(asBytes(form.data()), form.size()), form, word.info,
                        context);
        }
        if (constraints.records.size() == first)
            constraints.records.push_back(context.madeRecords.record(word.info.pid));
        constraints.spans.push_back({begin, end, first, constraints.records.size() - first});
    }
    return constraints;
}

}  // namespace TAVO
