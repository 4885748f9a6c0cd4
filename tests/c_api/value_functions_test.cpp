// Functions that return numbers: of morphemes, parts, settings and dictionaries.
#include "c_api/flat_world.hpp"

namespace TAVO::test {
namespace {

class ValueFunctions : public FlatWorld {
protected:
    void expectFlatError(char const* function) {
        EXPECT_EQ(tavo_getErrorWhat(tavo), std::string("INVALID_ARGUMENT:") + function + "()");
    }
};

TEST_F(ValueFunctions, OfAMorpheme) {
    struct Case {
        int (*call)(tavo_mrph_t*);
        int ofCompound;
        int ofUnknown;
    };
    Case const cases[] = {
        {tavo_getFormLength, 3, 1}, {tavo_getPid, 4, 3},       {tavo_getCost, 12, 255},   {tavo_getExtCount, 2, 0},
        {tavo_getAltCount, 0, 0},   {tavo_isUndef, 0, 1},      {tavo_isAnnotation, 0, 0}, {tavo_isFirstDic, 1, 0},
        {tavo_getPartCount, 2, 1},  {tavo_get_comp_cap, 2, 1}, {tavo_get_mrph_cap, 0, 0}, {tavo_get_icat, 3, 0},
        {tavo_get_usrfield, 2, 0},
    };
    std::string const text = "abcz";
    tavo_result_t const result = analyze(text);
    ASSERT_EQ(result.count, 2);
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(cases[i].call(result.array[0]), cases[i].ofCompound) << "case " << i;
        EXPECT_EQ(cases[i].call(result.array[1]), cases[i].ofUnknown) << "case " << i;
        EXPECT_EQ(cases[i].call(nullptr), -10001) << "case " << i;
    }
}

TEST_F(ValueFunctions, OfAPart) {
    struct Case {
        char const* name;
        int (*call)(tavo_mrph_t*, int);
        int first;
        int second;
    };
    Case const cases[] = {
        {"PartLength", tavo_getPartLength, 2, 1},     {"PartFormLength", tavo_getPartFormLength, 2, 1},
        {"PartPid", tavo_getPartPid, 5, 6},           {"PartCost", tavo_getPartCost, 12, 12},
        {"PartExtCount", tavo_getPartExtCount, 2, 2},
    };
    tavo_mrph_t* const mrph = compound();
    for (Case const& c : cases) {
        EXPECT_EQ(c.call(mrph, 0), c.first) << c.name;
        EXPECT_EQ(c.call(mrph, 1), c.second) << c.name;
        EXPECT_EQ(c.call(mrph, -1), -10001);
        EXPECT_EQ(tavo_getMrphErrorWhat(mrph), std::string("INVALID_ARGUMENT:tavo_get") + c.name + "()");
        EXPECT_EQ(c.call(mrph, 2), -10007);
        EXPECT_EQ(tavo_getMrphErrorWhat(mrph), std::string("RANGE_ERROR: Mrph::get") + c.name + "()");
        EXPECT_EQ(tavo_getMrphErrorCode(mrph), -10007);
        EXPECT_EQ(c.call(mrph, 0), c.first);
        EXPECT_EQ(tavo_getMrphErrorCode(mrph), 0);
        EXPECT_EQ(c.call(nullptr, 0), -10001);
    }
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
    EXPECT_EQ(tavo_getPartCategoryCount(nullptr, 0, &counts[0], &counts[1], &counts[2]), -10001);
    EXPECT_EQ(tavo_getCategoryCount(nullptr, &counts[0], &counts[1], &counts[2]), -10001);
    for (int missing = 0; missing < 3; ++missing) {
        unsigned char* to[3] = {&counts[0], &counts[1], &counts[2]};
        to[missing] = nullptr;
        EXPECT_EQ(tavo_getCategoryCount(mrph, to[0], to[1], to[2]), -10001);
        EXPECT_STREQ(tavo_getMrphErrorWhat(mrph), "INVALID_ARGUMENT:tavo_getCategoryCount()");
        EXPECT_EQ(tavo_getPartCategoryCount(mrph, 0, to[0], to[1], to[2]), -10001);
        EXPECT_STREQ(tavo_getMrphErrorWhat(mrph), "INVALID_ARGUMENT:tavo_getPartCategoryCount()");
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
        EXPECT_EQ(tavo_set_comp_cap(mrph, bad), -10001);
        EXPECT_STREQ(tavo_getMrphErrorWhat(mrph), "INVALID_ARGUMENT:tavo_set_comp_cap()");
        EXPECT_EQ(tavo_set_mrph_cap(mrph, bad), -10001);
    }
    EXPECT_EQ(tavo_set_comp_cap(nullptr, 1), -10001);
    EXPECT_EQ(tavo_set_mrph_cap(nullptr, 1), -10001);
}

TEST_F(ValueFunctions, Modes) {
    struct Case {
        char const* name;
        int (*set)(tavo_t*, int);
        int (*get)(tavo_t*);
        int highest;
        int atFirst;
    };
    Case const cases[] = {
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
    for (Case const& c : cases) {
        EXPECT_EQ(c.get(tavo), c.atFirst) << c.name;
        for (int const bad : {-1, c.highest + 1}) {
            EXPECT_EQ(c.set(tavo, bad), -10001) << c.name;
            EXPECT_EQ(tavo_getErrorWhat(tavo), std::string("INVALID_ARGUMENT: Tavo::set") + c.name + "()");
        }
        for (int const mode : {c.highest, 0}) {
            EXPECT_EQ(c.set(tavo, mode), 0) << c.name;
            EXPECT_EQ(c.get(tavo), mode) << c.name;
        }
        EXPECT_EQ(c.set(nullptr, 0), -10001);
        EXPECT_EQ(c.get(nullptr), -10001);
    }
}

TEST_F(ValueFunctions, CombineModes) {
    EXPECT_EQ(tavo_getProsodicInfoCombineMode(tavo), 2);
    EXPECT_EQ(tavo_setProsodicInfoCombineMode(tavo, 0, "+"), 0);
    EXPECT_EQ(tavo_getProsodicInfoCombineMode(tavo), 0);
    EXPECT_STREQ(tavo_getProsodicInfoFiller(tavo), "+");
    EXPECT_EQ(tavo_setProsodicInfoCombineMode(tavo, 3, ""), -10001);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "INVALID_ARGUMENT: Tavo::setProsodicInfoCobineMode()");
    EXPECT_EQ(tavo_setProsodicInfoCombineMode(tavo, 0, nullptr), -10001);
    expectFlatError("tavo_setProsodicInfoCombineMode");

    EXPECT_EQ(tavo_getExtCombineMode(tavo, 4), 0);
    EXPECT_STREQ(tavo_getExtFiller(tavo, 4), "");
    EXPECT_EQ(tavo_setExtCombineMode(tavo, 4, 2, "|"), 0);
    EXPECT_EQ(tavo_getExtCombineMode(tavo, 4), 2);
    EXPECT_STREQ(tavo_getExtFiller(tavo, 4), "|");
    EXPECT_EQ(tavo_setExtCombineMode(tavo, 4, 3, ""), -10001);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "INVALID_ARGUMENT: Tavo::setExtCombineMode()");
    EXPECT_EQ(tavo_setExtCombineMode(tavo, -1, 0, ""), -10001);
    expectFlatError("tavo_setExtCombineMode");
    EXPECT_EQ(tavo_setExtCombineMode(tavo, 0, 0, nullptr), -10001);
    EXPECT_EQ(tavo_getExtCombineMode(tavo, -1), -10001);
    expectFlatError("tavo_getExtCombineMode");
    EXPECT_EQ(tavo_getExtFiller(tavo, -1), nullptr);
    expectFlatError("tavo_getExtFiller");

    EXPECT_EQ(tavo_setProsodicInfoCombineMode(nullptr, 0, ""), -10001);
    EXPECT_EQ(tavo_getProsodicInfoCombineMode(nullptr), -10001);
    EXPECT_EQ(tavo_getProsodicInfoFiller(nullptr), nullptr);
    EXPECT_EQ(tavo_setExtCombineMode(nullptr, 0, 0, ""), -10001);
    EXPECT_EQ(tavo_getExtCombineMode(nullptr, 0), -10001);
    EXPECT_EQ(tavo_getExtFiller(nullptr, 0), nullptr);
}

TEST_F(ValueFunctions, StringSettings) {
    struct Case {
        char const* name;
        int (*set)(tavo_t*, char const*);
        char const* (*get)(tavo_t*);
        char const* atFirst;
    };
    Case const cases[] = {
        {"tavo_setOutputFormat", tavo_setOutputFormat, tavo_getOutputFormat, "%10w %20h %k\\n"},
        {"tavo_setNullString", tavo_setNullString, tavo_getNullString, ""},
        {"tavo_setEOS", tavo_setEOS, tavo_getEOS, ""},
        {"tavo_setInitFilePath", tavo_setInitFilePath, tavo_getInitFilePath, ""},
        {"tavo_setConnTablePath", tavo_setConnTablePath, tavo_getConnTablePath, paths.connTable.c_str()},
    };
    for (Case const& c : cases) {
        EXPECT_STREQ(c.get(tavo), c.atFirst) << c.name;
        EXPECT_EQ(c.set(tavo, nullptr), -10001);
        expectFlatError(c.name);
        bool const isFile = c.set == tavo_setInitFilePath || c.set == tavo_setConnTablePath;
        EXPECT_EQ(c.set(tavo, "some/text"), isFile ? -10003 : 0) << c.name;
        EXPECT_EQ(tavo_getErrorWhat(tavo), std::string(isFile ? "FILE_NOT_OPEN: some/text" : ""));
        if (!isFile) {
            EXPECT_STREQ(c.get(tavo), "some/text");
        }
        EXPECT_EQ(c.set(nullptr, ""), -10001);
        EXPECT_EQ(c.get(nullptr), nullptr);
    }
    std::string const bad = dir.write("bad.init", "ReduceChar=x\n");
    EXPECT_EQ(tavo_setInitFilePath(tavo, bad.c_str()), -10010);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "UNKNOWN_SETTING:");
    EXPECT_EQ(tavo_getInitFilePath(tavo), bad);
}

TEST_F(ValueFunctions, RuleAndListFilesTakeNull) {
    struct Case {
        int (*set)(tavo_t*, char const*);
        char const* (*get)(tavo_t*);
    };
    Case const cases[] = {
        {tavo_setCommentRulePath, tavo_getCommentRulePath},
        {tavo_setConvertRulePath, tavo_getConvertRulePath},
        {tavo_setReduceRulePath, tavo_getReduceRulePath},
        {tavo_setPublicPartOfSPPath, tavo_getPublicPartOfSPPath},
        {tavo_setNumberPartOfSPPath, tavo_getNumberPartOfSPPath},
        {tavo_setMajorPartOfSPPath, tavo_getMajorPartOfSPPath},
    };
    std::string const empty = dir.write("empty.txt", "");
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_STREQ(cases[i].get(tavo), "") << "case " << i;
        EXPECT_EQ(cases[i].set(tavo, empty.c_str()), 0) << tavo_getErrorWhat(tavo);
        EXPECT_EQ(cases[i].get(tavo), empty) << "case " << i;
        EXPECT_EQ(cases[i].set(tavo, nullptr), 0) << "case " << i;
        EXPECT_STREQ(cases[i].get(tavo), "") << "case " << i;
        EXPECT_EQ(cases[i].set(nullptr, ""), -10001);
        EXPECT_EQ(cases[i].get(nullptr), nullptr);
    }
    EXPECT_EQ(tavo_setNumberPartOfSPPath(tavo, "no/such"), -10003);
}

TEST_F(ValueFunctions, DelimiterStrings) {
    char const* const two[] = {".", "!?"};
    char const* array[2] = {};
    EXPECT_EQ(tavo_setDelimiterString(tavo, two, 2), 0);
    EXPECT_EQ(tavo_getDelimiterString(tavo, nullptr, 0), 2);
    EXPECT_EQ(tavo_getDelimiterString(tavo, array, 1), -10002);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "NOT_ENOUGH_BUFFER:tavo_getDelimiterString()");
    EXPECT_EQ(array[0], nullptr);
    EXPECT_EQ(tavo_getDelimiterString(tavo, array, 2), 2);
    EXPECT_STREQ(array[0], ".");
    EXPECT_STREQ(array[1], "!?");
    EXPECT_EQ(tavo_getDelimiterString(tavo, array, -1), -10001);
    expectFlatError("tavo_getDelimiterString");
    for (auto const& [strings, count] : {std::pair(two, -1), std::pair<char const* const*, int>(nullptr, 1)}) {
        EXPECT_EQ(tavo_setDelimiterString(tavo, strings, count), -10001);
        expectFlatError("tavo_setDelimiterString");
    }
    char const* const broken[] = {"a", nullptr};
    EXPECT_EQ(tavo_setDelimiterString(tavo, broken, 2), -10001);
    EXPECT_STREQ(tavo_getErrorWhat(tavo), "INVALID_ARGUMENT: Tavo::setDelimiterString()");
    EXPECT_EQ(tavo_getDelimiterString(tavo, nullptr, 0), 1);
    EXPECT_EQ(tavo_clearDelimiterString(tavo), 0);
    EXPECT_EQ(tavo_getDelimiterString(tavo, array, 0), 0);
    EXPECT_EQ(tavo_setDelimiterString(tavo, nullptr, 0), 0);
    EXPECT_EQ(tavo_setDelimiterString(nullptr, two, 2), -10001);
    EXPECT_EQ(tavo_getDelimiterString(nullptr, array, 2), -10001);
    EXPECT_EQ(tavo_clearDelimiterString(nullptr), -10001);
}

TEST_F(ValueFunctions, DictionariesByIndexAndPath) {
    struct ByIndex {
        char const* name;
        int (*call)(tavo_t*, int);
    };
    struct ByPath {
        char const* name;
        int (*call)(tavo_t*, char const*);
    };
    EXPECT_EQ(tavo_getDicCount(tavo), 1);
    EXPECT_EQ(tavo_getDicIndex(tavo, paths.dic.c_str()), 0);
    for (auto const& [name, call] :
         {ByIndex{"touchDic", tavo_touchDic}, ByIndex{"updateDic", tavo_updateDic}, ByIndex{"offDic", tavo_offDic}}) {
        EXPECT_EQ(call(tavo, -1), -10001);
        expectFlatError((std::string("tavo_") + name).c_str());
        EXPECT_EQ(call(tavo, 1), -10007);
        EXPECT_EQ(tavo_getErrorWhat(tavo), std::string("RANGE_ERROR: Tavo::") + name + "()");
        EXPECT_EQ(call(nullptr, 0), -10001);
    }
    for (auto const& [name, call] :
         {ByPath{"tavo_getDicIndex", tavo_getDicIndex}, ByPath{"tavo_touchDicPath", tavo_touchDicPath},
          ByPath{"tavo_updateDicPath", tavo_updateDicPath}, ByPath{"tavo_offDicPath", tavo_offDicPath}}) {
        EXPECT_EQ(call(tavo, nullptr), -10001);
        expectFlatError(name);
        EXPECT_EQ(call(tavo, "no/such"), -10003) << name;
        EXPECT_EQ(call(nullptr, ""), -10001);
    }
    EXPECT_EQ(tavo_touchDic(tavo, 0), 0);
    EXPECT_EQ(tavo_touchDicPath(tavo, paths.dic.c_str()), 0);
    EXPECT_EQ(tavo_touchDicAll(tavo), 0);
    EXPECT_EQ(tavo_touchDicAll(nullptr), -10001);
    EXPECT_EQ(tavo_updateDicPath(tavo, paths.dic.c_str()), tavo_updateDic(tavo, 0));

    EXPECT_EQ(tavo_offDicPath(tavo, paths.dic.c_str()), 0);
    EXPECT_EQ(tavo_getDicCount(tavo), 0);
    EXPECT_EQ(tavo_isOK(tavo), 0);
    for (int const flag : {-1, 2}) EXPECT_EQ(tavo_addDicPath(tavo, paths.dic.c_str(), flag), -10001);
    EXPECT_EQ(tavo_addDicPath(tavo, nullptr, 0), -10001);
    expectFlatError("tavo_addDicPath");
    EXPECT_EQ(tavo_addDicPath(tavo, "no/such", 1), -10003);
    EXPECT_EQ(tavo_addDicPath(tavo, paths.dic.c_str(), 1), 0);
    EXPECT_EQ(tavo_updateDic(tavo, 0), 3) << "without source path";
    EXPECT_EQ(tavo_offDicAll(tavo), 0);
    EXPECT_EQ(tavo_getDicCount(tavo), 0);
    EXPECT_EQ(tavo_addDicPath(nullptr, "", 1), -10001);
    EXPECT_EQ(tavo_getDicCount(nullptr), -10001);
    EXPECT_EQ(tavo_offDicAll(nullptr), -10001);
}

}  // namespace
}  // namespace TAVO::test
