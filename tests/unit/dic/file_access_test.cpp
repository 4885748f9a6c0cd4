#include "dic/file_access.hpp"

#include "support/testing.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>

namespace TAVO::test {
namespace {

TEST(FileAccessTest, MeasuresRegularFilesOnly) {
    TempDir const dir;
    EXPECT_EQ(FileLength(dir.write("f", "12345").c_str()), 5);
    EXPECT_EQ(FileLength(dir.write("empty", "").c_str()), 0);
    EXPECT_EQ(FileLength(dir.path().c_str()), -1);
    EXPECT_EQ(FileLength(dir.file("absent").c_str()), -1);
    ASSERT_EQ(::mkfifo(dir.file("fifo").c_str(), 0600), 0);
    EXPECT_EQ(FileLength(dir.file("fifo").c_str()), -1);
    EXPECT_EQ(FileLength("/dev/null"), -1);
}

TEST(FileAccessTest, RefusesNullPaths) {
    EXPECT_EQ(thrown<std::invalid_argument>([] { FileLength(nullptr); }), "INVALID_ARGUMENT: FileLength()");
    EXPECT_EQ(thrown<std::invalid_argument>([] { FileAccess(nullptr); }), "INVALID_ARGUMENT: FileAccess()");
}

TEST(FileAccessTest, TellsReadableFromMissing) {
    TempDir const dir;
    EXPECT_EQ(FileAccess(dir.write("f", "x").c_str()), 0);
    EXPECT_EQ(FileAccess(dir.file("absent").c_str()), -1);
    if (::geteuid() == 0) return;  // root may read everything
    ::chmod(dir.file("f").c_str(), 0);
    EXPECT_EQ(FileAccess(dir.file("f").c_str()), 1);
}

TEST(FileAccessTest, ReadsWritesAndSeeks) {
    TempDir const dir;
    std::string const path = dir.file("f");
    int const out = FileCreate(path.c_str());
    ASSERT_GE(out, 0);
    EXPECT_EQ(FileWrite(out, "abcdef", 6), 6);
    EXPECT_EQ(FileWrite(out, nullptr, 0), 0);
    EXPECT_EQ(FileClose(out), 0);
    EXPECT_EQ(FileClose(out), -1);
    int const in = FileOpenShared(path.c_str());
    char buffer[8];
    EXPECT_EQ(FileSeek(in, -2, 2), 4);
    EXPECT_EQ(FileRead(in, buffer, 8), 2);
    EXPECT_EQ(FileSeek(in, 1, 7), 1) << "an unknown origin is the start";
    EXPECT_EQ(FileSeek(in, 2, 1), 3);
    EXPECT_EQ(FileRead(in, buffer, 1), 1);
    EXPECT_EQ(buffer[0], 'd');
    EXPECT_EQ(FileWrite(in, "x", 1), -1) << "opened for reading";
    EXPECT_EQ(FileClose(in), 0);
    EXPECT_EQ(FileRead(in, buffer, 1), -1);
}

TEST(FileAccessTest, OpensByMode) {
    TempDir const dir;
    std::string const path = dir.file("f");
    EXPECT_EQ(FileOpenMode(path.c_str(), 0), -1);
    int const created = FileOpenMode(path.c_str(), 1);
    ASSERT_GE(created, 0);
    EXPECT_EQ(FileWrite(created, "x", 1), 1);
    FileClose(created);
    EXPECT_EQ(FileOpenMode(path.c_str(), 3), -1) << "bit 0 makes a new file only";
    int const opened = FileOpenMode(path.c_str(), 2);
    ASSERT_GE(opened, 0);
    FileClose(opened);
}

TEST(FileAccessTest, ExclusiveReadersKeepWritersOut) {
    TempDir const dir;
    std::string const path = dir.write("f", "whole");
    int const first = FileOpenExclusive(path.c_str());
    int const second = FileOpenExclusive(path.c_str());
    ASSERT_GE(first, 0);
    EXPECT_GE(second, 0) << "readers do not stand in each other's way";
    EXPECT_EQ(FileCreate(path.c_str()), -1);
    EXPECT_EQ(readFile(path), "whole") << "a refused writer leaves the file as it was";
    FileClose(first);
    FileClose(second);
    int const writer = FileCreate(path.c_str());
    ASSERT_GE(writer, 0);
    EXPECT_EQ(FileOpenExclusive(path.c_str()), -1);
    FileClose(writer);
}

using Lines = std::vector<std::string>;

/// All results of FileReadLine up to the one that is negative.
Lines byBytes(std::string const& path, std::size_t capacity) {
    int const handle = FileOpenShared(path.c_str());
    std::string buffer(capacity, '#');
    Lines lines;
    for (;;) {
        std::int64_t const result = FileReadLine(handle, buffer.data(), capacity);
        if (result < 0) break;
        EXPECT_EQ(buffer[static_cast<std::size_t>(result)], '\0');
        lines.push_back(buffer.substr(0, static_cast<std::size_t>(result)));
    }
    FileClose(handle);
    return lines;
}

Lines byReader(std::string const& path, std::size_t capacity) {
    int const handle = FileOpenShared(path.c_str());
    LineReader reader(handle, capacity);
    Lines lines;
    while (reader.next()) lines.emplace_back(reader.line());
    EXPECT_FALSE(reader.failed());
    FileClose(handle);
    return lines;
}

TEST(FileAccessTest, ReadsLines) {
    Table<std::string, std::size_t, Lines> const cases{
        {"ab\r\ncd", 4096, {"ab", "cd"}},
        {"abcd\n", 3, {"ab", "d"}},
        {"ab\n", 3, Lines{"ab"}},
        {"a\rb\r\r\n\n", 3, {"ab", ""}},
        {"", 16, {}},
        {"\r", 16, Lines{""}},
        {std::string("a\0b\n", 4), 16, {std::string("a\0b", 3)}},
        {"abc\nx", 1, Lines(5)},
    };
    TempDir const dir;
    for (auto const& [bytes, capacity, lines] : cases) {
        std::string const path = dir.write("f", bytes);
        EXPECT_EQ(byBytes(path, capacity), lines) << bytes << " capacity " << capacity;
        EXPECT_EQ(byReader(path, capacity), lines) << bytes << " capacity " << capacity;
    }
}

TEST(FileAccessTest, RefusesToReadALineIntoNothing) {
    char buffer[1] = {'x'};
    EXPECT_EQ(FileReadLine(0, nullptr, 4), -2);
    EXPECT_EQ(FileReadLine(0, buffer, 0), -2);
    EXPECT_EQ(buffer[0], '\0');
    EXPECT_EQ(FileReadLine(-1, buffer, 1), -1);
}

TEST(FileAccessTest, LineReaderAgreesWithReadingByBytes) {
    unsigned const seed = 20251;
    std::mt19937 random(seed);
    TempDir const dir;
    for (int round = 0; round < 60; ++round) {
        // Some files are larger than the reader's buffer.
        std::string bytes(random() % (round % 10 == 0 ? 150000 : 300), ' ');
        for (char& c : bytes) c = "ab\r\n\0cdefghijkl"[random() % (round % 3 == 0 ? 4 : 15)];
        std::string const path = dir.write("f", bytes);
        std::size_t const capacity = 1 + random() % (round % 2 == 0 ? 8 : 5000);
        EXPECT_EQ(byReader(path, capacity), byBytes(path, capacity)) << "seed " << seed << " round " << round;
    }
}

TEST(FileAccessTest, LineReaderCountsTheLinesOfTheFile) {
    TempDir const dir;
    int const handle = FileOpenShared(dir.write("f", "a\nbcdef\ng\n").c_str());
    LineReader reader(handle, 3);
    std::vector<std::pair<std::size_t, bool>> seen;
    while (reader.next()) seen.emplace_back(reader.lineNumber(), reader.wasCut());
    EXPECT_EQ(seen, (std::vector<std::pair<std::size_t, bool>>{{1, false}, {2, true}, {2, false}, {3, false}}));
    FileClose(handle);
}

TEST(FileMappingTest, MapsAndUnmaps) {
    TempDir const dir;
    std::string const path = dir.write("f", "mapped");
    int const descriptor = MmapOpen(path.c_str(), 0, 0);
    ASSERT_GT(descriptor, 0);
    void* const view = Mmap(nullptr, 0, kMapRead, 1, descriptor);
    ASSERT_NE(view, mmapFailed());
    EXPECT_EQ(std::string(static_cast<char*>(view), 6), "mapped");
    EXPECT_EQ(Munmap(static_cast<char*>(view) + 1), -2);
    EXPECT_EQ(Munmap(view), 0);
    EXPECT_EQ(Munmap(view), -2);
    EXPECT_EQ(MmapClose(descriptor), 0);
    EXPECT_EQ(MmapClose(descriptor), -2);
    EXPECT_EQ(MmapClose(0), -2);
    EXPECT_EQ(Mmap(nullptr, 0, kMapRead, 1, descriptor), mmapFailed());
    EXPECT_EQ(MmapOpen(dir.file("absent").c_str(), 0, 0), -1);
}

TEST(FileMappingTest, WritesThroughAndPrivately) {
    TempDir const dir;
    std::string const path = dir.write("f", "abc");
    for (bool const isPrivate : {true, false}) {
        int const descriptor = MmapOpen(path.c_str(), O_RDWR, 0);
        void* const view = Mmap(nullptr, 0, kMapRead | kMapWrite, isPrivate ? kMapPrivate : 1, descriptor);
        ASSERT_NE(view, mmapFailed());
        static_cast<char*>(view)[0] = 'X';
        EXPECT_EQ(MmapFlush(view, 0), 0);
        EXPECT_EQ(readFile(path), isPrivate ? "abc" : "Xbc");
        EXPECT_EQ(Munmap(view), 0);
        EXPECT_EQ(MmapFlush(view, 0), -1);
        EXPECT_EQ(MmapClose(descriptor), 0);
    }
}

TEST(FileMappingTest, AFailedMapFreesTheSlotAndLeavesTheDescriptorOpen) {
    TempDir const dir;
    int const descriptor = MmapOpen(dir.write("empty", "").c_str(), 0, 0);
    ASSERT_GT(descriptor, 0);
    EXPECT_EQ(Mmap(nullptr, 0, kMapRead, 1, descriptor), mmapFailed()) << "no bytes to map";
    EXPECT_EQ(MmapClose(descriptor), -2);
    EXPECT_EQ(FileClose(descriptor), 0);
}

}  // namespace
}  // namespace TAVO::test
