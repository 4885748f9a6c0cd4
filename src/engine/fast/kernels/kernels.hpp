// The kernels that there are; each is a file beside this one.
#ifndef TAVO_ENGINE_FAST_KERNELS_KERNELS_HPP
#define TAVO_ENGINE_FAST_KERNELS_KERNELS_HPP

#include "engine/fast/relaxation.hpp"

namespace TAVO {

void relaxPlain(Relaxation const& block, std::size_t begin, std::size_t end);
#if defined(__x86_64__)
void relaxSse2(Relaxation const& block, std::size_t begin, std::size_t end);
void relaxAvx2(Relaxation const& block, std::size_t begin, std::size_t end);
#elif defined(__aarch64__)
void relaxNeon(Relaxation const& block, std::size_t begin, std::size_t end);
#endif

}  // namespace TAVO

#endif
