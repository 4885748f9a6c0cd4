// tavo dic build
#include "cli/encoding.hpp"
#include "cli/file_io.hpp"
#include "dic/dic_command.hpp"
#include "output/out_buffer.hpp"

#include <tavo/lexicon_maker.hpp>

#include <cstdio>

namespace tool {

namespace {

/// Tells each fault on standard error; the number of those that are more than warnings.
std::size_t tellFaults(std::vector<TAVO::LexiconFault> const& found) {
    std::size_t faults = 0;
    for (TAVO::LexiconFault const& fault : found) {
        std::string const text = fault.text() + "\n";
        std::fwrite(text.data(), 1, text.size(), stderr);
        if (!fault.warning) ++faults;
    }
    return faults;
}

}  // namespace

ExitStatus buildDictionary(DicOptions const& options) {
    TAVO::WordListOptions list;
    list.connTable = options.connTable;
    list.dictionaries = options.lexicon;
    list.like = options.like;
    list.mustWin = options.mustWin;
    list.mecabFormat = options.mecabFormat;
    list.encoding = options.encoding;
    list.name = options.input;
    list.output = options.output;
    list.verbose = options.verbose;
    argumentToSjis(options.like, options.encoding, "--like");
    for (std::string const& sentence : options.mustWin) argumentToSjis(sentence, options.encoding, "--must-win");

    TAVO::WordList const made = TAVO::compileWords(readFile(options.input), list);
    if (std::size_t const faults = tellFaults(made.faults); faults > 0) {
        complain(std::to_string(faults) + (faults == 1 ? " faulty line" : " faulty lines") + "; " + options.output +
                 " was not written");
        return ExitStatus::Data;
    }
    ExitStatus status = ExitStatus::Ok;
    OutBuffer out;
    for (TAVO::WordVerdict const& verdict : made.verdicts) {
        out.append(verdict.text);
        out.append('\n');
        if (!verdict.wins) status = ExitStatus::Data;
    }
    writeStandardOutput(out.view());
    return status;
}

}  // namespace tool
