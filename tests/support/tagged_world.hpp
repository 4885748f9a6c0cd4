// An analyser over a small world of words, and its results as readable lines.
#ifndef TAVO_TESTS_TAGGED_WORLD_HPP
#define TAVO_TESTS_TAGGED_WORLD_HPP

#include "support/encoding.hpp"
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"

#include <tavo/tavo.hpp>

#include <string>
#include <vector>

namespace TAVO::test {

/// Each morpheme in @p format, "form:PartOfSP" when that is empty, separated by
/// blanks; an annotation in brackets.
inline std::string describe(std::vector<Mrph> const& morphemes, std::string const& format = "") {
    std::string text;
    for (Mrph const& m : morphemes) {
        if (!text.empty()) text += " ";
        char const* const used = !format.empty() ? format.c_str() : m.isAnnotation() ? "%w" : "%w:%h";
        text += m.isAnnotation() ? "[" + m.format(used, "") + "]" : m.format(used, "");
    }
    return text;
}

/// Sentences separated by " | "; a failed one as "!" and its text.
inline std::string describeAll(Tavo& tavo, std::string const& format = "") {
    std::string text;
    for (unsigned i = 0; i < tavo.getSentenceCount(); ++i) {
        bool failed = false;
        for (unsigned const error : tavo.getErrorSentenceIndex()) failed = failed || error == i;
        std::vector<Mrph> morphemes;
        tavo.getResult(morphemes, static_cast<int>(i));
        if (i > 0) text += " | ";
        text += (failed ? "!" + tavo.getSentence(static_cast<int>(i)) : "") + describe(morphemes, format);
    }
    return text;
}

class TaggedWorld {
public:
    explicit TaggedWorld(SmallWorld const& world) {
        SmallWorld::Paths const paths = world.writeTo(dir.path());
        tavo.setConnTablePath(paths.connTable.c_str());
        tavo.addDicPath(paths.dicSpec().c_str(), false);
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
        std::vector<Mrph> result;
        tavo.getResult(result, 0);
        return result;
    }

    TempDir dir;
    Tavo tavo;

private:
    std::string input_;
};

}  // namespace TAVO::test

#endif
