#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "programs/common/ResultGrid.h"

// How the arrays of a grid walk through the model; for the files that define the class.

namespace kestol {

inline const std::vector<std::string> kVectorNames = {"x", "y", "z"};

/// Calls action(mesh, elem) in the order of the cells.
template <class Action>
void ResultGrid::ForEachElement(Action action) const {
  for (std::size_t m = 0; m < elems_.size(); ++m)
    for (const Elem* elem : elems_[m]) action(*data_.project.meshes[m], *elem);
}

/// An array of N values of type T at nodes, valueAt(node); zeros at stations.
template <class T, int N, class ValueAt>
void ResultGrid::AddAtNodes(const std::string& name, VtuType type, ValueAt valueAt,
                            std::vector<std::string> componentNames) {
  grid_.pointData.push_back({name, type, N, PointCount(),
                             [this, valueAt](VtuValues& out) {
                               for (const Node* node : data_.nodes)
                                 out.Add(std::array<T, N>(valueAt(*node)));
                               out.AddZeros<T>(StationCount() * N);
                             },
                             std::move(componentNames)});
}

/// An array of N values of type T at all elements, valueAt(mesh place, elem).
template <class T, int N, class ValueAt>
void ResultGrid::AddAtElements(const std::string& name, VtuType type, ValueAt valueAt,
                               std::vector<std::string> componentNames) {
  grid_.cellData.push_back({name, type, N, cells_,
                            [this, valueAt](VtuValues& out) {
                              for (std::size_t m = 0; m < elems_.size(); ++m)
                                for (const Elem* elem : elems_[m])
                                  out.Add(std::array<T, N>(valueAt(static_cast<int>(m), *elem)));
                            },
                            std::move(componentNames)});
}

/// An array of N values at shells, valueAt(cell); zeros at other elements.
template <int N, class ValueAt>
void ResultGrid::AddAtShells(const std::string& name, ValueAt valueAt,
                             std::vector<std::string> componentNames) {
  grid_.cellData.push_back({name, VtuType::Float64, N, cells_,
                            [this, valueAt](VtuValues& out) {
                              std::size_t shell = 0;
                              ForEachElement([&](const Mesh& mesh, const Elem&) {
                                out.Add(mesh.elemType == Triangle
                                            ? std::array<double, N>(valueAt(shells_[shell++]))
                                            : std::array<double, N>{});
                              });
                            },
                            std::move(componentNames)});
}

}  // namespace kestol
