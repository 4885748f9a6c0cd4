// Functions that return numbers: of morphemes, parts, settings and dictionaries.
#include "c_api/flat_world.hpp"

namespace TAVO::test {
namespace {

class ValueFunctions : public FlatWorld {};

TEST_F(ValueFunctions, OfAMorpheme) {
    // Of a compound and of an unknown word.
    Table<int (*)(tavo_mrph_t*), int, int> const cases{
        {tavo_getFormLength, 3, 1}, {tavo_getPid, 4, 3},        {tavo_getCost, 12, 255},   {tavo_getExtCount, 2, 0},
        {tavo_getAltCount, 0, 0},   {tavo_isUndef, 0, 1},       {tavo_isAnnotation, 0, 0}, {tavo_isFirstDic, 1, 0},
        {tavo_getPartCount, 2, 1},  {tavo_get_comp_cap, 2, 1},  {tavo_get_mrph_cap, 0, 0}, {tavo_get_icat, 3, 0},
        {tavo_get_usrfield, 2, 0},  {tavo_getGivenBegin, 0, 3}, {tavo_getGivenEnd, 3, 4},
    };
    std::string const text = "abcz";
    tavo_result_t const result = analyze(text);
    ASSERT_EQ(result.count, 2);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        auto const& [call, ofCompound, ofUnknown] = cases[i];
        EXPECT_EQ(call(result.array[0]), ofCompound) << "case " << i;
        EXPECT_EQ(call(result.array[1]), ofUnknown) << "case " << i;
    }
}

TEST_F(ValueFunctions, OfAPart) {
    Table<char const*, int (*)(tavo_mrph_t*, int), int, int> const cases{
        {"PartLength", tavo_getPartLength, 2, 1},     {"PartFormLength", tavo_getPartFormLength, 2, 1},
        {"PartPid", tavo_getPartPid, 5, 6},           {"PartCost", tavo_getPartCost, 12, 12},
        {"PartExtCount", tavo_getPartExtCount, 2, 2}, {"PartGivenBegin", tavo_getPartGivenBegin, 0, 2},
        {"PartGivenEnd", tavo_getPartGivenEnd, 2, 3},
    };
    tavo_mrph_t* const mrph = compound();
    for (auto const& [name, call, first, second] : cases) {
        EXPECT_EQ(call(mrph, 0), first) << name;
        EXPECT_EQ(call(mrph, 1), second) << name;
        expectError(mrph, call(mrph, -1), -10001, std::string("INVALID_ARGUMENT:tavo_get") + name + "()");
        expectError(mrph, call(mrph, 2), -10007, std::string("RANGE_ERROR: Mrph::get") + name + "()");
        EXPECT_EQ(tavo_getMrphErrorCode(mrph), -10007);
        EXPECT_EQ(call(mrph, 0), first);
        EXPECT_EQ(tavo_getMrphErrorCode(mrph), 0);
    }
}

TEST_F(ValueFunctions, OfAWordThatStandsInNoText) {
    tavo_result_t found{};
    ASSERT_EQ(tavo_getByRead(tavo, &found, toSjis("でぃ").c_str(), 0), 0);
    ASSERT_GT(found.count, 0);
    tavo_mrph_t* const word = found.array[0];
    expectError(word, tavo_getGivenBegin(word), -10008, "LOGIC_ERROR: Mrph::getGivenBegin()");
    expectError(word, tavo_getGivenEnd(word), -10008, "LOGIC_ERROR: Mrph::getGivenEnd()");
    expectError(word, tavo_getPartGivenBegin(word, 0), -10008, "LOGIC_ERROR: Mrph::getPartGivenBegin()");
    expectError(word, tavo_getPartGivenEnd(word, 0), -10008, "LOGIC_ERROR: Mrph::getPartGivenEnd()");
}

TEST_F(ValueFunctions, CategoryCounts) {
    tavo_mrph_t* const mrph = compound();
    unsigned char counts[3] = {9, 9, 9};
    EXPECT_EQ(tavo_getCategoryCount(mrph, &counts[0], &counts[1], &counts[2]), 0);
    EXPECT_EQ((std::vector<int>{counts[0], counts[1], counts[2]}), (std::vector<int>{2, 0, 1}));
    counts[0] = 9;
    EXPECT_EQ(tavo_getPartCategoryCount(mrph, 1, &counts[0], &counts[1], &counts[2]), 0);
    EXPECT_EQ(counts[0], 2);
    EXPECT_EQ(tavo_getPartCategoryCount(mrph, 2, &counts[0], &counts[1], &counts[2]), -10007);
    EXPECT_EQ(tavo_getPartCategoryCount(mrph, -1, &counts[0], &counts[1], &counts[2]), -10001);
    for (int missing = 0; missing < 3; ++missing) {
        unsigned char* to[3] = {&counts[0], &counts[1], &counts[2]};
        to[missing] = nullptr;
        expectFlatError(mrph, tavo_getCategoryCount(mrph, to[0], to[1], to[2]), "tavo_getCategoryCount");
        expectFlatError(mrph, tavo_getPartCategoryCount(mrph, 0, to[0], to[1], to[2]), "tavo_getPartCategoryCount");
    }
}

TEST_F(ValueFunctions, RoomIsReservedAndNeverTakenAway) {
    tavo_mrph_t* const mrph = compound();
    EXPECT_EQ(tavo_set_comp_cap(mrph, 5), 0);
    EXPECT_GE(tavo_get_comp_cap(mrph), 5);
    EXPECT_EQ(tavo_set_mrph_cap(mrph, 40), 0);
    EXPECT_GE(tavo_get_mrph_cap(mrph), 40);
    EXPECT_EQ(tavo_set_comp_cap(mrph, 0), 0);
    EXPECT_GE(tavo_get_comp_cap(mrph), 40);
    EXPECT_EQ(tavo_getPartCount(mrph), 2) << "room is no part";
    for (int const bad : {-1, 65536}) {
        expectFlatError(mrph, tavo_set_comp_cap(mrph, bad), "tavo_set_comp_cap");
        EXPECT_EQ(tavo_set_mrph_cap(mrph, bad), -10001);
    }
}

TEST_F(ValueFunctions, Modes) {
    Table<char const*, int (*)(tavo_t*, int), int (*)(tavo_t*), int, int> const cases{
        {"InputConvertMode", tavo_setInputConvertMode, tavo_getInputConvertMode, 2, 0},
        {"OutputConvertMode", tavo_setOutputConvertMode, tavo_getOutputConvertMode, 3, 0},
        {"CooccurrenceMode", tavo_setCooccurrenceMode, tavo_getCooccurrenceMode, 1, 0},
        {"DelimitCRLFMode", tavo_setDelimitCRLFMode, tavo_getDelimitCRLFMode, 1, 0},
        {"DeleteCRLFMode", tavo_setDeleteCRLFMode, tavo_getDeleteCRLFMode, 1, 0},
        {"TaggedInputMode", tavo_setTaggedInputMode, tavo_getTaggedInputMode, 1, 0},
        {"DeleteSlashMode", tavo_setDeleteSlashMode, tavo_getDeleteSlashMode, 1, 1},
        {"AlternativeMode", tavo_setAlternativeMode, tavo_getAlternativeMode, 1, 0},
        {"AlphabetCapitalizeMode", tavo_setAlphabetCapitalizeMode, tavo_getAlphabetCapitalizeMode, 1, 0},
        {"ReduceUndefMode", tavo_setReduceUndefMode, tavo_getReduceUndefMode, 1, 1},
        {"ReduceCharMode", tavo_setReduceCharMode, tavo_getReduceCharMode, 1, 1},
        {"ReduceNumberMode", tavo_setReduceNumberMode, tavo_getReduceNumberMode, 1, 1},
        {"DivideWordMode", tavo_setDivideWordMode, tavo_getDivideWordMode, 1, 0},
        {"MemoryMappedMode", tavo_setMemoryMappedMode, tavo_getMemoryMappedMode, 1, 1},
    };
    for (auto const& [name, set, get, highest, atFirst] : cases) {
        EXPECT_EQ(get(tavo), atFirst) << name;
        for (int const bad : {-1, highest + 1}) {
            expectError(set(tavo, bad), -10001, std::string("INVALID_ARGUMENT: Tavo::set") + name + "()");
        }
        for (int const mode : {highest, 0}) {
            EXPECT_EQ(set(tavo, mode), 0) << name;
            EXPECT_EQ(get(tavo), mode) << name;
        }
    }
}

TEST_F(ValueFunctions, CombineModes) {
    EXPECT_EQ(tavo_getProsodicInfoCombineMode(tavo), 2);
    EXPECT_EQ(tavo_setProsodicInfoCombineMode(tavo, 0, "+"), 0);
    EXPECT_EQ(tavo_getProsodicInfoCombineMode(tavo), 0);
    EXPECT_STREQ(tavo_getProsodicInfoFiller(tavo), "+");
    expectError(tavo_setProsodicInfoCombineMode(tavo, 3, ""), -10001,
                "INVALID_ARGUMENT: Tavo::setProsodicInfoCobineMode()");
    expectFlatError(tavo_setProsodicInfoCombineMode(tavo, 0, nullptr), "tavo_setProsodicInfoCombineMode");

    EXPECT_EQ(tavo_getExtCombineMode(tavo, 4), 0);
    EXPECT_STREQ(tavo_getExtFiller(tavo, 4), "");
    EXPECT_EQ(tavo_setExtCombineMode(tavo, 4, 2, "|"), 0);
    EXPECT_EQ(tavo_getExtCombineMode(tavo, 4), 2);
    EXPECT_STREQ(tavo_getExtFiller(tavo, 4), "|");
    expectError(tavo_setExtCombineMode(tavo, 4, 3, ""), -10001, "INVALID_ARGUMENT: Tavo::setExtCombineMode()");
    expectFlatError(tavo_setExtCombineMode(tavo, -1, 0, ""), "tavo_setExtCombineMode");
    EXPECT_EQ(tavo_setExtCombineMode(tavo, 0, 0, nullptr), -10001);
    expectFlatError(tavo_getExtCombineMode(tavo, -1), "tavo_getExtCombineMode");
    EXPECT_EQ(tavo_getExtFiller(tavo, -1), nullptr);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "INVALID_ARGUMENT:tavo_getExtFiller()");
}

TEST_F(ValueFunctions, StringSettings) {
    Table<char const*, int (*)(tavo_t*, char const*), char const* (*)(tavo_t*), char const*> const cases{
        {"tavo_setOutputFormat", tavo_setOutputFormat, tavo_getOutputFormat, "%10w %20h %k\\n"},
        {"tavo_setNullString", tavo_setNullString, tavo_getNullString, ""},
        {"tavo_setEOS", tavo_setEOS, tavo_getEOS, ""},
        {"tavo_setInitFilePath", tavo_setInitFilePath, tavo_getInitFilePath, ""},
        {"tavo_setConnTablePath", tavo_setConnTablePath, tavo_getConnTablePath, paths.connTable.c_str()},
    };
    for (auto const& [name, set, get, atFirst] : cases) {
        EXPECT_STREQ(get(tavo), atFirst) << name;
        expectFlatError(set(tavo, nullptr), name);
        bool const isFile = set == tavo_setInitFilePath || set == tavo_setConnTablePath;
        EXPECT_EQ(set(tavo, "some/text"), isFile ? -10003 : 0) << name;
        EXPECT_EQ(tavo_getErrorWhat(tavo), std::string(isFile ? "FILE_NOT_OPEN: some/text" : ""));
        if (!isFile) {
            EXPECT_STREQ(get(tavo), "some/text");
        }
    }
    std::string const bad = dir.write("bad.init", "ReduceChar=x\n");
    expectError(tavo_setInitFilePath(tavo, bad.c_str()), -10010, "UNKNOWN_SETTING:");
    EXPECT_EQ(tavo_getInitFilePath(tavo), bad);
}

TEST_F(ValueFunctions, RuleAndListFilesTakeNull) {
    Table<int (*)(tavo_t*, char const*), char const* (*)(tavo_t*)> const cases{
        {tavo_setCommentRulePath, tavo_getCommentRulePath},
        {tavo_setConvertRulePath, tavo_getConvertRulePath},
        {tavo_setReduceRulePath, tavo_getReduceRulePath},
        {tavo_setEndFormRulePath, tavo_getEndFormRulePath},
        {tavo_setCooccurrenceRulePath, tavo_getCooccurrenceRulePath},
        {tavo_setPublicPartOfSPPath, tavo_getPublicPartOfSPPath},
        {tavo_setNumberPartOfSPPath, tavo_getNumberPartOfSPPath},
        {tavo_setMajorPartOfSPPath, tavo_getMajorPartOfSPPath},
    };
    std::string const empty = dir.write("empty.txt", "");
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE("case " + std::to_string(i));
        auto const& [set, get] = cases[i];
        EXPECT_STREQ(get(tavo), "");
        EXPECT_EQ(set(tavo, empty.c_str()), 0) << tavo_getErrorWhat(tavo);
        EXPECT_EQ(get(tavo), empty);
        EXPECT_EQ(set(tavo, nullptr), 0);
        EXPECT_STREQ(get(tavo), "");
    }
    EXPECT_EQ(tavo_setNumberPartOfSPPath(tavo, "no/such"), -10003);
}

TEST_F(ValueFunctions, DelimiterStrings) {
    char const* const two[] = {".", "!?"};
    char const* array[2] = {};
    EXPECT_EQ(tavo_setDelimiterString(tavo, two, 2), 0);
    EXPECT_EQ(tavo_getDelimiterString(tavo, nullptr, 0), 2);
    expectError(tavo_getDelimiterString(tavo, array, 1), -10002, "NOT_ENOUGH_BUFFER:tavo_getDelimiterString()");
    EXPECT_EQ(array[0], nullptr);
    EXPECT_EQ(tavo_getDelimiterString(tavo, array, 2), 2);
    EXPECT_STREQ(array[0], ".");
    EXPECT_STREQ(array[1], "!?");
    expectFlatError(tavo_getDelimiterString(tavo, array, -1), "tavo_getDelimiterString");
    for (auto const& [strings, count] : {std::pair(two, -1), std::pair<char const* const*, int>(nullptr, 1)}) {
        expectFlatError(tavo_setDelimiterString(tavo, strings, count), "tavo_setDelimiterString");
    }
    char const* const broken[] = {"a", nullptr};
    expectError(tavo_setDelimiterString(tavo, broken, 2), -10001, "INVALID_ARGUMENT: Tavo::setDelimiterString()");
    EXPECT_EQ(tavo_getDelimiterString(tavo, nullptr, 0), 1);
    EXPECT_EQ(tavo_clearDelimiterString(tavo), 0);
    EXPECT_EQ(tavo_getDelimiterString(tavo, array, 0), 0);
    EXPECT_EQ(tavo_setDelimiterString(tavo, nullptr, 0), 0);
}

TEST_F(ValueFunctions, DictionariesByIndexAndPath) {
    EXPECT_EQ(tavo_getDicCount(tavo), 1);
    EXPECT_EQ(tavo_getDicIndex(tavo, paths.dic.c_str()), 0);
    Table<std::string, int (*)(tavo_t*, int)> const byIndex{
        {"touchDic", tavo_touchDic}, {"updateDic", tavo_updateDic}, {"offDic", tavo_offDic}};
    for (auto const& [name, call] : byIndex) {
        expectFlatError(call(tavo, -1), "tavo_" + name);
        expectError(call(tavo, 1), -10007, "RANGE_ERROR: Tavo::" + name + "()");
    }
    Table<char const*, int (*)(tavo_t*, char const*)> const byPath{{"tavo_getDicIndex", tavo_getDicIndex},
                                                                   {"tavo_touchDicPath", tavo_touchDicPath},
                                                                   {"tavo_updateDicPath", tavo_updateDicPath},
                                                                   {"tavo_offDicPath", tavo_offDicPath}};
    for (auto const& [name, call] : byPath) {
        expectFlatError(call(tavo, nullptr), name);
        EXPECT_EQ(call(tavo, "no/such"), -10003) << name;
    }
    EXPECT_EQ(tavo_touchDic(tavo, 0), 0);
    EXPECT_EQ(tavo_touchDicPath(tavo, paths.dic.c_str()), 0);
    EXPECT_EQ(tavo_touchDicAll(tavo), 0);
    EXPECT_EQ(tavo_updateDicPath(tavo, paths.dic.c_str()), tavo_updateDic(tavo, 0));

    EXPECT_EQ(tavo_offDicPath(tavo, paths.dic.c_str()), 0);
    EXPECT_EQ(tavo_getDicCount(tavo), 0);
    EXPECT_EQ(tavo_isOK(tavo), 0);
    for (int const flag : {-1, 2}) EXPECT_EQ(tavo_addDicPath(tavo, paths.dic.c_str(), flag), -10001);
    expectFlatError(tavo_addDicPath(tavo, nullptr, 0), "tavo_addDicPath");
    EXPECT_EQ(tavo_addDicPath(tavo, "no/such", 1), -10003);
    EXPECT_EQ(tavo_addDicPath(tavo, paths.dic.c_str(), 1), 0);
    EXPECT_EQ(tavo_updateDic(tavo, 0), 3) << "without source path";
    EXPECT_EQ(tavo_offDicAll(tavo), 0);
    EXPECT_EQ(tavo_getDicCount(tavo), 0);
}

}  // namespace
}  // namespace TAVO::test
