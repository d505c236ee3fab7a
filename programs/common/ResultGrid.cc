#include "programs/common/ResultGrid.h"

#include <limits>
#include <utility>

#include "programs/common/ResultGridArrays.h"
#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

VtuCell CellTypeOf(const Mesh& mesh) {
  switch (mesh.elemType) {
    case Linear:
      return kVtuPolyLine;
    case Triangle:
      return mesh.nnode == 3 ? kVtuTriangle : kVtuQuadraticTriangle;
    default:
      return mesh.nnode == 4 ? kVtuTetra : kVtuQuadraticTetra;
  }
}

}  // namespace

ResultGrid::ResultGrid(const ResultData& data)
    : data_(data), stresses_(data.project, data.results) {
  TakeCells();
  TakeShells();
  TakeMainStresses();
  AddGeometry();
  AddNodeData();
  if (data_.solved && data_.HasBeams()) AddBeamPointData();
  if (stresses_.Exist()) AddSolidPointData();
  AddElementData();
  if (data_.HasBeams() || data_.hasShells) AddAxes();
  if (data_.solved && data_.hasShells) AddShellData();
  AddElementLoads();
}

void ResultGrid::TakeCells() {
  for (const auto& mesh : data_.project.meshes) {
    std::vector<const Elem*>& elems = elems_.emplace_back();
    for (const auto [number, elem] : mesh->elems) elems.push_back(elem);
    const auto count = static_cast<std::int64_t>(elems.size());
    cells_ += count;
    corners_ += count * CornersOf(*mesh);
  }
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  if (corners_ > kMost || PointCount() > kMost)
    throw ProgramError("the model is too large for one VTU file");
}

/// The points of every cell: the stations of a beam lie behind all nodes.
void ResultGrid::PutConnectivity(VtuValues& out) const {
  auto station = static_cast<std::int32_t>(NodeCount());
  ForEachElement([&](const Mesh& mesh, const Elem& elem) {
    if (mesh.elemType == Linear) {
      for (int s = 0; s < data_.beams.stations; ++s) out.Add(station++);
      return;
    }
    std::array<std::int32_t, 10> places;
    for (int i = 0; i < mesh.nnode; ++i)
      places[static_cast<std::size_t>(i)] =
          data_.placeOfIndex[static_cast<std::size_t>(elem.nodes[i]->number)];
    out.Add(std::span<const std::int32_t>(places.data(), static_cast<std::size_t>(mesh.nnode)));
  });
}

void ResultGrid::AddGeometry() {
  grid_.points = {"Points", VtuType::Float64, 3, PointCount(), [this](VtuValues& out) {
                    for (const Node* node : data_.nodes) out.Add(PositionOf(*node));
                    for (int b = 0; b < data_.beams.Count(); ++b)
                      for (int s = 0; s < data_.beams.stations; ++s)
                        out.Add(data_.beams.PositionOf(b, s));
                  }};
  grid_.connectivity = {"connectivity", VtuType::Int32, 1, corners_,
                        [this](VtuValues& out) { PutConnectivity(out); }};
  grid_.offsets = {"offsets", VtuType::Int32, 1, cells_, [this](VtuValues& out) {
                     std::int32_t end = 0;
                     for (std::size_t m = 0; m < elems_.size(); ++m)
                       for (std::size_t e = 0; e < elems_[m].size(); ++e)
                         out.Add(end += CornersOf(*data_.project.meshes[m]));
                   }};
  grid_.types = {"types", VtuType::UInt8, 1, cells_, [this](VtuValues& out) {
                   for (std::size_t m = 0; m < elems_.size(); ++m) {
                     const std::uint8_t type = CellTypeOf(*data_.project.meshes[m]);
                     for (std::size_t e = 0; e < elems_[m].size(); ++e) out.Add(type);
                   }
                 }};
}

void ResultGrid::AddVectorWithStations(const std::string& name, bool rotations) {
  grid_.pointData.push_back(
      {name, VtuType::Float64, 3, PointCount(),
       [this, rotations](VtuValues& out) {
         for (const Node* node : data_.nodes) {
           const NodeDisplacement at = DisplacementOf(data_.project, data_.results, *node);
           out.Add(rotations ? at.rotation : at.u);
         }
         for (const Vector3& v : rotations ? data_.beams.rotations : data_.beams.displacements)
           out.Add(v);
       },
       kVectorNames});
}

void ResultGrid::AddNodeData() {
  const bool turns = !data_.hasSolids;
  AddAtNodes<std::int32_t, 1>("node", VtuType::Int32, [this](const Node& node) {
    return std::array<std::int32_t, 1>{data_.NumberOf(node)};
  });
  if (data_.solved) {
    AddVectorWithStations(data_.Label("U", "L"), false);
    if (turns) AddVectorWithStations(data_.Label("R", "rad"), true);
  }
  AddAtNodes<std::uint8_t, 6>(
      "support", VtuType::UInt8,
      [this](const Node& node) {
        std::array<std::uint8_t, 6> flags{};
        if (!node.constraint) return flags;
        const int dofs = std::min(node.constraint->dofs, data_.project.dofsPerNode);
        for (int d = 0; d < dofs; ++d) {
          const bool turn = data_.project.problemType == Plane && d == 2;  // about z
          if (node.constraint->IsConstrained(d))
            flags[static_cast<std::size_t>(turn ? 5 : d)] =
                static_cast<std::uint8_t>(node.constraint->codes[d]);
        }
        return flags;
      },
      {"x", "y", "z", "rx", "ry", "rz"});
  if (!data_.project.meshes.empty() && data_.HasBeams())
    AddAtNodes<std::uint8_t, 1>("hinge", VtuType::UInt8, [](const Node& node) {
      return std::array<std::uint8_t, 1>{static_cast<std::uint8_t>(node.isHinge ? 1 : 0)};
    });
  const auto addForces = [&](const std::string& name, const std::string& unit, auto valueAt) {
    AddAtNodes<double, 3>(
        data_.Label(name, unit), VtuType::Float64,
        [this, valueAt](const Node& node) { return valueAt(data_, node); }, kVectorNames);
  };
  if (data_.solved) {
    addForces("RF", "F", [](const ResultData& data, const Node& node) {
      return SupportForce(data.project, data.results, node).force;
    });
    if (turns)
      addForces("RM", "F L", [](const ResultData& data, const Node& node) {
        return SupportForce(data.project, data.results, node).moment;
      });
  }
  addForces("F", "F", [](const ResultData& data, const Node& node) {
    return LoadOn(data.project, data.results, node).force;
  });
  if (turns)
    addForces("M", "F L", [](const ResultData& data, const Node& node) {
      return LoadOn(data.project, data.results, node).moment;
    });
}

void ResultGrid::AddBeamPointData() {
  for (int v = 0; v < kBeamValues; ++v)
    grid_.pointData.push_back(
        {data_.Label(kBeamValueNames[v], v < kT ? "F" : "F L"), VtuType::Float64, 1, PointCount(),
         [this, v](VtuValues& out) {
           out.AddZeros<double>(NodeCount());
           out.Add(std::span<const double>(data_.beams.values[static_cast<std::size_t>(v)]));
         }});
}

void ResultGrid::AddElementData() {
  const auto add = [this](const std::string& name, auto valueAt) {
    AddAtElements<std::int32_t, 1>(name, VtuType::Int32, [valueAt](int m, const Elem& elem) {
      return std::array<std::int32_t, 1>{valueAt(m, elem)};
    });
  };
  add("element", [](int, const Elem& elem) { return elem.number; });
  add("material", [](int, const Elem& elem) { return elem.materialNumber; });
  add("mesh", [](int m, const Elem&) { return m + 1; });
  if (!data_.HasBeams()) return;
  AddAtElements<std::uint8_t, 2>(
      "hinges", VtuType::UInt8,
      [this](int m, const Elem& elem) {
        if (data_.project.meshes[static_cast<std::size_t>(m)]->elemType != Linear)
          return std::array<std::uint8_t, 2>{};
        const BeamHinges hinges = HingesOf(data_.project, elem);
        return std::array<std::uint8_t, 2>{hinges.end1, hinges.end2};
      },
      {"end 1", "end 2"});
}

void ResultGrid::AddAxes() {
  constexpr std::pair<const char*, Vector3 Frame::*> kAxes[] = {
      {"ex", &Frame::x},
      {"ey", &Frame::y},
      {"ez", &Frame::z}
  };
  for (const auto& [name, axis] : kAxes)
    grid_.cellData.push_back({name, VtuType::Float64, 3, cells_,
                              [this, axis = axis](VtuValues& out) {
                                std::size_t beam = 0, shell = 0;
                                ForEachElement([&](const Mesh& mesh, const Elem&) {
                                  if (mesh.elemType == Linear)
                                    out.Add(data_.beams.axes[beam++].*axis);
                                  else if (mesh.elemType == Triangle)
                                    out.Add(shells_[shell++].axes.*axis);
                                  else
                                    out.Add(Vector3{});
                                });
                              },
                              kVectorNames});
}

void ResultGrid::AddLoadArray(const std::string& name, Vector3 ElementLoads::*part) {
  AddAtElements<double, 3>(
      name, VtuType::Float64,
      [this, part](int, const Elem& elem) {
        if (data_.project.loads.Get(elem.number) == nullptr) return Vector3{};
        return LoadsOnElement(data_.project, elem).*part;
      },
      kVectorNames);
}

/// Only the arrays that hold something: most models have one kind of distributed load.
void ResultGrid::AddElementLoads() {
  struct Row {
    const char* name;
    const char* unit;
    Vector3 ElementLoads::*part;
  };
  constexpr Row kRows[] = {
      {"load per length",   "F/L",    &ElementLoads::perLength      },
      {"load per area",     "F/L2",   &ElementLoads::perArea        },
      {"load per volume",   "F/L3",   &ElementLoads::perVolume      },
      {"couple per length", "F L/L",  &ElementLoads::couplePerLength},
      {"couple per area",   "F L/L2", &ElementLoads::couplePerArea  },
  };
  std::array<bool, std::size(kRows)> used{};
  for (const auto [number, load] : data_.project.loads)
    for (const auto& mesh : data_.project.meshes) {
      const Elem* const elem = mesh->elems.Get(number);
      if (elem == nullptr) continue;
      const ElementLoads loads = LoadsOnElement(data_.project, *elem);
      for (std::size_t r = 0; r < used.size(); ++r)
        used[r] = used[r] || loads.*kRows[r].part != Vector3{};
    }
  for (std::size_t r = 0; r < used.size(); ++r)
    if (used[r]) AddLoadArray(data_.Label(kRows[r].name, kRows[r].unit), kRows[r].part);
}

}  // namespace kestol
