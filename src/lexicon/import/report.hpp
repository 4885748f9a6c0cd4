// What an import did and how well the result agrees with its source.
#ifndef TAVO_LEXICON_IMPORT_REPORT_HPP
#define TAVO_LEXICON_IMPORT_REPORT_HPP

#include "lexicon/import/end_forms.hpp"
#include "lexicon/import/fit/fit.hpp"
#include "lexicon/import/fit/search.hpp"
#include "lexicon/import/source/source_lexicon.hpp"
#include "lexicon/import/table/table.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace TAVO::importer {

/// Best analyses by the tables against best analyses by the source's exact costs.
struct Agreement {
    std::uint64_t exactWords = 0, tableWords = 0;
    std::uint64_t sameSpan = 0;          ///< words of both
    std::uint64_t sameHead = 0;          ///< of them those whose name's head is equal too
    std::uint64_t edges = 0;             ///< of the exact best analyses
    std::uint64_t below = 0, above = 0;  ///< of them those whose cost lies outside a byte's range

    double f1() const noexcept;
    double f1WithHead() const noexcept;
};

/// The parts of an unknown word count as one word. @p step: source cost per unit of a byte.
Agreement measureAgreement(Lexicon const& lexicon, FormIndex const& index, Shifts const& shifts, Tables const& tables,
                           double step, std::vector<std::string> const& sentences);

struct ReportFacts {
    std::string fittedOn;  ///< what the sentences are
    std::uint64_t sentences = 0;
    std::uint64_t linesWritten = 0;
    std::vector<std::uint64_t> dictionaryBytes;  ///< per part
    std::uint64_t tableBytes = 0;
    double perByte = 0;
    std::string notices;  ///< files of the source's notices
    TableOptions table;
    EndForms endForms;
};

/// UTF-8, "name: value" lines.
std::string reportText(Lexicon const& lexicon, Tables const& tables, Agreement const& agreement,
                       ReportFacts const& facts);

}  // namespace TAVO::importer

#endif
