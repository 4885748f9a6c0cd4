// Dictionary source: what compiles is sound, and printed as source it compiles to
// the same dictionary again.
#include "base/text.hpp"
#include "dic/dic_check.hpp"
#include "dic/dic_compiler.hpp"
#include "dic/record_source.hpp"
#include "fuzz/fuzz_input.hpp"
#include "fuzz/fuzz_world.hpp"

#include <algorithm>
#include <sstream>

namespace {

using namespace TAVO;
using namespace TAVO::test;

/// Compiles the lines that are not refused; their number in @p taken.
std::string compiled(std::vector<std::string> const& lines, std::size_t& taken) {
    DicCompiler compiler(fuzzWorld().world.names());
    taken = 0;
    for (std::string const& line : lines) {
        if (isCommentLine(line)) continue;  // so do all who read sources
        std::string error;
        if (compiler.add(line, error))
            ++taken;
        else
            check(!error.empty());
    }
    std::ostringstream out;
    return compiler.compile(out, false) ? out.str() : std::string();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string text = FuzzInput(data, size).rest();
    std::erase(text, '\r');  // as reading lines does
    std::vector<std::string> lines, printed;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    std::size_t taken = 0, takenAgain = 0;
    std::string const bytes = compiled(lines, taken);
    if (bytes.empty()) return 0;
    check(checkDic(bytes).empty());
    Dic const dic(false, fuzzWorld().dir.write("dic", bytes).c_str());
    dic.trie()->visitAll([&](std::string const& form, RecordChain chain) {
        for (; chain; chain = chain.next()) printed.push_back(formatSourceLine(form, chain.record(), dic));
    });
    check(printed.size() == taken);
    check(compiled(printed, takenAgain) == bytes && takenAgain == taken);
    return 0;
}
