// Bulk calls against the functions they stand for.
#include "api/bulk_arrays.hpp"
#include "c_api/flat_world.hpp"

#include <tavo/tavo_bulk.h>

#include <limits>
#include <stdexcept>

namespace TAVO::test {
namespace {

constexpr unsigned kTexts = TAVO_BULK_FORM | TAVO_BULK_PART_OF_SP | TAVO_BULK_STD_FORM | TAVO_BULK_READ |
                            TAVO_BULK_PRON | TAVO_BULK_GROUP | TAVO_BULK_INFO | TAVO_BULK_DISPLAY_PART_OF_SP;

class BulkFunctions : public FlatWorld {
protected:
    int bulkOf(std::vector<std::string> const& texts, unsigned what) {
        std::vector<char const*> pointers;
        std::vector<int> lengths;
        for (std::string const& text : texts) {
            pointers.push_back(text.data());
            lengths.push_back(static_cast<int>(text.size()));
        }
        return tavo_bulkAnalyze(tavo, &bulk, pointers.data(), lengths.data(), static_cast<int>(texts.size()), what);
    }
    std::string text(std::size_t field, std::size_t morpheme) const {
        return bulk.strings + bulk.fields[field * bulk.morphemeCount + morpheme];
    }
    /// "start+length" of every morpheme, rows separated by "|".
    std::string places() const {
        std::string places;
        std::size_t m = 0;
        for (std::size_t row = 0; row < bulk.rowCount; ++row) {
            for (; m < bulk.rowEnd[row]; ++m)
                places += std::to_string(bulk.start[m]) + "+" + std::to_string(bulk.length[m]) + " ";
            places += "|";
        }
        return places;
    }

    tavo_bulk_t bulk{};
};

TEST_F(BulkFunctions, HaveTheVersionOfTheHeader) { EXPECT_EQ(tavo_bulkVersion(), TAVO_BULK_VERSION); }

TEST_F(BulkFunctions, DeliverWhatTheMorphemesSay) {
    std::string const given = "abcdz";
    ASSERT_EQ(bulkOf({given, "", "dd"}, kTexts), 3) << tavo_getErrorWhat(tavo);
    ASSERT_EQ(bulk.morphemeCount, 5U);
    ASSERT_EQ(bulk.fieldCount, 8U);
    EXPECT_EQ(places(), "0+3 3+1 4+1 ||0+1 1+1 |");
    EXPECT_EQ((std::vector<std::uint32_t>(bulk.rowLength, bulk.rowLength + 3)), (std::vector<std::uint32_t>{5, 0, 2}));
    std::string first, unknown;
    for (std::size_t field = 0; field < 8; ++field) {
        first += text(field, 0) + ",";
        unknown += text(field, 2) + ",";
    }
    EXPECT_EQ(toUtf8(first), ",Noun,ABC,えいびし,えいびーし,grp,,Noun,");
    EXPECT_EQ(toUtf8(unknown), ",Undef,,,,,,未知語,");
    EXPECT_EQ(bulk.fields[3 * 5 + 1], bulk.fields[3 * 5 + 4]) << "texts of one record stand once";

    // Analysing ends the arrays.
    std::vector<int> const pids(bulk.pid, bulk.pid + 3), costs(bulk.cost, bulk.cost + 3),
        flags(bulk.flags, bulk.flags + 3);
    tavo_result_t const morphemes = analyze(given);
    ASSERT_EQ(morphemes.count, 3);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(pids[i], tavo_getPid(morphemes.array[i]));
        EXPECT_EQ(costs[i], tavo_getCost(morphemes.array[i]));
        EXPECT_EQ(flags[i], tavo_isUndef(morphemes.array[i]) == 1 ? TAVO_BULK_UNKNOWN : 0);
    }
}

TEST_F(BulkFunctions, StartsCountBytesOrCharactersOfTheGivenText) {
    // Text, what is asked for, line breaks deleted, line breaks delimit; the places, the row's length.
    Table<char const*, unsigned, bool, bool, char const*, unsigned> const cases{
        {"ソd能", 0, false, false, "0+2 2+1 3+2 |", 5},
        {"ソd能", TAVO_BULK_CHARACTERS, false, false, "0+1 1+1 2+1 |", 3},
        // The break inside "abc" belongs to it, those around do not.
        {"\r\nd\nab\r\ncd\n", 0, true, false, "2+1 4+5 9+1 |", 11},
        {"ソ\nab\ncd", TAVO_BULK_CHARACTERS, true, false, "0+1 2+4 6+1 |", 7},
        {"d\r\nd", 0, true, true, "0+1 3+1 |", 4},
        {"d\nd", 0, false, true, "0+1 1+1 2+1 |", 3},
        {"\nd\nd", TAVO_BULK_ANALYZED, true, false, "0+1 1+1 |", 2},
    };
    for (auto const& [given, what, deleteBreaks, breaksDelimit, expected, rowLength] : cases) {
        SCOPED_TRACE(expected);
        ASSERT_EQ(tavo_setDeleteCRLFMode(tavo, deleteBreaks), 0);
        ASSERT_EQ(tavo_setDelimitCRLFMode(tavo, breaksDelimit), 0);
        ASSERT_EQ(bulkOf({toSjis(given)}, what), 1) << tavo_getErrorWhat(tavo);
        EXPECT_EQ(places(), expected);
        EXPECT_EQ(bulk.rowLength[0], rowLength);
        EXPECT_STREQ(bulk.strings + bulk.rowText[0], what == TAVO_BULK_ANALYZED ? "dd" : "");
    }
}

TEST_F(BulkFunctions, LetGoOfTheTexts) {
    for (unsigned const what : {0U, unsigned{TAVO_BULK_ANALYZED}}) {
        ASSERT_EQ(bulkOf({"d", "dd"}, what), 2);
        EXPECT_EQ(tavo_getSentenceCount(tavo), 0);
        ASSERT_EQ(tavo_bulkAnalyzeNBest(tavo, &bulk, "d", 1, 2, what), 2);
        EXPECT_EQ(tavo_getSentenceCount(tavo), 0);
    }
    EXPECT_EQ(bulkOf({"d", std::string(16'843'010, 'd')}, 0), -10011);
    EXPECT_EQ(tavo_getSentenceCount(tavo), 0) << "after an error too";
}

TEST_F(BulkFunctions, NBestGivesARowAPath) {
    char const* const stops[] = {"."};
    ASSERT_EQ(tavo_setDelimiterString(tavo, stops, 1), 0);
    // Three analyses of the first sentence, one of the second.
    ASSERT_EQ(tavo_bulkAnalyzeNBest(tavo, &bulk, "d.z", 3, 9, TAVO_BULK_PART_OF_SP), 3) << tavo_getErrorWhat(tavo);
    EXPECT_EQ(places(), "0+1 1+1 2+1 |0+1 1+1 2+1 |0+1 1+1 2+1 |");
    EXPECT_EQ(text(0, 0) + text(0, 1) + text(0, 2), "NounUndefUndef");
    EXPECT_EQ(text(0, 3) + text(0, 4) + text(0, 5), "VerbUndefUndef");
    EXPECT_EQ(text(0, 6), "Undef");
    EXPECT_EQ(bulk.rowWordCost[0], 5U + 255U + 255U);
    EXPECT_EQ(bulk.rowWordCost[1], 6U + 255U + 255U);
    EXPECT_EQ(bulk.rowWordCost[2], 255U + 255U + 255U);
    EXPECT_GE(bulk.rowConnectionCost[0], 40U);
    EXPECT_EQ(bulk.rowConnectionCost[0], bulk.rowConnectionCost[1]);
    EXPECT_EQ(tavo_bulkAnalyzeNBest(tavo, &bulk, "d", 1, 0, 0), 0);
    ASSERT_EQ(tavo_bulkAnalyzeNBest(tavo, &bulk, "", 0, 3, 0), 0);
    ASSERT_EQ(bulkOf({"d"}, 0), 1);
    EXPECT_EQ(bulk.rowWordCost[0], 0U) << "of N-best alone";
}

TEST_F(BulkFunctions, TaggedTextHasPlacesInTheAnalyzedTextAlone) {
    ASSERT_EQ(tavo_setTaggedInputMode(tavo, 1), 0);
    std::string const tagged = "d<annotation>note</annotation><word PartOfSP=\"Verb\" StdForm=\"S\">zz</word>";
    ASSERT_EQ(bulkOf({tagged, "d"}, TAVO_BULK_ANALYZED | TAVO_BULK_FORM | TAVO_BULK_STD_FORM), 2);
    EXPECT_EQ(places(), "0+1 1+0 1+2 |0+1 |");
    EXPECT_STREQ(bulk.strings + bulk.rowText[0], "dzz");
    EXPECT_EQ(bulk.rowLength[0], 3U);
    EXPECT_EQ(text(0, 0) + "," + text(0, 1) + "," + text(0, 2), ",note,");
    EXPECT_EQ(text(1, 2), "S");
    EXPECT_EQ(bulk.flags[1], TAVO_BULK_ANNOTATION);

    EXPECT_EQ(bulkOf({"d", tagged}, 0), -10008);
    EXPECT_EQ(bulk.rowCount, 1U);
    EXPECT_EQ(bulkOf({"<word"}, 0), 1) << "a failed sentence has no morphemes to place";
    EXPECT_EQ(bulk.rowFailed[0], 1U);
    EXPECT_EQ(bulk.morphemeCount, 0U);
}

TEST_F(BulkFunctions, WordsOfTagsAreTakenAnewForEachText) {
    ASSERT_EQ(tavo_setTaggedInputMode(tavo, 1), 0);
    std::vector<std::string> texts, expected, found;
    for (int i = 0; i < 20; ++i) {
        expected.emplace_back(i % 2 == 0 ? "Verb" : "Noun");
        texts.push_back("<word PartOfSP=\"" + expected.back() + "\">zz</word>");
    }
    ASSERT_EQ(bulkOf(texts, TAVO_BULK_ANALYZED | TAVO_BULK_PART_OF_SP), 20);
    for (std::size_t i = 0; i < texts.size(); ++i) found.push_back(text(0, i));
    EXPECT_EQ(found, expected);
}

TEST_F(BulkFunctions, ErrorsLeaveTheRowsBefore) {
    char const* const texts[] = {"d", "d", nullptr};
    int const lengths[] = {1, 1, 1};
    int const negative[] = {-1};
    int const tooMuch[] = {std::numeric_limits<int>::max(), 1};
    Table<tavo_bulk_t*, char const* const*, int const*, int> const bad{
        {nullptr, texts, lengths, 1}, {&bulk, nullptr, lengths, 1}, {&bulk, texts, nullptr, 1},
        {&bulk, texts, lengths, -1},  {&bulk, texts, lengths, 3},   {&bulk, texts, negative, 1},
        {&bulk, texts, tooMuch, 2}};
    for (auto const& [out, given, sizes, count] : bad) {
        bulk.rowCount = 7;
        expectFlatError(tavo_bulkAnalyze(tavo, out, given, sizes, count, 0), "tavo_bulkAnalyze");
        EXPECT_EQ(bulk.rowCount, out == nullptr ? 7U : 0U);
    }
    EXPECT_EQ(tavo_bulkAnalyze(tavo, &bulk, nullptr, nullptr, 0, 0), 0);
    EXPECT_EQ(tavo_bulkAnalyzeNBest(tavo, nullptr, "", 0, 1, 0), -10001);
    EXPECT_EQ(tavo_bulkAnalyzeNBest(tavo, &bulk, "", 0, -1, 0), -10001);
    EXPECT_EQ(tavo_bulkAnalyzeNBest(tavo, &bulk, nullptr, 1, 1, 0), -10001);
    expectFlatError(tavo_bulkAnalyzeNBest(tavo, &bulk, "", -1, 1, 0), "tavo_bulkAnalyzeNBest");

    std::string const tooLong(16'843'010, 'd');
    EXPECT_EQ(bulkOf({"d", "dd", tooLong, "d"}, TAVO_BULK_READ), -10011);
    EXPECT_EQ(places(), "0+1 |0+1 1+1 |");
    EXPECT_EQ(text(0, 2), toSjis("でぃ"));
    EXPECT_EQ(tavo_offDicAll(tavo), 0);
    EXPECT_EQ(bulkOf({"d"}, 0), -10012);
    EXPECT_EQ(bulk.rowCount, 0U);
}

TEST(PositionCounter, CountsCharactersInAnyOrder) {
    std::string const text = toSjis("ソa能");
    api::PositionCounter characters(text, true);
    EXPECT_EQ(characters.at(3), 2U);
    EXPECT_EQ(characters.at(2), 1U);
    EXPECT_EQ(characters.at(4), 3U) << "inside a character: behind it";
    EXPECT_EQ(characters.end(), 3U);
    EXPECT_EQ(api::PositionCounter(text, false).at(4), 4U);
}

TEST(StringBlock, RefusesToGrowBeyondItsLimit) {
    api::StringBlock block(8);
    EXPECT_EQ(block.add(""), 0U);
    EXPECT_EQ(block.add("abc"), 1U);
    EXPECT_THROW(block.add("abc"), std::length_error);
    EXPECT_EQ(block.add("ab"), 5U);
    EXPECT_EQ(std::string(block.data(), block.size()), std::string("\0abc\0ab\0", 8));
    EXPECT_THROW(block.add("a"), std::length_error);
}

TEST(RecordTexts, FindsEveryRecordWhileItGrows) {
    api::RecordTexts texts;
    texts.clear(2);
    std::vector<unsigned char> const image(40000);
    for (std::uint32_t i = 0; i < image.size(); i += 8) {
        EXPECT_EQ(texts.find(&image[i]), nullptr);
        std::uint32_t const offsets[] = {i, i + 1};
        texts.add(&image[i], offsets);
    }
    for (std::uint32_t i = 0; i < image.size(); i += 8) {
        std::uint32_t const* const found = texts.find(&image[i]);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found[0], i);
        EXPECT_EQ(found[1], i + 1);
    }
    texts.clear(2);
    EXPECT_EQ(texts.find(&image[8]), nullptr);
}

}  // namespace
}  // namespace TAVO::test
