#include "cli/new_file.hpp"

#include "cli/tool_error.hpp"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <unistd.h>

namespace tool {

namespace fs = std::filesystem;

NewFile::NewFile(std::string const& path) : path_(path) {
    std::error_code failed;
    fs::file_status const status = fs::status(path_, failed);
    if (fs::exists(status) && !fs::is_regular_file(status))
        throw ToolError(ExitStatus::Data, path + ": is there and no regular file");
    // A link stays a link: what it points to is replaced.
    if (fs::is_symlink(path_, failed)) path_ = fs::weakly_canonical(path_, failed);
    temporary_ = path_;
    temporary_ += ".new-" + std::to_string(::getpid());
    stream_.open(temporary_, std::ios::binary | std::ios::trunc);
    if (!stream_) throw fileError(path, errno);
}

NewFile::~NewFile() {
    if (temporary_.empty()) return;
    stream_.close();
    std::error_code ignored;
    fs::remove(temporary_, ignored);
}

void NewFile::commit() {
    errno = 0;
    stream_.close();
    if (!stream_) throw fileError(path_.string(), errno != 0 ? errno : EIO);
    if (std::rename(temporary_.c_str(), path_.c_str()) != 0) throw fileError(path_.string(), errno);
    temporary_.clear();
}

}  // namespace tool
