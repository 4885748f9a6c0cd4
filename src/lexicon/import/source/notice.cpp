#include "lexicon/import/source/notice.hpp"

#include "lexicon/import/source/source_lexicon.hpp"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <string_view>
#include <system_error>

namespace TAVO::importer {
namespace fs = std::filesystem;
namespace {

bool isNoticeName(std::string name) {
    for (char& c : name) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    for (std::string_view const begin : {"COPYING", "COPYRIGHT", "LICENCE", "LICENSE", "NOTICE"})
        if (name.compare(0, begin.size(), begin) == 0) return true;
    return false;
}

/// True when the package whose list of files is @p list has the file or folder @p path.
bool lists(fs::path const& list, std::string const& path) {
    std::ifstream in(list);
    for (std::string line; std::getline(in, line);)
        if (line == path) return true;
    return false;
}

/// A list is named PACKAGE.list, or PACKAGE:ARCHITECTURE.list.
fs::path copyrightOfPackage(fs::path const& list, std::string const& root) {
    std::string const name = list.stem().string();
    return root + "/usr/share/doc/" + name.substr(0, name.find(':')) + "/copyright";
}

}  // namespace

std::vector<fs::path> findNotices(fs::path const& folder, std::string const& root) {
    std::vector<fs::path> found;
    std::error_code ignored;
    for (auto const& entry : fs::directory_iterator(folder, ignored))
        if (entry.is_regular_file(ignored) && isNoticeName(entry.path().filename().string()))
            found.push_back(entry.path());
    std::sort(found.begin(), found.end());
    if (!found.empty()) return found;

    std::string const path = fs::weakly_canonical(folder, ignored).string();
    // Packages lay their files down nowhere else; others need no search.
    if (path.compare(0, 5, "/usr/") != 0) return found;
    for (auto const& entry : fs::directory_iterator(root + "/var/lib/dpkg/info", ignored)) {
        if (entry.path().extension() != ".list" || !lists(entry.path(), path)) continue;
        fs::path const copyright = copyrightOfPackage(entry.path(), root);
        if (fs::exists(copyright, ignored)) found.push_back(copyright);
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string noticeText(std::vector<fs::path> const& files) {
    if (files.size() == 1) return readFile(files.front());
    std::string text;
    for (fs::path const& file : files) text += "== " + file.filename().string() + "\n\n" + readFile(file) + "\n";
    return text;
}

}  // namespace TAVO::importer
