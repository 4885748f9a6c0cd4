#include "text/lexicon_places.hpp"

#include "text/data_dir.hpp"

#include <tavo/error.hpp>
#include <tavo/lexicon.hpp>

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace TAVO {

namespace {

namespace fs = std::filesystem;

constexpr char kPathVariable[] = "TAVO_PATH";

bool isThere(fs::path const& file) {
    std::error_code ignored;
    return fs::exists(file, ignored);
}

/// The file that this code was loaded from: the library, or a program that holds it. Empty when the loader does not
/// know.
fs::path ownFile() {
    Dl_info info{};
    if (::dladdr(reinterpret_cast<void const*>(&holdsLexicon), &info) == 0 || info.dli_fname == nullptr) return {};
    std::error_code failed;
    fs::path real = fs::canonical(info.dli_fname, failed);
    if (!failed) return real;
    // The name of a program is the one that it was called by.
    fs::path const program = fs::read_symlink("/proc/self/exe", failed);
    return failed ? fs::path() : program;
}

}  // namespace

bool holdsLexicon(std::string const& folder) {
    return isThere(fs::path(folder) / "SysDic") && isThere(fs::path(folder) / "ConnTable");
}

std::vector<std::string> Lexicon::places() {
    std::vector<std::string> folders;
    auto const add = [&folders](fs::path const& folder) {
        std::string const text = folder.lexically_normal().string();
        if (std::find(folders.begin(), folders.end(), text) == folders.end()) folders.push_back(text);
    };
    char const* const variable = std::getenv(kPathVariable);
    if (variable != nullptr && *variable != '\0') add(variable);
    if (fs::path const own = ownFile(); !own.empty()) {
        fs::path const folder = own.parent_path();
        add(folder / "share" / "tavo");  // of a package for another language
        add(folder.parent_path() / "share" / "tavo");
        add(folder.parent_path().parent_path() / "share" / "tavo");  // lib/MACHINE
    }
    add(kDataDir);
    add("/usr/local/share/tavo");
    add("/usr/share/tavo");
    return folders;
}

std::string findLexicon() {
    std::vector<std::string> const places = Lexicon::places();
    auto const found = std::find_if(places.begin(), places.end(), holdsLexicon);
    if (found != places.end()) return *found;
    std::string text = "no lexicon: no SysDic and ConnTable in";
    for (std::string const& place : places) text += "\n  " + place;
    throw file_not_found(text +
                         "\nMake one with `make lexicon` in the source tree or `tavo import mecab DIR -o OUT`, and "
                         "name its folder: TAVO_PATH=OUT");
}

std::vector<std::string> dictionariesIn(std::string const& folder) {
    std::vector<std::string> paths;
    std::string name = "SysDic";
    for (int part = 2; isThere(fs::path(folder) / name); ++part) {
        paths.push_back((fs::path(folder) / name).string());
        name = "SysDic" + std::to_string(part);
    }
    return paths;
}

}  // namespace TAVO
