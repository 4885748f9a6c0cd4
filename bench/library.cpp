// Compares the two libraries on one text in memory, a line at a time, on one
// thread: analyze, getResult and reading each surface, with the text in Shift_JIS,
// against parseToNode and reading each surface, with the text in the encoding of
// MeCab's dictionary, UTF-8.
//
//     tavo_bench_library TEXT [ROUNDS [MECAB-DICTIONARY]]
//
// Lines that code page 932 cannot hold are left out. The two take turns which
// goes first, and each round gives a ratio of processor times.
#include "support/encoding.hpp"

#include <tavo/tavo.hpp>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <mecab.h>
#include <time.h>

namespace {

struct Lines {
    std::vector<std::string> utf8, sjis;
    std::size_t utf8Bytes = 0;
};

Lines readLines(char const* path) {
    Lines lines;
    std::ifstream in(path);
    if (!in) throw std::runtime_error(std::string("cannot read ") + path);
    for (std::string line; std::getline(in, line);) {
        try {
            lines.sjis.push_back(TAVO::test::toSjis(line));
        } catch (std::runtime_error const&) {
            continue;
        }
        lines.utf8Bytes += line.size() + 1;
        lines.utf8.push_back(std::move(line));
    }
    if (lines.utf8.empty()) throw std::runtime_error(std::string("no text in ") + path);
    return lines;
}

/// What reading the surfaces gives, so that nothing of it is left out.
struct Words {
    std::size_t count = 0;
    std::size_t bytes = 0;

    void read(char const* surface, std::size_t length) {
        ++count;
        for (std::size_t i = 0; i < length; ++i) bytes += surface[i] != '\0';
    }
};

class TavoSide {
public:
    TavoSide() { tavo_.setInitFilePath(TAVO_BENCH_LEXICON "/tavo.init"); }

    Words run(Lines const& lines) {
        Words words;
        for (std::string const& line : lines.sjis) {
            tavo_.analyze(line.data(), static_cast<int>(line.size()));
            auto const sentences = static_cast<int>(tavo_.getSentenceCount());
            for (int sentence = 0; sentence < sentences; ++sentence) {
                tavo_.getResult(morphemes_, sentence);
                for (TAVO::Mrph const& morpheme : morphemes_) {
                    unsigned int length = 0;
                    char const* const form = morpheme.getFormWithoutNullEnd(length);
                    words.read(form, length);
                }
            }
        }
        return words;
    }

private:
    TAVO::Tavo tavo_;
    std::vector<TAVO::Mrph> morphemes_;
};

class MecabSide {
public:
    explicit MecabSide(std::string const& dictionary) : tagger_(MeCab::createTagger(("-d " + dictionary).c_str())) {
        if (!tagger_) throw std::runtime_error(MeCab::getLastError());
    }

    Words run(Lines const& lines) {
        Words words;
        for (std::string const& line : lines.utf8) {
            for (MeCab::Node const* node = tagger_->parseToNode(line.data(), line.size()); node != nullptr;
                 node = node->next) {
                if (node->stat != MECAB_BOS_NODE && node->stat != MECAB_EOS_NODE)
                    words.read(node->surface, node->length);
            }
        }
        return words;
    }

private:
    std::unique_ptr<MeCab::Tagger> tagger_;
};

double processorSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

template <class Side>
double timed(Side& side, Lines const& lines, Words& words) {
    double const start = processorSeconds();
    words = side.run(lines);
    return processorSeconds() - start;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void compare(char const* text, int rounds, std::string const& dictionary) {
    Lines const lines = readLines(text);
    TavoSide tavo;
    MecabSide mecab(dictionary);
    Words tavoWords, mecabWords;
    timed(tavo, lines, tavoWords);
    timed(mecab, lines, mecabWords);
    std::vector<double> tavoTimes, mecabTimes, ratios;
    for (int round = 0; round < rounds; ++round) {
        double first = 0;
        if (round % 2 == 0) first = timed(tavo, lines, tavoWords);
        mecabTimes.push_back(timed(mecab, lines, mecabWords));
        tavoTimes.push_back(round % 2 == 0 ? first : timed(tavo, lines, tavoWords));
        ratios.push_back(mecabTimes.back() / tavoTimes.back());
    }
    auto const [least, most] = std::minmax_element(ratios.begin(), ratios.end());
    double const megabytes = static_cast<double>(lines.utf8Bytes) / 1e6;
    std::printf("%s, %zu bytes in %zu lines, %d rounds\n", text, lines.utf8Bytes, lines.utf8.size(), rounds);
    std::printf("  tavo   %.3f s  %5.1f MB/s  %zu words\n", median(tavoTimes), megabytes / median(tavoTimes),
                tavoWords.count);
    std::printf("  mecab  %.3f s  %5.1f MB/s  %zu words\n", median(mecabTimes), megabytes / median(mecabTimes),
                mecabWords.count);
    std::printf("  mecab / tavo: %.2f [%.2f .. %.2f]\n", median(ratios), *least, *most);
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int kRounds = 11;
    int const rounds = argc > 2 ? std::atoi(argv[2]) : kRounds;
    if (argc < 2 || rounds < 1) {
        std::fputs("usage: tavo_bench_library TEXT [ROUNDS [MECAB-DICTIONARY]]\n", stderr);
        return 2;
    }
    try {
        compare(argv[1], rounds, argc > 3 ? argv[3] : "/var/lib/mecab/dic/ipadic-utf8");
    } catch (std::exception const& error) {
        std::fprintf(stderr, "tavo_bench_library: %s\n", error.what());
        return 1;
    }
    return 0;
}
