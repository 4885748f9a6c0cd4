// Tokenizers in threads of their own while the lexicon gets new versions.
#include "support/text_world.hpp"

#include <atomic>
#include <mutex>
#include <thread>

namespace TAVO::test {
namespace {

TEST(LexiconVersions, AreExchangedWhileThreadsTokenize) {
    TextWorld const world;
    Lexicon newest = Lexicon::open(world.dir.path());
    std::mutex lock;
    std::atomic<bool> stop{false};
    std::string const text = "東京は12見naïveスー😀";
    std::string const expected = describe(Tokenizer(newest).tokenize(text));
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            while (!stop) {
                Tokenizer tokenizer([&] {
                    std::lock_guard const held(lock);
                    return newest;
                }());
                for (int round = 0; round < 5; ++round) wrong += describe(tokenizer.tokenize(text)) == expected ? 0 : 1;
            }
        });
    for (int version = 0; version < 40; ++version) {
        Lexicon made = version % 2 == 0 ? newest.reloaded() : Lexicon::open(world.dir.path());
        std::lock_guard const held(lock);
        newest = std::move(made);
    }
    stop = true;
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace TAVO::test
