#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "input/LoadsReader.h"
#include "input/Project.h"
#include "input/TextInput.h"

namespace kestol {

/// A bare model: nodes 1 to 10, and one element, number 100 x type + 1, of every type asked for.
class LoadsFixture : public testing::Test {
protected:
  void Model(ProblemType problemType, std::initializer_list<int> elemTypes) {
    project_ = std::make_unique<Project>(100);
    project_->problemType = problemType;
    project_->dofsPerNode = problemType == Plane ? 3 : 6;
    for (const int elemType : elemTypes) {
      if (elemType == Tetrahedra) project_->dofsPerNode = 3;
      auto& meshes = project_->meshes;
      meshes.push_back(meshes.empty() ? std::make_unique<Mesh>()
                                      : std::make_unique<Mesh>(*meshes[0]));
      Mesh& mesh = *meshes.back();
      mesh.elemType = elemType;
      mesh.nnode = elemType;
      mesh.elems.Insert(100 * elemType + 1, std::make_unique<Elem>(&mesh, mesh.nnode));
    }
    for (int n = 1; n <= 10; ++n) {
      auto node = std::make_unique<Node>();
      node->number = n;
      project_->meshes[0]->nodes->Insert(n, std::move(node));
    }
    project_->units.table = {
        {"kN-mm", "kN", "mm", "GPa", 1000.0, 0.001 },
        {"km",    "N",  "km", "Pa",  1.0,    1000.0}
    };
  }

  void Nodal(const std::string& text) {
    TextInput input(text);
    ReadNodalLoads(*project_, input);
    rest_ = input.PeekWord();
  }
  int Pressure(const std::string& keyword, const std::string& text) {
    TextInput input(text);
    const int result = ReadPressureLoads(keyword, *project_, input);
    rest_ = input.PeekWord();
    return result;
  }

  std::vector<double> LoadOf(int nodeNumber) {
    const ReaVecT& load = *project_->meshes[0]->nodes->Get(nodeNumber)->load;
    return {load.begin(), load.end()};
  }
  const PreassureLT& First(int elemNumber) { return *project_->loads.Get(elemNumber); }
  std::vector<double> Values(const PreassureLT& load) {
    return {load.values.begin(), load.values.end()};
  }
  /// The values of one line of a section.
  std::vector<double> Read(const std::string& keyword, int elemNumber, const std::string& line) {
    Pressure(keyword, std::to_string(elemNumber) + " " + line + "\nend\n");
    return Values(First(elemNumber));
  }

  std::unique_ptr<Project> project_;
  std::string rest_;
};

using Numbers = std::vector<double>;

}  // namespace kestol
