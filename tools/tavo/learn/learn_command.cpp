// tavo learn: what a text tells about the words of a lexicon.
#include "cli/command_line.hpp"
#include "cli/commands.hpp"
#include "cli/file_io.hpp"
#include "cli/lexicon.hpp"

#include <tavo/lexicon_maker.hpp>

#include <CLI/CLI.hpp>

#include <filesystem>

namespace tool {

namespace {

constexpr char kLearnFooter[] =
    "Examples:\n"
    "  tavo learn cooc text.txt -o my.dic    also writes my.rules and my.init\n"
    "  tavo -i my.init FILE                  analyses with what was learnt\n"
    "  tavo learn cooc --tagged corrected.txt -o my.dic\n"
    "The text is UTF-8, a text a line. What is counted: docs/cooccurrence.md.";

ExitStatus learn(TAVO::CooccurrenceOptions options, std::string const& corpus) {
    // The program looks beside itself, as for an analysis.
    if (options.lexicon.empty())
        for (std::filesystem::path const& folder : lexiconFolders())
            if (options.lexicon.empty() && std::filesystem::exists(folder / "SysDic"))
                options.lexicon = folder.string();
    options.name = corpus == "-" ? "standard input" : corpus;
    TAVO::CooccurrenceReport const report = TAVO::learnCooccurrence(readFile(corpus), options);
    auto const line = [](char const* name, std::size_t count) {
        return std::string(name) + ": " + std::to_string(count) + "\n";
    };
    writeStandardOutput(line("sentences", report.sentences) + line("evidence", report.evidence) +
                        line("homographs", report.homographs) + line("words", report.words));
    return ExitStatus::Ok;
}

}  // namespace

ExitStatus learnCommand(int argc, char** argv) {
    TAVO::CooccurrenceOptions options;
    std::string corpus;
    CLI::App app("Learns from text what helps to analyse more of it.", "tavo learn");
    app.require_subcommand(1);
    CLI::App* const cooc = app.add_subcommand("cooc", "Which words tell homographs apart");
    cooc->footer(kLearnFooter);
    cooc->add_option("CORPUS", corpus, "Text, - for standard input")->required()->type_name("");
    cooc->add_option("-o,--output", options.output, "Dictionary to write")->required()->type_name("FILE");
    cooc->add_option("-i,--init", options.lexicon, "Lexicon: its folder or init file (default: the first found)")
        ->type_name("FILE");
    cooc->add_flag("--tagged", options.tagged, "CORPUS is tagged text, in which homographs are decided");
    cooc->add_option("--margin", options.margin, "Connection cost by which an analysis may be dearer than the best")
        ->check(CLI::Range(0, 65535).description(""))
        ->capture_default_str();
    cooc->add_option("--window", options.window, "Distance, in characters, up to which words count")
        ->check(CLI::Range(1, 65535).description(""))
        ->capture_default_str();
    cooc->add_option("--count", options.leastCount, "How often a word has to occur with a homograph")
        ->check(CLI::Range(1, 1000000).description(""))
        ->capture_default_str();
    cooc->add_option("--ratio", options.leastRatio, "How much more often than with the others")
        ->check(CLI::Range(1.0, 1e6).description(""))
        ->capture_default_str();
    return parseAndRun(app, argc, argv, [&] { return learn(options, corpus); });
}

}  // namespace tool
