#include "result/tagged_input.hpp"

#include "result/tag_attributes.hpp"

#include <algorithm>
#include <utility>

namespace TAVO {
namespace {

std::uint32_t narrow(std::size_t position) noexcept { return static_cast<std::uint32_t>(position); }

void addComment(SentenceMarkup& markup, Comment const& comment, std::size_t textBegin) {
    TaggedWord word{narrow(textBegin + comment.begin), narrow(textBegin + comment.end), comment.rule->info};
    word.info.position = word.begin;
    markup.addBarrier(word.begin);
    markup.addBarrier(word.end);
    markup.words.push_back(std::move(word));
}

class Parser {
public:
    Parser(std::string_view line, PosTables const& pos, CommentRules const& comments)
        : line_(line), pos_(pos), comments_(comments), scanner_(line) {}

    bool parse() {
        while (std::optional<Tag> const tag = scanner_.next()) {
            addText(line_.substr(read_, tag->begin - read_));
            read_ = tag->end;
            if (!tag->isTerminated() || !take(*tag)) return false;
            markup().addBarrier(position());
        }
        addText(line_.substr(read_));
        return !word_ && !multiword_;
    }

    TaggedText result;

private:
    SentenceMarkup& markup() noexcept { return result.markup; }
    std::uint32_t position() const noexcept { return narrow(result.text.size()); }

    void addText(std::string_view written) {
        if (written.empty()) return;
        std::size_t const begin = result.text.size();
        auto const lineBegin = static_cast<std::size_t>(written.data() - line_.data());
        std::vector<Entity> entities;
        result.text += decodeEntities(written, &entities);
        result.origins.add({begin, lineBegin, textEnd_});
        textEnd_ = lineBegin + written.size();
        for (Entity const& entity : entities)
            result.origins.add({begin + entity.decodedBegin + 1, lineBegin + entity.end, lineBegin + entity.end});
        if (word_ || multiword_) return;
        for (Comment const& comment : comments_.find(std::string_view(result.text).substr(begin)))
            addComment(markup(), comment, begin);
    }

    /// False for a tag that is unknown or not allowed here.
    bool take(Tag const& tag) {
        bool const isBoundary = tag.name == "boundary";
        if (line_[tag.nameEnd] == '/' && !isBoundary) return false;
        if (tag.closing) return close(tag);
        // Text is all that a word holds, and only a boundary holds nothing.
        if (word_ || (tag.selfClosing && !isBoundary)) return false;
        if (tag.name == "word") {
            word_ = TaggedWord{position(), 0, {}};
            return readInfo(tag, word_->info);
        }
        if (tag.name == "multiword") return openMultiword(tag);
        if (tag.name == "annotation") return takeAnnotation(tag);
        return isBoundary && takeBoundary(tag);
    }

    bool close(Tag const& tag) {
        if (word_) {
            word_->end = position();
            bool const fits = tag.name == "word" && word_->begin < word_->end;
            if (fits) markup().words.push_back(*std::exchange(word_, std::nullopt));
            return fits;
        }
        if (!multiword_ || tag.name != "multiword") return false;
        multiword_->end = position();
        bool const fits = multiword_->begin < multiword_->end;
        if (fits) markup().multiwords.push_back(*std::exchange(multiword_, std::nullopt));
        return fits;
    }

    bool openMultiword(Tag const& tag) {
        if (multiword_) return false;
        TagInfo info;
        bool const sound = readInfo(tag, info);
        multiword_ = Multiword{position(), 0, std::move(info.additionalInfo)};
        return sound;
    }

    bool takeAnnotation(Tag const& tag) {
        std::optional<Tag> const end = scanner_.annotationEnd();
        if (!end) return false;
        read_ = end->end;
        TagInfo info;
        bool const sound = readInfo(tag, info);
        markup().annotations.push_back({position(), decodeEntities(line_.substr(tag.end, end->begin - tag.end)),
                                        std::move(info), tag.end, end->begin});
        return sound;
    }

    bool takeBoundary(Tag const& tag) {
        // Attributes of boundaries at one position add up.
        auto& boundaries = markup().boundaries;
        if (boundaries.empty() || boundaries.back().position != position()) {
            boundaries.emplace_back();
            boundaries.back().position = position();
        }
        BoundaryInfo& boundary = boundaries.back();
        eachAttribute(tag, [&boundary](std::string const& key, std::string& value) {
            if (key == "GrammarType")
                boundary.grammarType = std::move(value);
            else if (key == "ProsodicType")
                boundary.prosodicType = std::move(value);
            else if (key == "Kind" && value == "sentence")
                boundary.kind = std::move(value);
        });
        return boundary.kind != "sentence" || line_.find_first_not_of("\r\n", tag.end) == std::string_view::npos;
    }

    template <class Take>
    void eachAttribute(Tag const& tag, Take&& take) const {
        std::string key, value;
        for (std::size_t at = tag.nameEnd; at < tag.end - 1;) {
            at = getKeyValue(line_, at, tag.end - 1, key, value);
            take(key, value);
        }
    }

    /// False for an extension field that cannot be.
    bool readInfo(Tag const& tag, TagInfo& info) const {
        bool sound = true;
        info.position = position();
        eachAttribute(tag, [&](std::string const& key, std::string& value) {
            if (key == "PartOfSP")
                info.pid = attributePid(pos_, value);
            else if (!setAttribute(info, key, std::move(value)))
                sound = sound && !isAttribute(key);  // unknown attributes are skipped
        });
        return sound;
    }

    std::string_view line_;
    PosTables const& pos_;
    CommentRules const& comments_;
    MarkupScanner scanner_;
    std::size_t read_ = 0;     // up to here the line has been taken in
    std::size_t textEnd_ = 0;  // of the last text outside tags, in the line
    std::optional<TaggedWord> word_;
    std::optional<Multiword> multiword_;
};

/// Entities and comments of the untagged part [begin, end) of a line.
void addTextSpans(std::vector<TextSpan>& out, std::string_view line, std::size_t begin, std::size_t end,
                  CommentRules const& comments) {
    std::vector<Entity> entities;
    std::string const decoded = decodeEntities(line.substr(begin, end - begin), &entities);
    auto entity = entities.begin();
    std::size_t shift = begin;  // from the decoded text to the line, in front of entity
    auto const toLine = [&](std::size_t position, bool keepEntities) {
        for (; entity != entities.end() && entity->decodedBegin < position; ++entity) {
            if (keepEntities) out.push_back({begin + entity->begin, begin + entity->end});
            shift = begin + entity->end - entity->decodedBegin - 1;
        }
        return position + shift;
    };
    for (Comment const& comment : comments.find(decoded)) {
        std::size_t const commentBegin = toLine(comment.begin, true);
        out.push_back({commentBegin, toLine(comment.end, false)});
    }
    toLine(decoded.size(), true);
}

}  // namespace

std::optional<TaggedText> parseTaggedText(std::string_view line, PosTables const& pos, CommentRules const& comments) {
    Parser parser(line, pos, comments);
    if (!parser.parse()) return std::nullopt;
    return std::move(parser.result);
}

SentenceMarkup commentMarkup(std::string_view text, CommentRules const& comments) {
    SentenceMarkup markup;
    for (Comment const& comment : comments.find(text)) addComment(markup, comment, 0);
    return markup;
}

std::vector<TextSpan> taggedSpans(std::string_view line, CommentRules const& comments) {
    std::vector<TextSpan> spans;
    std::size_t textBegin = 0;
    for (TextSpan const& tagged : elementSpans(line)) {
        addTextSpans(spans, line, textBegin, tagged.begin, comments);
        spans.push_back(tagged);
        textBegin = tagged.end;
    }
    addTextSpans(spans, line, textBegin, line.size(), comments);
    return spans;
}

std::vector<TextSpan> commentSpans(std::string_view line, CommentRules const& comments) {
    std::vector<TextSpan> spans;
    for (Comment const& comment : comments.find(line)) spans.push_back({comment.begin, comment.end});
    return spans;
}

}  // namespace TAVO
