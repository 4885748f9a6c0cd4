// The text files of a source lexicon, and faults in them.
#ifndef TAVO_LEXICON_IMPORT_SOURCE_TEXT_HPP
#define TAVO_LEXICON_IMPORT_SOURCE_TEXT_HPP

#include <tavo/lexicon_maker.hpp>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::importer {

/// Throws lexicon_error.
[[noreturn]] void fail(std::filesystem::path const& file, std::size_t line, std::string const& cause);

/// What an import leaves out for one reason.
struct Loss {
    static constexpr std::size_t kMaxExamples = 20;

    std::uint64_t count = 0;
    std::vector<std::string> examples;  ///< the first ones, UTF-8

    void add(std::string_view example) {
        ++count;
        if (examples.size() < kMaxExamples) examples.emplace_back(example);
    }
};

/// The whole file. Throws lexicon_error when it cannot be read.
std::string readFile(std::filesystem::path const& path);

/// Calls visit(line, number) for each line of a file of any size, in UTF-8 and without its end; numbers count from 1.
/// A line that is no text in encoding @p charset is left out and counted in @p damaged as "name:line". Where more than
/// one line in twenty is none, or @p damaged is null, the first one is an error.
void readLines(std::filesystem::path const& file, std::string const& charset, Loss* damaged,
               std::function<void(std::string_view line, std::size_t number)> const& visit);

/// Calls visit(line, number) for each line, without its end; numbers count from 1.
template <class Visit>
void forEachLine(std::string_view text, Visit&& visit) {
    std::size_t number = 0;
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(pos, end - pos);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        visit(line, ++number);
        pos = end + 1;
    }
}

}  // namespace TAVO::importer

#endif
