#include "lexicon/import/source/notice.hpp"

#include "lexicon/import/source/source_lexicon.hpp"
#include "support/testing.hpp"

#include <filesystem>

namespace TAVO::importer {
namespace {

using namespace test;

TEST(ImportNotice, FindsTheFoldersFilesElseThoseOfItsPackage) {
    struct Case {
        char const* what;
        std::vector<std::string> files;  ///< of the source folder
        std::string folder;              ///< "": the source folder
        std::vector<std::string> found;
    };
    TempDir const root;
    for (char const* folder : {"/var/lib/dpkg/info", "/usr/share/doc/b-lexicon", "/usr/share/doc/without"})
        std::filesystem::create_directories(root.path() + folder);
    root.write("var/lib/dpkg/info/a.list", "/usr/share/lexicon/other\n/usr/share/lexicon/names2\n");
    root.write("var/lib/dpkg/info/b-lexicon:amd64.list",
               "/.\n/usr/share/lexicon/names\n/usr/share/lexicon/names/a.csv\n");
    root.write("var/lib/dpkg/info/without.list", "/usr/share/lexicon/nameless\n");
    root.write("var/lib/dpkg/info/b-lexicon:amd64.md5sums", "/usr/share/lexicon/other\n");
    std::string const copyright = root.write("usr/share/doc/b-lexicon/copyright", "of a package");

    Case const cases[] = {
        {"none", {"words.csv", "old-COPYING", "copy"}, "", {}},
        {"all of its own, in order",
         {"notice.txt", "COPYING", "words.csv", "Licence"},
         "",
         {"COPYING", "Licence", "notice.txt"}},
        {"its package's", {}, "/usr/share/lexicon/names", {copyright}},
        {"by another way to it", {}, "/usr/share/./lexicon/x/../names", {copyright}},
        {"a package without", {}, "/usr/share/lexicon/nameless", {}},
        {"no package's", {}, "/usr/share/lexicon/unlisted", {}},
    };
    for (Case const& c : cases) {
        TempDir const source;
        for (std::string const& name : c.files) source.write(name, "of " + name);
        std::vector<std::string> found;
        for (auto const& file : findNotices(c.folder.empty() ? source.path() : c.folder, root.path()))
            found.push_back(c.folder.empty() ? file.filename().string() : file.string());
        EXPECT_EQ(found, c.found) << c.what;
    }
}

TEST(ImportNotice, SeveralTextsStandUnderTheirNames) {
    TempDir const folder;
    std::filesystem::path const one = folder.write("COPYING", "\xC0\n"), two = folder.write("LICENSE", "b");
    EXPECT_EQ(noticeText({}), "");
    EXPECT_EQ(noticeText({one}), "\xC0\n") << "of whatever encoding";
    EXPECT_EQ(noticeText({one, two}), "== COPYING\n\n\xC0\n\n== LICENSE\n\nb\n");
    EXPECT_THROW(noticeText({folder.file("none")}), lexicon_error);
}

}  // namespace
}  // namespace TAVO::importer
