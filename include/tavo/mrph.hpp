// SPDX-License-Identifier: Apache-2.0
// TAVO::Mrph: one morpheme of an analysed sentence.
#ifndef TAVO_MRPH_HPP
#define TAVO_MRPH_HPP

#include <tavo/export.h>

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace TAVO {

class Dic;
class MrphDic;
class MrphCover;
class Tavo;
struct AnalyzerContext;
struct BoundaryInfo;
struct LatticeNode;
struct TagInfo;

/// One result morpheme: a copyable value that refers to the analyser's sentence
/// text and to a dictionary record, with an owned block of overridden values.
///
/// Lifetime: valid until the next analysis of the analyser that made it, or
/// until that analyser is destroyed; copy the strings you need for longer.
/// Threads: accessors only read; do not use one morpheme from two threads while
/// its analyser changes settings.
///
/// All texts are Shift_JIS bytes; positions, lengths and sizes are in bytes.
/// Part indexes run from 0 to getPartCount() - 1; a bad one throws range_error
/// with "RANGE_ERROR: Mrph::" + the accessor's name + "()".
///
/// Buffer forms copy at most size - 1 bytes and a NUL into @p buf and return the
/// number of bytes copied (the cut may split a character); a negative size or
/// start throws invalid_argument with "INVALID_ARGUMENT: Mrph::" + name + "()".
/// Pointers returned live as long as the morpheme and its dictionary.
/// A copy starts without the error state of its source.
class TAVO_EXPORT Mrph {
public:
    Mrph(Mrph const& other);
    Mrph(Mrph&& other) noexcept;
    Mrph& operator=(Mrph const& other);
    Mrph& operator=(Mrph&& other) noexcept;
    ~Mrph();

    // Scalars of the whole morpheme.

    /// Part-of-speech id; 3 (unknown word) when there is no record.
    unsigned short getPid() const;
    /// Word cost, 0 to 255; 255 when there is no record. A morpheme joined from
    /// several costs their sum.
    int getCost() const;
    /// Part-of-speech name of getPid(); empty without analyser.
    char const* getPartOfSP() const;
    /// The same name as users are shown it, without what only the analyser reads: the
    /// class number and the features of imported lexicons ("A:B:Undef:Kana-2": "A:B").
    std::string getDisplayPartOfSP() const;
    /// True when the part of speech is marked as undefined word.
    bool isUndef() const;
    /// True for an annotation of tagged input.
    bool isAnnotation() const;
    /// True when the record lies inside the analyser's first dictionary.
    bool isFirstDic() const;
    /// Number of parts, at least 1.
    int getPartCount() const;

    // Texts of the whole morpheme. For the form, plain = true gives the form as
    // analysed; for the others true drops the part separators "/".

    std::string getForm(bool plain) const;
    unsigned int getForm(char* buf, int size, int start, bool plain) const;
    unsigned int getFormLength() const;
    /// The form's bytes, not NUL-terminated; @p length receives their number.
    char const* getFormWithoutNullEnd(unsigned int& length) const;
    unsigned int getRawForm(char* buf, int size, int start) const;
    /// Where the morpheme stands in the text that was given to the analyser: its first byte, and behind its last. Line
    /// breaks, tags and entities that analysis takes out count: those inside the morpheme are inside, those at its
    /// ends outside; an annotation stands where its text does. A word that stands in no text, as of
    /// Tavo::getByRead(), throws logic_error "LOGIC_ERROR: Mrph::" + name + "()".
    std::size_t getGivenBegin() const;
    std::size_t getGivenEnd() const;
    std::string getStdForm(bool plain) const;
    unsigned int getStdForm(char* buf, int size, int start, bool plain) const;
    std::string getRead(bool plain) const;
    unsigned int getRead(char* buf, int size, bool plain) const;
    std::string getPron(bool plain) const;
    unsigned int getPron(char* buf, int size, bool plain) const;
    std::string getReadPron(bool plain) const;
    unsigned int getReadPron(char* buf, int size, bool plain) const;
    std::string getLVRead(bool plain) const;
    unsigned int getLVRead(char* buf, int size, bool plain) const;
    /// End (dictionary) forms, by the rules of the part of speech (docs/end-forms.md): those of 行っ give 行く. The
    /// plain texts where no rule fits.
    std::string getEndForm(bool plain) const;
    std::string getEndStdForm(bool plain) const;
    std::string getEndRead(bool plain) const;
    std::string getEndPron(bool plain) const;
    std::string getEndLVRead(bool plain) const;

    char const* getGroup() const;
    char const* getProsodicInfo() const;
    char const* getAdditionalInfo() const;
    char const* getGrammarType() const;
    char const* getProsodicType() const;
    char const* getWordCooc() const;
    char const* getGroupCooc() const;

    /// The three category lists.
    void getCategory(std::vector<unsigned short>& category1, std::vector<unsigned short>& category2,
                     std::vector<unsigned short>& category3) const;
    void getCategoryCount(unsigned char& count1, unsigned char& count2, unsigned char& count3) const;

    int getExtCount() const;
    /// Extension field @p index, 0-based; a bad index throws range_error "RANGE_ERROR: Mrph::getExt()".
    char const* getExt(int index) const;
    void getExt(std::vector<char const*>& fields) const;

    /// Number of other candidates at this place: those of the same length that take part in an analysis of the
    /// sentence; with the Alternative mode 1 all words of the dictionaries that begin here, whatever stands around
    /// them. Order: dictionary by dictionary, by increasing length. Text with markup has the former, of all lengths.
    int getAltCount() const;
    void getAlt(std::vector<Mrph>& alternatives) const;

    // One part, or all parts in order.

    int getPartLength(int index) const;
    void getPartLength(std::vector<int>& lengths) const;
    int getPartFormLength(int index) const;
    void getPartFormLength(std::vector<int>& lengths) const;
    std::string getPartForm(int index) const;
    void getPartForm(std::vector<std::string>& forms) const;
    /// Where the part stands in the text that was given, as getGivenBegin() and getGivenEnd().
    std::size_t getPartGivenBegin(int index) const;
    void getPartGivenBegin(std::vector<std::size_t>& begins) const;
    std::size_t getPartGivenEnd(int index) const;
    void getPartGivenEnd(std::vector<std::size_t>& ends) const;
    std::string getPartStdForm(int index) const;
    void getPartStdForm(std::vector<std::string>& forms) const;
    std::string getPartRead(int index) const;
    void getPartRead(std::vector<std::string>& readings) const;
    std::string getPartPron(int index) const;
    void getPartPron(std::vector<std::string>& pronunciations) const;
    std::string getPartReadPron(int index) const;
    void getPartReadPron(std::vector<std::string>& readProns) const;
    std::string getPartLVRead(int index) const;
    void getPartLVRead(std::vector<std::string>& readings) const;
    std::string getPartEndForm(int index) const;
    void getPartEndForm(std::vector<std::string>& forms) const;
    std::string getPartEndStdForm(int index) const;
    void getPartEndStdForm(std::vector<std::string>& forms) const;
    std::string getPartEndRead(int index) const;
    void getPartEndRead(std::vector<std::string>& readings) const;
    std::string getPartEndPron(int index) const;
    void getPartEndPron(std::vector<std::string>& pronunciations) const;
    std::string getPartEndLVRead(int index) const;
    void getPartEndLVRead(std::vector<std::string>& readings) const;
    unsigned short getPartPid(int index) const;
    void getPartPid(std::vector<unsigned short>& pids) const;
    char const* getPartOfSP(int index) const;
    void getPartOfSP(std::vector<char const*>& names) const;
    std::string getDisplayPartOfSP(int index) const;
    int getPartCost(int index) const;
    void getPartCost(std::vector<int>& costs) const;
    char const* getPartWordCooc(int index) const;
    void getPartWordCooc(std::vector<char const*>& ids) const;
    char const* getPartGroupCooc(int index) const;
    void getPartGroupCooc(std::vector<char const*>& ids) const;
    char const* getPartGroup(int index) const;
    void getPartGroup(std::vector<char const*>& groups) const;
    void getPartCategory(int index, std::vector<unsigned short>& category1, std::vector<unsigned short>& category2,
                         std::vector<unsigned short>& category3) const;
    void getPartCategoryCount(int index, unsigned char& count1, unsigned char& count2, unsigned char& count3) const;
    char const* getPartProsodicInfo(int index) const;
    void getPartProsodicInfo(std::vector<char const*>& infos) const;
    char const* getPartAdditionalInfo(int index) const;
    void getPartAdditionalInfo(std::vector<char const*>& infos) const;
    char const* getPartProsodicType(int index) const;
    void getPartProsodicType(std::vector<char const*>& types) const;
    char const* getPartGrammarType(int index) const;
    void getPartGrammarType(std::vector<char const*>& types) const;
    int getPartExtCount(int index) const;
    /// Extension field @p field of part @p index.
    char const* getPartExt(int index, int field) const;
    void getPartExt(int index, std::vector<char const*>& fields) const;

    // Formatting; docs/format-string.md tells the language.

    /// The whole morpheme through @p fmt; empty values are written as
    /// @p nullString. A null argument throws invalid_argument
    /// "INVALID_ARGUMENT: Mrph::format()".
    std::string format(char const* fmt, char const* nullString) const;
    /// The same for one part; a bad part throws range_error "RANGE_ERROR: Mrph::format()".
    std::string format(int part, char const* fmt, char const* nullString) const;
    /// Writes the formatted morpheme, with @p byPart once per part.
    std::ostream& output(std::ostream& os, char const* fmt, char const* nullString, bool byPart) const;
    /// Writes one formatted part; a bad part throws range_error "RANGE_ERROR: Mrph::output()".
    std::ostream& output(std::ostream& os, int part, char const* fmt, char const* nullString) const;
    /// Writes the morpheme as one line of dictionary source; a null @p dic
    /// writes "ERROR: ILLEGAL USAGE" instead.
    std::ostream& source(std::ostream& os, Dic const* dic) const;

    // Error state, kept for interfaces that cannot catch exceptions.

    void clearError() const;
    int setErrorWhat(int code, std::string text) const;
    int getErrorCode() const;
    char const* getErrorWhat() const;

private:
    friend struct MrphAccess;

    TAVO_HIDDEN Mrph(char const* text, unsigned int length, unsigned char const* dic, AnalyzerContext const* owner);
    TAVO_HIDDEN Mrph(char const* text, LatticeNode const* node, AnalyzerContext const* owner);
    TAVO_HIDDEN Mrph(Mrph const& other, unsigned char const* dic);

    char const* form_;
    std::uint32_t formLength_;
    std::uint32_t sentence_ = 0xFFFFFFFF;  // index of a sentence with a text of its own, else none
    unsigned char const* dic_;
    char const* rawForm_;
    AnalyzerContext const* owner_;
    LatticeNode const* node_ = nullptr;
    mutable std::unique_ptr<MrphCover> cover_;
    std::uint32_t rawFormLength_;
    std::uint32_t partCount_ = 1;
    std::int32_t dicIndex_ = -1;  // place of the record's dictionary in the analyser's list; -1 unless known
    mutable std::unique_ptr<std::pair<int, std::string>> error_;
};

}  // namespace TAVO

#endif
