// The kernels that there are; each is a file beside this one.
#ifndef TAVO_ENGINE_FAST_KERNELS_KERNELS_HPP
#define TAVO_ENGINE_FAST_KERNELS_KERNELS_HPP

#include "engine/fast/relaxation.hpp"

#include <cstddef>
#include <cstdint>

namespace TAVO {

void relaxPlain(Relaxation const& block, std::size_t begin, std::size_t end);
std::size_t passPlain(Relaxation const& block, std::span<Look const> looks, std::size_t first, Look* left);
#if defined(__x86_64__)
void relaxSse2(Relaxation const& block, std::size_t begin, std::size_t end);
std::size_t passSse2(Relaxation const& block, std::span<Look const> looks, std::size_t first, Look* left);
void relaxAvx2(Relaxation const& block, std::size_t begin, std::size_t end);
std::size_t passAvx2(Relaxation const& block, std::span<Look const> looks, std::size_t first, Look* left);
#elif defined(__aarch64__)
void relaxNeon(Relaxation const& block, std::size_t begin, std::size_t end);
std::size_t passNeon(Relaxation const& block, std::span<Look const> looks, std::size_t first, Look* left);
#endif

}  // namespace TAVO

#endif
