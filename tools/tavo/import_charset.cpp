#include "import_charset.hpp"

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
    /// Returns the number of bytes written, or -1; moves @p in behind what was read.
    std::ptrdiff_t convert(char const*& in, std::size_t& inLeft, char* out, std::size_t outSize) {
        char* input = const_cast<char*>(in);
        char* output = out;
        std::size_t outLeft = outSize;
        std::size_t const result = iconv(handle_, &input, &inLeft, &output, &outLeft);
        in = input;
        bool const full = result == static_cast<std::size_t>(-1) && errno == E2BIG;
        return result == static_cast<std::size_t>(-1) && !full ? -1 : output - out;
    }
    void reset() { iconv(handle_, nullptr, nullptr, nullptr, nullptr); }

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

std::string toUtf8(std::string_view bytes, std::string const& charset) {
    Iconv iconv("UTF-8", systemName(charset).c_str());
    if (!iconv.valid()) throw std::runtime_error("unknown encoding \"" + charset + "\"");
    std::string result;
    result.reserve(bytes.size() * 3 / 2);
    std::array<char, 1 << 16> buffer{};
    char const* in = bytes.data();
    std::size_t left = bytes.size();
    while (left > 0) {
        std::ptrdiff_t const written = iconv.convert(in, left, buffer.data(), buffer.size());
        if (written < 0)
            throw std::runtime_error("byte " + std::to_string(bytes.size() - left) + " is not " + charset + " text");
        result.append(buffer.data(), static_cast<std::size_t>(written));
    }
    return result;
}

std::uint32_t nextCodePoint(std::string_view utf8, std::size_t& pos) noexcept {
    auto const byte = [&](std::size_t i) { return i < utf8.size() ? static_cast<unsigned char>(utf8[i]) : 0U; };
    unsigned const first = byte(pos);
    unsigned const length = first < 0x80   ? 1
                            : first < 0xC2 ? 0
                            : first < 0xE0 ? 2
                            : first < 0xF0 ? 3
                            : first < 0xF5 ? 4
                                           : 0;
    std::uint32_t code = length == 1 ? first : first & (0x7FU >> length);
    for (unsigned i = 1; i < length; ++i) {
        unsigned const next = byte(pos + i);
        if ((next & 0xC0) != 0x80) {
            ++pos;
            return 0xFFFD;
        }
        code = code << 6 | (next & 0x3F);
    }
    pos += length == 0 ? 1 : length;
    return length == 0 ? 0xFFFD : code;
}

Cp932 const& Cp932::table() {
    static Cp932 const instance;
    return instance;
}

Cp932::Cp932() : codes_(0x10000) {
    Iconv iconv("CP932", "UTF-16LE");
    if (!iconv.valid()) throw std::runtime_error("the system's iconv lacks CP932");
    for (std::uint32_t point = 1; point < 0x10000; ++point) {
        if (point >= 0xD800 && point < 0xE000) continue;
        std::array<char, 2> const in{static_cast<char>(point & 0xFF), static_cast<char>(point >> 8)};
        std::array<char, 8> out{};
        char const* from = in.data();
        std::size_t left = in.size();
        std::ptrdiff_t const n = iconv.convert(from, left, out.data(), out.size());
        if (n < 0) {
            iconv.reset();
            continue;
        }
        auto const high = static_cast<unsigned char>(out[0]);
        // One byte only for what one byte means; look-alikes of "\" and "~" are other characters.
        bool const oneByte = point < 0x80 || (point >= 0xFF61 && point <= 0xFF9F);
        if (n == 1 && oneByte) codes_[point] = high;
        if (n == 2) codes_[point] = static_cast<std::uint16_t>(high << 8 | static_cast<unsigned char>(out[1]));
    }
    std::vector<std::uint16_t> pointOf(0x10000);
    for (std::uint32_t point = 0xFFFF; point > 0; --point) pointOf[codes_[point]] = static_cast<std::uint16_t>(point);
    for (std::uint32_t code = 1; code < 0x10000; ++code)
        if (pointOf[code] != 0) all_.push_back({static_cast<std::uint16_t>(code), pointOf[code]});
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
