#include "python.hpp"

#include <tavo/error.hpp>
#include <tavo/lexicon_maker.hpp>

#include <new>
#include <string>

namespace tavo_python {

namespace {

void setTavoError(int code, std::string const& text) {
    Ref const module(PyImport_ImportModule("tavo._error"));
    Ref const type(PyObject_GetAttrString(module.get(), "TavoError"));
    Ref const error(PyObject_CallFunction(type.get(), "iss", code, TAVO::getErrorMessage(code), text.c_str()));
    PyErr_SetObject(type.get(), error.get());
}

void setErrorOf(int code, std::string const& text) {
    switch (code) {
        case TAVO::ERROR_BAD_ALLOC:
            PyErr_NoMemory();
            break;
        case TAVO::ERROR_INVALID_ARGUMENT:
            PyErr_SetString(PyExc_ValueError, text.c_str());
            break;
        case TAVO::ERROR_FILE_NOT_OPEN:
            PyErr_SetString(PyExc_FileNotFoundError, text.c_str());
            break;
        default:
            setTavoError(code, text);
    }
}

}  // namespace

void setError() noexcept {
    try {
        throw;
    } catch (PythonError const&) {
        return;
    } catch (TAVO::lexicon_error const& error) {
        PyErr_SetString(PyExc_ValueError, error.what());
        return;
    } catch (...) {
    }
    try {
        std::string what;
        int const code = TAVO::currentExceptionCode(what);
        setErrorOf(code, what);
    } catch (...) {
        if (PyErr_Occurred() == nullptr) PyErr_NoMemory();
    }
}

}  // namespace tavo_python
