// Lists of new words, of either format: every line is taken or told of, and what is made is sound.
#include "fuzz/fuzz_input.hpp"
#include "fuzz/fuzz_world.hpp"

#include <tavo/lexicon_maker.hpp>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using namespace TAVO;
    using namespace TAVO::test;
    FuzzInput input(data, size);
    unsigned const flags = input.byte();
    WordListOptions options;
    options.connTable = fuzzWorld().dir.path();
    options.mecabFormat = (flags & 1U) != 0;
    options.encoding = (flags & 2U) != 0 ? TextEncoding::Sjis : TextEncoding::Utf8;
    if ((flags & 4U) != 0) options.like = "d,Noun";
    if ((flags & 8U) != 0) options.mustWin = {"abcd"};
    try {
        WordList const made = compileWords(input.rest(), options);
        std::size_t before = 0, faults = 0;
        for (LexiconFault const& fault : made.faults) {
            check(fault.file == "words" && fault.line > before && !fault.cause.empty());
            before = fault.line;
            faults += fault.warning ? 0 : 1;
        }
        check(made.made == (faults == 0) && made.dictionary.empty() == (faults != 0));
        if (!made.made) return 0;
        check(made.verdicts.size() == options.mustWin.size());
        check(checkDictionary(made.dictionary, "made").empty());
    } catch (lexicon_error const& error) {
        check(!error.fault().cause.empty());
    }
    return 0;
}
