// The calls of a tagger that find words.
#include "result.hpp"
#include "tagger.hpp"

#include <memory>
#include <span>
#include <string>
#include <utility>

namespace tavo_python {

namespace {

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

/// The surfaces of the words of a text of the core's last result. The caller holds its guard.
void addSurfaces(Core& core, std::size_t text, std::vector<Ref>& surfaces) {
    TAVO::TokenTable& table = core.table();
    for (std::uint32_t i = table.firstOfText()[text]; i != table.firstOfText()[text + 1]; ++i)
        surfaces.emplace_back(core.surface(table.wordNumbers()[i], table.surface(i, text), true));
}

/// Surfaces of texts with lone surrogates are cut from the str.
PyObject* surfacesOfResult(PyObject* result) {
    Ref const made(result);
    return PyObject_GetAttrString(made.get(), "surfaces");
}

/// Runs analyse(tokenizer, text), whose last result has a text for each analysis; these are results of their own.
template <class Analyse>
std::vector<Ref> analysesOf(PyObject* self, PyObject* text, Analyse analyse) {
    GivenText const given = GivenText::from(text);
    InUse const core(self);
    std::vector<std::unique_ptr<Result::Values>> found;
    bool hasOwnText = false;
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
        hasOwnText = table.hasOwnText();
        if (hasOwnText) plain = table.text(0);
    }
    std::vector<Ref> results;
    for (auto& values : found) {
        // The text without tags, or of a look-up, stands nowhere else.
        Ref const shown = hasOwnText ? stringOf(plain) : Ref::shared(given.text.get());
        values->given = GivenText::from(shown.get());
        values->core = &*core;
        results.emplace_back(resultOf(*core, std::move(values)));
    }
    return results;
}

}  // namespace

Many::Many(PyObject* arguments) {
    PyObject* list = nullptr;
    Py_ssize_t first = 0;
    demand(PyArg_ParseTuple(arguments, "O!n", &PyList_Type, &list, &first) != 0);
    Py_ssize_t const count = PyList_Size(list);
    demand(count >= 0);
    given.reserve(static_cast<std::size_t>(count));
    for (Py_ssize_t i = 0; i != count; ++i) {
        given.push_back(GivenText::from(PyList_GetItem(list, i), first + i));
        views.push_back(given.back().utf8);
    }
}

PyObject* callTagger(PyObject* self, PyObject* arguments, PyObject* keywords) {
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

PyObject* splitText(PyObject* self, PyObject* text) {
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

PyObject* analyseTexts(PyObject* self, PyObject* arguments) {
    return guarded([&] {
        Many many(arguments);
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

PyObject* splitTexts(PyObject* self, PyObject* arguments) {
    return guarded([&] {
        Many const many(arguments);
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

PyObject* bestOfText(PyObject* self, PyObject* arguments) {
    return guarded([&] {
        PyObject* text = nullptr;
        int n = 0;
        demand(PyArg_ParseTuple(arguments, "Oi", &text, &n) != 0);
        std::vector<Ref> results = analysesOf(
            self, text, [n](TAVO::Tokenizer& tokenizer, std::string_view utf8) { tokenizer.nBest(utf8, n); });
        return listOf(results);
    });
}

PyObject* analyseTagged(PyObject* self, PyObject* text) {
    return guarded([&] {
        // Its text without tags is made of UTF-8, which has no lone surrogates: the error tells where one is.
        if (PyUnicode_Check(text)) Ref const whole(PyUnicode_AsUTF8String(text));
        std::vector<Ref> results = analysesOf(
            self, text, [](TAVO::Tokenizer& tokenizer, std::string_view utf8) { tokenizer.tokenizeTagged(utf8); });
        return results.front().release();
    });
}

PyObject* lookUpWords(PyObject* self, PyObject* arguments) {
    return guarded([&] {
        PyObject* text = nullptr;
        int by = 0;
        Py_ssize_t most = 0;
        demand(PyArg_ParseTuple(arguments, "Uin", &text, &by, &most) != 0);
        std::vector<Ref> results = analysesOf(self, text, [&](TAVO::Tokenizer& tokenizer, std::string_view utf8) {
            tokenizer.lookUp(utf8, static_cast<TAVO::LookUp>(by), static_cast<std::size_t>(most));
        });
        return results.front().release();
    });
}

}  // namespace tavo_python
