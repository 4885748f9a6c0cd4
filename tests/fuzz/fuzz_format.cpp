// Any format string: scanned once or each time, it gives the same.
#include "fuzz/fuzz_input.hpp"
#include "fuzz/fuzz_world.hpp"
#include "result/format.hpp"

#include <sstream>

namespace {

/// Widths of three digits at most: a width is filled up with blanks.
std::string withSmallWidths(std::string format) {
    int digits = 0;
    for (char& c : format) {
        digits = c >= '0' && c <= '9' ? digits + 1 : 0;
        if (digits > 3) c = 'w';
    }
    return format;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using namespace TAVO::test;
    static TAVO::Tavo tavo;
    static std::string const text =
        "abcd1?"
        "\x83\x5c";
    if (!tavo) {
        attach(tavo);
        tavo.analyze(text);
    }
    FuzzInput in(data, size);
    std::string const null = in.bytes().c_str(), format = withSmallWidths(in.rest());
    TAVO::CompiledFormat const compiled(format.c_str());
    std::vector<TAVO::Mrph> morphemes;
    tavo.getResult(morphemes, 0);
    for (TAVO::Mrph const& m : morphemes) {
        std::string out;
        compiled.write(out, m, null);
        check(out == m.format(format.c_str(), null.c_str()));
        check(out.size() <= (format.size() + 1) * (1000 + null.size()));
    }
    return 0;
}
