// compile -> load -> print as source -> compile gives the same file.
#include "dic/dic_check.hpp"
#include "dic/record_source.hpp"
#include "result/dictionary_lookup.hpp"
#include "support/random_world.hpp"
#include "support/record_builder.hpp"
#include "support/result_world.hpp"
#include "support/testing.hpp"

#include <set>

namespace TAVO::test {
namespace {

/// Random source lines over an alphabet that is mostly marks.
class LineMaker {
public:
    explicit LineMaker(unsigned seed) : random_(seed) {}

    unsigned below(std::size_t limit) { return random_.below(static_cast<unsigned>(limit)); }

    /// Literal text: every mark escaped.
    std::string text(unsigned minimum) {
        static std::string const kCharacters[] = {"a",     "b", ",", "\\",       "-",      "/",     "(",
                                                  "|",     ")", ";", "#",        "\x95\\", "\x83-", "\x83/",
                                                  "\x83,", ":", "@", "\x82\x60", "0",      "R"};
        std::string result;
        for (unsigned n = minimum + below(4); n > 0; --n) {
            std::string const& c = kCharacters[below(std::size(kCharacters))];
            bool const isMark = c == "," || c == "\\" || c == "-" || c == "/" || c == ";" || c == "#";
            if (isMark || below(8) == 0) result += '\\';
            result += c;
        }
        return result;
    }
    std::string parts(unsigned count, unsigned minimum) {
        std::string result = text(minimum);
        for (unsigned i = 1; i < count; ++i) result.append(below(2) == 0 ? "-" : "/").append(text(minimum));
        return result;
    }
    std::string name() {
        static std::string const kNames[] = {"Noun", "Verb:Stem", "Suffix\\-Kind", "Number\\/Odd", "Comma\\,Name"};
        return kNames[below(std::size(kNames))];
    }
    std::string numbers() {
        std::string result;
        for (unsigned n = below(4); n > 0; --n) {
            if (!result.empty()) result += ':';
            result.append(std::to_string(1 + below(65535)));
        }
        return result;
    }

    std::string line() {
        unsigned const count = 1 + (below(2) == 0 ? below(4) : 0);
        std::string result = parts(count, 1) + "," + name();
        if (count > 1 && below(2) == 0) {
            for (unsigned i = 0; i < count; ++i) result.append("-").append(name());
        }
        result.append(",").append(std::to_string(below(256))).append(",");
        if (below(2) == 0) result += parts(count, 0);
        result += ",";
        if (below(2) == 0) result += parts(1 + below(count), 0);
        for (int i = 0; i < 3; ++i) result.append(",").append(text(0));
        for (int i = 0; i < 3; ++i) result.append(",").append(numbers());
        result.append(",").append(text(0));
        for (unsigned n = below(3); n > 0; --n) result.append(",").append(text(0));
        return result;
    }

private:
    Random random_;
};

/// As the library prints the records and as it prints their morphemes.
std::vector<std::string> printedRecords(Dic const& dic) {
    std::vector<std::string> lines;
    dic.trie()->visitAll([&](std::string const& form, RecordChain chain) {
        for (; chain; chain = chain.next()) lines.push_back(formatSourceLine(form, chain.record(), dic));
    });
    return lines;
}

std::vector<std::string> printedMorphemes(Dic const& dic) {
    std::vector<std::string> lines;
    dic.trie()->visitAll([&](std::string const& key, RecordChain) {
        std::vector<Mrph> words;
        EXPECT_TRUE(lookup(dic, key, words, nullptr));
        for (Mrph const& word : words) {
            std::ostringstream os;
            word.source(os, &dic);
            lines.push_back(os.str());
            lines.back().pop_back();  // the line end
        }
        return true;
    });
    return lines;
}

TEST(SourceRoundTrip, GivesTheSameDictionary) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        LineMaker maker(seed);
        SmallWorld first;
        first.names(RecordBuilder::names());
        for (int i = 0; i < 50; ++i) first.line(maker.line());
        ResultWorld const loaded(first);
        EXPECT_EQ(checkDic(first.dictionary()), std::vector<std::string>{});
        for (auto const& lines : {printedRecords(loaded.dic()), printedMorphemes(loaded.dic())}) {
            EXPECT_EQ(lines.size(), 50U);
            SmallWorld second;
            second.names(RecordBuilder::names());
            for (std::string const& line : lines) {
                EXPECT_FALSE(line.front() == ';' || line.front() == '#') << "a comment: " << line;
                second.line(line);
            }
            EXPECT_TRUE(first.dictionary() == second.dictionary());
        }
    }
}

}  // namespace
}  // namespace TAVO::test
