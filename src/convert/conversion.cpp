#include "convert/conversion.hpp"

#include <algorithm>
#include <iterator>

namespace TAVO {
namespace {

/// Where @p at of one text stands in the other; the members tell which is which.
template <auto FromBegin, auto FromEnd, auto ToBegin, auto ToEnd>
std::size_t otherPlace(std::vector<Conversion::Change> const& changes, std::size_t at) noexcept {
    auto const behind = std::partition_point(
        changes.begin(), changes.end(), [at](Conversion::Change const& change) { return change.*FromBegin <= at; });
    if (behind == changes.begin()) return at;
    Conversion::Change const& change = *std::prev(behind);
    if (at == change.*FromBegin) return change.*ToBegin;
    return at <= change.*FromEnd ? change.*ToEnd : at - change.*FromEnd + change.*ToEnd;
}

}  // namespace

std::size_t Conversion::toGiven(std::size_t at) const noexcept {
    return otherPlace<&Change::newBegin, &Change::newEnd, &Change::begin, &Change::end>(changes, at);
}

std::size_t Conversion::toConverted(std::size_t at) const noexcept {
    return otherPlace<&Change::begin, &Change::end, &Change::newBegin, &Change::newEnd>(changes, at);
}

}  // namespace TAVO
