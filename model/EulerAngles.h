#pragma once

#include <string_view>

#include "algebra/FixedMatrix.h"
#include "algebra/ReaVec3.h"

namespace kestol {

class Matriu;

// Three angles in radians stand for the frame R = Rz(Euler3) Ry(Euler2) Rx(Euler1): turn about x
// first, then about y, then about z, all three axes global. With ci, si the cosine and sine of
// Euler i, and the local axes x, y, z in the columns of R, in global components,
//
//     R = [ c3 c2    c3 s2 s1 - s3 c1    c3 s2 c1 + s3 s1 ]
//         [ s3 c2    s3 s2 s1 + c3 c1    s3 s2 c1 - c3 s1 ]
//         [ -s2      c2 s1               c2 c1            ]
//
// so that global = R local. Supports, materials, loads and the result files share this convention.

/// R.
FixedMatrix<3, 3> EulerRotation(double Euler1, double Euler2, double Euler3);
/// The same into a Matriu, which becomes 3x3.
void EulerRotation(double Euler1, double Euler2, double Euler3, Matriu& R);

/// The three angles of the frame R: the first and third in [0, 2 pi), the second in
/// [-pi/2, pi/2]. Angles within 1e-12 of 0 are exactly 0.0. A frame whose x is vertical leaves the
/// first and third undetermined; the first is then 0.
ReaVec3 FrameToAngles(const FixedMatrix<3, 3>& R);
/// The same for the upper left 3x3 block of R.
ReaVec3 FrameToAngles(const Matriu& R);

/// Mean of two, or of three, sets of such angles. First and third go the short way round: 350 and
/// 10 degrees have the mean 0, not 180. With three, the mean of the first two counts double.
ReaVec3 MeanAngles(const ReaVec3& a, const ReaVec3& b);
ReaVec3 MeanAngles(const ReaVec3& a, const ReaVec3& b, const ReaVec3& c);

/// Which angle, 0 to 2, a key of the input that begins with "Euler" sets: its sixth character is 1,
/// 2 or 3, what follows does not matter. Any other key ends the run with
/// "error: Euler angles must be: Euler1,Euler2 or Euler3\n".
int WhichEulerAngle(std::string_view key);

}  // namespace kestol
