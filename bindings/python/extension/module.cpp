// The module tavo._tavo.
#include "python.hpp"
#include "result.hpp"
#include "tagger.hpp"
#include "words.hpp"

#include <tavo/version.h>
#include <tavo/lexicon.hpp>
#include <tavo/tavo.hpp>

namespace {

using namespace tavo_python;

PyObject* places(PyObject*, PyObject*) {
    return guarded([] {
        Ref list(PyList_New(0));
        for (std::string const& place : TAVO::Lexicon::places())
            append(list.get(), Ref(PyUnicode_DecodeFSDefault(place.c_str())));
        return list.release();
    });
}

PyMethodDef functions[] = {
    {"places", places, METH_NOARGS, nullptr},           {"compile", compileWords, METH_VARARGS, nullptr},
    {"pos_names", posNames, METH_O, nullptr},           {"dump", dumpWords, METH_VARARGS, nullptr},
    {"_restore", restoreResult, METH_VARARGS, nullptr}, {nullptr, nullptr, 0, nullptr}};

PyModuleDef definition{PyModuleDef_HEAD_INIT, "tavo._tavo", nullptr, -1, functions, nullptr, nullptr, nullptr, nullptr};

}  // namespace

PyMODINIT_FUNC PyInit__tavo() {
    return guarded([] {
        TAVO::Tavo::readyForThread();
        Ref module(PyModule_Create(&definition));
        demand(PyModule_AddStringConstant(module.get(), "version", TAVO_VERSION) == 0);
        addResultTypes(module.get());
        addTaggerType(module.get());
        return module.release();
    });
}
