#include "dic/file_access.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

namespace TAVO {

int (*fileFault)(FileStep step, std::size_t& bytes) = nullptr;

bool fileStepFails(FileStep step, std::size_t& bytes) {
    int const code = fileFault != nullptr ? fileFault(step, bytes) : 0;
    if (code != 0) errno = code;
    return code != 0;
}

namespace {

int openRetrying(char const* path, int flags, int mode = 0666) {
    if (fileStepFails((flags & O_CREAT) != 0 ? FileStep::kCreate : FileStep::kOpen)) return -1;
    int handle;
    do {
        handle = ::open(path, flags | O_CLOEXEC, mode);
    } while (handle < 0 && errno == EINTR);
    return handle;
}

/// Takes an advisory lock (F_RDLCK or F_WRLCK) that lasts until the handle is
/// closed, without waiting. A file system that has no locks does not stand in
/// the way; somebody else's lock does.
bool lockFile(int handle, short type) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    return ::fcntl(handle, F_OFD_SETLK, &lock) == 0 || (errno != EAGAIN && errno != EACCES);
}

/// True while @p path names the open file: whoever held the lock before may have
/// renamed or deleted it.
bool hasName(int handle, char const* path) {
    struct stat opened {
    }, named{};
    return ::fstat(handle, &opened) == 0 && ::stat(path, &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

/// A rename lasts once its folder is on disk. File systems that cannot flush
/// folders do without.
void flushFolder(std::string const& path) {
    std::size_t const slash = path.rfind('/');
    std::string const folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    int const handle = openRetrying(folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (handle < 0) return;
    if (!fileStepFails(FileStep::kFlush)) ::fsync(handle);
    ::close(handle);
}

/// Opens a regular file for reading; -1 for anything else. @p status becomes that
/// of the open file.
int openRegular(char const* path, struct stat& status) {
    if (path == nullptr) throw std::invalid_argument("INVALID_ARGUMENT: FileLength()");
    // Looked at before it is opened, since opening a device may do something; and
    // should a FIFO have got the name meanwhile, its opening does not wait for a writer.
    if (::stat(path, &status) != 0 || !S_ISREG(status.st_mode)) return -1;
    int const handle = openRetrying(path, O_RDONLY | O_NONBLOCK);
    if (handle < 0 || (::fstat(handle, &status) == 0 && S_ISREG(status.st_mode))) return handle;
    ::close(handle);
    return -1;
}

int openReading(char const* path) {
    struct stat status {};
    return openRegular(path, status);
}

}  // namespace

std::int64_t FileLength(char const* path) {
    struct stat status {};
    int const handle = openRegular(path, status);
    if (handle < 0) return -1;
    ::close(handle);
    return static_cast<std::int64_t>(status.st_size);
}

int FileAccess(char const* path) {
    if (path == nullptr) throw std::invalid_argument("INVALID_ARGUMENT: FileAccess()");
    if (::access(path, R_OK) == 0) return 0;
    return errno == EACCES ? 1 : -1;
}

int FileOpenShared(char const* path) { return openReading(path); }

int FileOpenExclusive(char const* path) {
    int const handle = openReading(path);
    if (handle >= 0 && !lockFile(handle, F_RDLCK)) {
        ::close(handle);
        return -1;
    }
    return handle;
}

int FileCreate(char const* path) {
    // Emptied only once the lock is held, so that a reader's file stays whole.
    int const handle = openRetrying(path, O_WRONLY | O_CREAT);
    if (handle < 0) return -1;
    bool const emptied = lockFile(handle, F_WRLCK) && hasName(handle, path) && !fileStepFails(FileStep::kTruncate) &&
                         ::ftruncate(handle, 0) == 0;
    if (!emptied) {
        ::close(handle);
        return -1;
    }
    return handle;
}

int FileOpenMode(char const* path, int mode) {
    return (mode & 1) == 0 ? openReading(path) : openRetrying(path, O_RDWR | O_CREAT | O_EXCL);
}

int FileClose(int handle) {
    bool const failed = fileStepFails(FileStep::kClose);
    return ::close(handle) == 0 && !failed ? 0 : -1;
}

std::int64_t FileRead(int handle, void* buffer, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        std::size_t atOnce = count - done;
        if (fileStepFails(FileStep::kRead, atOnce)) return -1;
        ssize_t const got = ::read(handle, static_cast<char*>(buffer) + done, atOnce);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return -1;
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return static_cast<std::int64_t>(done);
}

std::int64_t FileWrite(int handle, void const* buffer, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        std::size_t atOnce = count - done;
        if (fileStepFails(FileStep::kWrite, atOnce)) return -1;
        ssize_t const put = ::write(handle, static_cast<char const*>(buffer) + done, atOnce);
        if (put < 0 && errno == EINTR) continue;
        if (put < 0) return -1;
        done += static_cast<std::size_t>(put);
    }
    return static_cast<std::int64_t>(done);
}

std::int64_t FileSeek(int handle, std::int64_t distance, int origin) {
    int const whence = origin == 1 ? SEEK_CUR : origin == 2 ? SEEK_END : SEEK_SET;
    return ::lseek(handle, distance, whence);
}

int FileFlush(int handle) { return !fileStepFails(FileStep::kFlush) && ::fsync(handle) == 0 ? 0 : -1; }

int FileLink(char const* path, char const* name) {
    if (!fileStepFails(FileStep::kLink) && ::link(path, name) == 0) return 0;
    return errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS || errno == EMLINK ? 1 : -1;
}

int FileRename(char const* path, char const* name) {
    if (fileStepFails(FileStep::kRename) || std::rename(path, name) != 0) return -1;
    flushFolder(name);
    return 0;
}

int FileDelete(char const* path) { return !fileStepFails(FileStep::kDelete) && ::unlink(path) == 0 ? 0 : -1; }

std::int64_t FileReadLine(int handle, char* buffer, std::size_t capacity) {
    if (buffer == nullptr) return -2;
    if (capacity == 0) {
        buffer[0] = '\0';
        return -2;
    }
    std::size_t stored = 0;
    bool anyRead = false;
    while (stored < capacity) {
        char byte;
        std::int64_t const got = FileRead(handle, &byte, 1);
        if (got < 0 || (got == 0 && !anyRead)) return -1;
        anyRead = true;
        if (got == 0 || byte == '\n') {
            buffer[stored] = '\0';
            return static_cast<std::int64_t>(stored);
        }
        if (byte != '\r') buffer[stored++] = byte;
    }
    buffer[capacity - 1] = '\0';
    return static_cast<std::int64_t>(capacity - 1);
}

LineReader::LineReader(int handle, std::size_t capacity)
    : handle_(handle),
      capacity_(std::max<std::size_t>(capacity, 1)),
      buffer_(new char[kBufferBytes]),
      line_(new char[capacity_]) {}

LineReader::LineReader(std::string_view text) : LineReader(-1) { text_ = text; }

bool LineReader::fill() {
    std::int64_t got = 0;
    if (handle_ >= 0) {
        got = FileRead(handle_, buffer_.get(), kBufferBytes);
    } else {
        got = static_cast<std::int64_t>(text_.copy(buffer_.get(), kBufferBytes));
        text_.remove_prefix(static_cast<std::size_t>(got));
    }
    failed_ = got < 0;
    bufferPos_ = 0;
    bufferEnd_ = got > 0 ? static_cast<std::size_t>(got) : 0;
    return got > 0;
}

bool LineReader::next() {
    if (failed_) return false;
    if (!cut_) ++lineNumber_;
    cut_ = false;
    length_ = 0;
    bool anyRead = false;
    while (length_ < capacity_) {
        if (bufferPos_ == bufferEnd_ && !fill()) return anyRead && !failed_;
        anyRead = true;
        char const byte = buffer_[bufferPos_++];
        if (byte == '\n') return true;
        if (byte != '\r') line_[length_++] = byte;
    }
    --length_;
    cut_ = true;
    return true;
}

}  // namespace TAVO
