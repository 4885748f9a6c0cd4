#include "lexicon/import/source/text.hpp"

#include "lexicon/import/source/charset.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace TAVO::importer {
namespace fs = std::filesystem;

void fail(fs::path const& file, std::size_t line, std::string const& cause) {
    throw lexicon_error(file.string(), line, cause);
}

std::string readFile(fs::path const& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw lexicon_error(path.string(), 0, "cannot be opened");
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) throw lexicon_error(path.string(), 0, "cannot be read");
    return text;
}

namespace {

using Visit = std::function<void(std::string_view line, std::size_t number)>;

std::size_t convert(std::string& text, std::string_view bytes, std::string const& charset, fs::path const& file) {
    try {
        return appendUtf8(text, bytes, charset);
    } catch (std::runtime_error const& error) {
        throw lexicon_error(file.string(), 0, std::string(error.what()) + "; name another encoding with --charset");
    }
}

/// Converts a file piece by piece, each of whole lines.
class LineConverter {
public:
    LineConverter(fs::path const& file, std::string const& charset, Loss* damaged)
        : file_(file), charset_(charset), damaged_(damaged) {}

    void piece(std::string_view bytes, Visit const& visit) {
        text_.clear();
        for (std::string_view rest = bytes; !rest.empty();) {
            std::size_t const fault = convert(text_, rest, charset_, file_);
            if (fault == rest.size()) break;
            std::size_t const begin = rest.rfind('\n', fault) + 1;
            // The line becomes an empty one, which keeps the numbers of the others.
            text_.resize(text_.rfind('\n') + 1);
            report(lines_ + 1 + static_cast<std::size_t>(std::count(text_.begin(), text_.end(), '\n')),
                   fault - begin + 1);
            rest.remove_prefix(std::min(rest.find('\n', fault), rest.size()));
        }
        std::size_t const before = lines_;
        forEachLine(text_, [&](std::string_view line, std::size_t number) {
            lines_ = before + number;
            if (!line.empty()) visit(line, lines_);
        });
    }

    void finish() const {
        if (faults_ * 20 > lines_) failAtFirst();
    }

private:
    void report(std::size_t line, std::size_t byte) {
        if (faults_++ == 0) {
            firstLine_ = line;
            firstByte_ = byte;
        }
        if (damaged_ == nullptr) failAtFirst();
        damaged_->add(file_.filename().string() + ":" + std::to_string(line));
    }
    [[noreturn]] void failAtFirst() const {
        fail(file_, firstLine_,
             "byte " + std::to_string(firstByte_) + " is not " + charset_ +
                 " text; mend the line, or name another encoding with --charset");
    }

    fs::path const& file_;
    std::string const& charset_;
    Loss* damaged_;
    std::string text_;
    std::size_t lines_ = 0, faults_ = 0, firstLine_ = 0, firstByte_ = 0;
};

}  // namespace

void readLines(fs::path const& file, std::string const& charset, Loss* damaged, Visit const& visit) {
    constexpr std::size_t kPieceBytes = std::size_t{1} << 20;
    std::ifstream in(file, std::ios::binary);
    if (!in) throw lexicon_error(file.string(), 0, "cannot be opened");
    LineConverter converter(file, charset, damaged);
    std::string bytes;
    while (in) {
        std::size_t const kept = bytes.size();
        bytes.resize(kept + kPieceBytes);
        in.read(bytes.data() + kept, kPieceBytes);
        bytes.resize(kept + static_cast<std::size_t>(in.gcount()));
        std::size_t const end = in ? bytes.rfind('\n') + 1 : bytes.size();
        converter.piece(std::string_view(bytes).substr(0, end), visit);
        bytes.erase(0, end);
    }
    if (in.bad()) throw lexicon_error(file.string(), 0, "cannot be read");
    converter.finish();
}

}  // namespace TAVO::importer
