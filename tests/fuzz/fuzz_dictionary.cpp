// A compiled dictionary of any bytes: the check ends; what it calls sound finds its
// own keys; an analyser takes it or refuses it, and analyses either way.
#include "dic/dic.hpp"
#include "dic/dic_check.hpp"
#include "fuzz/fuzz_image.hpp"
#include "fuzz/fuzz_world.hpp"

namespace {

using namespace TAVO;
using namespace TAVO::test;

void checkFindsItsKeys(std::string const& path) {
    Dic const dic(false, path.c_str());
    check(dic.trie() != nullptr);
    dic.trie()->visitAll([&](std::string const& key, RecordChain chain) {
        check(dic.trie()->exactMatch(asBytes(key.data()), key.size()).head() == chain.head());
        bool found = false;
        dic.trie()->prefixSearch(asBytes(key.data()), key.size(), [&](std::size_t length, RecordChain) {
            check(length <= key.size());
            return !(found = length == key.size());
        });
        check(found);
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static std::string const sound = fuzzWorld().world.dictionary();
    FuzzInput in(data, size);
    std::string const bytes = damaged(sound, in);
    std::string const path = fuzzWorld().dir.write("dic", bytes);
    if (checkDic(bytes).empty()) checkFindsItsKeys(path);
    std::string const text = "abcd11dab\x83\x5c\x94\x5c?";
    {
        Tavo tavo;
        attach(tavo);
        try {
            tavo.addDicPath(path.c_str(), size % 2 == 0);
        } catch (std::runtime_error const&) {
            check(tavo.getDicCount() == 1);
        }
        analysed(tavo, text);
        std::vector<Mrph> words;
        tavo.getByRead(words, "x", tavo.getDicCount() - 1);
    }
    Tavo::dispose();
    return 0;
}
