// Words of one's own, parts of speech.
#ifndef TAVO_PYTHON_WORDS_HPP
#define TAVO_PYTHON_WORDS_HPP

#include "python.hpp"

namespace tavo_python {

/// _tavo.compile(list, connection table, like, must_win, output) -> (words, faults, verdicts)
PyObject* compileWords(PyObject* module, PyObject* arguments);
/// _tavo.pos_names(connection table) -> list
PyObject* posNames(PyObject* module, PyObject* table);
/// _tavo.dump(dictionary, write): the lines of its source.
PyObject* dumpWords(PyObject* module, PyObject* arguments);

}  // namespace tavo_python

#endif
