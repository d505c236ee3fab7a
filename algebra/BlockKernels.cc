#include "algebra/BlockKernels.h"

namespace kestol {

// One source per family of processors defines these.
namespace block_kernels {
extern const BlockKernels kOf3With128, kOf6With128;
#if defined(__x86_64__)
extern const BlockKernels kOf3With256, kOf6With256;
extern const BlockKernels kOf3With512, kOf6With512;
#endif
}  // namespace block_kernels

using namespace block_kernels;

namespace {

std::vector<BlockKernels> Supported(int blockSize) {
  std::vector<BlockKernels> supported;
  if (blockSize != 3 && blockSize != 6) return supported;
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512vl") != 0)
    supported.push_back(blockSize == 3 ? kOf3With512 : kOf6With512);
  if (__builtin_cpu_supports("avx2") != 0)
    supported.push_back(blockSize == 3 ? kOf3With256 : kOf6With256);
#endif
  supported.push_back(blockSize == 3 ? kOf3With128 : kOf6With128);
  return supported;
}

}  // namespace

const std::vector<BlockKernels>& SupportedBlockKernels(int blockSize) {
  static const std::vector<BlockKernels> none;
  static const std::vector<BlockKernels> of3 = Supported(3);
  static const std::vector<BlockKernels> of6 = Supported(6);
  return blockSize == 3 ? of3 : blockSize == 6 ? of6 : none;
}

const BlockKernels* BlockKernelsFor(int blockSize) {
  const std::vector<BlockKernels>& supported = SupportedBlockKernels(blockSize);
  return supported.empty() ? nullptr : &supported.front();
}

}  // namespace kestol
