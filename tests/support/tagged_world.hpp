// An analyser over a small world of words, and its results as readable lines.
#ifndef TAVO_TESTS_TAGGED_WORLD_HPP
#define TAVO_TESTS_TAGGED_WORLD_HPP

#include "support/describe.hpp"
#include "support/encoding.hpp"
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"

namespace TAVO::test {

class TaggedWorld {
public:
    explicit TaggedWorld(SmallWorld const& world) {
        world.writeTo(dir.path()).attachTo(tavo);
        tavo.setTaggedInputMode(1);
    }

    /// The results as describeAll() writes them.
    std::string analyse(std::string const& text) {
        input_ = text;
        tavo.analyze(input_);
        return describeAll(tavo);
    }
    std::vector<Mrph> morphemes(std::string const& text) {
        input_ = text;
        tavo.analyze(input_);
        return morphemesOf(tavo);
    }

    TempDir dir;
    Tavo tavo;

private:
    std::string input_;
};

}  // namespace TAVO::test

#endif
