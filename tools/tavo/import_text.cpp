#include "import_text.hpp"

#include "import_charset.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace TAVO::importer {
namespace fs = std::filesystem;

void fail(fs::path const& file, std::size_t line, std::string const& cause) {
    throw ImportError(file.string() + ":" + std::to_string(line) + ": " + cause);
}

std::string readFile(fs::path const& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw ImportError(path.string() + ": cannot be opened");
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) throw ImportError(path.string() + ": cannot be read");
    return text;
}

namespace {

std::size_t convert(std::string& text, std::string_view bytes, std::string const& charset, fs::path const& file) {
    try {
        return appendUtf8(text, bytes, charset);
    } catch (std::runtime_error const& error) {
        throw ImportError(file.string() + ": " + error.what() + "; name another encoding with --charset");
    }
}

}  // namespace

std::string readText(fs::path const& file, std::string const& charset, Loss* damaged) {
    std::string const bytes = readFile(file);
    auto const linesIn = [](std::string_view text) {
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    };
    std::size_t const bearable = damaged == nullptr ? 0 : linesIn(bytes) / 20;
    std::string text;
    std::string_view rest = bytes;
    std::size_t line = 1, faults = 0, firstFault = 0, firstByte = 0;
    while (!rest.empty()) {
        std::size_t const fault = convert(text, rest, charset, file);
        if (fault == rest.size()) break;
        std::size_t const begin = rest.rfind('\n', fault) + 1, end = std::min(rest.find('\n', fault), rest.size());
        line += linesIn(rest.substr(0, fault));
        if (faults++ == 0) {
            firstFault = line;
            firstByte = fault - begin + 1;
        }
        if (faults > bearable)
            fail(file, firstFault,
                 "byte " + std::to_string(firstByte) + " is not " + charset +
                     " text; mend the line, or name another encoding with --charset");
        damaged->add(file.filename().string() + ":" + std::to_string(line));
        text.resize(text.rfind('\n') + 1);
        rest.remove_prefix(end);
    }
    return text;
}

}  // namespace TAVO::importer
