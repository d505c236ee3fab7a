#include <cstdio>
#include <istream>
#include <ostream>

#include "algebra/Matriu.h"
#include "algebra/MatriuRefusals.h"

namespace kestol {

namespace {

/// One number by a printf format; the buffer holds the largest double written out in full.
template <class Number>
void Put(std::ostream& stream, const char* format, Number number) {
  char text[400];
  const int length = std::snprintf(text, sizeof text, format, number);
  stream.write(text, length);
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Matriu& M) {
  if (M.size == 0) return stream << "\n\t(Zero size Matriu)\n";
  stream << "\n   ";
  for (int j = 1; j <= M.ncols; ++j) Put(stream, "%10i ", j);
  for (int i = 1; i <= M.nrows; ++i) {
    stream << "\n";
    Put(stream, "%2i ", i);
    for (int j = 1; j <= M.ncols; ++j) Put(stream, "%10g ", M(i, j));
  }
  return stream << "\n";
}

void Matriu::WriteBinary(std::ostream& stream) const {
  RefuseZeroSize(*this, "error: can't write 0x0 matrix\n");
  stream.write(reinterpret_cast<const char*>(data.get()),
               static_cast<std::streamsize>(size * sizeof(double)));
}

// Deliberate: the bytes carry no shape, so that nothing can be read back.
void Matriu::ReadBinary(std::istream&) {
  Fatal("error: Function 'ReadBinary' should not be used\n");
}

void Matriu::WriteAscii(std::ostream& stream) const {
  RefuseZeroSize(*this, "error: can't ascii write 0x0 matrix\n");
  for (int i = 1; i <= nrows; ++i) {
    for (int j = 1; j <= ncols; ++j) Put(stream, "%lf  ", (*this)(i, j));
    stream << "\n";
  }
}

void Matriu::ReadAscii(std::istream& stream) {
  RefuseZeroSize(*this, "error: can't ascii read 0x0 matrix\n");
  for (double& entry : *this)
    if (!(stream >> entry)) Fatal("error: can't ascii read matrix\n");
}

}  // namespace kestol
