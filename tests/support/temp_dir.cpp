#include "support/temp_dir.hpp"

#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace TAVO::test {

TempDir::TempDir() {
    // The tests make thousands of folders: in memory when the user names no place.
    if (std::getenv("TMPDIR") == nullptr) path_ = "/dev/shm/tavo-test-XXXXXX";
    if (!path_.empty() && ::mkdtemp(path_.data()) != nullptr) return;
    path_ = (std::filesystem::temp_directory_path() / "tavo-test-XXXXXX").string();
    if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder: " + path_);
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::write(std::string_view name, std::string_view bytes) const {
    std::string const path = file(name);
    writeFile(path, bytes);
    return path;
}

std::string readFile(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(in), {});
    if (!in) throw std::runtime_error("cannot read " + path);
    return bytes;
}

void writeFile(std::string const& path, std::string_view bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw std::runtime_error("cannot write " + path);
}

}  // namespace TAVO::test
