// What a check of a file found.
#ifndef TAVO_DIC_FAULT_LIST_HPP
#define TAVO_DIC_FAULT_LIST_HPP

#include <cstddef>
#include <string>
#include <vector>

namespace TAVO {

/// Keeps the texts of the first faults and the number of all, since a damaged
/// file can have one at every byte.
class FaultList {
public:
    static constexpr std::size_t kKept = 1000;

    /// @p offset: in bytes from the start of the file.
    void add(std::size_t offset, std::string const& text);
    std::size_t count() const noexcept { return count_; }
    /// One line per fault, in the order found; a last one for those not kept.
    std::vector<std::string> lines() const;

private:
    std::vector<std::string> kept_;
    std::size_t count_ = 0;
};

}  // namespace TAVO

#endif
