// Runs a fuzz target without a fuzzer: on the files and folders given, then on inputs
// made from fixed seeds.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

constexpr unsigned kSeeds = 400;
constexpr std::size_t kMostBytes = 1000;

std::vector<std::uint8_t> made(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(random() % kMostBytes);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
    return bytes;
}

bool runFile(std::filesystem::path const& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<char> const bytes((std::istreambuf_iterator<char>(file)), {});
    if (!file) return false;
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size());
    return true;
}

/// A file, or every file of a folder.
bool run(std::filesystem::path const& path) {
    if (!std::filesystem::is_directory(path)) return runFile(path);
    bool all = true;
    for (auto const& entry : std::filesystem::directory_iterator(path)) all = runFile(entry.path()) && all;
    return all;
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (run(argv[i])) continue;
        std::fprintf(stderr, "cannot read %s\n", argv[i]);
        return 1;
    }
    for (unsigned seed = 0; seed < kSeeds; ++seed) {
        std::printf("seed %u\r", seed);  // the last one seen tells where it went wrong
        std::fflush(stdout);
        std::vector<std::uint8_t> const bytes = made(seed);
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("%u inputs\n", kSeeds);
    return 0;
}
