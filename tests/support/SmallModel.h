#pragma once

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "analysis/Results.h"
#include "input/Project.h"
#include "output/OutputText.h"
#include "output/VemoFiles.h"

namespace kestol {

/// A project and results filled by hand: what the writers of results read, without a reader or a
/// solution. Nodes and elements are given by their numbers in the input; call Size() when all are
/// there.
class SmallModel {
public:
  SmallModel(ProblemType problemType, int dofsPerNode) {
    project.problemType = problemType;
    project.dofsPerNode = dofsPerNode;
  }

  Mesh& AddMesh(int elemType, int nnode) {
    auto mesh = project.meshes.empty() ? std::make_unique<Mesh>()
                                       : std::make_unique<Mesh>(*project.meshes[0]);
    mesh->dimension = project.problemType == Plane ? 2 : 3;
    mesh->elemType = elemType;
    mesh->nnode = nnode;
    project.meshes.push_back(std::move(mesh));
    results.meshes.emplace_back();
    return *project.meshes.back();
  }

  Node& AddNode(int number, double x, double y, double z = 0.0) {
    auto node = std::make_unique<Node>();
    node->x = x;
    node->y = y;
    node->z = z;
    node->dim = project.meshes[0]->dimension;
    node->number = number;
    return *project.meshes[0]->nodes->Insert(number, std::move(node));
  }

  /// An element of the last mesh, of material 1.
  Elem& AddElem(int number, std::initializer_list<int> nodes) {
    Mesh& mesh = *project.meshes.back();
    auto elem = std::make_unique<Elem>(&mesh, mesh.nnode);
    elem->number = number;
    elem->materialNumber = 1;
    int i = 0;
    for (const int node : nodes) elem->nodes[i++] = mesh.nodes->Get(node);
    ++project.numElements[project.meshes.size() - 1];
    return *mesh.elems.Insert(number, std::move(elem));
  }

  /// A stiff section that weighs nothing.
  Material& AddMaterial(int number) {
    auto material = std::make_unique<Material>();
    material->number = number;
    material->E1 = 2e11;
    material->Gxy = 8e10;
    material->A = 1e-2;
    material->Iy = 2e-5;
    material->Iz = 1e-5;
    material->J = 3e-5;
    return *project.materials.Insert(number, std::move(material));
  }

  /// Adds a support record with these reactions, all degrees held.
  void Support(int node, std::initializer_list<double> reactions) {
    auto constraint = std::make_unique<Constraint>(project.dofsPerNode);
    Reaction record{NodeOf(node).number, {}};
    int d = 0;
    for (const double reaction : reactions) {
      constraint->codes[d] = Prescribed;
      record.values[d++] = reaction;
    }
    NodeOf(node).constraint = std::move(constraint);
    results.reactions.push_back(record);
    SortReactions();
  }

  /// Numbers the nodes inside: index i is node externalNumbers[i - 1] of the input. Displacements
  /// and stresses keep their places.
  void Renumber(const std::vector<int>& externalNumbers) {
    std::vector<int> newIndex(externalNumbers.size() + 1);
    for (std::size_t i = 0; i < externalNumbers.size(); ++i) {
      newIndex[externalNumbers[i]] = static_cast<int>(i) + 1;
      NodeOf(externalNumbers[i]).number = static_cast<int>(i) + 1;
    }
    for (Reaction& reaction : results.reactions) reaction.nodeIndex = newIndex[reaction.nodeIndex];
    SortReactions();
    project.meshes[0]->renumberMap = std::make_shared<std::vector<int>>(externalNumbers);
  }

  /// Adds a uniform load to an element, behind those it has.
  void Load(int element, LoadKind kind, std::initializer_list<double> values) {
    auto load = std::make_unique<PreassureLT>(kind);
    load->values = VectorOf(values);
    if (PreassureLT* last = project.loads.Get(element)) {
      while (last->next != nullptr) last = last->next.get();
      last->next = std::move(load);
    } else {
      project.loads.Insert(element, std::move(load));
    }
  }

  /// Counts the nodes and sizes the displacements, all 0.
  void Size() {
    const int nodes = project.meshes[0]->nodes->Highest();
    project.nodesAsRead = project.numNodes = nodes;
    results.displacements = ReaVecT(nodes * project.dofsPerNode);
    if (nodes > 0) results.displacements.Fill(0.0);
  }

  void Displace(int node, std::initializer_list<double> values) {
    int equation = FirstEquation(NodeOf(node).number, project.dofsPerNode);
    for (const double value : values) results.displacements(equation++) = value;
  }

  Node& NodeOf(int number) { return *project.meshes[0]->nodes->Get(number); }

  std::string Report() const {
    OutputText output;
    project.WriteResults(results, output);
    return output.Text();
  }

  std::string Vemo() const {
    OutputText file;
    WriteVemoFiles(project, results, file, nullptr);
    return file.Text();
  }

  static ReaVecT VectorOf(const std::vector<double>& values) {
    ReaVecT vector(static_cast<int>(values.size()));
    for (int i = 0; i < vector.n; ++i) vector(i + 1) = values[i];
    return vector;
  }

  /// `count` values first, first + step, ...
  static ReaVecT Counting(int count, double first, double step) {
    ReaVecT vector(count);
    for (int i = 0; i < count; ++i) vector(i + 1) = first + step * i;
    return vector;
  }

private:
  void SortReactions() {
    std::sort(results.reactions.begin(), results.reactions.end(),
              [](const Reaction& a, const Reaction& b) { return a.nodeIndex < b.nodeIndex; });
  }

  std::unique_ptr<Project> owner_ = std::make_unique<Project>(100);

public:
  Project& project = *owner_;
  Results results;
};

}  // namespace kestol
