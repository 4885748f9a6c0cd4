#include "result.hpp"

#include <array>
#include <cstddef>
#include <new>

namespace tavo_python {

namespace {

using TAVO::TokenText;

constexpr TokenText kTexts[] = {TokenText::Pos,        TokenText::ConjugationType, TokenText::ConjugationForm,
                                TokenText::Base,       TokenText::Reading,         TokenText::Pronunciation,
                                TokenText::Normalized, TokenText::Annotation,      TokenText::Additional,
                                TokenText::Converted};
// The order of a restored token's values; kTexts come first.
enum Restored : Py_ssize_t { kFields = std::size(kTexts), kCost, kUnknown, kRestoredValues };

Result::Values& valuesIn(PyObject* self) { return *as<Token>(self)->result->values; }
std::uint32_t indexOf(PyObject* self) { return as<Token>(self)->index; }

PyObject* restoredValue(PyObject* self, Py_ssize_t which) {
    PyObject* const values = PyList_GetItem(valuesIn(self).restored.get(), indexOf(self));
    demand(values != nullptr);
    PyObject* const value = PyTuple_GetItem(values, which);
    demand(value != nullptr);
    return Ref::shared(value).release();
}

PyObject* surface(PyObject* self, void*) {
    return guarded([&] { return valuesIn(self).surfaceOf(indexOf(self)); });
}

/// @p closure: one of kTexts.
PyObject* text(PyObject* self, void* closure) {
    return guarded([&]() -> PyObject* {
        auto const* const which = static_cast<TokenText const*>(closure);
        Result::Values& values = valuesIn(self);
        std::uint32_t const index = indexOf(self), word = values.places[index].word;
        if (values.core == nullptr) return restoredValue(self, which - kTexts);
        bool const differs = values.given.bytes.get() != nullptr && *which == TokenText::Base;
        if (differs && values.core->isSurface(word, *which)) return values.surfaceOf(index);
        return values.core->text(word, *which, values.surface(index));
    });
}

PyObject* posFields(PyObject* self, void*) {
    return guarded([&] {
        Result::Values& values = valuesIn(self);
        if (values.core == nullptr) return restoredValue(self, kFields);
        return values.core->posFields(values.places[indexOf(self)].word);
    });
}

PyObject* cost(PyObject* self, void*) {
    return guarded([&] {
        Result::Values& values = valuesIn(self);
        if (values.core == nullptr) return restoredValue(self, kCost);
        return PyLong_FromLong(values.core->valuesOf(values.places[indexOf(self)].word).cost);
    });
}

PyObject* unknown(PyObject* self, void*) {
    return guarded([&] {
        Result::Values& values = valuesIn(self);
        if (values.core == nullptr) return restoredValue(self, kUnknown);
        return PyBool_FromLong(values.core->valuesOf(values.places[indexOf(self)].word).isUnknown ? 1 : 0);
    });
}

struct Unit {
    enum { Characters, Bytes, Utf16 } unit;
    bool isEnd;
};
constexpr Unit kPositions[] = {{Unit::Characters, false}, {Unit::Characters, true}, {Unit::Bytes, false},
                               {Unit::Bytes, true},       {Unit::Utf16, false},     {Unit::Utf16, true}};

std::uint32_t positionOf(Result::Values& values, std::uint32_t index, Unit const& unit) {
    Place const& place = values.places[index];
    if (unit.unit == Unit::Bytes) return unit.isEnd ? place.end : place.begin;
    return values.positions(unit.unit == Unit::Utf16)[2 * index + (unit.isEnd ? 1 : 0)];
}

/// @p closure: one of kPositions.
PyObject* position(PyObject* self, void* closure) {
    return guarded([&] {
        return PyLong_FromUnsignedLong(positionOf(valuesIn(self), indexOf(self), *static_cast<Unit const*>(closure)));
    });
}

void deallocate(PyObject* self) {
    Py_DECREF(as<PyObject>(as<Token>(self)->result));
    PyTypeObject* const type = Py_TYPE(self);
    PyObject_Free(self);
    Py_DECREF(type);
}

/// What makes tokens equal: where they stand, and all values.
Ref keyOf(PyObject* self) {
    Ref const values = valuesOf(as<Token>(self)->result, indexOf(self));
    Ref const shown(surface(self, nullptr));
    Unit const begin = kPositions[0];
    return Ref(Py_BuildValue("OIO", shown.get(), positionOf(valuesIn(self), indexOf(self), begin), values.get()));
}

PyObject* compare(PyObject* self, PyObject* other, int how) {
    if (Py_TYPE(other) != types.token || (how != Py_EQ && how != Py_NE)) Py_RETURN_NOTIMPLEMENTED;
    return guarded([&] {
        Ref const own = keyOf(self), others = keyOf(other);
        return PyObject_RichCompare(own.get(), others.get(), how);
    });
}

Py_hash_t hash(PyObject* self) {
    Py_hash_t found = -1;
    guarded([&]() -> PyObject* {
        Ref const key = keyOf(self);
        found = PyObject_Hash(key.get());
        return nullptr;
    });
    return found;
}

PyObject* represent(PyObject* self) {
    return guarded([&] {
        Ref const shown(surface(self, nullptr));
        Ref const pos(text(self, const_cast<TokenText*>(&kTexts[0])));
        Ref const begin(position(self, const_cast<Unit*>(&kPositions[0])));
        Ref const end(position(self, const_cast<Unit*>(&kPositions[1])));
        return PyUnicode_FromFormat("<tavo.Token %R %S %S:%S>", shown.get(), pos.get(), begin.get(), end.get());
    });
}

PyObject* asText(PyObject* self) { return surface(self, nullptr); }

PyObject* reduce(PyObject* self, PyObject*) {
    return guarded([&] {
        Ref const module(PyImport_ImportModule("operator"));
        Ref const getItem(PyObject_GetAttrString(module.get(), "getitem"));
        return Py_BuildValue("O(OI)", getItem.get(), as<PyObject>(as<Token>(self)->result), indexOf(self));
    });
}

void* textClosure(std::size_t which) { return const_cast<TokenText*>(&kTexts[which]); }
void* positionClosure(std::size_t which) { return const_cast<Unit*>(&kPositions[which]); }

PyGetSetDef tokenValues[] = {
    {"surface", surface, nullptr, "The word as the text has it.", nullptr},
    {"pos", text, nullptr, "The part of speech: levels with \":\" between them, conjugation last.", textClosure(0)},
    {"pos_fields", posFields, nullptr, "The levels of the part of speech without the conjugation.", nullptr},
    {"conjugation_type", text, nullptr, "Empty for words without conjugation.", textClosure(1)},
    {"conjugation_form", text, nullptr, "Empty for words without conjugation.", textClosure(2)},
    {"base", text, nullptr, "The dictionary form; the surface of a word that has none of its own.", textClosure(3)},
    {"reading", text, nullptr, "In katakana; empty when it is not known.", textClosure(4)},
    {"pronunciation", text, nullptr, "In katakana; empty when it is not known.", textClosure(5)},
    {"normalized", text, nullptr,
     "The base form as search compares it: usual width of letters, digits and kana, letters small.", textClosure(6)},
    {"annotation", text, nullptr, "The text of a note in tagged text; such a token covers no text. Else empty.",
     textClosure(7)},
    {"additional", text, nullptr, "The dictionary's additional information; else empty.", textClosure(8)},
    {"converted", text, nullptr, "What was analysed in the place of the surface, where conversion changed it.",
     textClosure(9)},
    {"cost", cost, nullptr, "Word cost, 0 to 255; of a word joined from several their sum.", nullptr},
    {"unknown", unknown, nullptr, "True for what is in no dictionary.", nullptr},
    {"start", position, nullptr, "Where the word begins in the result's text, in code points.", positionClosure(0)},
    {"end", position, nullptr, "Where it ends, in code points.", positionClosure(1)},
    {"byte_start", position, nullptr, "The same in bytes of UTF-8.", positionClosure(2)},
    {"byte_end", position, nullptr, "The same in bytes of UTF-8.", positionClosure(3)},
    {"utf16_start", position, nullptr, "The same in units of UTF-16.", positionClosure(4)},
    {"utf16_end", position, nullptr, "The same in units of UTF-16.", positionClosure(5)},
    {nullptr, nullptr, nullptr, nullptr, nullptr}};

PyMethodDef tokenMethods[] = {
    {"__reduce__", reduce, METH_NOARGS, "What pickle needs: a token is pickled with its result."},
    {nullptr, nullptr, 0, nullptr}};

constexpr char kTokenDoc[] = "A word of a result. Its values are found when they are asked for.";

PyType_Slot tokenSlots[] = {{Py_tp_doc, const_cast<char*>(kTokenDoc)},
                            {Py_tp_new, slot(refuseNew)},
                            {Py_tp_dealloc, slot(deallocate)},
                            {Py_tp_repr, slot(represent)},
                            {Py_tp_str, slot(asText)},
                            {Py_tp_richcompare, slot(compare)},
                            {Py_tp_hash, slot(hash)},
                            {Py_tp_getset, tokenValues},
                            {Py_tp_methods, tokenMethods},
                            {0, nullptr}};
PyType_Spec tokenSpec{"tavo.Token", sizeof(Token), 0, Py_TPFLAGS_DEFAULT, tokenSlots};

}  // namespace

void addTokenType(PyObject* module) { types.token = addType(module, tokenSpec); }

PyObject* newToken(Result* result, std::uint32_t index) {
    auto* const memory = static_cast<PyObject*>(PyObject_Malloc(sizeof(Token)));
    if (memory == nullptr) throw std::bad_alloc();
    auto* const made = as<Token>(PyObject_Init(memory, types.token));
    Py_INCREF(as<PyObject>(result));
    made->result = result;
    made->index = index;
    return as<PyObject>(made);
}

Ref valuesOf(Result* result, std::uint32_t index) {
    Ref const token(newToken(result, index));
    Ref values(PyTuple_New(kRestoredValues));
    Py_ssize_t next = 0;
    auto const add = [&](PyObject* value) { PyTuple_SetItem(values.get(), next++, Ref(value).release()); };
    for (TokenText const& which : kTexts) add(text(token.get(), const_cast<TokenText*>(&which)));
    add(posFields(token.get(), nullptr));
    add(cost(token.get(), nullptr));
    add(unknown(token.get(), nullptr));
    return values;
}

}  // namespace tavo_python
