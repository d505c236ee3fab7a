#include <array>
#include <string>
#include <vector>

#include "programs/common/ResultGridArrays.h"

// Stresses and resultants of shells and solids.

namespace kestol {

namespace {

const std::vector<std::string> kTensorNames = {"XX", "YY", "ZZ", "XY", "YZ", "XZ"};
const std::vector<std::string> kSurfaceNames = {"xx", "yy", "xy"};

}  // namespace

void ResultGrid::TakeShells() {
  const Results* const results = data_.solved ? &data_.results : nullptr;
  ForEachShell(data_.project, results, [&](const ShellView& shell) {
    const ShellForces mean = shell.Mean();
    shells_.push_back({shell.axes, shell.thickness, mean, ShellMainOf(mean, shell.axes)});
  });
}

void ResultGrid::TakeMainStresses() {
  if (!stresses_.Exist()) return;
  mainStresses_.reserve(data_.nodes.size());
  for (const Node* node : data_.nodes)
    mainStresses_.push_back(MainStressOf(stresses_.Of(node->number)));
}

void ResultGrid::AddSolidPointData() {
  AddAtNodes<double, 6>(
      data_.Label("stress", "P"), VtuType::Float64,
      [this](const Node& node) { return stresses_.Of(node.number); }, kTensorNames);
  AddAtNodes<double, 1>(data_.Label("von Mises", "P"), VtuType::Float64, [this](const Node& node) {
    return std::array<double, 1>{VonMises(stresses_.Of(node.number))};
  });
  const auto mainAt = [this](const Node& node) -> const MainStress& {
    return mainStresses_[static_cast<std::size_t>(
        data_.placeOfIndex[static_cast<std::size_t>(node.number)])];
  };
  AddAtNodes<double, 3>(data_.Label("main stress", "P"), VtuType::Float64,
                        [mainAt](const Node& node) { return mainAt(node).values; },
                        {"1", "2", "3"});
  for (std::size_t k = 0; k < 3; ++k)
    AddAtNodes<double, 3>(
        "main direction " + std::to_string(k + 1), VtuType::Float64,
        [mainAt, k](const Node& node) { return mainAt(node).directions[k]; }, kVectorNames);
}

void ResultGrid::AddShellData() {
  using Cell = ShellCell;
  AddAtShells<3>(
      data_.Label("n", "F/L"), [](const Cell& c) { return c.mean.n; }, kSurfaceNames);
  AddAtShells<3>(
      data_.Label("m", "F L/L"), [](const Cell& c) { return c.mean.m; }, kSurfaceNames);
  AddAtShells<2>(data_.Label("q", "F/L"), [](const Cell& c) { return c.mean.q; }, {"x", "y"});
  const auto addMain = [this](const char* letter, const char* unit, auto values, auto directions) {
    const std::string name(letter);
    AddAtShells<2>(data_.Label(name + " main", unit),
                   [values](const Cell& c) { return c.main.*values; }, {"1", "2"});
    for (std::size_t k = 0; k < 2; ++k)
      AddAtShells<3>(
          name + " direction " + std::to_string(k + 1),
          [directions, k](const Cell& c) { return (c.main.*directions)[k]; }, kVectorNames);
  };
  addMain("n", "F/L", &ShellMain::n, &ShellMain::nDirections);
  addMain("m", "F L/L", &ShellMain::m, &ShellMain::mDirections);
  for (const ShellFace face : {ShellFace::Top, ShellFace::Bottom}) {
    const std::string name = face == ShellFace::Top ? "top" : "bottom";
    const auto stressOf = [face](const Cell& c) {
      return FaceStress(c.mean, c.thickness, face, c.axes);
    };
    AddAtShells<6>(data_.Label("stress " + name, "P"), stressOf, kTensorNames);
    AddAtShells<1>(data_.Label("von Mises " + name, "P"), [face](const Cell& c) {
      return std::array<double, 1>{VonMises(FaceStress(c.mean, c.thickness, face))};
    });
  }
}

}  // namespace kestol
