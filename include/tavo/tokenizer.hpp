// SPDX-License-Identifier: Apache-2.0
// TAVO::Tokenizer: words of UTF-8 texts.
#ifndef TAVO_TOKENIZER_HPP
#define TAVO_TOKENIZER_HPP

#include <tavo/export.h>
#include <tavo/lexicon.hpp>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace TAVO {

class TokenTable;

/// What characters a word is made of, told by its first one.
enum class CharacterKind : std::uint8_t {
    Other,
    Kanji,
    Hiragana,
    Katakana,
    Latin,
    Greek,
    Cyrillic,
    Hangul,
    Letter,
    Digit,
    Symbol,
    Emoji,
    Blank,
    Invalid
};

/// The texts of a token that are looked up.
enum class TokenText : std::uint8_t {
    Pos,
    PosFields,
    ConjugationType,
    ConjugationForm,
    Base,
    Reading,
    Pronunciation,
    Normalized,
    Annotation,
    Additional,
    Converted
};
inline constexpr std::size_t kTokenTexts = 11;

/// A word of a text: an index into the tokenizer's columns, cheap to copy. A value is found when it is asked for, and
/// once per distinct word.
///
/// Lives until the next call of its tokenizer, and so do the views that its functions return; views of surface() are
/// views of the given text and live as long as that. Texts are UTF-8; an empty one is a value that the word lacks.
class TAVO_EXPORT Token {
public:
    /// The bytes of the text that the word stands for, as given.
    std::string_view surface() const noexcept;
    /// Where it stands in the text, in bytes.
    std::size_t begin() const noexcept;
    std::size_t end() const noexcept;
    /// The same in characters (code points), and in the units of UTF-16. A byte that is not UTF-8 counts as one.
    std::size_t charBegin() const;
    std::size_t charEnd() const;
    std::size_t utf16Begin() const;
    std::size_t utf16End() const;

    /// The part of speech as a person writes it: levels with ":" between them, conjugation last.
    std::string_view pos() const;
    /// Its levels without the conjugation. The views live as long as the tokenizer.
    std::span<std::string_view const> posFields() const;
    /// Empty without conjugation, and where the lexicon does not tell (docs/import.md: pos.fields).
    std::string_view conjugationType() const;
    std::string_view conjugationForm() const;
    /// The dictionary form; of a word that has none other its surface without the characters that analysis skips.
    std::string_view base() const;
    /// In katakana.
    std::string_view reading() const;
    std::string_view pronunciation() const;
    /// The base form as search compares it: full-width letters and digits and half-width kana in their usual width,
    /// letters small.
    std::string_view normalized() const;
    /// What was analysed in the place of the surface, where input conversion (docs/normalisation.md) changed it; else
    /// the surface without the characters that analysis skips.
    std::string_view converted() const;
    /// Of tagged text.
    std::string_view annotation() const;
    std::string_view additional() const;
    /// Number of a text in the tokenizer's table: equal texts of a tokenizer have equal numbers until its
    /// textsVersion() changes. 0 is the empty text. The levels of PosFields are separated by tabs.
    std::uint32_t textId(TokenText which) const;

    /// Word cost, 0 to 255; of a word joined from several their sum.
    int cost() const noexcept;
    /// In no dictionary.
    bool isUnknown() const noexcept;
    /// An annotation of tagged text, which stands beside the text: begin() equals end().
    bool isAnnotation() const noexcept;
    CharacterKind kind() const noexcept;
    /// The dictionary's word, the same for all tokenizers of a lexicon version; 0 of words that no dictionary holds:
    /// unknown ones, those joined from several and those that tags made.
    std::uint64_t wordId() const noexcept;

private:
    friend class Tokens;
    Token(TokenTable const* table, std::uint32_t index, std::uint32_t text) noexcept
        : table_(table), index_(index), text_(text) {}

    TokenTable const* table_;
    std::uint32_t index_, text_;
};

/// The words of one text, in order.
class TAVO_EXPORT Tokens {
public:
    class iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Token;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = Token;

        Token operator*() const noexcept { return {table_, index_, text_}; }
        iterator& operator++() noexcept {
            ++index_;
            return *this;
        }
        iterator operator++(int) noexcept {
            iterator const before = *this;
            ++index_;
            return before;
        }
        bool operator==(iterator const& other) const noexcept { return index_ == other.index_; }

    private:
        friend class Tokens;
        iterator(TokenTable const* table, std::uint32_t index, std::uint32_t text) noexcept
            : table_(table), index_(index), text_(text) {}
        TokenTable const* table_;
        std::uint32_t index_, text_;
    };

    iterator begin() const noexcept { return {table_, first_, text_}; }
    iterator end() const noexcept { return {table_, end_, text_}; }
    std::size_t size() const noexcept { return end_ - first_; }
    bool empty() const noexcept { return first_ == end_; }
    /// @p index below size().
    Token operator[](std::size_t index) const noexcept {
        return {table_, first_ + static_cast<std::uint32_t>(index), text_};
    }
    /// The text that the words stand in: the one given, or tagged text without its tags, which lives until the next
    /// call.
    std::string_view text() const noexcept;
    /// Of N-best: sums of connection and of word costs; else 0.
    std::uint32_t connectionCost() const noexcept;
    std::uint32_t wordCost() const noexcept;

private:
    friend class TokenLists;
    friend class Tokenizer;
    Tokens(TokenTable const* table, std::uint32_t text) noexcept;

    TokenTable const* table_;
    std::uint32_t first_, end_, text_;
};

/// The words of several texts, or several analyses of one.
class TAVO_EXPORT TokenLists {
public:
    class iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Tokens;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = Tokens;

        Tokens operator*() const noexcept { return (*lists_)[index_]; }
        iterator& operator++() noexcept {
            ++index_;
            return *this;
        }
        iterator operator++(int) noexcept {
            iterator const before = *this;
            ++index_;
            return before;
        }
        bool operator==(iterator const& other) const noexcept { return index_ == other.index_; }

    private:
        friend class TokenLists;
        iterator(TokenLists const* lists, std::size_t index) noexcept : lists_(lists), index_(index) {}
        TokenLists const* lists_;
        std::size_t index_;
    };

    /// Iterators live as long as this object.
    iterator begin() const noexcept { return {this, 0}; }
    iterator end() const noexcept { return {this, size()}; }
    std::size_t size() const noexcept;
    bool empty() const noexcept { return size() == 0; }
    Tokens operator[](std::size_t index) const noexcept;

private:
    friend class Tokenizer;
    explicit TokenLists(TokenTable const* table) noexcept : table_(table) {}

    TokenTable const* table_;
};

/// How Tokenizer::lookUp finds words.
enum class LookUp : std::uint8_t {
    Surface,       ///< words that are the text
    Reading,       ///< words that read so, in hiragana or katakana
    Prefix,        ///< words that begin with the text; with an empty text all words
    CommonPrefix,  ///< words that the text begins with, shortest first
};

struct TokenizerOptions {
    /// Words of blanks alone come out, too. Without them they stand between the words, as line breaks always do.
    bool keepBlanks = false;
};

/// Finds words. One thread uses it at a time; each thread makes its own, which is cheap beside opening a lexicon.
///
/// Whatever bytes a text holds, they are analysed: surfaces and the blanks between them are the text. Equal texts
/// give equal tokens, alone or among others. A text is not copied and must stay until its tokens are no longer used;
/// it has less than 2^32 - 1 bytes, else std::invalid_argument. A line break ends a sentence.
class TAVO_EXPORT Tokenizer {
public:
    explicit Tokenizer(Lexicon const& lexicon, TokenizerOptions const& options = {});
    Tokenizer(Tokenizer&&) noexcept;
    Tokenizer& operator=(Tokenizer&&) noexcept;
    ~Tokenizer();

    Tokens tokenize(std::string_view utf8);
    /// Many texts, searched together: quicker than one call for each.
    TokenLists tokenize(std::span<std::string_view const> texts);
    /// The text would be gone before its tokens are read.
    template <class Text>
    requires std::same_as<Text, std::string> Tokens tokenize(Text&&)
    = delete;

    /// Up to @p n (at least 1) analyses, best first. Of a text with several sentences analysis k joins their k-th
    /// ones, or the last of a sentence that has fewer. A sentence has at most 8192 bytes in code page 932 (about 4000
    /// characters), else too_long_string.
    TokenLists nBest(std::string_view utf8, int n);
    /// Text with tags (docs/tagged-input.md); text() of the result is without them.
    Tokens tokenizeTagged(std::string_view utf8);

    /// Words of the dictionaries themselves, up to @p most: those of the first dictionary first, those of one surface
    /// in the order of their source. text() of the result is their surfaces, one behind the other. The first look-up
    /// by reading reads the dictionaries whole, once a lexicon version.
    Tokens lookUp(std::string_view utf8, LookUp by, std::size_t most = SIZE_MAX);

    /// The lexicon that this was made from.
    Lexicon lexicon() const;
    /// Changes when the numbers of texts (Token::textId) begin anew: seldom, and never within a call.
    std::uint64_t textsVersion() const noexcept;
    /// The text of a number that a token gave; lives until the next call.
    std::string_view text(std::uint32_t textId) const noexcept;

private:
    TAVO_HIDDEN friend TokenTable& tableOf(Tokenizer& tokenizer) noexcept;
    std::unique_ptr<TokenTable> table_;
};

}  // namespace TAVO

#endif
