#include "algebra/VectorOperations.h"

#include <istream>
#include <ostream>

#include "main/ErrorChannel.h"

namespace kestol {

void RequireEqualLengths(int na, int nb) {
  if (na != nb) Fatal("Different lenght vectors ", na, " != ", nb);
}

void RefuseDivisionByZero() {
  Fatal("Division by zero.");
}

void RefuseVectorProd() {
  Fatal("VectorProd can only be made in 2D or 3D\n");
}

void RefuseVectorSize(int length) {
  Fatal("Can't create a vector of size ", length);
}

void FillEntries(double* entries, int n, double value) {
  if (n == 0) Fatal("Can't fill with ", value, " a zero lenght vector.");
  std::fill_n(entries, n, value);
}

void PrintEntries(std::ostream& stream, const double* entries, int n) {
  constexpr std::streamsize kSignPointExponent = 7;  // room for "-1." and "e+00"
  const std::streamsize width = stream.width(0) + stream.precision() + kSignPointExponent;
  const std::ios::fmtflags flags = stream.flags();
  stream.setf(std::ios::scientific, std::ios::floatfield);
  if (n == 0) stream << "\n\t(Zero size vector)\n";
  for (int i = 0; i < n; ++i) {
    stream << "  ";
    stream.width(width);
    stream << entries[i];
  }
  stream.flags(flags);
  stream.flush();
}

void ReadEntries(std::istream& stream, double* entries, int n) {
  if (n == 0) Fatal("\t(Zero size vector)\n");
  for (int i = 0; i < n; ++i) stream >> entries[i];
}

}  // namespace kestol
