// Results of an analysis as readable lines.
#ifndef TAVO_TESTS_DESCRIBE_HPP
#define TAVO_TESTS_DESCRIBE_HPP

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

/// The morphemes of a sentence.
inline std::vector<Mrph> morphemesOf(Tavo& tavo, int sentence = 0) {
    std::vector<Mrph> result;
    tavo.getResult(result, sentence);
    return result;
}

/// Sentences separated by " | "; a failed one as "!" and its text.
inline std::string describeAll(Tavo& tavo, std::string const& format = "") {
    std::string text;
    for (unsigned i = 0; i < tavo.getSentenceCount(); ++i) {
        bool failed = false;
        for (unsigned const error : tavo.getErrorSentenceIndex()) failed = failed || error == i;
        if (i > 0) text += " | ";
        text += (failed ? "!" + tavo.getSentence(static_cast<int>(i)) : "") +
                describe(morphemesOf(tavo, static_cast<int>(i)), format);
    }
    return text;
}

}  // namespace TAVO::test

#endif
