// tavo._tavo.Tagger: what the package's Tagger stands on.
#ifndef TAVO_PYTHON_TAGGER_HPP
#define TAVO_PYTHON_TAGGER_HPP

#include "core.hpp"
#include "given_text.hpp"
#include "python.hpp"

#include <tavo/lexicon.hpp>
#include <tavo/tokenizer.hpp>

#include <optional>
#include <string_view>
#include <vector>

namespace tavo_python {

struct Tagger {
    PyObject head;
    Core* core;  ///< null when closed
    std::optional<TAVO::Lexicon>* lexicon;
    TAVO::TokenizerOptions options;
};

/// The core of a tagger for one call; a closed one raises ValueError. A core that has grown large is replaced first:
/// results keep the old one.
class InUse {
public:
    explicit InUse(PyObject* tagger);
    InUse(InUse const&) = delete;
    InUse& operator=(InUse const&) = delete;
    ~InUse() { core_->release(); }
    Core* operator->() const noexcept { return core_; }
    Core& operator*() const noexcept { return *core_; }

private:
    Core* core_;
};

/// Texts of one call.
struct Many {
    std::vector<GivenText> given;
    std::vector<std::string_view> views;

    /// @p arguments: a list of texts, and the number that the first one has in errors.
    explicit Many(PyObject* arguments);
};

void addTaggerType(PyObject* module);

// The calls that find words, as Python calls them.

/// tagger(text)
PyObject* callTagger(PyObject* self, PyObject* arguments, PyObject* keywords);
PyObject* splitText(PyObject* self, PyObject* text);
PyObject* analyseTagged(PyObject* self, PyObject* text);
/// Tagger._batch(texts, first), a list of results; _split_batch(texts, first), one of lists of surfaces.
PyObject* analyseTexts(PyObject* self, PyObject* arguments);
PyObject* splitTexts(PyObject* self, PyObject* arguments);
/// Tagger._nbest(text, n)
PyObject* bestOfText(PyObject* self, PyObject* arguments);
/// Tagger._lookup(text, number of a TAVO::LookUp, most; negative: no limit)
PyObject* lookUpWords(PyObject* self, PyObject* arguments);
/// Tagger._columns(texts, first): columns of the words of all texts, as bytes of 32-bit numbers, and their tables.
PyObject* columnsOfTexts(PyObject* self, PyObject* arguments);

}  // namespace tavo_python

#endif
