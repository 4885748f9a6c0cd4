#include "convert/letter_case.hpp"

#include "base/bytes.hpp"
#include "base/sjis.hpp"
#include "dic/dic_set.hpp"

#include <algorithm>

namespace TAVO {
namespace {

constexpr std::size_t kMaxLetters = 64;

/// Width of the letter at @p at; 0 when none stands there. Full-width letters are 0x8260..0x8279 and 0x8281..0x829A.
std::size_t letterWidth(std::string_view text, std::size_t at) noexcept {
    auto const byte = static_cast<unsigned char>(text[at]);
    if ((byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z')) return 1;
    if (byte != 0x82 || charWidth(text, at) != 2) return 0;
    auto const trail = static_cast<unsigned char>(text[at + 1]);
    return (trail >= 0x60 && trail <= 0x79) || (trail >= 0x81 && trail <= 0x9A) ? 2 : 0;
}

/// The last byte of a letter in small or large case.
char inCase(char last, std::size_t width, bool isSmall) noexcept {
    auto const byte = static_cast<unsigned char>(last);
    unsigned const firstSmall = width == 1 ? 'a' : 0x81, firstLarge = width == 1 ? 'A' : 0x60;
    unsigned const number = byte >= firstSmall ? byte - firstSmall : byte - firstLarge;
    return static_cast<char>((isSmall ? firstSmall : firstLarge) + number);
}

bool mayBegin(DicSet const& dics, std::string const& text) {
    return std::any_of(dics.entries().begin(), dics.entries().end(), [&](DicEntry const& entry) {
        return entry.dic->trie() != nullptr && entry.dic->trie()->mayContinue(asBytes(text.data()), text.size());
    });
}

bool isWord(DicSet const& dics, std::string_view text) {
    return std::any_of(dics.entries().begin(), dics.entries().end(), [&](DicEntry const& entry) {
        return entry.dic->trie() != nullptr && entry.dic->trie()->exactMatch(asBytes(text.data()), text.size());
    });
}

/// Completes @p word, which begins a word, by the letters from @p at on.
bool complete(DicSet const& dics, std::string_view letters, std::size_t at, std::string& word) {
    if (at == letters.size()) return isWord(dics, word);
    if (at != 0 && !mayBegin(dics, word)) return false;
    std::size_t const width = letterWidth(letters, at);
    for (bool const isSmall : {true, false}) {
        word += letters.substr(at, width);
        word.back() = inCase(word.back(), width, isSmall);
        if (complete(dics, letters, at + width, word)) return true;
        word.resize(at);
    }
    return false;
}

}  // namespace

std::size_t letterRunEnd(std::string_view text, std::size_t at) noexcept {
    std::size_t const width = letterWidth(text, at);
    std::size_t end = at;
    while (width != 0 && end < text.size() && letterWidth(text, end) == width) end += width;
    return end;
}

std::string wordInAnyCase(DicSet const& dics, std::string_view letters) {
    if (letters.size() > kMaxLetters * letterWidth(letters, 0) || isWord(dics, letters)) return {};
    std::string word;
    return complete(dics, letters, 0, word) ? word : std::string();
}

}  // namespace TAVO
