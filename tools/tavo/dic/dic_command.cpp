// tavo dic: build, dump, check, index.
#include "dic/dic_command.hpp"

#include "cli/command_line.hpp"
#include "cli/commands.hpp"

#include <tavo/lexicon_maker.hpp>

#include <CLI/CLI.hpp>

namespace tool {

namespace {

constexpr char kDicFooter[] =
    "A source line is WORD,PART OF SPEECH,COST,READING and more, separated by commas:\n"
    "  すもも,名詞:一般,30,すもも\n"
    "Parts of speech are names of the connection table; costs run from 0 to 255.\n"
    "Lines that begin with ; or # are comments.";

constexpr char kBuildFooter[] =
    "Examples:\n"
    "  tavo dic build words.txt -c ConnTable -o my.dic && tavo -d my.dic text.txt\n"
    "  echo すだちそば | tavo dic build - --like そば -c ConnTable -o my.dic\n"
    "                             part of speech and cost as そば has them\n"
    "  tavo dic build words.txt --must-win すだちそばを食べる -c ConnTable -o my.dic\n"
    "  tavo dic build user.csv --mecab -c ConnTable -o my.dic\n"
    "All faults of the source are reported at once, each with its line. Without any,\n"
    "the dictionary takes its place; else an older one there stays as it was.";

ExitStatus indexDictionaries(DicOptions const& options) {
    TAVO::writeTableIndex(options.connTable);
    TAVO::writeDictionaryIndexes(options.connTable, options.lexicon);
    return ExitStatus::Ok;
}

}  // namespace

ExitStatus dicCommand(int argc, char** argv) {
    DicOptions options;
    ExitStatus (*action)(DicOptions const&) = nullptr;
    CLI::App app("Makes and inspects dictionaries.", "tavo dic");
    app.footer(kDicFooter);
    app.require_subcommand(1);

    CLI::App* const build = app.add_subcommand("build", "Compiles source text into a dictionary");
    build->footer(kBuildFooter);
    build->add_option("SRC", options.input, "Dictionary source text, - for standard input")->required()->type_name("");
    build->add_option("-c,--conn", options.connTable, "Connection table, which names the parts of speech")
        ->required()
        ->type_name("FILE");
    build->add_option("-o,--output", options.output, "Dictionary to write")->required()->type_name("FILE");
    build->add_flag("-v,--verbose", options.verbose, "Show progress");
    build->add_flag("--mecab", options.mecabFormat, "SRC is in MeCab's CSV format; ids and cost may be empty");
    build
        ->add_option("--like", options.like,
                     "Word of the lexicon that gives what lines leave empty: part of speech, cost")
        ->type_name("WORD[,PART OF SPEECH]");
    build
        ->add_option("--must-win", options.mustWin,
                     "Tell whether a new word is in the best analysis of the sentence, and what it lacks; "
                     "exit status 1 when none is. May be repeated")
        ->type_name("SENTENCE")
        ->allow_extra_args(false);  // so that FILE may stand behind it
    build
        ->add_option("-d,--dic", options.lexicon,
                     "Dictionary of the lexicon, for --like and --must-win (default: SysDic beside the connection "
                     "table). May be repeated")
        ->type_name("DIC")
        ->allow_extra_args(false);  // so that FILE may stand behind it
    addEncodingOption(*build, options.encoding);
    build->callback([&] { action = buildDictionary; });

    CLI::App* const dump = app.add_subcommand("dump", "Writes a dictionary's words as source text");
    dump->add_option("DIC", options.input, "Dictionary")->required()->type_name("");
    addEncodingOption(*dump, options.encoding);
    dump->callback([&] { action = dumpDictionary; });

    CLI::App* const check = app.add_subcommand("check", "Reads a whole dictionary and reports each fault");
    check->add_option("DIC", options.input, "Dictionary")->required()->type_name("");
    check->add_option("-c,--conn", options.connTable, "Connection table that it is used with: checked too")
        ->type_name("FILE");
    check->callback([&] { action = checkDictionary; });

    CLI::App* const index = app.add_subcommand("index", "Writes the search indexes that start an analysis at once");
    index->add_option("DIC", options.lexicon, "Dictionaries (default: none, the connection table alone)")
        ->type_name("");
    index->add_option("-c,--conn", options.connTable, "Connection table that they are used with")
        ->required()
        ->type_name("FILE");
    index->callback([&] { action = indexDictionaries; });

    return parseAndRun(app, argc, argv, [&] { return action(options); });
}

}  // namespace tool
