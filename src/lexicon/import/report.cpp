#include "lexicon/import/report.hpp"

#include "lexicon/import/write.hpp"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <tuple>
#include <utility>

namespace TAVO::importer {
namespace {

struct Span {
    std::uint32_t start, end;
    std::string_view head;

    auto place() const noexcept { return std::tuple(start, end); }
};

std::vector<Span> spans(Lexicon const& lexicon, Lattice const& lattice) {
    std::vector<Span> result;
    for (std::uint32_t const i : lattice.path()) {
        Node const& node = lattice.nodes[i];
        Word const& word = lexicon.words[node.word];
        bool const inside = word.unknown && word.col >= lexicon.sourceCols;
        std::string_view const name = lexicon.names.at(word.name);
        if (inside && !result.empty())
            result.back().end = node.end;
        else
            result.push_back({node.start, node.end, name.substr(0, name.find(':'))});
    }
    return result;
}

double ratio(std::uint64_t part, std::uint64_t whole) {
    return whole == 0 ? 0 : static_cast<double>(part) / static_cast<double>(whole);
}

std::string decimal(double value, int digits) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", digits, value);
    return buffer;
}

/// Counts the edges of the best path whose shifted cost a byte can't hold.
void countClamped(Lexicon const& lexicon, Shifts const& shifts, double step, Lattice const& lattice,
                  Agreement& agreement) {
    auto const shift = [&](std::uint32_t word) {
        return shifts.row[word == Lattice::kNone ? 0 : lexicon.rowBase[lexicon.words[word].row]];
    };
    std::uint32_t left = Lattice::kNone;
    auto const visit = [&](std::uint32_t right) {
        bool const atEnd = right == Lattice::kNone;
        double const own = atEnd ? shifts.end : shift(right);
        double const bytes = atEnd ? 0 : static_cast<double>(lexicon.words[right].form.size());
        double const cost =
            static_cast<double>(ExactEdge{lexicon}(left, right)) + shift(left) - own + shifts.perByte * bytes;
        ++agreement.edges;
        agreement.below += cost < -step / 2 ? 1 : 0;
        agreement.above += cost > (Tables::kHighest + 0.5) * step ? 1 : 0;
        left = right;
    };
    for (std::uint32_t const i : lattice.path()) visit(lattice.nodes[i].word);
    visit(Lattice::kNone);
}

}  // namespace

double Agreement::f1() const noexcept { return ratio(2 * sameSpan, exactWords + tableWords); }
double Agreement::f1WithHead() const noexcept { return ratio(2 * sameHead, exactWords + tableWords); }

Agreement measureAgreement(Lexicon const& lexicon, FormIndex const& index, Shifts const& shifts, Tables const& tables,
                           double step, std::vector<std::string> const& sentences) {
    Agreement agreement;
    Lattice lattice;
    for (std::string const& text : sentences) {
        fillLattice(lattice, index, lexicon, text);
        searchForward(lattice, text.size(), ExactEdge{lexicon});
        if (lattice.best >= Lattice::kNoPath) continue;
        std::vector<Span> const exact = spans(lexicon, lattice);
        countClamped(lexicon, shifts, step, lattice, agreement);
        searchForward(lattice, text.size(), TableEdge{tables});
        std::vector<Span> const ours = spans(lexicon, lattice);
        agreement.exactWords += exact.size();
        agreement.tableWords += ours.size();
        for (std::size_t i = 0, j = 0; i < exact.size() && j < ours.size();) {
            if (exact[i].place() == ours[j].place()) {
                ++agreement.sameSpan;
                agreement.sameHead += exact[i].head == ours[j].head ? 1 : 0;
            }
            bool const behind = exact[i].start < ours[j].start;
            bool const ahead = exact[i].start > ours[j].start;
            i += ahead ? 0 : 1;
            j += behind ? 0 : 1;
        }
    }
    return agreement;
}

std::string reportText(Lexicon const& lexicon, Tables const& tables, Agreement const& agreement,
                       ReportFacts const& facts) {
    std::string text;
    auto const line = [&](std::string_view name, std::string const& value) {
        text.append(name).append(": ").append(value).append("\n");
    };
    auto const number = [](std::uint64_t value) { return std::to_string(value); };
    auto const loss = [&](std::string_view name, Loss const& lost) {
        line(name, number(lost.count));
        std::string examples;
        for (std::string const& example : lost.examples) examples += (examples.empty() ? "" : " ") + example;
        if (lost.count > 0) line("  such as", examples);
    };
    LeftOut const& leftOut = lexicon.leftOut;
    std::uint64_t const lost = leftOut.noForm.count + leftOut.noCode.count + leftOut.duplicates.count;
    line("source", lexicon.folder.string() + " (" + lexicon.charset + ")");
    line("notices in COPYING", facts.notices.empty() ? "none found; name a file with --notice" : facts.notices);
    line("entries read", number(lexicon.entriesRead));
    line("entries written", number(lexicon.entriesRead - lost));
    loss("lines left out, not " + lexicon.charset + " text", leftOut.damaged);
    loss("entries left out, form not in code page 932", leftOut.noCode);
    loss("entries left out, empty form", leftOut.noForm);
    loss("entries left out, equal in all that can be seen", leftOut.duplicates);
    loss("fields left out, text not in code page 932", leftOut.lostFields);
    line("records written, with those for unknown words", number(facts.linesWritten));
    line("part-of-speech ids", number(tables.names.size()));
    line("matrix", number(tables.rows) + " rows x " + number(tables.columns) + " columns");
    line("ConnTable bytes", number(facts.tableBytes));
    for (std::size_t part = 0; part < facts.dictionaryBytes.size(); ++part)
        line(dictionaryName(part) + " bytes", number(facts.dictionaryBytes[part]));
    line("source cost per unit of a byte", decimal(facts.table.step, 1));
    line("rows and columns merged up to", decimal(facts.table.contextTolerance, 0));
    line("levels merged up to", decimal(facts.table.levelTolerance, 1));
    line("shift per byte of text, in source cost", decimal(facts.perByte, 1));
    line("rules of end forms", number(facts.endForms.rules));
    for (auto const& [name, share] :
         {std::pair<char const*, EndShare>{"conjugated words that they give the base form", facts.endForms.forms},
          {"base forms that they leave so", facts.endForms.own},
          {"readings that they give that of the base form", facts.endForms.readings},
          {"pronunciations that they give that of the base form", facts.endForms.prons}})
        line(name, number(share.right) + " of " + number(share.all) + " (" +
                       decimal(100 * ratio(share.right, share.all), 3) + " %)");
    line("measured on", facts.fittedOn + ", " + number(facts.sentences) + " sentences");
    line("edges of best analyses clamped at 0", decimal(100 * ratio(agreement.below, agreement.edges), 3) + " %");
    line("edges of best analyses clamped at 254", decimal(100 * ratio(agreement.above, agreement.edges), 3) + " %");
    line("word F1 against exact arithmetic", decimal(agreement.f1(), 5));
    line("word and top-level part of speech", decimal(agreement.f1WithHead(), 5));
    return text;
}

}  // namespace TAVO::importer
