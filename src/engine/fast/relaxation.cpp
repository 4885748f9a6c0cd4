#include "engine/fast/relaxation.hpp"

#include "engine/fast/kernels/kernels.hpp"

#include <cstdlib>
#include <string_view>
#include <vector>

namespace TAVO {
namespace {

std::vector<RelaxKernel> findKernels() {
    std::vector<RelaxKernel> kernels;
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2"))
        kernels.push_back({"avx2", relaxAvx2, passAvx2});
    kernels.push_back({"sse2", relaxSse2, passSse2});
#elif defined(__aarch64__)
    kernels.push_back({"neon", relaxNeon, passNeon});
#endif
    kernels.push_back({"plain", relaxPlain, passPlain});
    return kernels;
}

RelaxKernel const& chooseKernel() {
    char const* const named = std::getenv("TAVO_KERNEL");
    for (RelaxKernel const& kernel : relaxKernels())
        if (named != nullptr && std::string_view(named) == kernel.name) return kernel;
    return relaxKernels().front();
}

}  // namespace

std::span<RelaxKernel const> relaxKernels() {
    static std::vector<RelaxKernel> const kernels = findKernels();
    return kernels;
}

RelaxKernel const& relaxKernel() {
    static RelaxKernel const& kernel = chooseKernel();
    return kernel;
}

}  // namespace TAVO
