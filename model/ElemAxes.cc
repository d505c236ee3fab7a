#include <algorithm>
#include <cmath>

#include "algebra/FixedMatrix.h"
#include "algebra/Matriu.h"
#include "algebra/Tolerances.h"
#include "algebra/Vector3.h"
#include "main/ErrorChannel.h"
#include "model/Elem.h"
#include "model/EulerAngles.h"
#include "model/Frame.h"
#include "model/Node.h"

namespace kestol {

namespace {

constexpr double kCosine = 1e-5;  ///< of a given local x against the beam: orthogonal, along

Frame GivenFrame(const Material& material) {
  return FrameOf(EulerRotation(material.Euler1, material.Euler2, material.Euler3));
}

void SetAxes(const Frame& frame, Matriu& T) {
  T.Redimension(3, 3);
  SetBlock(RotationOf(frame), 1, 1, T);
}

/// Block diagonal: one frame for translations, one for rotations.
void SetAxes(const Frame& translations, const Frame& rotations, Matriu& T) {
  T.Redimension(6, 6);
  std::fill(T.begin(), T.end(), 0.0);  // inlined, as Fill is not: once for every visit of a beam
  SetBlock(RotationOf(translations), 1, 1, T);
  SetBlock(RotationOf(rotations), 4, 4, T);
}

Vector3 ChordOf(const Elem& elem, int from, int to) {
  return Minus(PositionOf(*elem.nodes[to]), PositionOf(*elem.nodes[from]));
}

/// Unit vector along the beam; in the plane of x and y for a plane problem, where the length is
/// that in the plane.
Vector3 DirectionOf(const Elem& beam, ProblemType problemType) {
  Vector3 chord = ChordOf(beam, 0, 1);
  const double height = chord[2];
  if (problemType == Plane) chord[2] = 0.0;
  const double length = Norm(chord);
  if (!(length >= kZero)) Fatal("error: element: ", beam.number, " has length 0\n");
  if (problemType == Plane && std::abs(height) > kZero * std::max(1.0, length))
    Fatal("error: element: ", beam.number, " is not in the plane of a 2d problem\n");
  return {chord[0] / length, chord[1] / length, chord[2] / length};
}

/// The given axes, turned over when x runs against the beam along d, and with x brought onto d when
/// it is not along the beam already.
Frame FitToBeam(Frame given, const Vector3& d, int elementNumber) {
  double cosine = Dot(Unit(given.x), d);
  if (cosine < -kCosine) {
    given.x = Times(given.x, -1.0);
    given.z = Times(given.z, -1.0);
    cosine = -cosine;
  }
  if (!(cosine >= kCosine))
    Fatal("error: Local x axe is orthogonal to the direction of the beam. Element: ", elementNumber,
          "\n");
  if (cosine >= 1.0 - kCosine) return given;
  const Vector3 z = Unit(Cross(d, Unit(given.y)));
  return {d, Unit(Cross(z, d)), z};
}

/// Local y horizontal and local z upwards, for a beam along d that is not vertical.
Frame UprightFrame(const Vector3& d) {
  Vector3 y{1.0, 0.0, 0.0};
  if (std::abs(d[0]) >= kZero) y = Unit({-d[1] / d[0], 1.0, 0.0});
  Vector3 z = Cross(d, y);
  if (z[2] < 0.0) {
    y = Times(y, -1.0);
    z = Cross(d, y);
  }
  return {d, y, z};
}

Frame SpaceFrame(const Vector3& d, double alpha) {
  if (std::abs(d[0]) < kZero && std::abs(d[1]) < kZero) {
    const Vector3 y{std::cos(alpha), std::sin(alpha), 0.0};
    return {d, y, Cross(d, y)};
  }
  // Deliberate: the roll angle is for vertical beams only.
  if (std::abs(alpha) >= kZero)
    Fatal("sorry, alpha!=0 with no vertical beams isn't implemented yet");
  return UprightFrame(d);
}

/// The given axes if their z is the normal n already; else their x projected into the shell.
Frame FitToShell(const Frame& given, const Vector3& n, int elementNumber) {
  if (Dot(given.z, n) >= 1.0 - kZero) return given;
  const Vector3 y = Cross(n, given.x);
  if (!(Norm(y) >= kZero))
    Fatal("error in element ", elementNumber, ". Normal to element and X local are parallel\n");
  const Vector3 unitY = Unit(y);
  return {Cross(unitY, n), unitY, n};
}

}  // namespace

bool Elem::GivenAxes(const Material* given, Matriu& T) const {
  if (given == nullptr || !given->hasEuler) return false;
  EulerRotation(given->Euler1, given->Euler2, given->Euler3, T);
  return true;
}

void Elem::CalcTransfMatrixBeam(Matriu& T, const Material* given, ProblemType problemType) const {
  const Vector3 d = DirectionOf(*this, problemType);
  if (given != nullptr && given->hasEuler) {
    const Frame frame = FitToBeam(GivenFrame(*given), d, number);
    if (problemType == Space) return SetAxes(frame, frame, T);
    if (problemType == Plane) CheckInPlane(frame, number);
    return SetAxes(frame, T);
  }
  if (problemType == Plane) {
    const Vector3 left = {-d[1], d[0], 0.0}, z = {0.0, 0.0, 1.0};
    return SetAxes({d, left, z}, T);
  }
  if (problemType == Space) {
    const Frame frame = SpaceFrame(d, alpha);
    return SetAxes(frame, frame, T);
  }
  Fatal("error in Elem::CalcTransfMatrixBeam. Type of problem unknown\n");
}

Vector3 Elem::UnitNormal() const {
  const Vector3 normal = Cross(ChordOf(*this, 0, 1), ChordOf(*this, 0, 2));
  if (!(Norm(normal) >= kZero)) Fatal("error: element ", number, " is not correct\n");
  return Unit(normal);
}

void Elem::ShellAxes(Matriu& T, Matriu& T6, const Material* given) const {
  const Vector3 n = UnitNormal();
  const bool hasAxes = given != nullptr && given->hasEuler;
  const Frame frame = hasAxes ? FitToShell(GivenFrame(*given), n, number) : ArbitraryFrame(n);
  SetAxes(frame, T);
  // Deliberate: the local rotations of a shell are about -y, x and the normal, in this order.
  SetAxes(frame, {Times(frame.y, -1.0), frame.x, frame.z}, T6);
}

}  // namespace kestol
