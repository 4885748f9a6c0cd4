// A folder that lives as long as its object.
#ifndef TAVO_TESTS_TEMP_DIR_HPP
#define TAVO_TESTS_TEMP_DIR_HPP

#include <string>
#include <string_view>

namespace TAVO::test {

class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(TempDir const&) = delete;
    TempDir& operator=(TempDir const&) = delete;

    std::string const& path() const noexcept { return path_; }
    /// The path of a file in it.
    std::string file(std::string_view name) const { return path_ + "/" + std::string(name); }
    /// Writes a file into it; its path.
    std::string write(std::string_view name, std::string_view bytes) const;

private:
    std::string path_;
};

/// The whole file; throws runtime_error when it cannot be read.
std::string readFile(std::string const& path);
/// Throws runtime_error when it cannot be written.
void writeFile(std::string const& path, std::string_view bytes);

}  // namespace TAVO::test

#endif
