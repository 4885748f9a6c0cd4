// A tokenizer with the Python strings of the words that it met.
#ifndef TAVO_PYTHON_CORE_HPP
#define TAVO_PYTHON_CORE_HPP

#include "python.hpp"

#include "text/token_table.hpp"

#include <tavo/tokenizer.hpp>

#include <array>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <vector>

namespace tavo_python {

/// Shared by a tagger and its results, which find their words' texts here when they are asked for. Word numbers last
/// as long as a core: a tagger whose core has grown large takes a new one, and the old one goes with its results.
///
/// Two locks: Python's own guards the strings that are made, the core's the tokenizer, which also works without
/// Python's. Nobody waits for the core's lock while holding Python's.
class Core {
public:
    /// Holds the tokenizer; waits for it without Python's lock.
    class Guard {
    public:
        explicit Guard(Core& core) : lock_(core.mutex_, std::try_to_lock) {
            if (lock_.owns_lock()) return;
            WithoutLock const free;
            lock_.lock();
        }

    private:
        std::unique_lock<std::mutex> lock_;
    };

    Core(TAVO::Lexicon const& lexicon, TAVO::TokenizerOptions const& options) : tokenizer(lexicon, options) {}
    Core(Core const&) = delete;
    Core& operator=(Core const&) = delete;

    void retain() noexcept { ++users_; }
    void release() noexcept {
        if (--users_ == 0) delete this;
    }

    TAVO::TokenTable& table() noexcept { return tableOf(tokenizer); }
    bool isLarge() { return table().words().isLarge(); }

    /// The surface @p given of word @p word as a Python string: equal ones are the same object. With @p locked the
    /// caller holds a Guard.
    PyObject* surface(std::uint32_t word, std::string_view given, bool locked = false) {
        if (word < words_.size()) {
            Word const& known = words_[word];
            if (known.surface != nullptr && known.spelling == given) {
                Py_INCREF(known.surface);
                return known.surface;
            }
        }
        return locked ? makeSurface(word, given) : lockedSurface(word, given);
    }
    /// A text of word @p word, where it stands as @p given.
    PyObject* text(std::uint32_t word, TAVO::TokenText which, std::string_view given) {
        if (word < words_.size()) {
            PyObject* const known = words_[word].texts[static_cast<std::size_t>(which)];
            if (known != nullptr && (known != words_[word].surface || words_[word].spelling == given)) {
                Py_INCREF(known);
                return known;
            }
        }
        return makeText(word, which, given);
    }
    /// The levels of the part of speech, a tuple.
    PyObject* posFields(std::uint32_t word);
    /// True where the word's text is what stands in the given text.
    bool isSurface(std::uint32_t word, TAVO::TokenText which);
    /// The string of a number of the tokenizer's table. The caller holds a Guard.
    PyObject* string(std::uint32_t textId);

    TAVO::WordTable::Word valuesOf(std::uint32_t word) {
        Guard const guard(*this);
        return table().words().word(word);
    }

    TAVO::Tokenizer tokenizer;

private:
    struct Word {
        std::string_view spelling;  // of surface, in the tokenizer's table
        PyObject* surface = nullptr;
        PyObject* fields = nullptr;
        std::array<PyObject*, TAVO::kTokenTexts> texts{};
    };

    ~Core();
    PyObject* lockedSurface(std::uint32_t word, std::string_view given);
    PyObject* makeSurface(std::uint32_t word, std::string_view given);
    PyObject* makeText(std::uint32_t word, TAVO::TokenText which, std::string_view given);
    Word& wordAt(std::uint32_t word);

    long users_ = 1;
    std::mutex mutex_;
    std::vector<Word> words_;         // by number
    std::vector<PyObject*> strings_;  // by number
};

}  // namespace tavo_python

#endif
