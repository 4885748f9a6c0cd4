// SPDX-License-Identifier: Apache-2.0
// TAVO::Lexicon: what words are found with.
#ifndef TAVO_LEXICON_HPP
#define TAVO_LEXICON_HPP

#include <tavo/export.h>

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TAVO {

class LexiconVersion;

/// What is to be other than the lexicon's own. Paths count from the current folder.
struct LexiconOptions {
    /// Compiled dictionaries that are asked before those of the lexicon, first one first.
    std::vector<std::string> dictionaries;
    /// File of comment rules (docs/comment-rules.md) and of reduce rules (docs/reduce-rules.md) instead of the
    /// lexicon's; empty: the lexicon's, "none": none.
    std::string commentRules, reduceRules;
    /// Modes by their keys in an init file (docs/init-file.md), such as {"DivideWord", 1}. Those of line breaks and
    /// of tagged input have no effect on a Tokenizer.
    std::vector<std::pair<std::string, int>> modes;
};

/// A file of a lexicon in memory: "SysDic" and "ConnTable" are needed; "SysDic2" and so on, "SysDic.idx",
/// "ConnTable.idx", "reduce.rules", "number.list", "end.rules", "cooc.rules" and "pos.fields" are used where given.
struct LexiconFile {
    std::string_view name;
    /// Aligned to 8 bytes. Not copied: they must stay as long as a lexicon or tokenizer uses them.
    std::span<std::byte const> bytes;
};

/// Dictionaries, connection table and rules: a value that shares. A copy costs nothing; all threads may use one
/// lexicon, and none has to be told of the others. What a lexicon refers to never changes, also when its files do:
/// reloaded() gives the new state, and the old one goes with the last Lexicon or Tokenizer that uses it.
///
/// All texts are UTF-8. Errors are exceptions of <tavo/error.hpp>: file_not_found, illegal_format, not_adaptable,
/// unknown_setting, invalid_dictionary_version; std::invalid_argument for what the caller did wrong, std::bad_alloc.
/// Their texts tell what, where, and what to do.
class TAVO_EXPORT Lexicon {
public:
    /// The first lexicon of places().
    static Lexicon open(LexiconOptions const& options = {});
    /// @p path: a folder with SysDic and ConnTable, or an init file. Paths in an init file count from its folder.
    static Lexicon open(std::string const& path, LexiconOptions const& options = {});
    /// A lexicon in memory, as from a resource of the program.
    static Lexicon open(std::span<LexiconFile const> files, LexiconOptions const& options = {});
    /// The folders where open() looks, first one first: TAVO_PATH, "share/tavo" beside the folder of the library,
    /// the prefix that the library was built for, /usr/local, /usr.
    static std::vector<std::string> places();

    /// The same lexicon as its files are now. Tokenizers made from this one keep it; a failure changes nothing.
    Lexicon reloaded() const;

    /// Folder or init file that was opened; empty in memory.
    std::string const& path() const noexcept;
    /// Equal for lexicons that give equal analyses: made of the bytes of dictionaries, table and rules, the options
    /// and the library's version. 16 hexadecimal digits. The first call reads all files.
    std::string fingerprint() const;

private:
    friend class Tokenizer;
    TAVO_HIDDEN explicit Lexicon(std::shared_ptr<LexiconVersion const> version);

    std::shared_ptr<LexiconVersion const> version_;
};

}  // namespace TAVO

#endif
