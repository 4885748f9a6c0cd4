#include "words.hpp"

#include <tavo/lexicon_maker.hpp>

#include <string>

namespace tavo_python {

PyObject* compileWords(PyObject*, PyObject* arguments) {
    return guarded([&] {
        char const *list = nullptr, *like = nullptr;
        PyObject *table = nullptr, *wins = nullptr, *output = nullptr;
        demand(PyArg_ParseTuple(arguments, "sOsO!O", &list, &table, &like, &PyList_Type, &wins, &output) != 0);
        TAVO::WordListOptions options;
        Ref const tableBytes = pathBytes(table), outputBytes = pathBytes(output);
        options.connTable = PyBytes_AsString(tableBytes.get());
        options.output = PyBytes_AsString(outputBytes.get());
        options.like = like;
        for (Py_ssize_t i = 0; i != PyList_Size(wins); ++i) {
            Ref const bytes(PyUnicode_AsUTF8String(PyList_GetItem(wins, i)));
            options.mustWin.emplace_back(PyBytes_AsString(bytes.get()));
        }
        TAVO::WordList made;
        {
            std::string const text = list;
            WithoutLock const free;
            made = TAVO::compileWords(text, options);
        }
        Ref const faults(PyList_New(0)), verdicts(PyList_New(0));
        for (TAVO::LexiconFault const& fault : made.faults)
            append(faults.get(), Ref(Py_BuildValue("(nsO)", static_cast<Py_ssize_t>(fault.line), fault.cause.c_str(),
                                                   fault.warning ? Py_True : Py_False)));
        for (TAVO::WordVerdict const& verdict : made.verdicts)
            append(verdicts.get(), Ref(Py_BuildValue("(Os)", verdict.wins ? Py_True : Py_False, verdict.text.c_str())));
        return Py_BuildValue("OnOO", made.made ? Py_True : Py_False, static_cast<Py_ssize_t>(made.words), faults.get(),
                             verdicts.get());
    });
}

PyObject* posNames(PyObject*, PyObject* table) {
    return guarded([&] {
        Ref const bytes = pathBytes(table);
        Ref names(PyList_New(0));
        for (TAVO::PartOfSpeech const& pos : TAVO::partsOfSpeech(PyBytes_AsString(bytes.get())))
            append(names.get(), Ref(Py_BuildValue("(ss)", pos.name.c_str(), pos.displayName.c_str())));
        return names.release();
    });
}

PyObject* dumpWords(PyObject*, PyObject* arguments) {
    return guarded([&]() -> PyObject* {
        PyObject *dictionary = nullptr, *write = nullptr;
        demand(PyArg_ParseTuple(arguments, "OO", &dictionary, &write) != 0);
        Ref const bytes = pathBytes(dictionary);
        TAVO::dumpDictionary(PyBytes_AsString(bytes.get()), TAVO::TextEncoding::Utf8, [&](std::string_view lines) {
            Ref const text = stringOf(lines);
            Ref const ignored(PyObject_CallFunction(write, "O", text.get()));
        });
        Py_RETURN_NONE;
    });
}

}  // namespace tavo_python
