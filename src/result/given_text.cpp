#include "result/given_text.hpp"

#include "result/mrph_access.hpp"

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace TAVO {
namespace {

/// Compares addresses of unrelated texts, which "<=" must not.
bool holds(std::string_view text, std::string_view span) noexcept {
    std::less_equal<char const*> const notBehind;
    return notBehind(text.data(), span.data()) && notBehind(span.data() + span.size(), text.data() + text.size());
}

Sentence const* sentenceOf(Mrph const& m, std::string_view span) {
    AnalyzerContext const& owner = *MrphAccess::owner(m);
    std::size_t const known = MrphAccess::sentence(m);
    return known < owner.sentences.size() ? &owner.sentences[known] : owner.sentenceOf(span.data());
}

/// In the sentence's given text.
std::optional<TextSpan> spanInSentence(Sentence const& sentence, std::string_view span) {
    if (sentence.ownedText && holds(sentence.text, span)) {
        TextOrigins const& origins = sentence.ownedText->origins;
        auto const at = static_cast<std::size_t>(span.data() - sentence.text.data());
        if (!span.empty()) return TextSpan{origins.begin(at), origins.end(at + span.size())};
        return TextSpan{origins.end(at), origins.end(at)};
    }
    if (!sentence.markup) return std::nullopt;
    std::vector<Annotation> const& annotations = sentence.markup->annotations;
    auto const found = std::find_if(annotations.begin(), annotations.end(),
                                    [&](Annotation const& one) { return one.text.data() == span.data(); });
    if (found == annotations.end()) return std::nullopt;
    return TextSpan{found->lineBegin, found->lineEnd};
}

}  // namespace

std::optional<TextSpan> givenSpan(Mrph const& m, std::string_view span) {
    AnalyzerContext const* const owner = MrphAccess::owner(m);
    if (owner == nullptr) return std::nullopt;
    if (std::string_view const input = owner->input; holds(input, span)) {
        auto const begin = static_cast<std::size_t>(span.data() - input.data());
        return TextSpan{begin, begin + span.size()};
    }
    Sentence const* const sentence = sentenceOf(m, span);
    std::optional<TextSpan> found = sentence != nullptr ? spanInSentence(*sentence, span) : std::nullopt;
    if (!found) return std::nullopt;
    auto const base = static_cast<std::size_t>(sentence->given.data() - owner->input.data());
    return TextSpan{base + found->begin, base + found->end};
}

TextSpan requireGivenSpan(Mrph const& m, std::string_view span, char const* error) {
    std::optional<TextSpan> const found = givenSpan(m, span);
    if (!found) throw std::logic_error(error);
    return *found;
}

std::size_t Mrph::getGivenBegin() const {
    return requireGivenSpan(*this, MrphAccess::rawForm(*this), "LOGIC_ERROR: Mrph::getGivenBegin()").begin;
}

std::size_t Mrph::getGivenEnd() const {
    return requireGivenSpan(*this, MrphAccess::rawForm(*this), "LOGIC_ERROR: Mrph::getGivenEnd()").end;
}

}  // namespace TAVO
