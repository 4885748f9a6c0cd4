// Results written as tagged input and analysed again, and markup of all kinds.
#include "base/sjis.hpp"
#include "result/tagged_output.hpp"
#include "support/random_world.hpp"
#include "support/tagged_world.hpp"
#include "support/testing.hpp"

#include <array>
#include <iterator>

namespace TAVO::test {
namespace {

using namespace std::string_literals;

template <class List>
std::string join(Random& random, List const& pieces, unsigned most) {
    std::string text;
    for (unsigned n = random.below(most + 1); n > 0; --n)
        text += pieces[random.below(static_cast<unsigned>(std::size(pieces)))];
    return text;
}

/// Few characters, marks of the markup among them, and halves of characters.
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

constexpr char kValues[] = "%w %h %k %s,";

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
            std::string const expected = describe(plain, kValues);
            std::string const tagged = taggedText(plain);
            world.tavo.setTaggedInputMode(1);
            std::vector<Mrph> const again = world.morphemes(tagged);
            ASSERT_EQ(describe(again, kValues), expected)
                << "seed " << seed << ", text " << testing::PrintToString(text) << ", tagged "
                << testing::PrintToString(tagged);
            ASSERT_EQ(taggedText(again), tagged) << "seed " << seed;
            ASSERT_EQ(world.tavo.getSentence(0), text) << "seed " << seed;
            ++analysed;
        }
    }
    EXPECT_GT(analysed, 3000U);
}

// How delimiters cut a tagged line, written down slowly.

/// The text with one byte for each character, and entities without their ";".
std::string bytewise(std::string_view text) {
    std::string result;
    for (std::size_t pos = 0; pos < text.size(); pos += charWidth(text, pos))
        result += charWidth(text, pos) == 2 ? '.' : text[pos];
    for (std::string_view const entity : {"&lt;", "&gt;", "&amp;", "&apos;", "&quot;"})
        for (std::size_t pos = 0; (pos = result.find(entity, pos)) != npos;) result[pos += entity.size() - 1] = '.';
    return result;
}

/// Behind the ">" of the tag at @p pos, npos when it has none.
std::size_t tagEnd(std::string const& text, std::size_t pos) {
    bool quoted = false;
    for (; pos < text.size(); ++pos) {
        if (text[pos] == '"') quoted = !quoted;
        if (text[pos] == '>' && !quoted) return pos + 1;
    }
    return npos;
}

std::string tagName(std::string const& text, std::size_t pos) {
    return text.substr(pos, text.find_first_of(" \t/>", pos) - pos);
}

/// Behind the closing tag of the annotation whose opening tag ends at @p pos,
/// @p pos when it has none.
std::size_t annotationEnd(std::string const& text, std::size_t pos) {
    std::string_view const closing = "</annotation";
    for (std::size_t at = text.find(closing, pos); at != npos; at = text.find(closing, at + 1)) {
        if (text.find_first_of(" \t>", at) != at + closing.size()) continue;
        std::size_t const end = tagEnd(text, at);
        return end == npos ? pos : end;
    }
    return pos;
}

/// Behind the element, or the tag alone, at @p pos; npos when no tag stands there.
std::size_t elementEnd(std::string const& text, std::size_t pos) {
    std::size_t const end = tagEnd(text, pos);
    if (end == npos || text[pos + 1] == '/' || text[end - 2] == '/') return end;
    std::string const name = tagName(text, pos + 1);
    if (name == "annotation") return annotationEnd(text, end);
    int depth = 1;
    for (std::size_t at = text.find('<', end); at != npos; at = text.find('<', at)) {
        std::size_t const inner = tagEnd(text, at);
        if (inner == npos) {
            ++at;
            continue;
        }
        bool const closing = text[at + 1] == '/';
        bool const selfClosing = !closing && text[inner - 2] == '/';
        std::string const innerName = tagName(text, at + (closing ? 2 : 1));
        if (innerName == name && !selfClosing) depth += closing ? -1 : 1;
        if (depth == 0) return inner;
        at = innerName == "annotation" && !closing && !selfClosing ? annotationEnd(text, inner) : inner;
    }
    return end;
}

std::size_t countPieces(std::string_view given, char delimiter) {
    std::string const text = bytewise(given);
    std::size_t pieces = 0;
    std::size_t start = 0;
    for (std::size_t pos = 0; pos < text.size(); ++pos) {
        std::size_t const end = text[pos] == '<' ? elementEnd(text, pos) : npos;
        if (end != npos) {
            pos = end - 1;
        } else if (text[pos] == delimiter) {
            ++pieces;
            start = pos + 1;
        }
    }
    return pieces + (start < text.size() ? 1 : 0);
}

/// Pieces of markup, and a NUL.
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
            std::vector<unsigned> const& errors = world.tavo.getErrorSentenceIndex();
            for (unsigned i = 0; i < world.tavo.getSentenceCount(); ++i) {
                std::string forms;
                for (Mrph const& m : morphemesOf(world.tavo, static_cast<int>(i)))
                    if (!m.isAnnotation()) forms += m.getForm(true);
                bool const isError = std::count(errors.begin(), errors.end(), i) > 0;
                ASSERT_EQ(forms, isError ? "" : world.tavo.getSentence(static_cast<int>(i)))
                    << "seed " << seed << ", text " << testing::PrintToString(text);
            }
            // With comments too nothing is lost or read from outside.
            world.tavo.setCommentRulePath(rules.c_str());
            world.tavo.analyze(text);
            describeAll(world.tavo);
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
    constexpr std::size_t kTags = 40'000;
    // Time that grew with the square of the tags would be many minutes.
    Table<char const*, char const*, char const*, std::size_t> const cases{
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
    for (auto const& [prefix, repeated, suffix, words] : cases) {
        std::string text = prefix;
        for (std::size_t i = 0; i < kTags; ++i) text += repeated;
        text += suffix;
        EXPECT_EQ(world.morphemes(text).size(), words) << repeated;
    }
}

}  // namespace
}  // namespace TAVO::test
