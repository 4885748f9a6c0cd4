// Files and file mappings with uniform return conventions. Paths are
// NUL-terminated byte strings, handles are POSIX descriptors, and -1 means
// failure unless said otherwise.
#ifndef TAVO_DIC_FILE_ACCESS_HPP
#define TAVO_DIC_FILE_ACCESS_HPP

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace TAVO {

/// Size in bytes; -1 for anything but a regular file that can be opened for
/// reading. A file whose bytes are not at hand ("offline") is taken to be one
/// that is not regular: FIFO, socket, device. Null throws invalid_argument.
std::int64_t FileLength(char const* path);
/// 0: may be read; 1: permission denied; -1: any other failure. Null throws
/// invalid_argument.
int FileAccess(char const* path);

/// Opens an existing file for reading.
int FileOpenShared(char const* path);
/// The same, and nobody who asks may write it meanwhile: an advisory shared lock
/// (of the open file, not the process). Fails while FileCreate's handle of the same file is open.
int FileOpenExclusive(char const* path);
/// Creates the file or empties it, for writing, under an advisory exclusive
/// lock. Fails, and leaves the file as it was, while a FileOpenExclusive or
/// FileCreate handle of it is open, and when it lost its name meanwhile.
int FileCreate(char const* path);
/// Mode bit 0 clear: existing file, reading. Set: a new file (it must not exist
/// yet), reading and writing.
int FileOpenMode(char const* path, int mode);
int FileClose(int handle);
/// Number of bytes read, fewer than @p count only at the end of the file.
std::int64_t FileRead(int handle, void* buffer, std::size_t count);
/// Number of bytes written.
std::int64_t FileWrite(int handle, void const* buffer, std::size_t count);
/// Origin 1: from the current position, 2: from the end, any other: from the
/// start. The new position.
std::int64_t FileSeek(int handle, std::int64_t distance, int origin);
/// Waits until the file's bytes are on disk. 0 or -1.
int FileFlush(int handle);
/// Gives the file a second name, which must be free. 0; 1 where the file system
/// has no second names; -1.
int FileLink(char const* path, char const* name);
/// Gives the file the name @p name instead. Whatever had that name is replaced in
/// the same moment: at no time is there no file of it. 0 or -1.
int FileRename(char const* path, char const* name);
int FileDelete(char const* path);

enum class FileStep { kOpen, kCreate, kTruncate, kRead, kWrite, kFlush, kClose, kLink, kRename, kDelete, kMap };
/// Where set, which tests alone do before threads start: asked before each step.
/// Gives the errno that the step fails with, or 0 to let it be done. @p bytes is
/// what a read or a write is about to move at once, and may be lessened.
extern int (*fileFault)(FileStep step, std::size_t& bytes);
/// True when @p step is to fail; errno is set.
bool fileStepFails(FileStep step, std::size_t& bytes);
inline bool fileStepFails(FileStep step) {
    std::size_t none = 0;
    return fileStepFails(step, none);
}

/// Reads a line byte by byte: LF ends it, CR is dropped, NUL terminates it in
/// the buffer. Returns its length; -1 at the end of the file or on an error; -2
/// for a null buffer or capacity 0. When capacity bytes come without LF, the
/// last of them is lost, capacity - 1 is returned and the rest of the line stays
/// for the next call.
std::int64_t FileReadLine(int handle, char* buffer, std::size_t capacity);

/// FileReadLine with the same rules and a large buffer, for long files. Reads
/// ahead: the handle's position is the reader's own while it lives.
class LineReader {
public:
    static constexpr std::size_t kCapacity = 4096;

    explicit LineReader(int handle, std::size_t capacity = kCapacity);
    /// Reads @p text, which must stay, instead of a file.
    explicit LineReader(std::string_view text);

    /// Steps to the next line; false at the end of the file or on a read error.
    bool next();
    /// The line that next() found, valid until the next call.
    std::string_view line() const noexcept { return {line_.get(), length_}; }
    /// True when the line ended because it was full: a byte was lost and the
    /// rest comes as the next line.
    bool wasCut() const noexcept { return cut_; }
    /// Number of the file's line, from 1, that line() stands in.
    std::size_t lineNumber() const noexcept { return lineNumber_; }
    bool failed() const noexcept { return failed_; }

private:
    bool fill();

    static constexpr std::size_t kBufferBytes = 65536;

    int handle_;
    std::size_t capacity_;
    std::string_view text_;  // in the place of a file
    std::unique_ptr<char[]> buffer_;
    std::unique_ptr<char[]> line_;
    std::size_t bufferPos_ = 0;
    std::size_t bufferEnd_ = 0;
    std::size_t length_ = 0;
    std::size_t lineNumber_ = 0;
    bool cut_ = false;
    bool failed_ = false;
};

// The mapping descriptor table: at most 256 files are mapped at a time. It has no
// lock of its own; callers hold the process-wide lock.

constexpr std::size_t kMappingSlots = 256;
constexpr int kMapRead = 1, kMapWrite = 2;  // protection bits
constexpr int kMapPrivate = 2;              // flag bit: copy on write
/// What Mmap() returns on failure: the address -1.
void* mmapFailed() noexcept;

/// Opens (POSIX flags and mode) and registers; -1 when the open fails, -2 when
/// all slots are taken. Descriptor 0 marks a free slot and is never given out.
int MmapOpen(char const* path, int flags, int mode);
/// True when all slots are taken.
bool MmapIsFull() noexcept;
/// Maps the whole file; @p hint and @p length are ignored. On failure the slot
/// is freed and the descriptor, still open, is the caller's to close.
void* Mmap(void* hint, std::size_t length, int protection, int flags, int descriptor);
/// Number of bytes of a view, 0 for an unknown one.
std::size_t MmapLength(void const* view);
/// 0; -2 for an unknown view; -1 when unmapping fails. The descriptor stays
/// registered.
int Munmap(void const* view);
/// Frees the slot and closes the descriptor; -2 when it is not registered.
int MmapClose(int descriptor);
/// Writes a view's changes to its file; @p length 0 means all of it.
int MmapFlush(void const* view, std::size_t length);

}  // namespace TAVO

#endif
