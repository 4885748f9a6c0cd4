#include "tagger.hpp"

#include "result.hpp"

#include <string>
#include <utility>

namespace tavo_python {

namespace {

Tagger& in(PyObject* self) { return *as<Tagger>(self); }

PyObject* close(PyObject* self, PyObject*) {
    if (Core* const core = std::exchange(in(self).core, nullptr)) core->release();
    in(self).lexicon->reset();
    Py_RETURN_NONE;
}

/// The paths of a list.
std::vector<std::string> pathsOf(PyObject* list) {
    std::vector<std::string> strings;
    for (Py_ssize_t i = 0; i != PyList_Size(list); ++i) {
        Ref const bytes = pathBytes(PyList_GetItem(list, i));
        strings.emplace_back(PyBytes_AsString(bytes.get()));
    }
    return strings;
}

TAVO::LexiconOptions optionsOf(PyObject* dictionaries, char const* comments, char const* reduce, PyObject* modes) {
    TAVO::LexiconOptions options;
    options.dictionaries = pathsOf(dictionaries);
    options.commentRules = comments;
    options.reduceRules = reduce;
    for (Py_ssize_t i = 0; i != PyList_Size(modes); ++i) {
        char const* name = nullptr;
        int value = 0;
        demand(PyArg_ParseTuple(PyList_GetItem(modes, i), "si", &name, &value) != 0);
        options.modes.emplace_back(name, value);
    }
    return options;
}

int initialise(PyObject* self, PyObject* arguments, PyObject*) {
    Ref const done = Ref::shared(guarded([&]() -> PyObject* {
        PyObject *path = nullptr, *dictionaries = nullptr, *modes = nullptr;
        char const *comments = "", *reduce = "";
        int blanks = 0;
        demand(PyArg_ParseTuple(arguments, "O&O!ssO!p", PyUnicode_FSConverter, &path, &PyList_Type, &dictionaries,
                                &comments, &reduce, &PyList_Type, &modes, &blanks) != 0);
        Ref const owner(path);
        std::string const where = PyBytes_AsString(path);
        TAVO::LexiconOptions const options = optionsOf(dictionaries, comments, reduce, modes);
        Tagger& tagger = in(self);
        std::optional<TAVO::Lexicon> opened;
        Core* core = nullptr;
        {
            WithoutLock const free;
            opened = where.empty() ? TAVO::Lexicon::open(options) : TAVO::Lexicon::open(where, options);
            core = new Core(*opened, {.keepBlanks = blanks != 0});
        }
        *tagger.lexicon = std::move(opened);
        tagger.options.keepBlanks = blanks != 0;
        if (Core* const before = std::exchange(tagger.core, core)) before->release();
        return Py_None;
    }));
    return done.get() == nullptr ? -1 : 0;
}

PyObject* create(PyTypeObject* type, PyObject*, PyObject*) {
    return guarded([&] {
        auto const allocate = reinterpret_cast<allocfunc>(PyType_GetSlot(type, Py_tp_alloc));
        Ref made(allocate(type, 0));
        Tagger& tagger = in(made.get());
        tagger.core = nullptr;
        tagger.lexicon = nullptr;
        tagger.lexicon = new std::optional<TAVO::Lexicon>();
        return made.release();
    });
}

void deallocate(PyObject* self) {
    Tagger& tagger = in(self);
    if (tagger.core != nullptr) tagger.core->release();
    delete tagger.lexicon;
    PyTypeObject* const type = Py_TYPE(self);
    reinterpret_cast<freefunc>(PyType_GetSlot(type, Py_tp_free))(self);
    Py_DECREF(type);
}

/// Takes up the files of the lexicon as they are now.
PyObject* reload(PyObject* self, PyObject*) {
    return guarded([&]() -> PyObject* {
        InUse const core(self);
        Tagger& tagger = in(self);
        std::optional<TAVO::Lexicon> fresh;
        Core* made = nullptr;
        {
            TAVO::Lexicon const now = **tagger.lexicon;
            WithoutLock const free;
            fresh = now.reloaded();
            made = new Core(*fresh, tagger.options);
        }
        *tagger.lexicon = std::move(fresh);
        if (Core* const before = std::exchange(tagger.core, made)) before->release();
        Py_RETURN_NONE;
    });
}

PyObject* path(PyObject* self, void*) {
    return guarded([&] {
        InUse const core(self);
        return PyUnicode_DecodeFSDefault((*in(self).lexicon)->path().c_str());
    });
}

PyObject* fingerprint(PyObject* self, void*) {
    return guarded([&] {
        InUse const core(self);
        TAVO::Lexicon const lexicon = **in(self).lexicon;
        std::string digits;
        {
            WithoutLock const free;
            digits = lexicon.fingerprint();
        }
        return stringOf(digits).release();
    });
}

PyMethodDef methods[] = {
    {"split", splitText, METH_O,
     "split($self, text, /)\n--\n\nThe surfaces of a text's words, a list.\n\n>>> tagger.split(\"猫が好きだ\")\n['猫', "
     "'が', '好き', 'だ']"},
    {"_batch", analyseTexts, METH_VARARGS, nullptr},
    {"_split_batch", splitTexts, METH_VARARGS, nullptr},
    {"_nbest", bestOfText, METH_VARARGS, nullptr},
    {"tagged", analyseTagged, METH_O,
     "tagged($self, text, /)\n--\n\nThe tokens of tagged text (docs/tagged-input.md); the result's text is without the "
     "tags.\n\n>>> [token.surface for token in tagger.tagged(\"<word>好きだ</word>から\")]\n['好きだ', 'から']"},
    {"_columns", columnsOfTexts, METH_VARARGS, nullptr},
    {"_lookup", lookUpWords, METH_VARARGS, nullptr},
    {"_reload", reload, METH_NOARGS, nullptr},
    {"close", close, METH_NOARGS, "close($self, /)\n--\n\nGives the tokenizer's memory back; results live on."},
    {nullptr, nullptr, 0, nullptr}};
PyGetSetDef values[] = {
    {"path", path, nullptr, "Folder or init file of the lexicon in use.", nullptr},
    {"fingerprint", fingerprint, nullptr,
     "Equal for taggers that analyse alike: of the bytes of dictionaries, table and rules, the options\n"
     "and the version, 16 hexadecimal digits. All files are read each time.",
     nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr}};
PyType_Slot slots[] = {{Py_tp_new, slot(create)},
                       {Py_tp_init, slot(initialise)},
                       {Py_tp_dealloc, slot(deallocate)},
                       {Py_tp_call, slot(callTagger)},
                       {Py_tp_methods, methods},
                       {Py_tp_getset, values},
                       {0, nullptr}};
PyType_Spec taggerDefinition{"tavo._tavo.Tagger", sizeof(Tagger), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, slots};

}  // namespace

InUse::InUse(PyObject* self) {
    Tagger& tagger = in(self);
    if (tagger.core == nullptr) raise(PyExc_ValueError, "the tagger is closed");
    core_ = tagger.core;
    core_->retain();
    bool isLarge = false;
    {
        Core::Guard const guard(*core_);
        isLarge = core_->isLarge();
    }
    if (!isLarge || tagger.core != core_) return;
    Core* const made = new Core(**tagger.lexicon, tagger.options);
    tagger.core->release();
    tagger.core = made;
    made->retain();
    core_->release();
    core_ = made;
}

void addTaggerType(PyObject* module) { Py_DECREF(as<PyObject>(addType(module, taggerDefinition))); }

}  // namespace tavo_python
