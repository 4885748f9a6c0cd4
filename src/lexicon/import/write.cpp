#include "lexicon/import/write.hpp"

#include "lexicon/new_file.hpp"

#include <tavo/lexicon_maker.hpp>

#include "base/sjis.hpp"
#include "base/utf8.hpp"
#include "config/pos_name.hpp"
#include "dic/conn_table_writer.hpp"
#include "dic/dic_compiler.hpp"

#include <algorithm>
#include <numeric>
#include <set>
#include <sstream>
#include <tuple>

namespace TAVO::importer {
namespace {

std::vector<std::string_view> characters(std::string_view text) {
    std::vector<std::string_view> result;
    for (std::size_t pos = 0; pos < text.size(); pos += result.back().size())
        result.push_back(text.substr(pos, charWidth(text, pos)));
    return result;
}

std::string group(std::vector<std::string_view> const& reading, std::size_t readFrom, std::size_t readTo,
                  std::vector<std::string_view> const& pron, std::size_t pronFrom, std::size_t pronTo) {
    std::string text = "(";
    for (; readFrom < readTo; ++readFrom) text += reading[readFrom];
    text += '|';
    for (; pronFrom < pronTo; ++pronFrom) text += pron[pronFrom];
    return text + ")";
}

/// The first field of a source line, as written.
std::string_view formOf(std::string_view line) {
    std::size_t pos = 0;
    while (pos < line.size() && line[pos] != ',') {
        if (line[pos] == '\\') ++pos;
        if (pos < line.size()) pos += charWidth(line, pos);
    }
    return line.substr(0, pos);
}

}  // namespace

std::string joinReadPron(std::string_view reading, std::string_view pron) {
    if (pron.empty()) pron = reading;
    constexpr std::string_view kMarks = "(|)/-";
    if (findMark(reading, kMarks) != std::string_view::npos || findMark(pron, kMarks) != std::string_view::npos)
        return {};
    auto const r = characters(reading), p = characters(pron);
    std::string result;
    if (r.size() == p.size()) {
        for (std::size_t i = 0; i < r.size();) {
            std::size_t const from = i;
            while (i < r.size() && r[i] != p[i]) ++i;
            if (i > from) result += group(r, from, i, p, from, i);
            for (; i < r.size() && r[i] == p[i]; ++i) result += r[i];
        }
        return result;
    }
    std::size_t const shorter = std::min(r.size(), p.size());
    std::size_t head = 0, tail = 0;
    while (head < shorter && r[head] == p[head]) ++head;
    while (tail < shorter - head && r[r.size() - 1 - tail] == p[p.size() - 1 - tail]) ++tail;
    for (std::size_t i = 0; i < head; ++i) result += r[i];
    result += group(r, head, r.size() - tail, p, head, p.size() - tail);
    for (std::size_t i = r.size() - tail; i < r.size(); ++i) result += r[i];
    return result;
}

std::string escapeField(std::string_view text) {
    constexpr std::string_view kSpecial = "\\,-/";
    std::string result;
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t const width = charWidth(text, pos);
        if (width == 1 && kSpecial.find(text[pos]) != std::string_view::npos) result += '\\';
        result += text.substr(pos, width);
        pos += width;
    }
    return result;
}

std::string sourceLine(std::string_view form, std::string_view name, unsigned cost, std::string_view reading,
                       std::string_view pron, std::string_view base) {
    std::string line = escapeField(form);
    // A line that begins so would be a comment.
    if (line[0] == ';' || line[0] == '#') line.insert(0, 1, '\\');
    line += ',' + escapeField(name);
    line += ',' + std::to_string(cost);
    std::string const readPron = joinReadPron(reading, pron);
    if (!readPron.empty() || !base.empty()) line += ',' + escapeField(readPron);
    if (!base.empty()) line += ',' + escapeField(base);
    return line;
}

std::vector<std::string> sourceLines(Lexicon& lexicon, Tables const& tables) {
    std::vector<std::uint32_t> order(lexicon.words.size());
    std::iota(order.begin(), order.end(), 0U);
    auto const key = [&](std::uint32_t i) {
        return std::tuple(lexicon.words[i].form, tables.idOfWord[i], tables.costOfWord[i], lexicon.words[i].cost, i);
    };
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) { return key(a) < key(b); });

    std::vector<std::string> lines;
    using Visible = std::tuple<std::uint16_t, std::string_view, std::string_view, std::string_view>;
    std::set<Visible> seen;
    std::string_view form;
    for (std::uint32_t const i : order) {
        Word const& word = lexicon.words[i];
        if (word.form != form) seen.clear();
        form = word.form;
        if (seen.emplace(tables.idOfWord[i], word.base, word.reading, word.pron).second)
            lines.push_back(sourceLine(word.form, tables.names[tables.idOfWord[i] - 1U], tables.costOfWord[i],
                                       word.reading, word.pron, word.base));
        else
            lexicon.leftOut.duplicates.add(sjisToUtf8(word.form));
    }
    return lines;
}

void writeFile(std::filesystem::path const& path, std::string_view text) {
    try {
        words::NewFile file(path.string());
        file.write(text);
        file.commit();
    } catch (lexicon_error const&) {
        throw lexicon_error(path.string(), 0, "cannot be written");
    }
}

std::string connTableBytes(Tables const& tables) {
    ConnTableContent content;
    content.names = tables.names;
    content.rowIndex = tables.rowOf;
    content.columnIndex = tables.columnOf;
    content.rows = static_cast<std::uint16_t>(tables.rows);
    content.cols = static_cast<std::uint16_t>(tables.columns);
    content.matrix = tables.matrix;
    return serializeConnTable(content);
}

std::vector<DictionaryPart> compileDictionaries(std::vector<std::string> const& names,
                                                std::vector<std::string> const& lines) {
    // A part that outgrows the file format is halved.
    std::vector<DictionaryPart> done, open{{0, lines.size(), {}}};
    while (!open.empty()) {
        DictionaryPart part = std::move(open.back());
        open.pop_back();
        DicCompiler compiler(names);
        std::string error;
        for (std::size_t i = part.first; i < part.last; ++i)
            if (!compiler.add(lines[i], error)) throw lexicon_error("SysDic.txt", i + 1, error);
        std::ostringstream out;
        if (compiler.compile(out, false)) {
            part.bytes = std::move(out).str();
            done.push_back(std::move(part));
            continue;
        }
        std::size_t const middle = middleForm(lines, part.first, part.last);
        if (middle == part.first) throw lexicon_error("SysDic", 0, compiler.error());
        open.push_back({middle, part.last, {}});
        open.push_back({part.first, middle, {}});
    }
    return done;
}

std::size_t middleForm(std::vector<std::string> const& lines, std::size_t first, std::size_t last) {
    std::size_t line = first + (last - first) / 2;
    while (line > first && line < last && formOf(lines[line - 1]) == formOf(lines[line])) --line;
    return line;
}

std::string dictionaryName(std::size_t part) { return part == 0 ? "SysDic" : "SysDic" + std::to_string(part + 1); }

std::string initFileText(std::filesystem::path const& data, std::size_t parts, bool withSource) {
    std::string const folder = data.string() + "/";
    std::string text =
        "; Settings of an imported lexicon. The paths are absolute; to move the folder, change\n"
        "; them here, or take out the lines Dic and ConnTable and set TAVO_PATH to the folder.\n";
    for (std::size_t part = 0; part < parts; ++part) {
        std::string const name = dictionaryName(part);
        text += "Dic=" + folder + name;
        if (withSource) text += "," + folder + name + ".txt";
        text += "\n";
    }
    return text + "ReduceRule=" + folder + "reduce.rules\nNumberPartOfSP=" + folder +
           "number.list\nEndFormRule=" + folder + "end.rules\nConnTable=" + folder + "ConnTable\n";
}

std::string numberListText(std::vector<std::string> const& names) {
    std::set<std::string> patterns;
    PosName parts;
    for (std::string const& name : names) {
        splitPosName(name, parts);
        if (parts.hasFeature("Number")) patterns.insert(std::string(parts.head) + ":Number");
    }
    std::string text = "; Parts of speech of numbers: a head, and the features that it needs.\n";
    for (std::string const& pattern : patterns) text += pattern + "\n";
    return text;
}

std::string reduceRuleText(std::vector<std::string> const& names, bool shortUnits) {
    // Comma and full stop, of one byte and of two.
    std::string text = shortUnits
                           ? "; Digits are one number; its commas and points stay apart, as in all short units.\n"
                             "Number =\n"
                           : "; Digits are one number, with a comma or point between them too.\n"
                             "Number = : inner=,.\x81\x43\x81\x44\n";
    PosName parts;
    auto const letters = std::find_if(names.begin(), names.end(), [&](std::string const& name) {
        splitPosName(name, parts);
        return parts.hasFeature("Undef") && parts.hasFeature("Alphabet") && !parts.hasFeature("Inside") &&
               findMark(name, "-") == std::string::npos;
    });
    if (shortUnits && letters != names.end())
        text += "; Letters are words here; neighbours are one unknown word.\nAlphabet = " + *letters + "\n";
    return text +
           "; An unknown word comes as its first character and others with the feature Inside.\n"
           "Undef = : with=Inside\n";
}

}  // namespace TAVO::importer
