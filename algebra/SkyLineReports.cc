// What the skyline matrix tells about itself: the storage report, prints, the picture, dependent
// rows.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "algebra/Matriu.h"
#include "algebra/SkyLine.h"
#include "algebra/Tolerances.h"
#include "main/ErrorChannel.h"
#include "output/InfoFile.h"

namespace kestol {

namespace {

bool IsZero(double entry) {
  return std::abs(entry) <= kZero;
}

bool IsNotZero(double entry) {
  return std::abs(entry) > kZero;
}

template <class Number>
void Write(std::ostream& stream, const char* format, Number value) {
  char text[40];
  std::snprintf(text, sizeof text, format, value);
  stream << text;
}

/// Whether `other` is a multiple of `row`: all ratios other(c) / row(c) agree within kZero. Columns
/// where both vanish say nothing.
bool AreDependent(const std::vector<double>& row, const std::vector<double>& other) {
  bool hasRatio = false;
  double ratio = 0.0;
  for (std::size_t c = 0; c < row.size(); ++c) {
    if (IsZero(row[c]) && IsZero(other[c])) continue;
    if (IsZero(row[c])) return false;
    const double here = other[c] / row[c];
    if (!hasRatio) ratio = here;
    hasRatio = true;
    if (!IsZero(here - ratio)) return false;
  }
  return true;
}

}  // namespace

void SkyLine::PrintInfo(std::ostream& stream) const {
  const long long total = NumStored();
  const int average = n_ == 0 ? 0 : static_cast<int>(total / n_);
  const double megabytes = static_cast<double>(total) * sizeof(double) / kMegabyte;
  Progress(&stream,
           "\nINFORMATION ABOUT STIFFNESS MATRIX\n"
           "Sky matrix storage with Txolesky\n"
           "Degrees of freedom= %i\n"
           "Average column size= %i\n"
           "Total number of positions= %lli\n"
           "Amount of memory= %.1lfMb\n\n",
           n_, average, total, megabytes);
}

void SkyLine::Print(std::ostream& stream) const {
  stream << "\nprinting SkyLine Matrix size=" << n_ << "x" << n_ << "\n";
  std::vector<double> row;
  for (int i = 1; i <= n_; ++i) {
    FillRow(i, row);
    const auto begin = std::find_if(row.begin(), row.end(), IsNotZero);
    const auto end = std::find_if(row.rbegin(), row.rend(), IsNotZero).base();
    if (begin == row.end()) {
      stream << "row=" << i << " NONE\n";
      continue;
    }
    const auto first = static_cast<int>(begin - row.begin()) + 1;
    const auto last = static_cast<int>(end - row.begin());
    stream << "row=" << i << " from " << first << " to " << last;
    for (int j = first; j <= last; ++j) {
      if (j == i) stream << "\n";
      Write(stream, "%7g ", row[j - 1]);
    }
    stream << "\n";
  }
}

void SkyLine::PrintFull(std::ostream& stream) const {
  stream << "\nprinting SkyLine Matrix\n   ";
  for (int j = 1; j <= n_; ++j) Write(stream, "%7i ", j);
  std::vector<double> row;
  for (int i = 1; i <= n_; ++i) {
    FillRow(i, row);
    Write(stream, "\n\n\n\n\n%2i ", i);
    for (const double entry : row) Write(stream, "%7g ", entry);
  }
}

void SkyLine::CopyFromYouToMat(Matriu& dense) const {
  dense.Redimension(n_, n_);
  std::vector<double> row;
  for (int i = 1; i <= n_; ++i) {
    FillRow(i, row);
    std::copy(row.begin(), row.end(), dense.data.get() + static_cast<std::size_t>(i - 1) * n_);
  }
}

void SkyLine::WriteForVemo(std::ostream& stream) const {
  constexpr int kSquare = 4;  // nodes of a cell, and its type in the file
  const long long cells = static_cast<long long>(n_) * n_;
  stream << "NumElems NumNodes ElemType\n"
         << cells << " " << kSquare * cells << " " << kSquare << "\n";

  stream << "node x y z\n";
  long long node = 0;
  const auto writeNode = [&](int x, int y) { stream << ++node << " " << x << " " << y << " 0\n"; };
  for (int i = 1; i <= n_; ++i) {
    for (int j = 1; j <= n_; ++j) {
      writeNode(j - 1, 1 - i);
      writeNode(j, 1 - i);
      writeNode(j, -i);
      writeNode(j - 1, -i);
    }
  }

  stream << "element node1 node2\n";
  for (long long cell = 1; cell <= cells; ++cell) {
    stream << cell;
    for (int corner = 1; corner <= kSquare; ++corner)
      stream << " " << kSquare * (cell - 1) + corner;
    stream << "\n";
  }

  stream << "value          4 1.0 Estatic 1 1 0\n";
  std::vector<double> row;
  long long cell = 0;
  for (int i = 1; i <= n_; ++i) {
    FillRow(i, row);
    for (const double entry : row) {
      stream << ++cell;
      Write(stream, " %g\n", entry);
    }
  }
}

int SkyLine::FirstZeroRow() const {
  std::vector<double> row;
  for (int i = 1; i <= n_; ++i) {
    FillRow(i, row);
    if (std::all_of(row.begin(), row.end(), IsZero)) return i;
  }
  return 0;
}

void SkyLine::ReportDependence(int p) const {
  std::vector<double> row;
  std::vector<double> other;
  FillRow(p, row);
  for (int r = 1; r <= n_; ++r) {
    if (r == p) continue;
    FillRow(r, other);
    if (AreDependent(row, other))
      Fatal("error: Degree of freedom ", p, " and ", r, " are dependent\n");
  }
}

}  // namespace kestol
