#include "kestol/CopyModel.h"

#include <memory>
#include <utility>

#include "input/Project.h"

namespace kestol {

namespace {

/// Numbers per block of the copy's containers.
constexpr int kCapacity = 100;

std::unique_ptr<Node> CopyOf(const Node& node) {
  auto copy = std::make_unique<Node>();
  copy->x = node.x;
  copy->y = node.y;
  copy->z = node.z;
  copy->dim = node.dim;
  copy->number = node.number;
  copy->isHinge = node.isHinge;
  if (node.constraint) copy->constraint = std::make_unique<Constraint>(*node.constraint);
  if (node.load) copy->load = std::make_unique<ReaVecT>(*node.load);
  return copy;
}

/// The element on the nodes of `mesh` with the same numbers.
std::unique_ptr<Elem> CopyOf(const Elem& elem, Mesh& mesh) {
  auto copy = std::make_unique<Elem>(&mesh, elem.nnode);
  for (int i = 0; i < elem.nnode; ++i)
    if (elem.nodes[i] != nullptr) copy->nodes[i] = mesh.nodes->Get(elem.nodes[i]->number);
  if (elem.material) copy->material = std::make_unique<Material>(*elem.material);
  copy->alpha = elem.alpha;
  copy->number = elem.number;
  copy->materialNumber = elem.materialNumber;
  return copy;
}

void CopyMeshes(const Project& model, Project& copy) {
  for (const auto& mesh : model.meshes) {
    const bool isFirst = copy.meshes.empty();
    copy.meshes.push_back(isFirst ? std::make_unique<Mesh>()
                                  : std::make_unique<Mesh>(*copy.meshes[0]));
    Mesh& to = *copy.meshes.back();
    to.dimension = mesh->dimension;
    to.nnode = mesh->nnode;
    to.elemType = mesh->elemType;
    to.femviewType = mesh->femviewType;
    if (isFirst)
      for (const auto [number, node] : *mesh->nodes) to.nodes->Insert(number, CopyOf(*node));
    for (const auto [number, elem] : mesh->elems) to.elems.Insert(number, CopyOf(*elem, to));
  }
}

std::unique_ptr<PreassureLT> CopyOf(const PreassureLT& load) {
  auto copy = std::make_unique<PreassureLT>(load.kind);
  copy->face = load.face;
  copy->values = load.values;
  return copy;
}

void CopyLoads(const Project& model, Project& copy) {
  for (const auto [number, first] : model.loads) {
    PreassureLT* last = copy.loads.Insert(number, CopyOf(*first));
    for (const PreassureLT* load = first->next.get(); load != nullptr; load = load->next.get()) {
      last->next = CopyOf(*load);
      last = last->next.get();
    }
  }
}

void CopyOptions(const Project& model, Project& copy) {
  copy.units = model.units;
  copy.problemType = model.problemType;
  copy.dofsPerNode = model.dofsPerNode;
  copy.ConvertTo6Nodes = model.ConvertTo6Nodes;
  copy.stressOption = model.stressOption;
  copy.nodesAsRead = model.nodesAsRead;
  copy.numNodes = model.numNodes;
  copy.numElements = model.numElements;
  copy.solverChoice = model.solverChoice;
  copy.tolerance1 = model.tolerance1;
  copy.tolerance2 = model.tolerance2;
  copy.MaxIterations = model.MaxIterations;
  copy.gravity = model.gravity;
  copy.NumOfDivisions = model.NumOfDivisions;
  copy.CoplanarityAngle = model.CoplanarityAngle;
  copy.DoSmoothing = model.DoSmoothing;
  copy.smoothingAngle = model.smoothingAngle;
  copy.hasHinges = model.hasHinges;
}

}  // namespace

Project CopyModel(const Project& model) {
  Project copy(kCapacity);
  CopyOptions(model, copy);
  CopyMeshes(model, copy);
  for (const auto [number, material] : model.materials)
    copy.materials.Insert(number, std::make_unique<Material>(*material));
  CopyLoads(model, copy);
  return copy;
}

}  // namespace kestol
