// What all subcommands share about their arguments.
#ifndef TAVO_TOOL_COMMAND_LINE_HPP
#define TAVO_TOOL_COMMAND_LINE_HPP

#include "cli/encoding.hpp"
#include "cli/tool_error.hpp"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tool {

/// Parses the arguments behind argv[0] and runs @p action. Prints help or
/// version when asked for; throws ToolError (usage) for wrong arguments.
ExitStatus parseAndRun(CLI::App& app, int argc, char** argv, std::function<ExitStatus()> const& action);

/// Adds an option whose value is one of @p choices (name and value).
template <class T>
void addChoice(CLI::App& app, std::string const& name, T& target, std::vector<std::pair<std::string, T>> choices,
               std::string const& description) {
    auto const choose = [&target, choices = std::move(choices)](std::string const& chosen) {
        std::string known;
        for (auto const& [word, value] : choices) {
            if (word == chosen) {
                target = value;
                return;
            }
            known += (known.empty() ? "" : ", ") + word;
        }
        throw CLI::ValidationError(chosen, "is none of " + known);
    };
    app.add_option_function<std::string>(name, choose, description)->type_name("NAME");
}

/// Adds --encoding.
void addEncodingOption(CLI::App& app, Encoding& encoding);

}  // namespace tool

#endif
