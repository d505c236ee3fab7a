#pragma once

#include <array>
#include <vector>

#include "analysis/BeamElement.h"
#include "analysis/Results.h"
#include "input/Project.h"
#include "model/Frame.h"

namespace kestol {

/// The internal forces of a beam in the order of space: axial force (tension +), shears (dM/dx),
/// torque, moments (E I times the curvature). In the plane Vz, T and My are 0.
enum BeamValue { kN, kVy, kVz, kT, kMy, kMz, kBeamValues };
constexpr const char* kBeamValueNames[kBeamValues] = {"N", "Vy", "Vz", "T", "My", "Mz"};

/// The strength (from 1) that the solver keeps for a value; 0 for one that the problem has not.
int StrengthOf(BeamValue value, ProblemType problemType);

/// What the nodes exert on the ends of a beam, in its axes, as the report prints it: K u less the
/// equivalent forces of the loads on it. The beam has its axes and loads; `stored` are its values
/// in Results::meshes, 2 x dofsPerNode.
BeamEndForces EndForcesOf(const BeamElement& beam, const double* stored);

/// x / L of one of `stations` equally spaced stations, counted from 0.
inline double StationXi(int station, int stations) {
  return static_cast<double>(station) / static_cast<double>(stations - 1);
}

/// All beams of a model with their values at equally spaced stations, component by component: the
/// value of beam b at station s stands at b * stations + s. It is what every table, picture and
/// array of the beams is written from.
struct BeamTable {
  int stations = 0;  ///< per beam, both ends included
  std::vector<const Elem*> beams;
  std::vector<Frame> axes;
  std::vector<double> lengths;
  std::vector<BeamEndForces> ends;
  std::array<std::vector<double>, kBeamValues> values;
  std::vector<Vector3> displacements, rotations;  ///< global

  int Count() const { return static_cast<int>(beams.size()); }
  std::size_t Place(int beam, int station) const {
    return static_cast<std::size_t>(beam) * static_cast<std::size_t>(stations) +
           static_cast<std::size_t>(station);
  }
  /// x / L of a station.
  double XiOf(int station) const { return StationXi(station, stations); }
  /// Where a station lies, undeformed.
  Vector3 PositionOf(int beam, int station) const;
  /// Along which global direction the diagram of a value is drawn, times the value: the rule of the
  /// solver's own result file, by which moments lie on the tension side.
  Vector3 DiagramDirection(int beam, BeamValue value, ProblemType problemType) const;
};

/// The stations that the deck asks for.
inline int DeckStations(const Project& project) {
  return project.NumOfDivisions + 1;
}

/// Needs displacements and the values of the meshes; `stations` is at least 2.
BeamTable TableOfBeams(const Project& project, const Results& results, int stations);

/// Beams, axes and lengths alone, of a model without results: two stations, no values.
BeamTable GeometryOfBeams(const Project& project);

}  // namespace kestol
