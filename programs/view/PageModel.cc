#include "programs/view/PageModel.h"

#include <algorithm>

#include "algebra/Matriu.h"
#include "model/Frame.h"
#include "programs/view/SolidFaces.h"

namespace kestol {

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

}  // namespace kestol
