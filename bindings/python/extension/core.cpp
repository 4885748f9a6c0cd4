#include "core.hpp"

namespace tavo_python {

namespace {

/// Longer surfaces are seldom met twice.
constexpr std::size_t kMostKept = 64;

using TAVO::TokenText;
using TAVO::WordTable;

}  // namespace

Core::~Core() {
    for (Word& word : words_) {
        Py_XDECREF(word.surface);
        Py_XDECREF(word.fields);
        for (PyObject* const text : word.texts) Py_XDECREF(text);
    }
    for (PyObject* const text : strings_) Py_XDECREF(text);
}

Core::Word& Core::wordAt(std::uint32_t word) {
    if (word >= words_.size()) words_.resize(word + std::size_t{1} + words_.size() / 2);
    return words_[word];
}

PyObject* Core::string(std::uint32_t textId) {
    if (textId >= strings_.size()) strings_.resize(textId + std::size_t{1} + strings_.size() / 2);
    PyObject*& kept = strings_[textId];
    if (kept == nullptr) kept = stringOf(tokenizer.text(textId)).release();
    Py_INCREF(kept);
    return kept;
}

PyObject* Core::lockedSurface(std::uint32_t word, std::string_view given) {
    Guard const guard(*this);
    return makeSurface(word, given);
}

PyObject* Core::makeSurface(std::uint32_t word, std::string_view given) {
    if (given.size() > kMostKept) return stringOf(given).release();
    TAVO::StringTable& strings = table().strings();
    std::uint32_t const usual = word == WordTable::kNone ? WordTable::kNotYet : table().words().spelling(word, given);
    if (usual == WordTable::kNotYet) return string(strings.add(given));
    Word& known = wordAt(word);
    if (known.surface == nullptr) {
        known.surface = string(usual);
        known.spelling = strings.text(usual);
    }
    Py_INCREF(known.surface);
    return known.surface;
}

PyObject* Core::makeText(std::uint32_t word, TokenText which, std::string_view given) {
    Guard const guard(*this);
    std::uint32_t const id = table().textIdOf(word, given, which);
    PyObject* const found = string(id);
    // A text that is the surface holds for this spelling alone.
    bool const isSurface = table().words().text(word, which) == WordTable::kSurface;
    if (isSurface && (which == TokenText::Normalized || word == WordTable::kNone)) return found;
    if (isSurface) {
        Py_DECREF(makeSurface(word, given));
        if (word >= words_.size() || words_[word].surface != found) return found;
    }
    PyObject*& kept = wordAt(word).texts[static_cast<std::size_t>(which)];
    if (kept == nullptr) {
        Py_INCREF(found);
        kept = found;
    }
    return found;
}

bool Core::isSurface(std::uint32_t word, TokenText which) {
    Guard const guard(*this);
    return table().words().text(word, which) == WordTable::kSurface;
}

PyObject* Core::posFields(std::uint32_t word) {
    if (word < words_.size() && words_[word].fields != nullptr) {
        Py_INCREF(words_[word].fields);
        return words_[word].fields;
    }
    std::vector<Ref> fields;
    {
        // Making a tuple may run a finalizer, which may want the tokenizer.
        Guard const guard(*this);
        for (std::string_view const field : table().words().pos(word).fields)
            fields.emplace_back(string(table().strings().add(field)));
    }
    Ref made(PyTuple_New(static_cast<Py_ssize_t>(fields.size())));
    for (std::size_t i = 0; i != fields.size(); ++i)
        PyTuple_SetItem(made.get(), static_cast<Py_ssize_t>(i), fields[i].release());
    PyObject*& kept = wordAt(word).fields;
    if (kept == nullptr) kept = Ref::shared(made.get()).release();
    return made.release();
}

}  // namespace tavo_python
