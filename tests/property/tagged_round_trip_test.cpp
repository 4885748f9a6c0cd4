// Results written as tagged input and analysed again, and mark-up of all kinds.
#include "result/tag_attributes.hpp"
#include "result/tagged_output.hpp"
#include "support/random_world.hpp"
#include "support/tagged_world.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {
namespace {

using namespace std::string_literals;
using test::Random;
using test::SmallWorld;
using test::TaggedWorld;
using test::toSjis;

template <class List>
std::string join(Random& random, List const& pieces, unsigned most) {
    std::string text;
    for (unsigned n = random.below(most + 1); n > 0; --n)
        text += pieces[random.below(static_cast<unsigned>(std::size(pieces)))];
    return text;
}

/// Few characters, marks of the mark-up among them, and halves of characters.
std::array<std::string, 14> const kCharacters{"a",    "b",        "<",        ">",    "&",   "\"", "/",
                                              "&lt;", "\x83\x5C", "\x95\x3C", "\x83", "\0"s, "\n", "\x82\xA0"};

SmallWorld markupWorld(Random& random) {
    SmallWorld world;
    world.names({"BOS", "EOS", "UNK", "A\"&<>'", "B", "C"});
    unsigned const forbidden = random.below(3);
    world.cost([&](unsigned, unsigned) {
        return random.below(8) < forbidden ? std::uint8_t{255} : static_cast<std::uint8_t>(random.below(4));
    });
    std::array<std::string, 7> const forms{"a", "b", "ab", "a-b", "\x83\x5C", "<", "b\x83\x5C-a"};
    std::array<std::string, 5> const readings{"", "\x82\xA0", "(\x82\xA0|\x82\xA2)", "x", "(\x82\xA0"};
    std::array<std::string, 4> const stdForms{"", "a", "<&>", "\x83\x5C"};
    for (unsigned n = random.below(12); n > 0; --n) {
        std::string const& form = forms[random.below(7)];
        bool const compound = form.find('-') != std::string::npos;
        std::string const reading = readings[random.below(5)];
        world.line(form + "," + world.names()[3 + random.below(3)] + "," + std::to_string(random.below(3)) + "," +
                   (compound ? "\x82\xA0/\x82\xA2" : reading) + "," + stdForms[random.below(4)]);
    }
    return world;
}

std::vector<std::string> values(std::vector<Mrph> const& morphemes) {
    std::vector<std::string> result;
    for (Mrph const& m : morphemes)
        result.push_back(m.getForm(true) + " " + m.getPartOfSP() + " " + m.getRead(true) + " " + m.getStdForm(true));
    return result;
}

TEST(TaggedRoundTripProperty, ResultsWrittenAsTaggedInputGiveEqualMorphemes) {
    unsigned analysed = 0;
    for (unsigned seed = 1; seed <= 600; ++seed) {
        Random random(seed);
        TaggedWorld world(markupWorld(random));
        for (unsigned t = 0; t < 10; ++t) {
            std::string const text = join(random, kCharacters, 12);
            world.tavo.setTaggedInputMode(0);
            std::vector<Mrph> const plain = world.morphemes(text);
            if (plain.empty()) continue;
            std::vector<std::string> const expected = values(plain);
            std::string const tagged = taggedText(plain);
            world.tavo.setTaggedInputMode(1);
            std::vector<Mrph> const again = world.morphemes(tagged);
            ASSERT_EQ(values(again), expected) << "seed " << seed << ", text " << testing::PrintToString(text)
                                               << ", tagged " << testing::PrintToString(tagged);
            ASSERT_EQ(taggedText(again), tagged) << "seed " << seed;
            ASSERT_EQ(world.tavo.getSentence(0), text) << "seed " << seed;
            ++analysed;
        }
    }
    EXPECT_GT(analysed, 3000U);
}

// How delimiters cut a tagged line, written down slowly.

constexpr auto npos = std::string_view::npos;

std::size_t width(std::string_view text, std::size_t pos) {
    auto const byte = static_cast<unsigned char>(text[pos]);
    bool const lead = (byte >= 0x81 && byte <= 0x9F) || byte >= 0xE0;
    return lead && pos + 1 < text.size() && text[pos + 1] != '\0' ? 2 : 1;
}

/// Behind the ">" of the tag at @p pos, npos when it has none.
std::size_t tagEnd(std::string_view text, std::size_t pos) {
    bool quoted = false;
    for (; pos < text.size(); pos += width(text, pos)) {
        if (text[pos] == '"') quoted = !quoted;
        if (text[pos] == '>' && !quoted) return pos + 1;
    }
    return npos;
}

std::string tagName(std::string_view text, std::size_t pos) {
    std::string name;
    for (; std::string_view(" \t/>").find(text[pos]) == npos; pos += width(text, pos))
        name += text.substr(pos, width(text, pos));
    return name;
}

bool isSelfClosing(std::string_view text, std::size_t pos, std::size_t end) {
    std::size_t last = pos;
    for (; pos + 1 < end; pos += width(text, pos)) last = pos;
    return text[last] == '/' && last + 2 == end;
}

/// Behind the closing tag of an annotation whose opening tag ends at @p pos.
std::size_t annotationEnd(std::string_view text, std::size_t pos) {
    for (; pos < text.size(); pos += width(text, pos)) {
        if (!text.substr(pos).starts_with("</annotation")) continue;
        std::size_t const next = pos + 12;
        if (next < text.size() && std::string_view(" \t>").find(text[next]) != npos) return tagEnd(text, pos);
    }
    return npos;
}

/// Behind the element, or the tag alone, at @p pos; npos when no tag stands there.
std::size_t elementEnd(std::string_view text, std::size_t pos) {
    std::size_t const end = tagEnd(text, pos);
    if (end == npos || text[pos + 1] == '/' || isSelfClosing(text, pos, end)) return end;
    std::string const name = tagName(text, pos + 1);
    if (name == "annotation") {
        std::size_t const close = annotationEnd(text, end);
        return close == npos ? end : close;
    }
    int depth = 1;
    for (std::size_t at = end; at < text.size();) {
        std::size_t const inner = text[at] == '<' ? tagEnd(text, at) : npos;
        if (inner == npos) {
            at += width(text, at);
            continue;
        }
        bool const closing = text[at + 1] == '/';
        std::string const innerName = tagName(text, at + (closing ? 2 : 1));
        if (innerName == name && !(closing ? false : isSelfClosing(text, at, inner))) depth += closing ? -1 : 1;
        if (depth == 0) return inner;
        if (!closing && innerName == "annotation" && !isSelfClosing(text, at, inner)) {
            std::size_t const close = annotationEnd(text, inner);
            at = close == npos ? inner : close;
        } else {
            at = inner;
        }
    }
    return end;
}

std::size_t countPieces(std::string_view text, char delimiter) {
    std::size_t pieces = 0;
    std::size_t start = 0;
    for (std::size_t pos = 0; pos < text.size();) {
        if (text[pos] == '<') {
            std::size_t const end = elementEnd(text, pos);
            pos = end == npos ? pos + 1 : end;
            continue;
        }
        std::size_t entity = 0;
        for (std::string_view known : {"&lt;", "&gt;", "&amp;", "&apos;", "&quot;"})
            if (text.substr(pos).starts_with(known)) entity = known.size();
        if (entity == 0 && text[pos] == delimiter) {
            ++pieces;
            start = pos + 1;
        }
        pos += entity != 0 ? entity : width(text, pos);
    }
    return pieces + (start < text.size() ? 1 : 0);
}

/// Pieces of mark-up, and a NUL.
std::vector<std::string> const kMarkup = [] {
    std::istringstream pieces(
        "<word>|<word PartOfSP=\"B\">|</word>|<word|<multiword>|</multiword>|<annotation>|<annotation Read=\";>\">|"
        "</annotation>|</annotation |<boundary/>|<boundary Kind=\"sentence\">|<x>|</x>|<x/>|<|>|\"|/|;|&amp;|a|b|"
        "\x83|\x83\x5C");
    std::vector<std::string> list{"\0"s};
    for (std::string piece; std::getline(pieces, piece, '|');) list.push_back(piece);
    return list;
}();

TEST(TaggedRoundTripProperty, AnyMarkupGivesTheRightNumberOfSentences) {
    unsigned good = 0;
    for (unsigned seed = 1; seed <= 100; ++seed) {
        Random random(seed);
        SmallWorld small = markupWorld(random);
        small.cost([](unsigned, unsigned) { return std::uint8_t{1}; });
        TaggedWorld world(small);
        world.tavo.setDelimiterString({";"});
        std::string const rules = world.dir.write("rules", "Begin=/\nEnd=b\n");
        for (unsigned t = 0; t < 100; ++t) {
            std::string const text = join(random, kMarkup, 16);
            auto const failed = static_cast<unsigned>(world.tavo.analyze(text));
            ASSERT_EQ(world.tavo.getSentenceCount(), countPieces(text, ';'))
                << "seed " << seed << ", text " << testing::PrintToString(text);
            good += world.tavo.getSentenceCount() - failed;
            for (unsigned i = 0; i < world.tavo.getSentenceCount(); ++i) {
                std::vector<Mrph> result;
                world.tavo.getResult(result, static_cast<int>(i));
                std::string forms;
                for (Mrph const& m : result)
                    if (!m.isAnnotation()) forms += m.getForm(true);
                auto const& errors = world.tavo.getErrorSentenceIndex();
                bool const isError = std::find(errors.begin(), errors.end(), i) != errors.end();
                ASSERT_EQ(forms, isError ? "" : world.tavo.getSentence(static_cast<int>(i)))
                    << "seed " << seed << ", text " << testing::PrintToString(text);
            }
            // With comments too nothing is lost or read from outside.
            world.tavo.setCommentRulePath(rules.c_str());
            world.tavo.analyze(text);
            for (unsigned i = 0; i < world.tavo.getSentenceCount(); ++i) {
                std::vector<Mrph> result;
                world.tavo.getResult(result, static_cast<int>(i));
            }
            world.tavo.setCommentRulePath(nullptr);
        }
    }
    EXPECT_GT(good, 1000U);
}

TEST(TaggedInput, FortyThousandTagsTakeLinearTime) {
    SmallWorld small;
    small.names({"BOS", "EOS", "UNK", "A"}).line("a,A,1");
    TaggedWorld world(small);
    world.tavo.setDelimiterString({";"});
    struct Case {
        char const* prefix;
        char const* repeated;
        char const* suffix;
        std::size_t words;
    };
    constexpr std::size_t kTags = 40'000;
    // Time that grew with the square of the tags would be many minutes.
    Case const cases[] = {
        {"", "<word>a</word>", "", kTags},
        {"<multiword>", "<word>a</word>", "</multiword>", 1},
        {"", "<annotation>a</annotation>", "", kTags},
        {"", "<boundary/>a", "", kTags},
        {"", "<word>", "", 0},
        {"", "<annotation>", "</annotation", 0},
        {"", "<\"", "", 0},
        {"", "</word>", "", 0},
        {"<word Read=", " a", ">a</word>", 1},
    };
    for (Case const& c : cases) {
        std::string text = c.prefix;
        for (std::size_t i = 0; i < kTags; ++i) text += c.repeated;
        text += c.suffix;
        EXPECT_EQ(world.morphemes(text).size(), c.words) << c.repeated;
    }
}

}  // namespace
}  // namespace TAVO
