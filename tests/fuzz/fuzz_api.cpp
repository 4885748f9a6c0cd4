// Random sequences of calls of the flat interface, with good and bad arguments,
// on two analysers and on morpheme handles that are alive.
#include "fuzz/api_calls.hpp"
#include "fuzz/fuzz_input.hpp"
#include "fuzz/fuzz_world.hpp"

#include <tavo/tavo_bulk.h>

#include <chrono>
#include <cstring>
#include <filesystem>

namespace {

using namespace TAVO::test;

/// The small lexicon, files beside it, and texts good and bad.
struct Files {
    TempDir const dir;
    SmallWorld::Paths const& paths = fuzzWorld().paths;
    std::string const rules = dir.write("rules", "Noun,Verb=Noun\n");
    std::string const init =
        dir.write("init", "DeleteCRLF=1\nDic=" + paths.dicSpec() + "\nConnTable=" + paths.connTable + "\n");
    std::string const comments =
        dir.write("comments", "Begin=(\nEnd=)\nPartOfSP=Noun\n\nString=##\nPartOfSP=Verb\nRead=a\n");
    std::vector<std::string> const strings = {
        paths.dic,  paths.dicSpec(), paths.source,   paths.connTable, init,
        rules,      comments,        "no/such/file", dir.path(),      "",
        "a",        "\x83\x5c",      "%w%H%C%D0\\n", "%12k|%e\\",     "\x82\xc5\x82\xa1",
        "(d)##abcd"};
    /// Pieces of what is analysed.
    std::vector<std::string> const texts{
        "abcd",
        "\x83\x5c"
        "d",
        "111d\r\n\nab",
        "(d)##ab",
        "<word PartOfSP=\"Noun\" Read=\"x-y/z\" Data1=q Category2=\"3:4\">ab</word>",
        "<multiword AdditionalInfo=\"i\">d<annotation Group=g>note</annotation>d</multiword>",
        "<annotation>n</annotation><boundary GrammarType=g ProsodicType=p>",
        "<word",
        "</word>",
        "d"};
    FILE* const sink = std::fopen("/dev/null", "w");
};

Files& files() {
    static Files made;
    return made;
}

/// One analyser and what lives with it.
struct Analyser {
    tavo_t* handle = nullptr;
    std::string text;  // of the last analysis
    std::vector<tavo_mrph_t*> results, words, alternatives;

    void endAll() {
        for (auto* const handles : {&results, &words, &alternatives}) handles->clear();
    }
};

class Run {
public:
    Run(std::uint8_t const* data, std::size_t size) : in_(data, size) {}
    ~Run() {
        for (Analyser& analyser : analysers_) tavo_free(analyser.handle);
        tavo_dispose();
    }

    void all() {
        for (Analyser& analyser : analysers_) {
            analyser.handle = tavo_new(static_cast<int>(in_.byte()) % 9);
            tavo_setConnTablePath(analyser.handle, files().paths.connTable.c_str());
            tavo_addDicPath(analyser.handle, files().paths.dicSpec().c_str(), static_cast<int>(in_.byte() % 2));
        }
        while (!in_.empty()) {
            analyser_ = &analysers_[in_.choice(analysers_.size())];
            one();
        }
    }

private:
    void one() {
        using Act = void (Run::*)();
        constexpr Act kActs[] = {&Run::analyze,  &Run::analyze, &Run::fetch,   &Run::byReading,    &Run::dictionaries,
                                 &Run::settings, &Run::bulk,    &Run::formats, &Run::alternatives, &Run::tavoTexts};
        std::size_t const chosen = in_.choice(16);
        (this->*(chosen < std::size(kActs) ? kActs[chosen] : &Run::morpheme))();
    }

    tavo_t* tavo() { return in_.byte() == 0 ? nullptr : analyser_->handle; }
    tavo_mrph_t* mrph() {
        auto* const from = std::array{&analyser_->results, &analyser_->words, &analyser_->alternatives}[in_.choice(3)];
        return from->empty() ? nullptr : (*from)[in_.choice(from->size())];
    }
    char const* string() {
        std::size_t const chosen = in_.choice(files().strings.size() + 2);
        if (chosen < files().strings.size()) return files().strings[chosen].c_str();
        if (chosen == files().strings.size()) return nullptr;
        kept_ = in_.bytes();
        for (char& c : kept_)
            if (c >= '0' && c <= '9') c = '2';  // widths of formats and sizes in files stay small
        return kept_.c_str();
    }

    /// Calls deliver(buffer, size) for the size it wants, then with heap buffers of exactly that and of one byte less.
    template <class Deliver>
    void intoBuffer(Deliver deliver) {
        int const size = in_.number();
        int const wanted = deliver(nullptr, size);
        check(size >= 0 || wanted < 0);
        if (wanted <= 0) return;
        auto const length = static_cast<std::size_t>(wanted) - 1;
        std::vector<char> buffer(length + 1, 'x'), small(length, 'x');
        check(deliver(buffer.data(), wanted) == wanted - 1 && buffer[length] == '\0');
        if (length == 0) return;
        check(deliver(small.data(), wanted - 1) < 0 && small[0] == '\0');
    }

    std::string pieces() {
        std::string text;
        for (unsigned left = in_.byte() % 6; left > 0; --left)
            text += in_.choice(3) == 0 ? in_.bytes() : files().texts[in_.choice(files().texts.size())];
        return text;
    }

    void analyze() {
        std::string const text = pieces();
        auto* const call = in_.choice(2) == 0 ? tavo_analyze : tavo_analyzeNBest;
        tavo_t* const to = tavo();
        if (to == nullptr) return check(call(nullptr, "", 0) == -10001);
        if (in_.byte() == 1) return check(call(to, "", -1) == -10001);
        analyser_->endAll();
        analyser_->text = text;
        call(to, analyser_->text.data(), static_cast<int>(analyser_->text.size()));
    }

    static void take(std::vector<tavo_mrph_t*>& to, tavo_result_t const& result) {
        check((result.count == 0) == (result.array == nullptr));
        if (result.count > 0) to.insert(to.end(), result.array, result.array + result.count);
    }

    void fetch() {
        bool const best = in_.choice(2) == 0;
        int const sentence = in_.number(), n = in_.number() % 6;
        tavo_result_t results[6] = {};
        tavo_t* const from = tavo();
        if (from == nullptr) return check(tavo_getResult(nullptr, results, 0) == -10001);
        analyser_->results.clear();
        int const code =
            best ? tavo_getResult(from, results, sentence) : tavo_getResultNBest(from, results, sentence, n);
        check(best || code <= n || code <= 0);
        for (int i = 0; i < (best ? 1 : code); ++i) take(analyser_->results, results[i]);
    }

    void byReading() {
        tavo_result_t result{};
        analyser_->words.clear();
        char const* const reading = string();
        if (in_.choice(2) == 0) {
            tavo_getByRead(tavo(), &result, reading, in_.number());
        } else {
            std::string const kept = kept_;
            tavo_getByReadPath(tavo(), &result, reading == kept_.c_str() ? kept.c_str() : reading,
                               files().paths.dic.c_str());
        }
        take(analyser_->words, result);
    }

    void dictionaries() {
        unsigned const what = in_.byte() % 6;
        if (what > 0) analyser_->words.clear();
        if (what > 3) analyser_->endAll();
        if (what == 0) tavo_addDicPath(tavo(), string(), in_.number());
        if (what == 1) tavo_offDic(tavo(), in_.number());
        if (what == 2) tavo_offDicPath(tavo(), string());
        if (what == 3) tavo_offDicAll(tavo());
        if (what > 3 && in_.choice(2) == 0) makeOlder();
        int const code = what == 4   ? tavo_updateDic(tavo(), in_.number())
                         : what == 5 ? tavo_updateDicPath(tavo(), string())
                                     : 0;
        if (code == 1)
            for (Analyser& analyser : analysers_) analyser.endAll();
    }

    /// The dictionary is rebuilt when its only user asks for that.
    static void makeOlder() {
        Files const& all = files();
        std::filesystem::last_write_time(all.paths.dic,
                                         std::filesystem::last_write_time(all.paths.source) - std::chrono::seconds(2));
    }

    void settings() {
        char const* const strings[] = {string(), "\r"};
        char const* array[3];
        unsigned const what = in_.byte() % 9;
        if (what == 0) kTavoValues[in_.choice(kTavoValues.size())](tavo());
        if (what == 8) kTavoModes[in_.choice(kTavoModes.size())](tavo());
        if (what == 1) kTavoNumbers[in_.choice(kTavoNumbers.size())](tavo(), in_.number());
        if (what == 2) kTavoStrings[in_.choice(kTavoStrings.size())](tavo(), string());
        if (what == 3) {
            char const* const text = kTavoPointers[in_.choice(kTavoPointers.size())](tavo());
            check(text == nullptr || std::strlen(text) < 10000);
        }
        if (what == 4) tavo_setProsodicInfoCombineMode(tavo(), in_.number(), string());
        if (what == 5) tavo_setExtCombineMode(tavo(), in_.number(), in_.number(), string());
        if (what == 5) tavo_getExtFiller(tavo(), in_.number());
        if (what == 6) tavo_setDelimiterString(tavo(), strings, std::min(in_.number(), 2));
        if (what == 7) tavo_getDelimiterString(tavo(), array, std::min(in_.number(), 3));
    }

    void bulk() {
        std::string const texts[] = {pieces(), pieces()};
        char const* const pointers[] = {texts[0].data(), texts[1].data()};
        int const lengths[] = {static_cast<int>(texts[0].size()), static_cast<int>(texts[1].size())};
        unsigned const what = in_.byte() | in_.byte() << 8;
        tavo_bulk_t bulk{};
        tavo_t* const to = tavo();
        if (to != nullptr) analyser_->endAll();
        int const code = in_.choice(2) == 0
                             ? tavo_bulkAnalyze(to, &bulk, pointers, lengths, std::min(in_.number(), 2), what)
                             : tavo_bulkAnalyzeNBest(to, &bulk, pointers[0], lengths[0], in_.number() % 7, what);
        check(code < 0 || static_cast<std::size_t>(code) == bulk.rowCount);
        if (bulk.rowCount > 0) check(bulk.rowEnd[bulk.rowCount - 1] == bulk.morphemeCount);
        for (std::size_t row = 0, m = 0; row < bulk.rowCount; ++row)
            for (; m < bulk.rowEnd[row]; ++m) check(bulk.start[m] + bulk.length[m] <= bulk.rowLength[row]);
        for (std::size_t i = 0; i < bulk.morphemeCount * bulk.fieldCount; ++i)
            check(bulk.fields[i] + std::strlen(bulk.strings + bulk.fields[i]) < bulk.stringBytes);
    }

    void formats() {
        tavo_mrph_t* const m = mrph();
        char const* const format = string();
        int const part = in_.number();
        unsigned const what = in_.byte() % 4;
        if (what == 0) intoBuffer([&](char* b, int n) { return tavo_format(m, format, "-", b, n); });
        if (what == 1) intoBuffer([&](char* b, int n) { return tavo_formatPart(m, part, format, "-", b, n); });
        if (what == 2) tavo_output(m, files().sink, format, "-", part);
        if (what == 3) tavo_outputPart(m, files().sink, part, format, "-");
    }

    void alternatives() {
        tavo_mrph_t* array[4] = {};
        int const found = tavo_getAlt(mrph(), array, std::min(in_.number(), 4));
        for (int i = 0; i < found; ++i) analyser_->alternatives.push_back(array[i]);
    }

    void tavoTexts() {
        tavo_t* const to = tavo();
        if (in_.choice(4) == 0) return intoBuffer([&](char* b, int n) { return tavo_getErrorSentenceIndex(to, b, n); });
        auto* const call = kTavoNumberTexts[in_.choice(kTavoNumberTexts.size())];
        int const index = in_.number();
        intoBuffer([&](char* b, int n) { return call(to, index, b, n); });
    }

    void morpheme() {
        tavo_mrph_t* const m = mrph();
        unsigned char counts[3];
        int const number = in_.number(), second = in_.number();
        unsigned const what = in_.byte() % 8;
        if (what == 0) kMrphValues[in_.choice(kMrphValues.size())](m);
        if (what == 1) kMrphNumbers[in_.choice(kMrphNumbers.size())](m, number);
        if (what == 2) {
            auto* const call = kMrphTexts[in_.choice(kMrphTexts.size())];
            intoBuffer([&](char* b, int n) { return call(m, b, n); });
        }
        if (what == 3) intoBuffer([&](char* b, int n) { return tavo_getPartExt(m, number, second, b, n); });
        if (what == 4) {
            tavo_getCategoryCount(m, &counts[0], &counts[1], number < 0 ? nullptr : &counts[2]);
            tavo_getPartCategoryCount(m, number, &counts[0], &counts[1], &counts[2]);
        }
        if (what > 4) {
            auto* const call = what == 5   ? kMrphFlagTexts[in_.choice(kMrphFlagTexts.size())]
                               : what == 6 ? kMrphIndexForms[in_.choice(kMrphIndexForms.size())]
                                           : kMrphIndexValues[in_.choice(kMrphIndexValues.size())];
            intoBuffer([&](char* b, int n) { return call(m, number, b, n); });
        }
        check(std::strlen(tavo_getMrphErrorWhat(m)) < 10000);
    }

    FuzzInput in_;
    std::array<Analyser, 2> analysers_;
    Analyser* analyser_ = nullptr;
    std::string kept_;  // the string drawn last
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Run(data, size).all();
    return 0;
}
