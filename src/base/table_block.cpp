#include "base/table_block.hpp"

#include "base/bad_allocation.hpp"

#include <sys/mman.h>

namespace TAVO {
namespace {

constexpr std::size_t kHugePageBytes = std::size_t{2} << 20;
/// What would fill less of a huge page lies in ordinary ones.
constexpr std::size_t kLeastFilled = kHugePageBytes / 8 * 3;

}  // namespace

TableBlock makeTableBlock(std::size_t sizeBytes) {
    std::size_t const hugePages = (sizeBytes + kHugePageBytes - kLeastFilled) / kHugePageBytes;
    if (hugePages == 0) {
        TableBlock block(static_cast<unsigned char*>(std::malloc(sizeBytes)));
        if (!block) throw BadAllocation();
        return block;
    }
    std::size_t const pages = (sizeBytes + kHugePageBytes - 1) / kHugePageBytes;
    TableBlock block(static_cast<unsigned char*>(std::aligned_alloc(kHugePageBytes, pages * kHugePageBytes)));
    if (!block) throw BadAllocation();
#ifdef MADV_HUGEPAGE
    // An advice: a system that does not take it gives ordinary pages.
    static_cast<void>(::madvise(block.get(), hugePages * kHugePageBytes, MADV_HUGEPAGE));
#endif
    return block;
}

}  // namespace TAVO
