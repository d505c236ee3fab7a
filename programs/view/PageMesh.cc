#include "programs/view/PageMesh.h"

#include <algorithm>
#include <optional>

#include "analysis/PointLayout.h"

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

}  // namespace kestol
