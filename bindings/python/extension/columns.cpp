#include "tagger.hpp"

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tavo_python {

namespace {

using TAVO::TokenText;

enum Column { kText, kStart, kEnd, kPos, kBase, kReading, kColumns };

/// Strings of a tokenizer's table, numbered from 0 in the order of coming.
class Numbers {
public:
    std::uint32_t of(std::uint32_t textId) {
        if (textId >= numbers_.size()) numbers_.resize(textId + std::size_t{1} + numbers_.size(), kNone);
        if (numbers_[textId] == kNone) {
            numbers_[textId] = static_cast<std::uint32_t>(ids_.size());
            ids_.push_back(textId);
        }
        return numbers_[textId];
    }
    std::vector<std::uint32_t> const& ids() const noexcept { return ids_; }

private:
    static constexpr std::uint32_t kNone = UINT32_MAX;
    std::vector<std::uint32_t> numbers_, ids_;
};

struct Columns {
    std::array<std::vector<std::uint32_t>, kColumns> columns;
    Numbers pos, strings;

    void add(TAVO::TokenTable& table) {
        auto const& at = table.characters();
        for (std::size_t text = 0; text != table.textCount(); ++text)
            for (std::size_t i = table.firstOfText()[text]; i != table.firstOfText()[text + 1]; ++i) {
                columns[kText].push_back(static_cast<std::uint32_t>(text));
                columns[kStart].push_back(at.begin[i]);
                columns[kEnd].push_back(at.end[i]);
                columns[kPos].push_back(pos.of(table.textId(i, text, TokenText::Pos)));
                columns[kBase].push_back(strings.of(table.textId(i, text, TokenText::Base)));
                columns[kReading].push_back(strings.of(table.textId(i, text, TokenText::Reading)));
            }
    }
};

std::vector<Ref> stringsOf(Core& core, std::vector<std::uint32_t> const& ids) {
    std::vector<Ref> strings;
    strings.reserve(ids.size());
    for (std::uint32_t const id : ids) strings.emplace_back(core.string(id));
    return strings;
}

}  // namespace

PyObject* columnsOfTexts(PyObject* self, PyObject* arguments) {
    return guarded([&] {
        Many const many(arguments);
        InUse const core(self);
        Columns found;
        std::vector<Ref> pos, strings;
        {
            Core::Guard const guard(*core);
            {
                WithoutLock const free;
                core->tokenizer.tokenize(many.views);
                found.add(core->table());
            }
            pos = stringsOf(*core, found.pos.ids());
            strings = stringsOf(*core, found.strings.ids());
        }
        Ref made(PyTuple_New(kColumns + 2));
        for (Py_ssize_t i = 0; i != kColumns; ++i) {
            auto const& column = found.columns[static_cast<std::size_t>(i)];
            auto const bytes = static_cast<Py_ssize_t>(column.size() * sizeof column[0]);
            char const* const data =
                column.empty() ? "" : static_cast<char const*>(static_cast<void const*>(column.data()));
            PyTuple_SetItem(made.get(), i, Ref(PyBytes_FromStringAndSize(data, bytes)).release());
        }
        PyTuple_SetItem(made.get(), kColumns, listOf(pos));
        PyTuple_SetItem(made.get(), kColumns + 1, listOf(strings));
        return made.release();
    });
}

}  // namespace tavo_python
