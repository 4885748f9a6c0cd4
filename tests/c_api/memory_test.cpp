// What happens when memory runs out at any place of a call.
#include "c_api/flat_world.hpp"

#include <tavo/tavo_bulk.h>
#include <cstring>

#include <chrono>
#include <cstdlib>
#include <new>

namespace {

enum class Fail { None, One, AllFromThere };
Fail fail = Fail::None;
/// Allocations before the one that fails.
long allocationsLeft = 0;

void* allocate(std::size_t size) {
    if (fail != Fail::None && allocationsLeft-- <= 0) {
        if (fail == Fail::One) fail = Fail::None;
        throw std::bad_alloc();
    }
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

}  // namespace

// The forms for arrays come to these.
void* operator new(std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, std::nothrow_t const&) noexcept { return std::malloc(size == 0 ? 1 : size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace TAVO::test {
namespace {

class OutOfMemory : public FlatWorld {
protected:
    void TearDown() override {
        fail = Fail::None;
        FlatWorld::TearDown();
    }

    /// Lets the first, then the second... allocation of the call fail until it
    /// succeeds, alone and with all behind it; there must be one at least.
    static void failEach(std::function<int()> const& call, std::function<void(int)> const& judge) {
        int failures = 0;
        for (Fail const kind : {Fail::One, Fail::AllFromThere}) {
            for (int allowed = 0;; ++allowed) {
                ASSERT_LT(allowed, 10000) << "never succeeds";
                allocationsLeft = allowed;
                fail = kind;
                int const code = call();
                bool const failed = fail != kind || allocationsLeft < 0;
                fail = Fail::None;
                if (!failed) break;
                judge(code);
                ++failures;
            }
        }
        EXPECT_GT(failures, 0);
    }

    /// Analyses with an analyser that has no memory of calls before.
    int withFreshAnalyser(std::function<int(tavo_t*)> const& call) {
        Fail const kind = std::exchange(fail, Fail::None);
        tavo_t* const fresh = tavo_new(0);
        EXPECT_EQ(tavo_setConnTablePath(fresh, paths.connTable.c_str()), 0);
        EXPECT_EQ(tavo_addDicPath(fresh, paths.dic.c_str(), 0), 0);
        EXPECT_EQ(tavo_analyzeNBest(fresh, "d", 1), 0);
        fail = kind;
        int const code = call(fresh);
        what = tavo_getErrorWhat(fresh);
        Fail const after = std::exchange(fail, Fail::None);
        tavo_free(fresh);
        fail = after;
        return code;
    }

    std::string what;  // the error text of withFreshAnalyser()
};

TEST_F(OutOfMemory, IsACodeFromAnyAllocation) {
    tavo_result_t results[2];
    tavo_bulk_t bulk{};
    char const* text = text_.data();
    int const length = 4;
    std::string const reading = toSjis("でぃ");
    // How often the call says that the handles have no room; its name.
    Table<int, char const*, std::function<int(tavo_t*)>> const calls{
        {0, "tavo_analyze", [&](tavo_t* t) { return tavo_analyze(t, text, length); }},
        {0, "tavo_analyzeNBest", [&](tavo_t* t) { return tavo_analyzeNBest(t, text, length); }},
        {0, "tavo_bulkAnalyze", [&](tavo_t* t) { return tavo_bulkAnalyze(t, &bulk, &text, &length, 1, 0x37F); }},
        {0, "tavo_bulkAnalyzeNBest",
         [&](tavo_t* t) { return tavo_bulkAnalyzeNBest(t, &bulk, text, length, 2, 0x37F); }},
        {0, "tavo_setEOS", [&](tavo_t* t) { return tavo_setEOS(t, "a text too long to be stored without memory"); }},
        {0, "tavo_addDicPath",
         [&](tavo_t* t) { return tavo_addDicPath(t, paths.source.c_str(), 0) == -10004 ? 0 : -10000; }},
        {1, "tavo_getResult", [&](tavo_t* t) { return tavo_getResult(t, results, 0); }},
        {1, "tavo_getResultNBest", [&](tavo_t* t) { return tavo_getResultNBest(t, results, 0, 2); }},
        {1, "tavo_getByRead", [&](tavo_t* t) { return tavo_getByRead(t, results, reading.c_str(), 0); }},
        {1, "tavo_getByReadPath",
         [&](tavo_t* t) { return tavo_getByReadPath(t, results, reading.c_str(), paths.dic.c_str()); }},
    };
    what.reserve(200);
    for (auto const& [expected, name, call] : calls) {
        SCOPED_TRACE(name);
        int handles = 0;
        failEach([&, &run = call] { return withFreshAnalyser(run); },
                 [&, &said = name](int code) {
                     EXPECT_EQ(code, -10000);
                     handles += what == std::string("BAD_ALLOC: ") + said + "()" ? 1 : 0;
                 });
        EXPECT_EQ(handles, expected);
    }
}

TEST_F(OutOfMemory, LeavesAnAnalyserThatWorks) {
    namespace fs = std::filesystem;
    std::string const other = dir.write("other", readFile(paths.dic));
    auto const touchSource = [&] {
        fs::last_write_time(paths.source, fs::last_write_time(paths.dic) + std::chrono::seconds(2));
    };
    touchSource();
    // The code of a failure: 5 is a dictionary that cannot be compiled, for lack of memory too.
    Table<int, std::function<int()>> const calls{
        {-10000, [&] { return tavo_analyzeNBest(tavo, text_.data(), 4); }},
        {5, [&] { return tavo_updateDic(tavo, 0); }},
        {-10000, [&] { return tavo_addDicPath(tavo, other.c_str(), 1); }},
        {-10000, [&] { return tavo_setConnTablePath(tavo, paths.connTable.c_str()); }},
    };
    for (auto const& [expected, call] : calls)
        failEach(call, [&, &known = expected](int code) {
            EXPECT_TRUE(code == known || code == -10000) << code << " for " << known;
            ASSERT_EQ(analyze(text_).count, 2);
            EXPECT_EQ(tavo_getPid(compound()), 4);
            touchSource();
        });
    EXPECT_EQ(tavo_getDicCount(tavo), 2);
}

TEST_F(OutOfMemory, OfAMorphemeAndItsErrors) {
    tavo_mrph_t* const mrph = compound();
    failEach([&] { return tavo_format(mrph, "%w%w%w%w%w%w%w%w", "", nullptr, 0); },
             [](int code) { EXPECT_EQ(code, -10000); });
    // Even where the error's own text finds no memory the call returns.
    failEach([&] { return tavo_getExt(mrph, 7, nullptr, 0); },
             [](int code) { EXPECT_TRUE(code == -10000 || code == -10007) << code; });
    EXPECT_EQ(tavo_getPid(mrph), 4);
    failEach(
        [] {
            tavo_t* const made = tavo_new(0);
            return made == nullptr ? -10000 : tavo_free(made);
        },
        [](int code) { EXPECT_EQ(code, -10000); });
}

TEST_F(OutOfMemory, ReadsTheSameWhereAnAnalyserIsMade) {
    for (int allowed = 0; allowed < 3; ++allowed) {
        allocationsLeft = allowed;
        fail = Fail::AllFromThere;
        char const* text = "nothing thrown";
        try {
            TAVO::Tavo made;
        } catch (std::bad_alloc const& error) {
            text = std::strcmp(error.what(), "bad allocation") == 0 ? "as promised" : "another text";
        }
        fail = Fail::None;
        EXPECT_STREQ(text, "as promised") << allowed;
    }
}

}  // namespace
}  // namespace TAVO::test
