#include "kestol/WriteProblem.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "input/Project.h"
#include "kestol/Shortest.h"

namespace kestol {

namespace {

/// The system of the results, when it is one of the table; else null.
const UnitSystem* ResultSystem(const Units& units) {
  const auto found = std::find_if(units.table.begin(), units.table.end(), [&](const auto& row) {
    return row.facN == units.resultForce && row.facM == units.resultLength &&
           row.nameN == units.resultForceName && row.nameM == units.resultLengthName &&
           row.namePa == units.resultPressureName;
  });
  return found == units.table.end() ? nullptr : &*found;
}

void WriteUnitTable(const Units& units, std::ostream& stream) {
  if (units.table.empty()) return;
  stream << "units_names\n";
  for (const UnitSystem& row : units.table)
    stream << "  " << row.name << ' ' << row.nameN << ' ' << row.nameM << ' ' << row.namePa << ' '
           << Shortest{row.facN} << ' ' << Shortest{row.facM} << '\n';
  stream << "end\n";
}

void WriteSolver(const Project& project, std::ostream& stream) {
  if (project.solverChoice == SolveSkyLine) stream << "Solver SkyLine\n";
  if (project.solverChoice == SolveDouble) stream << "Solver Double\n";
  if (project.solverChoice == SolveSparse)
    stream << "Solver Sparse " << Shortest{project.tolerance1} << ' '
           << Shortest{project.tolerance2} << ' ' << project.MaxIterations << '\n';
}

bool SameDirection(const ReaVec3& a, const ReaVec3& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

/// A vector that becomes `unit` to the last bit when the reader divides it by its length. The unit
/// vector itself need not: its length may round to a neighbour of 1.
ReaVec3 BeforeScaling(const ReaVec3& unit) {
  constexpr int kTrials = 10000;
  const double largest = std::max({std::abs(unit(1)), std::abs(unit(2)), std::abs(unit(3))});
  for (int k = 0; k < kTrials; ++k) {
    const double s = k == 0 ? 1.0 : k / largest;
    const ReaVec3 v(unit(1) * s, unit(2) * s, unit(3) * s);
    const double length = std::hypot(v(1), v(2), v(3));
    if (SameDirection(ReaVec3(v(1) / length, v(2) / length, v(3) / length), unit)) return v;
  }
  return unit;
}

void WriteGravity(const ReaVec3& gravity, std::ostream& stream) {
  if (SameDirection(gravity, ReaVec3(0.0, 0.0, 1.0))) return;
  const ReaVec3 v = BeforeScaling(gravity);
  stream << "GravityDirection " << Shortest{v(1)} << ' ' << Shortest{v(2)} << ' ' << Shortest{v(3)}
         << '\n';
}

}  // namespace

void WriteUnits(const Units& units, std::ostream& stream) {
  WriteUnitTable(units, stream);
  const UnitSystem* const system = ResultSystem(units);
  if (system == nullptr) return;
  stream << "units_mesh " << system->nameM << "\nunits_mat_and_load " << system->name
         << "\nunits_res " << system->name << '\n';
}

// The first row of a name counts.
bool LosesItsLength(const Units& units) {
  const UnitSystem* const system = ResultSystem(units);
  if (system == nullptr) return false;
  const auto first = std::find_if(units.table.begin(), units.table.end(),
                                  [&](const auto& row) { return row.nameM == system->nameM; });
  return first->facM != system->facM;
}

void WriteOptions(const Project& project, std::ostream& stream) {
  constexpr int kDefaultDivisions = 20;
  constexpr double kDefaultCoplanarity = 1e-7;
  WriteSolver(project, stream);
  if (project.ConvertTo6Nodes) stream << "ConvertTo6Nodes\n";
  if (project.stressOption == MainStresses) stream << "MainStresses\n";
  if (project.stressOption == MainAndLocalStresses) stream << "MainAndLocalStresses\n";
  // Solids are smoothed without an angle.
  if (project.smoothingAngle > 0.0)
    stream << "DoSmoothing " << Shortest{project.smoothingAngle} << '\n';
  if (project.CoplanarityAngle != kDefaultCoplanarity)
    stream << "CoplanarityAngle " << Shortest{project.CoplanarityAngle} << '\n';
  WriteGravity(project.gravity, stream);
  if (project.NumOfDivisions != kDefaultDivisions)
    stream << "NumOfDivisions " << project.NumOfDivisions << '\n';
}

}  // namespace kestol
