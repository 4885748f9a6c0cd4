// tavo dic build
#include "dic_command.hpp"
#include "file_io.hpp"
#include "new_file.hpp"
#include "utf8.hpp"

#include "base/text.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic_compiler.hpp"

#include <algorithm>
#include <cstdio>

namespace tool {

namespace {

/// What the library reads as one line when it rebuilds a dictionary from its source.
constexpr std::size_t kMaxLineBytes = 4095;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

class SourceCompiler {
public:
    SourceCompiler(DicOptions const& options, TAVO::ConnTable const& table)
        : options_(options), compiler_(namesOf(table)) {}

    /// Returns the number of faulty lines, each reported.
    std::size_t addAll(std::string_view source) {
        if (options_.encoding == Encoding::Utf8 && source.starts_with(kByteOrderMark))
            source.remove_prefix(kByteOrderMark.size());
        std::size_t faults = 0;
        for (std::size_t number = 1; !source.empty(); ++number) {
            std::size_t const end = std::min(source.find('\n'), source.size());
            std::string error;
            if (!add(source.substr(0, end), error)) {
                report(number, error);
                ++faults;
            }
            source.remove_prefix(std::min(end + 1, source.size()));
        }
        return faults;
    }

    TAVO::DicCompiler& compiler() noexcept { return compiler_; }

private:
    static std::vector<std::string> namesOf(TAVO::ConnTable const& table) {
        std::vector<std::string> names;
        for (std::uint32_t id = 1; id <= table.idCount(); ++id) names.emplace_back(table.getName(id));
        return names;
    }

    /// @p error is in the user's encoding.
    bool add(std::string_view written, std::string& error) {
        if (TAVO::isCommentLine(written)) return true;
        line_.clear();
        if (options_.encoding == Encoding::Sjis) {
            line_ = written;
        } else if (auto const at = appendUtf8AsSjis(line_, written)) {
            Utf8Char const c = decodeUtf8(written.substr(*at));
            error = c.valid ? "Error: \"" + std::string(written.substr(*at, c.bytes)) + "\" is not in code page 932"
                            : "Error: byte " + std::to_string(*at + 1) + " is not UTF-8 (Shift_JIS? --encoding sjis)";
            return false;
        }
        std::erase(line_, '\r');
        if (line_.empty()) return true;
        if (line_.size() > kMaxLineBytes) {
            error = "Error: line of " + std::to_string(line_.size()) + " bytes; at most " +
                    std::to_string(kMaxLineBytes) + " are read";
            return false;
        }
        if (compiler_.add(line_, error)) return true;
        error = fromSjis(error, options_.encoding);
        return false;
    }

    void report(std::size_t number, std::string const& error) const {
        std::string const text = options_.input + ":" + std::to_string(number) + ": " + error + "\n";
        std::fwrite(text.data(), 1, text.size(), stderr);
    }

    DicOptions const& options_;
    TAVO::DicCompiler compiler_;
    std::string line_;
};

}  // namespace

ExitStatus buildDictionary(DicOptions const& options) {
    TAVO::ConnTable const table(false, options.connTable.c_str());
    SourceCompiler source(options, table);
    std::size_t const faults = source.addAll(readFile(options.input));
    if (faults > 0) {
        complain(std::to_string(faults) + (faults == 1 ? " faulty line" : " faulty lines") + "; " + options.output +
                 " was not written");
        return ExitStatus::Data;
    }
    NewFile file(options.output);
    if (!source.compiler().compile(file.stream(), options.verbose))
        throw ToolError(ExitStatus::Data, options.output + ": " + source.compiler().error());
    file.commit();
    return ExitStatus::Ok;
}

}  // namespace tool
