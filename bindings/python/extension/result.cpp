#include "result.hpp"

#include "base/utf8.hpp"

#include <cstring>
#include <string>

namespace tavo_python {

Types types;

std::vector<std::uint32_t> const& Result::Values::positions(bool inUtf16) {
    std::vector<std::uint32_t>& found = inUtf16 ? utf16 : characters;
    if (!found.empty() || places.empty()) return found;
    std::vector<std::uint32_t> made;
    made.reserve(2 * places.size());
    std::size_t byte = 0;
    std::uint32_t count = 0;
    auto const countTo = [&](std::size_t end) {
        for (; byte < end; ++byte) {
            auto const c = static_cast<unsigned char>(given.utf8[byte]);
            if ((c & 0xC0U) != 0x80) count += inUtf16 && c >= 0xF0 ? 2 : 1;
        }
        return count;
    };
    for (Place const& place : places) {
        made.push_back(countTo(place.begin));
        made.push_back(countTo(place.end));
    }
    return found = std::move(made);
}

PyObject* Result::Values::surfaceOf(std::size_t index) {
    if (given.bytes.get() == nullptr && core != nullptr) return core->surface(places[index].word, surface(index));
    std::vector<std::uint32_t> const& at = positions(false);
    return PyUnicode_Substring(given.text.get(), at[2 * index], at[2 * index + 1]);
}

PyObject* newResult(std::unique_ptr<Result::Values> values) {
    auto* const memory = static_cast<PyObject*>(PyObject_Malloc(sizeof(Result)));
    if (memory == nullptr) {
        if (values->core != nullptr) values->core->release();
        throw std::bad_alloc();
    }
    auto* const made = as<Result>(PyObject_Init(memory, types.result));
    made->values = values.release();
    return as<PyObject>(made);
}

namespace {

Result::Values& valuesIn(PyObject* self) { return *as<Result>(self)->values; }

void deallocate(PyObject* self) {
    Result* const result = as<Result>(self);
    if (result->values->core != nullptr) result->values->core->release();
    delete result->values;
    PyTypeObject* const type = Py_TYPE(self);
    PyObject_Free(self);
    Py_DECREF(type);
}

Py_ssize_t length(PyObject* self) { return static_cast<Py_ssize_t>(valuesIn(self).places.size()); }

PyObject* item(PyObject* self, Py_ssize_t index) {
    return guarded([&] {
        if (index < 0 || index >= length(self)) raise(PyExc_IndexError, "a result of %zd tokens", length(self));
        return newToken(as<Result>(self), static_cast<std::uint32_t>(index));
    });
}

PyObject* listOf(PyObject* self, PyObject* (*made)(Result*, std::uint32_t)) {
    Py_ssize_t const count = length(self);
    Ref list(PyList_New(count));
    for (Py_ssize_t i = 0; i != count; ++i)
        PyList_SetItem(list.get(), i, Ref(made(as<Result>(self), static_cast<std::uint32_t>(i))).release());
    return list.release();
}

PyObject* subscript(PyObject* self, PyObject* key) {
    return guarded([&]() -> PyObject* {
        if (PySlice_Check(key)) {
            Ref const all(listOf(self, newToken));
            return PyObject_GetItem(all.get(), key);
        }
        Py_ssize_t index = PyNumber_AsSsize_t(key, PyExc_IndexError);
        demand(index != -1 || PyErr_Occurred() == nullptr);
        return item(self, index < 0 ? index + length(self) : index);
    });
}

PyObject* surfaces(PyObject* self, void*) {
    return guarded(
        [&] { return listOf(self, [](Result* result, std::uint32_t i) { return result->values->surfaceOf(i); }); });
}

PyObject* text(PyObject* self, void*) { return Ref::shared(valuesIn(self).given.text.get()).release(); }
PyObject* connectionCost(PyObject* self, void*) { return PyLong_FromUnsignedLong(valuesIn(self).connectionCost); }
PyObject* wordCost(PyObject* self, void*) { return PyLong_FromUnsignedLong(valuesIn(self).wordCost); }

PyObject* asText(PyObject* self) {
    return guarded([&] {
        Ref const list(surfaces(self, nullptr)), blank(PyUnicode_FromString(" "));
        return PyUnicode_Join(blank.get(), list.get());
    });
}

PyObject* represent(PyObject* self) {
    return guarded([&] {
        Ref const list(surfaces(self, nullptr));
        return PyUnicode_FromFormat("<tavo.Result %R>", list.get());
    });
}

PyObject* compare(PyObject* self, PyObject* other, int how) {
    if (Py_TYPE(other) != types.result || (how != Py_EQ && how != Py_NE)) Py_RETURN_NOTIMPLEMENTED;
    return guarded([&] {
        int equal = PyUnicode_Compare(valuesIn(self).given.text.get(), valuesIn(other).given.text.get()) == 0;
        if (equal != 0) {
            Ref const own(listOf(self, newToken)), others(listOf(other, newToken));
            equal = PyObject_RichCompareBool(own.get(), others.get(), Py_EQ);
            demand(equal >= 0);
        }
        return PyBool_FromLong((equal != 0) == (how == Py_EQ) ? 1 : 0);
    });
}

PyObject* reduce(PyObject* self, PyObject*) {
    return guarded([&] {
        Result::Values const& values = valuesIn(self);
        Ref const module(PyImport_ImportModule("tavo._tavo"));
        Ref const restore(PyObject_GetAttrString(module.get(), "_restore"));
        Ref const words(listOf(self, [](Result* result, std::uint32_t i) { return valuesOf(result, i).release(); }));
        Ref const places(PyList_New(0));
        for (Place const& place : values.places) {
            append(places.get(), Ref(Py_BuildValue("(II)", place.begin, place.end)));
        }
        return Py_BuildValue("O(OOOII)", restore.get(), values.given.text.get(), places.get(), words.get(),
                             values.connectionCost, values.wordCost);
    });
}

PyObject* indexOf(PyObject* self, PyObject* arguments) {
    return guarded([&] {
        Ref const list(listOf(self, newToken)), method(PyObject_GetAttrString(list.get(), "index"));
        return PyObject_CallObject(method.get(), arguments);
    });
}

PyObject* countOf(PyObject* self, PyObject* value) {
    return guarded([&] {
        Ref const list(listOf(self, newToken));
        return PyObject_CallMethod(list.get(), "count", "O", value);
    });
}

struct Iterator {
    PyObject head;
    Result* result;
    std::uint32_t next, end;
};

PyObject* iterate(PyObject* self) {
    return guarded([&] {
        auto* const memory = static_cast<PyObject*>(PyObject_Malloc(sizeof(Iterator)));
        if (memory == nullptr) throw std::bad_alloc();
        auto* const made = as<Iterator>(PyObject_Init(memory, types.iterator));
        Py_INCREF(self);
        made->result = as<Result>(self);
        made->next = 0;
        made->end = static_cast<std::uint32_t>(length(self));
        return as<PyObject>(made);
    });
}

PyObject* iterateNext(PyObject* self) {
    auto* const iterator = as<Iterator>(self);
    if (iterator->next == iterator->end) return nullptr;
    return guarded([&] { return newToken(iterator->result, iterator->next++); });
}

void deallocateIterator(PyObject* self) {
    Py_DECREF(as<PyObject>(as<Iterator>(self)->result));
    PyTypeObject* const type = Py_TYPE(self);
    PyObject_Free(self);
    Py_DECREF(type);
}

PyObject* self(PyObject* object) { return Ref::shared(object).release(); }

PyMethodDef resultMethods[] = {
    {"index", indexOf, METH_VARARGS,
     "index($self, value, start=0, stop=9223372036854775807, /)\n--\n\nThe first place of an equal token."},
    {"count", countOf, METH_O, "count($self, value, /)\n--\n\nThe number of equal tokens."},
    {"__reduce__", reduce, METH_NOARGS, "What pickle needs: a result is pickled with all of its values."},
    {nullptr, nullptr, 0, nullptr}};

PyGetSetDef resultValues[] = {
    {"text", text, nullptr, "The text that positions count in: the one given; of tagged text that without its tags.",
     nullptr},
    {"surfaces", surfaces, nullptr, "The surface of each token, a list.", nullptr},
    {"connection_cost", connectionCost, nullptr, "Of nbest(): the sum of the connection costs; else 0.", nullptr},
    {"word_cost", wordCost, nullptr, "Of nbest(): the sum of the word costs; else 0.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr}};

constexpr char kResultDoc[] =
    "The tokens of one text, a sequence. It lives on its own: the tagger may be gone, and it can be pickled.";

PyType_Slot resultSlots[] = {{Py_tp_doc, const_cast<char*>(kResultDoc)},
                             {Py_tp_new, slot(refuseNew)},
                             {Py_tp_dealloc, slot(deallocate)},
                             {Py_tp_iter, slot(iterate)},
                             {Py_tp_str, slot(asText)},
                             {Py_tp_repr, slot(represent)},
                             {Py_tp_richcompare, slot(compare)},
                             {Py_tp_hash, slot(PyObject_HashNotImplemented)},
                             {Py_tp_methods, resultMethods},
                             {Py_tp_getset, resultValues},
                             {Py_sq_length, slot(length)},
                             {Py_mp_length, slot(length)},
                             {Py_sq_item, slot(item)},
                             {Py_mp_subscript, slot(subscript)},
                             {0, nullptr}};
PyType_Slot iteratorSlots[] = {{Py_tp_new, slot(refuseNew)},
                               {Py_tp_dealloc, slot(deallocateIterator)},
                               {Py_tp_iter, slot(self)},
                               {Py_tp_iternext, slot(iterateNext)},
                               {0, nullptr}};

PyType_Spec resultSpec{"tavo.Result", sizeof(Result), 0, Py_TPFLAGS_DEFAULT, resultSlots};
PyType_Spec iteratorSpec{"tavo._ResultIterator", sizeof(Iterator), 0, Py_TPFLAGS_DEFAULT, iteratorSlots};

}  // namespace

PyObject* refuseNew(PyTypeObject*, PyObject*, PyObject*) {
    PyErr_SetString(PyExc_TypeError, "a tagger makes results, and these their tokens");
    return nullptr;
}

PyTypeObject* addType(PyObject* module, PyType_Spec& definition) {
    Ref type(PyType_FromSpec(&definition));
    char const* const name = std::strrchr(definition.name, '.') + 1;
    demand(PyModule_AddObject(module, name, Ref::shared(type.get()).release()) == 0);
    return as<PyTypeObject>(type.release());
}

void addResultTypes(PyObject* module) {
    types.result = addType(module, resultSpec);
    types.iterator = addType(module, iteratorSpec);
    addTokenType(module);
}

PyObject* restoreResult(PyObject*, PyObject* arguments) {
    return guarded([&] {
        PyObject *text = nullptr, *places = nullptr, *words = nullptr;
        auto values = std::make_unique<Result::Values>();
        demand(PyArg_ParseTuple(arguments, "UO!O!II", &text, &PyList_Type, &places, &PyList_Type, &words,
                                &values->connectionCost, &values->wordCost) != 0);
        values->given = GivenText::from(text);
        values->restored = Ref::shared(words);
        Py_ssize_t const count = PyList_Size(places);
        if (PyList_Size(words) != count) raise(PyExc_ValueError, "a result's places and values differ in number");
        std::uint32_t before = 0;
        for (Py_ssize_t i = 0; i != count; ++i) {
            Place place{};
            demand(PyArg_ParseTuple(PyList_GetItem(places, i), "II", &place.begin, &place.end) != 0);
            if (place.begin < before || place.end < place.begin || place.end > values->given.utf8.size())
                raise(PyExc_ValueError, "a result's places are not in its text");
            before = place.end;
            values->places.push_back(place);
        }
        return newResult(std::move(values));
    });
}

}  // namespace tavo_python
