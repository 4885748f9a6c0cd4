// The program: picks the subcommand and turns failures into messages.
#include "cli/commands.hpp"
#include "cli/file_io.hpp"
#include "import/import_command.hpp"

#include <exception>
#include <new>
#include <string_view>

namespace {

struct Command {
    std::string_view name;
    tool::ExitStatus (*run)(int argc, char** argv);
};

constexpr Command kCommands[] = {
    {"import", tool::importCommand}, {"dic", tool::dicCommand},         {"learn", tool::learnCommand},
    {"lookup", tool::lookupCommand}, {"reading", tool::readingCommand},
};

tool::ExitStatus dispatch(int argc, char** argv) {
    if (argc > 1) {
        for (Command const& command : kCommands)
            if (command.name == argv[1]) return command.run(argc - 1, argv + 1);
    }
    return tool::analyseCommand(argc, argv);
}

tool::ExitStatus guardedDispatch(int argc, char** argv) {
    try {
        return dispatch(argc, argv);
    } catch (tool::OutputClosed const&) {
        return tool::ExitStatus::Ok;
    } catch (tool::ToolError const& error) {
        tool::complain(error.what());
        return error.status();
    } catch (std::bad_alloc const&) {
        tool::complain("out of memory");
    } catch (std::exception const& error) {
        tool::complain(error.what());
    }
    return tool::ExitStatus::Data;
}

}  // namespace

int main(int argc, char** argv) {
    tool::ignoreBrokenPipes();
    return static_cast<int>(guardedDispatch(argc, argv));
}
