#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

namespace kestol {

/// A model in the making whose loads are kept apart, so that the same loads can be cases of their
/// own, or be summed up by hand in one deck. Everything follows from the seed.
class RandomCases {
public:
  explicit RandomCases(unsigned seed);

  int CaseCount() const { return static_cast<int>(cases_.size()); }
  /// Random factors, one per case; now and then 0 or negative.
  std::vector<double> Factors();

  /// The deck with the loads of case 0, which is the model's own.
  std::string Model() const { return Deck({1.0}); }
  /// The loads of a case from 1 on, as a file of its own.
  std::string CaseText(int k) const;
  /// The deck that carries the sum of factors times cases.
  std::string Deck(const std::vector<double>& factors) const;

private:
  struct LoadLine {
    std::string section, before;  ///< before the numbers: element or node, and a face
    std::vector<double> values;
    std::string behind;  ///< keys behind the numbers
  };
  struct Case {
    std::vector<LoadLine> lines;
    std::map<int, std::array<double, 6>> settlements;
  };
  struct Support {
    std::string codes, keys;
    std::array<double, 6> springs{};
  };

  double Next();     ///< in (-1, 1)
  int Below(int n);  ///< in [0, n)
  double Near(double x) { return x * (1.0 + 0.2 * Next()); }

  void MakeFrame(bool space);
  void MakeShells(int nnode, bool withBeams);
  void MakeSolids(bool ten);
  void AddFrameLoads(Case& loads, int nodes, int beams, bool space);
  void AddShellLoads(Case& loads, int nodes, int shells, int beams);
  void AddSolidLoads(Case& loads, int nodes, int solids);
  void AddSettlements(Case& loads);
  void AddNodal(Case& loads, int node);
  std::string Numbers(const std::vector<double>& values, double factor) const;
  std::string SectionsOf(const Case& loads, double factor) const;
  std::string ConstraintLine(int node, const Support& support, const std::array<double, 6>& values,
                             bool settlementsOnly) const;

  unsigned state_;
  int dofs_ = 3;
  bool plane_ = true;
  std::string head_, meshes_, rotules_;
  std::string material_;  ///< keys of all materials but Weight
  double weight_ = 0.0;
  std::array<double, 3> gravity_{0.0, -1.0, 0.0};
  std::map<int, Support> supports_;
  std::vector<Case> cases_;
};

}  // namespace kestol
