// Word lists into dictionaries.
#include "lexicon/encoding_guess.hpp"
#include "lexicon/lexicon_files.hpp"
#include "lexicon/new_file.hpp"
#include "lexicon/stage.hpp"
#include "lexicon/user_text.hpp"
#include "lexicon/words/like_word.hpp"
#include "lexicon/words/must_win.hpp"
#include "lexicon/words/source_compiler.hpp"
#include "lexicon/words/trial_dictionary.hpp"

#include "base/utf8.hpp"
#include "config/pos_name.hpp"
#include "dic/conn_table.hpp"
#include "text/lexicon_places.hpp"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace TAVO {

namespace words {
namespace {

/// Names of the table per id, "" for id 0, and the costs of classes where the
/// import that made the table left them.
NewWords readWords(std::string const& connTable) {
    ConnTable const table(false, connTable.c_str());
    std::vector<std::string> names(1);
    for (std::uint32_t id = 1; id <= table.idCount(); ++id) names.emplace_back(table.getName(id));
    std::filesystem::path const classes = std::filesystem::path(connTable).parent_path() / kWordClassesName;
    std::error_code ignored;
    if (!std::filesystem::exists(classes, ignored)) return {std::move(names), std::nullopt};
    return {std::move(names), WordClasses::read(classes.string())};
}

/// Opens the lexicon that the words are for, the dictionary at @p first, if any, before its own ones.
void openAround(Tavo& analyser, WordListOptions const& options, std::string const& first) {
    std::vector<std::string> dictionaries = options.dictionaries;
    if (dictionaries.empty())
        dictionaries = dictionariesIn(std::filesystem::path(options.connTable).parent_path().string());
    if (dictionaries.empty())
        throw lexicon_error("", 0, "no SysDic beside " + options.connTable + "; name the lexicon's with -d");
    if (!first.empty()) dictionaries.insert(dictionaries.begin(), first);
    useTable(analyser, options.connTable);
    for (std::string const& path : dictionaries)
        namingDictionary(path, [&] { analyser.addDicPath(path.c_str(), true); });
}

std::vector<WordVerdict> judgeAll(WordListOptions const& options, NewWords const& words, std::string const& dictionary,
                                  std::vector<std::string> const& sentences) {
    std::vector<WordVerdict> verdicts;
    TrialDictionary const trial(dictionary);
    Tavo analyser;
    openAround(analyser, options, trial.path());
    for (std::string const& sentence : sentences) {
        tell(options.progress, "Judging sentences", verdicts.size(), sentences.size());
        verdicts.push_back(judge(analyser, words, sentence, options.encoding));
    }
    return verdicts;
}

/// The compiled dictionary.
std::string compiled(DicCompiler& compiler, WordListOptions const& options) {
    std::ostringstream out;
    if (!compiler.compile(out, options.verbose)) throw lexicon_error(options.output, 0, compiler.error());
    return std::move(out).str();
}

}  // namespace
}  // namespace words

WordList compileWords(std::string_view list, WordListOptions const& given) {
    using namespace words;
    WordListOptions options = given;
    options.connTable = tableAt(given.connTable);
    std::vector<std::string> sentences;
    for (std::string const& sentence : options.mustWin)
        sentences.push_back(asSjis(sentence, options.encoding, "--must-win"));
    NewWords words = readWords(options.connTable);
    if (!options.like.empty()) {
        Tavo lexicon;
        openAround(lexicon, options, {});
        words.setLike(findLike(lexicon, options.like, options.encoding));
    }
    requireEncoding(list, options.name, options.encoding);

    WordList result;
    SourceCompiler source(options, words);
    result.faults = source.addAll(list);
    result.words = source.compiler().recordCount();
    if (!std::all_of(result.faults.begin(), result.faults.end(), [](LexiconFault const& f) { return f.warning; }))
        return result;
    tell(options.progress, "Compiling");
    result.dictionary = compiled(source.compiler(), options);
    if (!options.output.empty()) {
        NewFile file(options.output);
        file.write(result.dictionary);
        file.commit();
        writeDictionaryIndexes(options.connTable, {options.output});
    }
    if (!sentences.empty()) result.verdicts = judgeAll(options, words, result.dictionary, sentences);
    if (!options.output.empty()) result.dictionary = {};
    result.made = true;
    return result;
}

std::vector<PartOfSpeech> partsOfSpeech(std::string const& connTable) {
    ConnTable const table(false, words::tableAt(connTable).c_str());
    std::vector<PartOfSpeech> parts;
    for (std::uint32_t id = 1; id <= table.idCount(); ++id) {
        std::string const name = table.getName(id);
        parts.push_back({static_cast<std::uint16_t>(id), sjisToUtf8(name), sjisToUtf8(displayPosName(name))});
    }
    return parts;
}

}  // namespace TAVO
