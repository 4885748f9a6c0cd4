// Compiles a list of words, line by line.
#ifndef TAVO_LEXICON_WORDS_SOURCE_COMPILER_HPP
#define TAVO_LEXICON_WORDS_SOURCE_COMPILER_HPP

#include "lexicon/words/new_words.hpp"

#include "dic/dic_compiler.hpp"

#include <tavo/lexicon_maker.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::words {

class SourceCompiler {
public:
    /// Both stay the caller's.
    SourceCompiler(WordListOptions const& options, NewWords const& words);

    /// Takes the lines of @p source. Returns those that are faulty, and warnings, in their order.
    std::vector<LexiconFault> addAll(std::string_view source);
    DicCompiler& compiler() noexcept { return compiler_; }

private:
    /// @p error is in the user's encoding.
    bool add(std::string_view written, std::string& error);
    bool readLine(std::string_view written, std::string& error);
    std::string dividedWord() const;

    WordListOptions const& options_;
    NewWords const& words_;
    DicCompiler compiler_;
    std::string line_, source_;
};

}  // namespace TAVO::words

#endif
