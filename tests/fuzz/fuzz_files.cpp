// Init, rule and list files: whatever is refused leaves the analyser as it was, and
// whatever is taken leaves one that analyses.
#include "fuzz/fuzz_input.hpp"
#include "fuzz/fuzz_world.hpp"

#include <iterator>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using namespace TAVO::test;
    using TAVO::Tavo;
    using Setter = void (Tavo::*)(char const*);
    constexpr Setter kSetters[] = {
        &Tavo::setInitFilePath,       &Tavo::setCommentRulePath,   &Tavo::setReduceRulePath,
        &Tavo::setNumberPartOfSPPath, &Tavo::setMajorPartOfSPPath, &Tavo::setPublicPartOfSPPath,
        &Tavo::setConvertRulePath,    &Tavo::setEndFormRulePath,   &Tavo::setCooccurrenceRulePath};
    FuzzInput in(data, size);
    std::size_t const chosen = in.choice(std::size(kSetters));
    std::string const path = fuzzWorld().dir.write("file", in.rest());
    std::string const text = "abcd11(d)##ab??\r\nab", again = text;
    {
        Tavo tavo;
        attach(tavo);
        tavo.setReduceNumberMode(1);  // so that rules tell
        tavo.setReduceUndefMode(1);
        tavo.setReduceCharMode(1);
        tavo.setInputConvertMode(2);
        std::string const before = analysed(tavo, text);
        bool refused = false;
        try {
            (tavo.*kSetters[chosen])(path.c_str());
        } catch (std::exception const& e) {
            refused = true;
            check(*e.what() != '\0');
        }
        // An init file is applied key by key: what came before the bad key stays.
        std::string const after = tavo ? analysed(tavo, again) : "";
        check(!refused || chosen == 0 || after == before);
    }
    Tavo::dispose();
    return 0;
}
