// `tavo import` as the tests run it.
#ifndef TAVO_TESTS_RUN_IMPORT_HPP
#define TAVO_TESTS_RUN_IMPORT_HPP

#include "import_command.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace TAVO::test {

/// Runs the command, which must succeed or throw; the report it writes.
inline std::string runImport(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "import");
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    testing::internal::CaptureStdout();
    try {
        EXPECT_EQ(tool::importCommand(static_cast<int>(argv.size()), argv.data()), tool::ExitStatus::Ok);
    } catch (...) {
        testing::internal::GetCapturedStdout();
        throw;
    }
    return testing::internal::GetCapturedStdout();
}

}  // namespace TAVO::test

#endif
