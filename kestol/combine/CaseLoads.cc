#include "kestol/combine/CaseLoads.h"

#include <algorithm>
#include <set>
#include <utility>

#include "input/Project.h"

namespace kestol {

namespace {

void AddNodal(Node& node, const ReaVecT& components, double factor) {
  if (!node.load) {
    node.load = std::make_unique<ReaVecT>(components.n);
    node.load->Fill(0.0);
  }
  for (int d = 1; d <= std::min(components.n, node.load->n); ++d)
    (*node.load)(d) += factor * components(d);
}

/// The chain with its values times `factor`.
std::unique_ptr<PreassureLT> Scaled(const PreassureLT* load, double factor) {
  std::unique_ptr<PreassureLT> first;
  std::unique_ptr<PreassureLT>* place = &first;
  for (; load != nullptr; load = load->next.get(), place = &(*place)->next) {
    *place = std::make_unique<PreassureLT>(load->kind);
    (*place)->face = load->face;
    (*place)->values = load->values;
    for (double& value : (*place)->values) value *= factor;
  }
  return first;
}

void AddDistributed(Project& project, int elementNumber, const PreassureLT& load, double factor) {
  std::unique_ptr<PreassureLT> scaled = Scaled(&load, factor);
  PreassureLT* last = project.loads.Get(elementNumber);
  if (last == nullptr) {
    project.loads.Insert(elementNumber, std::move(scaled));
    return;
  }
  while (last->next) last = last->next.get();
  last->next = std::move(scaled);
}

void AddSettlements(Constraint& support, const std::array<double, 6>& values, double factor) {
  for (int d = 0; d < support.dofs; ++d)
    if (support.codes[d] == Prescribed) support.values[d] += factor * values[d];
}

/// Leaves the model without loads, weight and settlements.
void ClearLoads(Project& project) {
  project.gravity = ReaVec3(0.0, 0.0, 0.0);
  for (const auto [number, load] : project.loads) project.loads.Take(number);
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    node->load.reset();
    if (!node->constraint) continue;
    for (int d = 0; d < node->constraint->dofs; ++d)
      if (node->constraint->codes[d] == Prescribed) node->constraint->values[d] = 0.0;
  }
}

}  // namespace

CaseLoads TakeLoads(Project& project) {
  CaseLoads taken;
  taken.gravity = project.gravity;
  for (const auto [number, node] : *project.meshes[0]->nodes) {
    if (node->load) taken.nodal.emplace(number, *node->load);
    if (!node->constraint) continue;
    const Constraint& support = *node->constraint;
    std::array<double, 6> values{};
    for (int d = 0; d < support.dofs; ++d)
      if (support.codes[d] == Prescribed) values[d] = support.values[d];
    if (values != std::array<double, 6>{}) taken.settlements.emplace(number, values);
  }
  for (const auto [number, load] : project.loads)
    taken.distributed.emplace(number, Scaled(load, 1.0));
  ClearLoads(project);
  return taken;
}

MidSideSupports::MidSideSupports(const Project& project) {
  std::set<const Node*> seen;
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType != Triangle || mesh->nnode != 6) continue;
    for (const auto [number, elem] : mesh->elems)
      for (int e = 0; e < 3; ++e) {
        Node* const node = elem->nodes[e + 3];
        if (!node->constraint || mesh->ExternalNumber(node) <= project.nodesAsRead) continue;
        if (seen.insert(node).second)
          midSides_.push_back({node, elem->nodes[e], elem->nodes[(e + 1) % 3]});
      }
  }
}

void MidSideSupports::Settle() const {
  for (const auto& [node, a, b] : midSides_)
    if (const auto merged = MergeTwoConstraints(a->constraint.get(), b->constraint.get()))
      node->constraint->values = merged->values;
}

void PutLoads(Project& project, const std::vector<CaseLoads>& cases,
              const std::vector<double>& factors, const MidSideSupports& midSides) {
  ClearLoads(project);
  for (std::size_t k = 0; k < cases.size(); ++k) {
    const double factor = factors[k];
    if (factor == 0.0) continue;
    for (int i = 1; i <= 3; ++i) project.gravity(i) += factor * cases[k].gravity(i);
    for (const auto& [number, components] : cases[k].nodal)
      AddNodal(*project.meshes[0]->nodes->Get(number), components, factor);
    for (const auto& [number, load] : cases[k].distributed)
      AddDistributed(project, number, *load, factor);
    for (const auto& [number, values] : cases[k].settlements)
      AddSettlements(*project.meshes[0]->nodes->Get(number)->constraint, values, factor);
  }
  midSides.Settle();
}

}  // namespace kestol
