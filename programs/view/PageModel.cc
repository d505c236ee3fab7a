#include "programs/view/PageModel.h"

#include <algorithm>
#include <optional>
#include <span>

#include "algebra/Matriu.h"
#include "analysis/PointLayout.h"
#include "model/Frame.h"
#include "programs/common/ResultJson.h"
#include "programs/view/LoadGroups.h"
#include "programs/view/Runs.h"
#include "programs/view/SolidFaces.h"
#include "results/ElementLoads.h"
#include "results/UnitNames.h"

namespace kestol {

namespace {

/// What can be drawn.
std::optional<PageMesh::Kind> KindOf(const Mesh& mesh) {
  switch (mesh.elemType) {
    case Linear:
      return PageMesh::Kind::Beam;
    case Triangle:
      return PageMesh::Kind::Shell;
    case Tetrahedra:
      return PageMesh::Kind::Solid;
    default:
      return std::nullopt;
  }
}

const char* NameOf(PageMesh::Kind kind) {
  constexpr const char* kNames[] = {"beam", "shell", "solid"};
  return kNames[static_cast<int>(kind)];
}

bool HasAllNodes(const Elem& elem) {
  return std::all_of(elem.nodes.get(), elem.nodes.get() + elem.nnode,
                     [](const Node* node) { return node != nullptr; });
}

/// Divisions of a beam in a page: those of the deck, or the largest part of them that divides them
/// evenly, so that every station of the page is one of the deck.
int DivisionsFor(int divisions, std::size_t beams) {
  constexpr int kFewest = 4, kMost = 200;
  constexpr std::size_t kMostInAll = 400'000;
  const int most = static_cast<int>(
      std::clamp<std::size_t>(kMostInAll / std::max<std::size_t>(beams, 1), kFewest, kMost));
  for (int part = std::min(divisions, most); part >= kFewest; --part)
    if (divisions % part == 0) return part;
  return std::min(divisions, most);
}

std::vector<double> StationsFor(int divisions) {
  std::vector<double> stations;
  for (int s = 0; s <= divisions; ++s)
    stations.push_back(static_cast<double>(s) / static_cast<double>(divisions));
  return stations;
}

void WriteRuns(JsonWriter& json, const Runs& runs) {
  json.Key("runs").BeginArray();
  for (const std::int64_t value : runs.Pairs()) json.Value(value);
  json.EndArray();
}

void WriteVector(JsonWriter& json, const char* name, double x, double y, double z) {
  const double values[] = {x, y, z};
  json.Member(name, std::span<const double>(values));
}

/// What a support does, without the node: supports that agree in it are one group.
struct SupportKind {
  std::string codes;
  std::vector<double> values;
  std::vector<double> axes;  ///< rows; empty where they are the global ones
  bool operator==(const SupportKind&) const = default;
};

SupportKind KindOf(const Constraint& support, int number, bool plane) {
  SupportKind kind;
  for (int d = 0; d < support.dofs; ++d) {
    kind.codes.push_back(static_cast<char>('0' + std::clamp(support.codes[d], 0, 9)));
    kind.values.push_back(support.values[d]);
  }
  Matriu T;
  if (NodeAxesMatrix(support, number, T, plane ? 3 : support.dofs, 0) != 0) return kind;
  for (int axis = 1; axis <= 3; ++axis)
    for (int c = 1; c <= 3; ++c) kind.axes.push_back(T(c, axis));
  return kind;
}

}  // namespace

NodePlaces::NodePlaces(const Project& project) {
  if (project.meshes.empty()) return;
  for (const auto [key, node] : *project.meshes[0]->nodes) {
    const std::size_t index = node->number;
    if (place_.size() <= index) place_.resize(index + 1, 0);
    place_[index] = static_cast<std::uint32_t>(nodes_.size());
    const bool made = project.nodesAsRead > 0 && key > project.nodesAsRead;
    nodes_.push_back(node);
    numbers_.push_back(made ? 0 : key);
    if (made) continue;
    ++deckNodes_;
    complete_ = complete_ && key == deckNodes_;
  }
}

std::vector<PageMesh> PageMeshes(const Project& project) {
  std::vector<PageMesh> meshes;
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    const Mesh& mesh = *project.meshes[m];
    const std::optional<PageMesh::Kind> kind = KindOf(mesh);
    if (!kind) continue;
    PageMesh page{*kind, static_cast<int>(m), mesh.nnode, PointLayoutOf(project, mesh).points, {},
                  {}};
    for (const auto [number, elem] : mesh.elems)
      if (HasAllNodes(*elem)) page.elems.push_back(elem);
    if (!page.elems.empty()) meshes.push_back(std::move(page));
  }
  // One number of stations for all beams: the table of their values has one.
  std::size_t beams = 0;
  for (const PageMesh& mesh : meshes) beams += mesh.IsBeams() ? mesh.elems.size() : 0;
  for (PageMesh& mesh : meshes)
    if (mesh.IsBeams())
      mesh.stations = StationsFor(DivisionsFor(std::max(1, project.NumOfDivisions), beams));
  return meshes;
}

PageModel::PageModel(const Project& theProject)
    : project(theProject), places(theProject), meshes(PageMeshes(theProject)) {
  for (const auto [number, material] : project.materials)
    materials_.push_back({material, number, false});
  for (const PageMesh& mesh : meshes) {
    for (const Elem* elem : mesh.elems)
      if (elem->material) materials_.push_back({elem->material.get(), elem->materialNumber, true});
    faces_.push_back(mesh.IsSolids() ? OuterFaces(mesh.elems) : std::vector<std::uint32_t>{});
  }
  std::sort(
      materials_.begin(), materials_.end(),
      [](const NumberedMaterial& a, const NumberedMaterial& b) { return a.material < b.material; });
}

int PageModel::MaterialPlace(const Elem& elem) const {
  const Material* const material = elem.GetMaterial(project.materials);
  if (material == nullptr) return static_cast<int>(materials_.size());
  const auto found =
      std::lower_bound(materials_.begin(), materials_.end(), material,
                       [](const NumberedMaterial& a, const Material* b) { return a.material < b; });
  return static_cast<int>(found - materials_.begin());
}

std::int64_t PageModel::Triangles() const {
  std::int64_t triangles = 0;
  for (std::size_t m = 0; m < meshes.size(); ++m) {
    const PageMesh& mesh = meshes[m];
    const std::int64_t parts = mesh.nnode == 6 || mesh.nnode == 10 ? 4 : 1;
    const std::size_t flat = mesh.IsSolids() ? faces_[m].size() : mesh.elems.size();
    if (!mesh.IsBeams()) triangles += parts * static_cast<std::int64_t>(flat);
  }
  return triangles;
}

namespace {

/// The axes of an element as rows; the global ones for an element that has none, as a deck with
/// errors may hold.
Frame AxesOf(const Project& project, const Elem& elem, bool beam) {
  Matriu T, T6;
  const Material* const material = elem.GetMaterial(project.materials);
  try {
    if (beam) {
      elem.CalcTransfMatrixBeam(T, material, project.problemType);
    } else {
      elem.ShellAxes(T, T6, material);
    }
  } catch (const FatalError&) {
    return {
        {1, 0, 0},
        {0, 1, 0},
        {0, 0, 1}
    };
  }
  const auto column = [&T](int c) { return Vector3{T(1, c), T(2, c), T(3, c)}; };
  return {column(1), column(2), column(3)};
}

std::vector<double> AxesOf(const Project& project, const PageMesh& mesh) {
  std::vector<double> axes;
  for (const Elem* elem : mesh.elems) {
    const Frame frame = AxesOf(project, *elem, mesh.IsBeams());
    for (const Vector3& axis : {frame.x, frame.y, frame.z})
      axes.insert(axes.end(), axis.begin(), axis.end());
  }
  return axes;
}

/// Axes that a material gives are not those that the page can work out.
bool HasGivenAxes(const Project& project, const PageMesh& mesh) {
  return std::any_of(mesh.elems.begin(), mesh.elems.end(), [&](const Elem* elem) {
    const Material* const material = elem->GetMaterial(project.materials);
    return material != nullptr && material->hasEuler != 0;
  });
}

/// Above this many shells axes are worked out by the page.
constexpr std::size_t kShellsWithAxes = 5000;

}  // namespace

std::vector<PageBlock> PageModel::Blocks() const {
  std::vector<PageBlock> blocks;
  std::vector<double> x;
  for (const Node* node : places.Nodes()) x.insert(x.end(), {node->x, node->y, node->z});
  blocks.push_back(PageBlock::Reals("x", 3, std::move(x)));
  if (!places.Complete())
    blocks.push_back(
        PageBlock::Indices("node", {places.Numbers().begin(), places.Numbers().end()}));

  for (std::size_t m = 0; m < meshes.size(); ++m) {
    const PageMesh& mesh = meshes[m];
    const std::string prefix = NumberedPrefix('m', m);
    std::vector<std::uint32_t> conn, numbers, materials;
    for (const Elem* elem : mesh.elems) {
      for (int k = 0; k < mesh.nnode; ++k) conn.push_back(places.Of(*elem->nodes[k]));
      numbers.push_back(elem->number);
      materials.push_back(MaterialPlace(*elem));
    }
    blocks.push_back(PageBlock::Indices(prefix + "conn", std::move(conn)));
    if (numbers.back() - numbers.front() + 1 != numbers.size())
      blocks.push_back(PageBlock::Indices(prefix + "number", std::move(numbers)));
    if (std::count(materials.begin(), materials.end(), materials[0]) !=
        static_cast<std::ptrdiff_t>(materials.size()))
      blocks.push_back(PageBlock::Indices(prefix + "material", std::move(materials)));
    if (!faces_[m].empty()) blocks.push_back(PageBlock::Indices(prefix + "faces", faces_[m]));
    const bool many = mesh.elems.size() > kShellsWithAxes && !HasGivenAxes(project, mesh);
    if (mesh.IsBeams() || (mesh.IsShells() && !many))
      blocks.push_back(
          PageBlock::Reals(prefix + "axes", 9, AxesOf(project, mesh), mesh.IsShells()));
  }
  return blocks;
}

void PageModel::WriteMembers(JsonWriter& json) const {
  json.NewLine();
  WriteUnitsMember(json, UnitNamesOf(project.units));
  json.Member("dimension", project.problemType == Plane ? 2 : 3);
  json.Member("nodes", static_cast<int>(places.Nodes().size()));
  json.Member("deckNodes", places.DeckNodes());
  WriteMaterials(json);
  WriteMeshes(json);
  WriteSupports(json);
  WriteHinges(json);
}

void PageModel::WriteMaterials(JsonWriter& json) const {
  struct Value {
    const char* name;
    double Material::*value;
  };
  constexpr Value kValues[] = {
      {"E",      &Material::E1    },
      {"Ey",     &Material::E2    },
      {"nu",     &Material::nuXY  },
      {"nuYX",   &Material::nuYX  },
      {"G",      &Material::Gxy   },
      {"Gxz",    &Material::Gxz   },
      {"Gyz",    &Material::Gyz   },
      {"A",      &Material::A     },
      {"Iy",     &Material::Iy    },
      {"Iz",     &Material::Iz    },
      {"J",      &Material::J     },
      {"t",      &Material::t     },
      {"Weight", &Material::Weight},
  };
  json.NewLine().Key("materials").BeginArray();
  for (const auto& [material, number, isInline] : materials_) {
    json.NewLine().BeginObject().Member("number", number);
    if (isInline) json.Member("inline", true);
    for (const auto& [name, value] : kValues)
      if (material->*value != Material::kNotGiven) json.Member(name, material->*value);
    json.EndObject();
  }
  json.EndArray();
}

void PageModel::WriteMeshes(JsonWriter& json) const {
  json.NewLine().Key("meshes").BeginArray();
  for (const PageMesh& mesh : meshes) {
    json.NewLine().BeginObject().Member("kind", NameOf(mesh.kind)).Member("nnode", mesh.nnode);
    json.Member("count", static_cast<std::int64_t>(mesh.elems.size()));
    json.Member("points", mesh.points).Member("first", mesh.elems.front()->number);
    json.Member("material", MaterialPlace(*mesh.elems.front()));
    json.Member("stations", std::span<const double>(mesh.stations)).EndObject();
  }
  json.EndArray();
}

void PageModel::WriteSupports(JsonWriter& json) const {
  std::vector<std::pair<SupportKind, Runs>> groups;
  for (std::size_t i = 0; i < places.Nodes().size(); ++i) {
    const Constraint* const support = places.Nodes()[i]->constraint.get();
    if (support == nullptr) continue;
    const SupportKind kind = KindOf(*support, places.Numbers()[i], project.problemType == Plane);
    // The group of the node before comes first in line: supports come in rows.
    auto found = std::find_if(groups.rbegin(), groups.rend(),
                              [&](const auto& group) { return group.first == kind; });
    if (found == groups.rend()) {
      groups.push_back({kind, {}});
      found = groups.rbegin();
    }
    found->second.Add(static_cast<std::int64_t>(i));
  }
  json.NewLine().Key("supports").BeginArray();
  for (const auto& [kind, runs] : groups) {
    json.NewLine().BeginObject().Member("codes", kind.codes);
    json.Member("values", std::span<const double>(kind.values));
    if (!kind.axes.empty()) json.Member("axes", std::span<const double>(kind.axes));
    WriteRuns(json, runs);
    json.EndObject();
  }
  json.EndArray();
}

void PageModel::WriteHinges(JsonWriter& json) const {
  json.NewLine().Key("hinges").BeginArray();
  const auto write = [&](const Elem& elem, int end) {
    json.BeginObject().Member("element", elem.number).Member("end", end).EndObject();
  };
  for (const PageMesh& mesh : meshes) {
    if (!mesh.IsBeams()) continue;
    for (const Elem* elem : mesh.elems) {
      const BeamHinges hinges = HingesOf(project, *elem);
      if (hinges.end1) write(*elem, 0);
      if (hinges.end2) write(*elem, 1);
    }
  }
  json.EndArray();
}

bool PageModel::HasWeight() const {
  const ReaVec3& g = project.gravity;
  if (g(1) == 0.0 && g(2) == 0.0 && g(3) == 0.0) return false;  // a case without weight
  return std::any_of(materials_.begin(), materials_.end(),
                     [](const NumberedMaterial& one) { return one.material->Weight > 0.0; });
}

void PageModel::WriteLoads(JsonWriter& json) const {
  json.NewLine().Key("loads").BeginObject();
  WriteNodalLoads(json);
  WriteElementLoads(json);
  WriteVector(json, "gravity", project.gravity(1), project.gravity(2), project.gravity(3));
  json.Member("weight", HasWeight()).EndObject();
}

void PageModel::WriteNodalLoads(JsonWriter& json) const {
  json.Key("nodal").BeginArray();
  std::array<double, 6> last{};
  Runs runs;
  const auto flush = [&] {
    if (runs.Pairs().empty()) return;
    json.NewLine().BeginObject();
    WriteVector(json, "force", last[0], last[1], last[2]);
    WriteVector(json, "moment", last[3], last[4], last[5]);
    WriteRuns(json, runs);
    json.EndObject();
  };
  for (std::size_t i = 0; i < places.Nodes().size(); ++i) {
    const Node& node = *places.Nodes()[i];
    if (!node.load) continue;
    const std::array<double, 6> load = SixComponents(*node.load, project);
    if (load == std::array<double, 6>{}) continue;
    if (load != last) {
      flush();
      runs = {};
      last = load;
    }
    runs.Add(static_cast<std::int64_t>(i));
  }
  flush();
  json.EndArray();
}

void PageModel::WriteElementLoads(JsonWriter& json) const {
  json.Key("elements").BeginArray();
  for (std::size_t m = 0; m < meshes.size(); ++m) {
    for (const LoadGroup& group : LoadGroupsOf(project, meshes[m].elems)) {
      json.NewLine().BeginObject().Member("mesh", static_cast<int>(m));
      json.Member("kind", group.kind).Member("face", group.face);
      WriteVector(json, "value", group.value[0], group.value[1], group.value[2]);
      json.Member("couple", group.value[3]);
      WriteRuns(json, group.runs);
      json.EndObject();
    }
  }
  json.EndArray();
}

}  // namespace kestol
