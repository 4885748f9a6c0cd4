#include "support/process_usage.hpp"

#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace TAVO::test {

ProcessUsage ProcessUsage::now() {
    std::size_t pages = 0, residentPages = 0;
    std::ifstream("/proc/self/statm") >> pages >> residentPages;
    auto const descriptors = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    struct mallinfo2 const heap = ::mallinfo2();
    return {heap.uordblks + heap.hblkhd, residentPages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)),
            static_cast<std::size_t>(descriptors)};
}

}  // namespace TAVO::test
