#include "support/guarded_bytes.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <new>

namespace TAVO::test {

GuardedBytes::GuardedBytes(std::string_view bytes) : size_(bytes.size()) {
    auto const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    std::size_t const readable = (size_ + page - 1) / page * page;
    mapped_ = readable + page;
    void* const pages = ::mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) throw std::bad_alloc();
    pages_ = static_cast<unsigned char*>(pages);
    end_ = pages_ + readable;
    ::mprotect(end_, page, PROT_NONE);
    std::copy(bytes.begin(), bytes.end(), data());
}

GuardedBytes::~GuardedBytes() { ::munmap(pages_, mapped_); }

}  // namespace TAVO::test
