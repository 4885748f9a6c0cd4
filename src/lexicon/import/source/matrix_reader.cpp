// Reads matrix.def.
#include "lexicon/import/source/matrix.hpp"
#include "lexicon/import/source/text.hpp"

#include <cstdio>
#include <memory>

namespace TAVO::importer {
namespace fs = std::filesystem;
namespace {

/// Reads numbers from a file of any size through one buffer.
class NumberReader {
public:
    explicit NumberReader(fs::path const& path) : path_(path), file_(std::fopen(path.c_str(), "rb"), &std::fclose) {
        if (!file_) throw lexicon_error(path.string(), 0, "cannot be opened");
    }
    /// False at the end of the file.
    bool next(long& value) {
        int c = 0;
        do {
            line_ += behindBreak_ ? 1 : 0;
            c = get();
            behindBreak_ = c == '\n';
        } while (isBlank(c));
        if (c < 0) return false;
        bool const negative = c == '-';
        if (negative) c = get();
        if (c < '0' || c > '9') fail(path_, line_, "a number is expected");
        value = 0;
        for (; c >= '0' && c <= '9'; c = get()) {
            value = value * 10 + (c - '0');
            if (value > 10'000'000) fail(path_, line_, "the number is too large");
        }
        if (c >= 0 && !isBlank(c)) fail(path_, line_, "a number is expected");
        behindBreak_ = c == '\n';
        if (negative) value = -value;
        return true;
    }
    std::size_t line() const noexcept { return line_; }

private:
    static bool isBlank(int c) noexcept { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
    int get() {
        if (at_ == end_) {
            at_ = buffer_.data();
            end_ = at_ + std::fread(buffer_.data(), 1, buffer_.size(), file_.get());
            if (at_ == end_) return -1;
        }
        return static_cast<unsigned char>(*at_++);
    }

    fs::path path_;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
    std::vector<char> buffer_ = std::vector<char>(1 << 20);
    char const *at_ = nullptr, *end_ = nullptr;
    std::size_t line_ = 1;
    bool behindBreak_ = false;
};

}  // namespace

Matrix readMatrix(fs::path const& file) {
    NumberReader reader(file);
    long rows = 0, cols = 0;
    if (!reader.next(rows) || !reader.next(cols) || rows < 1 || cols < 1 || rows > 65535 || cols > 65535)
        fail(file, 1, "the first line gives the number of right ids and of left ids, 1..65535 each");
    Matrix matrix(static_cast<std::uint32_t>(rows), static_cast<std::uint32_t>(cols));
    std::size_t const announced = std::size_t{matrix.rows} * matrix.cols;
    std::size_t seen = 0;
    long right = 0, left = 0, cost = 0;
    while (reader.next(right)) {
        if (!reader.next(left) || !reader.next(cost)) fail(file, reader.line(), "the file is cut short");
        if (right < 0 || right >= rows || left < 0 || left >= cols)
            fail(file, reader.line(),
                 "the ids " + std::to_string(right) + " " + std::to_string(left) + " lie outside the matrix");
        if (cost < -32767 || cost > 32767) fail(file, reader.line(), "the cost does not fit 16 bits");
        matrix.set(static_cast<std::uint32_t>(right), static_cast<std::uint32_t>(left),
                   static_cast<std::int16_t>(cost));
        ++seen;
    }
    if (seen < announced)
        throw lexicon_error(file.string(), 0,
                            std::to_string(announced) + " costs are announced, " + std::to_string(seen) + " given");
    return matrix;
}

}  // namespace TAVO::importer
