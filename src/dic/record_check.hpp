// The check of the record chains in a dictionary's leaf area.
#ifndef TAVO_DIC_RECORD_CHECK_HPP
#define TAVO_DIC_RECORD_CHECK_HPP

#include "dic/fault_list.hpp"

#include <cstddef>
#include <string_view>

namespace TAVO {

/// Checks the chain of records that starts at @p position of @p file; returns
/// its end, at most file.size(). Part-of-speech ids run from 1 to @p nameCount.
std::size_t checkChain(std::string_view file, std::size_t position, std::size_t nameCount, FaultList& faults);

}  // namespace TAVO

#endif
