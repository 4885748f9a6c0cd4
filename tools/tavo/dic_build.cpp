// tavo dic build
#include "dic_command.hpp"
#include "file_io.hpp"
#include "lexicon.hpp"
#include "like_word.hpp"
#include "must_win.hpp"
#include "new_file.hpp"
#include "new_words.hpp"
#include "out_buffer.hpp"
#include "tool_error.hpp"
#include "utf8.hpp"

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
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

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
            if (!add(source.substr(0, end), error)) {
                report(number, error);
                ++faults;
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
        error = fromSjis(error, options_.encoding);
        return false;
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
    std::size_t const faults = source.addAll(readFile(options.input));
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
    return judgeSentences(options, words);
}

}  // namespace tool
