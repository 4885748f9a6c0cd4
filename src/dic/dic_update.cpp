// Rebuilds a dictionary in place from its source text.
#include <tavo/error.hpp>

#include <sys/stat.h>

#include "base/text.hpp"
#include "dic/dic_compiler.hpp"
#include "dic/dic_set.hpp"
#include "dic/file_access.hpp"
#include "dic/pools.hpp"

#include <new>
#include <optional>
#include <tuple>
#include <utility>

namespace TAVO {
namespace {

enum UpdateResult { kNothingToDo, kRebuilt, kUsedByOthers, kNoSource, kSourceNotRead, kRefused, kFileStepFailed };

/// Modification time in the full resolution of the file system.
using FileTime = std::pair<std::int64_t, std::int64_t>;

std::optional<FileTime> modificationTime(std::string const& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return FileTime(status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
}

class OpenFile {
public:
    explicit OpenFile(int handle) : handle_(handle) {}
    ~OpenFile() { close(); }
    OpenFile(OpenFile const&) = delete;
    OpenFile& operator=(OpenFile const&) = delete;

    explicit operator bool() const noexcept { return handle_ >= 0; }
    int handle() const noexcept { return handle_; }
    void close() {
        if (handle_ >= 0) FileClose(std::exchange(handle_, -1));
    }

private:
    int handle_;
};

/// The file @p path + "_tmp". Its lock lasts as long as its name, so that no other
/// process empties it before it has taken the place of the old dictionary.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string const& path) : path_(path + "_tmp"), file_(FileCreate(path_.c_str())) {}
    ~TemporaryFile() {
        if (file_) FileDelete(path_.c_str());
    }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    explicit operator bool() const noexcept { return static_cast<bool>(file_); }
    int handle() const noexcept { return file_.handle(); }
    bool renameTo(std::string const& path) {
        if (FileRename(path_.c_str(), path.c_str()) != 0) return false;
        file_.close();
        return true;
    }

private:
    std::string path_;
    OpenFile file_;
};

/// Marks a dictionary as being rebuilt by its only user, and ends that state on
/// every way out.
class RebuildMark {
public:
    explicit RebuildMark(Dic const* dic) : dic_(dic) { sharedPools().DIC_USED[dic_] = -1; }
    ~RebuildMark() { sharedPools().DIC_USED[dic_] = 1; }
    RebuildMark(RebuildMark const&) = delete;
    RebuildMark& operator=(RebuildMark const&) = delete;

    /// @p dic takes the marked one's place.
    void moveTo(Dic const* dic) {
        sharedPools().DIC_USED[dic] = -1;
        sharedPools().DIC_USED.erase(std::exchange(dic_, dic));
    }

private:
    Dic const* dic_;
};

/// Hands every line of the source to @p compiler.
UpdateResult readSource(std::string const& path, DicCompiler& compiler) {
    OpenFile const source(FileOpenShared(path.c_str()));
    if (!source) return kSourceNotRead;
    LineReader reader(source.handle());
    while (reader.next()) {
        if (!isCommentLine(reader.line()) && !compiler.add(reader.line())) return kRefused;
    }
    return reader.failed() ? kSourceNotRead : kRebuilt;
}

/// Puts the temporary file in the place of @p path in one step: at any moment a
/// whole file, the old one or the new one, has that name. The old one is kept as
/// @p path + "_bak" until then.
bool replaceFile(std::string const& path, TemporaryFile& made) {
    std::string const bak = path + "_bak";
    FileDelete(bak.c_str());
    if (FileLink(path.c_str(), bak.c_str()) < 0) return false;
    bool const replaced = made.renameTo(path);
    FileDelete(bak.c_str());
    return replaced;
}

/// Without its file a dictionary has no trie, and its analyser is not ready; the
/// next rebuild may cure that, and so does taking it off and adding it again.
void takeBackIfPossible(Dic& dic) {
    try {
        dic.takeBack();
    } catch (std::exception const&) {
        dic.release();
    }
}

/// The dictionary now at @p path, null when it cannot be used.
std::unique_ptr<Dic const> loadReplacement(std::string const& path, bool memoryMapped) {
    try {
        std::unique_ptr<Dic const> dic = sharedPools().loadDic(memoryMapped, path);
        return dic->trie() != nullptr ? std::move(dic) : nullptr;
    } catch (std::bad_alloc const&) {
        throw;
    } catch (std::exception const&) {
        return nullptr;
    }
}

/// Steps from the compiled temporary file to the entry's new dictionary.
UpdateResult exchangeDictionary(DicEntry& entry, TemporaryFile& made, RebuildMark& mark, ConnTable const* table) {
    // Loaded dictionaries are constant to everybody but their only user here.
    Dic& old = const_cast<Dic&>(*entry.dic);
    std::uint64_t const oldSerial = old.serial();
    entry.readingIndex.reset();  // refers to the mapping, which may come back elsewhere
    old.release();
    std::unique_ptr<Dic const> replacement;
    try {
        if (replaceFile(entry.path, made)) replacement = loadReplacement(entry.path, entry.memoryMapped);
        if (replacement != nullptr && table != nullptr) sharedPools().indexes.renew(*replacement, *table);
        if (replacement != nullptr) mark.moveTo(replacement.get());
    } catch (...) {
        takeBackIfPossible(old);
        throw;
    }
    if (replacement == nullptr) {
        takeBackIfPossible(old);
        return kFileStepFailed;
    }
    entry.dic = replacement.get();
    sharedPools().indexes.forget(oldSerial);
    sharedPools().DIC_POOL[entry.path] = std::move(replacement);  // frees the old one
    return kRebuilt;
}

}  // namespace

int DicSet::updateDic(int index, std::vector<std::string> const& names, ConnTable const* table) {
    DicEntry& updated = entry(index, "updateDic");
    std::optional<FileTime> const compiledTime = modificationTime(updated.path);
    if (!compiledTime) throw file_not_found(updated.path);
    if (updated.sourcePath.empty()) return kNoSource;
    std::optional<FileTime> const sourceTime = modificationTime(updated.sourcePath);
    if (!sourceTime) return kSourceNotRead;
    if (*sourceTime <= *compiledTime) return kNothingToDo;

    PoolLock const lock;
    if (sharedPools().DIC_USED[updated.dic] != 1) return kUsedByOthers;
    RebuildMark mark(updated.dic);
    DicCompiler compiler(names);
    if (UpdateResult const read = readSource(updated.sourcePath, compiler); read != kRebuilt) return read;
    TemporaryFile made(updated.path);
    if (!made) return kFileStepFailed;
    // On disk before it takes the old file's name, so that a crash of the machine
    // leaves one of the two whole.
    if (!compiler.compile(made.handle(), false) || FileFlush(made.handle()) != 0) return kRefused;
    return exchangeDictionary(updated, made, mark, table);
}

}  // namespace TAVO
