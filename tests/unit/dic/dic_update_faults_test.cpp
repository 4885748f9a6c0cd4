// Rebuilding a dictionary while file steps fail, and in a process that is killed
// between them.
#include "dic/dic_set.hpp"

#include <tavo/error.hpp>

#include "dic/file_access.hpp"
#include "dic/pools.hpp"
#include "support/small_world.hpp"
#include "support/temp_dir.hpp"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace TAVO::test {
namespace {

/// What happens at file steps while an object of this class lives. Steps are
/// counted from 1 on.
class Faults {
public:
    using Plan = std::function<int(int number, FileStep step, std::size_t& bytes)>;

    explicit Faults(Plan plan) {
        plan_ = std::move(plan);
        taken_ = 0;
        fileFault = [](FileStep step, std::size_t& bytes) { return plan_(++taken_, step, bytes); };
    }
    ~Faults() { fileFault = nullptr; }
    static int taken() { return taken_; }

private:
    static inline Plan plan_;
    static inline int taken_;
};

class DicUpdateFaults : public ::testing::TestWithParam<bool> {
protected:
    static constexpr int kMostSteps = 300;
    /// Small enough that a dictionary is written in several steps.
    static constexpr std::size_t kBytesAtOnce = 400;

    DicUpdateFaults() {
        world_.names({"BOS", "EOS", "UNK", "N"}).line("word,N");
        paths_ = world_.writeTo(dir_.path());
        old_ = world_.dictionary();
        new_ = SmallWorld(world_).line("more,N").dictionary();
    }
    ~DicUpdateFaults() override { sharedPools().dispose(); }

    /// The old dictionary with a newer source, attached.
    void prepare(DicSet& set) {
        writeFile(paths_.dic, old_);
        set.addDicPath(paths_.dicSpec().c_str(), GetParam(), nullptr);
        writeFile(paths_.source, "word,N\nmore,N\n");
        touchSource();
    }
    void touchSource() {
        std::filesystem::last_write_time(paths_.source,
                                         std::filesystem::last_write_time(paths_.dic) + std::chrono::seconds(2));
    }
    void expectOldOrNew() {
        std::string const bytes = readFile(paths_.dic);
        EXPECT_TRUE(bytes == old_ || bytes == new_) << bytes.size() << " bytes";
    }
    static bool finds(DicSet const& set, std::string const& form) {
        DicTrie const* const trie = set.entries().front().dic->trie();
        return trie != nullptr && trie->exactMatch(asBytes(form.data()), form.size());
    }
    void expectNextTryWorks(DicSet& set) {
        touchSource();
        EXPECT_EQ(set.updateDic(0, world_.names()), 1);
        EXPECT_TRUE(finds(set, "more"));
        EXPECT_EQ(readFile(paths_.dic), new_);
        EXPECT_FALSE(std::filesystem::exists(paths_.dic + "_tmp"));
        EXPECT_FALSE(std::filesystem::exists(paths_.dic + "_bak"));
    }

    TempDir dir_;
    SmallWorld world_;
    SmallWorld::Paths paths_;
    std::string old_, new_;
};

TEST_P(DicUpdateFaults, AnyStepMayFail) {
    std::set<FileStep> failed;
    bool done = false;
    for (int number = 1; number < kMostSteps && !done; ++number) {
        // The step alone, or it and all behind it: writes short at first, too.
        for (bool const alone : {true, false}) {
            SCOPED_TRACE("step " + std::to_string(number) + (alone ? " alone" : " and all behind it"));
            DicSet set;
            prepare(set);
            int code = -1;
            {
                Faults const faults([&](int at, FileStep step, std::size_t& bytes) {
                    if (step == FileStep::kWrite) bytes = std::min(bytes, kBytesAtOnce);
                    if (at < number || (alone && at > number)) return 0;
                    failed.insert(step);
                    return step == FileStep::kWrite ? ENOSPC : EIO;
                });
                try {
                    code = set.updateDic(0, world_.names());
                } catch (std::bad_alloc const&) {
                    code = 6;  // a mapping that cannot be had
                }
                done = Faults::taken() < number;
            }
            if (done) {
                EXPECT_EQ(code, 1);
                break;
            }
            expectOldOrNew();
            EXPECT_TRUE(code == 1 || (code >= 4 && code <= 6)) << code;
            EXPECT_TRUE(!alone || finds(set, "word")) << "usable, whatever failed";
            EXPECT_EQ(sharedPools().DIC_USED.at(set.entries().front().dic), 1);
            expectNextTryWorks(set);
            set.offDic();
            sharedPools().dispose();
        }
    }
    EXPECT_TRUE(done) << "all steps were tried";
    std::set<FileStep> expected{FileStep::kOpen,   FileStep::kCreate, FileStep::kTruncate, FileStep::kRead,
                                FileStep::kWrite,  FileStep::kFlush,  FileStep::kClose,    FileStep::kLink,
                                FileStep::kRename, FileStep::kDelete};
    if (GetParam()) expected.insert(FileStep::kMap);
    EXPECT_EQ(failed, expected);
}

TEST_P(DicUpdateFaults, TheProcessMayBeKilledAtAnyStep) {
    bool killed = true;
    std::set<std::string> seen;
    for (int number = 1; number < kMostSteps && killed; ++number) {
        SCOPED_TRACE("killed before step " + std::to_string(number));
        DicSet set;
        prepare(set);
        pid_t const child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            Faults const faults([&](int at, FileStep step, std::size_t& bytes) {
                if (step == FileStep::kWrite) bytes = std::min(bytes, kBytesAtOnce);
                return at == number ? ::raise(SIGKILL) : 0;
            });
            ::_exit(set.updateDic(0, world_.names()));
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        killed = WIFSIGNALED(status);
        EXPECT_TRUE(killed || WEXITSTATUS(status) == 1);
        expectOldOrNew();
        seen.insert(readFile(paths_.dic));
        EXPECT_NE(Dic(GetParam(), paths_.dic.c_str()).trie(), nullptr);
        expectNextTryWorks(set);
        set.offDic();
        sharedPools().dispose();
    }
    EXPECT_FALSE(killed) << "all steps were tried";
    EXPECT_EQ(seen, (std::set<std::string>{old_, new_}));
}

TEST_P(DicUpdateFaults, FileSystemsWithoutSecondNamesWillDo) {
    DicSet set;
    prepare(set);
    Faults const faults([](int, FileStep step, std::size_t&) { return step == FileStep::kLink ? EPERM : 0; });
    expectNextTryWorks(set);
}

TEST_P(DicUpdateFaults, TheReadingIndexGoesWithTheMapping) {
    DicSet set;
    prepare(set);
    ASSERT_EQ(set.findByRead("", 0).size(), 1U);
    {
        Faults const faults([](int, FileStep step, std::size_t&) { return step == FileStep::kRename ? EIO : 0; });
        EXPECT_EQ(set.updateDic(0, world_.names()), 6);
    }
    for (ReadingWord const& word : set.findByRead("", 0)) EXPECT_TRUE(set.entries()[0].dic->contains(word.record));
}

TEST_P(DicUpdateFaults, WhatCannotBeTakenBackIsAnotherDictionary) {
    DicSet set;
    prepare(set);
    std::uint64_t const serial = set.entries()[0].dic->serial();
    {
        // The rename fails, and so does every step of taking the mapping back.
        bool renamed = false;
        Faults const faults([&](int, FileStep step, std::size_t&) {
            renamed = renamed || step == FileStep::kRename;
            return renamed ? EIO : 0;
        });
        EXPECT_EQ(set.updateDic(0, world_.names()), 6);
    }
    EXPECT_EQ(finds(set, "word"), !GetParam()) << "only a mapping is given up";
    EXPECT_EQ(set.entries()[0].dic->serial() == serial, !GetParam());
    DicSet other;
    if (GetParam()) {
        EXPECT_THROW(other.addDicPath(paths_.dic.c_str(), true, nullptr), illegal_format) << "while it is used";
    }
    set.offDic(0);
    other.addDicPath(paths_.dicSpec().c_str(), GetParam(), nullptr);
    EXPECT_TRUE(finds(other, "word"));
    expectNextTryWorks(other);
}

TEST_P(DicUpdateFaults, AMappingThatCannotBeHadReadsAsItsContractSays) {
    DicSet set;
    writeFile(paths_.dic, old_);
    Faults const faults([](int, FileStep step, std::size_t&) { return step == FileStep::kMap ? ENOMEM : 0; });
    std::string text = "nothing thrown";
    try {
        set.addDicPath(paths_.dic.c_str(), GetParam(), nullptr);
    } catch (std::bad_alloc const& error) {
        text = error.what();
    }
    EXPECT_EQ(text, GetParam() ? "bad allocation" : "nothing thrown");
}

/// Another file that takes the path while it is being loaded.
TEST_P(DicUpdateFaults, AFileSwappedWhileItIsLoadedIsReadAtItsOwnLength) {
    for (std::string const& other : {new_, old_.substr(0, old_.size() - 40)}) {
        for (int at = 1; at <= 4; ++at) {
            SCOPED_TRACE(std::to_string(other.size()) + " bytes instead of " + std::to_string(old_.size()) +
                         " before step " + std::to_string(at));
            writeFile(paths_.dic, old_);
            std::string const made = dir_.write("other", other);
            Faults const faults([&](int number, FileStep, std::size_t&) {
                return number == at ? std::rename(made.c_str(), paths_.dic.c_str()) : 0;
            });
            try {
                MappedImage const image(GetParam(), paths_.dic.c_str());
                std::string_view const loaded(asChars(image.data()), image.sizeBytes());
                EXPECT_TRUE(loaded == old_ || loaded == other) << loaded.size() << " bytes";
            } catch (illegal_format const&) {
                EXPECT_FALSE(GetParam()) << "reading notices another length";
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(MappedAndRead, DicUpdateFaults, ::testing::Bool(),
                         [](auto const& mode) { return mode.param ? "Mapped" : "Read"; });

}  // namespace
}  // namespace TAVO::test
