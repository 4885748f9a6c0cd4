#include "text/tagged_line.hpp"

#include "base/sjis.hpp"
#include "result/mrph_access.hpp"
#include "result/tag_attributes.hpp"

#include <algorithm>

namespace TAVO {

LineText const& TaggedLine::strip(LineText const& line, Tavo& analyser) {
    parts_.clear();
    plainText_.clear();
    for (int i = 0; i < static_cast<int>(analyser.getSentenceCount()); ++i) addSentence(line, analyser, i);
    stripped_.assignParts(line, parts_);
    return stripped_;
}

void TaggedLine::addSentence(LineText const& line, Tavo& analyser, int index) {
    char const* const lineBegin = line.sjis().data();
    analyser.getResult(morphemes_, index);
    if (morphemes_.empty()) {
        // The sentence failed, so that its text is what was read, or it is empty.
        std::string_view const text(analyser.getSentencePtrWithoutNullEnd(index), analyser.getSentenceLength(index));
        auto const at = static_cast<std::size_t>(text.data() - lineBegin);
        if (text.empty()) return;
        parts_.push_back({at, at + text.size()});
        addPlainText(line, parts_.size() - 1);
        return;
    }
    Sentence const& sentence = MrphAccess::owner(morphemes_.front())->sentences[static_cast<std::size_t>(index)];
    auto const begin = static_cast<std::size_t>(sentence.given.data() - lineBegin);
    if (!sentence.ownedText) {
        parts_.push_back({begin, begin + sentence.text.size()});
        addPlainText(line, parts_.size() - 1);
        return;
    }
    std::vector<TextOrigin> const& origins = sentence.ownedText->origins.list();
    auto annotation = sentence.markup->annotations.begin();
    auto origin = origins.begin();
    std::size_t position = 0;  // in the sentence's text
    for (Mrph const& m : morphemes_) {
        std::string_view text = MrphAccess::rawForm(m);
        std::size_t const firstPart = parts_.size();
        if (m.isAnnotation()) {
            addText(line, text, begin + (annotation++)->lineBegin);
            continue;
        }
        // A morpheme joined from several may reach over several origins.
        while (!text.empty()) {
            while (origin + 1 != origins.end() && (origin + 1)->position <= position) ++origin;
            bool const isLast = origin + 1 == origins.end();
            std::size_t const length = isLast ? text.size() : std::min(text.size(), (origin + 1)->position - position);
            addText(line, text.substr(0, length), begin + origin->source + (position - origin->position));
            position += length;
            text.remove_prefix(length);
        }
        addPlainText(line, firstPart);
    }
}

/// Shows the parts from @p firstPart on.
void TaggedLine::addPlainText(LineText const& line, std::size_t firstPart) {
    for (std::size_t i = firstPart; i < parts_.size(); ++i) {
        LineText::Part const& part = parts_[i];
        if (part.begin == part.end)
            plainText_ += part.character;
        else
            plainText_ += line.slice(line.originalOffset(part.begin), line.originalOffset(part.end));
    }
}

/// Adds @p text, which stands in the line from @p at on, maybe with entities.
void TaggedLine::addText(LineText const& line, std::string_view text, std::size_t at) {
    constexpr std::size_t kLongestEntity = 6;
    std::vector<Entity> entities;
    std::size_t const firstPart = parts_.size();
    for (std::size_t pos = 0; pos < text.size();) {
        entities.clear();
        if (line.sjis()[at] == '&') decodeEntities(line.sjis().substr(at, kLongestEntity), &entities);
        bool const isEntity = !entities.empty() && entities.front().begin == 0;
        if (isEntity && text[pos] != '&') {
            parts_.push_back({0, 0, text[pos++]});
            at += entities.front().end;
            continue;
        }
        std::size_t const width = std::min(charWidth(line.sjis(), at), text.size() - pos);
        if (parts_.size() > firstPart && parts_.back().begin != parts_.back().end && parts_.back().end == at)
            parts_.back().end += width;
        else
            parts_.push_back({at, at + width});
        pos += width;
        at += isEntity ? entities.front().end : width;
    }
}

}  // namespace TAVO
