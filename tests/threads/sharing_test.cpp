// Analysers in threads of their own over the dictionaries they share. The thread
// sanitizer runs these too; without it they check the results.
#include "dic/pools.hpp"
#include "support/describe.hpp"
#include "support/process_usage.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <tavo/lexicon_maker.hpp>

#include <atomic>
#include <chrono>
#include <mutex>
#include <random>
#include <thread>

namespace TAVO {
namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 100;
// Blocks that the threads' heaps keep for themselves, and their pages.
constexpr std::size_t kHeapGrowthBytes = 8 << 10, kResidentGrowthBytes = 8 << 20;

class ThreadSharing : public testing::Test {
protected:
    ThreadSharing() {
        // "ab" costs less than "a" "b" before "c" and more elsewhere, so that
        // the whole lattice has a part in the answer.
        world_.names({"BOS", "EOS", "UNK", "N", "V"});
        world_.cost([](unsigned left, unsigned right) -> std::uint8_t { return left != 4 ? 20 : right == 5 ? 1 : 60; });
        world_.line("a,V,1").line("b,V,1").line("ab,N,9").line("c,V,3");
        paths_ = world_.writeTo(dir_.path());
        Tavo::readyForThread();
    }
    ~ThreadSharing() override { Tavo::dispose(); }

    static std::string analysed(Tavo& tavo, std::string const& text) {
        tavo.analyze(text);
        return test::describeAll(tavo);
    }
    /// A source newer than what was built last, whatever the clock's resolution.
    static void makeNewer(test::SmallWorld::Paths const& paths) {
        namespace fs = std::filesystem;
        fs::last_write_time(paths.source, fs::last_write_time(paths.dic) + std::chrono::seconds(2));
    }
    static void expectNoUsers() {
        for (auto const& [dic, users] : sharedPools().DIC_USED) EXPECT_EQ(users, 0);
        EXPECT_EQ(sharedPools().ObjectCount, 0U);
    }
    static void inThreads(std::function<void(int)> const& work) {
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
    std::string const expected = "ab:N c:V x:UNK a:V b:V ab:N c:V";
    std::atomic<int> wrong = 0;
    inThreads([&](int) {
        for (int round = 0; round < kRounds; ++round) {
            Tavo tavo;
            paths_.attachTo(tavo, true);
            Tavo copy(tavo);
            if (analysed(tavo, text) != expected || analysed(copy, text) != expected) ++wrong;
        }
    });
    EXPECT_EQ(wrong, 0);
    expectNoUsers();
}

TEST_F(ThreadSharing, WordsAreCompiledBesideAnalyses) {
    std::atomic<int> wrong = 0;
    inThreads([&](int number) {
        for (int round = 0; round < kRounds / 10; ++round) {
            if (number == 0) {
                Tavo tavo;
                paths_.attachTo(tavo, true);
                if (analysed(tavo, "abc") != "ab:N c:V") ++wrong;
                continue;
            }
            WordListOptions options;
            options.connTable = paths_.connTable;
            options.like = "ab";
            options.mustWin = {"xyc"};
            if (number == 1) options.output = dir_.file("new.dic");
            WordList const made = compileWords("xy\n", options);
            if (!made.made || !made.verdicts.at(0).wins) ++wrong;
        }
    });
    EXPECT_EQ(wrong, 0);
    expectNoUsers();
}

/// One rebuilds its dictionary while the others analyse with theirs and are refused
/// when they ask for a rebuild of it.
class RebuildingBesideOthers : public ThreadSharing {
protected:
    RebuildingBesideOthers() {
        ownPaths_ = world_.writeTo(own_.path());
        sources_[0] = world_.source();
        sources_[1] = test::SmallWorld(world_).line("abc,N,1").source();
    }

    /// The number of answers and codes that were not as expected.
    int rebuild(int rebuilds) {
        Tavo tavo;
        ownPaths_.attachTo(tavo, true);
        int wrong = 0;
        for (int i = 0; i < rebuilds; ++i) {
            test::writeFile(ownPaths_.source, sources_[i % 2]);
            makeNewer(ownPaths_);
            if (i % 8 == 0) {
                Tavo const secondUser(tavo);
                wrong += tavo.updateDic(0) != 2 ? 1 : 0;
            }
            wrong += tavo.updateDic(0) != 1 ? 1 : 0;
            wrong += analysed(tavo, "abcab") != kAnswers[i % 2] ? 1 : 0;
        }
        return wrong;
    }
    int run(int rebuilds) {
        Tavo holder;  // so that each other thread is one user of two or more
        paths_.attachTo(holder, true);
        std::atomic<bool> done = false;
        std::atomic<int> analyses = 0, wrong = 0;
        inThreads([&](int number) {
            if (number == 0) {
                wrong += rebuild(rebuilds);
                done = true;
                return;
            }
            Tavo tavo;
            paths_.attachTo(tavo, true);
            while (!done || analyses < kRounds) {
                wrong += analysed(tavo, "abcab") != kAnswers[0] ? 1 : 0;
                if (++analyses % 16 == 0) wrong += tavo.updateDic(0) != 2 ? 1 : 0;
            }
        });
        return wrong;
    }

    static constexpr char const* kAnswers[] = {"ab:N c:V a:V b:V", "abc:N a:V b:V"};
    test::TempDir own_;
    test::SmallWorld::Paths ownPaths_;
    std::string sources_[2];
};

TEST_F(RebuildingBesideOthers, AnswersStayAndNothingGrows) {
    char const* const asked = std::getenv("TAVO_TEST_REBUILDS");
    int const rebuilds = asked != nullptr ? std::atoi(asked) : 2 * kRounds;
    makeNewer(paths_);
    EXPECT_EQ(run(kRounds / 2), 0);
    test::ProcessUsage const before = test::ProcessUsage::now();
    EXPECT_EQ(run(rebuilds), 0);
    test::ProcessUsage const after = test::ProcessUsage::now();
    EXPECT_EQ(after.descriptors, before.descriptors);
    if (before.heapBytes > 0) {
        EXPECT_LT(after.heapBytes, before.heapBytes + kHeapGrowthBytes);
        EXPECT_LT(after.residentBytes, before.residentBytes + kResidentGrowthBytes);
    }
    printf("%d rebuilds: heap %zu -> %zu bytes, resident %zu -> %zu bytes, descriptors %zu -> %zu\n", rebuilds,
           before.heapBytes, after.heapBytes, before.residentBytes, after.residentBytes, before.descriptors,
           after.descriptors);
}

/// Analysers that a thread does anything with, and that now and then go on to another.
class AnythingGoes : public ThreadSharing {
protected:
    static constexpr int kDics = 3;
    static constexpr int kSteps = 300;
    static constexpr char const* kText = "abcxababc";

    AnythingGoes() {
        char const* const words[kDics] = {"abc,N,5", "x,V,2", "bca,N,3"};
        for (int i = 0; i < kDics; ++i) {
            dics_[i] = test::SmallWorld(world_).line(words[i]).writeTo(folders_[i].path());
        }
    }
    struct Analyser {
        bool has(unsigned dic) const { return (dics >> dic & 1) != 0; }
        Tavo tavo;
        unsigned dics = 0;  // a bit for each that is attached
    };
    static std::string answer(Analyser& analyser) {
        std::string text;
        std::string const error = test::thrown([&] { text = analysed(analyser.tavo, kText); });
        return text.empty() ? error : text;
    }
    void attach(Analyser& analyser, unsigned dic) const {
        analyser.tavo.addDicPath(dics_[dic].dicSpec().c_str(), true);
        analyser.dics |= 1U << dic;
    }
    std::unique_ptr<Analyser> makeAnalyser(unsigned dics = 0) const {
        auto made = std::make_unique<Analyser>();
        made->tavo.setConnTablePath(paths_.connTable.c_str());
        for (unsigned dic = 0; dic < kDics; ++dic)
            if ((dics >> dic & 1) != 0) attach(*made, dic);
        return made;
    }
    /// One analyser that waits for a thread.
    std::unique_ptr<Analyser> exchange(std::unique_ptr<Analyser> given) {
        std::lock_guard const lock(mutex_);
        return std::exchange(waiting_, std::move(given));
    }
    /// Any steps; the number of wrong answers.
    int run(unsigned seed, std::vector<std::string> const& expected) {
        std::mt19937 random(seed);
        std::vector<std::unique_ptr<Analyser>> mine(3);
        int wrong = 0;
        for (int step = 0; step < kSteps; ++step) {
            std::unique_ptr<Analyser>& analyser = mine[random() % mine.size()];
            std::unique_ptr<Analyser> const& other = mine[random() % mine.size()];
            auto const dic = static_cast<unsigned>(random() % kDics);
            auto const what = random() % 10;
            if (what == 0) analyser.reset();
            if (analyser == nullptr) analyser = makeAnalyser();
            if (what == 1 && other != nullptr) analyser = std::make_unique<Analyser>(*other);
            if (what == 2 && other != nullptr) *analyser = *other;
            if (what == 3 && analyser->has(dic)) {
                analyser->tavo.offDic(dics_[dic].dic.c_str());
                analyser->dics &= ~(1U << dic);
            }
            if (what == 4) analyser = exchange(std::move(analyser));
            if (analyser == nullptr) continue;
            if (what == 5 && analyser->has(dic)) {
                int const code = analyser->tavo.updateDic(dics_[dic].dic.c_str());
                wrong += code < 0 || code > 2 ? 1 : 0;
            }
            if (what > 6) attach(*analyser, dic);
            wrong += answer(*analyser) != expected[analyser->dics] ? 1 : 0;
        }
        return wrong;
    }

    test::TempDir folders_[kDics];
    test::SmallWorld::Paths dics_[kDics];
    std::mutex mutex_;
    std::unique_ptr<Analyser> waiting_;
};

TEST_F(AnythingGoes, AndEveryAnswerIsThatOfTheDictionariesAttached) {
    for (unsigned seed = 0; seed < 3; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Tavo::readyForThread();
        std::vector<std::string> expected;
        for (unsigned dics = 0; dics < 1U << kDics; ++dics) expected.push_back(answer(*makeAnalyser(dics)));
        for (test::SmallWorld::Paths const& paths : dics_) makeNewer(paths);
        std::atomic<int> wrong = 0;
        inThreads([&](int number) { wrong += run(seed * kThreads + static_cast<unsigned>(number), expected); });
        EXPECT_EQ(wrong, 0);
        waiting_.reset();
        expectNoUsers();
        Tavo::dispose();  // last; then anew
    }
}

}  // namespace
}  // namespace TAVO
