// The words of a dictionary as morphemes: by their exact form, and by the
// prefixes of a text.
#ifndef TAVO_RESULT_DICTIONARY_LOOKUP_HPP
#define TAVO_RESULT_DICTIONARY_LOOKUP_HPP

#include "dic/dic.hpp"
#include "result/context.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace TAVO {

/// Appends one morpheme per record of exactly this form, in chain order; false
/// when there is none. The morphemes point at @p form, which must outlive them.
bool lookupAppend(Dic const& dic, char const* form, std::size_t length, std::vector<Mrph>& result,
                  AnalyzerContext const* owner);
bool lookupAppend(Dic const& dic, std::string const& form, std::vector<Mrph>& result, AnalyzerContext const* owner);

/// The same into an emptied @p result.
bool lookup(Dic const& dic, char const* form, std::size_t length, std::vector<Mrph>& result,
            AnalyzerContext const* owner);
bool lookup(Dic const& dic, std::string const& form, std::vector<Mrph>& result, AnalyzerContext const* owner);

// The searches below append morphemes for the records of every form that is a
// prefix of the text, shortest form first, and return the number of appended
// ones. @p dicIndex, the dictionary's index in the analyser's list, is recorded
// in them.

/// Every record.
unsigned int commonPrefixAll(Dic const& dic, char const* text, std::size_t length, std::vector<Mrph>& result,
                             AnalyzerContext const* owner, int dicIndex);
unsigned int commonPrefixAll(Dic const& dic, std::string const& text, std::vector<Mrph>& result,
                             AnalyzerContext const* owner, int dicIndex);

/// The first record of a form, then each that has another part of speech than
/// the record just before it.
unsigned int commonPrefixDistinct(Dic const& dic, char const* text, std::size_t length, std::vector<Mrph>& result,
                                  AnalyzerContext const* owner, int dicIndex);
unsigned int commonPrefixDistinct(Dic const& dic, std::string const& text, std::vector<Mrph>& result,
                                  AnalyzerContext const* owner, int dicIndex);

/// One morpheme per form length and part of speech over the whole @p result:
/// a record that costs no more than the morpheme found there takes its place,
/// which is not counted as appended.
unsigned int commonPrefixMerge(Dic const& dic, char const* text, std::size_t length, std::vector<Mrph>& result,
                               AnalyzerContext const* owner, int dicIndex);
unsigned int commonPrefixMerge(Dic const& dic, std::string const& text, std::vector<Mrph>& result,
                               AnalyzerContext const* owner, int dicIndex);

}  // namespace TAVO

#endif
