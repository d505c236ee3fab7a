#include "algebra/ConjugateGradient.h"

#include <cmath>

#include "algebra/LargePages.h"
#include "algebra/Preconditioner.h"
#include "algebra/SparseKernels.h"
#include "algebra/SparseMatrix.h"
#include "output/InfoFile.h"

namespace kestol {

namespace {

constexpr int kReportEvery = 10;  ///< iterations

// Sums run from the first entry. The loops with one dependent sum also do the neighbouring update:
// the memory is then passed over once, and the waiting of sum on sum costs nothing.

double Dot(int n, const double* a, const double* b) {
  double sum = 0.0;
  for (int i = 0; i < n; ++i) sum += a[i] * b[i];
  return sum;
}

double Norm(int n, const double* a) {
  return std::sqrt(Dot(n, a, a));
}

/// r = b - r; returns ||r||.
double ResidualNorm(int n, const double* b, double* r) {
  double sum = 0.0;
  for (int i = 0; i < n; ++i) {
    r[i] = b[i] - r[i];
    sum += r[i] * r[i];
  }
  return std::sqrt(sum);
}

/// x += alpha p, r -= alpha q; returns ||r||.
double Step(int n, double alpha, const double* p, const double* q, double* x, double* r) {
  double sum = 0.0;
  for (int i = 0; i < n; ++i) {
    x[i] += alpha * p[i];
    r[i] -= alpha * q[i];
    sum += r[i] * r[i];
  }
  return std::sqrt(sum);
}

}  // namespace

int ConjugateGradient(const SparseMatrix& A, double* x, const double* b, const Preconditioner& M,
                      int& limit, double& tolerance, std::ostream* info) {
  const int n = A.rows;
  const double target = tolerance;
  LargeVector<double> r(n), z(n), p(n);
  double* const q = z.data();  // z is used up when q comes

  double normb = Norm(n, b);
  if (normb == 0.0) normb = 1.0;
  Multiply(A, x, r.data());
  double& resid = tolerance;
  resid = ResidualNorm(n, b, r.data()) / normb;
  if (resid <= target) {
    Progress(info, "iteration number %i OK resid=%lg tol=%lg\n", 0, resid, target);
    limit = 0;
    return 0;
  }

  double previousRho = 0.0;
  for (int i = 1; i <= limit && !std::isnan(resid); ++i) {
    if (i % kReportEvery == 0)
      Progress(info, "iteration number %i resid=%lg tol=%lg\n", i, resid, target);
    M.Solve(r.data(), z.data());                    // z = M^-1 r
    const double rho = Dot(n, r.data(), z.data());  // r . z
    const double beta = i == 1 ? 0.0 : rho / previousRho;
    for (int k = 0; k < n; ++k) p[k] = i == 1 ? z[k] : z[k] + beta * p[k];  // p = z + beta p
    Multiply(A, p.data(), q);                                               // q = A p
    const double alpha = rho / Dot(n, p.data(), q);
    resid = Step(n, alpha, p.data(), q, x, r.data()) / normb;  // x += alpha p, r -= alpha q
    if (resid <= target) {
      Progress(info, "Converged it number. %i resid=%lg tol=%lg\n", i, resid, target);
      limit = i;
      return 0;
    }
    previousRho = rho;
  }
  return 1;
}

}  // namespace kestol
