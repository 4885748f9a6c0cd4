// Takes every file of folders through the UTF-8 front and checks that its bytes come back:
//   tavo_all_files THREADS LEXICON DIR...
// Prints what was done; 1 when some file was not whole, or none was read.
#include <tavo/tokenizer.hpp>

#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// Larger files are taken in texts of at most so many bytes, cut behind a line feed where there is one.
constexpr std::size_t kMostBytes = 32U << 20;

struct File {
    std::string path;
    std::uintmax_t bytes;
};

/// Each regular file once, small ones first.
std::vector<File> filesOf(char** folders, char** end) {
    std::vector<File> files;
    std::set<std::pair<dev_t, ino_t>> seen;
    for (; folders != end; ++folders)
        for (auto const& entry :
             fs::recursive_directory_iterator(*folders, fs::directory_options::skip_permission_denied)) {
            struct stat status {};
            if (::lstat(entry.path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
            if (!seen.emplace(status.st_dev, status.st_ino).second) continue;
            files.push_back({entry.path().string(), static_cast<std::uintmax_t>(status.st_size)});
        }
    std::sort(files.begin(), files.end(), [](File const& a, File const& b) { return a.bytes < b.bytes; });
    return files;
}

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\n\v\f\r") == std::string_view::npos; }

/// True when surfaces and the blanks between them are @p text.
bool isWhole(TAVO::Tokens const& tokens, std::string_view text) {
    std::size_t end = 0;
    for (TAVO::Token const& token : tokens) {
        if (token.begin() < end || token.end() <= token.begin() || token.end() > text.size()) return false;
        if (token.surface() != text.substr(token.begin(), token.end() - token.begin())) return false;
        if (!isBlank(text.substr(end, token.begin() - end))) return false;
        end = token.end();
    }
    return isBlank(text.substr(end));
}

struct Work {
    std::vector<File> files;
    std::atomic<std::size_t> next = 0;
    std::atomic<std::uintmax_t> read = 0, bytes = 0, words = 0, unreadable = 0, faults = 0;
    std::mutex output;

    void fault(std::string const& path, std::string const& what) {
        ++faults;
        std::scoped_lock const lock(output);
        std::cout << path << ": " << what << std::endl;
    }
};

/// One thread's share.
class Reader {
public:
    Reader(TAVO::Lexicon const& lexicon, Work& work) : tokenizer_(lexicon), work_(work) {}

    void run() {
        for (std::size_t i = work_.next++; i < work_.files.size(); i = work_.next++) {
            std::string const& path = work_.files[i].path;
            try {
                ++(take(path) ? work_.read : work_.unreadable);
            } catch (std::exception const& error) {
                work_.fault(path, error.what());
            }
        }
    }

private:
    /// False when the file cannot be read.
    bool take(std::string const& path) {
        std::ifstream in(path, std::ios::binary);
        std::size_t kept = 0;
        while (in) {
            in.read(buffer_.get() + kept, static_cast<std::streamsize>(kMostBytes - kept));
            std::string_view const text(buffer_.get(), kept + static_cast<std::size_t>(in.gcount()));
            std::size_t const feed = in ? text.rfind('\n') : std::string_view::npos;
            std::string_view const piece = text.substr(0, feed == std::string_view::npos ? text.size() : feed + 1);
            TAVO::Tokens const tokens = tokenizer_.tokenize(piece);
            if (!isWhole(tokens, piece)) work_.fault(path, "does not come back whole");
            work_.words += tokens.size();
            work_.bytes += piece.size();
            kept = text.size() - piece.size();
            std::memmove(buffer_.get(), piece.data() + piece.size(), kept);
        }
        return in.eof();
    }

    TAVO::Tokenizer tokenizer_;
    Work& work_;
    std::unique_ptr<char[]> buffer_ = std::make_unique_for_overwrite<char[]>(kMostBytes);
};

void tellProgress(Work const& work, char const* end) {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    std::fprintf(stderr, "%ju files, %ju bytes, %ju words; %ju unreadable, %ju faults; peak %ld MiB%s",
                 work.read.load(), work.bytes.load(), work.words.load(), work.unreadable.load(), work.faults.load(),
                 usage.ru_maxrss / 1024, end);
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc < 4) {
        std::cerr << "tavo_all_files THREADS LEXICON DIR...\n";
        return 2;
    }
    TAVO::Lexicon const lexicon = TAVO::Lexicon::open(argv[2]);
    Work work;
    work.files = filesOf(argv + 3, argv + argc);
    auto const start = std::chrono::steady_clock::now();
    std::atomic<bool> done = false;
    std::vector<std::thread> threads;
    for (int i = std::max(1, std::atoi(argv[1])); i > 0; --i)
        threads.emplace_back([&] { Reader(lexicon, work).run(); });
    std::thread progress([&] {
        for (int tick = 1; !done; ++tick) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            if (tick % 100 == 0) tellProgress(work, "\n");
        }
    });
    for (std::thread& thread : threads) thread.join();
    done = true;
    progress.join();
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    tellProgress(work, "");
    std::fprintf(stderr, "; %.0f s\n", seconds.count());
    return work.faults == 0 && work.read != 0 ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
