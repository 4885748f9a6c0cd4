// Makes a lexicon from one in MeCab's format.
#include "lexicon/import/end_forms.hpp"
#include "lexicon/import/fit/fit.hpp"
#include "lexicon/import/fit/pairs.hpp"
#include "lexicon/import/report.hpp"
#include "lexicon/import/source/charset.hpp"
#include "lexicon/import/source/notice.hpp"
#include "lexicon/import/source/unknown.hpp"
#include "lexicon/import/table/table.hpp"
#include "lexicon/import/write.hpp"
#include "lexicon/stage.hpp"

#include "dic/index/index_pool.hpp"

#include <tavo/lexicon_maker.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>

namespace TAVO {

namespace importer {
namespace {

namespace fs = std::filesystem;

/// The lines of a UTF-8 file that code page 932 can hold.
std::vector<std::string> readSentences(std::string const& path) {
    std::string const text = readFile(path);
    std::vector<std::string> sentences;
    forEachLine(text, [&](std::string_view written, std::size_t) {
        std::string line;
        if (Cp932::table().append(line, written) && !line.empty()) sentences.push_back(std::move(line));
    });
    if (sentences.empty()) throw lexicon_error(path, 0, "no line of text to fit on");
    return sentences;
}

/// Merges more until the matrix fits; @p options tells then how much.
Tables buildTablesWithin(Lexicon& lexicon, FormIndex const& index, Shifts const& shifts, Usage const& usage,
                         PairCounts const& pairs, TableOptions& options) {
    // Rows and columns bear more merging than levels: measured on short units.
    constexpr double kLeastGrowth = 1.25, kLevelGrowth = 0.3, kUseless = 1e12;
    while (true) {
        Tables tables = buildTables(lexicon, index, shifts, usage, pairs, options);
        double const excess = static_cast<double>(tables.bytes()) / options.maxBytes;
        if (excess <= 1) return tables;
        if (options.contextTolerance > kUseless)
            throw lexicon_error("", 0,
                                "no merging makes the matrix as small as --max-table says; it has " +
                                    std::to_string(tables.bytes()) + " bytes");
        double const growth = std::max(kLeastGrowth, excess);
        options.contextTolerance = std::max(1.0, options.contextTolerance) * growth;
        options.levelTolerance = std::max(1.0, options.levelTolerance) * std::pow(growth, kLevelGrowth);
    }
}

/// Of the connection table and the @p parts dictionaries in folder @p out.
void writeIndexes(fs::path const& out, std::size_t parts) {
    std::vector<std::string> dictionaries;
    for (std::size_t part = 0; part < parts; ++part) dictionaries.push_back(out / dictionaryName(part));
    writeTableIndex(out / "ConnTable");
    writeDictionaryIndexes(out / "ConnTable", dictionaries);
}

void writeDictionaries(fs::path const& out, std::vector<std::string> const& lines,
                       std::vector<DictionaryPart> const& parts, bool withSource) {
    for (std::size_t part = 0; part < parts.size(); ++part) {
        writeFile(out / dictionaryName(part), parts[part].bytes);
        fs::path const sourceFile = out / (dictionaryName(part) + ".txt");
        fs::remove(sourceFile);
        if (!withSource) continue;
        std::string source;
        for (std::size_t line = parts[part].first; line < parts[part].last; ++line)
            source.append(lines[line]).append("\n");
        writeFile(sourceFile, source);
    }
    // What an earlier import left here would be taken for a part of this one.
    for (std::size_t part = parts.size(); fs::remove(out / dictionaryName(part)); ++part)
        fs::remove(indexPath(out / dictionaryName(part)));
}

/// One import, stage after stage.
class Import {
public:
    explicit Import(MecabImportOptions const& options) : options_(options) {
        table_.step = options.step;
        table_.levelTolerance = options.levelTolerance;
        table_.contextTolerance = options.contextTolerance;
        table_.maxBytes = options.maxTableBytes;
    }

    std::string run() {
        read();
        fit();
        write();
        facts_.table = table_;
        for (fs::path const& file : notices_) facts_.notices += (facts_.notices.empty() ? "" : ", ") + file.string();
        std::string report = reportText(lexicon_, tables_, agreement_, facts_);
        writeFile(fs::path(options_.output) / "report.txt", report);
        return report;
    }

private:
    void read() {
        words::tell(options_.progress, "Reading the lexicon");
        FieldLayout const layout{options_.posFields, options_.baseField, options_.readingField, options_.pronField};
        lexicon_ = readLexicon(options_.folder, options_.charset, options_.fieldsGiven ? &layout : nullptr);
        addUnknownWords(lexicon_, readCharMap(lexicon_.folder / "char.def"));
        index_.emplace(lexicon_);
        notices_.assign(options_.notices.begin(), options_.notices.end());
        if (notices_.empty()) notices_ = findNotices(lexicon_.folder);
        notice_ = noticeText(notices_);
    }

    void fit() {
        constexpr std::size_t kDrawn = 3000;
        words::tell(options_.progress, "Fitting costs");
        bool const drawn = options_.text.empty();
        std::vector<std::string> const sentences =
            drawn ? drawSentences(lexicon_, kDrawn) : readSentences(options_.text);
        facts_.fittedOn = drawn ? "sentences drawn from the lexicon" : options_.text;
        FitOptions const fitting(table_.step);
        Usage const usage = countEdges(lexicon_, *index_, sentences, fitting.nearBest);
        if (usage.edges.empty())
            throw lexicon_error("", 0, "no sentence of " + facts_.fittedOn + " has an analysis to fit on");
        PairCounts const pairs = countPairs(lexicon_, *index_, sentences);
        Shifts const shifts = fitShifts(lexicon_, usage, fitting);
        tables_ = buildTablesWithin(lexicon_, *index_, shifts, usage, pairs, table_);
        agreement_ = measureAgreement(lexicon_, *index_, shifts, tables_, table_.step, sentences);
        facts_.sentences = usage.sentences - usage.withoutPath;
        facts_.perByte = shifts.perByte;
    }

    void write() {
        words::tell(options_.progress, "Writing the dictionary");
        lexicon_.matrix = {};
        facts_.endForms = deriveEndForms(lexicon_);
        std::vector<std::string> const lines = sourceLines(lexicon_, tables_);
        std::vector<DictionaryPart> const parts = compileDictionaries(tables_.names, lines);
        std::string const connTable = connTableBytes(tables_);
        fs::path const out = fs::absolute(options_.output);
        fs::create_directories(out);
        writeDictionaries(out, lines, parts, options_.source);
        fs::remove(out / kNoticeName);
        if (!notice_.empty()) writeFile(out / kNoticeName, notice_);
        writeFile(out / "ConnTable", connTable);
        writeIndexes(out, parts.size());
        writeFile(out / words::kWordClassesName, tables_.classes.text());
        writeFile(out / words::kMecabFieldsName, lexicon_.fields.text());
        writeFile(out / "reduce.rules", reduceRuleText(tables_.names, lexicon_.shortUnits));
        writeFile(out / "number.list", numberListText(tables_.names));
        writeFile(out / "end.rules", facts_.endForms.text);
        fs::path const data = options_.dataFolder.empty() ? out : fs::path(options_.dataFolder);
        writeFile(out / "tavo.init", initFileText(data, parts.size(), options_.source));
        facts_.linesWritten = lines.size();
        for (DictionaryPart const& part : parts) facts_.dictionaryBytes.push_back(part.bytes.size());
        facts_.tableBytes = connTable.size();
    }

    MecabImportOptions const& options_;
    TableOptions table_;
    Lexicon lexicon_;
    std::optional<FormIndex> index_;
    std::vector<fs::path> notices_;
    std::string notice_;
    Tables tables_;
    Agreement agreement_;
    ReportFacts facts_;
};

}  // namespace
}  // namespace importer

std::string importMecab(MecabImportOptions const& options) { return importer::Import(options).run(); }

}  // namespace TAVO
