// Words of the dictionaries as tokens.
#include "base/utf8.hpp"
#include "core/impl.hpp"
#include "text/characters.hpp"
#include "text/token_table.hpp"

namespace TAVO {

namespace {

/// Calls visit(surface, record) for the words that a dictionary has for @p sjis, as long as it returns true.
template <class Visit>
void visitWords(DicTrie const& trie, std::string_view sjis, LookUp by, Visit visit) {
    auto const visitChain = [&visit](std::string_view surface, RecordChain chain) {
        for (; chain; chain = chain.next())
            if (!visit(surface, chain.head())) return false;
        return true;
    };
    unsigned char const* const bytes = asBytes(sjis.data());
    if (by == LookUp::Surface)
        visitChain(sjis, sjis.empty() ? RecordChain() : trie.exactMatch(bytes, sjis.size()));
    else if (by == LookUp::Prefix)
        trie.visitFrom(bytes, sjis.size(), visitChain);
    else
        trie.prefixSearch(bytes, sjis.size(), [&](std::size_t length, RecordChain chain) {
            return visitChain(sjis.substr(0, length), chain);
        });
}

}  // namespace

void TokenTable::lookUp(std::string_view text, LookUp by, std::size_t most) {
    start({&text, 1});
    hasOwnText_ = true;
    plainText_.clear();
    beginTextsUpTo(0);
    auto const add = [&](std::string_view surface, unsigned char const* record) {
        if (tokenCount() == most) return false;
        auto const begin = static_cast<std::uint32_t>(plainText_.size());
        plainText_ += sjisToUtf8(surface);
        addToken(begin, static_cast<std::uint32_t>(plainText_.size()), words_.number(record, surface));
        return true;
    };
    if (by == LookUp::Reading) {
        std::vector<std::string> const spellings = readingSpellings(text);
        for (ReadingIndex const& index : version_->readings())
            for (std::string const& spelling : spellings)
                for (ReadingWord const& word : index.find(spelling)) add(word.form, word.record);
    } else {
        buffer_.add(text, 0);
        for (DicEntry const& entry : TavoAccess::impl(analyser_).context.dics.entries())
            if (entry.dic->trie() != nullptr) visitWords(*entry.dic->trie(), buffer_.sjis(), by, add);
    }
    texts_.front() = plainText_;
    finish();
}

}  // namespace TAVO
