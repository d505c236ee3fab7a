#pragma once

namespace kestol {

/// Lets the BLAS behind a solver take its working space, which it keeps until the process ends;
/// std::bad_alloc when there is no room for it. Without this call OpenBLAS takes it in the midst of
/// a factorisation, and where there is none it asks again and again, for ever.
void TakeBlasRoom();

}  // namespace kestol
