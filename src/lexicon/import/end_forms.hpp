// Derives the rules of end forms from a lexicon's own conjugated words and their base forms.
#ifndef TAVO_LEXICON_IMPORT_END_FORMS_HPP
#define TAVO_LEXICON_IMPORT_END_FORMS_HPP

#include "lexicon/import/source/source_lexicon.hpp"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace TAVO::importer {

/// A word that ends with @p strip has @p add there in its end form. Code page 932.
struct Ending {
    std::string strip, add;

    friend bool operator==(Ending const&, Ending const&) = default;
};

/// Texts of words of one part of speech, each with that of its base form; code page 932.
using EndPairs = std::vector<std::pair<std::string, std::string>>;

/// The endings that turn first texts into second ones, of which the longest that a text ends with applies. From the
/// empty ending on, an ending gets a rule where more of the pairs that end so come right by it than by the rule that
/// they had before: the change that most of them have, the shortest and first of those with as many. Sorted by strip.
std::vector<Ending> deriveEndings(EndPairs pairs);

/// How many texts of conjugated words there are, and how many of them the rules turn into those of their base forms.
struct EndShare {
    std::uint64_t all = 0, right = 0;
};

struct EndForms {
    std::string text;  ///< the rule file, UTF-8
    std::uint64_t rules = 0;
    EndShare forms;            ///< of the words that have a base form, which differs from the form
    EndShare own;              ///< of the words of those parts of speech that are their own base form
    EndShare readings, prons;  ///< of the words whose base form is an entry
};

/// Derives the rules of all parts of speech that are conjugated, and tries them on every word. A word that is its own
/// base form and that the rules give another is named as its base form, so that its standard form stays.
EndForms deriveEndForms(Lexicon& lexicon);

}  // namespace TAVO::importer

#endif
