#include "lexicon/import/source/charset.hpp"

#include "base/cp932_tables.hpp"
#include "base/utf8.hpp"

#include <iconv.h>

#include <array>
#include <cerrno>
#include <stdexcept>

namespace TAVO::importer {
namespace {

class Iconv {
public:
    Iconv(char const* to, char const* from) : handle_(iconv_open(to, from)) {}
    ~Iconv() {
        if (valid()) iconv_close(handle_);
    }
    Iconv(Iconv const&) = delete;
    Iconv& operator=(Iconv const&) = delete;

    bool valid() const noexcept { return handle_ != reinterpret_cast<iconv_t>(-1); }
    /// Appends what fits one buffer to @p out and moves @p in behind what was read; false at what is no text.
    bool convert(char const*& in, std::size_t& inLeft, std::string& out) {
        std::array<char, 1 << 16> buffer;
        char* input = const_cast<char*>(in);
        char* output = buffer.data();
        std::size_t outLeft = buffer.size();
        bool const all = iconv(handle_, &input, &inLeft, &output, &outLeft) != static_cast<std::size_t>(-1);
        in = input;
        out.append(buffer.data(), output);
        return all || errno == E2BIG;
    }

private:
    iconv_t handle_;
};

/// The vendors' variant of EUC-JP has the characters that lexicons write; the
/// strict one refuses some of them.
std::string systemName(std::string const& charset) {
    if (charset == "EUC-JP" || charset == "euc-jp" || charset == "EUC") return "EUC-JP-MS";
    if (charset == "Shift_JIS" || charset == "SHIFT-JIS" || charset == "shift-jis" || charset == "SJIS") return "CP932";
    return charset;
}

}  // namespace

std::size_t appendUtf8(std::string& out, std::string_view bytes, std::string const& charset) {
    Iconv iconv("UTF-8", systemName(charset).c_str());
    if (!iconv.valid()) throw std::runtime_error("unknown encoding \"" + charset + "\"");
    out.reserve(out.size() + bytes.size() * 3 / 2);
    char const* in = bytes.data();
    std::size_t left = bytes.size();
    while (left > 0 && iconv.convert(in, left, out)) {
    }
    return bytes.size() - left;
}

std::uint32_t nextCodePoint(std::string_view utf8, std::size_t& pos) noexcept {
    Utf8Char const c = decodeUtf8(utf8.substr(pos));
    pos += c.bytes;
    return c.valid ? c.character : 0xFFFD;
}

Cp932 const& Cp932::table() {
    static Cp932 const instance;
    return instance;
}

Cp932::Cp932() {
    for (std::uint32_t code = 1; code < 0x10000; ++code) {
        std::uint32_t const point = code < 0x80                    ? code
                                    : code >= 0xA1 && code <= 0xDF ? 0xFF61 + (code - 0xA1)  // half-width katakana
                                    : code >= 0x8000               ? kUnicodeFromCp932[code - 0x8000]
                                                                   : 0;
        // Some characters have two codes, of which one is written.
        if (point != 0 && this->code(point) == code)
            all_.push_back({static_cast<std::uint16_t>(code), static_cast<std::uint16_t>(point)});
    }
}

std::uint16_t Cp932::code(std::uint32_t codePoint) const noexcept {
    std::uint16_t const stored = codePoint < 0x10000 ? kCp932FromUnicode[codePoint] : std::uint16_t{0};
    return static_cast<std::uint16_t>(stored < 0x100 ? stored : stored << 8 | stored >> 8);
}

bool Cp932::append(std::string& out, std::string_view utf8) const {
    std::size_t const before = out.size();
    for (std::size_t pos = 0; pos < utf8.size();) {
        std::uint16_t const c = code(nextCodePoint(utf8, pos));
        if (c == 0) {
            out.resize(before);
            return false;
        }
        if (c >= 0x100) out.push_back(static_cast<char>(c >> 8));
        out.push_back(static_cast<char>(c & 0xFF));
    }
    return true;
}

}  // namespace TAVO::importer
