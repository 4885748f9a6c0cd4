#include "lexicon/words/source_compiler.hpp"

#include "lexicon/stage.hpp"
#include "lexicon/user_text.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"
#include "base/utf8.hpp"
#include "dic/source_record.hpp"

#include <algorithm>

namespace TAVO::words {

namespace {

/// What the library reads as one line when it rebuilds a dictionary from its source.
constexpr std::size_t kMaxLineBytes = 4095;
/// Lines between two calls of the progress function.
constexpr std::size_t kLinesPerCall = 1024;

/// @p form, as written, with its separators as characters.
std::string withoutParts(std::string_view form) {
    std::string whole;
    for (std::size_t at = 0; at < form.size();) {
        bool const escaped = form[at] == '\\' && at + 1 < form.size();
        if (escaped) whole += form[at++];
        if (!escaped && (form[at] == '-' || form[at] == '/')) whole += '\\';
        std::size_t const width = charWidth(form, at);
        whole += form.substr(at, width);
        at += width;
    }
    return whole;
}

}  // namespace

SourceCompiler::SourceCompiler(WordListOptions const& options, NewWords const& words)
    : options_(options), words_(words), compiler_({words.names().begin() + 1, words.names().end()}) {}

std::vector<LexiconFault> SourceCompiler::addAll(std::string_view source) {
    if (options_.encoding == TextEncoding::Utf8 && source.starts_with(kByteOrderMark))
        source.remove_prefix(kByteOrderMark.size());
    std::vector<LexiconFault> faults;
    std::size_t const total = source.size();
    for (std::size_t number = 1; !source.empty(); ++number) {
        if (number % kLinesPerCall == 0) tell(options_.progress, "Reading the words", total - source.size(), total);
        std::size_t const end = std::min(source.find('\n'), source.size());
        std::string error;
        source_.clear();
        if (!add(source.substr(0, end), error)) {
            faults.push_back({options_.name, number, error, false});
        } else if (std::string const warning = dividedWord(); !warning.empty()) {
            faults.push_back({options_.name, number, fromSjis(warning, options_.encoding), true});
        }
        source.remove_prefix(std::min(end + 1, source.size()));
    }
    return faults;
}

/// Into line_, in Shift_JIS and without carriage returns.
bool SourceCompiler::readLine(std::string_view written, std::string& error) {
    line_.clear();
    if (options_.encoding == TextEncoding::Sjis) {
        line_ = written;
    } else if (auto const at = appendUtf8AsSjis(line_, written)) {
        Utf8Char const c = decodeUtf8(written.substr(*at));
        error = c.valid ? "Error: \"" + std::string(written.substr(*at, c.bytes)) + "\" is not in code page 932"
                        : "Error: byte " + std::to_string(*at + 1) + " is not UTF-8 (Shift_JIS? --encoding sjis)";
        return false;
    }
    std::erase(line_, '\r');
    if (line_.size() <= kMaxLineBytes) return true;
    error = "Error: line of " + std::to_string(line_.size()) + " bytes; at most " + std::to_string(kMaxLineBytes) +
            " are read";
    return false;
}

bool SourceCompiler::add(std::string_view written, std::string& error) {
    // MeCab's format has no comments.
    if (!options_.mecabFormat && isCommentLine(written)) return true;
    if (!readLine(written, error)) return false;
    if (line_.empty()) return true;
    bool const made = !options_.mecabFormat || words_.fromMecab(line_, source_, error);
    if (!options_.mecabFormat) source_ = words_.complete(line_);
    if (made && compiler_.add(source_, error)) return true;
    if (error == "Error: Illegal Separator" || error == "Error: Missmatch Word and Read")
        error += R"(: "-" and "/" divide a word into parts; write \- or \/ for the character)";
    error = fromSjis(error, options_.encoding);
    return false;
}

/// A warning about the line added last when it divides its word and nothing else in it tells of parts: lists of
/// words have "-" and "/" as characters. Else "".
std::string SourceCompiler::dividedWord() const {
    std::string ignored;
    SourceRecord record;
    if (options_.mecabFormat || source_.find_first_of("-/") == std::string::npos || !record.parse(source_, ignored))
        return {};
    bool const meant = !record.partNames.empty() || !record.readPron.empty() || !record.stdForm.empty();
    if (record.partCount == 1 || meant) return {};
    std::string const parts = std::to_string(record.partCount) + " parts";
    return "warning: " + record.partForm + " is the word " + record.form + " of " + parts + "; write " +
           withoutParts(record.partForm) + " to keep the character";
}

}  // namespace TAVO::words
