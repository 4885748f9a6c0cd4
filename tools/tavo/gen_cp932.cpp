// Build step: writes the code page 932 tables as C++ source to
// standard output, from the C library's converter.
#include <iconv.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

/// Characters that occur in Unicode text for a character of the code page whose
/// own Unicode value is another one: analysed as that character.
constexpr std::pair<std::uint16_t, std::uint16_t> kVariants[] = {
    {0x00A0, 0x0020},  // no-break space
    {0x00A2, 0x8191},  // cent sign
    {0x00A3, 0x8192},  // pound sign
    {0x00A5, 0x818F},  // yen sign
    {0x00AC, 0x81CA},  // not sign
    {0x00AF, 0x8150},  // macron
    {0x00B7, 0x8145},  // middle dot
    {0x2011, 0x815D},  // non-breaking hyphen
    {0x2013, 0x815C},  // en dash
    {0x2014, 0x815C},  // em dash
    {0x2016, 0x8161},  // double vertical line
    {0x203E, 0x8150},  // overline
    {0x2212, 0x817C},  // minus sign
    {0x22EF, 0x8163},  // midline ellipsis
    {0x301C, 0x8160},  // wave dash
};

bool isLead(unsigned byte) { return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC); }

class Converter {
public:
    Converter(char const* to, char const* from) : handle_(iconv_open(to, from)) {
        if (handle_ == reinterpret_cast<iconv_t>(-1)) {
            std::fprintf(stderr, "gen_cp932: the C library cannot convert %s to %s\n", from, to);
            std::exit(1);
        }
    }
    ~Converter() { iconv_close(handle_); }
    Converter(Converter const&) = delete;
    Converter& operator=(Converter const&) = delete;

    /// Bytes written to @p out, 0 when the input does not convert.
    std::size_t convert(char* in, std::size_t inSize, char* out, std::size_t outSize) {
        std::size_t const room = outSize;
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        std::size_t const result = iconv(handle_, &in, &inSize, &out, &outSize);
        return result == static_cast<std::size_t>(-1) || inSize != 0 ? 0 : room - outSize;
    }

private:
    iconv_t handle_;
};

/// Code page value of every character of the basic plane: 0 none, one byte as
/// is, two bytes with the lead byte low, so that a 16-bit store writes them in order.
std::vector<std::uint16_t> fromUnicode() {
    Converter converter("CP932", "UTF-16LE");
    std::vector<std::uint16_t> table(0x10000, 0);
    for (unsigned c = 0; c < 0x10000; ++c) {
        char in[2] = {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
        char out[4];
        std::size_t const n = converter.convert(in, 2, out, sizeof out);
        unsigned const first = static_cast<unsigned char>(out[0]), second = static_cast<unsigned char>(out[1]);
        if (n == 1 && (first < 0x80 || (first >= 0xA1 && first <= 0xDF))) table[c] = static_cast<std::uint16_t>(first);
        if (n == 2 && isLead(first)) table[c] = static_cast<std::uint16_t>(first | second << 8);
    }
    for (auto const& [character, code] : kVariants)
        table[character] = static_cast<std::uint16_t>(code < 0x100 ? code : (code >> 8) | (code & 0xFF) << 8);
    return table;
}

/// Unicode value of every two-byte code, by lead byte - 0x80 and second byte.
std::vector<std::uint16_t> toUnicode() {
    Converter converter("UTF-16LE", "CP932");
    std::vector<std::uint16_t> table(std::size_t{0x80} * 0x100, 0);
    for (unsigned lead = 0x81; lead <= 0xFC; ++lead) {
        for (unsigned second = 0x40; isLead(lead) && second <= 0xFC; ++second) {
            char in[2] = {static_cast<char>(lead), static_cast<char>(second)};
            char out[4];
            if (converter.convert(in, 2, out, sizeof out) != 2) continue;
            table[(lead - 0x80) * 0x100 + second] = static_cast<std::uint16_t>(static_cast<unsigned char>(out[0]) |
                                                                               static_cast<unsigned char>(out[1]) << 8);
        }
    }
    return table;
}

void print(char const* name, std::vector<std::uint16_t> const& table) {
    std::printf("std::uint16_t const %s[%zu] = {", name, table.size());
    for (std::size_t i = 0; i < table.size(); ++i) std::printf("%s%u,", i % 16 == 0 ? "\n" : "", unsigned{table[i]});
    std::printf("\n};\n");
}

}  // namespace

int main() {
    std::printf("#include \"base/cp932_tables.hpp\"\n\nnamespace TAVO {\n");
    print("kCp932FromUnicode", fromUnicode());
    print("kUnicodeFromCp932", toUnicode());
    std::printf("}  // namespace TAVO\n");
    return std::fflush(stdout) == 0 ? 0 : 1;
}
