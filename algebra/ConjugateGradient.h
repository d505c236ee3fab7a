#pragma once

#include <ostream>

namespace kestol {

class Preconditioner;
class SparseMatrix;

/// Preconditioned conjugate gradients for A x = b, all vectors as long as A has rows.
///
/// `x` holds the starting vector and then the solution. The residual is ||b - A x|| / ||b||, with
/// ||b|| taken as 1 for b = 0. On entry `tolerance` is the residual aimed at and `limit` the number
/// of iterations allowed; on return `tolerance` is the residual reached and, when it converged,
/// `limit` the number of iterations done. `info` may be null.
///
/// Returns 0 when converged, otherwise 1. There is no test for a breakdown: it shows as a residual
/// that is not a number, with which the iterations stop.
int ConjugateGradient(const SparseMatrix& A, double* x, const double* b, const Preconditioner& M,
                      int& limit, double& tolerance, std::ostream* info);

}  // namespace kestol
