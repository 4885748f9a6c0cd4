#include "tagger.hpp"

#include "result.hpp"

#include <memory>
#include <span>
#include <string>
#include <utility>

namespace tavo_python {

namespace {

Tagger& in(PyObject* self) { return *as<Tagger>(self); }

std::vector<Place> placesOf(TAVO::TokenTable const& table, std::size_t text) {
    std::uint32_t const first = table.firstOfText()[text], end = table.firstOfText()[text + 1];
    std::vector<Place> places(end - first);
    for (std::uint32_t i = first; i != end; ++i)
        places[i - first] = {table.begin()[i], table.end()[i], table.wordNumbers()[i]};
    return places;
}

std::unique_ptr<Result::Values> valuesFor(Core& core, GivenText given) {
    auto values = std::make_unique<Result::Values>();
    values->given = std::move(given);
    values->core = &core;
    return values;
}

/// Makes a result, which takes a use of the core.
PyObject* resultOf(Core& core, std::unique_ptr<Result::Values> values) {
    core.retain();
    return newResult(std::move(values));
}

PyObject* analyse(PyObject* self, PyObject* text) {
    GivenText given = GivenText::from(text);
    InUse const core(self);
    auto values = valuesFor(*core, std::move(given));
    {
        Core::Guard const guard(*core);
        WithoutLock const free;
        core->tokenizer.tokenize(values->given.utf8);
        values->places = placesOf(core->table(), 0);
    }
    return resultOf(*core, std::move(values));
}

PyObject* call(PyObject* self, PyObject* arguments, PyObject* keywords) {
    return guarded([&] {
        char name[] = "text";
        char* names[] = {name, nullptr};
        PyObject* text = nullptr;
        if (keywords == nullptr && PyTuple_Size(arguments) == 1)
            text = PyTuple_GetItem(arguments, 0);
        else
            demand(PyArg_ParseTupleAndKeywords(arguments, keywords, "O", names, &text) != 0);
        return analyse(self, text);
    });
}

/// The surfaces of the words of a text of the core's last result. The caller holds its guard.
void addSurfaces(Core& core, std::size_t text, std::vector<Ref>& surfaces) {
    TAVO::TokenTable& table = core.table();
    for (std::uint32_t i = table.firstOfText()[text]; i != table.firstOfText()[text + 1]; ++i)
        surfaces.emplace_back(core.surface(table.wordNumbers()[i], table.surface(i, text), true));
}

PyObject* listOf(std::span<Ref> objects) {
    Ref list(PyList_New(static_cast<Py_ssize_t>(objects.size())));
    for (std::size_t i = 0; i != objects.size(); ++i)
        PyList_SetItem(list.get(), static_cast<Py_ssize_t>(i), objects[i].release());
    return list.release();
}

/// Surfaces of texts with lone surrogates are cut from the str.
PyObject* surfacesOfResult(PyObject* result) {
    Ref const made(result);
    return PyObject_GetAttrString(made.get(), "surfaces");
}

PyObject* split(PyObject* self, PyObject* text) {
    return guarded([&] {
        GivenText given = GivenText::from(text);
        if (given.bytes.get() != nullptr) return surfacesOfResult(analyse(self, text));
        InUse const core(self);
        std::vector<Ref> surfaces;
        {
            Core::Guard const guard(*core);
            {
                WithoutLock const free;
                core->tokenizer.tokenize(given.utf8);
            }
            surfaces.reserve(core->table().tokenCount());
            addSurfaces(*core, 0, surfaces);
        }
        return listOf(surfaces);
    });
}

PyObject* batch(PyObject* self, PyObject* arguments) {
    return guarded([&] {
        PyObject* texts = nullptr;
        Py_ssize_t first = 0;
        demand(PyArg_ParseTuple(arguments, "O!n", &PyList_Type, &texts, &first) != 0);
        Many many(texts, first);
        InUse const core(self);
        std::vector<std::vector<Place>> places(many.views.size());
        {
            Core::Guard const guard(*core);
            WithoutLock const free;
            core->tokenizer.tokenize(many.views);
            for (std::size_t i = 0; i != places.size(); ++i) places[i] = placesOf(core->table(), i);
        }
        std::vector<Ref> results;
        results.reserve(places.size());
        for (std::size_t i = 0; i != places.size(); ++i) {
            auto values = valuesFor(*core, std::move(many.given[i]));
            values->places = std::move(places[i]);
            results.emplace_back(resultOf(*core, std::move(values)));
        }
        return listOf(results);
    });
}

PyObject* splitBatch(PyObject* self, PyObject* arguments) {
    return guarded([&] {
        PyObject* texts = nullptr;
        Py_ssize_t first = 0;
        demand(PyArg_ParseTuple(arguments, "O!n", &PyList_Type, &texts, &first) != 0);
        Many const many(texts, first);
        InUse const core(self);
        std::vector<Ref> surfaces, lists;
        std::vector<std::size_t> ends;
        {
            Core::Guard const guard(*core);
            {
                WithoutLock const free;
                core->tokenizer.tokenize(many.views);
            }
            surfaces.reserve(core->table().tokenCount());
            for (std::size_t i = 0; i != many.views.size(); ++i) {
                if (many.given[i].bytes.get() == nullptr) addSurfaces(*core, i, surfaces);
                ends.push_back(surfaces.size());
            }
        }
        std::size_t begin = 0;
        for (std::size_t i = 0; i != ends.size(); ++i) {
            bool const isWhole = many.given[i].bytes.get() == nullptr;
            lists.emplace_back(isWhole ? listOf(std::span(surfaces).subspan(begin, ends[i] - begin))
                                       : surfacesOfResult(analyse(self, many.given[i].text.get())));
            begin = ends[i];
        }
        return listOf(lists);
    });
}

/// Runs analyse(tokenizer, text), whose last result has a text for each analysis; these are results of their own.
template <class Analyse>
std::vector<Ref> analysesOf(PyObject* self, PyObject* text, Analyse analyse) {
    GivenText const given = GivenText::from(text);
    InUse const core(self);
    std::vector<std::unique_ptr<Result::Values>> found;
    bool isTagged = false;
    std::string plain;
    {
        Core::Guard const guard(*core);
        WithoutLock const free;
        analyse(core->tokenizer, given.utf8);
        TAVO::TokenTable const& table = core->table();
        for (std::size_t i = 0; i != table.textCount(); ++i) {
            auto values = std::make_unique<Result::Values>();
            values->places = placesOf(table, i);
            if (!table.connectionCosts().empty()) {
                values->connectionCost = table.connectionCosts()[i];
                values->wordCost = table.wordCosts()[i];
            }
            found.push_back(std::move(values));
        }
        isTagged = table.isTagged();
        if (isTagged) plain = table.text(0);
    }
    std::vector<Ref> results;
    for (auto& values : found) {
        // The plain text of tagged text stands nowhere else.
        Ref const shown = isTagged ? stringOf(plain) : Ref::shared(given.text.get());
        values->given = GivenText::from(shown.get());
        values->core = &*core;
        results.emplace_back(resultOf(*core, std::move(values)));
    }
    return results;
}

PyObject* nBest(PyObject* self, PyObject* arguments) {
    return guarded([&] {
        PyObject* text = nullptr;
        int n = 0;
        demand(PyArg_ParseTuple(arguments, "Oi", &text, &n) != 0);
        std::vector<Ref> results = analysesOf(
            self, text, [n](TAVO::Tokenizer& tokenizer, std::string_view utf8) { tokenizer.nBest(utf8, n); });
        return listOf(results);
    });
}

PyObject* tagged(PyObject* self, PyObject* text) {
    return guarded([&] {
        // Its text without tags is made of UTF-8, which has no lone surrogates: the error tells where one is.
        if (PyUnicode_Check(text)) Ref const whole(PyUnicode_AsUTF8String(text));
        std::vector<Ref> results = analysesOf(
            self, text, [](TAVO::Tokenizer& tokenizer, std::string_view utf8) { tokenizer.tokenizeTagged(utf8); });
        return results.front().release();
    });
}

PyObject* close(PyObject* self, PyObject*) {
    if (Core* const core = std::exchange(in(self).core, nullptr)) core->release();
    in(self).lexicon->reset();
    Py_RETURN_NONE;
}

/// The strings of a list.
std::vector<std::string> stringsOf(PyObject* list) {
    std::vector<std::string> strings;
    for (Py_ssize_t i = 0; i != PyList_Size(list); ++i) {
        PyObject* bytes = nullptr;
        demand(PyUnicode_FSConverter(PyList_GetItem(list, i), static_cast<void*>(&bytes)) != 0);
        Ref const owner(bytes);
        strings.emplace_back(PyBytes_AsString(bytes));
    }
    return strings;
}

TAVO::LexiconOptions optionsOf(PyObject* dictionaries, char const* comments, char const* reduce, PyObject* modes) {
    TAVO::LexiconOptions options;
    options.dictionaries = stringsOf(dictionaries);
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

PyMethodDef methods[] = {
    {"split", split, METH_O,
     "split($self, text, /)\n--\n\nThe surfaces of a text's words, a list.\n\n>>> tagger.split(\"猫が好きだ\")\n['猫', "
     "'が', '好き', 'だ']"},
    {"_batch", batch, METH_VARARGS, nullptr},
    {"_split_batch", splitBatch, METH_VARARGS, nullptr},
    {"_nbest", nBest, METH_VARARGS, nullptr},
    {"tagged", tagged, METH_O,
     "tagged($self, text, /)\n--\n\nThe tokens of tagged text (docs/tagged-input.md); the result's text is without the "
     "tags.\n\n>>> [token.surface for token in tagger.tagged(\"<word>好きだ</word>から\")]\n['好きだ', 'から']"},
    {"_columns", columnsOfTexts, METH_VARARGS, nullptr},
    {"_reload", reload, METH_NOARGS, nullptr},
    {"close", close, METH_NOARGS, "close($self, /)\n--\n\nGives the tokenizer's memory back; results live on."},
    {nullptr, nullptr, 0, nullptr}};
PyGetSetDef values[] = {{"path", path, nullptr, "Folder or init file of the lexicon in use.", nullptr},
                        {nullptr, nullptr, nullptr, nullptr, nullptr}};
PyType_Slot slots[] = {{Py_tp_new, slot(create)},
                       {Py_tp_init, slot(initialise)},
                       {Py_tp_dealloc, slot(deallocate)},
                       {Py_tp_call, slot(call)},
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

Many::Many(PyObject* list, Py_ssize_t first) {
    Py_ssize_t const count = PyList_Size(list);
    demand(count >= 0);
    given.reserve(static_cast<std::size_t>(count));
    for (Py_ssize_t i = 0; i != count; ++i) {
        given.push_back(GivenText::from(PyList_GetItem(list, i), first + i));
        views.push_back(given.back().utf8);
    }
}

void addTaggerType(PyObject* module) { Py_DECREF(as<PyObject>(addType(module, taggerDefinition))); }

}  // namespace tavo_python
