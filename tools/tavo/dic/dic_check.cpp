// tavo dic check
#include "cli/file_io.hpp"
#include "dic/dic_command.hpp"

#include <tavo/lexicon_maker.hpp>

namespace tool {

namespace {

/// Writes each fault; true when there is none.
bool report(std::vector<TAVO::LexiconFault> const& faults) {
    std::string out;
    for (TAVO::LexiconFault const& fault : faults) out += fault.text() + "\n";
    writeStandardOutput(out);
    return faults.empty();
}

/// The same of a file that is checked alone.
bool reportFile(std::string const& path, std::vector<TAVO::LexiconFault> const& faults) {
    if (faults.empty()) writeStandardOutput(path + ": sound\n");
    return report(faults);
}

}  // namespace

ExitStatus checkDictionary(DicOptions const& options) {
    bool sound = reportFile(options.input, TAVO::checkDictionary(readFile(options.input), options.input));
    if (options.connTable.empty()) return sound ? ExitStatus::Ok : ExitStatus::Data;
    sound = reportFile(options.connTable, TAVO::checkTable(readFile(options.connTable), options.connTable)) && sound;
    if (sound) sound = report(TAVO::checkTogether(options.input, options.connTable));
    return sound ? ExitStatus::Ok : ExitStatus::Data;
}

}  // namespace tool
