#include "tests/support/ScalarSparse.h"

#include <cmath>
#include <numeric>

#include "algebra/SparseMatrix.h"

namespace kestol {

namespace {

double Dot(const std::vector<double>& a, const std::vector<double>& b) {
  return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

}  // namespace

ScalarSparse::ScalarSparse(const SparseMatrix& A) : rows_(A.rows) {
  for (int i = 0; i < A.rows; ++i)
    A.ForEachEntry(i, [&](int column, double value) { rows_[i][column] = value; });
}

double ScalarSparse::operator()(int i, int j) const {
  const auto entry = rows_[i].find(j);
  return entry == rows_[i].end() ? 0.0 : entry->second;
}

std::vector<double> ScalarSparse::Times(const std::vector<double>& x) const {
  std::vector<double> y(rows_.size(), 0.0);
  for (int i = 0; i < NumRows(); ++i)
    for (const auto& [j, value] : rows_[i]) y[i] += value * x[j];
  return y;
}

ScalarSparse ScalarSparse::IncompleteFactors() const {
  ScalarSparse factors = *this;
  for (int i = 0; i < NumRows(); ++i) {
    std::map<int, double>& row = factors.rows_[i];
    for (auto& [k, factor] : row) {
      if (k >= i) break;
      factor /= factors(k, k);
      for (const auto& [j, value] : factors.rows_[k])
        if (j > k && row.count(j) != 0) row[j] -= factor * value;
    }
  }
  return factors;
}

std::vector<double> ScalarSparse::SolveFactors(std::vector<double> r) const {
  for (int i = 0; i < NumRows(); ++i) {
    for (const auto& [j, value] : rows_[i])
      if (j < i) r[i] -= value * r[j];
  }
  for (int i = NumRows() - 1; i >= 0; --i) {
    for (const auto& [j, value] : rows_[i])
      if (j > i) r[i] -= value * r[j];
    r[i] /= (*this)(i, i);
  }
  return r;
}

std::vector<double> ScalarSparse::SolveFactorsTransposed(std::vector<double> r) const {
  for (int i = 0; i < NumRows(); ++i) {
    r[i] /= (*this)(i, i);
    for (const auto& [j, value] : rows_[i])
      if (j > i) r[j] -= value * r[i];
  }
  for (int i = NumRows() - 1; i >= 0; --i) {
    for (const auto& [j, value] : rows_[i])
      if (j < i) r[j] -= value * r[i];
  }
  return r;
}

int ScalarSparse::ConjugateGradient(std::vector<double>& x, const std::vector<double>& b,
                                    double tolerance, int limit) const {
  const ScalarSparse factors = IncompleteFactors();
  std::vector<double> r = Times(x);
  for (int i = 0; i < NumRows(); ++i) r[i] = b[i] - r[i];
  const double normb = b == std::vector<double>(b.size(), 0.0) ? 1.0 : std::sqrt(Dot(b, b));
  if (std::sqrt(Dot(r, r)) / normb <= tolerance) return 0;
  std::vector<double> p;
  double previousRho = 0.0;
  for (int iteration = 1; iteration <= limit; ++iteration) {
    const std::vector<double> z = factors.SolveFactors(r);
    const double rho = Dot(r, z);
    if (p.empty())
      p = z;
    else
      for (int i = 0; i < NumRows(); ++i) p[i] = z[i] + rho / previousRho * p[i];
    const std::vector<double> q = Times(p);
    const double alpha = rho / Dot(p, q);
    for (int i = 0; i < NumRows(); ++i) {
      x[i] += alpha * p[i];
      r[i] -= alpha * q[i];
    }
    if (std::sqrt(Dot(r, r)) / normb <= tolerance) return iteration;
    previousRho = rho;
  }
  return -1;
}

}  // namespace kestol
