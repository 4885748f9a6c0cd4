// The ordered list of dictionaries that one analyser uses.
#ifndef TAVO_DIC_DIC_SET_HPP
#define TAVO_DIC_DIC_SET_HPP

#include "dic/conn_table.hpp"
#include "dic/dic.hpp"
#include "dic/reading_index.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace TAVO {

struct DicEntry {
    Dic const* dic = nullptr;
    std::string path;
    std::string sourcePath;
    /// Built on first use by findByRead(); a dictionary's forms by their reading.
    std::shared_ptr<ReadingIndex const> readingIndex;
    bool memoryMapped = true;
};

/// Entries hold pooled dictionaries and count as their users (DIC_USED); a copy
/// counts each dictionary once more, the destructor once less.
/// Errors carry the names of the analyser's operations, e.g. a bad index throws
/// range_error "RANGE_ERROR: Tavo::getDicPath()".
class DicSet {
public:
    DicSet() = default;
    DicSet(DicSet const& other);
    DicSet& operator=(DicSet const& other);
    DicSet& operator=(DicSet&& other) noexcept {
        entries_.swap(other.entries_);
        return *this;
    }
    ~DicSet();

    std::vector<DicEntry> const& entries() const noexcept { return entries_; }

    void addDicPath(char const* pathSpec, bool memoryMapped, ConnTable const* table);
    /// Adds a dictionary that belongs to the caller, who keeps it as long as this set and its copies.
    void add(Dic const& dic, ConnTable const* table);
    int getDicCount() const noexcept { return static_cast<int>(entries_.size()); }
    int getDicIndex(char const* path) const;
    char const* getDicPath(int index) const;
    char const* getSrcPath(int index) const;
    void offDic(int index);
    void offDic(char const* path);
    void offDic() noexcept;
    void touchDic(int index) const;
    void touchDic(char const* path) const;
    /// @p names: the part-of-speech names from id 1 on. Result codes 0..6.
    /// The search index for @p table, if that is not null, is made before the new dictionary takes the old one's place,
    /// and its file, if there is one, written anew.
    int updateDic(int index, std::vector<std::string> const& names, ConnTable const* table = nullptr);
    /// The words whose reading equals @p reading, in the index's order; they
    /// live until the entry is removed or rebuilt.
    std::vector<ReadingWord> findByRead(char const* reading, int index);

private:
    DicEntry& entry(int index, char const* operation);
    DicEntry const& entry(int index, char const* operation) const;
    int position(char const* path, char const* operation) const;

    std::vector<DicEntry> entries_;
};

}  // namespace TAVO

#endif
