// A small world with an analyser's state around it: from words and costs to
// the morphemes of a text.
#ifndef TAVO_TESTS_RESULT_WORLD_HPP
#define TAVO_TESTS_RESULT_WORLD_HPP

#include "result/assembly.hpp"
#include "result/mrph_access.hpp"
#include "support/record_builder.hpp"
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"

namespace TAVO::test {

/// Words of a few parts of speech; every connection costs 10.
inline SmallWorld plainWords(std::initializer_list<char const*> lines) {
    SmallWorld world;
    world.names({"Begin", "End", "Undef", "Noun", "Verb", "Tail"}).cost([](unsigned, unsigned) { return 10; });
    for (char const* line : lines) world.line(line);
    return world;
}

/// A word, and all names of RecordBuilder.
inline SmallWorld worldOfNames() {
    SmallWorld world;
    return world.names(RecordBuilder::names()).line("x,Noun");
}

class ResultWorld {
public:
    explicit ResultWorld(SmallWorld const& world)
        : paths(world.writeTo(dir_.path())), table_(true, paths.connTable.c_str()) {
        context.connTable = &table_;
        context.pos.setPartOfSP(&table_);
        context.dics.addDicPath(paths.dicSpec().c_str(), false, &table_);
    }

    Dic const& dic() const { return *context.dics.entries().front().dic; }

    /// Analyses @p text as the only sentence; it must outlive the morphemes.
    std::vector<Mrph> analyse(std::string const& text) {
        context.sentences.clear();
        context.lattice.clear();
        Sentence sentence;
        sentence.given = sentence.text = text;
        context.lattice.build(sentence, &table_, context.dics);
        context.sentences.push_back(std::move(sentence));
        std::vector<Mrph> out;
        getMrphArray(out, bestPath(context.sentences.back()), context, reduce, context.sentences.back());
        return out;
    }

private:
    TempDir dir_;

public:
    SmallWorld::Paths const paths;
    AnalyzerContext context{0};
    ReduceRules reduce;

private:
    ConnTable table_;
};

}  // namespace TAVO::test

#endif
