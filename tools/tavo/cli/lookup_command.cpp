// tavo lookup WORD, tavo reading READING: entries of the dictionaries in use.
#include "cli/command_line.hpp"
#include "cli/commands.hpp"
#include "cli/file_io.hpp"
#include "cli/lexicon.hpp"
#include "cli/utf8.hpp"
#include "output/out_buffer.hpp"

#include "dic/pools.hpp"
#include "dic/record_source.hpp"
#include "result/mrph_access.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>

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

/// @p utf8 with the kana of each kind as the other one: @p from is the first character of the kind that changes.
std::string withKana(std::string_view utf8, char32_t from, char32_t to) {
    constexpr char32_t kCount = 0x56;  // small a to small ke
    std::string result;
    while (!utf8.empty()) {
        Utf8Char const c = decodeUtf8(utf8);
        bool const changes = c.valid && c.character >= from && c.character < from + kCount;
        char bytes[4];
        result += changes ? std::string_view(bytes, putUtf8(bytes, c.character - from + to)) : utf8.substr(0, c.bytes);
        utf8.remove_prefix(c.bytes);
    }
    return result;
}

/// @p reading in Shift_JIS as given, in katakana, in hiragana: lexicons write one or the other.
std::vector<std::string> spellings(std::string const& reading, Encoding encoding) {
    constexpr char32_t kHiragana = 0x3041, kKatakana = 0x30A1;
    std::string const given = encoding == Encoding::Sjis ? sjisToUtf8(reading) : reading;
    std::vector<std::string> found;
    for (std::string const& utf8 :
         {given, withKana(given, kHiragana, kKatakana), withKana(given, kKatakana, kHiragana)}) {
        std::string sjis;
        bool const known = !appendUtf8AsSjis(sjis, utf8);
        if (known && std::find(found.begin(), found.end(), sjis) == found.end()) found.push_back(sjis);
    }
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
