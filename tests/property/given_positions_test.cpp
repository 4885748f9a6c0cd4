// Positions of morphemes in the text that was given, against a text that is built together with them.
#include "result/mrph_access.hpp"
#include "support/random_world.hpp"
#include "support/tagged_world.hpp"
#include "support/testing.hpp"

#include <array>

namespace TAVO::test {
namespace {

/// A text, and where each byte of what is analysed stands in it.
struct Given {
    std::string text, analysed;
    std::vector<std::size_t> begin, end;
    std::vector<std::pair<std::size_t, std::size_t>> annotations;

    void add(std::string_view bytes, std::string_view read) {
        for (std::size_t i = 0; i < read.size(); ++i) {
            begin.push_back(text.size() + i);
            end.push_back(i + 1 < read.size() ? text.size() + i + 1 : text.size() + bytes.size());
        }
        text += bytes;
        analysed += read;
    }
};

struct Modes {
    bool tagged, deletes, delimits, divides, converts;
};

class Writer {
public:
    Writer(Random& random, Modes const& modes) : random_(random), modes_(modes) {}

    Given write() {
        for (unsigned n = 1 + random_.below(8); n > 0; --n) {
            if (modes_.tagged && random_.oneIn(3))
                addElement();
            else
                addCharacter();
        }
        return std::move(given_);
    }

private:
    void addCharacter() {
        static std::array<std::string, 9> const kCharacters{"a",    "b",        "1",        "c",       "\x83\x5C",
                                                            "\xB6", "\xB6\xDE", "\x87\x60", "\x81\x26"};
        if (modes_.tagged && random_.oneIn(5))
            given_.add("&amp;", "&");
        else if (std::string const& c = random_.of(kCharacters); true)
            given_.add(c, c);
        addBreak();
    }
    void addBreak() {
        static std::array<std::string, 3> const kBreaks{"\n", "\r\n", "\n\n"};
        if (!random_.oneIn(6)) return;
        std::string const& lineBreak = random_.of(kBreaks);
        bool const stays = !modes_.deletes;
        if (stays && modes_.tagged) return;  // a line of its own would cut an element
        given_.add(lineBreak, stays ? std::string_view(lineBreak) : std::string_view());
    }
    void addTag(std::string_view tag) {
        std::size_t const cut = modes_.deletes && random_.oneIn(4) ? 1 + random_.below(3) : 0;
        given_.add(tag.substr(0, cut), "");
        if (cut != 0) given_.add("\n", "");
        given_.add(tag.substr(cut), "");
    }
    void addElement() {
        switch (random_.below(4)) {
            case 0:
                addTag("<word PartOfSP=\"A\">");
                addCharacters();
                return addTag("</word>");
            case 1:
                addTag("<multiword>");
                addCharacters();
                addTag("<word>");
                addCharacters();
                addTag("</word>");
                return addTag("</multiword>");
            case 2:
                addTag("<annotation>");
                given_.annotations.push_back({given_.text.size(), given_.text.size() + 5});
                given_.add("n&lt;", "");
                return addTag("</annotation>");
            default:
                return addTag("<boundary GrammarType=\"x\"/>");
        }
    }
    void addCharacters() {
        for (unsigned n = 1 + random_.below(3); n > 0; --n) addCharacter();
    }

    Random& random_;
    Modes modes_;
    Given given_;
};

class Checker {
public:
    explicit Checker(Given const& given) : given_(given) {}

    /// Morphemes that begin at @p base of all that was analysed.
    void check(std::vector<Mrph> const& morphemes, std::size_t base, std::size_t annotation) {
        for (Mrph const& m : morphemes) {
            if (m.isAnnotation()) {
                ASSERT_LT(annotation, given_.annotations.size());
                auto const& [begin, end] = given_.annotations[annotation++];
                EXPECT_EQ(m.getGivenBegin(), begin);
                EXPECT_EQ(m.getGivenEnd(), end);
                continue;
            }
            std::size_t const length = MrphAccess::rawForm(m).size();
            ASSERT_GT(length, 0U);
            ASSERT_LE(base + length, given_.analysed.size());
            EXPECT_EQ(m.getGivenBegin(), given_.begin[base]) << m.getForm(true);
            EXPECT_EQ(m.getGivenEnd(), given_.end[base + length - 1]) << m.getForm(true);
            checkParts(m, base);
            std::vector<Mrph> alternatives;
            m.getAlt(alternatives);
            for (Mrph const& alternative : alternatives) {
                EXPECT_EQ(alternative.getGivenBegin(), given_.begin[base]);
                EXPECT_EQ(alternative.getGivenEnd(), given_.end[base + alternative.getFormLength() - 1]);
            }
            base += length;
            ++checked;
        }
    }

    unsigned checked = 0, joined = 0;

private:
    void checkParts(Mrph const& m, std::size_t at) {
        if (m.getPartCount() > 1) ++joined;
        for (int part = 0; part < m.getPartCount(); ++part) {
            auto const length = static_cast<std::size_t>(m.getPartFormLength(part));
            EXPECT_EQ(m.getPartGivenBegin(part), given_.begin[at]) << m.getForm(true);
            EXPECT_EQ(m.getPartGivenEnd(part), given_.end[at + length - 1]) << m.getForm(true);
            at += length;
        }
    }

    Given const& given_;
};

SmallWorld world() {
    SmallWorld made;
    made.names({"BOS", "EOS", "UNK:Undef", "A", "B", "N:Number"});
    made.cost([](unsigned, unsigned) { return 10; });
    for (char const* line :
         {"a,A,1", "b,B,1", "b,A,3", "ab,A,2", "a-b,B,9,\x82\xA0/\x82\xA2", "1,N:Number,1", "b-c,A,1,x/y",
          "\x83\x5C,A,1", "\x83\x4B,B,1", "\x83\x4C,B,1", "\x83\x4C-\x83\x8D,A,1,x/y"})
        made.line(line);
    return made;
}

TEST(GivenPositionsProperty, LeadBackFromAllThatIsAnalysed) {
    TaggedWorld analyser(world());
    Tavo& tavo = analyser.tavo;
    tavo.setReduceRulePath(analyser.dir.write("reduce.rules", "Number = :\nUndef = :\n").c_str());
    unsigned checked = 0, joined = 0, failed = 0;
    for (unsigned seed = 1; seed <= 4000; ++seed) {
        Random random(seed);
        Modes modes{random.oneIn(2), random.oneIn(2), false, random.oneIn(3), random.oneIn(3)};
        modes.delimits = !modes.tagged && random.oneIn(2);
        tavo.setTaggedInputMode(modes.tagged);
        tavo.setDeleteCRLFMode(modes.deletes);
        tavo.setDelimitCRLFMode(modes.delimits);
        tavo.setDivideWordMode(modes.divides);
        tavo.setInputConvertMode(modes.converts);
        tavo.setAlternativeMode(random.oneIn(2));
        Given const given = Writer(random, modes).write();
        SCOPED_TRACE("seed " + std::to_string(seed) + ": " + testing::PrintToString(given.text));
        bool const nBest = random.oneIn(3);
        if ((nBest ? tavo.analyzeNBest(given.text) : tavo.analyze(given.text)) != 0) {
            ++failed;
            continue;
        }
        Checker checker(given);
        std::size_t base = 0;
        for (unsigned i = 0; i < tavo.getSentenceCount(); ++i) {
            std::vector<std::vector<Mrph>> paths;
            tavo.getResultNBest(paths, static_cast<int>(i), 4);
            paths.push_back(morphemesOf(tavo, static_cast<int>(i)));
            for (std::vector<Mrph> const& path : paths) checker.check(path, base, 0);
            base += tavo.getSentenceLength(static_cast<int>(i));
        }
        ASSERT_EQ(base, given.analysed.size());
        ASSERT_FALSE(HasFailure());
        checked += checker.checked;
        joined += checker.joined;
    }
    EXPECT_GT(checked, 20000U);
    EXPECT_GT(joined, 2000U);
    EXPECT_LT(failed, 100U);
}

}  // namespace
}  // namespace TAVO::test
