// Python's stable interface, with owners and exceptions.
#ifndef TAVO_PYTHON_PYTHON_HPP
#define TAVO_PYTHON_PYTHON_HPP

#define PY_SSIZE_T_CLEAN
#define Py_LIMITED_API 0x03090000
#include <Python.h>

#include <exception>
#include <span>
#include <string_view>
#include <utility>

// Part of the stable interface from Python 3.10 on; 3.9 exports it all the same.
#if Py_LIMITED_API + 0 < 0x030A0000
extern "C" char const* PyUnicode_AsUTF8AndSize(PyObject* unicode, Py_ssize_t* size);
#endif

namespace tavo_python {

/// A Python error is set.
struct PythonError {};

/// Owns one reference.
class Ref {
public:
    Ref() noexcept = default;
    /// Takes a new reference over. A null one, which goes with a Python error, throws PythonError.
    explicit Ref(PyObject* taken) : object_(taken) {
        if (taken == nullptr) throw PythonError();
    }
    static Ref shared(PyObject* object) noexcept {
        Ref ref;
        Py_XINCREF(object);
        ref.object_ = object;
        return ref;
    }
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Ref& operator=(Ref&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Ref() { Py_XDECREF(object_); }

    PyObject* get() const noexcept { return object_; }
    PyObject* release() noexcept { return std::exchange(object_, nullptr); }

private:
    PyObject* object_ = nullptr;
};

/// Gives the interpreter's lock up while it lives.
class WithoutLock {
public:
    WithoutLock() noexcept : state_(PyEval_SaveThread()) {}
    WithoutLock(WithoutLock const&) = delete;
    WithoutLock& operator=(WithoutLock const&) = delete;
    ~WithoutLock() { PyEval_RestoreThread(state_); }

private:
    PyThreadState* state_;
};

/// Sets the Python error for the exception being handled.
void setError() noexcept;

/// Runs body(), which returns an object or a Ref; null when it throws, with the Python error set.
template <class Body>
PyObject* guarded(Body body) noexcept {
    try {
        return body();
    } catch (...) {
        setError();
        return nullptr;
    }
}

inline void demand(bool holds) {
    if (!holds) throw PythonError();
}

/// Sets a Python error of @p type and throws PythonError.
template <class... Arguments>
[[noreturn]] void raise(PyObject* type, char const* format, Arguments... arguments) {
    PyErr_Format(type, format, arguments...);
    throw PythonError();
}

inline Ref stringOf(std::string_view utf8) {
    return Ref(PyUnicode_DecodeUTF8(utf8.data(), static_cast<Py_ssize_t>(utf8.size()), "replace"));
}

/// A path as the system has it, a bytes object.
inline Ref pathBytes(PyObject* path) {
    PyObject* bytes = nullptr;
    demand(PyUnicode_FSConverter(path, static_cast<void*>(&bytes)) != 0);
    return Ref(bytes);
}

inline void append(PyObject* list, Ref const& object) { demand(PyList_Append(list, object.get()) == 0); }

/// A list that takes the objects over.
inline PyObject* listOf(std::span<Ref> objects) {
    Ref list(PyList_New(static_cast<Py_ssize_t>(objects.size())));
    for (std::size_t i = 0; i != objects.size(); ++i)
        PyList_SetItem(list.get(), static_cast<Py_ssize_t>(i), objects[i].release());
    return list.release();
}

/// The C++ object behind a Python one, and back.
template <class Object, class From>
Object* as(From* object) noexcept {
    return reinterpret_cast<Object*>(object);
}

/// A slot's or method's function as the tables of types want it.
template <class Function>
void* slot(Function* function) noexcept {
    return reinterpret_cast<void*>(function);
}

}  // namespace tavo_python

#endif
