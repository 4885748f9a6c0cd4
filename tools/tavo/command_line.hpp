// What all subcommands share about their arguments.
#ifndef TAVO_TOOL_COMMAND_LINE_HPP
#define TAVO_TOOL_COMMAND_LINE_HPP

#include "encoding.hpp"
#include "tool_error.hpp"

#include <CLI/App.hpp>

#include <functional>
#include <string>

namespace tool {

/// Parses the arguments behind argv[0] and runs @p action. Prints help or
/// version when asked for; throws ToolError (usage) for wrong arguments.
ExitStatus parseAndRun(CLI::App& app, int argc, char** argv, std::function<ExitStatus()> const& action);

/// Adds --encoding.
void addEncodingOption(CLI::App& app, Encoding& encoding);

// The subcommands; argv[0] is the subcommand's name.
ExitStatus analyseCommand(int argc, char** argv);
ExitStatus dicCommand(int argc, char** argv);
ExitStatus lookupCommand(int argc, char** argv);
ExitStatus readingCommand(int argc, char** argv);

}  // namespace tool

#endif
