// SPDX-License-Identifier: Apache-2.0
// TAVO::Tavo: the analyser.
#ifndef TAVO_TAVO_HPP
#define TAVO_TAVO_HPP

#include <tavo/export.h>
#include <tavo/version.h>
#include <tavo/error.hpp>
#include <tavo/mrph.hpp>

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace TAVO {

/// What an analysis of a sentence costs. Analyses are ordered by the first sum,
/// then by the second.
struct PathCost {
    unsigned int connection;  ///< sum of the connection costs, from the beginning of the text to its end
    unsigned int word;        ///< sum of the word costs
};

/// The analyser: settings, attached dictionaries and connection table, and the
/// state of the last analysis.
///
/// Texts are Shift_JIS bytes (code page 932, NUL is an ordinary byte); lengths
/// and positions are in bytes; sentence and dictionary indexes start at 0.
/// Threads: one analyser belongs to one thread at a time. Different analysers
/// may run in parallel once readyForThread() was called; loaded dictionaries
/// and connection tables are shared by all analysers of the process.
/// Errors are exceptions of <tavo/error.hpp> or of the standard library; null
/// pointers throw invalid_argument "INVALID_ARGUMENT: Tavo::" + name + "()",
/// bad indexes range_error "RANGE_ERROR: Tavo::" + name + "()".
class TAVO_EXPORT Tavo {
public:
    /// @p nodeCapacity: lattice nodes allocated at once, 0 selects 4096; a
    /// negative value throws invalid_argument.
    explicit Tavo(int nodeCapacity = 0);
    /// Copies settings, rule tables and attachments, not the last analysis.
    /// Each dictionary counts one more user.
    Tavo(Tavo const& other);
    Tavo& operator=(Tavo const& other);
    ~Tavo();

    /// Creates the process-wide lock; call it once before analysers are used
    /// from more than one thread. Without it the library does no locking. Opening a Lexicon calls it.
    static void readyForThread();
    /// Frees every pooled dictionary and connection table and the lock. Call it
    /// after the last analyser is destroyed.
    static void dispose();

    /// True when a connection table and at least one dictionary are attached
    /// and loaded.
    explicit operator bool() const;
    /// True when the last analysis left results to fetch.
    bool hasResult() const;

    // Settings. Every mode setter drops the results of the last analysis and
    // throws invalid_argument outside its range.

    /// Reads @p path (lines of key=value) and applies its keys in a fixed
    /// order; docs/init-file.md lists them. Without ReduceRule, NumberPartOfSP, EndFormRule and CooccurrenceRule it
    /// takes reduce.rules, number.list, end.rules and cooc.rules from beside its connection table, where these exist.
    /// What was applied before an error stays.
    void setInitFilePath(char const* path);
    char const* getInitFilePath() const;

    /// What is analysed in the place of the text (docs/normalisation.md): 1 widths, composed characters, iteration and
    /// long-vowel marks in the forms of the dictionaries; 2 variants of kanji, too; default 0: the text as given.
    void setInputConvertMode(int mode);
    int getInputConvertMode() const;
    /// Mrph::getForm() and getAnalyzedText() where the input was converted: 0 as given (default), 1 "given(converted)"
    /// without the plain flag, 2 as converted, 3 as given, with its line breaks.
    void setOutputConvertMode(int mode);
    int getOutputConvertMode() const;
    /// 1: a line break ends a sentence; default 0. Many short lines in one text take less time than a text each.
    void setDelimitCRLFMode(int mode);
    int getDelimitCRLFMode() const;
    void setDeleteCRLFMode(int mode);  ///< 1: line breaks are removed; default 0
    int getDeleteCRLFMode() const;
    /// 1: of analyses that cost hardly more than the best one, that whose words fit together best is taken, and
    /// getResultNBest() puts such first (docs/cooccurrence.md), also after analyze(); default 0.
    void setCooccurrenceMode(int mode);
    int getCooccurrenceMode() const;
    void setTaggedInputMode(int mode);  ///< 1: tagged text (docs/tagged-input.md); default 0
    int getTaggedInputMode() const;
    /// 0: "/" in StdForm, Read, Pron and LVRead of tagged text is a character; 1: it separates parts; default 1
    void setDeleteSlashMode(int mode);
    int getDeleteSlashMode() const;
    void setAlphabetCapitalizeMode(int mode);  ///< 1: words of letters are found in any case; default 0
    int getAlphabetCapitalizeMode() const;
    void setDivideWordMode(int mode);  ///< 1: compounds come out as their parts; default 0
    int getDivideWordMode() const;
    void setMemoryMappedMode(int mode);  ///< 1: an init file's dictionaries are mapped; default 1
    int getMemoryMappedMode() const;
    /// 1: Mrph::getAlt() gives words of every length, getResultNBest() more than the best after analyze(); default 0
    void setAlternativeMode(int mode);
    int getAlternativeMode() const;
    void setReduceNumberMode(int mode);  ///< 0..1, default 1
    int getReduceNumberMode() const;
    void setReduceUndefMode(int mode);  ///< 0..1, default 1
    int getReduceUndefMode() const;
    void setReduceCharMode(int mode);  ///< 0..1, default 1
    int getReduceCharMode() const;

    /// Prosodic information of a morpheme joined from several: 1 takes the
    /// first one's, 2 the last one's (default), 0 joins all with @p filler.
    void setProsodicInfoCombineMode(int mode, std::string filler);
    int getProsodicInfoCombineMode() const;
    char const* getProsodicInfoFiller() const;
    /// The same for extension field @p index.
    void setExtCombineMode(int index, int mode, std::string filler);
    /// The mode of field @p index; 0 when none is set.
    int getExtCombineMode(int index) const;
    char const* getExtFiller(int index) const;

    /// Strings that end a sentence; an empty one never matches.
    void setDelimiterString(std::vector<char const*> const& strings);
    std::vector<char const*> getDelimiterString() const;
    void clearDelimiterString();

    // Pointers of string getters are valid until the setting changes.

    void setOutputFormat(char const* format);  ///< default "%10w %20h %k\n"
    char const* getOutputFormat() const;
    void setNullString(char const* text);  ///< what an empty value is written as
    char const* getNullString() const;
    void setEOS(char const* text);  ///< written by output() after each sentence
    char const* getEOS() const;

    // Rule and list files.

    /// Reads the connection table and rebuilds the part-of-speech tables.
    /// Throws file_not_found, illegal_format, or not_adaptable when an attached
    /// dictionary has other part-of-speech names.
    void setConnTablePath(char const* path);
    char const* getConnTablePath() const;
    /// Part-of-speech lists; null goes back to the built-in defaults.
    void setNumberPartOfSPPath(char const* path);
    char const* getNumberPartOfSPPath() const;
    void setMajorPartOfSPPath(char const* path);
    char const* getMajorPartOfSPPath() const;
    void setPublicPartOfSPPath(char const* path);
    char const* getPublicPartOfSPPath() const;
    /// Reads rules that take spans of the text as comments
    /// (docs/comment-rules.md); null clears them. Throws file_not_found, and
    /// illegal_format (path:line:cause), after which the earlier rules stay.
    void setCommentRulePath(char const* path);
    char const* getCommentRulePath() const;
    /// Reads rules of input conversion (docs/normalisation.md), which act with InputConvert at 1 or 2; null clears
    /// them. Throws file_not_found, and illegal_format (path:line:cause), after which the earlier rules stay.
    void setConvertRulePath(char const* path);
    char const* getConvertRulePath() const;
    /// Reads rules that join runs of morphemes and phrases (docs/reduce-rules.md); null
    /// clears them. Throws file_not_found, and illegal_format (path:line:cause).
    void setReduceRulePath(char const* path);
    char const* getReduceRulePath() const;
    /// Reads the rules of end forms (docs/end-forms.md), which Mrph::getEndForm() and its like follow; null clears
    /// them. Throws file_not_found, and illegal_format (path:line:cause), after which the earlier rules stay.
    void setEndFormRulePath(char const* path);
    char const* getEndFormRulePath() const;
    /// Settings of the cooccurrence mode (docs/cooccurrence.md); null gives their defaults.
    void setCooccurrenceRulePath(char const* path);
    char const* getCooccurrenceRulePath() const;

    /// The id of a part-of-speech name, 0 when unknown.
    unsigned short getPid(std::string const& name) const;
    /// The name of an id; empty beyond getPidMax().
    std::string getPartOfSP(unsigned short pid) const;
    /// The same as users are shown it (Mrph::getDisplayPartOfSP).
    std::string getDisplayPartOfSP(unsigned short pid) const;
    /// The largest part-of-speech id; 0 without connection table.
    unsigned short getPidMax() const;

    // Dictionaries, in order of priority.

    /// Adds a dictionary: "compiled" or "compiled,source" paths. Adding a path
    /// twice changes nothing. Throws file_not_found, illegal_format,
    /// busy_dictionary (being rebuilt) or not_adaptable.
    void addDicPath(char const* pathSpec, bool memoryMapped);
    int getDicCount() const;
    /// Position of the dictionary with exactly this path, else file_not_found.
    int getDicIndex(char const* path) const;
    char const* getDicPath(int index) const;
    char const* getSrcPath(int index) const;
    /// Takes a dictionary, or all, off the list and drops results; morphemes fetched
    /// before are no longer valid: another analyser may rebuild the dictionary from now on,
    /// and it may leave memory to make room for others.
    void offDic(int index);
    void offDic(char const* path);
    void offDic();
    /// Checks its argument; has no other effect.
    void touchDic(int index);
    void touchDic(char const* path);
    void touchDic();
    /// Rebuilds a dictionary from its source when that is newer. 0 nothing to
    /// do, 1 rebuilt, 2 used by another analyser, 3 no source path, 4 source
    /// unreadable, 5 source refused, 6 a file step failed. Should the old file be
    /// unusable, too, after a 6, the analyser is not ready until the dictionary is taken
    /// off and added again.
    int updateDic(int index);
    int updateDic(char const* path);
    /// The words of a dictionary whose reading equals @p reading.
    void getByRead(std::vector<Mrph>& result, char const* reading, int index);
    void getByRead(std::vector<Mrph>& result, char const* reading, char const* path);

    // Analysis. A text that the caller keeps is not copied: it must stay valid and
    // unchanged until the results have been fetched and are no longer used. A
    // temporary or a literal becomes the analyser's own, until it takes the next one.

    /// Analyses @p length bytes. Returns the number of sentences that failed.
    int analyze(char const* text, int length);
    int analyze(std::string const& text);
    int analyze(std::string&& text);

    /// The same, so that getResultNBest() can give more than the best analysis; a
    /// line of more than 8192 bytes throws too_long_string (the sentences before
    /// it stay).
    int analyzeNBest(char const* text, int length);
    int analyzeNBest(std::string const& text);
    int analyzeNBest(std::string&& text);

    unsigned int getSentenceCount() const;
    std::string getSentence(int sentence) const;
    unsigned int getSentenceLength(int sentence) const;
    char const* getSentencePtrWithoutNullEnd(int sentence) const;
    std::string getAnalyzedText(int sentence) const;
    unsigned int getAnalyzedTextLength(int sentence) const;
    /// The morphemes of a sentence.
    void getResult(std::vector<Mrph>& out, int sentence);
    /// Replaces @p lengths by how many bytes of the sentence's text each morpheme of
    /// getResult() stands for (0 for an annotation), which is all that dividing a text into words
    /// needs and takes less time. Throws as getResult() does.
    void getLengths(std::vector<unsigned int>& lengths, int sentence);
    /// Replaces @p results by up to @p n analyses of a sentence, best first; n of 0
    /// changes nothing. The order is by connection costs, then by word costs, then
    /// as docs/n-best.md tells; each analysis comes once. After a plain analyze()
    /// (unless the Alternative or the Cooccurrence mode is 1) and for a sentence
    /// that failed, the one analysis that getResult() gives. Throws range_error
    /// for a bad sentence, invalid_argument for a negative n, tavo_not_ready
    /// without analysis; @p results then stay as they were.
    void getResultNBest(std::vector<std::vector<Mrph>>& results, int sentence, int n);
    /// The same with the costs of each analysis; both 0 for a failed sentence.
    void getResultNBest(std::vector<std::vector<Mrph>>& results, std::vector<PathCost>& costs, int sentence, int n);
    /// Writes a sentence: each morpheme in the output format, then EOS.
    std::ostream& output(std::ostream& os, int sentence);

    // Error state, kept for interfaces that cannot catch exceptions.

    int setErrorWhat(int code, std::string text) const;
    void clearError() const;
    int getErrorCode() const;
    char const* getErrorWhat() const;
    /// The sentences of the last input that could not be analysed.
    std::vector<unsigned int> const& getErrorSentenceIndex() const;

private:
    friend struct TavoAccess;
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace TAVO

#endif
