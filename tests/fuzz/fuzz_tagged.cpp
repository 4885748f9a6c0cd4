// Tagged text, whole or broken: what is analysed comes out, and an analysis of plain
// text afterwards is as it was.
#include "fuzz/fuzz_input.hpp"
#include "fuzz/fuzz_world.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using namespace TAVO::test;
    FuzzInput in(data, size);
    unsigned const modes = in.byte();
    std::string const text = in.rest(), plain = "abcdd1ab";
    static TAVO::Tavo tavo;
    if (!tavo) attach(tavo);
    tavo.setTaggedInputMode(0);
    static std::string const before = analysed(tavo, plain);
    tavo.setTaggedInputMode(1);
    tavo.setDeleteSlashMode(modes & 1);
    tavo.setDelimitCRLFMode(modes >> 1 & 1);
    analysed(tavo, text);
    tavo.setTaggedInputMode(0);
    tavo.setDeleteSlashMode(1);
    tavo.setDelimitCRLFMode(0);
    check(analysed(tavo, plain) == before);
    return 0;
}
