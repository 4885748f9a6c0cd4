#include "given_text.hpp"

#include <cmath>
#include <cstring>

namespace tavo_python {

namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD";
constexpr unsigned char kLead = 0xED, kFirstSurrogate = 0xA0;

Ref typeName(PyObject* object) { return Ref(PyObject_GetAttrString(as<PyObject>(Py_TYPE(object)), "__name__")); }

bool isMissing(PyObject* object) {
    if (object == Py_None) return true;
    if (PyFloat_Check(object)) return std::isnan(PyFloat_AsDouble(object));
    Ref const name = typeName(object);
    return PyUnicode_CompareWithASCIIString(name.get(), "NAType") == 0;  // of pandas
}

[[noreturn]] void refuse(PyObject* object, Py_ssize_t index) {
    Ref const name = typeName(object);
    char const* const advice = PyBytes_Check(object) ? "; decode it first: text.decode(\"utf-8\")" : "";
    if (index < 0) raise(PyExc_TypeError, "a text is a str, not %U%s", name.get(), advice);
    raise(PyExc_TypeError, "texts[%zd] is no str but %U%s", index, name.get(), advice);
}

/// The UTF-8 of a str with lone surrogates.
Ref replaced(PyObject* text) {
    Ref const passed(PyUnicode_AsEncodedString(text, "utf-8", "surrogatepass"));
    char* bytes = nullptr;
    Py_ssize_t size = 0;
    demand(PyBytes_AsStringAndSize(passed.get(), &bytes, &size) == 0);
    Ref made(PyBytes_FromStringAndSize(bytes, size));
    char* const to = PyBytes_AsString(made.get());
    for (Py_ssize_t i = 0; i + 2 < size; ++i)
        if (static_cast<unsigned char>(to[i]) == kLead && static_cast<unsigned char>(to[i + 1]) >= kFirstSurrogate)
            std::memcpy(to + i, kReplacement, sizeof kReplacement - 1);
    return made;
}

}  // namespace

GivenText GivenText::from(PyObject* object, Py_ssize_t index) {
    GivenText given;
    if (PyUnicode_Check(object)) {
        given.text = Ref::shared(object);
    } else {
        if (!isMissing(object)) refuse(object, index);
        given.text = Ref(PyUnicode_FromString(""));
    }
    Py_ssize_t size = 0;
    char const* utf8 = PyUnicode_AsUTF8AndSize(given.text.get(), &size);
    if (utf8 == nullptr) {
        demand(PyErr_ExceptionMatches(PyExc_UnicodeEncodeError) != 0);
        PyErr_Clear();
        given.bytes = replaced(given.text.get());
        utf8 = PyBytes_AsString(given.bytes.get());
        size = PyBytes_Size(given.bytes.get());
    }
    given.utf8 = {utf8, static_cast<std::size_t>(size)};
    return given;
}

}  // namespace tavo_python
