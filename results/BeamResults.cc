#include "results/BeamResults.h"

#include <cstddef>

#include "model/Node.h"
#include "results/BeamStations.h"

namespace kestol {

namespace {

/// Calls action(beam, elem, m, row) for every beam, with its axes taken: the beam of place `row`,
/// from 0, in mesh m.
template <class Action>
void ForEachBeam(const Project& project, Action action) {
  BeamElement beam(project);
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    if (project.meshes[m]->elemType != Linear) continue;
    std::ptrdiff_t row = 0;
    for (const auto [number, elem] : project.meshes[m]->elems) {
      beam.SetAxes(*elem);
      action(beam, *elem, m, row++);
    }
  }
}

void AddGeometry(const BeamElement& beam, const Elem& elem, BeamTable& table) {
  table.beams.push_back(&elem);
  table.axes.push_back(FrameOf(beam.T));
  table.lengths.push_back(beam.L);
}

std::size_t CountBeams(const Project& project) {
  std::size_t count = 0;
  for (const auto& mesh : project.meshes)
    if (mesh->elemType == Linear)
      for (auto it = mesh->elems.begin(); it != mesh->elems.end(); ++it) ++count;
  return count;
}

void Reserve(BeamTable& table, std::size_t beams) {
  const std::size_t places = beams * static_cast<std::size_t>(table.stations);
  table.beams.reserve(beams);
  table.axes.reserve(beams);
  table.lengths.reserve(beams);
  table.ends.reserve(beams);
  for (auto& values : table.values) values.reserve(places);
  table.displacements.reserve(places);
  table.rotations.reserve(places);
}

void AddStations(const BeamElement& beam, const Results& results, const double* stored,
                 BeamTable& table) {
  const BeamDisplacements displacements(beam, results.displacements);
  for (int s = 0; s < table.stations; ++s) {
    const double xi = table.XiOf(s);
    table.displacements.push_back(displacements.At(xi));
    table.rotations.push_back(displacements.RotationAt(xi));
  }
  for (int v = 0; v < kBeamValues; ++v) {
    std::vector<double>& values = table.values[static_cast<std::size_t>(v)];
    const int c = StrengthOf(static_cast<BeamValue>(v), beam.project.problemType);
    if (c == 0) {
      values.resize(values.size() + static_cast<std::size_t>(table.stations));
      continue;
    }
    const BeamStrength strength(beam, stored, c);
    for (int s = 0; s < table.stations; ++s) values.push_back(strength.At(table.XiOf(s)));
  }
}

}  // namespace

int StrengthOf(BeamValue value, ProblemType problemType) {
  if (problemType != Plane) return value + 1;
  switch (value) {
    case kN:
      return 1;
    case kVy:
      return 2;
    case kMz:
      return 3;
    default:
      return 0;
  }
}

BeamEndForces EndForcesOf(const BeamElement& beam, const double* stored) {
  const int dofs = beam.project.dofsPerNode;
  BeamEndForces ofLoads;
  for (const BeamLoad& load : beam.loads) {
    const BeamEndForces forces =
        EquivalentEndForces(load, beam.L, beam.project.problemType, beam.endCode);
    for (int d = 0; d < dofs; ++d) {
      ofLoads.f1[d] += forces.f1[d];
      ofLoads.f2[d] += forces.f2[d];
    }
  }
  BeamEndForces ends;
  for (int d = 0; d < dofs; ++d) {
    ends.f1[d] = stored[d] - ofLoads.f1[d];
    ends.f2[d] = stored[dofs + d] - ofLoads.f2[d];
  }
  return ends;
}

Vector3 BeamTable::PositionOf(int beam, int station) const {
  const Elem& elem = *beams[static_cast<std::size_t>(beam)];
  const Vector3 a = kestol::PositionOf(*elem.nodes[0]), b = kestol::PositionOf(*elem.nodes[1]);
  if (station == 0) return a;
  if (station == stations - 1) return b;  // to the bit
  const double xi = XiOf(station);
  return Plus(Times(a, 1.0 - xi), Times(b, xi));
}

Vector3 BeamTable::DiagramDirection(int beam, BeamValue value, ProblemType problemType) const {
  const Frame& frame = axes[static_cast<std::size_t>(beam)];
  return kestol::DiagramDirection(frame, problemType, StrengthOf(value, problemType));
}

BeamTable TableOfBeams(const Project& project, const Results& results, int stations) {
  BeamTable table;
  table.stations = stations;
  Reserve(table, CountBeams(project));
  const auto add = [&](BeamElement& beam, const Elem& elem, std::size_t m, std::ptrdiff_t row) {
    const double* const stored = results.meshes[m].local.begin() + row * 2 * project.dofsPerNode;
    AddGeometry(beam, elem, table);
    beam.SetLoads();
    AddStations(beam, results, stored, table);
    table.ends.push_back(EndForcesOf(beam, stored));
  };
  ForEachBeam(project, add);
  return table;
}

BeamTable GeometryOfBeams(const Project& project) {
  BeamTable table;
  table.stations = 2;
  ForEachBeam(project, [&](const BeamElement& beam, const Elem& elem, std::size_t, std::ptrdiff_t) {
    AddGeometry(beam, elem, table);
  });
  return table;
}

}  // namespace kestol
