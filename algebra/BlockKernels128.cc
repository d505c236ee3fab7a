// The node block kernels for vectors of 128 bits, which every processor has.
#define KESTOL_LANES 2
#include "algebra/BlockKernels.inc"

namespace kestol {

namespace block_kernels {

extern const BlockKernels kOf3With128 = {
    "128 bits", 3, kStride<3>, Multiply<3>, Forward<3>, Backward<3>,
};
extern const BlockKernels kOf6With128 = {
    "128 bits", 6, kStride<6>, Multiply<6>, Forward<6>, Backward<6>,
};

}  // namespace block_kernels

}  // namespace kestol
