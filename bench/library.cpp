// Compares the two libraries on one UTF-8 text in memory, on one thread: surface, part of speech and reading of each
// token read, one call a line and many lines a call, against parseToNode and reading each surface and feature.
//
//     tavo_bench_library TEXT [ROUNDS [MECAB-DICTIONARY]]
//
// The sides take turns which goes first, and each round gives ratios of processor times.
#include <tavo/tokenizer.hpp>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <mecab.h>
#include <time.h>

namespace {

struct Lines {
    std::vector<std::string> texts;
    std::vector<std::string_view> views;
    std::size_t bytes = 0;
};

Lines readLines(char const* path) {
    Lines lines;
    std::ifstream in(path);
    if (!in) throw std::runtime_error(std::string("cannot read ") + path);
    for (std::string line; std::getline(in, line);) {
        lines.bytes += line.size() + 1;
        lines.texts.push_back(std::move(line));
    }
    if (lines.texts.empty()) throw std::runtime_error(std::string("no text in ") + path);
    lines.views.assign(lines.texts.begin(), lines.texts.end());
    return lines;
}

/// What reading the tokens gives, so that nothing of it is left out.
struct Words {
    std::size_t count = 0;
    std::size_t bytes = 0;

    void read(char const* surface, std::size_t length) {
        ++count;
        bytes += length + static_cast<unsigned char>(surface[0]) + static_cast<unsigned char>(surface[length - 1]);
    }
};

class TavoSide {
public:
    explicit TavoSide(bool together) : together_(together) {}

    Words run(Lines const& lines) {
        Words words;
        if (together_) {
            for (TAVO::Tokens const& tokens : tokenizer_.tokenize(std::span(lines.views))) read(tokens, words);
        } else {
            for (std::string_view const line : lines.views) read(tokenizer_.tokenize(line), words);
        }
        return words;
    }

private:
    static void read(TAVO::Tokens const& tokens, Words& words) {
        for (TAVO::Token const& token : tokens) {
            words.read(token.surface().data(), token.surface().size());
            words.bytes += token.pos().size() + token.reading().size();
        }
    }

    bool together_;
    TAVO::Tokenizer tokenizer_{TAVO::Lexicon::open(TAVO_BENCH_LEXICON)};
};

class MecabSide {
public:
    explicit MecabSide(std::string const& dictionary) : tagger_(MeCab::createTagger(("-d " + dictionary).c_str())) {
        if (!tagger_) throw std::runtime_error(MeCab::getLastError());
    }

    Words run(Lines const& lines) {
        Words words;
        for (std::string const& line : lines.texts) {
            for (MeCab::Node const* node = tagger_->parseToNode(line.data(), line.size()); node != nullptr;
                 node = node->next) {
                if (node->stat == MECAB_BOS_NODE || node->stat == MECAB_EOS_NODE) continue;
                words.read(node->surface, node->length);
                words.bytes += static_cast<unsigned char>(*node->feature);
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
    TavoSide alone(false), together(true);
    MecabSide mecab(dictionary);
    constexpr char const* kNames[] = {"tavo, a line a call", "tavo, all lines", "mecab"};
    constexpr int kSides = 3, kMecab = 2;
    Words words[kSides];
    std::vector<double> times[kSides];
    for (int round = -1; round < rounds; ++round) {
        for (int i = 0; i < kSides; ++i) {
            int const side = (i + round + 1) % kSides;
            double const time = side == kMecab ? timed(mecab, lines, words[side])
                                : side == 0    ? timed(alone, lines, words[side])
                                               : timed(together, lines, words[side]);
            if (round >= 0) times[side].push_back(time);  // the first round warms up
        }
    }
    double const megabytes = static_cast<double>(lines.bytes) / 1e6;
    std::printf("%s, %zu bytes in %zu lines, %d rounds\n", text, lines.bytes, lines.texts.size(), rounds);
    for (int side = 0; side < kSides; ++side) {
        std::vector<double> ratios;
        for (std::size_t i = 0; i != times[side].size(); ++i) ratios.push_back(times[kMecab][i] / times[side][i]);
        auto const [least, most] = std::minmax_element(ratios.begin(), ratios.end());
        std::printf("  %-20s %.3f s  %5.1f MB/s  %zu words  mecab's time / its: %.2f [%.2f .. %.2f]\n", kNames[side],
                    median(times[side]), megabytes / median(times[side]), words[side].count, median(ratios), *least,
                    *most);
    }
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
