// Speed of the pieces, each alone, over the default lexicon and the demo's
// sentences. Bytes per second count Shift_JIS bytes of text or of file.
#include "base/bytes.hpp"
#include "dic/dic_compiler.hpp"
#include "dic/dic_set.hpp"
#include "engine/lattice.hpp"
#include "support/encoding.hpp"
#include "support/temp_dir.hpp"

#include <tavo/tavo.hpp>

#include <benchmark/benchmark.h>

#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace TAVO;

std::string const kLexicon = TAVO_BENCH_LEXICON;
std::string const kDic = kLexicon + "/SysDic";
std::string const kConnTable = kLexicon + "/ConnTable";

/// The sentences that code page 932 holds, many times over, in one order.
std::vector<std::string> const& sentences() {
    static std::vector<std::string> const all = [] {
        std::vector<std::string> lines;
        std::ifstream in(TAVO_BENCH_TEXT);
        for (std::string line; std::getline(in, line);) {
            try {
                lines.push_back(test::toSjis(line));
            } catch (std::runtime_error const&) {
                // A character that code page 932 lacks.
            }
        }
        return lines;
    }();
    return all;
}

std::int64_t textBytes() {
    std::int64_t sum = 0;
    for (std::string const& s : sentences()) sum += static_cast<std::int64_t>(s.size());
    return sum;
}

void countText(benchmark::State& state) { state.SetBytesProcessed(state.iterations() * textBytes()); }

void prefixSearch(benchmark::State& state) {
    Dic const dic(true, kDic.c_str());
    std::size_t words = 0;
    for (auto _ : state) {
        for (std::string const& s : sentences()) {
            for (std::size_t p = 0; p < s.size(); ++p) {
                dic.trie()->prefixSearch(asBytes(s.data()) + p, s.size() - p, [&](std::size_t length, RecordChain) {
                    words += length;
                    return true;
                });
            }
        }
    }
    benchmark::DoNotOptimize(words);
    countText(state);
}
BENCHMARK(prefixSearch);

void buildLattice(benchmark::State& state) {
    ConnTable const table(false, kConnTable.c_str());
    DicSet dics;
    dics.addDicPath(kDic.c_str(), true, &table);
    Lattice lattice(0);
    for (auto _ : state) {
        for (std::string const& s : sentences()) {
            Sentence sentence;
            sentence.given = sentence.text = s;
            lattice.clear();
            lattice.build(sentence, &table, dics);
            benchmark::DoNotOptimize(sentence.path.first());
        }
    }
    countText(state);
}
BENCHMARK(buildLattice);

void attach(Tavo& tavo) {
    tavo.setConnTablePath(kConnTable.c_str());
    tavo.addDicPath(kDic.c_str(), true);
}

void analyzeAndGetResult(benchmark::State& state) {
    Tavo tavo;
    attach(tavo);
    std::vector<Mrph> morphemes;
    for (auto _ : state) {
        for (std::string const& s : sentences()) {
            tavo.analyze(s);
            tavo.getResult(morphemes, 0);
            benchmark::DoNotOptimize(morphemes.data());
        }
    }
    countText(state);
}
BENCHMARK(analyzeAndGetResult);

void analyzeAndOutput(benchmark::State& state) {
    Tavo tavo;
    attach(tavo);
    for (auto _ : state) {
        std::ostringstream out;
        for (std::string const& s : sentences()) {
            tavo.analyze(s);
            tavo.output(out, 0);
        }
        benchmark::DoNotOptimize(out);
    }
    countText(state);
}
BENCHMARK(analyzeAndOutput);

/// The argument's number of analyses of one text of at most 500 bytes.
void getResultNBest(benchmark::State& state) {
    Tavo tavo;
    attach(tavo);
    std::string text;
    for (std::string const& s : sentences())
        if (text.size() + s.size() <= 500) text += s;
    tavo.analyzeNBest(text);
    std::vector<std::vector<Mrph>> analyses;
    for (auto _ : state) {
        tavo.getResultNBest(analyses, 0, static_cast<int>(state.range(0)));
        benchmark::DoNotOptimize(analyses.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(analyses.size()));
}
BENCHMARK(getResultNBest)->Arg(10)->Arg(1000)->Unit(benchmark::kMillisecond);

/// From nothing to a ready analyser and back, the files in the system's cache.
void load(benchmark::State& state) {
    for (auto _ : state) {
        {
            Tavo tavo;
            attach(tavo);
            benchmark::DoNotOptimize(static_cast<bool>(tavo));
        }
        Tavo::dispose();
    }
}
BENCHMARK(load)->Unit(benchmark::kMillisecond);

/// Lines of random words of two-byte letters, in random order.
void compile(benchmark::State& state) {
    std::mt19937 random(1);
    std::vector<std::string> lines;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        std::string line;
        for (std::uint_fast32_t letters = 1 + random() % 6; letters > 0; --letters) {
            line += '\x82';
            line += static_cast<char>(0x9F + random() % 83);
        }
        lines.push_back(line + ",N," + std::to_string(random() % 256));
    }
    test::TempDir const dir;
    for (auto _ : state) {
        DicCompiler compiler({"BOS", "EOS", "UNK", "N"});
        for (std::string const& line : lines) compiler.add(line);
        std::ofstream out(dir.file("dic"), std::ios::binary);
        if (!compiler.compile(out, false)) state.SkipWithError(compiler.error().c_str());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(compile)->Arg(10'000)->Arg(400'000)->Unit(benchmark::kMillisecond);

}  // namespace
