#include "model/PreassureLT.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>

#include "input/LinePairs.h"
#include "main/ErrorChannel.h"
#include "model/Elem.h"
#include "model/EulerAngles.h"
#include "model/Frame.h"
#include "model/Mesh.h"

namespace kestol {

namespace {

/// What a load line says, as it says it.
struct LoadLine {
  std::array<double, 4> q{};  ///< q1, q2, q3 and the couple m
  int face = -1;
  std::array<double, 3> euler{};
  bool hasEuler = false;
  UnitFactors factors;
};

[[noreturn]] void NumbersFatal(int elemNumber) {
  Fatal("Not reading correctly preassure_loads. ElemNum=", elemNumber, "\n");
}

/// Takes numbers from the front of `text` into q, at most `count`; gives how many there were.
int TakeUpTo(int count, std::string_view& text, std::array<double, 4>& q, int elemNumber) {
  for (int i = 0; i < count; ++i) {
    const std::optional<double> value = TakeReal(text);
    if (!value) return i;
    if (!std::isfinite(*value)) NumbersFatal(elemNumber);
    q[i] = *value;
  }
  return count;
}

/// Whether the whole word is an integer in the notations of IntegerOf.
bool IsInteger(std::string_view word) {
  const std::string copy(word);
  char* end = nullptr;
  std::strtol(copy.c_str(), &end, 0);
  return !copy.empty() && *end == '\0';
}

/// Takes a face selector and three numbers; false, with `text` unchanged, when they do not all
/// stand there. Only a whole word is a selector: the first of three plain numbers must not be cut
/// at its decimal point.
bool TakeFaceAndNumbers(std::string_view& text, LoadLine& line, int elemNumber) {
  std::string_view rest = text;
  const std::string_view selector = TakeValue(rest);
  if (!IsInteger(selector) || TakeUpTo(3, rest, line.q, elemNumber) < 3) return false;
  line.face = IntegerOf(selector);
  text = rest;
  return true;
}

void TakeNumbers(int kind, int elemNumber, ProblemType problemType, int elemType,
                 std::string_view& text, LoadLine& line) {
  if (problemType == Plane) {
    if (TakeUpTo(2, text, line.q, elemNumber) < 2) NumbersFatal(elemNumber);
    return;
  }
  if (elemType == Tetrahedra) {
    if (!TakeFaceAndNumbers(text, line, elemNumber)) NumbersFatal(elemNumber);
    return;
  }
  if (kind == FaceLoad) {
    if (elemType == Linear)
      Fatal("error: applying a shell load to a beam element. ElemNum=", elemNumber, "\n");
    if (TakeFaceAndNumbers(text, line, elemNumber)) return;
  }
  line.q = {};
  const int most = kind == LocalPressure ? 4 : 3;  // only a local load has a couple
  if (TakeUpTo(most, text, line.q, elemNumber) < 3) NumbersFatal(elemNumber);
}

void CheckFace(int face, int elemType, int elemNumber) {
  const int faces = elemType == Tetrahedra ? 4 : 3;
  if (face < -1 || face >= faces)
    Fatal("error: face ", face, " does not exist in element ", elemNumber, "\n");
}

void TakeEulerAngle(std::string_view key, std::string_view value, LoadLine& line) {
  line.euler[WhichEulerAngle(key)] = RealOf(value);
  line.hasEuler = true;
}

void TakePairs(std::string_view text, int elemNumber, const Units& units, LoadLine& line) {
  LinePairs pairs(text, units);
  while (pairs.Next())
    if (StartsWithAnyCase(pairs.key, "Euler")) TakeEulerAngle(pairs.key, pairs.value, line);
  if (pairs.KeyWithoutValue())
    Fatal("Not reading correctly the preassure_loads. ElemNum=", elemNumber, "\n");
  line.factors = pairs.factors;
}

/// Power of the length under the force: loads come per length, per area or per volume.
int LengthPower(int elemType, int face) {
  if (elemType == Linear) return 1;
  if (elemType == Triangle) return face >= 0 ? 1 : 2;
  return face >= 0 ? 2 : 3;
}

void Scale(LoadLine& line, int elemType) {
  const double L = line.factors.length;
  double perForce = line.factors.force;
  for (int k = LengthPower(elemType, line.face); k > 0; --k) perForce /= L;
  for (int i = 0; i < 3; ++i) line.q[i] *= perForce;
  line.q[3] *= perForce * L;  // a couple is a force times a length
}

/// (q1, q2, q3), given in the axes of the line's angles, in global components; the couple stays.
void Turn(LoadLine& line, int elemNumber, ProblemType problemType) {
  const Frame axes = FrameOf(EulerRotation(line.euler[0], line.euler[1], line.euler[2]));
  if (problemType == Plane) CheckInPlane(axes, elemNumber);
  const Vector3 q = axes.ToGlobal({line.q[0], line.q[1], line.q[2]});
  std::copy(q.begin(), q.end(), line.q.begin());
}

}  // namespace

void PreassureLT::ReadYourLoad(int elemNumber, ProblemType problemType, std::string_view text,
                               const Units& units, int elemType) {
  if (elemType != Linear && elemType != Triangle && elemType != Tetrahedra)
    Fatal("error: Unknown elem type in PreassureLT::ReadYourLoad\n");

  LoadLine line;
  TakeNumbers(kind, elemNumber, problemType, elemType, text, line);
  CheckFace(line.face, elemType, elemNumber);
  TakePairs(text, elemNumber, units, line);

  Scale(line, elemType);
  if (line.hasEuler) Turn(line, elemNumber, problemType);

  face = line.face;
  const bool withCouple = problemType != Plane && elemType != Tetrahedra;
  values = ReaVecT(withCouple ? 6 : 3);
  for (int i = 1; i <= (withCouple ? 4 : 3); ++i) values(i) = line.q[i - 1];
}

}  // namespace kestol
