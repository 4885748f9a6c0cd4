// The UTF-8 front: whatever the bytes, surfaces and the blanks between them are the text, and a text gives the same
// tokens alone, among others and as the best of several analyses.
#include "fuzz/fuzz_world.hpp"

#include <tavo/tokenizer.hpp>

#include <cstdint>
#include <string>
#include <string_view>

using namespace TAVO;
using TAVO::test::check;

namespace {

std::string described(Tokens const& tokens, std::string_view text) {
    std::string all;
    std::size_t end = 0;
    auto const isBlank = [](std::string_view part) {
        return part.find_first_not_of(" \t\n\v\f\r") == std::string_view::npos;
    };
    for (Token const& token : tokens) {
        check(end <= token.begin() && token.begin() < token.end());
        check(isBlank(text.substr(end, token.begin() - end)));
        check(token.surface().data() == text.data() + token.begin() && token.charEnd() <= token.utf16End());
        end = token.end();
        all.append(token.surface()).append("/").append(token.pos()).append("/").append(token.base()).append("/");
        all.append(token.reading()).append("/").append(token.normalized()).append(std::to_string(token.cost()));
    }
    check(isBlank(text.substr(end)));
    return all;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static Lexicon const lexicon = Lexicon::open(TAVO::test::fuzzWorld().dir.path());
    static Tokenizer tokenizer(lexicon);
    std::string const bytes(reinterpret_cast<char const*>(data), size);
    std::string_view const text(bytes);
    std::string const alone = described(tokenizer.tokenize(text), text);
    std::string_view const texts[] = {text.substr(0, size / 2), text, text.substr(size / 2)};
    check(described(tokenizer.tokenize(texts)[1], text) == alone);
    constexpr std::size_t kMostNBest = 1000;
    if (size < kMostNBest) check(described(tokenizer.nBest(text, 2)[0], text) == alone);
    if (size < kMostNBest) tokenizer.tokenizeTagged(text);
    return 0;
}
