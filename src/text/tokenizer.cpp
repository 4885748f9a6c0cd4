#include <tavo/tokenizer.hpp>

#include "text/characters.hpp"
#include "text/token_table.hpp"

#include <utility>

namespace TAVO {

namespace {

/// Looking a text up fills the table in.
TokenTable& filling(TokenTable const* table) noexcept { return const_cast<TokenTable&>(*table); }

std::string_view textOf(TokenTable const* table, std::uint32_t index, std::uint32_t text, TokenText which) {
    TokenTable& filled = filling(table);
    return filled.strings().text(filled.textId(index, text, which));
}

}  // namespace

std::string_view Token::surface() const noexcept { return table_->surface(index_, text_); }
std::size_t Token::begin() const noexcept { return table_->begin()[index_]; }
std::size_t Token::end() const noexcept { return table_->end()[index_]; }
std::size_t Token::charBegin() const { return filling(table_).characters().begin[index_]; }
std::size_t Token::charEnd() const { return filling(table_).characters().end[index_]; }
std::size_t Token::utf16Begin() const { return filling(table_).utf16().begin[index_]; }
std::size_t Token::utf16End() const { return filling(table_).utf16().end[index_]; }

std::string_view Token::pos() const { return table_->pos(index_).name; }
std::span<std::string_view const> Token::posFields() const { return table_->pos(index_).fields; }
std::string_view Token::conjugationType() const { return table_->pos(index_).conjugationType; }
std::string_view Token::conjugationForm() const { return table_->pos(index_).conjugationForm; }
std::string_view Token::base() const { return textOf(table_, index_, text_, TokenText::Base); }
std::string_view Token::reading() const { return textOf(table_, index_, text_, TokenText::Reading); }
std::string_view Token::pronunciation() const { return textOf(table_, index_, text_, TokenText::Pronunciation); }
std::string_view Token::normalized() const { return textOf(table_, index_, text_, TokenText::Normalized); }
std::string_view Token::converted() const { return textOf(table_, index_, text_, TokenText::Converted); }
std::string_view Token::annotation() const { return textOf(table_, index_, text_, TokenText::Annotation); }
std::string_view Token::additional() const { return textOf(table_, index_, text_, TokenText::Additional); }
std::uint32_t Token::textId(TokenText which) const { return filling(table_).textId(index_, text_, which); }

int Token::cost() const noexcept { return table_->word(index_).cost; }
bool Token::isUnknown() const noexcept { return table_->word(index_).isUnknown; }
bool Token::isAnnotation() const noexcept { return table_->word(index_).isAnnotation; }
CharacterKind Token::kind() const noexcept { return kindOf(surface()); }
std::uint64_t Token::wordId() const noexcept { return table_->word(index_).id; }

Tokens::Tokens(TokenTable const* table, std::uint32_t text) noexcept
    : table_(table), first_(table->firstOfText()[text]), end_(table->firstOfText()[text + 1]), text_(text) {}

std::string_view Tokens::text() const noexcept { return table_->text(text_); }
std::uint32_t Tokens::connectionCost() const noexcept {
    return table_->connectionCosts().empty() ? 0 : table_->connectionCosts()[text_];
}
std::uint32_t Tokens::wordCost() const noexcept { return table_->wordCosts().empty() ? 0 : table_->wordCosts()[text_]; }

std::size_t TokenLists::size() const noexcept { return table_->textCount(); }
Tokens TokenLists::operator[](std::size_t index) const noexcept { return {table_, static_cast<std::uint32_t>(index)}; }

Tokenizer::Tokenizer(Lexicon const& lexicon, TokenizerOptions const& options)
    : table_(std::make_unique<TokenTable>(lexicon.version_, options)) {}
Tokenizer::Tokenizer(Tokenizer&&) noexcept = default;
Tokenizer& Tokenizer::operator=(Tokenizer&&) noexcept = default;
Tokenizer::~Tokenizer() = default;

Tokens Tokenizer::tokenize(std::string_view utf8) {
    table_->tokenize({&utf8, 1});
    return {table_.get(), 0};
}

TokenLists Tokenizer::tokenize(std::span<std::string_view const> texts) {
    table_->tokenize(texts);
    return TokenLists(table_.get());
}

TokenLists Tokenizer::nBest(std::string_view utf8, int n) {
    table_->tokenizeNBest(utf8, n);
    return TokenLists(table_.get());
}

Tokens Tokenizer::tokenizeTagged(std::string_view utf8) {
    table_->tokenizeTagged(utf8);
    return {table_.get(), 0};
}

Tokens Tokenizer::lookUp(std::string_view utf8, LookUp by, std::size_t most) {
    table_->lookUp(utf8, by, most);
    return {table_.get(), 0};
}

Lexicon Tokenizer::lexicon() const { return Lexicon(table_->shared()); }
std::uint64_t Tokenizer::textsVersion() const noexcept { return table_->stringsVersion(); }
std::string_view Tokenizer::text(std::uint32_t textId) const noexcept { return table_->strings().text(textId); }

TokenTable& tableOf(Tokenizer& tokenizer) noexcept { return *tokenizer.table_; }

}  // namespace TAVO
