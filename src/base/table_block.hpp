// Memory for a large table that is read all over.
#ifndef TAVO_BASE_TABLE_BLOCK_HPP
#define TAVO_BASE_TABLE_BLOCK_HPP

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace TAVO {

struct FreeBlock {
    void operator()(unsigned char* block) const noexcept { std::free(block); }
};

/// Bytes without initial values.
using TableBlock = std::unique_ptr<unsigned char[], FreeBlock>;

/// @p sizeBytes is not 0. Throws bad_alloc. A block of some megabytes lies in huge pages where the
/// system gives them: filling it takes two or three page faults instead of hundreds,
/// of which each costs as much as copying several kilobytes.
TableBlock makeTableBlock(std::size_t sizeBytes);

}  // namespace TAVO

#endif
