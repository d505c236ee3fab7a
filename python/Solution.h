#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kestol/Model.h"
#include "kestol/Results.h"
#include "programs/common/ResultData.h"

namespace kestol {

using Six = std::array<double, 6>;

/// What is known of the integration points of shells: one row for each point.
struct ShellPoints {
  std::vector<int> elements;
  std::vector<Vector3> x, n, m;
  std::vector<std::array<double, 2>> q;
  std::vector<StressTensor> top, bottom;
  std::vector<Frame> axes;
};

/// What is known of the integration points of solids: one row for each point.
struct SolidPoints {
  std::vector<int> elements;
  std::vector<Vector3> x;
  std::vector<StressTensor> stress;
  std::vector<double> vonMises;
};

/// What the supports give: one row for each supported node.
struct ReactionRows {
  std::vector<int> nodes;                   ///< numbers; 0 for a created mid-side
  std::vector<std::array<int, 2>> between;  ///< corners of a created mid-side; else 0
  std::vector<Six> values, inSupportAxes, printed;
};

/// A solved model with all its results as tables, which are made once and lie in one piece each, so
/// that Python's arrays are views of them.
class Solution {
public:
  /// `model` was prepared and carries the loads of `answer`; it must stay as it is while the tables
  /// are made. `carry`, when given, puts these loads on the model again before it is asked anew: a
  /// model that serves many combinations carries those of the last one.
  Solution(std::shared_ptr<Project> model, Results answer, int stations,
           std::function<void()> carry = {});
  Solution(const Solution&) = delete;
  Solution& operator=(const Solution&) = delete;

  /// The files of kestol-export. Outputs that name one of `inputs` are refused.
  void WriteVtuFile(const std::string& path, const std::string& encoding, bool diagrams,
                    const std::vector<std::string>& inputs);
  std::string Json(const std::string& deck);
  /// One table of kestol-export --csv.
  std::string Csv(const std::string& table);

  std::shared_ptr<Project> project;
  Results results;
  ResultData data;
  std::vector<int> nodeNumbers;
  std::vector<Vector3> coordinates;
  std::vector<Six> displacements, loads;  ///< by node; force and moment
  std::vector<double> stationX;           ///< beam after beam
  std::vector<int> beamNumbers, beamMaterials;
  std::vector<std::array<int, 2>> beamNodes;
  ShellPoints shells;
  SolidPoints solids;
  std::vector<StressTensor> nodalStresses;  ///< by node; empty without solids
  std::vector<double> nodalVonMises;
  ReactionRows reactions;
  Equilibrium equilibrium;

private:
  void TakeNodes();
  void TakeBeams();
  void TakeShells();
  void TakeSolids();
  void TakeReactions();
  void Carry() const {
    if (carry_) carry_();
  }

  std::function<void()> carry_;
};

}  // namespace kestol
