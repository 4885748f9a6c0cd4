// tavo dic build
#include "cli/encoding_guess.hpp"
#include "cli/file_io.hpp"
#include "cli/lexicon.hpp"
#include "cli/new_file.hpp"
#include "cli/tool_error.hpp"
#include "cli/utf8.hpp"
#include "dic/dic_command.hpp"
#include "dic/index_file.hpp"
#include "dic/like_word.hpp"
#include "dic/must_win.hpp"
#include "dic/new_words.hpp"
#include "output/out_buffer.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic_compiler.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

namespace tool {

namespace {

/// What the library reads as one line when it rebuilds a dictionary from its source.
constexpr std::size_t kMaxLineBytes = 4095;

/// @p form, as written, with its separators as characters.
std::string withoutParts(std::string_view form) {
    std::string whole;
    for (std::size_t at = 0; at < form.size();) {
        bool const escaped = form[at] == '\\' && at + 1 < form.size();
        if (escaped) whole += form[at++];
        if (!escaped && (form[at] == '-' || form[at] == '/')) whole += '\\';
        std::size_t const width = TAVO::charWidth(form, at);
        whole += form.substr(at, width);
        at += width;
    }
    return whole;
}

class SourceCompiler {
public:
    SourceCompiler(DicOptions const& options, NewWords const& words)
        : options_(options), words_(words), compiler_({words.names().begin() + 1, words.names().end()}) {}

    /// Returns the number of faulty lines, each reported.
    std::size_t addAll(std::string_view source) {
        if (options_.encoding == Encoding::Utf8 && source.starts_with(kByteOrderMark))
            source.remove_prefix(kByteOrderMark.size());
        std::size_t faults = 0;
        for (std::size_t number = 1; !source.empty(); ++number) {
            std::size_t const end = std::min(source.find('\n'), source.size());
            std::string error;
            source_.clear();
            if (!add(source.substr(0, end), error)) {
                report(number, error);
                ++faults;
            } else if (std::string const warning = dividedWord(); !warning.empty()) {
                report(number, fromSjis(warning, options_.encoding));
            }
            source.remove_prefix(std::min(end + 1, source.size()));
        }
        return faults;
    }

    TAVO::DicCompiler& compiler() noexcept { return compiler_; }

private:
    /// @p error is in the user's encoding.
    bool add(std::string_view written, std::string& error) {
        // MeCab's format has no comments.
        if (!options_.mecabFormat && TAVO::isCommentLine(written)) return true;
        line_.clear();
        if (options_.encoding == Encoding::Sjis) {
            line_ = written;
        } else if (auto const at = appendUtf8AsSjis(line_, written)) {
            Utf8Char const c = decodeUtf8(written.substr(*at));
            error = c.valid ? "Error: \"" + std::string(written.substr(*at, c.bytes)) + "\" is not in code page 932"
                            : "Error: byte " + std::to_string(*at + 1) + " is not UTF-8 (Shift_JIS? --encoding sjis)";
            return false;
        }
        std::erase(line_, '\r');
        if (line_.empty()) return true;
        if (line_.size() > kMaxLineBytes) {
            error = "Error: line of " + std::to_string(line_.size()) + " bytes; at most " +
                    std::to_string(kMaxLineBytes) + " are read";
            return false;
        }
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
    std::string dividedWord() const {
        std::string ignored;
        TAVO::SourceRecord record;
        if (options_.mecabFormat || source_.find_first_of("-/") == std::string::npos || !record.parse(source_, ignored))
            return {};
        bool const meant = !record.partNames.empty() || !record.readPron.empty() || !record.stdForm.empty();
        if (record.partCount == 1 || meant) return {};
        std::string const parts = std::to_string(record.partCount) + " parts";
        return "warning: " + record.partForm + " is the word " + record.form + " of " + parts + "; write " +
               withoutParts(record.partForm) + " to keep the character";
    }

    void report(std::size_t number, std::string const& error) const {
        std::string const text = options_.input + ":" + std::to_string(number) + ": " + error + "\n";
        std::fwrite(text.data(), 1, text.size(), stderr);
    }

    DicOptions const& options_;
    NewWords const& words_;
    TAVO::DicCompiler compiler_;
    std::string line_, source_;
};

/// Names of @p table per id, "" for id 0, and the costs of classes where the
/// import that made the table left them.
NewWords readWords(DicOptions const& options) {
    TAVO::ConnTable const table(false, options.connTable.c_str());
    std::vector<std::string> names(1);
    for (std::uint32_t id = 1; id <= table.idCount(); ++id) names.emplace_back(table.getName(id));
    std::filesystem::path const classes = std::filesystem::path(options.connTable).parent_path() / kWordClassesName;
    std::error_code ignored;
    if (!std::filesystem::exists(classes, ignored)) return {std::move(names), std::nullopt};
    try {
        return {std::move(names), WordClasses::read(classes.string())};
    } catch (std::runtime_error const& error) {
        throw ToolError(ExitStatus::Data, error.what());
    }
}

/// Opens the lexicon that the new dictionary is for, @p first before its own ones.
void openAround(TAVO::Tavo& analyser, DicOptions const& options, std::string const& first) {
    LexiconOptions lexicon;
    lexicon.connTable = options.connTable;
    lexicon.dictionaries = options.lexicon;
    if (lexicon.dictionaries.empty())
        lexicon.dictionaries = dictionariesIn(std::filesystem::path(options.connTable).parent_path());
    if (lexicon.dictionaries.empty())
        throw ToolError(ExitStatus::Data, "no SysDic beside " + options.connTable + "; name the lexicon's with -d");
    if (!first.empty()) lexicon.dictionaries.insert(lexicon.dictionaries.begin(), first);
    openLexicon(analyser, lexicon);
}

ExitStatus judgeSentences(DicOptions const& options, NewWords const& words) {
    if (options.mustWin.empty()) return ExitStatus::Ok;
    TAVO::Tavo analyser;
    openAround(analyser, options, options.output);
    ExitStatus status = ExitStatus::Ok;
    OutBuffer out;
    for (std::string const& sentence : options.mustWin) {
        Verdict const verdict =
            judge(analyser, words, argumentToSjis(sentence, options.encoding, "--must-win"), options.encoding);
        out.append(verdict.text);
        out.append('\n');
        if (!verdict.wins) status = ExitStatus::Data;
    }
    writeStandardOutput(out.view());
    return status;
}

}  // namespace

ExitStatus buildDictionary(DicOptions const& options) {
    NewWords words = readWords(options);
    if (!options.like.empty()) {
        TAVO::Tavo lexicon;
        openAround(lexicon, options, {});
        words.setLike(findLike(lexicon, options.like, options.encoding));
    }
    SourceCompiler source(options, words);
    std::string const text = readFile(options.input);
    requireEncoding(text, options.input, options.encoding);
    std::size_t const faults = source.addAll(text);
    if (faults > 0) {
        complain(std::to_string(faults) + (faults == 1 ? " faulty line" : " faulty lines") + "; " + options.output +
                 " was not written");
        return ExitStatus::Data;
    }
    NewFile file(options.output);
    errno = 0;
    bool const compiled = source.compiler().compile(file.stream(), options.verbose);
    if (!file.stream()) throw fileError(options.output, errno != 0 ? errno : EIO);
    if (!compiled) throw ToolError(ExitStatus::Data, options.output + ": " + source.compiler().error());
    file.commit();
    writeDicIndexes(options.connTable, {options.output});
    return judgeSentences(options, words);
}

}  // namespace tool
