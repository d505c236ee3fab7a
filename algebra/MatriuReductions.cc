#include <algorithm>
#include <cmath>
#include <numeric>

#include "algebra/Matriu.h"
#include "algebra/MatriuRefusals.h"

namespace kestol {

double Matriu::Trace() const {
  RefuseZeroSize(*this, "Can't compute the trace of a zero size Matriu");
  if (nrows != ncols) Fatal("Can't compute the trace of a non square Matriu");
  double trace = 0.0;
  for (int i = 1; i <= nrows; ++i) trace += (*this)(i, i);
  return trace;
}

// Deliberate: both norms sum the entries with their signs and start from 0.0, so that sums which
// are all negative yield 0.0.
double Matriu::rowNorm() const {
  RefuseZeroSize(*this, "Can't compute the rowNorm of a zero size Matriu");
  double norm = 0.0;
  for (int i = 1; i <= nrows; ++i) {
    const double* const row = &data[PlaceOf(i, 1)];
    norm = std::max(norm, std::accumulate(row, row + ncols, 0.0));
  }
  return norm;
}

double Matriu::colNorm() const {
  RefuseZeroSize(*this, "Can't compute the colNorm of a zero size Matriu");
  double norm = 0.0;
  for (int j = 1; j <= ncols; ++j) {
    double sum = 0.0;
    for (int i = 1; i <= nrows; ++i) sum += (*this)(i, j);
    norm = std::max(norm, sum);
  }
  return norm;
}

double Matriu::sumSquare() const {
  RefuseZeroSize(*this, "Can't compute the sumSquare of a zero size Matriu");
  return std::inner_product(begin(), end(), begin(), 0.0);
}

double Matriu::sumAbsVal() const {
  RefuseZeroSize(*this, "Can't compute the sumAbsVal of a zero size Matriu");
  return std::accumulate(begin(), end(), 0.0,
                         [](double sum, double entry) { return sum + std::abs(entry); });
}

double Matriu::maxAbsVal() const {
  RefuseZeroSize(*this, "Can't compute the maxAbsVal of a zero size Matriu");
  return std::accumulate(begin(), end(), 0.0, [](double largest, double entry) {
    return std::max(largest, std::abs(entry));
  });
}

void Matriu::scorn(double tol) {
  RefuseZeroSize(*this, "Can't scorn a zero size Matriu");
  std::replace_if(
      begin(), end(), [tol](double entry) { return std::abs(entry) <= tol; }, 0.0);
}

}  // namespace kestol
