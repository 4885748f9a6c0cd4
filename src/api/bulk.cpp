// Whole texts in one call.
#include "api/bulk_arrays.hpp"
#include "api/guard.hpp"

#include <climits>
#include <cstdint>
#include <string>

using namespace TAVO;
using namespace TAVO::api;

namespace {

/// True when the texts can be read and fit together.
bool areTexts(char const* const* texts, int const* lengths, int count) noexcept {
    if (count < 0 || (count > 0 && (texts == nullptr || lengths == nullptr))) return false;
    std::int64_t total = 0;
    for (int i = 0; i < count; ++i) {
        if (lengths[i] < 0 || (texts[i] == nullptr && lengths[i] > 0)) return false;
        total += lengths[i];
        if (total > INT_MAX) return false;
    }
    return true;
}

/// Sets up a row for the text that was just analysed, but for its morphemes.
BulkRow rowOf(Tavo const& tavo, std::string_view given, int failed, bool inAnalyzedText, std::string& analyzed) {
    BulkRow row{given, {}, static_cast<std::uint32_t>(failed), {}, {}};
    if (!inAnalyzedText) return row;
    analyzed.clear();
    int const sentences = static_cast<int>(tavo.getSentenceCount());
    for (int i = 0; i < sentences; ++i) {
        row.analyzedBegin.push_back(analyzed.size());
        analyzed += tavo.getSentence(i);
    }
    row.analyzed = analyzed;
    return row;
}

/// Runs one bulk call: fill(arrays) adds rows. Whatever it throws, the rows
/// before are delivered.
template <class Fill>
int fillArrays(tavo_t& tavo, tavo_bulk_t& result, unsigned what, Fill fill) {
    tavo.endHandles();
    if (!tavo.bulk) tavo.bulk = std::make_unique<BulkArrays>();
    BulkArrays& arrays = *tavo.bulk;
    arrays.start(what);
    try {
        fill(arrays);
    } catch (...) {
        arrays.describe(result);
        throw;
    }
    arrays.describe(result);
    return static_cast<int>(result.rowCount);
}

}  // namespace

int tavo_bulkVersion(void) { return TAVO_BULK_VERSION; }

int tavo_bulkAnalyze(tavo_t* tavo, tavo_bulk_t* result, char const* const* texts, int const* lengths, int count,
                     unsigned what) {
    return guarded(tavo, [&, function = __func__](tavo_t& object) {
        require(result != nullptr, function);
        *result = {};
        require(areTexts(texts, lengths, count), function);
        return fillArrays(object, *result, what, [&](BulkArrays& arrays) {
            std::string analyzed;
            std::vector<std::vector<Mrph>> morphemes;
            for (int i = 0; i < count; ++i) {
                std::string_view const given(texts[i], static_cast<std::size_t>(lengths[i]));
                int const failed = object.analyze(texts[i], lengths[i]);
                BulkRow row = rowOf(object, given, failed, arrays.inAnalyzedText(), analyzed);
                std::size_t const sentences = object.getSentenceCount();
                if (morphemes.size() < sentences) morphemes.resize(sentences);
                for (std::size_t s = 0; s < sentences; ++s) {
                    object.getResult(morphemes[s], static_cast<int>(s));
                    row.morphemes.push_back(&morphemes[s]);
                }
                arrays.addRow(row);
            }
        });
    });
}
