#include "cli/command_line.hpp"

#include "cli/file_io.hpp"

namespace tool {

ExitStatus parseAndRun(CLI::App& app, int argc, char** argv, std::function<ExitStatus()> const& action) {
    try {
        app.parse(argc, argv);
    } catch (CLI::CallForHelp const&) {
        // A command below this one may have been asked.
        CLI::App const* asked = &app;
        while (!asked->get_subcommands().empty()) asked = asked->get_subcommands().front();
        writeStandardOutput(asked->help());
        return ExitStatus::Ok;
    } catch (CLI::CallForVersion const& version) {
        writeStandardOutput(std::string(version.what()) + "\n");
        return ExitStatus::Ok;
    } catch (CLI::ParseError const& error) {
        throw ToolError(ExitStatus::Usage, std::string(error.what()) + "\nTry: " + app.get_name() + " --help");
    }
    return action();
}

void addEncodingOption(CLI::App& app, Encoding& encoding) {
    auto const choose = [&encoding](std::string const& name) {
        auto const known = encodingNamed(name);
        if (!known)
            throw CLI::ValidationError(name, "is none of utf8, sjis (cp932, shift_jis); convert other text with iconv");
        encoding = *known;
    };
    app.add_option_function<std::string>("--encoding", choose,
                                         "Of input and output: utf8 (default) or sjis, code page 932")
        ->type_name("NAME");
}

}  // namespace tool
