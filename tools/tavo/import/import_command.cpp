#include "import/import_command.hpp"

#include "cli/command_line.hpp"
#include "cli/file_io.hpp"

#include <tavo/lexicon_maker.hpp>

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace tool {
namespace {

/// Adds "mecab" with its options; @p given tells whether a field option was used.
CLI::App* addMecab(CLI::App& app, TAVO::MecabImportOptions& options, double& maxTable,
                   std::vector<CLI::Option*>& fields) {
    CLI::App* mecab = app.add_subcommand("mecab", "A folder of *.csv, matrix.def, unk.def, char.def and dicrc");
    mecab->footer(
        "Example:\n"
        "  tavo import mecab /usr/share/mecab/dic/ipadic -o lexicon\n"
        "  tavo -i lexicon/tavo.init FILE");
    mecab->add_option("DIR", options.folder, "The lexicon's source folder")->required();
    mecab->add_option("-o,--output", options.output, "Folder to write to")->required()->type_name("OUTDIR");
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
    mecab->add_option("--step", options.step, "Source cost of one unit of a connection cost")
        ->check(CLI::Range(1.0, 1000.0))
        ->capture_default_str();
    mecab->add_option("--merge", options.levelTolerance, "Error at which cost levels merge; 0: none do")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    mecab
        ->add_option("--merge-contexts,--merge-lines", options.contextTolerance,
                     "Error, in source cost squared, at which rows or columns merge; 0: equal ones do")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    mecab->add_option("--max-table", maxTable, "Largest matrix in megabytes: more merges until it fits")
        ->check(CLI::Range(1e-6, 4096.0))
        ->capture_default_str();
    fields = {mecab->add_option("--pos-fields", options.posFields, "Number of part-of-speech fields"),
              mecab->add_option("--base-field", options.baseField, "Field of the base form, from 0; -1: none"),
              mecab->add_option("--reading-field", options.readingField, "Field of the reading"),
              mecab->add_option("--pron-field", options.pronField, "Field of the pronunciation")};
    return mecab;
}

}  // namespace

ExitStatus importCommand(int argc, char** argv) {
    TAVO::MecabImportOptions options;
    CLI::App app("Makes a lexicon of another format into one for tavo.", "tavo import");
    app.require_subcommand(1);
    std::vector<CLI::Option*> fields;
    double maxTable = 46;  // megabytes of matrix
    addMecab(app, options, maxTable, fields);
    return parseAndRun(app, argc, argv, [&] {
        options.fieldsGiven =
            std::any_of(fields.begin(), fields.end(), [](CLI::Option const* option) { return option->count() > 0; });
        options.maxTableBytes = maxTable * 1e6;
        // Names of stages, when a person watches.
        if (isatty(STDERR_FILENO) == 1)
            options.progress = [](char const* stage, std::size_t, std::size_t) {
                return std::fprintf(stderr, "%s...\n", stage) >= 0;
            };
        writeStandardOutput(TAVO::importMecab(options));
        return ExitStatus::Ok;
    });
}

}  // namespace tool
