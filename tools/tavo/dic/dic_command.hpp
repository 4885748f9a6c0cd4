// The commands below `tavo dic`.
#ifndef TAVO_TOOL_DIC_COMMAND_HPP
#define TAVO_TOOL_DIC_COMMAND_HPP

#include "cli/encoding.hpp"
#include "cli/tool_error.hpp"

#include <string>
#include <vector>

namespace tool {

struct DicOptions {
    std::string input;
    std::string connTable;
    std::string output;
    Encoding encoding = Encoding::Utf8;
    bool verbose = false;
    bool mecabFormat = false;          ///< of the input: MeCab's CSV
    std::string like;                  ///< WORD or WORD,PART OF SPEECH
    std::vector<std::string> mustWin;  ///< sentences
    std::vector<std::string> lexicon;  ///< dictionaries for these two; empty: those beside the connection table
};

ExitStatus buildDictionary(DicOptions const& options);
ExitStatus dumpDictionary(DicOptions const& options);
ExitStatus checkDictionary(DicOptions const& options);

}  // namespace tool

#endif
