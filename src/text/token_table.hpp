// A tokenizer: its analyser, and the columns of its last result.
#ifndef TAVO_TEXT_TOKEN_TABLE_HPP
#define TAVO_TEXT_TOKEN_TABLE_HPP

#include "text/lexicon_version.hpp"
#include "text/sjis_buffer.hpp"
#include "text/tagged_line.hpp"
#include "text/word_table.hpp"

#include <tavo/tokenizer.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

class TokenTable {
public:
    TokenTable(std::shared_ptr<LexiconVersion const> version, TokenizerOptions const& options);

    void tokenize(std::span<std::string_view const> texts);
    void tokenizeNBest(std::string_view text, int n);
    void tokenizeTagged(std::string_view text);
    void lookUp(std::string_view text, LookUp by, std::size_t most);

    // The last result. Positions are in bytes of their text.
    std::size_t textCount() const noexcept { return texts_.size(); }
    std::size_t tokenCount() const noexcept { return begin_.size(); }
    std::string_view text(std::size_t text) const noexcept { return texts_[text]; }
    std::vector<std::uint32_t> const& firstOfText() const noexcept { return firstOfText_; }
    std::vector<std::uint32_t> const& begin() const noexcept { return begin_; }
    std::vector<std::uint32_t> const& end() const noexcept { return end_; }
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

    LexiconVersion const& version() const noexcept { return *version_; }
    std::shared_ptr<LexiconVersion const> const& shared() const noexcept { return version_; }

private:
    /// A part of a text in the buffer.
    struct Segment {
        SjisBuffer::Range range;
        std::uint32_t text;
    };

    void start(std::span<std::string_view const> texts);
    void addPath(std::vector<Mrph> const& path, Sentence const& sentence, Segment const& segment);
    void addTaggedLine(std::string_view line);
    void addToken(std::uint32_t begin, std::uint32_t end, std::uint32_t word) {
        begin_.push_back(begin);
        end_.push_back(end);
        word_.push_back(word);
    }
    /// Analyses keep no place in the caller's texts.
    void finish();
    void addText(std::uint32_t text);
    void analyse();
    void addSentence(Sentence const& sentence, int index, Segment const& segment);
    void addPieces(Sentence const& sentence, std::size_t at, Segment const& segment);
    void beginTextsUpTo(std::size_t text);
    Positions const& made(Positions& positions, bool utf16);

    std::shared_ptr<LexiconVersion const> version_;
    TokenizerOptions options_;
    Tavo analyser_;
    WordTable words_;
    SjisBuffer buffer_;
    std::vector<Segment> segments_;
    std::vector<WordPiece> pieces_;  // of the sentence at work
    std::vector<Mrph> morphemes_;

    std::vector<std::string_view> texts_;
    std::vector<std::uint32_t> firstOfText_, begin_, end_, word_;
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
