#include <tavo/error.hpp>

#include "base/bad_allocation.hpp"

#include <new>
#include <utility>

namespace TAVO {

tavo_not_ready::tavo_not_ready(std::string argument) : runtime_error("TAVO_NOT_READY: " + std::move(argument)) {}
file_not_found::file_not_found(std::string argument) : runtime_error("FILE_NOT_OPEN: " + std::move(argument)) {}
illegal_format::illegal_format(std::string argument) : runtime_error("ILLEGAL_FORMAT: " + std::move(argument)) {}
illegal_part_of_speech::illegal_part_of_speech(std::string argument)
    : runtime_error("ILLEGAL_PART_OF_SPEECH: " + std::move(argument)) {}
busy_dictionary::busy_dictionary(std::string argument) : runtime_error("BUSY_DICTIONARY: " + std::move(argument)) {}
not_adaptable::not_adaptable(std::string argument) : runtime_error("NOT_ADAPTABLE: " + std::move(argument)) {}
too_long_string::too_long_string(std::string argument) : runtime_error("TOO_LONG_STRING: " + std::move(argument)) {}
unknown_setting::unknown_setting(std::string argument) : runtime_error("UNKNOWN_SETTING:" + std::move(argument)) {}
invalid_dictionary_version::invalid_dictionary_version(std::string argument)
    : runtime_error("INVALID_DIC_VERSION:" + std::move(argument)) {}
invalid_dictionary_char_type::invalid_dictionary_char_type(std::string argument)
    : runtime_error("INVALID_DIC_CHAR_TYPE:" + std::move(argument)) {}

// Out of line, so that each class has its type information in this library alone.
tavo_not_ready::~tavo_not_ready() = default;
file_not_found::~file_not_found() = default;
illegal_format::~illegal_format() = default;
illegal_part_of_speech::~illegal_part_of_speech() = default;
busy_dictionary::~busy_dictionary() = default;
not_adaptable::~not_adaptable() = default;
too_long_string::~too_long_string() = default;
unknown_setting::~unknown_setting() = default;
invalid_dictionary_version::~invalid_dictionary_version() = default;
invalid_dictionary_char_type::~invalid_dictionary_char_type() = default;

char const* getErrorMessage(int code) noexcept {
    static constexpr char const* kNames[] = {
        "ERROR_BAD_ALLOC",      "ERROR_INVALID_ARGUMENT",       "ERROR_NOT_ENOUGH_BUFFER", "ERROR_FILE_NOT_OPEN",
        "ERROR_ILLEGAL_FORMAT", "ERROR_ILLEGAL_PART_OF_SPEECH", "ERROR_BUSY_DICTIONARY",   "ERROR_INVALID_RANGE",
        "ERROR_LOGIC",          "ERROR_NOT_ADAPTABLE",          "ERROR_UNKNOWN_SETTING",   "ERROR_TOO_LONG_STRING",
        "ERROR_NOT_READY",
    };
    if (code >= 0) return "ERROR_NONE";
    if (code > ERROR_BAD_ALLOC || code < ERROR_NOT_READY) return "ERROR_UNKNOWN";
    return kNames[ERROR_BAD_ALLOC - code];
}

int currentExceptionCode(std::string& what) {
    auto const answer = [&what](int code, std::exception const& e) {
        what = e.what();
        return code;
    };
    // The standard classes come first, since the library's own derive from
    // runtime_error; within each group the order is part of the contract.
    try {
        throw;
    } catch (std::bad_alloc const& e) {
        answer(ERROR_BAD_ALLOC, e);
        if (what.starts_with("std::")) what = BadAllocation::kText;  // the standard library's own
        return ERROR_BAD_ALLOC;
    } catch (std::invalid_argument const& e) {
        return answer(ERROR_INVALID_ARGUMENT, e);
    } catch (std::range_error const& e) {
        return answer(ERROR_INVALID_RANGE, e);
    } catch (std::logic_error const& e) {
        return answer(ERROR_LOGIC, e);
    } catch (tavo_not_ready const& e) {
        return answer(ERROR_NOT_READY, e);
    } catch (file_not_found const& e) {
        return answer(ERROR_FILE_NOT_OPEN, e);
    } catch (illegal_format const& e) {
        return answer(ERROR_ILLEGAL_FORMAT, e);
    } catch (illegal_part_of_speech const& e) {
        return answer(ERROR_ILLEGAL_PART_OF_SPEECH, e);
    } catch (busy_dictionary const& e) {
        return answer(ERROR_BUSY_DICTIONARY, e);
    } catch (not_adaptable const& e) {
        return answer(ERROR_NOT_ADAPTABLE, e);
    } catch (invalid_dictionary_version const& e) {
        return answer(ERROR_INVALID_DICTIONARY_VERSION, e);
    } catch (invalid_dictionary_char_type const& e) {
        return answer(ERROR_INVALID_DICTIONARY_CHAR_TYPE, e);
    } catch (unknown_setting const& e) {
        return answer(ERROR_UNKNOWN_SETTING, e);
    } catch (too_long_string const& e) {
        return answer(ERROR_TOO_LONG_STRING, e);
    } catch (std::exception const& e) {
        return answer(ERROR_OTHER, e);
    } catch (...) {
        what = "ERROR_UNKNOWN";
        return ERROR_OTHER;
    }
}

}  // namespace TAVO
