#include "programs/mpi/MechanismTest.h"

#include <cmath>
#include <cstdint>

namespace kestol {

namespace {

constexpr double kFree = 1e-12;

/// A number in (-1, 1) that depends on `n` alone.
double Scatter(std::uint64_t n) {
  n = (n + 1) * 0x9E3779B97F4A7C15U;
  n = (n ^ (n >> 30)) * 0xBF58476D1CE4E5B9U;
  n = (n ^ (n >> 27)) * 0x94D049BB133111EBU;
  n ^= n >> 31;
  return static_cast<double>(n >> 11) * 0x1p-52 - 1.0;
}

void FillScattered(Vec vector) {
  PetscInt first = 0, end = 0;
  double* values = nullptr;
  Check(VecGetOwnershipRange(vector, &first, &end));
  Check(VecGetArray(vector, &values));
  for (PetscInt i = first; i < end; ++i) values[i - first] = Scatter(static_cast<std::uint64_t>(i));
  Check(VecRestoreArray(vector, &values));
}

void ReplaceZerosByOne(Vec vector) {
  PetscInt count = 0;
  double* values = nullptr;
  Check(VecGetLocalSize(vector, &count));
  Check(VecGetArray(vector, &values));
  for (PetscInt i = 0; i < count; ++i)
    if (values[i] == 0.0) values[i] = 1.0;
  Check(VecRestoreArray(vector, &values));
}

}  // namespace

MechanismTest::MechanismTest(const DistributedSystem& system) : system_(system) {
  Check(VecDuplicate(system.Solution(), diagonal_.Place()));
  Check(MatGetDiagonal(system.Matrix(), diagonal_));
  ReplaceZerosByOne(diagonal_);
  Check(VecDuplicate(diagonal_, roots_.Place()));
  Check(VecCopy(diagonal_, roots_));
  Check(VecAbs(roots_));
  Check(VecSqrtAbs(roots_));
}

/// z K z / z D z.
double MechanismTest::Quotient(Vec motion) const {
  PetscVector product;
  double energy = 0.0, size = 0.0;
  Check(VecDuplicate(motion, product.Place()));
  Check(MatMult(system_.Matrix(), motion, product));
  Check(VecDot(motion, product, &energy));
  Check(VecPointwiseMult(product, roots_, motion));
  Check(VecDot(product, product, &size));
  return energy / size;
}

bool MechanismTest::IsFree(Vec motion) const {
  const double quotient = Quotient(motion);
  return std::isfinite(quotient) && std::abs(quotient) < kFree;
}

bool MechanismTest::Finds(SystemSolver& solver) {
  PetscVector start;
  PetscInt count = 0;
  Check(VecDuplicate(diagonal_, start.Place()));
  Check(VecDuplicate(diagonal_, motion_.Place()));
  Check(VecGetSize(start, &count));
  FillScattered(start);
  Check(VecPointwiseMult(start, start, roots_));
  if (!solver.IsDirect()) {
    // What a free motion has of a scattered right side, about one part in the root of all
    // equations, cannot be reached by any K z: iterations that pass far below it met none.
    const double tolerance = 1e-2 / std::sqrt(static_cast<double>(count));
    return !solver.SolveFor(start, motion_, tolerance) || IsFree(motion_);
  }
  constexpr int kSteps = 2;
  for (int step = 0; step < kSteps; ++step) {
    solver.SolveFor(start, motion_, 0.0);
    double size = 0.0;
    Check(VecNorm(motion_, NORM_2, &size));
    if (!std::isfinite(size) || size == 0.0) return true;
    Check(VecScale(motion_, 1.0 / size));
    Check(VecPointwiseMult(start, motion_, diagonal_));
  }
  return IsFree(motion_);
}

}  // namespace kestol
