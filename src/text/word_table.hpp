// The distinct words that a tokenizer met, and their texts.
#ifndef TAVO_TEXT_WORD_TABLE_HPP
#define TAVO_TEXT_WORD_TABLE_HPP

#include "engine/path_store.hpp"
#include "result/context.hpp"
#include "text/lexicon_version.hpp"
#include "text/string_table.hpp"
#include "text/word_values.hpp"

#include <tavo/mrph.hpp>
#include <tavo/tokenizer.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace TAVO {

/// A word of a text, or a run of them, by its number in a WordTable.
struct WordPiece {
    std::uint32_t word;
    std::uint32_t begin, length;  ///< in Shift_JIS bytes of the sentence
};

/// Words are numbered as they come; a number stays until clear().
class WordTable {
public:
    /// A text that is not found yet, and one that is the surface as the given text has it.
    static constexpr std::uint32_t kNotYet = 0xFFFFFFFF, kSurface = 0xFFFFFFFE;
    /// What stands for text without analysis.
    static constexpr std::uint32_t kNone = 0;

    struct Word {
        unsigned char const* record = nullptr;  ///< null: the texts are known all
        std::uint64_t id = 0;
        std::uint32_t surfaceAt = 0, surfaceBytes = 0;  // Shift_JIS, in surfaces_
        std::uint32_t spelling = kNotYet;               ///< number of the surface as the code page's table writes it
        std::int32_t cost = 0;
        std::uint16_t pid = 0;
        bool isUnknown = true;
        bool isAnnotation = false;
    };

    /// @p context is the analyser's that the words come from, @p lexicon what that was made from, or null where no part
    /// of speech is asked for. Both outlive this. Texts are in @p encoding; @p values are found for each word when it
    /// is met first.
    WordTable(AnalyzerContext const& context, LexiconVersion const* lexicon, TextEncoding encoding,
              std::vector<WordValue> values)
        : context_(context), lexicon_(lexicon), encoding_(encoding), wanted_(std::move(values)) {
        clear();
    }

    void clear();
    /// True when so much is kept that it should be cleared before the next call.
    bool isLarge() const noexcept;

    std::uint32_t number(PendingWord const& word) {
        if (word.word->source >= PathWord::kUnknown) return number(word.record(), {word.text, word.length});
        ListedWord const listed = listedWord(word);
        ListedSlot const& slot = listedSlots_[listedPlace(listed, {word.text, word.length})];
        return slot.word != kNone ? slot.word : addListed(listed, word);
    }
    /// The word that @p members, whose surfaces together are @p surface, come out as with part of speech @p pid (0:
    /// that of the first).
    std::uint32_t joined(std::span<WordPiece const> members, std::string_view surface, std::uint16_t pid);
    std::uint32_t number(Mrph const& morpheme);
    /// The word of a dictionary's @p record, which has this @p surface.
    std::uint32_t number(unsigned char const* record, std::string_view surface);

    Word const& word(std::uint32_t number) const noexcept { return words_[number]; }
    /// Gives an annotation the text that was read for it.
    void setAnnotation(std::uint32_t number, std::string_view text) {
        texts_[number][static_cast<std::size_t>(TokenText::Annotation)] = strings_.add(text);
    }
    /// The number in strings() of a text of word @p number; kSurface where it is the word itself.
    std::uint32_t text(std::uint32_t number, TokenText which) {
        std::uint32_t const known = texts_[number][static_cast<std::size_t>(which)];
        return known != kNotYet ? known : find(number, which);
    }
    /// The same of value @p index of those wanted.
    std::uint32_t value(std::uint32_t number, std::size_t index) const noexcept {
        return values_[number * wanted_.size() + index];
    }
    /// The number in strings() of word @p number's surface where that is written as @p surface; else kNotYet.
    std::uint32_t spelling(std::uint32_t number, std::string_view surface);

    PosTexts::Part const& pos(std::uint32_t number) const {
        std::size_t const id = pids_[number], ofTable = context_.pos.getPidMax();
        if (id > ofTable) return classes_[id - ofTable - 1].part;
        if (pos_ == nullptr) pos_ = &lexicon_->pos();
        return pos_->part(pids_[number]);
    }
    StringTable& strings() noexcept { return strings_; }
    StringTable const& strings() const noexcept { return strings_; }
    std::uint64_t version() const noexcept { return version_; }

private:
    struct Slot {
        std::uint64_t key = 0;
        std::uint32_t word = 0;
    };
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::u32string_view text) const noexcept {
            return std::hash<std::u32string_view>()(text);
        }
    };

    /// A part of speech that the connection table has not.
    struct ClassTexts {
        std::string sjis, name, fieldsText;
        PosTexts::Part part;  ///< views of those
    };

    using Texts = std::array<std::uint32_t, kTokenTexts>;
    /// A word as a search index names it. Words of equal lists have one name, so that it takes the surface to tell.
    struct ListedWord {
        static constexpr std::size_t kTextBytes = 8;

        std::uint64_t text = 0;  // the first bytes of the surface
        std::uint32_t name = 0;
        std::uint32_t source = 0;
        bool operator==(ListedWord const&) const = default;
    };
    struct ListedSlot {
        ListedWord listed;
        std::uint32_t word = kNone;  // that: free
    };

    static ListedWord listedWord(PendingWord const& word) noexcept {
        std::uint64_t text = 0;
        std::memcpy(&text, word.text, std::min<std::size_t>(word.length, ListedWord::kTextBytes));
        return {text, word.word->word, word.word->source};
    }
    std::size_t listedHash(ListedWord const& listed) const noexcept {
        return ((listed.text ^ std::uint64_t{listed.name} << 20) * 0x9E3779B97F4A7C15U) >> 32;
    }
    std::size_t listedPlace(ListedWord const& listed, std::string_view surface) const noexcept {
        std::size_t const mask = listedSlots_.size() - 1;
        for (std::size_t at = listedHash(listed) & mask;; at = (at + 1) & mask) {
            ListedSlot const& slot = listedSlots_[at];
            bool const isSame = slot.listed == listed &&
                                (surface.size() <= ListedWord::kTextBytes || surfaceOf(words_[slot.word]) == surface);
            if (slot.word == kNone || isSame) return at;
        }
    }
    std::uint32_t addListed(ListedWord const& listed, PendingWord const& word);
    std::size_t place(std::uint64_t key) const noexcept;
    void put(std::uint64_t key, std::uint32_t word);
    std::uint32_t addConverted(Mrph const& morpheme, std::string_view surface, std::string_view converted);
    std::uint32_t addRecord(unsigned char const* record, std::string_view surface);
    std::uint32_t addMade(Mrph const& morpheme);
    /// The place in pids_ of a part of speech that a phrase has.
    std::uint16_t classId(std::string const& name);
    std::uint32_t keep(Word word, std::string_view surface, Texts const& texts);
    void addValues(Mrph const& morpheme);
    Mrph morphemeOf(Word const& word) const;
    std::string_view surfaceOf(Word const& word) const noexcept {
        return std::string_view(surfaces_).substr(word.surfaceAt, word.surfaceBytes);
    }
    std::uint64_t idOf(unsigned char const* record) const noexcept;
    std::uint32_t find(std::uint32_t number, TokenText which);
    std::uint32_t add(std::string_view sjis, std::string_view surface);

    AnalyzerContext const& context_;
    LexiconVersion const* lexicon_;
    mutable PosTexts const* pos_ = nullptr;  // the lexicon's, once a part of speech was asked for
    TextEncoding encoding_;
    std::vector<WordValue> wanted_;
    std::vector<Word> words_;
    // By word, apart from what is seldom asked for.
    std::vector<std::uint16_t> pids_;
    std::vector<Texts> texts_;
    std::vector<std::uint32_t> values_;    // as many a word as are wanted
    std::deque<ClassTexts> classes_;       // of phrases; their ids stand behind those of the table
    std::vector<ListedSlot> listedSlots_;  // a power of two of them, never more than half full
    std::size_t listedUsed_ = 0;
    std::string surfaces_;
    std::vector<Slot> slots_;  // a power of two of them, never more than half full; key 0: free
    std::size_t used_ = 0;
    std::unordered_map<unsigned char const*, std::uint32_t> records_;
    std::unordered_map<std::string, std::uint32_t> converted_;  // by record, surface and what it was converted to
    // By part of speech and members, or by all values.
    std::unordered_map<std::u32string, std::uint32_t, Hash, std::equal_to<>> joined_;
    std::u32string scratch_;
    StringTable strings_;
    std::uint64_t version_ = 0;
};

}  // namespace TAVO

#endif
