// What most tests use: GoogleTest, temporary folders, readable Japanese, what is
// thrown, and tables of cases.
#ifndef TAVO_TESTS_TESTING_HPP
#define TAVO_TESTS_TESTING_HPP

#include "support/encoding.hpp"
#include "support/temp_dir.hpp"
#include "support/thrown.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace TAVO::test {

/// Cases, a row each; the loop over them names the columns:
///   for (auto const& [text, expected] : cases) EXPECT_EQ(f(text), expected) << text;
template <class... Columns>
using Table = std::vector<std::tuple<Columns...>>;

/// What @p action writes to the standard error stream.
inline std::string stderrOf(std::function<void()> const& action) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

/// For EXPECT_TRUE: that @p text has @p part in it.
inline testing::AssertionResult contains(std::string const& text, std::string_view part) {
    if (text.find(part) != std::string::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << '"' << part << "\" is not in \"" << text << '"';
}

}  // namespace TAVO::test

#endif
