#include "lexicon/new_file.hpp"

#include <tavo/lexicon_maker.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include <unistd.h>

namespace TAVO::words {

namespace fs = std::filesystem;

namespace {

lexicon_error systemFault(std::string const& path, int error) { return {path, 0, std::strerror(error)}; }

}  // namespace

NewFile::NewFile(std::string const& path) : path_(path) {
    std::error_code failed;
    fs::file_status const status = fs::status(path_, failed);
    if (fs::exists(status) && !fs::is_regular_file(status))
        throw lexicon_error(path, 0, "is there and no regular file");
    // A link stays a link: what it points to is replaced.
    if (fs::is_symlink(path_, failed)) path_ = fs::weakly_canonical(path_, failed);
    temporary_ = path_;
    temporary_ += ".new-" + std::to_string(::getpid());
    stream_.open(temporary_, std::ios::binary | std::ios::trunc);
    if (!stream_) throw systemFault(path, errno);
}

NewFile::~NewFile() {
    if (temporary_.empty()) return;
    stream_.close();
    std::error_code ignored;
    fs::remove(temporary_, ignored);
}

void NewFile::write(std::string_view bytes) {
    errno = 0;
    stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream_) throw systemFault(path_.string(), errno != 0 ? errno : EIO);
}

void NewFile::commit() {
    errno = 0;
    stream_.close();
    if (!stream_) throw systemFault(path_.string(), errno != 0 ? errno : EIO);
    if (std::rename(temporary_.c_str(), path_.c_str()) != 0) throw systemFault(path_.string(), errno);
    temporary_.clear();
}

}  // namespace TAVO::words
