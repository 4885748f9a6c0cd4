// One state of a lexicon.
#ifndef TAVO_TEXT_LEXICON_VERSION_HPP
#define TAVO_TEXT_LEXICON_VERSION_HPP

#include "config/init_file.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic.hpp"
#include "dic/reading_index.hpp"
#include "text/pos_texts.hpp"

#include <tavo/lexicon.hpp>
#include <tavo/tavo.hpp>

#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// Shared by lexicons and tokenizers; constant but for what is made when first asked for, under a lock. Its
/// dictionaries and its table are its own: no other analyser uses them, and a rebuild of their files leaves them as
/// they are.
class LexiconVersion {
public:
    /// As Lexicon::open; an empty @p path is the first lexicon found.
    LexiconVersion(std::string path, LexiconOptions options);
    LexiconVersion(std::span<LexiconFile const> files, LexiconOptions options);
    ~LexiconVersion();
    LexiconVersion(LexiconVersion const&) = delete;
    LexiconVersion& operator=(LexiconVersion const&) = delete;

    /// The same lexicon as its files are now.
    std::shared_ptr<LexiconVersion const> reloaded() const;

    std::string const& path() const noexcept { return path_; }
    /// Attachments and settings of the analysers of tokenizers.
    Tavo const& prototype() const noexcept { return prototype_; }
    PosTexts const& pos() const;
    /// Of each dictionary, first one first.
    std::vector<ReadingIndex> const& readings() const;
    std::string fingerprint() const;

private:
    /// Calls load() and uses what it loaded, all under the process-wide lock.
    template <class Load>
    void open(Load load);
    /// Gives the dictionaries up. The lock is held.
    void letGo() noexcept;
    /// The bytes of a file in memory; null without such a file.
    LexiconFile const* file(std::string_view name) const noexcept;
    void openFiles(InitValues& values);
    void openMemory();
    void openTable(std::string const& path);
    void applyOptions(InitValues& values);
    void applyRules(InitValues const& values);
    /// Loads one dictionary and tells what is wrong with it.
    template <class Load>
    void addDictionary(std::string const& path, Load load);
    void addDictionaryFile(std::string const& path);
    void attach();

    /// Users of lexicons have no call for the process-wide lock, which the analyser below takes already.
    struct MakesLock {
        MakesLock() { Tavo::readyForThread(); }
    };

    MakesLock lock_;
    std::string path_;
    LexiconOptions options_;
    std::vector<LexiconFile> files_;
    std::vector<std::unique_ptr<Dic const>> dics_;
    std::unique_ptr<ConnTable const> table_;
    Tavo prototype_;  // refers to those above
    mutable std::once_flag posMade_;
    mutable std::unique_ptr<PosTexts const> pos_;
    mutable std::once_flag readingsMade_;
    mutable std::vector<ReadingIndex> readings_;
};

}  // namespace TAVO

#endif
