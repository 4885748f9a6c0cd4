// What an action throws, as a value to compare.
#ifndef TAVO_TESTS_THROWN_HPP
#define TAVO_TESTS_THROWN_HPP

#include <exception>
#include <string>

namespace TAVO::test {

/// The text of the Exception that @p action throws; others pass through.
template <class Exception = std::exception, class Action>
std::string thrown(Action action) {
    try {
        action();
    } catch (Exception const& e) {
        return e.what();
    }
    return "nothing thrown";
}

}  // namespace TAVO::test

#endif
