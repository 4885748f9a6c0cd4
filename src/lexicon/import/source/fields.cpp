#include "lexicon/import/source/fields.hpp"

#include "lexicon/import/source/charset.hpp"

#include <algorithm>

namespace TAVO::importer {

FieldLayout layoutFor(std::size_t features) noexcept {
    if (features >= 26) return {6, 10, 20, 9};
    if (features >= kShortUnitFeatures) return {6, 10, 9, 9};
    auto const present = [&](int index) { return static_cast<std::size_t>(index) < features ? index : -1; };
    return {static_cast<int>(std::min<std::size_t>(features, 6)), present(6), present(7), present(8)};
}

void FieldCheck::add(std::vector<std::string> const& entry) {
    constexpr std::size_t kFixed = 4;
    auto const isKana = [](std::uint32_t c) { return c >= 0x3041 && c <= 0x30FF; };
    ++entries_;
    for (std::size_t i = kFixed; i < entry.size(); ++i) {
        if (columns_.size() <= i - kFixed) columns_.emplace_back();
        Column& column = columns_[i - kFixed];
        std::size_t pos = 0;
        if (entry[i] == entry[0]) ++column.forms;
        if (!entry[i].empty() && isKana(nextCodePoint(entry[i], pos))) ++column.kana;
    }
}

std::string FieldCheck::fault(FieldLayout const& layout) const {
    // Where words change their endings, a third of the forms are base forms. Readings stand behind them.
    constexpr std::size_t kLeastShare = 8;
    auto const found = std::find_if(columns_.begin(), columns_.end(),
                                    [&](Column const& column) { return column.forms * kLeastShare >= entries_; });
    auto const base = static_cast<std::size_t>(found - columns_.begin());
    if (base >= std::min(columns_.size(), static_cast<std::size_t>(std::max(layout.posFields, 0)))) return {};
    std::size_t reading = base + 1;
    while (reading < columns_.size() && !holdsReading(reading)) ++reading;
    bool const reads = reading < columns_.size();
    std::size_t const pron =
        reads && reading + 1 < columns_.size() && holdsReading(reading + 1) ? reading + 1 : reading;
    auto const option = [&](char const* name, std::size_t field, bool given = true) {
        return std::string(" --") + name + " " + (given ? std::to_string(field) : "-1");
    };
    return "of the " + std::to_string(columns_.size()) + " fields behind the cost, field " + std::to_string(base) +
           " (from 0) seems to be the base form, and is taken for a part of speech; name the fields:" +
           option("pos-fields", base) + option("base-field", base) + option("reading-field", reading, reads) +
           option("pron-field", pron, reads);
}

}  // namespace TAVO::importer
