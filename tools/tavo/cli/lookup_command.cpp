// tavo lookup WORD, tavo reading READING: entries of the dictionaries in use.
#include "cli/command_line.hpp"
#include "cli/commands.hpp"
#include "cli/file_io.hpp"
#include "cli/lexicon.hpp"
#include "output/out_buffer.hpp"

#include "dic/pools.hpp"
#include "dic/record_source.hpp"
#include "result/mrph_access.hpp"
#include "text/characters.hpp"

#include <CLI/CLI.hpp>

namespace tool {

namespace {

constexpr char kLookupFooter[] =
    "Each entry is written as the source line that it was made from:\n"
    "word, part of speech, cost, reading, base form and more. A reading is taken in\n"
    "hiragana and katakana alike. Exit status 1 when there is none.";

struct LookupOptions {
    std::string text;
    LexiconOptions lexicon;
    Encoding encoding = Encoding::Utf8;
};

/// Entries of one dictionary for each of @p texts (Shift_JIS) are collected by find(analyser, index, dic, text, add),
/// which calls add(form, record) for each. @p missing tells that there are none.
template <class Find>
ExitStatus lookUp(LookupOptions const& options, std::vector<std::string> const& texts, std::string const& missing,
                  Find const& find) {
    TAVO::Tavo analyser;
    openLexicon(analyser, options.lexicon);
    OutBuffer out;
    for (int index = 0; index < analyser.getDicCount(); ++index) {
        TAVO::Dic const& dic = *TAVO::sharedPools().DIC_POOL.at(analyser.getDicPath(index));
        for (std::string const& text : texts)
            find(analyser, index, dic, text, [&](std::string_view form, unsigned char const* record) {
                out.append(fromSjis(TAVO::formatSourceLine(form, TAVO::MrphDic(record), dic), options.encoding));
                out.append('\n');
            });
    }
    if (out.size() == 0) throw ToolError(ExitStatus::Data, missing);
    writeStandardOutput(out.view());
    return ExitStatus::Ok;
}

std::vector<std::string> spellings(std::string const& reading, Encoding encoding) {
    std::vector<std::string> found = TAVO::readingSpellings(encoding == Encoding::Sjis ? sjisToUtf8(reading) : reading);
    if (found.empty()) found.push_back(argumentToSjis(reading, encoding, "READING"));
    return found;
}

ExitStatus run(int argc, char** argv, CLI::App& app, LookupOptions& options, char const* argument,
               std::function<ExitStatus()> const& action) {
    app.footer(kLookupFooter);
    app.add_option(argument, options.text)->required()->type_name("");
    addLexiconOptions(app, options.lexicon);
    addEncodingOption(app, options.encoding);
    return parseAndRun(app, argc, argv, action);
}

}  // namespace

ExitStatus lookupCommand(int argc, char** argv) {
    LookupOptions options;
    CLI::App app("Shows the dictionary entries of a word.", "tavo lookup");
    auto const find = [](TAVO::Tavo const&, int, TAVO::Dic const& dic, std::string const& word, auto const& add) {
        TAVO::DicTrie const* const trie = dic.trie();
        if (trie == nullptr || word.empty()) return;
        for (auto chain = trie->exactMatch(TAVO::asBytes(word.data()), word.size()); chain; chain = chain.next())
            add(word, chain.head());
    };
    return run(argc, argv, app, options, "WORD", [&] {
        return lookUp(options, {argumentToSjis(options.text, options.encoding, "WORD")},
                      "no dictionary has the word " + options.text, find);
    });
}

ExitStatus readingCommand(int argc, char** argv) {
    LookupOptions options;
    CLI::App app("Shows the dictionary entries that have a reading.", "tavo reading");
    auto const find = [](TAVO::Tavo& analyser, int index, TAVO::Dic const&, std::string const& reading,
                         auto const& add) {
        std::vector<TAVO::Mrph> words;
        analyser.getByRead(words, reading.c_str(), index);
        for (TAVO::Mrph const& word : words) add(TAVO::MrphAccess::form(word), TAVO::MrphAccess::record(word));
    };
    return run(argc, argv, app, options, "READING", [&] {
        return lookUp(options, spellings(options.text, options.encoding),
                      "no dictionary has a word that reads " + options.text, find);
    });
}

}  // namespace tool
