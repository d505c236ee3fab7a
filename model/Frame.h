#pragma once

#include "algebra/FixedMatrix.h"
#include "algebra/Vector3.h"

namespace kestol {

/// A local frame: its axes in global components, orthonormal and right-handed.
struct Frame {
  Vector3 x, y, z;

  /// A vector given by its local components, in global ones.
  Vector3 ToGlobal(const Vector3& local) const {
    return Plus(Plus(Times(x, local[0]), Times(y, local[1])), Times(z, local[2]));
  }
};

/// The axes that are the columns of the rotation R.
inline Frame FrameOf(const FixedMatrix<3, 3>& R) {
  return {
      {R(1, 1), R(2, 1), R(3, 1)},
      {R(1, 2), R(2, 2), R(3, 2)},
      {R(1, 3), R(2, 3), R(3, 3)}
  };
}
/// Those in the upper left 3x3 block of T.
inline Frame FrameOf(const Matriu& T) {
  return FrameOf(BlockOf<3, 3>(T, 1, 1));
}

/// The rotation that has the axes as its columns.
inline FixedMatrix<3, 3> RotationOf(const Frame& frame) {
  const auto& [x, y, z] = frame;
  return {
      {x[0], y[0], z[0], //
       x[1], y[1], z[1], //
       x[2], y[2], z[2]}
  };
}

/// Plane problems turn about z only; z may point to either side. Ends the run for axes of the
/// element that leave the plane of x and y by more than 1e-10.
void CheckInPlane(const Frame& frame, int elementNumber);

/// The frame of a surface with the unit normal n when no other says which way x runs. z is n; x is
/// horizontal, or in the plane of global x and z when n is vertical within 1/64.
Frame ArbitraryFrame(const Vector3& n);

}  // namespace kestol
