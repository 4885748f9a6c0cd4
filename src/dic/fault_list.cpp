#include "dic/fault_list.hpp"

namespace TAVO {

void FaultList::add(std::size_t offset, std::string const& text) {
    if (++count_ <= kKept) kept_.push_back("offset " + std::to_string(offset) + ": " + text);
}

std::vector<std::string> FaultList::lines() const {
    std::vector<std::string> lines = kept_;
    if (count_ > kKept) lines.push_back("and " + std::to_string(count_ - kKept) + " more faults");
    return lines;
}

}  // namespace TAVO
