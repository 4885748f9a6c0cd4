// tavo dic dump
#include "cli/file_io.hpp"
#include "dic/dic_command.hpp"

#include <tavo/lexicon_maker.hpp>

namespace tool {

ExitStatus dumpDictionary(DicOptions const& options) {
    std::size_t const changed = TAVO::dumpDictionary(options.input, options.encoding, writeStandardOutput);
    if (changed == 0) return ExitStatus::Ok;
    complain(options.input + ": " + std::to_string(changed) +
             " lines hold codes that UTF-8 does not keep apart; --encoding sjis writes them exactly");
    return ExitStatus::Data;
}

}  // namespace tool
