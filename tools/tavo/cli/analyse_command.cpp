// tavo [FILE...]: analyses text line by line.
#include "cli/command_line.hpp"
#include "cli/commands.hpp"
#include "cli/comment_file.hpp"
#include "cli/file_io.hpp"
#include "cli/lexicon.hpp"
#include "cli/line_reader.hpp"
#include "cli/pipeline.hpp"
#include "lexicon/encoding_guess.hpp"

#include "config/init_file.hpp"
#include "engine/nbest/all_paths.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <limits>
#include <thread>

#include <unistd.h>

namespace tool {

namespace {

enum class Flush { Auto, Line };

struct AnalyseOptions {
    std::vector<std::string> files;
    LexiconOptions lexicon;
    OutputOptions output;
    bool tagged = false;
    std::string commentRules;
    Flush flush = Flush::Auto;
    unsigned threads = 1;
};

constexpr char kDescription[] = "Analyses Japanese text: splits it into words and tells what they are.";

constexpr char kExamples[] =
    "Examples:\n"
    "  echo すもももももももものうち | tavo     each word with part of speech and reading\n"
    "  tavo -O wakati novel.txt               words separated by blanks, for search and statistics\n"
    "  tavo -O mecab < novel.txt              MeCab's format: word, tab, fields as CSV\n"
    "  tavo -O json novel.txt | jq .          one object a line, with positions\n"
    "  tavo -F '%w[%k] ' --eos '\\n' a.txt     your own format: each word and its reading\n"
    "  tavo -n 5 -O json a.txt                the five best analyses of each line\n"
    "  tavo -d my.dic a.txt                   with a dictionary of your own\n"
    "  tavo -O tagged a.txt > b.txt           tagged text to correct by hand, and\n"
    "  tavo --tagged b.txt                    to analyse again with the corrections\n"
    "  tavo -j 4 -O wakati big.txt            on four threads\n"
    "\n"
    "Other commands (each has --help):\n"
    "  tavo dic build words.txt -c ConnTable -o my.dic   compile a dictionary\n"
    "  tavo dic dump my.dic                              its words as source text\n"
    "  tavo dic check my.dic                             look for damage\n"
    "  tavo lookup すもも                                the entries of a word\n"
    "  tavo reading すもも                               the words that read so\n"
    "  tavo learn cooc text.txt -o my.dic                words that tell homographs apart\n"
    "  tavo import mecab DIR -o OUT                      make a lexicon from a MeCab-format one\n"
    "\n"
    "The lexicon is looked for in the folder TAVO_PATH, beside the program, and in the\n"
    "installed data folder. Whatever a line holds comes back unchanged: characters\n"
    "that dictionaries cannot hold and bytes that are not UTF-8 included; only a byte\n"
    "order mark at the start of a file is no text. A file in another encoding is named.\n"
    "Exit status: 0 all went well, 1 something about the data failed, 2 wrong usage.";

void addOutputOptions(CLI::App& app, AnalyseOptions& options) {
    OutputOptions& output = options.output;
    addChoice(app, "-O,--output", output.kind,
              {{"tavo", OutputKind::Tavo},
               {"wakati", OutputKind::Wakati},
               {"mecab", OutputKind::Mecab},
               {"json", OutputKind::Json},
               {"tagged", OutputKind::Tagged}},
              "tavo (default), wakati, mecab, json or tagged (input for --tagged)");
    app.add_option("-F,--format", output.format,
                   "Format of each word: %w word, %h part of speech, %k reading, %p pronunciation, %s base form, "
                   "%u whether it is unknown, %c cost, %10w padded to 10 columns, \\n \\t \\\\ \\%")
        ->type_name("FORMAT");
    app.add_option("--eos", output.eos,
                   "Text behind each sentence (formats tavo and mecab; default EOS, none with -F); knows \\n and \\t")
        ->type_name("TEXT");
    app.add_option("--null", output.nullString, "Text for an empty value (formats tavo and mecab)")->type_name("TEXT");
    app.add_flag("--classes", output.showClasses,
                 "Parts of speech as the dictionaries name them, with cost class and features (A:B:Undef-2); formats "
                 "tavo and json");
    app.add_option("-n,--nbest", output.nBest,
                   "The N best analyses of each line, an empty line behind them; json tells rank and costs instead")
        ->check(CLI::Range(1, std::numeric_limits<int>::max()).description(""))
        ->type_name("N");
    addEncodingOption(app, output.encoding);
    app.add_flag("--tagged", options.tagged, "The input is tagged text: markup fixes words, borders, annotations");
    app.add_option("--comments", options.commentRules, "Rules for spans of the text that are no language")
        ->type_name("RULES");
    addChoice(app, "--flush", options.flush, {{"auto", Flush::Auto}, {"line", Flush::Line}},
              "line: write each line's result at once, for use between programs");
}

void check(OutputOptions& output) {
    bool const styled = output.kind == OutputKind::Tavo || output.kind == OutputKind::Mecab;
    if (output.format && output.kind != OutputKind::Tavo)
        throw ToolError(ExitStatus::Usage, "-F is a format of its own: leave -O out");
    if (!styled && (output.eos || output.nullString))
        throw ToolError(ExitStatus::Usage, "--eos and --null go with the formats tavo and mecab only");
    if (output.showClasses && output.kind != OutputKind::Tavo && output.kind != OutputKind::Json)
        throw ToolError(ExitStatus::Usage, "--classes goes with the formats tavo and json only");
    if (output.eos) output.eos = TAVO::decodeEscapes(*output.eos);
    if (output.nullString) output.nullString = TAVO::decodeEscapes(*output.nullString);
}

/// True when somebody may be waiting for the result of each line.
bool isInteractive(AnalyseOptions const& options) {
    bool const readsTerminal =
        std::find(options.files.begin(), options.files.end(), "-") != options.files.end() && isatty(STDIN_FILENO) == 1;
    return readsTerminal || isatty(STDOUT_FILENO) == 1;
}

std::string shownName(std::string const& file) { return file == "-" ? "standard input" : file; }

void warnOfLongLines(InputReport const& report) {
    if (report.longLines == 0) return;
    complain("warning: " + std::to_string(report.longLines) + " lines are longer than " +
             std::to_string(TAVO::kMaxNBestBytes) +
             " bytes (in Shift_JIS) and have their best analysis only; the first in " +
             shownName(report.firstLongFile) + ", line " + std::to_string(report.firstLongLine));
}

void warnOfInvalidBytes(InputReport const& report) {
    if (report.invalidBytes == 0) return;
    complain("warning: " + std::to_string(report.invalidBytes) +
             " bytes are not UTF-8 and came back unchanged; the first in " + shownName(report.firstInvalidFile) +
             ", line " + std::to_string(report.firstInvalidLine));
}

/// False when a file seems to be in another encoding.
bool encodingHolds(InputReport const& report, Encoding said) {
    for (InputReport::OtherEncoding const& other : report.otherEncodings)
        complain(shownName(other.file) + ": " + TAVO::words::wrongEncoding(other.encoding, said));
    return report.otherEncodings.empty();
}

ExitStatus analyse(AnalyseOptions& options) {
    check(options.output);
    if (options.files.empty()) options.files.emplace_back("-");
    if (options.threads == 0) options.threads = std::max(1U, std::thread::hardware_concurrency());
    if (options.threads > 1) TAVO::Tavo::readyForThread();

    TAVO::Tavo prototype;
    openLexicon(prototype, options.lexicon);
    // The N best are those of a line, not of its sentences.
    if (options.output.nBest != 0) prototype.clearDelimiterString();
    if (options.tagged) prototype.setTaggedInputMode(1);
    if (!options.commentRules.empty()) useCommentRules(prototype, options.commentRules, options.output.encoding);

    LineReader reader(options.files, options.flush == Flush::Line || isInteractive(options), options.output.encoding);
    InputReport const report = runPipeline(reader, prototype, options.output, options.threads, writeStandardOutput);
    warnOfRefusedIndexes();
    warnOfInvalidBytes(report);
    warnOfLongLines(report);
    bool const sound = encodingHolds(report, options.output.encoding) && !reader.failed();
    return sound ? ExitStatus::Ok : ExitStatus::Data;
}

}  // namespace

ExitStatus analyseCommand(int argc, char** argv) {
    AnalyseOptions options;
    CLI::App app(kDescription, "tavo");
    app.footer(kExamples);
    app.set_version_flag("--version", "tavo " TAVO_VERSION);
    app.add_option("FILE", options.files, "Text, one line a text; standard input without, or for -")->type_name("");
    addOutputOptions(app, options);
    addLexiconOptions(app, options.lexicon);
    app.add_option("-j,--jobs", options.threads, "Number of threads; 0: one per processor")->type_name("N");
    return parseAndRun(app, argc, argv, [&] { return analyse(options); });
}

}  // namespace tool
