#include "split/markup_scanner.hpp"

#include "base/sjis.hpp"

#include <algorithm>
#include <unordered_map>

namespace TAVO {
namespace {

constexpr std::string_view kAnnotation = "annotation";

/// True when an annotation's closing tag begins at @p pos.
bool closesAnnotation(std::string_view line, std::size_t pos) noexcept {
    std::string_view rest = line.substr(pos);
    if (!rest.starts_with("</")) return false;
    rest.remove_prefix(2);
    if (!rest.starts_with(kAnnotation)) return false;
    rest.remove_prefix(kAnnotation.size());
    return !rest.empty() && std::string_view(" \t>").find(rest.front()) != std::string_view::npos;
}

}  // namespace

/// Moves to the next "<", counting the quotes on the way.
bool MarkupScanner::moveToTag(Cursor& at) const noexcept {
    for (;;) {
        std::size_t const mark = findMark(line_, "<\"", at.pos);
        at.pos = std::min(mark, line_.size());
        if (mark == std::string_view::npos) return false;
        if (line_[mark] == '<') return true;
        at.oddQuotes = !at.oddQuotes;
        ++at.pos;
    }
}

/// The tag at the "<" where @p at stands, which moves behind it.
Tag MarkupScanner::tagAt(Cursor& at) noexcept {
    Tag tag;
    tag.begin = at.pos++;
    tag.closing = at.pos < line_.size() && line_[at.pos] == '/';
    std::size_t const nameBegin = at.pos + (tag.closing ? 1 : 0);
    if (tag.begin >= endlessFrom_[at.oddQuotes]) return tag;
    bool quoted = false;
    std::size_t slash = std::string_view::npos;  // the last one before pos
    for (std::size_t pos = findMark(line_, "\">/", at.pos); pos != std::string_view::npos;
         pos = findMark(line_, "\">/", pos + 1)) {
        if (line_[pos] == '"') {
            quoted = !quoted;
        } else if (line_[pos] == '/') {
            slash = pos;
        } else if (!quoted) {
            tag.nameEnd = findMark(line_, " \t/>", nameBegin);
            tag.name = line_.substr(nameBegin, tag.nameEnd - nameBegin);
            tag.selfClosing = !tag.closing && slash + 1 == pos;
            at.pos = tag.end = pos + 1;
            return tag;
        }
    }
    endlessFrom_[at.oddQuotes] = std::min(endlessFrom_[at.oddQuotes], tag.begin);
    return tag;
}

std::optional<Tag> MarkupScanner::next() noexcept {
    if (!moveToTag(at_)) return std::nullopt;
    return tagAt(at_);
}

std::optional<Tag> MarkupScanner::annotationEnd() noexcept {
    if (!searched_ || (close_ && close_->begin < at_.pos)) {
        searched_ = true;
        close_.reset();
        behindClose_ = at_;
        while (!close_ && moveToTag(behindClose_)) {
            if (closesAnnotation(line_, behindClose_.pos))
                close_ = tagAt(behindClose_);
            else
                ++behindClose_.pos;
        }
    }
    if (!close_ || !close_->isTerminated()) return std::nullopt;
    at_ = behindClose_;
    return close_;
}

std::vector<TextSpan> elementSpans(std::string_view line) {
    std::vector<TextSpan> found;
    std::unordered_map<std::string_view, std::vector<std::size_t>> open;  // by name: indexes in found
    MarkupScanner scanner(line);
    while (std::optional<Tag> const tag = scanner.next()) {
        if (!tag->isTerminated()) continue;
        found.push_back({tag->begin, tag->end});
        if (tag->selfClosing) continue;
        if (!tag->closing && tag->name == kAnnotation) {
            if (std::optional<Tag> const close = scanner.annotationEnd()) found.back().end = close->end;
        } else if (!tag->closing) {
            open[tag->name].push_back(found.size() - 1);
        } else if (auto const indexes = open.find(tag->name); indexes != open.end() && !indexes->second.empty()) {
            found[indexes->second.back()].end = tag->end;
            indexes->second.pop_back();
        }
    }
    std::vector<TextSpan> outermost;
    for (TextSpan const& span : found)
        if (outermost.empty() || span.begin >= outermost.back().end) outermost.push_back(span);
    return outermost;
}

}  // namespace TAVO
