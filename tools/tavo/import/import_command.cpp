#include "import/import_command.hpp"

#include "cli/command_line.hpp"
#include "dic/index_file.hpp"
#include "import/import_charset.hpp"
#include "import/import_fit.hpp"
#include "import/import_lexicon.hpp"
#include "import/import_notice.hpp"
#include "import/import_pairs.hpp"
#include "import/import_report.hpp"
#include "import/import_search.hpp"
#include "import/import_table.hpp"
#include "import/import_unknown.hpp"
#include "import/import_write.hpp"

#include "dic/index/index_pool.hpp"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace TAVO::importer {
namespace fs = std::filesystem;
namespace {

struct Options {
    std::string folder, out, text, charset, dataFolder;
    FieldLayout layout;
    bool layoutGiven = false;
    TableOptions table;
    std::size_t drawn = 3000;
    double maxTable = 46;  ///< megabytes of matrix
    bool source = false;
    std::vector<std::string> notices;
};

/// Names of stages on standard error, when a person watches.
class Progress {
public:
    void stage(char const* name) const {
        if (shown_) std::fprintf(stderr, "%s...\n", name);
    }

private:
    bool shown_ = isatty(STDERR_FILENO) == 1;
};

/// The lines of a UTF-8 file that code page 932 can hold.
std::vector<std::string> readSentences(std::string const& path) {
    std::string const text = readFile(path);
    std::vector<std::string> sentences;
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t const end = std::min(text.find('\n', pos), text.size());
        std::string_view written = std::string_view(text).substr(pos, end - pos);
        if (!written.empty() && written.back() == '\r') written.remove_suffix(1);
        std::string line;
        if (Cp932::table().append(line, written) && !line.empty()) sentences.push_back(std::move(line));
        pos = end + 1;
    }
    if (sentences.empty()) throw ImportError(path + ": no line of text to fit on");
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
            throw ImportError("no merging makes the matrix as small as --max-table says; it has " +
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
    tool::writeConnIndex(out / "ConnTable");
    tool::writeDicIndexes(out / "ConnTable", dictionaries);
}

void writeLexicon(Options const& options, std::vector<std::string> const& lines,
                  std::vector<DictionaryPart> const& parts, std::string const& table, Tables const& tables,
                  Lexicon const& lexicon, std::string const& notice) {
    fs::path const out = fs::absolute(options.out);
    fs::create_directories(out);
    for (std::size_t part = 0; part < parts.size(); ++part) {
        writeFile(out / dictionaryName(part), parts[part].bytes);
        fs::path const sourceFile = out / (dictionaryName(part) + ".txt");
        fs::remove(sourceFile);
        if (!options.source) continue;
        std::string source;
        for (std::size_t line = parts[part].first; line < parts[part].last; ++line)
            source.append(lines[line]).append("\n");
        writeFile(sourceFile, source);
    }
    // What an earlier import left here would be taken for a part of this one.
    for (std::size_t part = parts.size(); fs::remove(out / dictionaryName(part)); ++part) {
        fs::remove(TAVO::indexPath(out / dictionaryName(part)));
    }
    fs::remove(out / kNoticeName);
    if (!notice.empty()) writeFile(out / kNoticeName, notice);
    writeFile(out / "ConnTable", table);
    writeIndexes(out, parts.size());
    writeFile(out / tool::kWordClassesName, tables.classes.text());
    writeFile(out / tool::kMecabFieldsName, lexicon.fields.text());
    writeFile(out / "reduce.rules", reduceRuleText(tables.names, lexicon.shortUnits));
    writeFile(out / "number.list", numberListText(tables.names));
    writeFile(out / "tavo.init", initFileText(options.dataFolder.empty() ? out : fs::path(options.dataFolder),
                                              parts.size(), options.source));
}

void importMecab(Options const& options) {
    Progress const progress;
    progress.stage("Reading the lexicon");
    Lexicon lexicon = readLexicon(options.folder, options.charset, options.layoutGiven ? &options.layout : nullptr);
    addUnknownWords(lexicon, readCharMap(lexicon.folder / "char.def"));
    FormIndex const index(lexicon);
    std::vector<fs::path> notices(options.notices.begin(), options.notices.end());
    if (notices.empty()) notices = findNotices(lexicon.folder);
    std::string const notice = noticeText(notices);

    progress.stage("Fitting costs");
    std::vector<std::string> const sentences =
        options.text.empty() ? drawSentences(lexicon, options.drawn) : readSentences(options.text);
    std::string const fittedOn = options.text.empty() ? "sentences drawn from the lexicon" : options.text;
    FitOptions const fit(options.table.step);
    Usage const usage = countEdges(lexicon, index, sentences, fit.nearBest);
    if (usage.edges.empty()) throw ImportError("no sentence of " + fittedOn + " has an analysis to fit on");
    PairCounts const pairs = countPairs(lexicon, index, sentences);
    Shifts const shifts = fitShifts(lexicon, usage, fit);
    TableOptions table = options.table;
    table.maxBytes = options.maxTable * 1e6;
    Tables const tables = buildTablesWithin(lexicon, index, shifts, usage, pairs, table);
    Agreement const agreement = measureAgreement(lexicon, index, shifts, tables, table.step, sentences);

    progress.stage("Writing the dictionary");
    lexicon.matrix = {};
    std::vector<std::string> const lines = sourceLines(lexicon, tables);
    std::vector<DictionaryPart> const parts = compileDictionaries(tables.names, lines);
    std::string const connTable = connTableBytes(tables);
    writeLexicon(options, lines, parts, connTable, tables, lexicon, notice);

    ReportFacts facts;
    facts.fittedOn = fittedOn;
    facts.sentences = usage.sentences - usage.withoutPath;
    facts.linesWritten = lines.size();
    for (DictionaryPart const& part : parts) facts.dictionaryBytes.push_back(part.bytes.size());
    facts.tableBytes = connTable.size();
    facts.perByte = shifts.perByte;
    facts.table = table;
    for (fs::path const& file : notices) facts.notices += (facts.notices.empty() ? "" : ", ") + file.string();
    std::string const report = reportText(lexicon, tables, agreement, facts);
    writeFile(fs::path(options.out) / "report.txt", report);
    std::fputs(report.c_str(), stdout);
}

}  // namespace
}  // namespace TAVO::importer

namespace tool {
namespace {

/// Adds "mecab" with its options; @p given tells whether a field option was used.
CLI::App* addMecab(CLI::App& app, TAVO::importer::Options& options, std::vector<CLI::Option*>& fields) {
    CLI::App* mecab = app.add_subcommand("mecab", "A folder of *.csv, matrix.def, unk.def, char.def and dicrc");
    mecab->footer(
        "Example:\n"
        "  tavo import mecab /usr/share/mecab/dic/ipadic -o lexicon\n"
        "  tavo -i lexicon/tavo.init FILE");
    mecab->add_option("DIR", options.folder, "The lexicon's source folder")->required();
    mecab->add_option("-o,--output", options.out, "Folder to write to")->required()->type_name("OUTDIR");
    mecab->add_option("--text", options.text, "UTF-8 text to fit costs on, a sentence a line (default: none needed)")
        ->type_name("FILE");
    mecab->add_option("--charset", options.charset, "Encoding of the source (default: as its dicrc says)");
    mecab->add_option("--data-dir", options.dataFolder, "Folder that tavo.init names (default: OUTDIR)");
    mecab->add_flag("--source", options.source, "Write the dictionary's source text too, SysDic.txt");
    mecab
        ->add_option("--notice", options.notices,
                     "Copyright and licence of the source, copied to COPYING (default: the source folder's, or those "
                     "of its package). May be repeated")
        ->type_name("FILE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    mecab->add_option("--step", options.table.step, "Source cost of one unit of a connection cost")
        ->check(CLI::Range(1.0, 1000.0))
        ->capture_default_str();
    mecab->add_option("--merge", options.table.levelTolerance, "Error at which cost levels merge; 0: none do")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    mecab
        ->add_option("--merge-contexts,--merge-lines", options.table.contextTolerance,
                     "Error, in source cost squared, at which rows or columns merge; 0: equal ones do")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    mecab->add_option("--max-table", options.maxTable, "Largest matrix in megabytes: more merges until it fits")
        ->check(CLI::Range(1e-6, 4096.0))
        ->capture_default_str();
    fields = {mecab->add_option("--pos-fields", options.layout.posFields, "Number of part-of-speech fields"),
              mecab->add_option("--base-field", options.layout.base, "Field of the base form, from 0; -1: none"),
              mecab->add_option("--reading-field", options.layout.reading, "Field of the reading"),
              mecab->add_option("--pron-field", options.layout.pron, "Field of the pronunciation")};
    return mecab;
}

}  // namespace

ExitStatus importCommand(int argc, char** argv) {
    TAVO::importer::Options options;
    CLI::App app("Makes a lexicon of another format into one for tavo.", "tavo import");
    app.require_subcommand(1);
    std::vector<CLI::Option*> fields;
    addMecab(app, options, fields);
    return parseAndRun(app, argc, argv, [&] {
        options.layoutGiven =
            std::any_of(fields.begin(), fields.end(), [](CLI::Option const* option) { return option->count() > 0; });
        importMecab(options);
        return ExitStatus::Ok;
    });
}

}  // namespace tool
