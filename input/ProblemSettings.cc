#include "input/ProblemSettings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <string>

#include "algebra/Tolerances.h"
#include "input/MappedWords.h"
#include "input/Project.h"
#include "input/Statement.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr double kPi = 3.141592653589793;

// Sparse: largest tolerance and smallest iteration limit that are accepted.
constexpr double kLargestTolerance = 10.0;
constexpr int kFewestIterations = 10;

// The next of several numbers of one value. With a map it is not looked for among the keywords.
std::string ReadNextNumber(const Statement& s) {
  if (s.map != nullptr) {
    SkipSpace(s.input);
    std::string_view word = s.input.PeekWord();
    if (!TakeReal(word)) throw GivenUp{SourceMap::Cause::TooFewValues, {}};
  }
  return ReadWord(s.input);
}

// The longest leading integer, 0 without one; saturates at the ends of its range.
int SaturatedInteger(const std::string& text) {
  const long value = std::strtol(text.c_str(), nullptr, 10);
  return static_cast<int>(
      std::clamp<long>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

// Deliberate: the messages say "<PI", but pi itself is an angle. A NaN is none.
bool IsAngle(double angle) {
  return angle >= kZero && angle <= kPi;
}

bool IsTolerance(double tolerance) {
  return tolerance > 0.0 && tolerance <= kLargestTolerance;
}

// Deliberate: the message names a relation of the two tolerances that is not asked for.
void ReadSparseArguments(Statement& s) {
  Project& project = s.project;
  project.tolerance1 = RealOf(ReadNextNumber(s));
  project.tolerance2 = RealOf(ReadNextNumber(s));
  project.MaxIterations = SaturatedInteger(ReadNextNumber(s));
  if (!IsTolerance(project.tolerance1) || !IsTolerance(project.tolerance2) ||
      project.MaxIterations < kFewestIterations) {
    Fatal(
        "Solver Sparse needs three aditional arguments:\n"
        "    Solver: Sparse tolerance1 tolerance2 MaxIterations\n"
        "with 0.0<tolerance<10 and MaxIterations>10 and\n"
        " tolerance1<=tolerance2<10\n");
  }
}

}  // namespace

void SetUnitsMesh(Statement& s) {
  Units& units = s.project.units;
  const auto found = std::find_if(units.table.begin(), units.table.end(),
                                  [&](const UnitSystem& row) { return row.nameM == s.value; });
  if (found == units.table.end())
    Fatal("error: Unit length name '", s.value, "' has not been previously defined\n");
  if (!IsUnitFactor(found->facM)) Fatal("error: Units_mesh must be a positive number\n");
  units.meshLength = found->facM;
}

void SetUnitsMatAndLoad(Statement& s) {
  Units& units = s.project.units;
  const UnitSystem& system = FindUnits(units, s.value);
  if (!IsUnitFactor(system.facN) || !IsUnitFactor(system.facM))
    Fatal("error: units_mat_and_load must be two positive numbers\n");
  units.materialForce = system.facN;
  units.materialLength = system.facM;
}

void SetUnitsRes(Statement& s) {
  Units& units = s.project.units;
  const UnitSystem& system = FindUnits(units, s.value);
  if (!IsUnitFactor(system.facN) || !IsUnitFactor(system.facM))
    Fatal("error: units_res must be two positive numbers and three names\n");
  units.resultForce = system.facN;
  units.resultLength = system.facM;
  units.resultForceName = system.nameN;
  units.resultLengthName = system.nameM;
  units.resultPressureName = system.namePa;
}

void SetConvertTo6Nodes(Statement& s) {
  s.project.ConvertTo6Nodes = true;
}

void SetMainStresses(Statement& s) {
  s.project.stressOption = MainStresses;
}

void SetMainAndLocalStresses(Statement& s) {
  s.project.stressOption = MainAndLocalStresses;
}

void SetNumOfDivisions(Statement& s) {
  s.project.NumOfDivisions = SaturatedInteger(s.value);
  if (s.project.NumOfDivisions <= 0) Fatal("error: Number of divisions must be positive");
}

// Deliberate: the flag is set before the angle is looked at.
void SetDoSmoothing(Statement& s) {
  s.project.DoSmoothing = true;
  s.project.smoothingAngle = RealOf(s.value);
  if (!IsAngle(s.project.smoothingAngle))
    Fatal("error: DoSmoothing must have angle >0 and <PI rad\n");
}

void SetCoplanarityAngle(Statement& s) {
  s.project.CoplanarityAngle = RealOf(s.value);
  if (!IsAngle(s.project.CoplanarityAngle))
    Fatal("error: CoplanarityAngle must have angle >0 and <PI rad\n");
}

void SetSolver(Statement& s) {
  struct Name {
    std::string_view name;
    SolverChoice choice;
  };
  constexpr Name kNames[] = {
      {"Automatic", Automatic   },
      {"SkyLine",   SolveSkyLine},
      {"Sparse",    SolveSparse },
      {"Double",    SolveDouble },
  };
  const auto found = std::find_if(std::begin(kNames), std::end(kNames), [&](const Name& row) {
    return StartsWithAnyCase(s.value, row.name);
  });
  if (found == std::end(kNames))
    Fatal("error: type of solver must be: Automatic, SkyLine, Double or Sparse\n");
  s.project.solverChoice = found->choice;
  if (found->choice == SolveSparse) ReadSparseArguments(s);
}

void SetGravityDirection(Statement& s) {
  const double x = RealOf(s.value);
  const double y = RealOf(ReadNextNumber(s));
  const double z = RealOf(ReadNextNumber(s));
  const double length = std::hypot(x, y, z);
  if (!(length >= kZero) || !std::isfinite(length))
    Fatal("error: GravityDirection must be a vector no null");
  s.project.gravity = ReaVec3(x / length, y / length, z / length);
}

}  // namespace kestol
