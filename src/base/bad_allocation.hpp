// Lack of memory with the text that this library promises.
#ifndef TAVO_BASE_BAD_ALLOCATION_HPP
#define TAVO_BASE_BAD_ALLOCATION_HPP

#include <new>

namespace TAVO {

/// The text of the standard class is each standard library's own; callers compare this one.
class BadAllocation : public std::bad_alloc {
public:
    static constexpr char kText[] = "bad allocation";
    char const* what() const noexcept override { return kText; }
};

}  // namespace TAVO

#endif
