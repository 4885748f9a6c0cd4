// tavo.Result and tavo.Token.
#ifndef TAVO_PYTHON_RESULT_HPP
#define TAVO_PYTHON_RESULT_HPP

#include "core.hpp"
#include "given_text.hpp"
#include "python.hpp"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace tavo_python {

/// Where a word stands, in bytes, and which one it is.
struct Place {
    std::uint32_t begin, end, word;
};

/// The words of one text. Constant once it is made, but for positions that are found when first asked for.
struct Result {
    // NOLINTNEXTLINE: as PyObject_HEAD has it
    PyObject head;
    struct Values {
        GivenText given;
        Core* core = nullptr;  ///< null in a result that was unpickled
        Ref restored;          ///< of one that was unpickled: a list with a tuple of values for each word
        std::vector<Place> places;
        /// In code points, and in units of UTF-16: beginning and end of each word. Empty until they are asked for.
        std::vector<std::uint32_t> characters, utf16;
        std::uint32_t connectionCost = 0, wordCost = 0;

        std::string_view surface(std::size_t index) const noexcept {
            return given.utf8.substr(places[index].begin, places[index].end - places[index].begin);
        }
        std::vector<std::uint32_t> const& positions(bool inUtf16);
        PyObject* surfaceOf(std::size_t index);
    };
    Values* values;
};

/// One word: a place in its result.
struct Token {
    PyObject head;
    Result* result;
    std::uint32_t index;
};

/// The types; made by addTypes().
struct Types {
    PyTypeObject* result = nullptr;
    PyTypeObject* token = nullptr;
    PyTypeObject* iterator = nullptr;
};
extern Types types;

/// Makes the types of results and adds them to the module.
void addResultTypes(PyObject* module);
void addTokenType(PyObject* module);
/// Adds a type of @p definition to the module under the last part of its name.
PyTypeObject* addType(PyObject* module, PyType_Spec& definition);

/// Of types whose objects only the package makes.
PyObject* refuseNew(PyTypeObject* type, PyObject* arguments, PyObject* keywords);

/// Takes over one use of the core.
PyObject* newResult(std::unique_ptr<Result::Values> values);
PyObject* newToken(Result* result, std::uint32_t index);
/// All values of a token, in the order in which a restored result has them.
Ref valuesOf(Result* result, std::uint32_t index);

/// Rebuilds a result from what __reduce__ gave.
PyObject* restoreResult(PyObject* module, PyObject* arguments);

}  // namespace tavo_python

#endif
