// Input of the program: blocks of lines join to the file, and the words of a line,
// wherever they are cut, join to its bytes, valid UTF-8 or not.
#include "cli/line_reader.hpp"
#include "fuzz/fuzz_input.hpp"
#include "fuzz/fuzz_world.hpp"
#include "text/line_text.hpp"

namespace {

using TAVO::test::check;

void checkLine(TAVO::LineText& text, std::string_view line) {
    text.assignUtf8(line);
    check(text.original() == line && text.invalidBytes() <= line.size());
    std::string joined;
    for (std::size_t at = 0, before = 0; at <= text.sjis().size(); ++at) {
        std::size_t const offset = text.originalOffset(at);
        check(before <= offset && offset <= line.size());
        joined += text.slice(before, offset);
        before = offset;
    }
    check(joined == line);
    check(text.originalOffset(0) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const bytes = TAVO::test::FuzzInput(data, size).rest();
    tool::LineReader reader({TAVO::test::fuzzWorld().dir.write("text", bytes)}, size % 2 == 0);
    std::string joined;
    TAVO::LineText text;
    for (tool::Block block; reader.next(block);) {
        check(joined.empty() || joined.back() == '\n');  // blocks are cut between lines
        joined += block.text();
        std::string_view rest = block.text();
        while (!rest.empty()) {
            std::string_view const line = rest.substr(0, rest.find('\n'));
            checkLine(text, line);
            rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : rest.size());
        }
    }
    bool const marked = bytes.starts_with(tool::kByteOrderMark);
    check(joined == bytes.substr(marked ? tool::kByteOrderMark.size() : 0) && !reader.failed());
    return 0;
}
