// SPDX-License-Identifier: Apache-2.0
// Making lexicons: word lists, MeCab's lexicons, search indexes; checking and dumping.
//
// Nothing here prints or ends the process. What ends the work is thrown: lexicon_error with file, line and cause,
// the exceptions of <tavo/error.hpp> for a dictionary or connection table that cannot be loaded, bad_alloc. Names of
// parts of speech and texts are UTF-8, unless an option says otherwise; paths are as the system takes them.
//
// The functions share loaded dictionaries with the analysers of the process: where these run in several threads,
// Tavo::readyForThread() has to come first.
#ifndef TAVO_LEXICON_MAKER_HPP
#define TAVO_LEXICON_MAKER_HPP

#include <tavo/export.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

enum class TextEncoding { Utf8, Sjis };

/// Something wrong, for a person to read.
struct LexiconFault {
    std::string file;      ///< as it was named; empty: the cause tells
    std::size_t line = 0;  ///< from 1; 0: the file as a whole
    std::string cause;     ///< what is wrong, and what to do
    bool warning = false;  ///< the work went on

    /// "file:line: cause", without what is not there.
    TAVO_EXPORT std::string text() const;
};

/// A fault that ends the work; what() is its text().
class TAVO_EXPORT lexicon_error : public std::runtime_error {
public:
    explicit lexicon_error(LexiconFault fault);
    lexicon_error(std::string file, std::size_t line, std::string cause);
    lexicon_error(lexicon_error const&);
    lexicon_error& operator=(lexicon_error const&);
    ~lexicon_error() override;
    LexiconFault const& fault() const noexcept { return fault_; }

private:
    LexiconFault fault_;
};

/// Told of now and then: a stage's name, and how much of it is done where that is known (else both are 0). False ends
/// the work with a lexicon_error, "stopped by the caller".
using LexiconProgress = std::function<bool(char const* stage, std::size_t done, std::size_t total)>;

// ---- word lists ----

struct WordListOptions {
    /// Connection table of the lexicon that the words are for, or the folder that it lies in; it names the parts of
    /// speech.
    std::string connTable;
    /// Dictionaries of that lexicon, for like and mustWin. None: those beside the connection table.
    std::vector<std::string> dictionaries;
    /// A word of the lexicon that gives what lines leave empty, part of speech and cost. The beginning of a part of
    /// speech may stand behind it: "そば,名詞".
    std::string like;
    /// Sentences that the new words should win in; see WordList::verdicts.
    std::vector<std::string> mustWin;
    /// Lines of MeCab's CSV format instead of dictionary source; ids and cost may be empty.
    bool mecabFormat = false;
    /// Encoding of the list, of the texts above and of all that is told.
    TextEncoding encoding = TextEncoding::Utf8;
    /// The list's name in faults.
    std::string name = "words";
    /// Dictionary to write, which takes the place of an older one when it is whole; its search index comes beside it.
    /// Empty: WordList::dictionary has its bytes.
    std::string output;
    LexiconProgress progress;
    /// The compiler tells its stages on the standard error stream too.
    bool verbose = false;
};

/// Whether a word of a new dictionary is in the best analysis of a sentence.
struct WordVerdict {
    bool wins = false;
    std::string text;  ///< a line to read: the analysis, or what the word lacks
};

struct WordList {
    bool made = false;                  ///< without faults but warnings
    std::size_t words = 0;              ///< words of the list
    std::string dictionary;             ///< the compiled dictionary, when no output was named
    std::vector<LexiconFault> faults;   ///< all of the list, in the order of its lines
    std::vector<WordVerdict> verdicts;  ///< one for each sentence of mustWin
};

/// Compiles @p list, a word a line. Faulty lines are told of, all of them, and then nothing is written.
TAVO_EXPORT WordList compileWords(std::string_view list, WordListOptions const& options);

/// A part of speech of a connection table.
struct PartOfSpeech {
    std::uint16_t id = 0;
    std::string name;         ///< as the table has it, cost class included
    std::string displayName;  ///< as a person writes it
};

/// Those of the table at @p connTable, or in that folder, by id, from 1 on.
TAVO_EXPORT std::vector<PartOfSpeech> partsOfSpeech(std::string const& connTable);

// ---- lexicons of MeCab's format ----

struct MecabImportOptions {
    std::string folder;                ///< with *.csv, matrix.def, unk.def, char.def, dicrc
    std::string output;                ///< folder to write to; made when missing
    std::string charset;               ///< of the source; empty: as its dicrc says
    std::string text;                  ///< UTF-8 file to fit costs on, a sentence a line; empty: sentences are drawn
    std::string dataFolder;            ///< that tavo.init names; empty: output
    std::vector<std::string> notices;  ///< files for COPYING; none: the source's or its package's
    bool source = false;               ///< write the dictionary's source text too

    /// Fields behind the four fixed ones, from 0; -1: there is none. Taken when fieldsGiven, else from the
    /// number of fields that the source has.
    bool fieldsGiven = false;
    int posFields = 6, baseField = 6, readingField = 7, pronField = 8;

    double step = 130;              ///< source cost of one unit of a connection cost
    double levelTolerance = 10;     ///< weighted error at which cost levels merge; 0: none do
    double contextTolerance = 3e4;  ///< error at which rows or columns merge; 0: equal ones do
    double maxTableBytes = 46e6;    ///< of the matrix; more merges until it fits
    LexiconProgress progress;
};

/// Makes a lexicon of the one in @p options.folder. Returns the report, "name: value" lines, that is also written
/// beside it.
TAVO_EXPORT std::string importMecab(MecabImportOptions const& options);

// ---- cooccurrence ----

struct CooccurrenceOptions {
    /// Folder or init file of the lexicon; empty: the first that is found.
    std::string lexicon;
    /// The corpus is tagged text (docs/tagged-input.md): a tagged homograph is counted as what its tag says.
    bool tagged = false;
    std::string name = "corpus";  ///< of the corpus, in faults
    /// Dictionary to write, with its search index. Beside it come FILE.rules and FILE.init, where FILE is this name
    /// without ".dic".
    std::string output;
    std::uint32_t window = 40;   ///< distance, in characters, of words that are counted together
    std::size_t leastCount = 3;  ///< of a word beside a homograph, and of the homograph
    double leastRatio = 4;  ///< how much more often, at least, a word stands beside one homograph than beside others
    double mostSentences =
        0.05;                   ///< share of the sentences; a word in more of them, and in more than 20, tells nothing
    std::uint32_t margin = 20;  ///< for the rules: connection cost by which an analysis may be dearer
    LexiconProgress progress;
};

struct CooccurrenceReport {
    std::size_t sentences = 0;   ///< of the corpus
    std::size_t evidence = 0;    ///< words of it that could be one of several homographs only
    std::size_t homographs = 0;  ///< forms that got ids to choose by
    std::size_t words = 0;       ///< lines of the dictionary
};

/// Counts which words occur with which homographs in @p corpus, UTF-8, a text a line, and writes them as cooccurrence
/// ids into a user dictionary (docs/cooccurrence.md).
TAVO_EXPORT CooccurrenceReport learnCooccurrence(std::string_view corpus, CooccurrenceOptions const& options);

// ---- files ----

/// What does not hold in a compiled dictionary, and in a connection table, given as the bytes of their files. @p file
/// names them in the faults.
TAVO_EXPORT std::vector<LexiconFault> checkDictionary(std::string_view bytes, std::string const& file);
TAVO_EXPORT std::vector<LexiconFault> checkTable(std::string_view bytes, std::string const& file);
/// Whether these two files, each of them sound, go together, and their search indexes with them.
TAVO_EXPORT std::vector<LexiconFault> checkTogether(std::string const& dictionary, std::string const& connTable);

/// Hands the words of a dictionary to @p write as lines of dictionary source, some at a time. Returns the number of
/// lines that hold codes which UTF-8 does not keep apart, so that compiling them gives others.
TAVO_EXPORT std::size_t dumpDictionary(std::string const& dictionary, TextEncoding encoding,
                                       std::function<void(std::string_view lines)> const& write);

/// Writes the search index of the connection table, and those of dictionaries with it, beside their files.
TAVO_EXPORT void writeTableIndex(std::string const& connTable);
TAVO_EXPORT void writeDictionaryIndexes(std::string const& connTable, std::vector<std::string> const& dictionaries);

}  // namespace TAVO

#endif
