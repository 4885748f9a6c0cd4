// The program's subcommands; argv[0] is the subcommand's name.
#ifndef TAVO_TOOL_COMMANDS_HPP
#define TAVO_TOOL_COMMANDS_HPP

#include "cli/tool_error.hpp"

namespace tool {

ExitStatus analyseCommand(int argc, char** argv);
ExitStatus dicCommand(int argc, char** argv);
ExitStatus learnCommand(int argc, char** argv);
ExitStatus lookupCommand(int argc, char** argv);
ExitStatus readingCommand(int argc, char** argv);

}  // namespace tool

#endif
