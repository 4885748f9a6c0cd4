// What the process holds of its system.
#ifndef TAVO_TESTS_PROCESS_USAGE_HPP
#define TAVO_TESTS_PROCESS_USAGE_HPP

#include <cstddef>

namespace TAVO::test {

struct ProcessUsage {
    std::size_t heapBytes;  ///< allocated and not freed; 0 under a sanitizer, which has a heap of its own
    std::size_t residentBytes;
    std::size_t descriptors;

    static ProcessUsage now();
};

}  // namespace TAVO::test

#endif
