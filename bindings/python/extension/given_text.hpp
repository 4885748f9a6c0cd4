// A text as callers give it.
#ifndef TAVO_PYTHON_GIVEN_TEXT_HPP
#define TAVO_PYTHON_GIVEN_TEXT_HPP

#include "python.hpp"

#include <string_view>

namespace tavo_python {

/// A str with its UTF-8. Lone surrogates, which UTF-8 lacks, are analysed as U+FFFD, which has as many bytes; the str
/// still has them.
struct GivenText {
    Ref text;
    Ref bytes;  ///< of a str with lone surrogates; else the str has them
    std::string_view utf8;

    /// @p object: a str, or None and NaN, which stand for an empty text. Others raise TypeError; @p index, when not
    /// negative, is the text's place among others.
    static GivenText from(PyObject* object, Py_ssize_t index = -1);
};

}  // namespace tavo_python

#endif
