// Analysers in threads of their own over the dictionaries they share. The thread
// sanitizer runs these too; without it they check the results.
#include "dic/pools.hpp"
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"

#include <tavo/tavo.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace TAVO {
namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 100;

class ThreadSharing : public testing::Test {
protected:
    void SetUp() override {
        // "ab" costs less than "a" "b" before "c" and more elsewhere, so that
        // the whole lattice has a part in the answer.
        world_.names({"BOS", "EOS", "UNK", "N", "V"});
        world_.cost([](unsigned left, unsigned right) -> std::uint8_t { return left != 4 ? 20 : right == 5 ? 1 : 60; });
        world_.line("a,V,1").line("b,V,1").line("ab,N,9").line("c,V,3");
        paths_ = world_.writeTo(dir_.path());
        Tavo::readyForThread();
    }
    void TearDown() override { Tavo::dispose(); }

    static std::string analysed(Tavo& tavo, std::string const& text) {
        std::string result;
        tavo.analyze(text);
        for (unsigned i = 0; i < tavo.getSentenceCount(); ++i) {
            std::vector<Mrph> morphemes;
            tavo.getResult(morphemes, static_cast<int>(i));
            for (Mrph const& m : morphemes) result += m.format("%w/%h ", "");
        }
        return result;
    }
    void attach(Tavo& tavo, test::SmallWorld::Paths const& paths) const {
        tavo.setConnTablePath(paths_.connTable.c_str());
        tavo.addDicPath(paths.dicSpec().c_str(), true);
    }
    template <class Work>
    static void inThreads(Work const& work) {
        std::vector<std::thread> threads;
        for (int number = 0; number < kThreads; ++number) threads.emplace_back([&work, number] { work(number); });
        for (std::thread& thread : threads) thread.join();
    }

    test::TempDir dir_;
    test::SmallWorld world_;
    test::SmallWorld::Paths paths_;
};

TEST_F(ThreadSharing, AnalysersComeAndGoAndAnswerTheSame) {
    std::string const text = "abcxababc";
    std::string const expected = "ab/N c/V x/UNK a/V b/V ab/N c/V ";
    std::atomic<int> wrong = 0;
    inThreads([&](int) {
        for (int round = 0; round < kRounds; ++round) {
            Tavo tavo;
            attach(tavo, paths_);
            Tavo copy(tavo);
            if (analysed(tavo, text) != expected || analysed(copy, text) != expected) ++wrong;
        }
    });
    EXPECT_EQ(wrong, 0);
    for (auto const& [dic, users] : sharedPools().DIC_USED) EXPECT_EQ(users, 0);
    EXPECT_EQ(sharedPools().ObjectCount, 0U);
}

TEST_F(ThreadSharing, OneThreadRebuildsItsDictionaryBesideTheOthers) {
    test::TempDir const own;
    test::SmallWorld::Paths const ownPaths = world_.writeTo(own.path());
    std::atomic<bool> done = false;
    std::atomic<int> analyses = 0, wrong = 0, rebuilt = 0;
    inThreads([&](int number) {
        Tavo tavo;
        attach(tavo, number == 0 ? ownPaths : paths_);
        if (number != 0) {
            while (!done || analyses < kRounds) {
                if (analysed(tavo, "abcab") != "ab/N c/V a/V b/V ") ++wrong;
                ++analyses;
            }
            return;
        }
        for (int round = 0; round < kRounds; ++round) {
            // Newer than what was built last, whatever the clock's resolution.
            std::filesystem::last_write_time(ownPaths.source,
                                             std::filesystem::last_write_time(ownPaths.dic) + std::chrono::seconds(2));
            rebuilt += tavo.updateDic(0) == 1 ? 1 : 0;
            if (analysed(tavo, "abcab") != "ab/N c/V a/V b/V ") ++wrong;
        }
        done = true;
    });
    EXPECT_EQ(rebuilt, kRounds);
    EXPECT_EQ(wrong, 0);
    EXPECT_GE(analyses, kRounds);
}

}  // namespace
}  // namespace TAVO
