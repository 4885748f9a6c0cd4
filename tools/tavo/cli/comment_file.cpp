#include "cli/comment_file.hpp"

#include "cli/file_io.hpp"
#include "cli/tool_error.hpp"
#include "lexicon/encoding_guess.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace tool {

namespace {

/// A file that lives as long as its object.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string const& content)
        : path_((std::filesystem::temp_directory_path() / "tavo-XXXXXX").string()) {
        Descriptor const made(::mkstemp(path_.data()));
        if (made.get() < 0) throw fileError(path_, errno);
        std::ofstream out(path_, std::ios::binary);
        if (!out.write(content.data(), static_cast<std::streamsize>(content.size())).flush())
            throw fileError(path_, EIO);
    }
    ~TemporaryFile() { ::unlink(path_.c_str()); }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    std::string const& path() const noexcept { return path_; }

private:
    std::string path_;
};

std::string asSjis(std::string const& content, std::string const& path, Encoding encoding) {
    if (encoding == Encoding::Sjis) return content;
    std::string sjis;
    if (auto const bad = appendUtf8AsSjis(sjis, content)) {
        auto const line = 1 + std::count(content.begin(), content.begin() + static_cast<std::ptrdiff_t>(*bad), '\n');
        throw ToolError(ExitStatus::Data,
                        path + ":" + std::to_string(line) + ":a character that code page 932 lacks, or no UTF-8");
    }
    return sjis;
}

}  // namespace

void useCommentRules(TAVO::Tavo& analyser, std::string const& path, Encoding encoding) {
    // The library reads Shift_JIS files.
    std::string const text = readFile(path);
    TAVO::words::requireEncoding(text, path, encoding);
    TemporaryFile const rules(asSjis(text, path, encoding));
    try {
        analyser.setCommentRulePath(rules.path().c_str());
    } catch (TAVO::illegal_format const& error) {
        std::string message = error.what();
        std::size_t const at = message.find(rules.path());
        if (at != std::string::npos) message = path + message.substr(at + rules.path().size());
        throw ToolError(ExitStatus::Data, fromSjis(message, encoding));
    }
}

}  // namespace tool
