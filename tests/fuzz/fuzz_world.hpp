// What the fuzz targets share: a small lexicon, and what must hold of any analysis.
#ifndef TAVO_TESTS_FUZZ_WORLD_HPP
#define TAVO_TESTS_FUZZ_WORLD_HPP

#include "dic/conn_table.hpp"
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace TAVO::test {

inline void check(bool holds, char const* file = __builtin_FILE(), int line = __builtin_LINE()) {
    if (holds) return;
    std::fprintf(stderr, "%s:%d: does not hold\n", file, line);
    std::abort();
}

struct FuzzWorld {
    FuzzWorld() {
        world.namesUtf8({"Begin", "End", "Undef", "Noun", "Verb", "Tail", "記号:Number"});
        world.cost([](unsigned left, unsigned right) { return static_cast<std::uint8_t>((left * 7 + right * 3) % 11); })
            .cost(4, 5, 255)
            .cost(6, 3, 255);
        world.linesUtf8({"ab-c,Noun-Verb-Tail,12,えい(び|びー)/し,AB/C,w1,g1,grp,1:2,,7,pros,x0,x1", "d,Noun,5,でぃ",
                         "d,Verb,6,でぃ", "ab,Noun,9,えい", "ソ,Verb,3", "1,記号:Number,1", "能,Tail,200"});
        paths = world.writeTo(dir.path());
    }
    TempDir dir;
    SmallWorld world;
    SmallWorld::Paths paths;
};

inline FuzzWorld& fuzzWorld() {
    static FuzzWorld made;
    return made;
}

/// With the world's lexicon.
inline void attach(Tavo& tavo, FuzzWorld const& world = fuzzWorld()) { world.paths.attachTo(tavo); }

inline bool failed(Tavo const& tavo, int sentence) {
    auto const& all = tavo.getErrorSentenceIndex();
    return std::find(all.begin(), all.end(), static_cast<unsigned>(sentence)) != all.end();
}

/// Analyses @p text; the forms of each sentence join to the text of it that was
/// analysed, unless it failed: then it has none. Gives all of it as one string.
inline std::string analysed(Tavo& tavo, std::string const& text) {
    std::string all;
    tavo.analyze(text);
    for (int i = 0; i < static_cast<int>(tavo.getSentenceCount()); ++i) {
        std::vector<Mrph> morphemes;
        tavo.getResult(morphemes, i);
        std::string joined;
        for (Mrph const& m : morphemes) {
            unsigned int length = 0;
            char const* const form = m.getFormWithoutNullEnd(length);
            if (!m.isAnnotation()) joined.append(form, length);
            all += m.format("%w/%h/%k/%c ", "-");
        }
        check(failed(tavo, i) ? morphemes.empty() : joined == tavo.getAnalyzedText(i));
    }
    return all;
}

}  // namespace TAVO::test

#endif
