#include "programs/check/ModeGrid.h"

#include <unordered_map>

#include "programs/common/VtuWriter.h"

namespace kestol {

namespace {

/// The model as points and cells, by the places of its nodes.
struct ModelGrid {
  std::vector<double> points;
  std::vector<std::int32_t> numbers, connectivity, offsets, elements;
  std::vector<std::uint8_t> types;
  std::unordered_map<const Node*, std::int32_t> places;
};

std::uint8_t CellOf(const Mesh& mesh) {
  switch (mesh.elemType) {
    case Triangle:
      return mesh.nnode == 6 ? kVtuQuadraticTriangle : kVtuTriangle;
    case Tetrahedra:
      return mesh.nnode == 10 ? kVtuQuadraticTetra : kVtuTetra;
    default:
      return kVtuPolyLine;
  }
}

bool IsWhole(const Elem& elem) {
  for (int i = 0; i < elem.nnode; ++i)
    if (elem.nodes[i] == nullptr) return false;
  return true;
}

/// Place of each node of a ten-noded tetrahedron in the order of the format, which exchanges the
/// last two mid-sides.
int PlaceInCell(const Mesh& mesh, int i) {
  if (mesh.elemType != Tetrahedra || mesh.nnode != 10 || i < 8) return i;
  return i == 8 ? 9 : 8;
}

ModelGrid GridOf(const Project& project) {
  ModelGrid grid;
  if (project.meshes.empty()) return grid;
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    grid.places.emplace(node, static_cast<std::int32_t>(grid.numbers.size()));
    grid.numbers.push_back(number <= project.nodesAsRead ? number : 0);
    for (const double x : PositionOf(*node)) grid.points.push_back(x);
  }
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType == Quadrilateral || mesh->elemType == Hexahedra) continue;
    for (const auto [number, elem] : mesh->elems) {
      if (!IsWhole(*elem)) continue;
      for (int i = 0; i < elem->nnode; ++i)
        grid.connectivity.push_back(grid.places.at(elem->nodes[PlaceInCell(*mesh, i)]));
      grid.offsets.push_back(static_cast<std::int32_t>(grid.connectivity.size()));
      grid.types.push_back(CellOf(*mesh));
      grid.elements.push_back(number);
    }
  }
  return grid;
}

/// A vector per point: what the mode says of its node, 0 elsewhere.
std::vector<double> AtPoints(const ModelGrid& grid, const MechanismMode& mode,
                             Vector3 NodeMotion::*part) {
  std::unordered_map<int, const NodeMotion*> motions;
  for (const NodeMotion& motion : mode.motion) motions.emplace(motion.node, &motion);
  std::vector<double> values(grid.points.size());
  for (std::size_t p = 0; p < grid.numbers.size(); ++p)
    if (const auto found = motions.find(grid.numbers[p]); found != motions.end())
      for (std::size_t a = 0; a < 3; ++a) values[3 * p + a] = (found->second->*part)[a];
  return values;
}

}  // namespace

void WriteModes(OutputBuffer& output, const Project& project, const Findings& findings) {
  const ModelGrid model = GridOf(project);
  VtuGrid grid{VtuArray::Of("Points", 3, model.points),
               VtuArray::Of("connectivity", 1, model.connectivity),
               VtuArray::Of("offsets", 1, model.offsets),
               VtuArray::Of("types", 1, model.types),
               {},
               {}};
  grid.pointData.push_back(VtuArray::Of("node", 1, model.numbers));
  grid.cellData.push_back(VtuArray::Of("element", 1, model.elements));
  std::vector<std::vector<double>> values;
  if (findings.mechanisms) {
    const std::vector<MechanismMode>& modes = findings.mechanisms->modes;
    values.reserve(2 * modes.size());
    for (std::size_t m = 0; m < modes.size(); ++m) {
      const std::string name = "mode" + std::to_string(m + 1);
      values.push_back(AtPoints(model, modes[m], &NodeMotion::u));
      grid.pointData.push_back(VtuArray::Of(name, 3, values.back()));
      values.push_back(AtPoints(model, modes[m], &NodeMotion::rotation));
      grid.pointData.push_back(VtuArray::Of(name + "_rotation", 3, values.back()));
    }
  }
  WriteVtu(output, grid, VtuEncoding::Raw);
}

}  // namespace kestol
