// Whole texts in one call.
#include "api/bulk_arrays.hpp"
#include "api/guard.hpp"

#include <algorithm>
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
    auto const finish = [&] {
        tavo.analyze(nullptr, 0);  // lets go of the caller's texts
        arrays.describe(result);
    };
    try {
        fill(arrays);
    } catch (...) {
        finish();
        throw;
    }
    finish();
    return static_cast<int>(result.rowCount);
}

/// The n best analyses of every sentence of the last text.
struct NBest {
    NBest(Tavo& tavo, int n) : paths(tavo.getSentenceCount()), costs(paths.size()) {
        for (std::size_t s = 0; s < paths.size(); ++s) {
            tavo.getResultNBest(paths[s], costs[s], static_cast<int>(s), n);
            rows = std::max(rows, paths[s].size());
        }
    }

    /// Takes the k-th analysis of every sentence into @p row, or its last one.
    void choose(std::size_t k, BulkRow& row) const {
        row.morphemes.clear();
        row.cost = {};
        for (std::size_t s = 0; s < paths.size(); ++s) {
            std::size_t const at = std::min(k, paths[s].size() - 1);
            row.morphemes.push_back(&paths[s][at]);
            row.cost.connection += costs[s][at].connection;
            row.cost.word += costs[s][at].word;
        }
    }

    std::vector<std::vector<std::vector<Mrph>>> paths;
    std::vector<std::vector<PathCost>> costs;
    std::size_t rows = 0;
};

}  // namespace

int tavo_bulkVersion(void) { return TAVO_BULK_VERSION; }

int tavo_bulkAnalyze(tavo_t* tavo, tavo_bulk_t* result, char const* const* texts, int const* lengths, int count,
                     unsigned what) {
    return guarded(tavo, __func__, [&](tavo_t& object, Call call) {
        call.require(result != nullptr);
        *result = {};
        call.require(areTexts(texts, lengths, count));
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

int tavo_bulkAnalyzeNBest(tavo_t* tavo, tavo_bulk_t* result, char const* text, int length, int n, unsigned what) {
    return guarded(tavo, __func__, [&](tavo_t& object, Call call) {
        call.require(result != nullptr);
        *result = {};
        call.require(areTexts(&text, &length, 1) && n >= 0);
        return fillArrays(object, *result, what, [&](BulkArrays& arrays) {
            std::string_view const given(text, static_cast<std::size_t>(length));
            int const failed = object.analyzeNBest(text, length);
            std::string analyzed;
            BulkRow row = rowOf(object, given, failed, arrays.inAnalyzedText(), analyzed);
            NBest const best(object, n);
            for (std::size_t k = 0; k < best.rows; ++k) {
                best.choose(k, row);
                arrays.addRow(row);
            }
        });
    });
}
