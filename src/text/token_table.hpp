// A tokenizer: its analyser, and the columns of its last result.
#ifndef TAVO_TEXT_TOKEN_TABLE_HPP
#define TAVO_TEXT_TOKEN_TABLE_HPP

#include "text/lexicon_version.hpp"
#include "text/sjis_buffer.hpp"
#include "text/tagged_line.hpp"
#include "text/word_table.hpp"
#include "text/word_values.hpp"

#include <tavo/lexicon_maker.hpp>
#include <tavo/tokenizer.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// What the program asks for beside what hosts do.
struct TokenTableOptions {
    TextEncoding encoding = TextEncoding::Utf8;  ///< of the texts, and of all that is told of them
    bool keepBlanks = false;
    bool surfacesOnly = false;  ///< words need no numbers
    std::vector<WordValue> values;
};

/// The length of the first part of @p text with at most @p limit bytes, which ends between two characters.
std::size_t lengthWithin(std::string_view text, std::size_t limit, TextEncoding encoding) noexcept;

class TokenTable {
public:
    TokenTable(std::shared_ptr<LexiconVersion const> version, TokenizerOptions const& options);
    /// Copies settings and attachments of @p prototype.
    TokenTable(Tavo const& prototype, TokenTableOptions options);

    /// Line breaks end sentences and stand between words, or are text as any other.
    void setBreaksAreText(bool areText);
    void tokenize(std::span<std::string_view const> texts);
    void tokenizeNBest(std::string_view text, int n);
    void tokenizeTagged(std::string_view text);
    void lookUp(std::string_view text, LookUp by, std::size_t most);
    /// @p line is one line; text() of each analysis is the same.
    void tokenizeTaggedNBest(std::string_view line, int n);

    // The last result. Positions are in bytes of their text.
    std::size_t textCount() const noexcept { return texts_.size(); }
    std::size_t tokenCount() const noexcept { return begin_.size(); }
    std::string_view text(std::size_t text) const noexcept { return texts_[text]; }
    std::vector<std::uint32_t> const& firstOfText() const noexcept { return firstOfText_; }
    std::vector<std::uint32_t> const& begin() const noexcept { return begin_; }
    std::vector<std::uint32_t> const& end() const noexcept { return end_; }
    /// The tokens that sentences end before, in order, and the first of these numbers of each text.
    std::vector<std::uint32_t> const& sentenceEnds() const noexcept { return sentenceEnds_; }
    std::vector<std::uint32_t> const& firstSentence() const noexcept { return firstSentence_; }
    /// Number of bytes of a text that are not UTF-8.
    std::uint32_t invalidBytes(std::size_t text) const noexcept { return invalidBytes_[text]; }
    WordTable::Word const& word(std::size_t token) const noexcept { return words_.word(word_[token]); }
    PosTexts::Part const& pos(std::size_t token) const { return words_.pos(word_[token]); }
    std::string_view surface(std::size_t token, std::size_t text) const noexcept {
        return texts_[text].substr(begin_[token], end_[token] - begin_[token]);
    }
    /// Of N-best, by analysis; else empty.
    std::vector<std::uint32_t> const& connectionCosts() const noexcept { return connectionCosts_; }
    std::vector<std::uint32_t> const& wordCosts() const noexcept { return wordCosts_; }
    /// True when tokens count in a text that was made: of tagged text or a look-up. It is text(0).
    bool hasOwnText() const noexcept { return hasOwnText_; }
    /// The number in strings() of a token's text.
    std::uint32_t textId(std::size_t token, std::size_t text, TokenText which);
    StringTable& strings() noexcept { return words_.strings(); }
    StringTable const& strings() const noexcept { return words_.strings(); }
    std::uint64_t stringsVersion() const noexcept { return words_.version(); }

    /// Positions in another unit, found for all tokens when they are asked for first.
    struct Positions {
        std::vector<std::uint32_t> begin, end;
        bool made = false;
    };
    Positions const& characters() { return made(characters_, false); }
    Positions const& utf16() { return made(utf16_, true); }

    /// Numbers of the tokens' words, which last until stringsVersion() changes, and the texts of such a word where the
    /// text has it as @p surface.
    std::vector<std::uint32_t> const& wordNumbers() const noexcept { return word_; }
    std::uint32_t textIdOf(std::uint32_t word, std::string_view surface, TokenText which);
    WordTable& words() noexcept { return words_; }
    /// What @p token stands for: its surface, the text of an annotation.
    std::string_view shownText(std::size_t token, std::size_t text);
    /// Value @p index of a token; that of one without analysis is empty. Lives until the next call.
    std::string_view value(std::size_t token, std::string_view shown, std::size_t index);

    LexiconVersion const& version() const noexcept { return *version_; }
    std::shared_ptr<LexiconVersion const> const& shared() const noexcept { return version_; }

private:
    /// A part of a text in the buffer.
    struct Segment {
        SjisBuffer::Range range;
        std::uint32_t text;
    };
    struct TaggedPlace;

    template <class Body>
    void asTagged(Body body);
    template <class Body>
    void eachAnalysis(std::string_view text, int n, Body addSentencePath);
    Segment addToBuffer(std::string_view piece, std::uint32_t base, std::uint32_t text);
    void assignLine(std::string_view line);

    void start(std::span<std::string_view const> texts);
    void addPath(std::vector<Mrph> const& path, Sentence const& sentence, Segment const& segment);
    void addTaggedLine(std::string_view line);
    void addTaggedPath(std::vector<Mrph> const& path, Sentence const& sentence, TaggedPlace& place);
    void addToken(std::uint32_t begin, std::uint32_t end, std::uint32_t word) {
        begin_.push_back(begin);
        end_.push_back(end);
        word_.push_back(word);
    }
    bool isWord(std::string_view text, std::size_t begin, std::size_t end) const noexcept;
    /// Analyses keep no place in the caller's texts.
    void finish();
    void addText(std::uint32_t text);
    void analyse();
    void addSentence(Sentence const& sentence, int index, Segment const& segment);
    template <class Item>
    void addItems(std::vector<Item> const& items, Sentence const& sentence, Segment const& segment);
    void endSentence() { sentenceEnds_.push_back(static_cast<std::uint32_t>(begin_.size())); }
    void beginTextsUpTo(std::size_t text);
    Positions const& made(Positions& positions, bool utf16);

    std::shared_ptr<LexiconVersion const> version_;
    TokenTableOptions options_;
    bool breaksAreText_ = false;
    bool hasMarkup_ = false;  // what begins in a text may end in another
    Tavo analyser_;
    WordTable words_;
    SjisBuffer buffer_;
    std::vector<Segment> segments_;
    std::vector<WordPiece> pieces_;  // of the sentence at work
    std::vector<unsigned int> lengths_;
    std::vector<Mrph> morphemes_;

    std::vector<std::string_view> texts_;
    std::vector<std::uint32_t> firstOfText_, begin_, end_, word_;
    std::vector<std::uint32_t> sentenceEnds_, firstSentence_, invalidBytes_;
    std::vector<std::uint32_t> connectionCosts_, wordCosts_;
    bool hasOwnText_ = false;
    std::string plainText_;
    LineText line_;
    TaggedLine taggedLine_;
    Positions characters_, utf16_;
    std::string scratch_;
};

}  // namespace TAVO

#endif
