#include "result/comment_rules.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"
#include "config/line_file.hpp"
#include "result/tag_attributes.hpp"

#include <tavo/error.hpp>

#include <utility>

namespace TAVO {
namespace {

constexpr std::string_view kRuleLine = "[rule]";

using RuleValues = std::map<std::string, std::string>;

/// Position of @p wanted in @p text from @p pos on, stepping by characters.
std::size_t findString(std::string_view text, std::string_view wanted, std::size_t pos) noexcept {
    for (; pos < text.size(); pos += charWidth(text, pos))
        if (text.substr(pos).starts_with(wanted)) return pos;
    return npos;
}

/// Calls rule(values, line number of the last value) for each rule of a file.
template <class TakeRule>
void readRules(std::string const& path, TakeRule&& takeRule) {
    LineFile file(path);
    RuleValues values;
    unsigned lastLine = 0;
    auto const finish = [&] {
        if (!values.empty()) takeRule(std::exchange(values, {}), lastLine);
    };
    for (unsigned number = 1; file.next(); ++number) {
        std::string_view const text = strip(file.line());
        if (text.empty() || text == kRuleLine) finish();
        if (isCommentLine(file.line())) continue;
        std::size_t const equals = text.find('=');
        if (equals == npos) continue;
        std::string key(strip(text.substr(0, equals)));
        if (values.contains(key)) finish();
        values.emplace(std::move(key), strip(text.substr(equals + 1)));
        lastLine = number;
    }
    finish();
}

}  // namespace

void CommentRules::setCommentRulePath(char const* path) {
    CommentRules loaded;
    if (path != nullptr) {
        loaded.path_ = path;
        readRules(loaded.path_, [&loaded](RuleValues const& values, unsigned line) {
            std::string const error = loaded.setCommentRule(values);
            if (!error.empty()) throw illegal_format(loaded.path_ + ":" + std::to_string(line) + ":" + error);
        });
    }
    *this = std::move(loaded);
}

std::string CommentRules::setCommentRule(RuleValues const& values) {
    auto const value = [&values](char const* key) {
        auto const found = values.find(key);
        return found != values.end() ? &found->second : nullptr;
    };
    std::string const* const string = value("String");
    std::string const* const begin = value("Begin");
    std::string const* const end = value("End");
    if ((begin == nullptr) != (end == nullptr)) return "Mismatch Begin and End";
    if ((string == nullptr) == (begin == nullptr)) return "Illegal Use: String, Begin, End";
    CommentRule rule;
    for (auto const& [key, text] : values) {
        if (key == "String" || key == "Begin" || key == "End") continue;
        if (!isAttribute(key)) return "Unknown Tag:" + key;
        if (key == "PartOfSP")
            rule.partOfSP = text;
        else if (!setAttribute(rule.info, key, text))
            return key + ": extension fields are Data0 to Data" + std::to_string(kMaxExtField);
    }
    for (std::string const* text : {string, begin, end})
        if (text != nullptr && text->empty()) return "Empty Comment:" + *text;
    rule.begin = string != nullptr ? *string : *begin;
    if (end != nullptr) rule.end = *end;
    mayBegin_[static_cast<unsigned char>(rule.begin.front())] = true;
    rules_.push_back(std::move(rule));
    boundRevision_ = 0;
    return {};
}

void CommentRules::setCommentPartOfSP(PosTables const& pos) {
    if (boundRevision_ == pos.revision()) return;
    for (CommentRule& rule : rules_) rule.info.pid = attributePid(pos, rule.partOfSP);
    boundRevision_ = pos.revision();
}

std::vector<Comment> CommentRules::find(std::string_view text) const {
    std::vector<Comment> comments;
    if (empty()) return comments;
    for (std::size_t pos = 0; pos < text.size();) {
        Comment const comment = mayBegin_[static_cast<unsigned char>(text[pos])] ? longestAt(text, pos) : Comment{};
        if (comment.rule == nullptr) {
            pos += charWidth(text, pos);
            continue;
        }
        comments.push_back(comment);
        pos = comment.end;
    }
    return comments;
}

Comment CommentRules::longestAt(std::string_view text, std::size_t pos) const {
    Comment longest{pos, pos, nullptr};
    for (CommentRule const& rule : rules_) {
        if (!text.substr(pos).starts_with(rule.begin)) continue;
        std::size_t end = pos + rule.begin.size();
        if (!rule.end.empty()) {
            std::size_t const close = findString(text, rule.end, end);
            end = close == npos ? text.size() : close + rule.end.size();
        }
        if (end > longest.end) longest = {pos, end, &rule};
    }
    return longest;
}

}  // namespace TAVO
