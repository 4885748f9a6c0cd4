#include "cli/comment_file.hpp"

#include "cli/file_io.hpp"
#include "cli/tool_error.hpp"
#include "lexicon/encoding_guess.hpp"
#include "lexicon/temporary_file.hpp"

#include <algorithm>

namespace tool {

namespace {

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
    TAVO::words::TemporaryFile const rules(asSjis(text, path, encoding));
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
