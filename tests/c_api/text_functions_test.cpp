// Every function that delivers a text: the buffer protocol and its errors.
#include "c_api/flat_world.hpp"

namespace TAVO::test {
namespace {

using Deliver = std::function<int(char*, int)>;

struct Function {
    std::string name;
    std::string inInvalid;    ///< name in its invalid-argument text
    std::string inNotEnough;  ///< name in the text of a buffer that is too small
    std::function<char const*()> what;
};

Function named(std::string const& name, std::function<char const*()> what) {
    Function function{name, name, name, std::move(what)};
    // Two names are given wrongly, in one text each.
    if (name == "tavo_getEndLVRead") function.inInvalid = "tavo_EndLVRead";
    if (name == "tavo_getPartEndStdForm") function.inNotEnough = "tavo_getPatEndStdForm";
    return function;
}

void expectInvalid(Function const& function, int code) {
    EXPECT_EQ(code, -10001) << function.name;
    EXPECT_EQ(function.what(), "INVALID_ARGUMENT:" + function.inInvalid + "()");
}

void expectProtocol(Function const& function, Deliver const& deliver, std::string const& text) {
    SCOPED_TRACE(function.name);
    int const length = static_cast<int>(text.size());
    expectInvalid(function, deliver(nullptr, -1));
    EXPECT_EQ(deliver(nullptr, 0), length + 1);
    EXPECT_STREQ(function.what(), "") << "the error before was not cleared";
    EXPECT_EQ(deliver(nullptr, 1), length + 1);

    for (int const size : {0, length / 2, length, length + 1, length + 9}) {
        std::string buffer(text.size() + 10, '#');
        int const result = deliver(buffer.data(), size);
        std::string const untouched(buffer.size() - static_cast<std::size_t>(size), '#');
        EXPECT_EQ(buffer.substr(static_cast<std::size_t>(size)), untouched) << "size " << size;
        if (size > length) {
            EXPECT_EQ(result, length);
            EXPECT_EQ(buffer.substr(0, text.size() + 1), text + '\0') << "size " << size;
            EXPECT_STREQ(function.what(), "");
        } else {
            EXPECT_EQ(result, -10002) << "size " << size;
            if (size > 0) {
                EXPECT_EQ(buffer[0], '\0');
            }
            EXPECT_EQ(function.what(), "NOT_ENOUGH_BUFFER:" + function.inNotEnough + "()");
        }
    }
}

class TextFunctions : public FlatWorld {
protected:
    Function ofMrph(char const* name, tavo_mrph_t* mrph) {
        return named(name, [mrph] { return tavo_getMrphErrorWhat(mrph); });
    }
    Function ofTavo(char const* name) {
        return named(name, [this] { return tavo_getErrorWhat(tavo); });
    }
};

TEST_F(TextFunctions, WholeMorphemeWithFlag) {
    Table<char const*, int (*)(tavo_mrph_t*, int, char*, int), char const*, char const*> const cases{
        {"tavo_getForm", tavo_getForm, "abc", "abc"},
        {"tavo_getEndForm", tavo_getEndForm, "abc", "abc"},
        {"tavo_getStdForm", tavo_getStdForm, "ABC", "AB/C"},
        {"tavo_getEndStdForm", tavo_getEndStdForm, "ABC", "AB/C"},
        {"tavo_getRead", tavo_getRead, "えいびし", "えいび/し"},
        {"tavo_getEndRead", tavo_getEndRead, "えいびし", "えいび/し"},
        {"tavo_getLVRead", tavo_getLVRead, "えいびし", "えいび/し"},
        {"tavo_getEndLVRead", tavo_getEndLVRead, "えいびし", "えいび/し"},
        {"tavo_getPron", tavo_getPron, "えいびーし", "えいびー/し"},
        {"tavo_getEndPron", tavo_getEndPron, "えいびーし", "えいびー/し"},
        {"tavo_getReadPron", tavo_getReadPron, "えい(び|びー)し", "えい(び|びー)/し"},
    };
    tavo_mrph_t* const mrph = compound();
    for (auto const& [name, call, plain, separated] : cases) {
        Function const function = ofMrph(name, mrph);
        expectProtocol(function, std::bind_front(call, mrph, 1), toSjis(plain));
        expectProtocol(function, std::bind_front(call, mrph, 0), toSjis(separated));
        for (int const flag : {-1, 2}) expectInvalid(function, call(mrph, flag, nullptr, 0));
    }
}

TEST_F(TextFunctions, WholeMorphemeStored) {
    Table<char const*, int (*)(tavo_mrph_t*, char*, int), char const*> const cases{
        {"tavo_getPartOfSP", tavo_getPartOfSP, "Noun"},
        {"tavo_getDisplayPartOfSP", tavo_getDisplayPartOfSP, "Noun"},
        {"tavo_getCategory", tavo_getCategory, "[1,2][][7]"},
        {"tavo_getGroup", tavo_getGroup, "grp"},
        {"tavo_getGroupCooc", tavo_getGroupCooc, "g1"},
        {"tavo_getWordCooc", tavo_getWordCooc, "w1"},
        {"tavo_getGrammarType", tavo_getGrammarType, ""},
        {"tavo_getAdditionalInfo", tavo_getAdditionalInfo, ""},
        {"tavo_getProsodicInfo", tavo_getProsodicInfo, "pros"},
        {"tavo_getProsodicType", tavo_getProsodicType, ""},
    };
    tavo_mrph_t* const mrph = compound();
    for (auto const& [name, call, text] : cases) expectProtocol(ofMrph(name, mrph), std::bind_front(call, mrph), text);
    std::string const unknown = "z";
    tavo_mrph_t* const z = analyze(unknown).array[0];
    expectProtocol(ofMrph("tavo_getDisplayPartOfSP", z), std::bind_front(tavo_getDisplayPartOfSP, z), toSjis("未知語"));
}

TEST_F(TextFunctions, ByIndexOfPartOrField) {
    Table<char const*, int (*)(tavo_mrph_t*, int, char*, int), char const*, char const*, char const*> const cases{
        {"tavo_getExt", tavo_getExt, "x0", "x1", "getExt"},
        {"tavo_getPartForm", tavo_getPartForm, "ab", "c", "getPartFormNoConvert"},
        {"tavo_getPartEndForm", tavo_getPartEndForm, "ab", "c", "getPartEndForm"},
        {"tavo_getPartStdForm", tavo_getPartStdForm, "AB", "C", "getPartStdForm"},
        {"tavo_getPartEndStdForm", tavo_getPartEndStdForm, "AB", "C", "getPartEndStdForm"},
        {"tavo_getPartRead", tavo_getPartRead, "えいび", "し", "getPartRead"},
        {"tavo_getPartEndRead", tavo_getPartEndRead, "えいび", "し", "getPartEndRead"},
        {"tavo_getPartLVRead", tavo_getPartLVRead, "えいび", "し", "getPartLVRead"},
        {"tavo_getPartEndLVRead", tavo_getPartEndLVRead, "えいび", "し", "getPartEndLVRead"},
        {"tavo_getPartPron", tavo_getPartPron, "えいびー", "し", "getPartPron"},
        {"tavo_getPartEndPron", tavo_getPartEndPron, "えいびー", "し", "getPartEndPron"},
        {"tavo_getPartReadPron", tavo_getPartReadPron, "えい(び|びー)", "し", "getPartReadPron"},
        {"tavo_getPartPartOfSP", tavo_getPartPartOfSP, "Verb", "Tail:Kana-2", "getPartOfSP"},
        {"tavo_getPartDisplayPartOfSP", tavo_getPartDisplayPartOfSP, "Verb", "Tail", "getDisplayPartOfSP"},
        {"tavo_getPartCategory", tavo_getPartCategory, "[1,2][][7]", "[1,2][][7]", "getPartCategory"},
        {"tavo_getPartGroup", tavo_getPartGroup, "grp", "grp", "getPartGroup"},
        {"tavo_getPartGroupCooc", tavo_getPartGroupCooc, "g1", "g1", "getPartGroupCooc"},
        {"tavo_getPartWordCooc", tavo_getPartWordCooc, "w1", "w1", "getPartWordCooc"},
        {"tavo_getPartGrammarType", tavo_getPartGrammarType, "", "", "getPartGrammarType"},
        {"tavo_getPartAdditionalInfo", tavo_getPartAdditionalInfo, "", "", "getPartAdditionalInfo"},
        {"tavo_getPartProsodicInfo", tavo_getPartProsodicInfo, "pros", "pros", "getPartProsodicInfo"},
        {"tavo_getPartProsodicType", tavo_getPartProsodicType, "", "", "getPartProsodicType"},
    };
    // The method is named for an index beyond the count.
    tavo_mrph_t* const mrph = compound();
    for (auto const& [name, call, first, second, method] : cases) {
        Function const function = ofMrph(name, mrph);
        expectProtocol(function, std::bind_front(call, mrph, 0), toSjis(first));
        expectProtocol(function, std::bind_front(call, mrph, 1), toSjis(second));
        expectInvalid(function, call(mrph, -1, nullptr, 0));
        expectError(mrph, call(mrph, 2, nullptr, 0), -10007, std::string("RANGE_ERROR: Mrph::") + method + "()");
    }
}

TEST_F(TextFunctions, PartFieldsAndFormats) {
    tavo_mrph_t* const mrph = compound();
    Function const ext = ofMrph("tavo_getPartExt", mrph);
    expectProtocol(ext, std::bind_front(tavo_getPartExt, mrph, 1, 0), "x0");
    expectInvalid(ext, tavo_getPartExt(mrph, -1, 0, nullptr, 0));
    expectInvalid(ext, tavo_getPartExt(mrph, 0, -1, nullptr, 0));
    EXPECT_EQ(tavo_getPartExt(mrph, 2, 0, nullptr, 0), -10007);
    EXPECT_EQ(tavo_getPartExt(mrph, 0, 2, nullptr, 0), -10007);

    Function const whole = ofMrph("tavo_format", mrph);
    expectProtocol(whole, std::bind_front(tavo_format, mrph, "%5w|%b", "-"), "abc  |-");
    expectInvalid(whole, tavo_format(mrph, nullptr, "", nullptr, 0));
    expectInvalid(whole, tavo_format(mrph, "", nullptr, nullptr, 0));

    Function const part = ofMrph("tavo_formatPart", mrph);
    expectProtocol(part, std::bind_front(tavo_formatPart, mrph, 1, "%w:%h", ""), "c:Tail:Kana-2");
    expectInvalid(part, tavo_formatPart(mrph, -1, "", "", nullptr, 0));
    expectInvalid(part, tavo_formatPart(mrph, 0, nullptr, "", nullptr, 0));
    EXPECT_EQ(tavo_formatPart(mrph, 2, "", "", nullptr, 0), -10007);
}

TEST_F(TextFunctions, OfTheAnalyser) {
    Table<char const*, int (*)(tavo_t*, int, char*, int), std::string, char const*> const cases{
        {"tavo_getSentence", tavo_getSentence, "abcd", "RANGE_ERROR: Tavo::getSentence()"},
        {"tavo_getAnalyzedText", tavo_getAnalyzedText, "abcd", "RANGE_ERROR Tavo::getAnalyzedText()"},
        {"tavo_getDicPath", tavo_getDicPath, paths.dic, "RANGE_ERROR: Tavo::getDicPath()"},
        {"tavo_getSrcPath", tavo_getSrcPath, paths.source, "RANGE_ERROR: Tavo::getSrcPath()"},
    };
    compound();
    for (auto const& [name, call, text, rangeText] : cases) {
        Function const function = ofTavo(name);
        expectProtocol(function, std::bind_front(call, tavo, 0), text);
        expectInvalid(function, call(tavo, -1, nullptr, 0));
        expectError(call(tavo, 1, nullptr, 0), -10007, rangeText);
    }
}

TEST_F(TextFunctions, FailedSentencesByNumber) {
    char const* const stops[] = {"."};
    ASSERT_EQ(tavo_setDelimiterString(tavo, stops, 1), 0);
    ASSERT_EQ(tavo_setTaggedInputMode(tavo, 1), 0);
    Table<std::string, std::string> const cases{{"abc.", ""}, {"</word>.abc", "0"}, {"</word>.abc.</word>.", "0,2"}};
    for (auto const& [text, expected] : cases) {
        ASSERT_GE(tavo_analyze(tavo, text.data(), static_cast<int>(text.size())), 0) << tavo_getErrorWhat(tavo);
        expectProtocol(ofTavo("tavo_getErrorSentenceIndex"), std::bind_front(tavo_getErrorSentenceIndex, tavo),
                       expected);
    }
}

}  // namespace
}  // namespace TAVO::test
