// SPDX-License-Identifier: Apache-2.0
// Exception classes and error codes of the library.
#ifndef TAVO_ERROR_HPP
#define TAVO_ERROR_HPP

#include <tavo/export.h>

#include <stdexcept>
#include <string>

namespace TAVO {

/// Numeric error codes. Success is 0 (any value of 0 or more counts as no error).
enum ErrorCode : int {
    ERROR_NONE = 0,
    ERROR_BAD_ALLOC = -10000,
    ERROR_INVALID_ARGUMENT = -10001,
    ERROR_NOT_ENOUGH_BUFFER = -10002,
    ERROR_FILE_NOT_OPEN = -10003,
    ERROR_ILLEGAL_FORMAT = -10004,
    ERROR_ILLEGAL_PART_OF_SPEECH = -10005,
    ERROR_BUSY_DICTIONARY = -10006,
    ERROR_INVALID_RANGE = -10007,
    ERROR_LOGIC = -10008,
    ERROR_NOT_ADAPTABLE = -10009,
    ERROR_UNKNOWN_SETTING = -10010,
    ERROR_TOO_LONG_STRING = -10011,
    ERROR_NOT_READY = -10012,
    ERROR_INVALID_DICTIONARY_VERSION = -10013,
    ERROR_INVALID_DICTIONARY_CHAR_TYPE = -10014,
    ERROR_OTHER = -99999,
};

/// The name of a code ("ERROR_NONE" for 0 and above, "ERROR_UNKNOWN" for codes
/// below that have no name). A static string.
TAVO_EXPORT char const* getErrorMessage(int code) noexcept;

/// Maps the exception being handled to its code and text. Call it inside a
/// catch block only; @p what receives the exception's text.
TAVO_EXPORT int currentExceptionCode(std::string& what);

// Each class puts its fixed prefix before the argument; what() is the sum.

/// Text prefix "TAVO_NOT_READY: ".
class TAVO_EXPORT tavo_not_ready : public std::runtime_error {
public:
    explicit tavo_not_ready(std::string argument);
    tavo_not_ready(tavo_not_ready const&) = default;
    tavo_not_ready& operator=(tavo_not_ready const&) = default;
    ~tavo_not_ready() override;
};

/// Text prefix "FILE_NOT_OPEN: ".
class TAVO_EXPORT file_not_found : public std::runtime_error {
public:
    explicit file_not_found(std::string argument);
    file_not_found(file_not_found const&) = default;
    file_not_found& operator=(file_not_found const&) = default;
    ~file_not_found() override;
};

/// Text prefix "ILLEGAL_FORMAT: ".
class TAVO_EXPORT illegal_format : public std::runtime_error {
public:
    explicit illegal_format(std::string argument);
    illegal_format(illegal_format const&) = default;
    illegal_format& operator=(illegal_format const&) = default;
    ~illegal_format() override;
};

/// Text prefix "ILLEGAL_PART_OF_SPEECH: ".
class TAVO_EXPORT illegal_part_of_speech : public std::runtime_error {
public:
    explicit illegal_part_of_speech(std::string argument);
    illegal_part_of_speech(illegal_part_of_speech const&) = default;
    illegal_part_of_speech& operator=(illegal_part_of_speech const&) = default;
    ~illegal_part_of_speech() override;
};

/// Text prefix "BUSY_DICTIONARY: ".
class TAVO_EXPORT busy_dictionary : public std::runtime_error {
public:
    explicit busy_dictionary(std::string argument);
    busy_dictionary(busy_dictionary const&) = default;
    busy_dictionary& operator=(busy_dictionary const&) = default;
    ~busy_dictionary() override;
};

/// Text prefix "NOT_ADAPTABLE: ".
class TAVO_EXPORT not_adaptable : public std::runtime_error {
public:
    explicit not_adaptable(std::string argument);
    not_adaptable(not_adaptable const&) = default;
    not_adaptable& operator=(not_adaptable const&) = default;
    ~not_adaptable() override;
};

/// Text prefix "TOO_LONG_STRING: ".
class TAVO_EXPORT too_long_string : public std::runtime_error {
public:
    explicit too_long_string(std::string argument);
    too_long_string(too_long_string const&) = default;
    too_long_string& operator=(too_long_string const&) = default;
    ~too_long_string() override;
};

/// Text prefix "UNKNOWN_SETTING:" (no blank behind it: callers compare this text).
class TAVO_EXPORT unknown_setting : public std::runtime_error {
public:
    explicit unknown_setting(std::string argument);
    unknown_setting(unknown_setting const&) = default;
    unknown_setting& operator=(unknown_setting const&) = default;
    ~unknown_setting() override;
};

/// Text prefix "INVALID_DIC_VERSION:" (no blank behind it: callers compare this text).
class TAVO_EXPORT invalid_dictionary_version : public std::runtime_error {
public:
    explicit invalid_dictionary_version(std::string argument);
    invalid_dictionary_version(invalid_dictionary_version const&) = default;
    invalid_dictionary_version& operator=(invalid_dictionary_version const&) = default;
    ~invalid_dictionary_version() override;
};

/// Text prefix "INVALID_DIC_CHAR_TYPE:" (no blank behind it: callers compare this text).
class TAVO_EXPORT invalid_dictionary_char_type : public std::runtime_error {
public:
    explicit invalid_dictionary_char_type(std::string argument);
    invalid_dictionary_char_type(invalid_dictionary_char_type const&) = default;
    invalid_dictionary_char_type& operator=(invalid_dictionary_char_type const&) = default;
    ~invalid_dictionary_char_type() override;
};

}  // namespace TAVO

#endif
