// A connection table of any bytes: only a faulty one is refused, and the analyser
// then keeps the one it had.
#include "dic/dic_check.hpp"
#include "fuzz/fuzz_image.hpp"
#include "fuzz/fuzz_world.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using namespace TAVO::test;
    using TAVO::Tavo;
    static std::string const sound = readFile(fuzzWorld().paths.connTable);
    FuzzInput in(data, size);
    std::string const bytes = damaged(sound, in);
    std::string const path = fuzzWorld().dir.write("table", bytes);
    std::string const text = "abcd11dab\x83\x5c?";
    {
        Tavo tavo;
        attach(tavo);
        std::string const before = analysed(tavo, text);
        try {
            tavo.setConnTablePath(path.c_str());
        } catch (TAVO::illegal_format const&) {
            check(!TAVO::checkConnTable(bytes).empty());
            check(analysed(tavo, text) == before);
        } catch (TAVO::not_adaptable const&) {
        }
        if (tavo) analysed(tavo, text);
    }
    Tavo::dispose();
    return 0;
}
