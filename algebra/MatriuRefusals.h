#pragma once

#include "algebra/Matriu.h"
#include "main/ErrorChannel.h"

namespace kestol {

/// The tests of operands that the operations of Matriu share; for its own source files. The texts
/// stay with the operations, whole.

/// Refuses a matrix without entries, in the words of the pieces.
template <class... Pieces>
void RefuseZeroSize(const Matriu& M, const Pieces&... text) {
  if (M.size == 0) Fatal(text...);
}

/// Refuses with the headline and the sizes of both operands.
[[noreturn]] inline void RefuseShapes(const char* headline, const Matriu& A, const Matriu& B) {
  Fatal(headline, "\tMatriu 1 : nrows=", A.nrows, ", ncols=", A.ncols, "\n",
        "\tMatriu 2 : nrows=", B.nrows, ", ncols=", B.ncols);
}

}  // namespace kestol
