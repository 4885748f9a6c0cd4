#include "lexicon/temporary_file.hpp"

#include <tavo/lexicon_maker.hpp>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace TAVO::words {

TemporaryFile::TemporaryFile(std::string_view bytes)
    : path_((std::filesystem::temp_directory_path() / "tavo-XXXXXX").string()) {
    int const made = ::mkstemp(path_.data());
    if (made < 0) throw lexicon_error(path_, 0, std::strerror(errno));
    ::close(made);
    std::ofstream out(path_, std::ios::binary);
    if (out.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) return;
    ::unlink(path_.c_str());
    throw lexicon_error(path_, 0, std::strerror(EIO));
}

TemporaryFile::~TemporaryFile() { ::unlink(path_.c_str()); }

}  // namespace TAVO::words
